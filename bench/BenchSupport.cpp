#include "bench/BenchSupport.h"
#include "frames/core/Host.h"
#include "host/HostImpl.h"
#include "platform/db/Charset.h"
#include "platform/db/DataSet.h"
#include "platform/db/Database.h"
#include "platform/db/Params.h"
#include "platform/db/Transaction.h"
#include "schema/DemoDatabase.h"
#include <QApplication>
#include <QFile>
#include <QRegularExpression>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlQueryModel>
#include <QTemporaryDir>
#include <chrono>
#include <cstring>
#include <ctime>
#include <firebird/Interface.h>
#include <map>
#include <vector>

namespace frames::bench {

Stamp Stamp::now() {
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    const double wall =
        std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    return {double(ts.tv_sec) + double(ts.tv_nsec) * 1e-9, wall};
}

void Tally::report(benchmark::State& state) const {
    const double n = double(std::max<benchmark::IterationCount>(1, state.iterations()));
    state.counters["cpu_ms"] = ours.cpu * 1000 / n;
    state.counters["wall_ms"] = ours.wall * 1000 / n;
    if (hasRaw) {
        const double rn = rawRuns > 0 ? double(rawRuns) : n;
        state.counters["raw_cpu_ms"] = raw.cpu * 1000 / rn;
        state.counters["raw_wall_ms"] = raw.wall * 1000 / rn;
        state.counters["ratio_raw"] = raw.cpu > 0 ? (ours.cpu / n) / (raw.cpu / rn) : 0;
        state.counters["ratio_raw_wall"] = raw.wall > 0 ? (ours.wall / n) / (raw.wall / rn) : 0;
    }
    if (hasQt) {
        state.counters["qt_cpu_ms"] = qt.cpu * 1000 / n;
        state.counters["ratio_qt"] = qt.cpu > 0 ? ours.cpu / qt.cpu : 0;
    }
}

RawStatement rawStatementOf(db::DataSet* ds) {
    const db::ScannedSql scanned = db::ScannedSql::scan(ds->selectSql());
    RawStatement r{scanned.positionalSql, {}};
    for (const int i : scanned.positions) {
        const db::Param* p =
            i >= 0 && i < scanned.names.size() ? ds->params().find(scanned.names[i]) : nullptr;
        r.params.push_back(p ? p->value() : QVariant());
    }
    return r;
}

namespace {

using namespace Firebird;

[[noreturn]] void fail(IMaster* master, const FbException& e, const QString& context) {
    char msg[512];
    master->getUtilInterface()->formatStatus(msg, sizeof msg, e.getStatus());
    throw db::Error::configuration(QStringLiteral("%1: %2").arg(context, QString::fromLocal8Bit(msg)));
}

// A parameter's value as the text a hand-written loop would pass.
QByteArray paramText(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::QDate:
        return v.toDate().toString(Qt::ISODate).toUtf8();
    case QMetaType::QDateTime:
        return v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz")).toUtf8();
    case QMetaType::QTime:
        return v.toTime().toString(QStringLiteral("HH:mm:ss.zzz")).toUtf8();
    case QMetaType::Bool:
        return v.toBool() ? "1" : "0";
    default:
        return v.toString().toUtf8();
    }
}

} // namespace

