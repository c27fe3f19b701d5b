#include "tests/support/ImagesHost.h"
#include "platform/db/Query.h"
#include "schema/DemoDatabase.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>

namespace frames::test {

ImagesTestHost::~ImagesTestHost() {
    if (imageDatabase) imageDatabase->close();
}

void ImagesTestHost::openImageDatabase(const QString& path) {
    imageDatabase = std::make_unique<db::Database>();
    imageDatabase->open(path);
}

bool ImagesTestHost::ConfirmBox(const QString& text, const QString& caption) {
    messages.push_back({"confirm", text, caption});
    if (confirmations.empty()) return true;
    const bool a = confirmations.front();
    confirmations.pop_front();
    return a;
}

QVariantList firstRow(db::Database* database, const QString& sql) {
    db::Transaction tr(database, db::TransactionOptions::read());
    tr.start();
    db::Query q(database, &tr);
    q.setSql(sql);
    q.open();
    QVariantList values;
    if (q.next())
        for (int i = 0; i < q.columnCount(); ++i) values << q.value(i);
    q.close();
    tr.commit();
    return values;
}

QString copyDemoImageDatabase(const QString& databasePath) {
    const QString demo = schema::imageDatabasePath(QStringLiteral(FRAMES_DEMO_DB));
    // Running a test binary by hand, without ctest's fixture, still works.
    if (!QFile::exists(demo)) {
        QDir().mkpath(QFileInfo(demo).absolutePath());
        schema::ensureDemoDatabase(demo, nullptr, nullptr, 120000, schema::imageScripts());
    }
    const QString path = schema::imageDatabasePath(databasePath);
    QFile::remove(path);
    if (!QFile::copy(demo, path)) throw std::runtime_error("cannot copy the demo image database");
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    return path;
}

} // namespace frames::test
