// Builds the demo database from the schema scripts: make_demo_db PATH
#include "platform/db/Error.h"
#include "schema/DemoDatabase.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() != 2 || args[1].startsWith('-')) {
        std::fprintf(stderr, "usage: make_demo_db PATH\n");
        return 2;
    }
    const QString path = QFileInfo(args[1]).absoluteFilePath();
    QElapsedTimer timer;
    timer.start();
    try {
        frames::schema::createDemoDatabase(path);
    } catch (const frames::db::Error& e) {
        std::fprintf(stderr, "make_demo_db: %s\n", qPrintable(e.text()));
        return 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "make_demo_db: %s\n", e.what());
        return 1;
    }
    std::printf("Demo database written to %s (%lld ms)\n", qPrintable(path), timer.elapsed());
    return 0;
}
