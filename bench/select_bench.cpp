// The client selection dialog on the large database: moving one record of a node of 10,000
// legal entities between the grids (both grids read again from the server) against one raw fetch
// of the two grids' statements, and CalcMX(true) over the client classifier of 2,000 nodes.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "frames/core/Registry.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "host/HostImpl.h"
#include "platform/db/Database.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"

using namespace frames;
using namespace frames::bench;

namespace {

// A node of its own for the move: 10,000 legal entities.
constexpr int kBigNode = kFirstClassifId + kLargeClassifNodes + 10;
constexpr int kKind = 77;

void prepareBigNode(workbench::HostImpl* host) {
    db::Database* d = host->RvDatabase();
    db::Transaction tr(d, db::TransactionOptions::writeNoWait());
    db::Query q(d, &tr);
    q.setSql(QStringLiteral("select count(*) from CLASSIF where ID_CLASSIF = %1").arg(kBigNode));
    q.open();
    const bool have = q.next() && q.value(0).toInt() > 0;
    q.close();
    if (!have) {
        q.setSql(
            QStringLiteral("insert into CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) "
                           "values (%1, %2, 'Крупный узел (10 000 юрлиц)', 1)")
                .arg(kBigNode)
                .arg(kFirstClassifId));
        q.exec();
    }
    // The node holds the first 10,000 generated legal entities (every third client) and nothing
    // else; the others keep the subgroup the generator gave them.
    q.setSql(
        QStringLiteral("update CLIENTS set CLASSIF = %1 + 41 + mod(ID_CLIENTS - %2, %3) where CLASSIF = %4")
            .arg(kFirstClassifId)
            .arg(kFirstClientId)
            .arg(kLargeClassifNodes - 41)
            .arg(kBigNode));
    q.exec();
    q.setSql(QStringLiteral("update CLIENTS set CLASSIF = %1 where ID_CLIENTS between %2 and %3 "
                            "and mod(ID_CLIENTS - %2, 3) = 0")
                 .arg(kBigNode)
                 .arg(kFirstClientId)
                 .arg(kFirstClientId + 29999));
    q.exec();
    // No choice left from an earlier run.
    q.setSql(QStringLiteral("delete from SEL_CLIENT where KIND = %1").arg(kKind));
    q.exec();
    tr.commit();
}

struct ClientDialog {
    QWidget top;
    std::unique_ptr<TClientSelect_DF> f;
    ClientDialog() {
        f.reset(qobject_cast<TClientSelect_DF*>(Registry::instance().create("TClientSelect_DF", &top)));
        if (!f) throw std::runtime_error("TClientSelect_DF is not registered");
        f->SetKind(kKind);
        f->Init();
    }
};

void BM_SelectMoveOneRecord(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    auto* host = bench::hostOn(path);
    prepareBigNode(host);
    ClientDialog d;
    if (!d.f->DBTreeView->setCurrentKey(kBigNode)) {
        state.SkipWithError("the large node is missing");
        return;
    }
    bench::Tally t;
    t.hasRaw = true;
    bool down = true;
    long rows = 0;
    int turn = 0;
    for (auto _ : state) {
        auto ours = [&] {
            // One record down, then the same one back up: the counts stay as they were.
            if (down)
                d.f->pfDataSet->first();
            else
                d.f->pfSelected->first();
            const auto a = bench::Stamp::now();
            down ? d.f->TransferRecDown() : d.f->TransferRecUp();
            const auto spent = bench::Stamp::now() - a;
            down = !down;
            t.ours += spent;
            state.SetIterationTime(spent.cpu);
        };
        auto raw = [&] {
            const bench::RawStatement upper = bench::rawStatementOf(d.f->pfDataSet);
            const bench::RawStatement lower = bench::rawStatementOf(d.f->pfSelected);
            const auto a = bench::Stamp::now();
            rows = bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), upper) +
                   bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), lower);
            t.raw += bench::Stamp::now() - a;
        };
        if (turn++ % 2) {
            ours();
            raw();
        } else {
            raw();
            ours();
        }
    }
    state.counters["rows"] = double(rows);
    state.counters["nodes"] = d.f->DBTreeView->nodeCount();
    t.report(state);
}
BENCHMARK(BM_SelectMoveOneRecord)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

// Argument 1: the node counts from the grouped statement added up the tree; 0: the per-node
// count statement, prepared once and run for every node.
void BM_SelectCalcMXFull(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    auto* host = bench::hostOn(path);
    prepareBigNode(host);
    ClientDialog d;
    if (state.range(0) == 0) d.f->pfClassItemsCounts->setSqlLines({});
    bench::Tally t;
    for (auto _ : state) {
        const auto a = bench::Stamp::now();
        d.f->CalcMX(true);
        const auto spent = bench::Stamp::now() - a;
        t.ours += spent;
        state.SetIterationTime(spent.cpu);
    }
    state.counters["nodes"] = d.f->DBTreeView->nodeCount();
    state.counters["mx_count"] = d.f->MXCount;
    t.report(state);
}
BENCHMARK(BM_SelectCalcMXFull)->Arg(1)->Arg(0)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);

} // namespace
