// Open-and-fetch-all of a DataSet over the goods cards of the large database (five columns of
// every kind) against the raw fetch loop and Qt SQL's model over the same statement, interleaved
// in the same run.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"

using namespace frames;

namespace {

const QString kSelect = QStringLiteral("select ID, ARTICUL, NAME, PRICE, CREATED from CARD order by ID");

void BM_DataSetOpenFetchAll(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    auto* host = bench::hostOn(path);
    bench::Tally t;
    t.hasRaw = true;
    t.hasQt = bench::qtDriverAvailable();
    long rows = 0, rawRows = 0, qtRows = 0;
    int turn = 0;
    for (auto _ : state) {
        // The three take turns at going first.
        for (int k = 0; k < 3; ++k) {
            switch ((turn + k) % 3) {
            case 0: {
                const auto a = bench::Stamp::now();
                rawRows = bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), kSelect);
                t.raw += bench::Stamp::now() - a;
                break;
            }
            case 1: {
                const auto a = bench::Stamp::now();
                db::DataSet ds(host->RvDatabase(), host->pfReadTransaction());
                ds.setSelectSql(kSelect);
                ds.open();
                rows = ds.recordCount();
                const auto d = bench::Stamp::now() - a;
                t.ours += d;
                state.SetIterationTime(d.cpu);
                break;
            }
            case 2:
                if (t.hasQt) {
                    const auto a = bench::Stamp::now();
                    qtRows = bench::qtModelFetch(path, bench::RawStatement{kSelect, {}});
                    t.qt += bench::Stamp::now() - a;
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
BENCHMARK(BM_DataSetOpenFetchAll)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
