// Every registered frame created and initialised (time and peak memory), and the build of the
// demo database; each against the raw Firebird work behind it.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Registry.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/Database.h"
#include "platform/db/Transaction.h"
#include "schema/DemoDatabase.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>
#include <algorithm>
#include <cstdio>

using namespace frames;

namespace {

struct FramesPass {
    bench::Stamp time;
    double peakMb = 0; // peak resident size above the size before the pass
    int failed = 0;
    std::vector<bench::RawStatement> statements; // the selects of the datasets the frames opened
    QStringList largeLists;                      // frame.dataset of the lists of 10,000 rows or more
    QStringList slowest;                         // the five slowest frames of a collecting pass
};

// Creates every registered frame on one parent and initialises it, as a host form holding the
// whole package would.
FramesPass createAndInitAll(const QStringList& classes, bool collect) {
    FramesPass pass;
    bench::processEvents();
    const qint64 before = bench::residentBytes();
    bench::resetPeakMemory();
    const auto a = bench::Stamp::now();
    QWidget top;
    std::vector<std::unique_ptr<TAbsEditFrame>> frames;
    frames.reserve(size_t(classes.size()));
    std::vector<std::pair<double, QString>> perFrame; // wall ms, class
    for (const QString& cls : classes) {
        const auto f = bench::Stamp::now();
        try {
            frames.emplace_back(Registry::instance().create(cls, &top));
            frames.back()->Init();
        } catch (const std::exception&) {
            ++pass.failed;
        }
        if (collect) perFrame.emplace_back((bench::Stamp::now() - f).wall * 1000, cls);
    }
    pass.time = bench::Stamp::now() - a;
    std::sort(perFrame.begin(), perFrame.end(), std::greater<>());
    for (size_t i = 0; i < std::min<size_t>(5, perFrame.size()); ++i)
        pass.slowest << QStringLiteral("%1 %2 ms").arg(perFrame[i].second).arg(perFrame[i].first, 0, 'f', 1);
    pass.peakMb = double(bench::peakResidentBytes() - before) / (1024.0 * 1024.0);
    if (collect)
        for (const auto& frame : frames)
            for (db::DataSet* ds : frame->findChildren<db::DataSet*>()) {
                if (!ds->active()) continue;
                pass.statements.push_back(bench::rawStatementOf(ds));
                if (ds->recordCount() >= 10000)
                    pass.largeLists << QStringLiteral("%1.%2 (%3 rows)")
                                           .arg(frame->metaObject()->className(), ds->objectName())
                                           .arg(ds->recordCount());
            }
    return pass;
}

// Arg 0: the demo database, 1: the large one. The raw loop fetches the selects of every dataset
// that the frames' Init opened, with the same parameter values.
void BM_AllFramesCreateInit(benchmark::State& state) {
    auto* host = bench::hostOn(state.range(0) ? bench::largeDatabase() : bench::demoDatabase());
    const QStringList classes = Registry::instance().classNames();
    // The first pass (untimed as a sample, but its memory counts: nothing is cached yet) finds the
    // statements for the raw loop.
    const FramesPass first = createAndInitAll(classes, true);
    bench::Tally t;
    t.hasRaw = true;
    double peakMb = first.peakMb;
    int failed = first.failed, turn = 0;
    long rawRows = 0;
    auto raw = [&] {
        const auto a = bench::Stamp::now();
        rawRows = 0;
        for (const bench::RawStatement& s : first.statements)
            rawRows += bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), s);
        t.raw += bench::Stamp::now() - a;
    };
    for (auto _ : state) {
        if (turn % 2 == 0) raw();
        const FramesPass pass = createAndInitAll(classes, false);
        if (turn++ % 2 == 1) raw();
        t.ours += pass.time;
        state.SetIterationTime(pass.time.wall);
        peakMb = std::max(peakMb, pass.peakMb);
        failed = std::max(failed, pass.failed);
    }
    // The same selects on a copy of the database that nothing has read yet: what a first Init
    // pays to the engine (metadata of every table, first pages) before any frame code runs.
    bench::Stamp rawCold;
    {
        QTemporaryDir dir(QStringLiteral(FRAMES_BENCH_DATA "/cold-XXXXXX"));
        const QString copy = dir.filePath(QStringLiteral("cold.fdb"));
        if (QFile::copy(host->RvDatabase()->connectString(), copy)) {
            db::Database database;
            database.open(copy);
            db::Transaction tr(&database, db::TransactionOptions::read());
            tr.start();
            const auto a = bench::Stamp::now();
            for (const bench::RawStatement& s : first.statements) bench::rawFetch(&database, &tr, s);
            rawCold = bench::Stamp::now() - a;
        }
    }
    std::fprintf(stderr, "Slowest frames of the first pass: %s\n",
                 qPrintable(first.slowest.join(QStringLiteral(", "))));
    if (!first.largeLists.isEmpty())
        std::fprintf(stderr, "Lists of 10,000 rows or more fetched by Init: %s\n",
                     qPrintable(first.largeLists.join(QStringLiteral(", "))));
    state.counters["frames"] = double(classes.size());
    state.counters["failed"] = failed;
    state.counters["datasets"] = double(first.statements.size());
    state.counters["raw_rows"] = double(rawRows);
    state.counters["first_wall_ms"] = first.time.wall * 1000;
    state.counters["first_cpu_ms"] = first.time.cpu * 1000;
    state.counters["raw_cold_wall_ms"] = rawCold.wall * 1000;
    state.counters["raw_cold_cpu_ms"] = rawCold.cpu * 1000;
    state.counters["peak_MB"] = peakMb;
    state.counters["rss_MB"] = double(bench::peakResidentBytes()) / (1024.0 * 1024.0);
    t.report(state);
}
BENCHMARK(BM_AllFramesCreateInit)
    ->Arg(0)
    ->Arg(1)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(4);

