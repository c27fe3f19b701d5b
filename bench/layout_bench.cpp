// Reading and writing the per-user layout tree at 200,000 items: the host reads layout.json at
// start-up and writes it at exit, so both must stay well under a second.
#include "frames/core/ConfigItem.h"
#include <benchmark/benchmark.h>

namespace {

// 200,000 items under the root: forms x items per form (1 x 200000 is one flat list).
QByteArray layoutText(int forms, int perForm) {
    frames::TConfigItem root("Layout");
    for (int f = 0; f < forms; ++f) {
        frames::TConfigItem* form = root.ItemByName(QStringLiteral("TForm_%1").arg(f));
        for (int i = 0; i < perForm; ++i)
            form->ItemByName(QStringLiteral("Component%1.Value").arg(i))->SetAsInteger(i);
    }
    return root.toJsonText();
}

void BM_LayoutRead(benchmark::State& state) {
    const QByteArray text = layoutText(int(state.range(0)), 200000 / int(state.range(0)));
    for (auto _ : state) {
        frames::TConfigItem root("Layout");
        if (!root.readJsonText(text)) state.SkipWithError("not read");
        benchmark::DoNotOptimize(root.Count());
    }
    state.counters["bytes"] = double(text.size());
}
BENCHMARK(BM_LayoutRead)
    ->Arg(1)
    ->Arg(200)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

void BM_LayoutWrite(benchmark::State& state) {
    frames::TConfigItem root("Layout");
    root.readJsonText(layoutText(int(state.range(0)), 200000 / int(state.range(0))));
    for (auto _ : state) benchmark::DoNotOptimize(root.toJsonText().size());
}
BENCHMARK(BM_LayoutWrite)
    ->Arg(1)
    ->Arg(200)
    ->Arg(20000)
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

} // namespace
