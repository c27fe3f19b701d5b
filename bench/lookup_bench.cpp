// The client lookup over the large database's 100,000 clients: Init against the raw fetch loop
// and Qt SQL's model over the same statement, opening the drop-down, type-ahead and the first key
// assignment of a fresh frame.
#include "bench/BenchSupport.h"
#include "bench/LargeData.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/widgets/LookupCombo.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QSet>
#include <QThread>

using namespace frames;

namespace {

const QString kClientFrame = QStringLiteral("TClients_LF");

struct Frame {
    QWidget top;
    std::unique_ptr<TAbs_LF> lf;
    Frame() {
        lf.reset(qobject_cast<TAbs_LF*>(Registry::instance().create(kClientFrame, &top)));
        if (!lf) throw std::runtime_error("TClients_LF is not a lookup frame");
    }
};

// The client list's select with the parameter values Init gave it.
bench::RawStatement clientListStatement() {
    Frame f;
    f.lf->Init();
    return bench::rawStatementOf(f.lf->pFIBDataSet1);
}

// The raw loop over the client list, summed into `t`.
void rawClientList(bench::Tally& t, const bench::RawStatement& statement) {
    auto* host = bench::hostOn(bench::largeDatabase());
    const auto a = bench::Stamp::now();
    bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), statement);
    t.raw += bench::Stamp::now() - a;
    t.hasRaw = true;
    ++t.rawRuns;
}

void BM_LookupInit(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    bench::hostOn(path);
    bench::compareFetch(state, path, clientListStatement(), [] {
        Frame f;
        const auto a = bench::Stamp::now();
        f.lf->Init();
        return bench::Measured{bench::Stamp::now() - a, f.lf->pFIBDataSet1->recordCount()};
    });
}
BENCHMARK(BM_LookupInit)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(6);

// A shown client lookup over the first `rows` clients.
struct ShownLookup {
    Frame f;
    explicit ShownLookup(int rows) {
        db::DataSet* ds = f.lf->pFIBDataSet1;
        QString sql = ds->selectSql();
        sql.replace(
            QRegularExpression(QStringLiteral("^\\s*select\\s"), QRegularExpression::CaseInsensitiveOption),
            QStringLiteral("select first %1 ").arg(rows));
        ds->setSelectSql(sql);
        f.lf->Init();
        f.top.resize(400, 60);
        f.top.show();
        bench::processEvents();
    }
    ui::LookupCombo* combo() const { return f.lf->lcSelect; }
};

// Opening the drop-down of the 100,000-client list and of a 100-client one; the raw loop over the
// list's statement (every fourth iteration) gives the ratio.
// Types one letter into the closed combo as a new search (after a pause longer than the
// keyboard input interval); returns the time the key took.
bench::Stamp typeKey(ShownLookup& l, const QString& letter) {
    // As the keyboard sends a letter: its upper-case code and its text.
    QKeyEvent press(QEvent::KeyPress, letter.toUpper().at(0).unicode(), Qt::NoModifier, letter);
    QThread::msleep(2);
    const auto a = bench::Stamp::now();
    QApplication::sendEvent(l.combo()->comboBox(), &press);
    return bench::Stamp::now() - a;
}

// Opening the drop-down, the list left as it was and (every other time) after a letter was typed
// into the closed combo.
void BM_LookupDropDownOpen(benchmark::State& state) {
    bench::hostOn(bench::largeDatabase());
    const bench::RawStatement list = clientListStatement();
    ShownLookup small(100), large(bench::kLargeClients);
    bench::Tally t;
    bench::Stamp tSmall;
    auto openClose = [](ShownLookup& l) {
        const auto a = bench::Stamp::now();
        l.combo()->dropDown();
        bench::processEvents(); // shown and painted
        const auto d = bench::Stamp::now() - a;
        if (!l.combo()->isDroppedDown()) throw std::runtime_error("the list did not open");
        l.combo()->closeUp(false);
        bench::processEvents();
        return d;
    };
    openClose(small);
    openClose(large);
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(0);
    int i = 0;
    bench::Stamp afterKey;
    for (auto _ : state) {
        if (i % 4 == 0) rawClientList(t, list);
        const bool typed = i++ % 2 == 1;
        if (typed) {
            const QString letter = QStringList{"К", "Я", "Ё", "П", "Щ"}[(i / 2) % 5];
            typeKey(small, letter);
            typeKey(large, letter);
        }
        tSmall += openClose(small);
        const auto d = openClose(large);
        t.ours += d;
        if (typed) afterKey += d;
        state.SetIterationTime(d.wall);
    }
    QApplication::setKeyboardInputInterval(interval);
    const double n = double(state.iterations());
    state.counters["rows"] = large.f.lf->pFIBDataSet1->recordCount();
    state.counters["ms_after_key"] = afterKey.wall * 1000 / double(i / 2);
    state.counters["ms_100"] = tSmall.wall * 1000 / n;
    state.counters["ratio_100k_100"] = tSmall.wall > 0 ? t.ours.wall / tSmall.wall : 0;
    t.report(state);
}
BENCHMARK(BM_LookupDropDownOpen)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