long rawFetch(db::Database* database, db::Transaction* tr, const RawStatement& statement) {
    IMaster* master = fb_get_master_interface();
    ThrowStatusWrapper status(master->getStatus());
    const QByteArray text = db::toConnectionText(statement.sql, statement.sql);
    long rows = 0;
    quint64 sum = 0;
    try {
        IStatement* stmt =
            database->handle()->prepare(&status, tr->handle(), unsigned(text.size()), text.constData(), 3,
                                        IStatement::PREPARE_PREFETCH_METADATA);
        // Parameters go as UTF8 text; the server converts them to the types it expects.
        IMessageMetadata* in = nullptr;
        std::vector<unsigned char> inBuffer;
        if (!statement.params.empty()) {
            IMessageMetadata* described = stmt->getInputMetadata(&status);
            IMetadataBuilder* b = described->getBuilder(&status);
            described->release();
            for (unsigned i = 0; i < unsigned(statement.params.size()); ++i) {
                b->setType(&status, i, SQL_VARYING + 1);
                b->setSubType(&status, i, 0);
                b->setScale(&status, i, 0);
                b->setCharSet(&status, i, 4 /* UTF8 */);
                b->setLength(&status, i, 1024);
            }
            in = b->getMetadata(&status);
            b->release();
            inBuffer.assign(in->getMessageLength(&status), 0);
            for (unsigned i = 0; i < unsigned(statement.params.size()); ++i) {
                const QVariant& v = statement.params[i];
                auto* isNull = reinterpret_cast<short*>(inBuffer.data() + in->getNullOffset(&status, i));
                *isNull = !v.isValid() || v.isNull() ? -1 : 0;
                if (*isNull) continue;
                const QByteArray value = paramText(v).left(1024);
                unsigned char* p = inBuffer.data() + in->getOffset(&status, i);
                *reinterpret_cast<unsigned short*>(p) = static_cast<unsigned short>(value.size());
                std::memcpy(p + 2, value.constData(), size_t(value.size()));
            }
        }
        IMessageMetadata* meta = stmt->getOutputMetadata(&status);
        const unsigned n = meta->getCount(&status);
        struct Col {
            unsigned type, offset, nullOffset, length;
        };
        std::vector<Col> cols(n);
        for (unsigned i = 0; i < n; ++i)
            cols[i] = {meta->getType(&status, i) & ~1u, meta->getOffset(&status, i),
                       meta->getNullOffset(&status, i), meta->getLength(&status, i)};
        std::vector<unsigned char> buffer(meta->getMessageLength(&status));
        IResultSet* rs = stmt->openCursor(&status, tr->handle(), in, in ? inBuffer.data() : nullptr, meta, 0);
        while (rs->fetchNext(&status, buffer.data()) == IStatus::RESULT_OK) {
            ++rows;
            for (const Col& c : cols) {
                const unsigned char* p = buffer.data() + c.offset;
                if (*reinterpret_cast<const short*>(buffer.data() + c.nullOffset)) continue;
                unsigned len = c.length;
                if (c.type == SQL_VARYING) {
                    len = *reinterpret_cast<const unsigned short*>(p);
                    p += 2;
                }
                for (unsigned k = 0; k < len; ++k) sum += p[k];
            }
        }
        rs->close(&status);
        meta->release();
        if (in) in->release();
        stmt->free(&status);
    } catch (const FbException& e) {
        status.dispose();
        fail(master, e, statement.sql.left(200));
    }
    status.dispose();
    benchmark::DoNotOptimize(sum);
    return rows;
}

BuildTimes rawDemoBuild(const QString& path, bool forcedWrites) {
    const QList<schema::BuildStep> steps = schema::buildSteps();
    static const QRegularExpression dataChange(QStringLiteral("^(insert|update|delete|execute\\s+block)\\s"),
                                               QRegularExpression::CaseInsensitiveOption);
    BuildTimes times;
    IMaster* master = fb_get_master_interface();
    ThrowStatusWrapper status(master->getStatus());
    const QByteArray file = path.toUtf8();
    IProvider* prov = master->getDispatcher();
    IXpbBuilder* dpb = nullptr;
    try {
        auto attach = [&](bool create, int fw) {
            dpb = master->getUtilInterface()->getXpbBuilder(&status, IXpbBuilder::DPB, nullptr, 0);
            dpb->insertString(&status, isc_dpb_user_name, "SYSDBA");
            dpb->insertString(&status, isc_dpb_password, "masterkey");
            dpb->insertString(&status, isc_dpb_lc_ctype, "WIN1251");
            if (create) {
                dpb->insertInt(&status, isc_dpb_page_size, 8192);
                dpb->insertString(&status, isc_dpb_set_db_charset, "WIN1251");
                dpb->insertInt(&status, isc_dpb_sql_dialect, 3);
            }
            dpb->insertInt(&status, isc_dpb_force_write, fw);
            IAttachment* att =
                create ? prov->createDatabase(&status, file.constData(), dpb->getBufferLength(&status),
                                              dpb->getBuffer(&status))
                       : prov->attachDatabase(&status, file.constData(), dpb->getBufferLength(&status),
                                              dpb->getBuffer(&status));
            dpb->dispose();
            dpb = nullptr;
            return att;
        };
        auto a = Stamp::now();
        IAttachment* att = attach(true, forcedWrites ? 1 : 0);
        times.create = Stamp::now() - a;
        for (const schema::BuildStep& step : steps) {
            a = Stamp::now();
            const QByteArray sql = db::toConnectionText(step.sql, step.script);
            ITransaction* tr = att->startTransaction(&status, 0, nullptr);
            att->execute(&status, tr, unsigned(sql.size()), sql.constData(), 3, nullptr, nullptr, nullptr,
                         nullptr);
            tr->commit(&status);
            (dataChange.match(step.sql).hasMatch() ? times.data : times.schema) += Stamp::now() - a;
        }
        a = Stamp::now();
        att->detach(&status);
        if (!forcedWrites) attach(false, 1)->detach(&status);
        times.finish = Stamp::now() - a;
    } catch (const FbException& e) {
        if (dpb) dpb->dispose();
        prov->release();
        status.dispose();
        fail(master, e, path);
    }
    prov->release();
    status.dispose();
    return times;
}

