// The demo database: the statements the lookup frames run, the user functions, the build itself.
#include "platform/db/Database.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "schema/DemoDatabase.h"
#include "tests/support/DbFixture.h"
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <thread>

namespace frames::test {
namespace {

class SchemaTest : public DbTest {
protected:
    // The texts of one column of every row of a select.
    QStringList column(const QString& sql, int col = 1, const QVariantMap& params = {}) {
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(sql);
        for (auto it = params.begin(); it != params.end(); ++it)
            q.paramByName(it.key())->setValue(it.value());
        q.open();
        QStringList out;
        while (q.next()) out << q.value(col).toString();
        q.close();
        tr.commit();
        return out;
    }
};

TEST_F(SchemaTest, LookupStatementsReturnRowsInCyrillicOrder) {
    // The list statements leave out the system row and sort by PXW_CYRL: Ё next to Е, lower
    // and upper case together, "я" last (byte order would put Ё first and lower case last).
    const QStringList algoritm = column("select id,name from ALGORITM where id<>-1 order by name");
    ASSERT_EQ(algoritm.size(), 8);
    EXPECT_FALSE(algoritm.contains("<Не задан>"));
    EXPECT_EQ(algoritm.indexOf("Ёмкостный пересчёт (за литр)"),
              algoritm.indexOf("Евро-прайс с пересчётом по курсу") + 1);
    EXPECT_LT(algoritm.indexOf("Наценка от закупочной цены"), algoritm.indexOf("округление до 10 копеек"));
    EXPECT_LT(algoritm.indexOf("округление до 10 копеек"), algoritm.indexOf("По прайс-листу поставщика"));
    EXPECT_EQ(algoritm.last(), "ящичный расчёт по кратности");

    EXPECT_EQ(column("select id,name from ALGORITM where id=:id", 1, {{"id", 6}}),
              QStringList{"ящичный расчёт по кратности"});

    EXPECT_EQ(column("SELECT ID, NAME, COMMENT FROM CARDKIND WHERE ID = ?ID", 2, {{"ID", 1}}),
              QStringList{"Штучный товар для продажи"});
    const QStringList types = column(
        "SELECT ID_CARDTYPE, NAME_CARDTYPE FROM CARDTYPES where ID_CARDTYPE<>-1 order by name_cardtype");
    EXPECT_EQ(types.indexOf("ёлочные украшения"), types.indexOf("Ежедневная пресса") + 1);
}

TEST_F(SchemaTest, ConnectedUserAndRights) {
    // The embedded connection logs in as SYSDBA, which is a real user of the system.
    EXPECT_EQ(scalar("select tyuser(user) from rdb$database").toInt(), 1);
    EXPECT_EQ(scalar("select tyuser('ivanov') from rdb$database").toInt(), 2);
    EXPECT_EQ(scalar("select tyuser('nobody') from rdb$database").toInt(), -1);
    EXPECT_EQ(scalar("select tyuser(null) from rdb$database").toInt(), -1);
    EXPECT_EQ(scalar("select list(ID_USER) from CUR_USER").toString(), "1");
    EXPECT_EQ(scalar("select count(*) from USER_RIGHTS r join CUR_USER u on u.ID_USER = r.ID_USER "
                     "where r.FUNC_NAME = 'CRM.LOGIN'")
                  .toInt(),
              1);
    // Logins are kept in upper case whatever was written.
    exec("insert into USERS (NAME_USER, LOGIN) values ('Новиков Павел', 'novikov')");
    EXPECT_EQ(scalar("select LOGIN from USERS where NAME_USER = 'Новиков Павел'").toString(), "NOVIKOV");
    EXPECT_GT(scalar("select tyuser('Novikov') from rdb$database").toInt(), 9);
}

TEST_F(SchemaTest, CardsReferToReferencesAndNumberThemselves) {
    EXPECT_EQ(scalar("select count(*) from CARD").toInt(), 30);
    // Some cards leave references empty; every reference that is set exists (foreign keys).
    EXPECT_GT(scalar("select count(*) from CARD where ALGORITM is null").toInt(), 0);
    EXPECT_GT(scalar("select count(*) from CARD where CARDKIND = 5").toInt(), 0);
    exec("insert into CARD (ARTICUL, NAME, PRICE) values ('900-0001', 'Новая карточка', 10.5)");
    EXPECT_EQ(scalar("select ID from CARD where ARTICUL = '900-0001'").toInt(), 31);
    EXPECT_FALSE(scalar("select CREATED from CARD where ARTICUL = '900-0001'").isNull());
    EXPECT_THROW(exec("insert into CARD (NAME, ALGORITM) values ('x', 999)"), db::Error);
}

TEST(DemoDatabaseBuild, ReplacesAFileAndRebuildsOneMadeFromOtherScripts) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("sub/demo.fdb");
    QDir().mkpath(dir.filePath("sub"));
    {
        QFile junk(path);
        ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
        junk.write("not a database");
    }
    schema::createDemoDatabase(path); // replaced, with the scripts' fingerprint beside it
    EXPECT_EQ(QDir(dir.filePath("sub")).entryList(QDir::Files | QDir::Hidden),
              (QStringList{"demo.fdb", "demo.fdb.schema"}));
    auto number = [&](const QString& sql) {
        db::Database database;
        database.open(path);
        db::Transaction tr(&database, db::TransactionOptions::read());
        db::Query q(&database, &tr);
        q.setSql(sql);
        q.open();
        const int n = q.next() ? q.value(0).toInt() : -1;
        q.close();
        tr.commit();
        database.close();
        return n;
    };
    auto cards = [&] { return number("select count(*) from CARD"); };
    EXPECT_EQ(cards(), 30);
    // Built with forced writes off, the finished database has them on.
    EXPECT_EQ(number("select mon$forced_writes from mon$database"), 1);

