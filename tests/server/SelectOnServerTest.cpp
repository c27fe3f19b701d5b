// Several users and several sessions of one user choosing records in one selection kind at the
// same time, on the private Firebird server of the test run.
#include "frames/core/Registry.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "host/HostImpl.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "tests/server/HostSessions.h"
#include "tests/support/ServerFixture.h"
#include <QElapsedTimer>

namespace frames::test {
namespace {

using workbench::HostImpl;

class SelectOnServer : public ServerTest {
protected:
    void TearDown() override {
        frames_.clear();
        setHost(nullptr);
        hosts_.clear();
        ServerTest::TearDown();
    }
    struct Session {
        HostImpl* host;
        TClientSelect_DF* frame;
        int user;
    };
    // A workbench session on the server as that user with a client dialog of kind 3 open on the
    // node 430.
    Session session(const QString& login, int user) {
        HostImpl* h = hosts_.open(login, connectString());
        std::unique_ptr<TAbsEditFrame> f(
            Registry::instance().create(QStringLiteral("TClientSelect_DF"), &top_));
        auto* d = qobject_cast<TClientSelect_DF*>(f.release());
        frames_.emplace_back(d);
        d->UserID = user;
        d->SetKind(3);
        d->Init();
        EXPECT_TRUE(d->DBTreeView->setCurrentKey(430));
        return {h, d, user};
    }
    static QList<int> ids(db::DataSet* d) {
        QList<int> r;
        for (int row = 0; row < d->recordCount(); ++row)
            r << d->valueAt(row, d->fieldByName("ID")->index()).toInt();
        std::sort(r.begin(), r.end());
        return r;
    }
    QList<int> stored(int user) {
        auto d = connectAs(QStringLiteral("SYSDBA"));
        db::Transaction tr(d.get(), db::TransactionOptions::read());
        db::Query q(d.get(), &tr);
        q.setSql(QStringLiteral("select client_index from SEL_CLIENT where id_user = %1 and kind = 3 "
                                "order by client_index")
                     .arg(user));
        q.open();
        QList<int> r;
        while (q.next()) r << q.value(0).toInt();
        q.close();
        tr.commit();
        return r;
    }
    // What the session told its user.
    static QString told(HostImpl* h) { return h->loggedMessages().join('\n'); }

    QWidget top_;
    HostSessions<> hosts_;
    std::vector<std::unique_ptr<TClientSelect_DF>> frames_;
};

TEST_F(SelectOnServer, UsersKeepTheirOwnChoiceAndALockFailsAtOnceKeepingWhatWasCommitted) {
    Session ivanov = session(QStringLiteral("IVANOV"), 2);
    Session petrova = session(QStringLiteral("PETROVA"), 4);
    Session ivanov2 = session(QStringLiteral("IVANOV"), 2);

    // Both users choose, interleaved, partly the same clients.
    setHost(ivanov.host);
    ivanov.frame->DBGridUnSelected->setMarked(0, true);
    ivanov.frame->DBGridUnSelected->setMarked(1, true);
    ivanov.frame->DBGridUnSelected->setMarked(2, true);
    ivanov.frame->TransferRecDown();
    setHost(petrova.host);
    petrova.frame->DBGridUnSelected->setMarked(1, true);
    petrova.frame->DBGridUnSelected->setMarked(3, true);
    petrova.frame->TransferRecDown();
    const QList<int> mine = ids(ivanov.frame->pfSelected);
    const QList<int> hers = ids(petrova.frame->pfSelected);
    EXPECT_EQ(mine.size(), 3);
    EXPECT_EQ(hers.size(), 2);
    EXPECT_EQ(stored(2), mine);
    EXPECT_EQ(stored(4), hers);
    // The shared client is chosen by both, each in his own row.
    EXPECT_EQ(QSet<int>(mine.begin(), mine.end()).intersect(QSet<int>(hers.begin(), hers.end())).size(), 1);

    // Ivanov's second session sees his choice, not Petrova's.
    setHost(ivanov2.host);
    ivanov2.frame->UpdateDataSet();
    EXPECT_EQ(ids(ivanov2.frame->pfSelected), mine);

    // The second session is in the middle of dropping a client (its transaction still open) when
    // the first one drops the same client: the first fails at once, says why, and nothing that
    // was committed is lost.
    const int contested = mine.first();
    auto holderDb = connectAs(QStringLiteral("IVANOV"));
    db::Transaction holder(holderDb.get(), db::TransactionOptions::writeNoWait());
    holder.start();
    db::Query drop(holderDb.get(), &holder);
    drop.setSql(QStringLiteral("delete from SEL_CLIENT where id_user = 2 and kind = 3 and client_index = %1")
                    .arg(contested));
    drop.exec();

    setHost(ivanov.host);
    ASSERT_TRUE(ivanov.frame->pfSelected->locate("ID", contested));
    QElapsedTimer t;
    t.start();
    ivanov.frame->TransferRecUp();
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_TRUE(told(ivanov.host).contains(QStringLiteral("Этот выбор сейчас меняет другой сеанс")))
        << told(ivanov.host).toStdString();
    EXPECT_FALSE(ivanov.frame->pfWriteTransaction->active());
    EXPECT_EQ(stored(2), mine);
    EXPECT_EQ(ids(ivanov.frame->pfSelected), mine);
    EXPECT_EQ(stored(4), hers);

    // The same client chosen again by the first session while the second holds a new choice of
    // it: refused at once as well.
    setHost(ivanov.host);
    const int fresh = ids(ivanov.frame->pfDataSet).last();
    db::Query add(holderDb.get(), &holder);
    add.setSql(
        QStringLiteral("insert into SEL_CLIENT (id_user, kind, client_index) values (2, 3, %1)").arg(fresh));
    add.exec();
    ASSERT_TRUE(ivanov.frame->pfDataSet->locate("ID", fresh));
    t.restart();
    ivanov.frame->TransferRecDown();
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_EQ(stored(2), mine);

    // Once the other session commits, everybody sees the outcome.
    holder.commit();
    QList<int> expected = mine;
    expected.removeOne(contested);
    expected << fresh;
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(stored(2), expected);
    setHost(ivanov.host);
    ivanov.frame->UpdateDataSet();
    EXPECT_EQ(ids(ivanov.frame->pfSelected), expected);
    EXPECT_EQ(stored(4), hers);
}

} // namespace
} // namespace frames::test
