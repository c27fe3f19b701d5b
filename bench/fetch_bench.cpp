// Open-and-fetch-all of a DataSet over the goods cards of the large database (five columns of
// every kind) against the raw fetch loop over the same statement, interleaved in the same run.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"

using namespace frames;

namespace {

const QString kSelect = QStringLiteral("select ID, ARTICUL, NAME, PRICE, CREATED from CARD order by ID");

void BM_DataSetOpenFetchAll(benchmark::State& state) {
    auto* host = bench::hostOn(bench::largeDatabase());
    bench::Tally t;
    t.hasRaw = true;
    long rows = 0;
    for (auto _ : state) {
        t.raw += [&] {
            const auto a = bench::Stamp::now();
            bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), kSelect);
            return bench::Stamp::now() - a;
        }();
        const auto a = bench::Stamp::now();
        db::DataSet ds(host->RvDatabase(), host->pfReadTransaction());
        ds.setSelectSql(kSelect);
        ds.open();
        rows = ds.recordCount();
        const auto d = bench::Stamp::now() - a;
        t.ours += d;
        state.SetIterationTime(d.cpu);
    }
    state.counters["rows"] = double(rows);
    t.report(state);
}
BENCHMARK(BM_DataSetOpenFetchAll)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