    QString previous;
    EXPECT_FALSE(schema::ensureDemoDatabase(path, &previous)); // made from these scripts: kept
    EXPECT_TRUE(previous.isEmpty());

    // A database made from other scripts is rebuilt, and the old file stays beside it.
    {
        QFile stamp(path + ".schema");
        ASSERT_TRUE(stamp.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stamp.write("older scripts");
    }
    EXPECT_TRUE(schema::ensureDemoDatabase(path, &previous));
    EXPECT_EQ(previous, path + ".previous");
    EXPECT_TRUE(QFile::exists(previous));
    EXPECT_EQ(cards(), 30);
    EXPECT_FALSE(schema::ensureDemoDatabase(path));
}

// Starts that meet each other: two first starts build the database once and both open it; an
// outdated database that another start has open is left alone, with a message that says why.
TEST(DemoDatabaseBuild, NeverReplacesADatabaseInUse) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("demo.fdb");
    schema::DemoDatabaseLock first(path), second(path);
    bool builtFirst = false, builtSecond = false;
    QString failure;
    std::thread other([&] {
        try {
            builtSecond = schema::ensureDemoDatabase(path, nullptr, &second);
        } catch (const std::exception& e) {
            failure = QString::fromUtf8(e.what());
        }
    });
    builtFirst = schema::ensureDemoDatabase(path, nullptr, &first);
    other.join();
    EXPECT_TRUE(failure.isEmpty()) << failure.toStdString();
    EXPECT_NE(builtFirst, builtSecond); // one built it, the other waited and took it
    db::Database a, b;
    a.open(path);
    b.open(path);
    b.close();

    // The scripts changed while the first start still uses the file: a third start refuses.
    {
        QFile stamp(path + ".schema");
        ASSERT_TRUE(stamp.open(QIODevice::WriteOnly | QIODevice::Truncate));
        stamp.write("older scripts");
    }
    second.unlock();
    const QDateTime built = QFileInfo(path).lastModified();
    try {
        schema::ensureDemoDatabase(path, nullptr, nullptr, 2000);
        ADD_FAILURE() << "an outdated database in use was replaced";
    } catch (const db::Error& e) {
        EXPECT_TRUE(e.text().contains("открыта в другом запуске")) << e.text().toStdString();
    }
    EXPECT_EQ(QFileInfo(path).lastModified(), built);
    EXPECT_FALSE(QFile::exists(path + ".previous"));
    a.close();
    // Once no start uses it, the next one rebuilds it.
    first.unlock();
    QString previous;
    EXPECT_TRUE(schema::ensureDemoDatabase(path, &previous));
    EXPECT_EQ(previous, path + ".previous");
}

} // namespace
} // namespace frames::test
