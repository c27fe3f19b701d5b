// The benchmarks run with a Qt application (widgets offscreen unless a platform is chosen).
#include "bench/BenchSupport.h"
#include <QApplication>
#include <benchmark/benchmark.h>
#include <cstdio>

namespace {

// The offscreen platform says at every opened list that it cannot raise a window or grab the
// keyboard: those lines would bury the results.
QtMessageHandler defaultHandler = nullptr;
void messageHandler(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.startsWith(QLatin1String("This plugin does not support"))) return;
    defaultHandler(type, context, text);
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    defaultHandler = qInstallMessageHandler(messageHandler);
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    if (!frames::bench::qtDriverAvailable())
        std::printf("Qt SQL's Firebird driver (QIBASE) is not installed: the Qt SQL column is left out.\n");
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
