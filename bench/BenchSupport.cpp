#include "bench/BenchSupport.h"
#include "frames/core/Host.h"
#include "host/HostImpl.h"
#include "platform/db/Database.h"
#include "platform/db/Transaction.h"
#include <QApplication>
#include <QFile>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQueryModel>
#include <QTemporaryDir>
#include <chrono>
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
        state.counters["raw_cpu_ms"] = raw.cpu * 1000 / n;
        state.counters["ratio_raw"] = raw.cpu > 0 ? ours.cpu / raw.cpu : 0;
        state.counters["ratio_raw_wall"] = raw.wall > 0 ? ours.wall / raw.wall : 0;
    }
    if (hasQt) {
        state.counters["qt_cpu_ms"] = qt.cpu * 1000 / n;
        state.counters["ratio_qt"] = qt.cpu > 0 ? ours.cpu / qt.cpu : 0;
    }
}

long rawFetch(db::Database* database, db::Transaction* tr, const QString& sql) {
    using namespace Firebird;
    IMaster* master = fb_get_master_interface();
    ThrowStatusWrapper status(master->getStatus());
    const QByteArray text = sql.toUtf8();
    long rows = 0;
    quint64 sum = 0;
    try {
        IStatement* stmt = database->handle()->prepare(&status, tr->handle(), unsigned(text.size()),
                                                        text.constData(), 3, IStatement::PREPARE_PREFETCH_METADATA);
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
        IResultSet* rs = stmt->openCursor(&status, tr->handle(), nullptr, nullptr, meta, 0);
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
        stmt->free(&status);
    } catch (const FbException& e) {
        char msg[512];
        master->getUtilInterface()->formatStatus(msg, sizeof msg, e.getStatus());
        status.dispose();
        throw db::Error::configuration(QString::fromLocal8Bit(msg));
    }
    status.dispose();
    benchmark::DoNotOptimize(sum);
    return rows;
}

bool qtDriverAvailable() {
    return QSqlDatabase::isDriverAvailable(QStringLiteral("QIBASE"));
}

long qtModelFetch(const QString& path, const QString& sql) {
    const QString name = QStringLiteral("bench-") + path;
    {
        QSqlDatabase qdb = QSqlDatabase::contains(name) ? QSqlDatabase::database(name)
                                                        : QSqlDatabase::addDatabase(QStringLiteral("QIBASE"), name);
        if (!qdb.isOpen()) {
            qdb.setDatabaseName(path);
            qdb.setUserName(QStringLiteral("SYSDBA"));
            qdb.setPassword(QStringLiteral("masterkey"));
            if (!qdb.open())
                throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(qdb.lastError().text()));
        }
        QSqlQueryModel model;
        model.setQuery(sql, qdb);
        while (model.canFetchMore()) model.fetchMore();
        if (model.lastError().isValid())
            throw db::Error::configuration(QStringLiteral("Qt SQL: %1").arg(model.lastError().text()));
        return model.rowCount();
    }
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
        if (line.startsWith(key)) return line.mid(qsizetype(qstrlen(key))).trimmed().split(' ').value(0).toLongLong();
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
