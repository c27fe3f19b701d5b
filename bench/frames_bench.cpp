// Every registered frame created and initialised (time and peak memory), and the build of the
// demo database.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Registry.h"
#include "schema/DemoDatabase.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QWidget>
#include <cstdio>

using namespace frames;

namespace {

// Arg 0: the demo database, 1: the large one.
void BM_AllFramesCreateInit(benchmark::State& state) {
    bench::hostOn(state.range(0) ? bench::largeDatabase() : bench::demoDatabase());
    const QStringList classes = Registry::instance().classNames();
    bench::Stamp total;
    double peakMb = 0;
    int failed = 0;
    for (auto _ : state) {
        bench::processEvents();
        const qint64 before = bench::residentBytes();
        bench::resetPeakMemory();
        const auto a = bench::Stamp::now();
        {
            QWidget top;
            std::vector<std::unique_ptr<TAbsEditFrame>> frames;
            frames.reserve(size_t(classes.size()));
            failed = 0;
            for (const QString& cls : classes) {
                try {
                    frames.emplace_back(Registry::instance().create(cls, &top));
                    frames.back()->Init();
                } catch (const std::exception&) {
                    ++failed;
                }
            }
            const auto d = bench::Stamp::now() - a;
            total += d;
            state.SetIterationTime(d.wall);
            peakMb = std::max(peakMb, double(bench::peakResidentBytes() - before) / (1024.0 * 1024.0));
        }
    }
    const double n = double(state.iterations());
    state.counters["frames"] = double(classes.size());
    state.counters["failed"] = failed;
    state.counters["cpu_ms"] = total.cpu * 1000 / n;
    state.counters["wall_ms"] = total.wall * 1000 / n;
    state.counters["peak_MB"] = peakMb;
}
BENCHMARK(BM_AllFramesCreateInit)->Arg(0)->Arg(1)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_DemoDatabaseBuild(benchmark::State& state) {
    QDir().mkpath(QStringLiteral(FRAMES_BENCH_DATA));
    QTemporaryDir dir(QStringLiteral(FRAMES_BENCH_DATA "/build-XXXXXX"));
    bench::Stamp total;
    for (auto _ : state) {
        const QString path = dir.filePath(QStringLiteral("demo.fdb"));
        const auto a = bench::Stamp::now();
        schema::createDemoDatabase(path);
        const auto d = bench::Stamp::now() - a;
        total += d;
        state.SetIterationTime(d.wall);
        QFile::remove(path);
    }
    const double n = double(state.iterations());
    state.counters["cpu_ms"] = total.cpu * 1000 / n;
    state.counters["wall_ms"] = total.wall * 1000 / n;
}
BENCHMARK(BM_DemoDatabaseBuild)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