// The build of the demo database against the same statements executed by a hand-written loop
// (forced writes off while building, as ours); once, the loop with forced writes on, as the
// database was built before.
void BM_DemoDatabaseBuild(benchmark::State& state) {
    QDir().mkpath(QStringLiteral(FRAMES_BENCH_DATA));
    QTemporaryDir dir(QStringLiteral(FRAMES_BENCH_DATA "/build-XXXXXX"));
    const QString path = dir.filePath(QStringLiteral("demo.fdb")),
                  rawPath = dir.filePath(QStringLiteral("raw.fdb"));
    bench::Tally t;
    t.hasRaw = true;
    bench::BuildTimes parts;
    int turn = 0;
    auto raw = [&] {
        const auto a = bench::Stamp::now();
        const bench::BuildTimes p = bench::rawDemoBuild(rawPath, false);
        t.raw += bench::Stamp::now() - a;
        parts.create += p.create;
        parts.schema += p.schema;
        parts.data += p.data;
        parts.finish += p.finish;
        QFile::remove(rawPath);
    };
    for (auto _ : state) {
        if (turn % 2 == 0) raw();
        const auto a = bench::Stamp::now();
        schema::createDemoDatabase(path);
        const auto d = bench::Stamp::now() - a;
        if (turn++ % 2 == 1) raw();
        t.ours += d;
        state.SetIterationTime(d.wall);
        QFile::remove(path);
        QFile::remove(path + QStringLiteral(".schema"));
    }
    const auto a = bench::Stamp::now();
    bench::rawDemoBuild(rawPath, true);
    const auto forced = bench::Stamp::now() - a;
    QFile::remove(rawPath);
    state.counters["statements"] = double(schema::buildSteps().size());
    state.counters["raw_forced_wall_ms"] = forced.wall * 1000;
    state.counters["raw_forced_cpu_ms"] = forced.cpu * 1000;
    // Where the raw loop's time goes (wall, per build).
    const double n = double(state.iterations());
    state.counters["raw_create_ms"] = parts.create.wall * 1000 / n;
    state.counters["raw_schema_ms"] = parts.schema.wall * 1000 / n;
    state.counters["raw_data_ms"] = parts.data.wall * 1000 / n;
    state.counters["raw_finish_ms"] = parts.finish.wall * 1000 / n;
    t.report(state);
}
BENCHMARK(BM_DemoDatabaseBuild)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(4);

} // namespace
