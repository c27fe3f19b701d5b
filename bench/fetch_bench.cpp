// Open-and-fetch-all of a DataSet against a raw fetch loop over the same statement through the
// Firebird interface, in the same run. The "ratio" counter is DataSet time / raw time.
#include "platform/db/DataSet.h"
#include "platform/db/Database.h"
#include "platform/db/Transaction.h"
#include <QDir>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <chrono>
#include <firebird/Interface.h>
#include <memory>
#include <vector>

using namespace frames;

namespace {

constexpr int kRows = 200000;
const char* kSelect = "select ID, NAME, PRICE, CREATED, KIND from BENCH_ROWS order by ID";

struct Fixture {
    QTemporaryDir dir;
    db::Database database;
    std::unique_ptr<db::Transaction> read;

    Fixture() {
        database.create(dir.filePath("bench.fdb"));
        database.executeScript(
            "create table BENCH_ROWS (ID integer not null primary key, NAME varchar(100) collate PXW_CYRL,"
            " PRICE numeric(15,2), CREATED date, KIND smallint);\n"
            "set term ^ ;\n"
            "execute block as declare i integer = 0; begin\n"
            "  while (i < " +
            QString::number(kRows) +
            ") do begin\n"
            "    insert into BENCH_ROWS values (:i, 'Клиент номер ' || :i, :i * 1.25, dateadd(mod(:i, 3000) day to"
            " date '2015-01-01'), mod(:i, 7));\n"
            "    i = i + 1;\n"
            "  end\n"
            "end^\n"
            "set term ; ^\n");
        read = std::make_unique<db::Transaction>(&database, db::TransactionOptions::read());
        read->start();
    }
};

Fixture& fixture() {
    static Fixture f;
    return f;
}

// The reference: prepare, open, fetchNext into one buffer until the end.
double rawFetchSeconds(Fixture& f) {
    using namespace Firebird;
    const auto start = std::chrono::steady_clock::now();
    IMaster* master = fb_get_master_interface();
    ThrowStatusWrapper status(master->getStatus());
    IStatement* stmt = f.database.handle()->prepare(&status, f.read->handle(), 0, kSelect, 3,
                                                     IStatement::PREPARE_PREFETCH_METADATA);
    IMessageMetadata* meta = stmt->getOutputMetadata(&status);
    std::vector<unsigned char> buffer(meta->getMessageLength(&status));
    IResultSet* rs = stmt->openCursor(&status, f.read->handle(), nullptr, nullptr, meta, 0);
    long rows = 0;
    while (rs->fetchNext(&status, buffer.data()) == IStatus::RESULT_OK) ++rows;
    rs->close(&status);
    meta->release();
    stmt->free(&status);
    status.dispose();
    benchmark::DoNotOptimize(rows);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void BM_DataSetOpenFetchAll(benchmark::State& state) {
    Fixture& f = fixture();
    double raw = 0, ours = 0;
    for (auto _ : state) {
        raw += rawFetchSeconds(f);
        const auto start = std::chrono::steady_clock::now();
        db::DataSet ds(&f.database, f.read.get());
        ds.setSelectSql(kSelect);
        ds.open();
        benchmark::DoNotOptimize(ds.recordCount());
        const double s = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        ours += s;
        state.SetIterationTime(s);
    }
    state.counters["rows"] = kRows;
    state.counters["ratio"] = raw > 0 ? ours / raw : 0;
}
BENCHMARK(BM_DataSetOpenFetchAll)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace

BENCHMARK_MAIN();
