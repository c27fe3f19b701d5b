#include "DbTestUtil.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include <QElapsedTimer>

using namespace frames::db;
using frames::db::test::ScratchDb;
using frames::db::test::thrown;

namespace {

class Transactions : public ScratchDb {
protected:
    void SetUp() override {
        ScratchDb::SetUp();
        exec("create table acc (id integer not null primary key, amount integer check (amount >= 0),"
             " parent integer references acc(id))");
        exec("insert into acc (id, amount) values (1, 100)");
    }
    int count(const QString& where = "1=1") {
        Transaction t(db.get(), TransactionOptions::read());
        Query q(db.get(), &t);
        q.setSql("select count(*) from acc where " + where);
        q.exec();
        return q.value(0).toInt();
    }
};

TEST_F(Transactions, NoWaitWriterFailsAtOnceOnUncommittedUpdate) {
    Transaction first(db.get(), TransactionOptions::writeNoWait());
    Query upd(db.get(), &first);
    upd.setSql("update acc set amount = amount + 1 where id = :id");
    upd.paramByName("id")->setValue(1);
    upd.exec();
    EXPECT_EQ(upd.rowsAffected(), 1);

    Transaction second(db.get(), TransactionOptions::writeNoWait());
    Query other(db.get(), &second);
    other.setSql("update acc set amount = 0 where id = 1");
    QElapsedTimer timer;
    timer.start();
    const Error e = thrown([&] { other.exec(); });
    EXPECT_TRUE(e.isLockConflict()) << e.text().toStdString();
    EXPECT_TRUE(e.hasCode(335544345L) || e.hasCode(335544336L)); // lock conflict / deadlock
    EXPECT_LT(timer.elapsed(), 2000);
    second.rollback();
    first.commit();
    EXPECT_EQ(count("amount = 101"), 1);

    // A waiting writer with a lock time-out also reports a lock conflict once the time is up.
    Transaction holder(db.get(), TransactionOptions::writeNoWait());
    Query h(db.get(), &holder);
    h.setSql("update acc set amount = 5 where id = 1");
    h.exec();
    TransactionOptions waiting = TransactionOptions::writeNoWait();
    waiting.wait = true;
    waiting.lockTimeout = 1;
    Transaction waiter(db.get(), waiting);
    Query w(db.get(), &waiter);
    w.setSql("update acc set amount = 6 where id = 1");
    EXPECT_TRUE(thrown([&] { w.exec(); }).isLockConflict());
}

TEST_F(Transactions, RollbackLeavesNothingAndCommitKeepsAll) {
    {
        Transaction t(db.get(), TransactionOptions::writeNoWait());
        Query q(db.get(), &t);
        q.setSql("insert into acc (id, amount) values (:id, 1)");
        for (int id = 2; id <= 5; ++id) {
            q.paramByName("id")->setValue(id);
            q.exec();
        }
        t.rollback();
        EXPECT_FALSE(t.active());
    }
    EXPECT_EQ(count(), 1);
    {
        // destroying an active transaction rolls it back
        Transaction t(db.get(), TransactionOptions::writeNoWait());
        Query q(db.get(), &t);
        q.setSql("insert into acc (id, amount) values (7, 1)");
        q.exec();
    }
    EXPECT_EQ(count(), 1);
    Transaction t(db.get(), TransactionOptions::writeNoWait());
    Query q(db.get(), &t);
    q.setSql("insert into acc (id, amount) values (8, 1)");
    q.exec();
    t.commitRetaining();
    EXPECT_TRUE(t.active());
    EXPECT_EQ(count(), 2);
    t.commit();
}

TEST_F(Transactions, ConstraintViolationsHaveTheirKind) {
    Transaction t(db.get(), TransactionOptions::writeNoWait());
    Query q(db.get(), &t);
    auto expectViolation = [&](const QString& sql) {
        q.setSql(sql);
        const Error e = thrown([&] { q.exec(); });
        EXPECT_TRUE(e.isConstraintViolation()) << sql.toStdString() << ": " << e.text().toStdString();
    };
    expectViolation("insert into acc (id, amount) values (1, 1)");             // primary key
    expectViolation("insert into acc (id, amount) values (2, -1)");            // check
    expectViolation("insert into acc (id, amount, parent) values (3, 1, 99)"); // foreign key
    expectViolation("insert into acc (id, amount) values (null, 1)");          // not null
    q.setSql("select 1/0 from rdb$database");
    EXPECT_EQ(thrown([&] { q.exec(); }).kind(), Error::Kind::Other);
}

TEST_F(Transactions, TransactionEndClosesOpenCursor) {
    Transaction t(db.get(), TransactionOptions::read());
    Query q(db.get(), &t);
    q.setSql("select id from acc");
    q.open();
    EXPECT_TRUE(q.isOpen());
    t.commit();
    EXPECT_FALSE(q.isOpen());
    EXPECT_FALSE(q.next());
    q.open(); // restarts the transaction
    EXPECT_TRUE(q.next());
    EXPECT_TRUE(t.active());
}

TEST(DatabaseOpen, MissingFileAndReattach) {
    QTemporaryDir dir;
    Database db;
    EXPECT_THROW(db.open(dir.filePath("missing.fdb")), Error);
    EXPECT_FALSE(db.isOpen());
    db.create(dir.filePath("a.fdb"));
    EXPECT_TRUE(db.isOpen());
    db.executeImmediate("create table x (a integer)");
    Transaction t(&db);
    Query q(&db, &t);
    q.setSql("select count(*) from x");
    q.exec();
    db.close(); // rolls back what is open
    EXPECT_FALSE(t.active());
    EXPECT_FALSE(db.isOpen());
    EXPECT_THROW(q.exec(), Error);
    db.open(dir.filePath("a.fdb"));
    EXPECT_EQ(db.connectString(), dir.filePath("a.fdb"));
    q.exec(); // prepared again on the new attachment
    EXPECT_EQ(q.value(0).toInt(), 0);
}

} // namespace
