#pragma once
#include <QString>
#include <QVariant>
#include <QVariantList>
#include <memory>

namespace frames {
namespace db {
class Query;
class Transaction;
} // namespace db

// SQL helpers over the host's database module. A statement is given as a list of pieces that
// are joined as they stand: pieces are literal SQL or numbers; text coming from a user must be
// passed through StrParam first.
QString SqlText(const QVariantList& pieces);

// Whether a host with a database is installed (a form designer shows frames without one).
bool HasDatabase();
// Runs a select in the given transaction; the query is open on its first row.
std::unique_ptr<db::Query> QvSqlQuery(db::Transaction* tr, bool unused, const QVariantList& pieces);
// Runs a select in the host's read transaction.
std::unique_ptr<db::Query> QvSqlQueryRead(const QVariantList& pieces);
// First column of the first row of a select in the read transaction (null when no row).
QVariant QvSqlValue(const QVariantList& pieces);
// Runs a statement that changes data in its own write transaction, committed at once
// ("write, nowait, rec_version, read_committed"); rolled back and rethrown on error.
void QvSqlExec(const QVariantList& pieces);
// The same in the given transaction (committed when commit is true).
void QvSqlExec(db::Transaction* tr, bool commit, const QVariantList& pieces);
// Executes a stored procedure with the values as its input parameters, in its own committed
// write transaction.
void QvProcExec(const QString& procedure, const QVariantList& values);

// The database's literal for a Boolean: 'T' or 'F'.
QString IBBool(bool value);
// Quotes a string as an SQL literal: 'it''s'.
QString StrParam(const QString& value);
// A parameter string (name=value lines) without the lines of that name (in any case).
QString IBDelParam(const QString& params, const QString& name);
// A number as an SQL literal that the server takes against any numeric column: as it stands
// when it has at most four decimals and eighteen digits ("1234.5"), otherwise with an exponent
// ("1e-18"), which the server reads as a double. (A longer exact literal is refused, or makes the
// server scale a column's values up to its decimals until they overflow.)
QString SqlNumber(double value);
// A key as an SQL literal: a text that is exactly an integer (an optional '-' and digits, within
// 64 bits) goes in as that number, anything else is quoted by StrParam.
QString SqlKey(const QString& key);
// An SQL literal for any value: null, number, quoted text, 'yyyy-mm-dd' date.
QString SqlLiteral(const QVariant& value);

} // namespace frames
