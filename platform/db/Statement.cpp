#include "platform/db/Statement.h"
#include "platform/db/AnswerWatch.h"
#include "platform/db/Charset.h"
#include "platform/db/Database.h"
#include "platform/db/FbCommon.h"
#include "platform/db/Transaction.h"
#include <atomic>
#include <climits>
#include <cmath>
#include <cstring>

namespace frames::db {

using namespace Firebird;

namespace {

std::atomic<quint64> g_prepares{0};

template <typename T> T load(const char* p) {
    T v;
    std::memcpy(&v, p, sizeof v);
    return v;
}

QString metaName(const char* name) {
    return name ? fromConnectionText(name, qsizetype(std::strlen(name))) : QString();
}

constexpr unsigned CS_NONE = 0, CS_OCTETS = 1, CS_UNICODE_FSS = 3, CS_UTF8 = 4, CS_WIN1251 = 52;

// Firebird reports a column declared with a collation with the collation's number in the high
// byte of its character set id (WIN1251 collate PXW_CYRL is 308, not 52): only the low byte names
// the set.
unsigned charSetOf(unsigned id) {
    return id & 0xFFu;
}

// Text columns come as they are in UTF8 and in WIN1251 (the databases' and the connection's own
// set, decoded on access by our codec: no conversion on the server, one byte a letter); any
// other set is asked for in UTF8. `cs` is a set without its collation (charSetOf).
bool fetchedAsIs(unsigned cs) {
    return cs == CS_OCTETS || cs == CS_UTF8 || cs == CS_NONE || cs == CS_WIN1251;
}

unsigned bytesPerChar(unsigned cs) {
    switch (cs) {
    case CS_UNICODE_FSS:
        return 3;
    case CS_UTF8:
        return 4;
    case 5:
    case 6:
    case 44:
    case 56:
    case 57:
    case 67:
    case 68:
        return 2; // far-east sets
    case 69:
        return 4; // GB18030
    default:
        return 1;
    }
}

FieldType fieldTypeOf(unsigned sqlType, int subType, int scale, unsigned cs) {
    switch (sqlType) {
    case SQL_SHORT:
        return scale < 0 ? FieldType::Numeric : FieldType::SmallInt;
    case SQL_LONG:
        return scale < 0 ? FieldType::Numeric : FieldType::Integer;
    case SQL_INT64:
        return scale < 0 ? FieldType::Numeric : FieldType::BigInt;
    case SQL_FLOAT:
        return FieldType::Float;
    case SQL_DOUBLE:
    case SQL_D_FLOAT:
        return FieldType::Double;
    case SQL_TEXT:
        return cs == CS_OCTETS ? FieldType::Binary : FieldType::Char;
    case SQL_VARYING:
        return cs == CS_OCTETS ? FieldType::Binary : FieldType::VarChar;
    case SQL_TYPE_DATE:
        return FieldType::Date;
    case SQL_TYPE_TIME:
        return FieldType::Time;
    case SQL_TIMESTAMP:
        return FieldType::Timestamp;
    case SQL_BOOLEAN:
        return FieldType::Boolean;
    case SQL_BLOB:
        return subType == 1 ? FieldType::TextBlob : FieldType::BinaryBlob;
    default:
        return FieldType::VarChar;
    }
}

ISC_DATE encodeDate(const QDate& d) {
    return fb::util()->encodeDate(unsigned(d.year()), unsigned(d.month()), unsigned(d.day()));
}
ISC_TIME encodeTime(const QTime& t) {
    return fb::util()->encodeTime(unsigned(t.hour()), unsigned(t.minute()), unsigned(t.second()),
                                  unsigned(t.msec()) * 10);
}
QDate decodeDate(ISC_DATE d) {
    unsigned y, m, day;
    fb::util()->decodeDate(d, &y, &m, &day);
    return QDate(int(y), int(m), int(day));
}
QTime decodeTime(ISC_TIME t) {
    unsigned h, m, s, f;
    fb::util()->decodeTime(t, &h, &m, &s, &f);
    return QTime(int(h), int(m), int(s), int(f / 10));
}

double pow10(int n) {
    static const double p[] = {1,    10,   100,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                               1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    return n >= 0 && n <= 18 ? p[n] : std::pow(10.0, n);
}

} // namespace

quint64 Statement::prepareCount() {
    return g_prepares.load();
}

QString Statement::context() const {
    return QStringLiteral("Statement: %1").arg(sql_);
}

Statement::Statement(Database* db, Transaction* tr, const QString& sql) : db_(db), sql_(sql) {
    if (!db || !db->handle())
        throw Error::configuration(QStringLiteral("Database is not open; statement: %1").arg(sql));
    if (!tr) throw Error::configuration(QStringLiteral("No transaction for statement: %1").arg(sql));
    scanned_ = ScannedSql::scan(sql);
    tr->ensureStarted();
    const QByteArray text = toConnectionText(scanned_.positionalSql, sql);
    att_ = db->handle();
    generation_ = db->generation();
    fb::Status st;
    try {
        const ServerWait wait(db);
        stmt_ = db->handle()->prepare(&st, tr->handle(), unsigned(text.size()), text.constData(), 3,
                                      IStatement::PREPARE_PREFETCH_METADATA);
        ++g_prepares;
        type_ = stmt_->getType(&st);
        inServer_ = stmt_->getInputMetadata(&st);
        IMessageMetadata* out = stmt_->getOutputMetadata(&st);
        // Text columns in other character sets are read as UTF8 (see fetchedAsIs).
        const unsigned n = out->getCount(&st);
        bool coerce = false;
        for (unsigned i = 0; i < n; ++i) {
            const unsigned t = out->getType(&st, i) & ~1u;
            const unsigned cs = charSetOf(out->getCharSet(&st, i));
            if ((t == SQL_TEXT || t == SQL_VARYING) && !fetchedAsIs(cs)) coerce = true;
        }
        if (coerce) {
            IMetadataBuilder* b = out->getBuilder(&st);
            for (unsigned i = 0; i < n; ++i) {
                const unsigned t = out->getType(&st, i) & ~1u;
                const unsigned cs = charSetOf(out->getCharSet(&st, i));
                if ((t == SQL_TEXT || t == SQL_VARYING) && !fetchedAsIs(cs)) {
                    const unsigned chars = out->getLength(&st, i) / bytesPerChar(cs);
                    b->setCharSet(&st, i, CS_UTF8);
                    b->setLength(&st, i, std::max(1u, chars) * 4);
                }
            }
            IMessageMetadata* m = b->getMetadata(&st);
            b->release();
            out->release();
            out = m;
        }
        outMeta_ = out;
        msgLen_ = out->getMessageLength(&st);
        cols_.resize(n);
        for (unsigned i = 0; i < n; ++i) {
            Column& c = cols_[i];
            c.sqlType = out->getType(&st, i) & ~1u;
            c.subType = out->getSubType(&st, i);
            c.length = out->getLength(&st, i);
            c.scale = out->getScale(&st, i);
            c.charSet = charSetOf(out->getCharSet(&st, i));
            c.offset = out->getOffset(&st, i);
            c.nullOffset = out->getNullOffset(&st, i);
            c.field = metaName(out->getField(&st, i));
            c.relation = metaName(out->getRelation(&st, i));
            QString name = metaName(out->getAlias(&st, i));
            if (name.isEmpty()) name = c.field;
            if (name.isEmpty()) name = QStringLiteral("F_%1").arg(i + 1);
            // Duplicate names (joins) get a number: NAME1, NAME2 ...
            QString unique = name;
            for (int k = 1; columnIndex(unique) >= 0 && columnIndex(unique) < int(i); ++k)
                unique = name + QString::number(k);
            c.name = unique;
            c.type = fieldTypeOf(c.sqlType, c.subType, c.scale, c.charSet);
            if (c.sqlType == SQL_TEXT || c.sqlType == SQL_VARYING)
                c.size = int(c.length / (c.charSet == CS_OCTETS ? 1 : bytesPerChar(c.charSet)));
            else
                c.size = int(c.length);
        }
        out_.assign(msgLen_ ? msgLen_ : 1, 0);
        initCompact();
    } catch (const FbException& e) {
        Error err = fb::toError(e.getStatus(), context());
        if (outMeta_) outMeta_->release();
        if (inServer_) inServer_->release();
        if (stmt_) stmt_->release();
        outMeta_ = inServer_ = nullptr;
        stmt_ = nullptr;
        throw err;
    }
}

Statement::~Statement() {
    closeCursor();
    if (in_) in_->release();
    if (inServer_) inServer_->release();
    if (outMeta_) outMeta_->release();
    if (stmt_) {
        try {
            fb::Status st;
            if (valid())
                stmt_->free(&st);
            else
                stmt_->release();
        } catch (const FbException&) {
            stmt_->release();
        }
    }
}

bool Statement::valid() const {
    return db_ && db_->handle() && db_->handle() == att_ && db_->generation() == generation_;
}

bool Statement::hasCursor() const {
    return type_ == isc_info_sql_stmt_select || type_ == isc_info_sql_stmt_select_for_upd;
}

int Statement::columnIndex(const QString& name) const {
    for (size_t i = 0; i < cols_.size(); ++i)
        if (cols_[i].name.compare(name, Qt::CaseInsensitive) == 0) return int(i);
    return -1;
}

void Statement::bind(const Params& params, Transaction* tr) {
    std::vector<QVariant> values;
    values.reserve(size_t(scanned_.names.size()));
    for (const QString& n : scanned_.names) {
        Param* p = params.find(n);
        values.push_back(p ? p->value() : QVariant());
    }
    bind(values, tr);
}

void Statement::bind(const std::vector<QVariant>& values, Transaction* tr) {
    fb::Status st;
    try {
        const unsigned n = inServer_->getCount(&st);
        if (in_) {
            in_->release();
            in_ = nullptr;
        }
        if (n == 0) {
            inBuf_.clear();
            return;
        }
        auto valueAt = [&](unsigned i) -> QVariant {
            if (i >= scanned_.positions.size()) return {};
            const size_t k = size_t(scanned_.positions[i]);
            return k < values.size() ? values[k] : QVariant();
        };
        // Pass 1: choose the wire type of each parameter.
        struct Choice {
            QVariant v;
            unsigned type = 0;
            int subType = 0, scale = 0;
            unsigned length = 0, charSet = 0;
            QByteArray bytes; // text / binary payload
        };
        std::vector<Choice> ch(n);
        IMetadataBuilder* b = fb::master()->getMetadataBuilder(&st, n);
        for (unsigned i = 0; i < n; ++i) {
            Choice& c = ch[i];
            c.v = valueAt(i);
            const unsigned srvType = inServer_->getType(&st, i) & ~1u;
            const bool isNull = !c.v.isValid() || c.v.isNull();
            if (isNull) {
                c.type = srvType;
                c.subType = inServer_->getSubType(&st, i);
                c.length = inServer_->getLength(&st, i);
                c.scale = inServer_->getScale(&st, i);
                c.charSet = inServer_->getCharSet(&st, i);
                c.v = QVariant();
            } else if (srvType == SQL_BLOB) {
                c.type = SQL_BLOB;
                c.subType = inServer_->getSubType(&st, i);
                c.charSet = inServer_->getCharSet(&st, i);
                c.length = sizeof(ISC_QUAD);
                if (c.v.typeId() == QMetaType::QByteArray) {
                    c.bytes = c.v.toByteArray();
                } else if (c.subType == 1 && c.charSet != CS_UTF8) {
                    // A text blob goes in the character set the server names for it.
                    c.bytes = toConnectionText(c.v.toString(), sql_);
                } else {
                    c.bytes = c.v.toString().toUtf8();
                }
            } else if (srvType == SQL_BOOLEAN && c.v.typeId() != QMetaType::QString) {
                c.type = SQL_BOOLEAN;
                c.length = 1;
                c.v = c.v.toBool();
            } else {
                switch (c.v.typeId()) {
                case QMetaType::Bool:
                    if (srvType == SQL_BOOLEAN || srvType == SQL_TEXT || srvType == SQL_VARYING ||
                        srvType == SQL_NULL) {
                        c.type = SQL_BOOLEAN;
                        c.length = 1;
                    } else { // 0/1 into numeric columns
                        c.type = SQL_INT64;
                        c.length = 8;
                        c.v = qlonglong(c.v.toBool() ? 1 : 0);
                    }
                    break;
                case QMetaType::Double:
                case QMetaType::Float:
                    c.type = SQL_DOUBLE;
                    c.length = 8;
                    break;
                case QMetaType::QDate:
                    c.type = SQL_TYPE_DATE;
                    c.length = sizeof(ISC_DATE);
                    break;
                case QMetaType::QTime:
                    c.type = SQL_TYPE_TIME;
                    c.length = sizeof(ISC_TIME);
                    break;
                case QMetaType::QDateTime:
                    c.type = SQL_TIMESTAMP;
                    c.length = sizeof(ISC_TIMESTAMP);
                    break;
                case QMetaType::QByteArray:
                    c.type = SQL_VARYING;
                    c.charSet = CS_OCTETS;
                    c.bytes = c.v.toByteArray();
                    c.length = unsigned(std::max<qsizetype>(1, c.bytes.size()));
                    break;
                default:
                    if (isIntegerValue(c.v)) {
                        c.type = SQL_INT64;
                        c.length = 8;
                    } else {
                        c.type = SQL_VARYING;
                        c.charSet = CS_UTF8;
                        c.bytes = c.v.toString().toUtf8();
                        c.length = unsigned(std::max<qsizetype>(1, c.bytes.size()));
                    }
                }
            }
            b->setType(&st, i, c.type | 1u);
            b->setSubType(&st, i, c.subType);
            b->setLength(&st, i, c.length);
            b->setCharSet(&st, i, c.charSet);
            b->setScale(&st, i, c.scale);
        }
        in_ = b->getMetadata(&st);
        b->release();
        inBuf_.assign(in_->getMessageLength(&st), 0);
        // Pass 2: write the values.
        for (unsigned i = 0; i < n; ++i) {
            Choice& c = ch[i];
            char* p = inBuf_.data() + in_->getOffset(&st, i);
            short* nullInd = reinterpret_cast<short*>(inBuf_.data() + in_->getNullOffset(&st, i));
            if (!c.v.isValid()) {
                *nullInd = -1;
                continue;
            }
            *nullInd = 0;
            switch (c.type) {
            case SQL_BLOB: {
                if (!valid())
                    throw Error::configuration(QStringLiteral("Database is closed; statement: %1").arg(sql_));
                tr->ensureStarted();
                ISC_QUAD id{};
                IBlob* blob = db_->handle()->createBlob(&st, tr->handle(), &id, 0, nullptr);
                try {
                    for (qsizetype off = 0; off < c.bytes.size(); off += 32768) {
                        const auto len = std::min<qsizetype>(32768, c.bytes.size() - off);
                        blob->putSegment(&st, unsigned(len), c.bytes.constData() + off);
                    }
                    blob->close(&st);
                } catch (...) {
                    blob->release();
                    throw;
                }
                std::memcpy(p, &id, sizeof id);
                break;
            }
            case SQL_BOOLEAN:
                *reinterpret_cast<FB_BOOLEAN*>(p) = c.v.toBool() ? FB_TRUE : FB_FALSE;
                break;
            case SQL_DOUBLE:
                *reinterpret_cast<double*>(p) = c.v.toDouble();
                break;
            case SQL_INT64:
                *reinterpret_cast<ISC_INT64*>(p) = c.v.toLongLong();
                break;
            case SQL_TYPE_DATE:
                *reinterpret_cast<ISC_DATE*>(p) = encodeDate(c.v.toDate());
                break;
            case SQL_TYPE_TIME:
                *reinterpret_cast<ISC_TIME*>(p) = encodeTime(c.v.toTime());
                break;
            case SQL_TIMESTAMP: {
                const QDateTime dt = c.v.toDateTime();
                ISC_TIMESTAMP ts{encodeDate(dt.date()), encodeTime(dt.time())};
                std::memcpy(p, &ts, sizeof ts);
                break;
            }
            case SQL_VARYING: {
                const ISC_USHORT len = ISC_USHORT(c.bytes.size());
                std::memcpy(p, &len, sizeof len);
                std::memcpy(p + sizeof len, c.bytes.constData(), size_t(len));
                break;
            }
            default:
                break;
            }
        }
    } catch (const FbException& e) {
        fb::rethrow(e, context());
    }
}

void Statement::openCursor(Transaction* tr) {
    closeCursor();
    tr->ensureStarted();
    fb::Status st;
    try {
        const ServerWait wait(db_);
        rs_ =
            stmt_->openCursor(&st, tr->handle(), in_, inBuf_.empty() ? nullptr : inBuf_.data(), outMeta_, 0);
    } catch (const FbException& e) {
        fb::rethrow(e, context());
    }
}

bool Statement::fetch(char* row) {
    if (!rs_) return false;
    if (!fetchStatus_) fetchStatus_ = std::make_unique<fb::Status>();
    try {
        const ServerWait wait(db_);
        if (rs_->fetchNext(fetchStatus_.get(), row) == IStatus::RESULT_OK) return true;
    } catch (const FbException& e) {
        Error err = fb::toError(e.getStatus(), context());
        closeCursor();
        throw err;
    }
    closeCursor();
    return false;
}

void Statement::closeCursor() {
    if (!rs_) return;
    IResultSet* rs = rs_;
    rs_ = nullptr;
    if (!valid()) { // its attachment is gone: nothing to tell the server
        rs->release();
        return;
    }
    try {
        fb::Status st;
        rs->close(&st);
    } catch (const FbException&) {
        rs->release();
    }
}

void Statement::execute(Transaction* tr) {
    closeCursor();
    tr->ensureStarted();
    fb::Status st;
    try {
        std::fill(out_.begin(), out_.end(), 0);
        const ServerWait wait(db_);
        stmt_->execute(&st, tr->handle(), in_, inBuf_.empty() ? nullptr : inBuf_.data(), outMeta_,
                       out_.data());
    } catch (const FbException& e) {
        fb::rethrow(e, context());
    }
}

qint64 Statement::affectedRecords() const {
    fb::Status st;
    try {
        return qint64(stmt_->getAffectedRecords(&st));
    } catch (const FbException& e) {
        fb::rethrow(e, context());
    }
}

QVariant Statement::decode(const char* row, int col, Transaction* tr) const {
    const Column& c = cols_[size_t(col)];
    if (load<short>(row + c.nullOffset)) return {};
    const char* p = row + c.offset;
    if (c.sqlType == SQL_VARYING) return decodeValue(c, p + sizeof(ISC_USHORT), load<ISC_USHORT>(p), tr);
    if (c.sqlType == SQL_TEXT) {
        qsizetype len = qsizetype(c.length);
        if (c.charSet != CS_OCTETS)
            while (len > 0 && p[len - 1] == ' ') --len;
        return decodeValue(c, p, len, tr);
    }
    return decodeValue(c, p, 0, tr);
}

void Statement::initCompact() {
    const size_t n = cols_.size();
    compactOffsets_.resize(n);
    size_t off = n; // one null flag per column first
    for (size_t i = 0; i < n; ++i) {
        compactOffsets_[i] = unsigned(off);
        const Column& c = cols_[i];
        const bool var = c.sqlType == SQL_VARYING || (c.sqlType == SQL_TEXT && c.charSet != CS_OCTETS);
        off += var ? 2 * sizeof(quint32) : c.length;
    }
    compactFixed_ = unsigned(off);
}

size_t Statement::compactSize(const char* msg) const {
    size_t size = compactFixed_;
    for (const Column& c : cols_) {
        if (load<short>(msg + c.nullOffset)) continue;
        const char* p = msg + c.offset;
        if (c.sqlType == SQL_VARYING)
            size += load<ISC_USHORT>(p);
        else if (c.sqlType == SQL_TEXT && c.charSet != CS_OCTETS)
            size += c.length;
    }
    return size;
}

size_t Statement::compact(const char* msg, char* out) const {
    size_t var = compactFixed_;
    const size_t n = cols_.size();
    for (size_t i = 0; i < n; ++i) {
        const Column& c = cols_[i];
        const bool isNull = load<short>(msg + c.nullOffset) != 0;
        out[i] = isNull ? 1 : 0;
        char* slot = out + compactOffsets_[i];
        const char* p = msg + c.offset;
        if (c.sqlType == SQL_VARYING || (c.sqlType == SQL_TEXT && c.charSet != CS_OCTETS)) {
            quint32 len = 0;
            const char* src = p;
            if (!isNull) {
                if (c.sqlType == SQL_VARYING) {
                    len = load<ISC_USHORT>(p);
                    src = p + sizeof(ISC_USHORT);
                } else {
                    len = c.length;
                    while (len > 0 && p[len - 1] == ' ') --len;
                }
                std::memcpy(out + var, src, len);
            }
            const quint32 at = quint32(var);
            std::memcpy(slot, &at, sizeof at);
            std::memcpy(slot + sizeof at, &len, sizeof len);
            var += len;
        } else if (!isNull) {
            std::memcpy(slot, p, c.length);
        }
    }
    return var;
}

QVariant Statement::decodeCompact(const char* row, int col, Transaction* tr) const {
    if (row[col]) return {};
    const Column& c = cols_[size_t(col)];
    const char* slot = row + compactOffsets_[size_t(col)];
    if (c.sqlType == SQL_VARYING || (c.sqlType == SQL_TEXT && c.charSet != CS_OCTETS))
        return decodeValue(c, row + load<quint32>(slot), load<quint32>(slot + sizeof(quint32)), tr);
    return decodeValue(c, slot, qsizetype(c.length), tr);
}

QString Statement::numericTextCompact(const char* row, int col) const {
    const Column& c = cols_[size_t(col)];
    if (c.scale >= 0) return {};
    if (row[col]) return QStringLiteral("");
    return numericTextAt(c, row + compactOffsets_[size_t(col)]);
}

QVariant Statement::decodeValue(const Column& c, const char* p, qsizetype textLen, Transaction* tr) const {
    auto scaled = [&](double raw) -> QVariant {
        if (c.scale < 0) return raw / pow10(-c.scale);
        return raw;
    };
    switch (c.sqlType) {
    case SQL_SHORT: {
        const ISC_SHORT v = load<ISC_SHORT>(p);
        return c.scale < 0 ? scaled(v) : QVariant(int(v));
    }
    case SQL_LONG: {
        const ISC_LONG v = load<ISC_LONG>(p);
        return c.scale < 0 ? scaled(v) : QVariant(int(v));
    }
    case SQL_INT64: {
        const ISC_INT64 v = load<ISC_INT64>(p);
        return c.scale < 0 ? scaled(double(v)) : QVariant(qlonglong(v));
    }
    case SQL_FLOAT:
        return double(load<float>(p));
    case SQL_DOUBLE:
    case SQL_D_FLOAT:
        return load<double>(p);
    case SQL_TEXT:
    case SQL_VARYING:
        if (c.charSet == CS_OCTETS) return QByteArray(p, textLen);
        if (c.charSet == CS_WIN1251) return fromConnectionText(p, textLen);
        return QString::fromUtf8(p, textLen);
    case SQL_TYPE_DATE:
        return decodeDate(load<ISC_DATE>(p));
    case SQL_TYPE_TIME:
        return decodeTime(load<ISC_TIME>(p));
    case SQL_TIMESTAMP: {
        const ISC_TIMESTAMP ts = load<ISC_TIMESTAMP>(p);
        return QDateTime(decodeDate(ts.timestamp_date), decodeTime(ts.timestamp_time));
    }
    case SQL_BOOLEAN:
        return load<FB_BOOLEAN>(p) != 0;
    case SQL_BLOB: {
        const ISC_QUAD id = load<ISC_QUAD>(p);
        // A blob belongs to the database, not to the attachment: rows read before a reconnect
        // still read theirs.
        if (!db_ || !db_->handle())
            throw Error::configuration(QStringLiteral("Database is closed; statement: %1").arg(sql_));
        tr->ensureStarted();
        QByteArray data;
        fb::Status st;
        try {
            IBlob* blob = db_->handle()->openBlob(&st, tr->handle(), const_cast<ISC_QUAD*>(&id), 0, nullptr);
            try {
                char buf[32768];
                for (;;) {
                    unsigned got = 0;
                    const int r = blob->getSegment(&st, sizeof buf, buf, &got);
                    if (r == IStatus::RESULT_NO_DATA) break;
                    data.append(buf, qsizetype(got));
                }
                blob->close(&st);
            } catch (...) {
                blob->release();
                throw;
            }
        } catch (const FbException& e) {
            fb::rethrow(e, context());
        }
        if (c.subType == 1) return c.charSet == CS_UTF8 ? QString::fromUtf8(data) : fromConnectionText(data);
        return data;
    }
    default:
        return {};
    }
}

QString Statement::numericText(const char* row, int col) const {
    const Column& c = cols_[size_t(col)];
    if (c.scale >= 0) return {};
    if (load<short>(row + c.nullOffset)) return QStringLiteral("");
    return numericTextAt(c, row + c.offset);
}

QString Statement::numericTextAt(const Column& c, const char* p) {
    qint64 v;
    switch (c.sqlType) {
    case SQL_SHORT:
        v = load<ISC_SHORT>(p);
        break;
    case SQL_LONG:
        v = load<ISC_LONG>(p);
        break;
    case SQL_INT64:
        v = load<ISC_INT64>(p);
        break;
    default:
        return {};
    }
    const bool neg = v < 0;
    // Magnitude as unsigned so that the minimum int64 formats too.
    const quint64 mag = neg ? quint64(0) - quint64(v) : quint64(v);
    QString digits = QString::number(mag);
    const int scale = -c.scale;
    if (digits.size() <= scale) digits = QString(scale - digits.size() + 1, QChar('0')) + digits;
    digits.insert(digits.size() - scale, QChar('.'));
    return neg ? QStringLiteral("-") + digits : digits;
}

// ---- conversions

QVariant convertForField(FieldType type, int scale, const QVariant& v, const QString& fieldName) {
    if (!v.isValid() || v.isNull()) return {};
    const bool isText = v.typeId() == QMetaType::QString;
    const QString s = isText ? v.toString().trimmed() : QString();
    auto fail = [&]() -> Error {
        return Error::configuration(
            QStringLiteral("\"%1\" is not a valid value for field %2").arg(v.toString(), fieldName));
    };
    switch (type) {
    case FieldType::SmallInt:
    case FieldType::Integer:
    case FieldType::BigInt: {
        if (isText) {
            if (s.isEmpty()) return {};
            qint64 x = 0;
            if (!parseInteger(s, x)) throw fail(); // "1\0 or 1=1" is no number
            if (type != FieldType::BigInt && (x < INT_MIN || x > INT_MAX)) throw fail();
            return type == FieldType::BigInt ? QVariant(qlonglong(x)) : QVariant(int(x));
        }
        if (v.typeId() == QMetaType::Bool)
            return type == FieldType::BigInt ? QVariant(qlonglong(v.toBool())) : QVariant(int(v.toBool()));
        bool ok = false;
        if (v.typeId() == QMetaType::Double || v.typeId() == QMetaType::Float) {
            const double d = std::round(v.toDouble());
            return type == FieldType::BigInt ? QVariant(qlonglong(d)) : QVariant(int(d));
        }
        const qlonglong x = v.toLongLong(&ok);
        if (!ok) throw fail();
        return type == FieldType::BigInt ? QVariant(x) : QVariant(int(x));
    }
    case FieldType::Numeric:
    case FieldType::Float:
    case FieldType::Double: {
        bool ok = false;
        double d;
        if (isText) {
            if (s.isEmpty()) return {};
            QString t = s;
            t.replace(',', '.');
            t.remove(' ');
            d = t.toDouble(&ok);
        } else {
            d = v.toDouble(&ok);
        }
        if (!ok) throw fail();
        if (type == FieldType::Numeric && scale > 0) d = std::round(d * pow10(scale)) / pow10(scale);
        return d;
    }
    case FieldType::Char:
    case FieldType::VarChar:
    case FieldType::TextBlob:
        if (v.typeId() == QMetaType::QByteArray) return QString::fromUtf8(v.toByteArray());
        if (v.typeId() == QMetaType::QDate) return v.toDate().toString(Qt::ISODate);
        return v.toString();
    case FieldType::Binary:
    case FieldType::BinaryBlob:
        if (isText) return v.toString().toUtf8();
        return v.toByteArray();
    case FieldType::Date: {
        if (v.typeId() == QMetaType::QDate) return v;
        if (v.typeId() == QMetaType::QDateTime) return v.toDateTime().date();
        if (isText) {
            if (s.isEmpty()) return {};
            for (const char* f : {"yyyy-MM-dd", "dd.MM.yyyy", "d.M.yyyy", "dd.MM.yy"}) {
                QDate d = QDate::fromString(s, QLatin1String(f));
                if (d.isValid()) {
                    if (QLatin1String(f) == QLatin1String("dd.MM.yy") && d.year() < 1950) d = d.addYears(100);
                    return d;
                }
            }
            const QDateTime dt = QDateTime::fromString(s, Qt::ISODate);
            if (dt.isValid()) return dt.date();
        }
        throw fail();
    }
    case FieldType::Time: {
        if (v.typeId() == QMetaType::QTime) return v;
        if (v.typeId() == QMetaType::QDateTime) return v.toDateTime().time();
        if (isText) {
            if (s.isEmpty()) return {};
            for (const char* f : {"HH:mm:ss.zzz", "HH:mm:ss", "HH:mm", "H:mm"}) {
                const QTime t = QTime::fromString(s, QLatin1String(f));
                if (t.isValid()) return t;
            }
        }
        throw fail();
    }
    case FieldType::Timestamp: {
        if (v.typeId() == QMetaType::QDateTime) return v;
        if (v.typeId() == QMetaType::QDate) return QDateTime(v.toDate(), QTime(0, 0));
        if (isText) {
            if (s.isEmpty()) return {};
            for (const char* f :
                 {"yyyy-MM-dd HH:mm:ss.zzz", "yyyy-MM-dd HH:mm:ss", "yyyy-MM-ddTHH:mm:ss", "yyyy-MM-dd HH:mm",
                  "yyyy-MM-dd", "dd.MM.yyyy HH:mm:ss", "dd.MM.yyyy HH:mm", "dd.MM.yyyy"}) {
                QDateTime dt = QDateTime::fromString(s, QLatin1String(f));
                if (dt.isValid()) return dt;
            }
        }
        throw fail();
    }
    case FieldType::Boolean: {
        if (isText) {
            const QString l = s.toLower();
            if (l.isEmpty()) return {};
            if (l == "1" || l == "true" || l == "t" || l == "yes" || l == "y") return true;
            if (l == "0" || l == "false" || l == "f" || l == "no" || l == "n") return false;
            throw fail();
        }
        return v.toBool();
    }
    }
    return v;
}

} // namespace frames::db
