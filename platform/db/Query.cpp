#include "platform/db/Query.h"
#include "platform/db/Database.h"
#include "platform/db/Statement.h"
#include "platform/db/Transaction.h"

namespace frames::db {

Query::Query(QObject* parent) : QObject(parent) {}

Query::Query(Database* db, Transaction* tr, QObject* parent) : QObject(parent), db_(db) {
    setTransaction(tr);
}

Query::~Query() = default;

void Query::setDatabase(Database* db) {
    if (db == db_) return;
    close();
    stmt_.reset();
    db_ = db;
}

void Query::setTransaction(Transaction* tr) {
    if (tr == tr_) return;
    close();
    if (tr_) disconnect(tr_, nullptr, this, nullptr);
    tr_ = tr;
    // A cursor cannot outlive its transaction.
    if (tr_) connect(tr_, &Transaction::ending, this, [this] { close(); });
}

void Query::setSql(const QString& sql) {
    if (sql == sql_) return;
    close();
    stmt_.reset();
    sql_ = sql;
    params_.rebuild(ScannedSql::scan(sql).names);
}

Param* Query::paramByName(const QString& name) {
    return params_.byName(name, sql_);
}
Param* Query::findParam(const QString& name) {
    return params_.find(name);
}

namespace {
Transaction* effectiveTransaction(Database* db, Transaction* tr, const QString& sql) {
    if (tr) return tr;
    if (db && db->defaultTransaction()) return db->defaultTransaction();
    throw Error::configuration(QStringLiteral("No transaction for statement: %1").arg(sql));
}
} // namespace

void Query::prepare() {
    if (stmt_ && stmt_->valid()) return;
    stmt_.reset();
    if (!db_ && tr_) db_ = tr_->database();
    if (!db_) throw Error::configuration(QStringLiteral("No database for statement: %1").arg(sql_));
    Transaction* tr = effectiveTransaction(db_, tr_, sql_);
    if (!tr_ && tr)
        connect(
            tr, &Transaction::ending, this, [this] { close(); }, Qt::UniqueConnection);
    stmt_ = std::make_unique<Statement>(db_, tr, sql_);
}

bool Query::prepared() const {
    return stmt_ != nullptr;
}

// The current row of a cursor or exec()'s output row lives in the statement's output buffer.
void Query::exec() {
    prepare();
    Transaction* tr = effectiveTransaction(db_, tr_, sql_);
    stmt_->bind(params_, tr);
    if (stmt_->hasCursor()) {
        stmt_->openCursor(tr);
        std::vector<char>& row = rowBuf_;
        row.assign(std::max(1u, stmt_->messageLength()), 0);
        rowValid_ = stmt_->fetch(row.data());
        stmt_->closeCursor();
    } else {
        stmt_->execute(tr);
        rowBuf_.assign(stmt_->outputRow(), stmt_->outputRow() + stmt_->messageLength());
        rowValid_ = !stmt_->columns().empty();
    }
}

void Query::open() {
    prepare();
    Transaction* tr = effectiveTransaction(db_, tr_, sql_);
    stmt_->bind(params_, tr);
    stmt_->openCursor(tr);
    rowBuf_.assign(std::max(1u, stmt_->messageLength()), 0);
    rowValid_ = false;
}

bool Query::next() {
    if (!stmt_ || !stmt_->cursorOpen()) {
        rowValid_ = false;
        return false;
    }
    rowValid_ = stmt_->fetch(rowBuf_.data());
    return rowValid_;
}

void Query::close() {
    if (stmt_) stmt_->closeCursor();
}

bool Query::isOpen() const {
    return stmt_ && stmt_->cursorOpen();
}

int Query::columnCount() const {
    return stmt_ ? int(stmt_->columns().size()) : 0;
}

QString Query::columnName(int i) const {
    return stmt_ ? stmt_->columns()[size_t(i)].name : QString();
}

QVariant Query::value(int i) const {
    if (!stmt_ || !rowValid_ || i < 0 || i >= columnCount()) return {};
    return stmt_->decode(rowBuf_.data(), i, effectiveTransaction(db_, tr_, sql_));
}

QVariant Query::value(const QString& column) const {
    const int i = stmt_ ? stmt_->columnIndex(column) : -1;
    if (i < 0)
        throw Error::configuration(
            QStringLiteral("Column \"%1\" not found in statement: %2").arg(column, sql_.simplified()));
    return value(i);
}

int Query::rowsAffected() const {
    return stmt_ ? int(stmt_->affectedRecords()) : 0;
}

quint64 Query::prepareCount() {
    return Statement::prepareCount();
}

} // namespace frames::db
