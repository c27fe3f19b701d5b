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

// The frame's select with its parameters written in, as a hand-written loop would run it.
QString literalSql(db::DataSet* ds) {
    QString sql = ds->selectSql();
    for (const QString& name : db::ScannedSql::scan(sql).names) {
        const db::Param* p = ds->params().find(name);
        const QString value = p && p->value().isValid() ? p->value().toString() : QStringLiteral("null");
        sql.replace(QRegularExpression(QStringLiteral("[:?]%1\\b").arg(name),
                                       QRegularExpression::CaseInsensitiveOption),
                    value);
    }
    return sql;
}

void BM_LookupInit(benchmark::State& state) {
    const QString path = bench::largeDatabase();
    auto* host = bench::hostOn(path);
    QString sql;
    {
        Frame f;
        f.lf->Init();
        sql = literalSql(f.lf->pFIBDataSet1);
    }
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
                rawRows = bench::rawFetch(host->RvDatabase(), host->pfReadTransaction(), sql);
                t.raw += bench::Stamp::now() - a;
                break;
            }
            case 1: {
                Frame f;
                const auto a = bench::Stamp::now();
                f.lf->Init();
                const auto d = bench::Stamp::now() - a;
                t.ours += d;
                state.SetIterationTime(d.cpu);
                rows = f.lf->pFIBDataSet1->recordCount();
                break;
            }
            case 2:
                if (t.hasQt) {
                    const auto a = bench::Stamp::now();
                    qtRows = bench::qtModelFetch(path, sql);
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
BENCHMARK(BM_LookupInit)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(6);

// A shown client lookup over the first `rows` clients.
struct ShownLookup {
    Frame f;
    explicit ShownLookup(int rows) {
        db::DataSet* ds = f.lf->pFIBDataSet1;
        QString sql = ds->selectSql();
        sql.replace(QRegularExpression(QStringLiteral("^\\s*select\\s"), QRegularExpression::CaseInsensitiveOption),
                    QStringLiteral("select first %1 ").arg(rows));
        ds->setSelectSql(sql);
        f.lf->Init();
        f.top.resize(400, 60);
        f.top.show();
        bench::processEvents();
    }
    ui::LookupCombo* combo() const { return f.lf->lcSelect; }
};

void BM_LookupDropDownOpen(benchmark::State& state) {
    bench::hostOn(bench::largeDatabase());
    ShownLookup small(100), large(bench::kLargeClients);
    bench::Stamp tSmall, tLarge;
    auto openClose = [](ShownLookup& l) {
        const auto a = bench::Stamp::now();
        l.combo()->dropDown();
        bench::processEvents(); // shown and painted
        const auto d = bench::Stamp::now() - a;
        l.combo()->closeUp(false);
        bench::processEvents();
        return d;
    };
    openClose(small);
    openClose(large);
    for (auto _ : state) {
        tSmall += openClose(small);
        const auto d = openClose(large);
        tLarge += d;
        state.SetIterationTime(d.wall);
    }
    const double n = double(state.iterations());
    state.counters["rows"] = large.f.lf->pFIBDataSet1->recordCount();
    state.counters["ms_100k"] = tLarge.wall * 1000 / n;
    state.counters["ms_100"] = tSmall.wall * 1000 / n;
    state.counters["ratio_100k_100"] = tSmall.wall > 0 ? tLarge.wall / tSmall.wall : 0;
}
BENCHMARK(BM_LookupDropDownOpen)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(20);

// One letter typed into the closed combo (a new search each time): the list moves to the first
// client whose name starts with it.
void BM_LookupTypeAhead(benchmark::State& state) {
    bench::hostOn(bench::largeDatabase());
    ShownLookup large(bench::kLargeClients), small(100);
    const int interval = QApplication::keyboardInputInterval();
    QApplication::setKeyboardInputInterval(0); // every key starts a new search (after a pause)
    const QStringList letters = {QStringLiteral("Я"), QStringLiteral("Ё"), QStringLiteral("К"),
                                 QStringLiteral("м"), QStringLiteral("О"), QStringLiteral("Ш"),
                                 QStringLiteral("Э"), QStringLiteral("и")};
    auto type = [](ShownLookup& l, const QString& letter) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, letter);
        QThread::msleep(2);
        const auto a = bench::Stamp::now();
        QApplication::sendEvent(l.combo()->comboBox(), &press);
        return bench::Stamp::now() - a;
    };
    bench::Stamp tLarge, tSmall;
    int i = 0, misses = 0;
    for (auto _ : state) {
        const QString& letter = letters[i++ % letters.size()];
        tSmall += type(small, letter);
        const auto d = type(large, letter);
        tLarge += d;
        state.SetIterationTime(d.wall);
        if (!large.combo()->displayText().startsWith(letter, Qt::CaseInsensitive)) ++misses;
    }
    QApplication::setKeyboardInputInterval(interval);
    if (misses) state.SkipWithError("type-ahead did not reach a matching row");
    const double n = double(state.iterations());
    state.counters["ms_100k"] = tLarge.wall * 1000 / n;
    state.counters["ms_100"] = tSmall.wall * 1000 / n;
    state.counters["ratio_100k_100"] = tSmall.wall > 0 ? tLarge.wall / tSmall.wall : 0;
}
BENCHMARK(BM_LookupTypeAhead)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(40);

// A fresh frame's list is loaded and the host sets the key of the viewed record: the first
// assignment, then a second one.
void BM_LookupKeyAssignment(benchmark::State& state) {
    bench::hostOn(bench::largeDatabase());
    bench::Stamp first, second;
    int k = 0;
    for (auto _ : state) {
        Frame f;
        f.lf->Init();
        const int key = bench::kFirstClientId + 10007 * (++k % 9);
        auto a = bench::Stamp::now();
        f.lf->lcSelect->setKeyValue(key);
        const auto d = bench::Stamp::now() - a;
        first += d;
        state.SetIterationTime(d.wall);
        if (f.lf->lcSelect->displayText().isEmpty()) state.SkipWithError("the key shows no name");
        a = bench::Stamp::now();
        f.lf->lcSelect->setKeyValue(key + 1);
        second += bench::Stamp::now() - a;
    }
    const double n = double(state.iterations());
    state.counters["first_ms"] = first.wall * 1000 / n;
    state.counters["second_ms"] = second.wall * 1000 / n;
}
BENCHMARK(BM_LookupKeyAssignment)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
