#pragma once
// Private: one prepared Firebird statement with its parameter encoding, output message layout
// and value decoding. Query and DataSet keep one while their SQL text is unchanged.
#include "platform/db/Database.h"
#include "platform/db/Field.h"
#include "platform/db/Params.h"
#include <QPointer>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

namespace Firebird {
class IAttachment;
class IStatement;
class IMessageMetadata;
class IResultSet;
} // namespace Firebird

namespace frames::db {

namespace fb {
class Status;
}
class Database;
class Transaction;

// One output column: where it lives in the message buffer and how it reads.
struct Column {
    QString name; // alias (unique within the statement)
    QString field, relation;
    unsigned sqlType = 0; // SQL_xxx without the null flag
    int subType = 0;
    unsigned length = 0;
    int scale = 0;
    unsigned charSet = 0; // the character set without its collation
    unsigned offset = 0, nullOffset = 0;
    FieldType type = FieldType::VarChar;
    int size = 0;
};

class Statement {
public:
    // Prepares `sql` (with :name / ?name parameters) in `tr`, which is started if needed.
    Statement(Database* db, Transaction* tr, const QString& sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    const QString& sql() const { return sql_; }
    const ScannedSql& scanned() const { return scanned_; }
    Database* database() const { return db_; }
    // False once the database was closed or attached again: prepare anew.
    bool valid() const;
    bool hasCursor() const; // a select

    const std::vector<Column>& columns() const { return cols_; }
    int columnIndex(const QString& name) const; // case-insensitive, -1 when absent
    unsigned messageLength() const { return msgLen_; }

    // Encodes the values (aligned with scanned().names) into the input message. Blob parameters
    // are written in `tr`.
    void bind(const std::vector<QVariant>& values, Transaction* tr);
    void bind(const Params& params, Transaction* tr);

    void openCursor(Transaction* tr);
    bool fetch(char* row); // row: messageLength() bytes
    void closeCursor();
    bool cursorOpen() const { return rs_ != nullptr; }
    // Runs a statement without a cursor; its output row (if any) is outputRow().
    void execute(Transaction* tr);
    char* outputRow() { return out_.data(); }
    qint64 affectedRecords() const;

    bool isNull(const char* row, int col) const {
        return *reinterpret_cast<const short*>(row + cols_[size_t(col)].nullOffset) != 0;
    }
    // Reads a column of a raw row; blobs are read in `tr` (started if needed).
    QVariant decode(const char* row, int col, Transaction* tr) const;
    // Exact decimal text of a scaled integer column; a null QString for other columns.
    QString numericText(const char* row, int col) const;

    // Compact rows, as a dataset keeps them: a null flag per column, then a fixed slot per
    // column (text columns: offset and length of their bytes), then the text bytes. Text
    // columns keep only the bytes they use (CHAR without its trailing blanks), so a row costs
    // what it holds rather than the maximum length of every column.
    size_t compactSize(const char* msg) const;        // bytes compact() will write
    size_t compact(const char* msg, char* out) const; // returns the bytes written
    QVariant decodeCompact(const char* row, int col, Transaction* tr) const;
    QString numericTextCompact(const char* row, int col) const;

    // Number of statements prepared by this process (lets tests see reuse).
    static quint64 prepareCount();

private:
    QString context() const;
    void initCompact();
    QVariant decodeValue(const Column& c, const char* p, qsizetype textLen, Transaction* tr) const;
    static QString numericTextAt(const Column& c, const char* p);

    QPointer<Database> db_;
    Firebird::IAttachment* att_ = nullptr; // the attachment the statement was prepared on
    quint64 generation_ = 0;               // and its number (an address may be reused)
    QString sql_;
    ScannedSql scanned_;
    Firebird::IStatement* stmt_ = nullptr;
    Firebird::IMessageMetadata* inServer_ = nullptr; // the server's idea of the parameters
    Firebird::IMessageMetadata* in_ = nullptr;       // ours, built by bind()
    Firebird::IMessageMetadata* outMeta_ = nullptr;
    Firebird::IResultSet* rs_ = nullptr;
    std::unique_ptr<fb::Status> fetchStatus_; // reused by every fetch of a cursor
    std::vector<char> inBuf_;
    std::vector<char> out_;
    std::vector<Column> cols_;
    std::vector<unsigned> compactOffsets_; // fixed slot of each column in a compact row
    unsigned compactFixed_ = 0;            // null flags + fixed slots
    unsigned msgLen_ = 0;
    unsigned type_ = 0;
};

// Type conversion shared by fields and parameters.
// Converts v for storage in a field of `type`; throws db::Error (Configuration) when text does
// not convert. Null/invalid/empty text for non-text types gives an invalid QVariant.
QVariant convertForField(FieldType type, int scale, const QVariant& v, const QString& fieldName);

} // namespace frames::db
