#include "tests/support/DbFixture.h"
#include "frames/core/RunParams.h"
#include "platform/db/Query.h"
#include "schema/DemoDatabase.h"
#include "tests/support/ImagesHost.h"
#include <QDir>
#include <QFile>

namespace frames::test {

QString demoDatabasePath() {
    const QString path = QStringLiteral(FRAMES_DEMO_DB);
    // Running a test binary by hand, without ctest's fixture, still works.
    if (!QFile::exists(path)) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        schema::ensureDemoDatabase(path);
    }
    return path;
}

void DbTest::SetUp() {
    QDir().mkpath(QStringLiteral(FRAMES_TEST_TMP));
    dir_ = std::make_unique<QTemporaryDir>(QStringLiteral(FRAMES_TEST_TMP "/db-XXXXXX"));
    ASSERT_TRUE(dir_->isValid());
    dbPath_ = dir_->filePath("test.fdb");
    ASSERT_TRUE(QFile::copy(demoDatabasePath(), dbPath_));
    QFile::setPermissions(dbPath_, QFile::ReadOwner | QFile::WriteOwner);
    host = std::make_unique<TestHost>(dbPath_);
    // The run constants of the connected user, as the workbench sets them after logging in (and
    // whatever an earlier test left in them).
    const QVariantList me = row("select u.ID_USER, u.FILIALINDEX, u.SHOPINDEX, u.SET_FOR, u.CLASSIF_TYPE "
                                "from CUR_USER c join USERS u on u.ID_USER = c.ID_USER");
    ASSERT_EQ(me.size(), 5);
    CUR_USER = me.at(0).toInt();
    CUR_FILIALINDEX = me.at(1).toInt();
    CUR_SHOPINDEX = me.at(2).toInt();
    GLOBAL_PAR_SET_FOR = me.at(3).toInt();
    GLOBAL_PAR_CLASSIF_TYPE = me.at(4).toInt();
    host->profilePath = dir_->filePath("profile");
    QDir().mkpath(host->profilePath);
}

void DbTest::TearDown() {
    host.reset();
}

std::unique_ptr<db::Database> DbTest::secondConnection() const {
    auto d = std::make_unique<db::Database>();
    d->open(dbPath_);
    return d;
}

void DbTest::exec(const QString& sql) const {
    db::Transaction tr(host->database.get(), db::TransactionOptions::writeNoWait());
    tr.start();
    db::Query q(host->database.get(), &tr);
    q.setSql(sql);
    q.exec();
    tr.commit();
}

QVariantList DbTest::row(const QString& sql) const {
    return firstRow(host->database.get(), sql);
}

QVariant DbTest::scalar(const QString& sql) const {
    return row(sql).value(0);
}

} // namespace frames::test
