// The multi-select supplier list over the large database's 100,000 clients with 1,500 chosen
// keys: one rebuild (a key added or taken back) against one raw fetch of the whole lookup query,
// and, for comparison, the raw fetch of the query with the 1,500 keys excluded by the server.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "frames/core/Registry.h"
#include "frames/multi/LF_MultiAbs.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/Params.h"

using namespace frames;

namespace {

constexpr int kChosen = 1500;

struct MultiFrame {
    QWidget top;
    std::unique_ptr<TMultiAbs_LF> lf;
    MultiFrame() {
        lf.reset(qobject_cast<TMultiAbs_LF*>(Registry::instance().create("TMultiSupplier_LF", &top)));
        if (!lf) throw std::runtime_error("TMultiSupplier_LF is not a multi-select lookup");
        lf->Init();
        // Every 60th client of the list, so that the chosen keys are spread over the whole list.
        const int step = std::max(1, lf->pFIBDataSet1->recordCount() / kChosen);
        for (int i = 0; i < kChosen; ++i)
            lf->mdList->appendRecord({lf->pFIBDataSet1->valueAt(i * step, 0), QStringLiteral("x")});
        lf->Get_sSQL();
    }
};

void BM_MultiRebuild(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    bench::hostOn(path);
    MultiFrame f;
    if (f.lf->ChosenCount() != kChosen) {
        state.SkipWithError("the chosen keys were not all found");
        return;
    }
    const QVariant extra = f.lf->pFIBDataSet1->valueAt(f.lf->pFIBDataSet1->recordCount() - 1, 0);
    bool add = true;
    bench::compareFetch(state, path, bench::rawStatementOf(f.lf->pFIBDataSet1), [&] {
        // Alternately one key more and that key taken back, as Insert and Delete do.
        if (add) {
            f.lf->mdList->appendRecord({extra, QStringLiteral("x")});
        } else {
            f.lf->mdList->last();
            f.lf->mdList->remove();
        }
        add = !add;
        const auto a = bench::Stamp::now();
        f.lf->Get_sSQL();
        return bench::Measured{bench::Stamp::now() - a, f.lf->pFIBDataSet1->storedCount()};
    });
    state.counters["chosen"] = f.lf->ChosenCount();
    state.counters["offered"] = f.lf->pFIBDataSet1->recordCount();
}
BENCHMARK(BM_MultiRebuild)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(6);

// What the server's exclusion costs: the query with the 1,500 chosen keys in "not (... in (...))",
// fetched raw, against the raw fetch of the whole query.
void BM_MultiExclusionOnServer(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    auto* host = bench::hostOn(path);
    MultiFrame f;
    bench::RawStatement excluded = bench::rawStatementOf(f.lf->pFIBDataSet1);
    bench::RawStatement full = excluded;
    excluded.sql = db::ScannedSql::scan(f.lf->SelectText(f.lf->LastKeyList())).positionalSql;
    bench::Tally t;
    t.hasRaw = true;
    long rows = 0;
    for (auto _ : state) {
        auto a = bench::Stamp::now();
        rows = bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), excluded);
        const auto spent = bench::Stamp::now() - a;
        t.ours += spent;
        state.SetIterationTime(spent.cpu);
        a = bench::Stamp::now();
        bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), full);
        t.raw += bench::Stamp::now() - a;
    }
    state.counters["rows"] = double(rows);
    t.report(state);
}
BENCHMARK(BM_MultiExclusionOnServer)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
