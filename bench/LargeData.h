#pragma once
// The large database the benchmarks run against: a copy of the demo database with 100,000
// clients, 100,000 goods cards and a client classifier of 2,000 nodes. It is built once per build
// folder and rebuilt when the schema scripts or the generator change.
#include <QString>

namespace frames::bench {

constexpr int kLargeClients = 100000;
constexpr int kLargeCards = 100000;
constexpr int kLargeClassifNodes = 2000;
// First ids of the generated rows (the demo data stays below them).
constexpr int kFirstClientId = 100000;
constexpr int kFirstClassifId = 90000;

// Path of the large database, built first when needed. Throws db::Error.
QString largeDatabase();
// Path of the plain demo database of this build folder, built first when needed.
QString demoDatabase();

} // namespace frames::bench
