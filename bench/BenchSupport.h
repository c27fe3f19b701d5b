#pragma once
// Shared pieces of the benchmarks: clocks, the raw Firebird loop every operation is compared
// with, Qt SQL's model as the alternative a Qt developer would pick, the host the frames run in.
#include <QString>
#include <benchmark/benchmark.h>
#include <memory>

namespace workbench {
class HostImpl;
}
namespace frames::db {
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
    void report(benchmark::State& state) const;
};

// Prepares `sql` in `tr`, fetches every row with IResultSet::fetchNext and reads every column
// (null flag, value bytes; text by its length). Returns the number of rows.
long rawFetch(db::Database* database, db::Transaction* tr, const QString& sql);

// Qt SQL's Firebird driver: whether it can be loaded, and a QSqlQueryModel filled with every row
// of `sql` on a connection of its own to `path`. Returns the number of rows.
bool qtDriverAvailable();
long qtModelFetch(const QString& path, const QString& sql);

// The workbench's host on `path`, installed as the frames' host; one per database path.
workbench::HostImpl* hostOn(const QString& path);

// Resident set size now and its peak since the last resetPeakMemory(), in bytes.
qint64 residentBytes();
qint64 peakResidentBytes();
void resetPeakMemory();

// Lets Qt run posted events and paints.
void processEvents();

} // namespace frames::bench
