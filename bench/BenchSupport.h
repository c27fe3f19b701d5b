#pragma once
// Shared pieces of the benchmarks: clocks, the raw Firebird loop every operation is compared
// with, Qt SQL's model as the alternative a Qt developer would pick, the host the frames run in.
#include <QString>
#include <QVariant>
#include <benchmark/benchmark.h>
#include <functional>
#include <memory>
#include <vector>

namespace workbench {
class HostImpl;
}
namespace frames::db {
class DataSet;
class Database;
class Transaction;
} // namespace frames::db

namespace frames::bench {

// Process CPU time (the embedded engine works in this process) and wall time, in seconds.
struct Stamp {
    double cpu = 0, wall = 0;
    static Stamp now();
    Stamp operator-(const Stamp& o) const { return {cpu - o.cpu, wall - o.wall}; }
    Stamp& operator+=(const Stamp& o) {
        cpu += o.cpu;
        wall += o.wall;
        return *this;
    }
};

// Sums of the measured variants of one benchmark, reported as counters in milliseconds per
// iteration with the ratios of CPU time.
struct Tally {
    Stamp ours, raw, qt;
    bool hasRaw = false, hasQt = false;
    int rawRuns = 0; // when the raw loop ran less often than every iteration: how often it ran
    void report(benchmark::State& state) const;
};

// A select as a hand-written loop runs it: Firebird's positional text and the value of each "?".
struct RawStatement {
    QString sql;
    std::vector<QVariant> params;
};
// The select of an open dataset with the values its parameters had.
RawStatement rawStatementOf(db::DataSet* ds);

// Prepares the statement in `tr`, passes its parameters as text, fetches every row with
// IResultSet::fetchNext and reads every column (null flag, value bytes; text by its length).
// Returns the number of rows.
long rawFetch(db::Database* database, db::Transaction* tr, const RawStatement& statement);
inline long rawFetch(db::Database* database, db::Transaction* tr, const QString& sql) {
    return rawFetch(database, tr, RawStatement{sql, {}});
}

// The demo database's build as a hand-written loop does it: creates the file at `path` (WIN1251,
// dialect 3, page size 8192, forced writes as given) and executes every statement of the build in
// a transaction of its own, then switches forced writes on. Returns where the time went.
struct BuildTimes {
    Stamp create, schema, data, finish; // the empty file, definitions, data, forced writes on
};
BuildTimes rawDemoBuild(const QString& path, bool forcedWrites);

// Qt SQL's Firebird driver: whether it can be loaded, and a QSqlQueryModel filled with every row
// of the statement (its parameters bound in order) on a connection of its own to `path`. Returns
// the number of rows.
bool qtDriverAvailable();
long qtModelFetch(const QString& path, const RawStatement& statement);

// The workbench's host on `path`, installed as the frames' host; one per database path.
workbench::HostImpl* hostOn(const QString& path);

// Our path against the raw loop and Qt SQL's model (when its driver is there) over the same
// statement on the database at `path`, interleaved: in each iteration the three take turns at
// going first. `ours` runs our path and returns the time it took (set-up left out) and the rows it
// holds. Reports the counters of a Tally and the rows; fails when the row counts differ.
struct Measured {
    Stamp time;
    long rows = 0;
};
void compareFetch(benchmark::State& state, const QString& path, const RawStatement& statement,
                  const std::function<Measured()>& ours);

// Resident set size now and its peak since the last resetPeakMemory(), in bytes.
qint64 residentBytes();
qint64 peakResidentBytes();
void resetPeakMemory();

// Lets Qt run posted events and paints.
void processEvents();

} // namespace frames::bench