// One letter typed into the closed combo (a new search each time): the list moves to the first
// client whose name starts with it.
void BM_LookupTypeAhead(benchmark::State& state) {
    bench::hostOn(bench::largeDatabase());
    const bench::RawStatement list = clientListStatement();
    ShownLookup large(bench::kLargeClients), small(100);
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(0); // every key starts a new search (after a pause)
    const QStringList letters = {QStringLiteral("Я"), QStringLiteral("Ё"), QStringLiteral("К"),
                                 QStringLiteral("м"), QStringLiteral("О"), QStringLiteral("Ш"),
                                 QStringLiteral("Э"), QStringLiteral("и")};
    // The letters some client's name starts with: type-ahead must reach a row for each of them.
    QSet<QString> present;
    {
        db::DataSet* ds = large.f.lf->pFIBDataSet1;
        for (int r = 0; r < ds->recordCount(); ++r)
            present.insert(ds->valueAt(r, 1).toString().left(1).toUpper());
    }
    bench::Tally t;
    bench::Stamp tSmall;
    int i = 0, misses = 0, absent = 0;
    for (auto _ : state) {
        if (i % 8 == 0) rawClientList(t, list);
        const QString& letter = letters[i++ % letters.size()];
        tSmall += typeKey(small, letter);
        const auto d = typeKey(large, letter);
        t.ours += d;
        state.SetIterationTime(d.wall);
        if (!present.contains(letter.toUpper()))
            ++absent;
        else if (!large.combo()->displayText().startsWith(letter, Qt::CaseInsensitive))
            ++misses;
    }
    QApplication::setKeyboardInputInterval(interval);
    if (misses) state.SkipWithError("type-ahead did not reach a matching row");
    const double n = double(state.iterations());
    state.counters["ms_100"] = tSmall.wall * 1000 / n;
    state.counters["ratio_100k_100"] = tSmall.wall > 0 ? t.ours.wall / tSmall.wall : 0;
    state.counters["no_match_keys"] = absent;
    t.report(state);
}
BENCHMARK(BM_LookupTypeAhead)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(40);

// A fresh frame's list is loaded and the host sets the key of the viewed record: the first
// assignment, then a second one. Raw loops: the list's statement, and the one-row select of that
// key that a form without the list would run.
void BM_LookupKeyAssignment(benchmark::State& state) {
    auto* host = bench::hostOn(bench::largeDatabase());
    const bench::RawStatement list = clientListStatement();
    bench::Tally t;
    bench::Stamp second, row;
    int k = 0;
    for (auto _ : state) {
        rawClientList(t, list);
        Frame f;
        f.lf->Init();
        const int key = bench::kFirstClientId + 10007 * (++k % 9);
        auto a = bench::Stamp::now();
        f.lf->lcSelect->setKeyValue(key);
        const auto d = bench::Stamp::now() - a;
        t.ours += d;
        state.SetIterationTime(d.wall);
        if (f.lf->lcSelect->displayText().isEmpty()) state.SkipWithError("the key shows no name");
        a = bench::Stamp::now();
        f.lf->lcSelect->setKeyValue(key + 1);
        second += bench::Stamp::now() - a;
        a = bench::Stamp::now();
        bench::rawFetch(
            host->RvDatabase(), host->pfReadTransaction(),
            bench::RawStatement{QStringLiteral("select id_clients, name_clients from clients where "
                                               "id_clients = ?"),
                                {key}});
        row += bench::Stamp::now() - a;
    }
    const double n = double(state.iterations());
    state.counters["second_ms"] = second.wall * 1000 / n;
    state.counters["raw_row_ms"] = row.wall * 1000 / n;
    state.counters["ratio_raw_row"] = row.wall > 0 ? t.ours.wall / row.wall : 0;
    t.report(state);
}
BENCHMARK(BM_LookupKeyAssignment)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