bool qtDriverAvailable() {
    return QSqlDatabase::isDriverAvailable(QStringLiteral("QIBASE"));
}

long qtModelFetch(const QString& path, const RawStatement& statement) {
    const QString name = QStringLiteral("bench-") + path;
    QSqlDatabase qdb = QSqlDatabase::contains(name)
                           ? QSqlDatabase::database(name)
                           : QSqlDatabase::addDatabase(QStringLiteral("QIBASE"), name);
    if (!qdb.isOpen()) {
        qdb.setDatabaseName(path);
        qdb.setUserName(QStringLiteral("SYSDBA"));
        qdb.setPassword(QStringLiteral("masterkey"));
        if (!qdb.open())
            throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(qdb.lastError().text()));
    }
    QSqlQuery query(qdb);
    if (!query.prepare(statement.sql))
        throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(query.lastError().text()));
    for (const QVariant& v : statement.params) query.addBindValue(v);
    if (!query.exec())
        throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(query.lastError().text()));
    QSqlQueryModel model;
    model.setQuery(std::move(query));
    while (model.canFetchMore()) model.fetchMore();
    if (model.lastError().isValid())
        throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(model.lastError().text()));
    return model.rowCount();
}

void compareFetch(benchmark::State& state, const QString& path, const RawStatement& statement,
                  const std::function<Measured()>& ours) {
    auto* host = hostOn(path);
    Tally t;
    t.hasRaw = true;
    t.hasQt = qtDriverAvailable();
    long rows = 0, rawRows = 0, qtRows = 0;
    int turn = 0;
    for (auto _ : state) {
        for (int k = 0; k < 3; ++k) {
            switch ((turn + k) % 3) {
            case 0: {
                const auto a = Stamp::now();
                rawRows = rawFetch(host->RvDatabase(), host->pfReadTransaction(), statement);
                t.raw += Stamp::now() - a;
                break;
            }
            case 1: {
                const Measured m = ours();
                t.ours += m.time;
                rows = m.rows;
                state.SetIterationTime(m.time.cpu);
                break;
            }
            case 2:
                if (t.hasQt) {
                    const auto a = Stamp::now();
                    qtRows = qtModelFetch(path, statement);
                    t.qt += Stamp::now() - a;
                }
                break;
            }
        }
        ++turn;
    }
    if (rows != rawRows || (t.hasQt && qtRows != rows)) state.SkipWithError("the row counts differ");
    state.counters["rows"] = double(rows);
    t.report(state);
}

workbench::HostImpl* hostOn(const QString& path) {
    static std::map<QString, std::unique_ptr<workbench::HostImpl>> hosts;
    static QTemporaryDir profiles;
    auto& h = hosts[path];
    if (!h) {
        workbench::HostImpl::Settings settings;
        settings.profileRoot = profiles.path();
        settings.interactive = false;
        h = std::make_unique<workbench::HostImpl>(settings);
        h->openDatabase(path);
    }
    frames::setHost(h.get());
    return h.get();
}

static qint64 statusKb(const char* key) {
    QFile f(QStringLiteral("/proc/self/status"));
    if (!f.open(QIODevice::ReadOnly)) return 0;
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(key))
            return line.mid(qsizetype(qstrlen(key))).trimmed().split(' ').value(0).toLongLong();
    return 0;
}

qint64 residentBytes() {
    return statusKb("VmRSS:") * 1024;
}

qint64 peakResidentBytes() {
    return statusKb("VmHWM:") * 1024;
}

void resetPeakMemory() {
    QFile f(QStringLiteral("/proc/self/clear_refs"));
    if (f.open(QIODevice::WriteOnly)) f.write("5");
}

void processEvents() {
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

} // namespace frames::bench
