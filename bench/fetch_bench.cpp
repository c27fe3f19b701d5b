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
    bench::compareFetch(state, path, bench::RawStatement{kSelect, {}}, [&] {
        const auto a = bench::Stamp::now();
        db::DataSet ds(host->RvDatabase(), host->pfReadTransaction());
        ds.setSelectSql(kSelect);
        ds.open();
        return bench::Measured{bench::Stamp::now() - a, ds.recordCount()};
    });
}
BENCHMARK(BM_DataSetOpenFetchAll)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
