// Builds the demo database from the schema scripts: make_demo_db PATH; with --images, the demo
// image database from its own scripts.
#include "platform/db/Error.h"
#include "schema/DemoDatabase.h"
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <cstdio>

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    QStringList args = app.arguments();
    args.removeFirst();
    const bool images = args.removeAll(QStringLiteral("--images")) > 0;
    if (args.size() != 1 || args[0].startsWith('-')) {
        std::fprintf(stderr, "usage: make_demo_db [--images] PATH\n");
        return 2;
    }
    const QString path = QFileInfo(args[0]).absoluteFilePath();
    QElapsedTimer timer;
    timer.start();
    try {
        frames::schema::createDemoDatabase(path, images ? frames::schema::imageScripts()
                                                          : frames::schema::mainScripts());
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
