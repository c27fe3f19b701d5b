#include "platform/db/DataSet.h"
#include "platform/db/Database.h"
#include "platform/db/Statement.h"
#include "platform/db/Transaction.h"
#include <QRegularExpression>
#include <QSet>
#include <unordered_map>

namespace frames::db {

// Fetched rows are kept as raw bytes in large chunks (see Statement::compact) and decoded on
// access; posted and inserted rows are kept decoded in an overlay.
struct DataSet::Rows {
    static constexpr size_t chunkSize = size_t(1) << 20;
    std::vector<std::unique_ptr<char[]>> chunks;
    size_t used = chunkSize; // bytes used in the last chunk
    std::vector<const char*> rows;
    int fetched = 0;
    int extra = 0; // inserted rows: physical rows fetched .. fetched + extra - 1
    std::unordered_map<int, std::vector<QVariant>> overlay;

    const char* row(int r) const { return rows[size_t(r)]; }
    void add(const Statement& st, const char* msg) {
        const size_t size = st.compactSize(msg);
        if (used + size > chunkSize || chunks.empty()) {
            chunks.emplace_back(new char[std::max(chunkSize, size)]);
            used = 0;
        }
        char* out = chunks.back().get() + used;
        used += (st.compact(msg, out) + 7) & ~size_t(7);
        rows.push_back(out);
        ++fetched;
    }
};

DataSet::DataSet(QObject* parent) : AbstractDataSet(parent) {}

DataSet::DataSet(Database* db, Transaction* tr, QObject* parent)
    : AbstractDataSet(parent), db_(db), tr_(tr) {}

DataSet::~DataSet() = default;

void DataSet::setDatabase(Database* db) {
    if (db == db_) return;
    close();
    stmt_.reset();
    modifyStmts_.clear();
    db_ = db;
}

void DataSet::setTransaction(Transaction* tr) {
    tr_ = tr;
}

void DataSet::setSelectSql(const QString& s) {
    if (s == select_) return;
    select_ = s;
    params_.rebuild(ScannedSql::scan(s).names);
    if (!active()) stmt_.reset();
}

Param* DataSet::paramByName(const QString& name) {
    return params_.byName(name, select_);
}
Param* DataSet::findParam(const QString& name) {
    return params_.find(name);
}

QString DataSet::description() const {
    QString sql = select_.simplified();
    if (sql.size() > 300) sql = sql.left(300) + QStringLiteral("...");
    return QStringLiteral("%1 (%2)").arg(objectName().isEmpty() ? QStringLiteral("DataSet") : objectName(),
                                         sql);
}

Transaction* DataSet::readTransaction() const {
    if (tr_) return tr_;
    if (db_ && db_->defaultTransaction()) return db_->defaultTransaction();
    throw Error::configuration(QStringLiteral("No transaction for dataset %1").arg(description()));
}

Transaction* DataSet::writeTransaction() const {
    if (Transaction* t = updateTransaction()) return t;
    return readTransaction();
}

void DataSet::prepare() {
    // Rows of an open dataset are decoded through its statement: keep it while open.
    if (stmt_ && stmt_->valid() && (stmt_->sql() == select_ || active())) return;
    if (!db_ && tr_) db_ = tr_->database();
    if (!db_) throw Error::configuration(QStringLiteral("No database for dataset %1").arg(description()));
    if (select_.trimmed().isEmpty())
        throw Error::configuration(QStringLiteral("Dataset %1 has no select statement").arg(description()));
    stmt_.reset();
    stmt_ = std::make_unique<Statement>(db_, readTransaction(), select_);
}

void DataSet::doOpen() {
    prepare();
    Transaction* tr = readTransaction();
    Statement& st = *stmt_;
    st.bind(params_, tr);
    for (const Column& c : st.columns()) addField(c.name, c.type, c.size, -c.scale);
    auto rows = std::make_unique<Rows>();
    std::vector<char> msg(std::max(1u, st.messageLength()));
    st.openCursor(tr);
    try {
        while (st.fetch(msg.data())) rows->add(st, msg.data());
    } catch (...) {
        st.closeCursor();
        throw;
    }
    rows_ = std::move(rows);
}

void DataSet::doClose() {
    if (stmt_) stmt_->closeCursor();
    rows_.reset();
}

int DataSet::storageCount() const {
    return rows_ ? rows_->fetched + rows_->extra : 0;
}

QVariant DataSet::storageValue(int physRow, int column) const {
    if (!rows_) return {};
    if (!rows_->overlay.empty()) {
        auto it = rows_->overlay.find(physRow);
        if (it != rows_->overlay.end())
            return size_t(column) < it->second.size() ? it->second[size_t(column)] : QVariant();
    }
    if (physRow < 0 || physRow >= rows_->fetched) return {};
    return stmt_->decodeCompact(rows_->row(physRow), column, readTransaction());
}

QString DataSet::storageNumericText(int physRow, int column) const {
    if (!rows_ || physRow < 0 || physRow >= rows_->fetched) return {};
    if (!rows_->overlay.empty() && rows_->overlay.count(physRow)) return {};
    return stmt_->numericTextCompact(rows_->row(physRow), column);
}

Statement* DataSet::cachedStatement(const QString& sql, Transaction* tr) {
    std::erase_if(modifyStmts_, [](const auto& s) { return !s->valid(); });
    for (auto& s : modifyStmts_)
        if (s->sql() == sql) return s.get();
    if (!db_) throw Error::configuration(QStringLiteral("No database for dataset %1").arg(description()));
    modifyStmts_.push_back(std::make_unique<Statement>(db_, tr, sql));
    if (modifyStmts_.size() > 8) modifyStmts_.erase(modifyStmts_.begin());
    return modifyStmts_.back().get();
}

std::vector<QVariant> DataSet::modifyValues(const Statement& st, const std::vector<QVariant>& old,
                                            const std::vector<QVariant>& values) const {
    std::vector<QVariant> r;
    for (const QString& name : st.scanned().names) {
        QVariant v;
        bool found = false;
        if (name.startsWith(QStringLiteral("OLD_"), Qt::CaseInsensitive)) {
            if (const Field* f = findField(name.mid(4))) {
                v = size_t(f->index()) < old.size() ? old[size_t(f->index())] : QVariant();
                found = true;
            }
        }
        // "new_" names the value being written, as "old_" names the value as it was read.
        if (!found && name.startsWith(QStringLiteral("NEW_"), Qt::CaseInsensitive) && !findField(name)) {
            if (const Field* f = findField(name.mid(4))) {
                v = size_t(f->index()) < values.size() ? values[size_t(f->index())] : QVariant();
                found = true;
            }
        }
        if (!found) {
            if (const Field* f = findField(name)) {
                v = size_t(f->index()) < values.size() ? values[size_t(f->index())] : QVariant();
                found = true;
            }
        }
        if (!found) {
            if (const Param* p = params_.find(name)) v = p->value();
        }
        r.push_back(v);
    }
    return r;
}

qint64 DataSet::runModify(const QString& sql, const std::vector<QVariant>& old,
                          const std::vector<QVariant>& values, std::vector<QVariant>* returning) {
    Transaction* tr = writeTransaction();
    tr->ensureStarted();
    Statement* st = cachedStatement(sql, tr);
    st->bind(modifyValues(*st, old, values), tr);
    if (st->hasCursor()) { // a selectable procedure used to modify: run it, ignore its rows
        st->openCursor(tr);
        std::vector<char> row(std::max(1u, st->messageLength()));
        bool got = st->fetch(row.data());
        st->closeCursor();
        if (!got) return -1;
        if (returning)
            for (size_t i = 0; i < st->columns().size(); ++i)
                if (const Field* f = findField(st->columns()[i].name))
                    (*returning)[size_t(f->index())] = st->decode(row.data(), int(i), tr);
        return -1;
    }
    st->execute(tr);
    if (returning)
        for (size_t i = 0; i < st->columns().size(); ++i)
            if (const Field* f = findField(st->columns()[i].name))
                (*returning)[size_t(f->index())] = st->decode(st->outputRow(), int(i), tr);
    // Rows an update or delete touched; -1 for anything else (a procedure, an insert).
    static const QRegularExpression modifying(QStringLiteral("^\\s*(update|delete)\\b"),
                                              QRegularExpression::CaseInsensitiveOption);
    return modifying.match(sql).hasMatch() ? st->affectedRecords() : -1;
}

int DataSet::storePost(int physRow, const std::vector<QVariant>& oldValues,
                       const std::vector<QVariant>& newValues) {
    std::vector<QVariant> stored = newValues;
    if (physRow < 0) {
        if (!insert_.trimmed().isEmpty()) runModify(insert_, oldValues, newValues, &stored);
        const int phys = rows_->fetched + rows_->extra;
        ++rows_->extra;
        rows_->overlay[phys] = std::move(stored);
        return phys;
    }
    if (!update_.trimmed().isEmpty()) {
        const qint64 changed = runModify(update_, oldValues, newValues, &stored);
        // An update that finds no row: the row is gone, or (when its where clause compares the
        // values as read) another user changed it since it was read. Nothing was written.
        if (changed == 0)
            throw Error(Error::Kind::RecordChanged, Error::recordChangedText(),
                        QStringLiteral("Statement: %1").arg(update_), {}, 0);
    }
    rows_->overlay[physRow] = std::move(stored);
    return physRow;
}

void DataSet::storeDelete(int physRow) {
    if (delete_.trimmed().isEmpty()) return;
    std::vector<QVariant> values(static_cast<size_t>(fieldCount()));
    for (int i = 0; i < fieldCount(); ++i) values[size_t(i)] = storageValue(physRow, i);
    runModify(delete_, values, values, nullptr);
}

std::vector<QVariant> DataSet::readCurrentRow() {
    if (!active() || recNo() < 0 || refresh_.trimmed().isEmpty()) return {};
    Transaction* tr = readTransaction();
    Statement* st = cachedStatement(refresh_, tr);
    std::vector<QVariant> values = inEditMode() ? originalValues() : std::vector<QVariant>{};
    // Blobs of the row as read are read from the server only when needed: once another user
    // changed the row, the old blob may be gone already.
    std::vector<bool> pending(size_t(fieldCount()), false);
    const int phys = physicalRow(recNo());
    if (values.empty()) {
        values.resize(size_t(fieldCount()));
        QSet<int> needed;
        for (const QString& name : st->scanned().names) {
            const Field* f = findField(name);
            if (!f && name.startsWith(QStringLiteral("OLD_"), Qt::CaseInsensitive))
                f = findField(name.mid(4));
            if (f) needed.insert(f->index());
        }
        for (int i = 0; i < fieldCount(); ++i) {
            const FieldType t = field(i)->dataType();
            if ((t == FieldType::TextBlob || t == FieldType::BinaryBlob) && !needed.contains(i))
                pending[size_t(i)] = true;
            else
                values[size_t(i)] = storageValue(phys, i);
        }
    }
    st->bind(modifyValues(*st, values, values), tr);
    st->openCursor(tr);
    std::vector<char> row(std::max(1u, st->messageLength()));
    const bool got = st->fetch(row.data());
    st->closeCursor();
    if (!got) return {};
    for (size_t i = 0; i < st->columns().size(); ++i)
        if (const Field* f = findField(st->columns()[i].name)) {
            values[size_t(f->index())] = convertForField(f->dataType(), f->scale(),
                                                         st->decode(row.data(), int(i), tr), f->fieldName());
            pending[size_t(f->index())] = false;
        }
    for (int i = 0; i < fieldCount(); ++i)
        if (pending[size_t(i)]) values[size_t(i)] = storageValue(phys, i);
    return values;
}

void DataSet::refreshRecord() {
    if (!active()) return;
    if (inEditMode()) cancel();
    if (recNo() < 0) return;
    if (refresh_.trimmed().isEmpty()) {
        reopen(true);
        return;
    }
    std::vector<QVariant> values = readCurrentRow();
    if (values.empty()) return;
    rows_->overlay[physicalRow(recNo())] = std::move(values);
    currentRowChanged();
}

} // namespace frames::db
