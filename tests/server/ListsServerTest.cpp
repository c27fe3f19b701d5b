#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lists/LCBF_PermissionPattern.h"
#include "frames/lists/SF_Place.h"
#include "host/HostImpl.h"
#include "platform/db/Query.h"
#include "tests/server/HostSessions.h"
#include "tests/support/ServerFixture.h"
#include <QElapsedTimer>
#include <QTemporaryDir>

using namespace frames;
using namespace frames::test;
using workbench::HostImpl;

namespace {

class ListsOnServer : public ServerTest {
protected:
    void TearDown() override {
        frames_.clear();
        setHost(nullptr);
        hosts_.clear();
        ServerTest::TearDown();
    }
    HostImpl* session(const QString& login) { return hosts_.open(login, connectString()); }
    template <typename T> T* frame(HostImpl* h, const QString& cls, int kind) {
        setHost(h);
        frames_.push_back(std::make_unique<QWidget>());
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, frames_.back().get()));
        f->Kind = kind;
        f->Init();
        return f;
    }
    void exec(const QString& sql) {
        auto d = connectAs(QStringLiteral("SYSDBA"));
        db::Transaction tr(d.get(), db::TransactionOptions::writeNoWait());
        tr.start();
        db::Query q(d.get(), &tr);
        q.setSql(sql);
        q.exec();
        tr.commit();
    }
    QString places(int user, int kind) {
        auto d = connectAs(QStringLiteral("SYSDBA"));
        db::Transaction tr(d.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(d.get(), &tr);
        q.setSql(QStringLiteral(
                     "select PLACE_INDEX, PRIORITY, IS_USED from SEL_PLACE where ID_USER=%1 and KIND=%2 "
                     "order by PRIORITY, PLACE_INDEX")
                     .arg(user)
                     .arg(kind));
        q.open();
        QStringList out;
        while (q.next())
            out << QStringLiteral("%1:%2:%3")
                       .arg(q.value(0).toInt())
                       .arg(q.value(1).toInt())
                       .arg(q.value(2).toInt());
        return out.join(' ');
    }
    static bool said(HostImpl* h, const QString& part) {
        for (const QString& m : h->loggedMessages())
            if (m.contains(part)) return true;
        return false;
    }

    HostSessions<> hosts_;
    std::vector<std::unique_ptr<QWidget>> frames_;
};

} // namespace

// Two sessions of one user keep the place list of a kind open: the first session's switch of a
// place the second one holds fails at once with a clear message (no wait), the first session's
// other edits stay until it commits, and after the second session commits, the same switch goes
// through and both sessions' changes are kept.
TEST_F(ListsOnServer, TwoSessionsOfOneUserOnThePlaceList) {
    if (!fbserver::available()) GTEST_SKIP() << "no server in this run";
    exec("insert into SEL_PLACE (ID_USER, KIND, PLACE_INDEX) values (2, 7, 50)");
    exec("insert into SEL_PLACE (ID_USER, KIND, PLACE_INDEX) values (2, 7, 51)");
    exec("insert into SEL_PLACE (ID_USER, KIND, PLACE_INDEX) values (2, 7, 52)");
    ASSERT_EQ(places(2, 7), "50:1:1 51:2:1 52:3:1");

    HostImpl* a = session(QStringLiteral("IVANOV"));
    HostImpl* b = session(QStringLiteral("IVANOV"));
    auto* fa = frame<TSFPlace>(a, "TSFPlace", 7);
    auto* fb = frame<TSFPlace>(b, "TSFPlace", 7);
    ASSERT_EQ(fa->pfDataSet->recordCount(), 3);

    setHost(a);
    ASSERT_TRUE(fa->pfDataSet->locate("ID", 50));
    fa->ToggleUsed(); // A's own edit, not committed yet
    setHost(b);
    ASSERT_TRUE(fb->pfDataSet->locate("ID", 52));
    fb->ToggleUsed(); // B holds place 52

    setHost(a);
    ASSERT_TRUE(fa->pfDataSet->locate("ID", 52));
    QElapsedTimer t;
    t.start();
    EXPECT_FALSE(guard([&] { fa->ToggleUsed(); }));
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_TRUE(said(a, QStringLiteral("другим пользователем")))
        << a->loggedMessages().join("\n").toStdString();
    EXPECT_FALSE(said(a, QStringLiteral("UPDATE SEL_PLACE"))); // the statement goes to the trace only
    if (fa->pfDataSet->inEditMode()) fa->pfDataSet->cancel();
    EXPECT_EQ(places(2, 7), "50:1:1 51:2:1 52:3:1");

    setHost(b);
    fb->Commit();
    EXPECT_EQ(places(2, 7), "50:1:1 51:2:1 52:3:0");

    setHost(a);
    ASSERT_TRUE(fa->pfDataSet->locate("ID", 52));
    EXPECT_EQ(fa->pfDataSet->fieldByName("IS_USED")->asInteger(), 1); // A still shows what it read
    fa->ToggleUsed();
    fa->Commit();
    EXPECT_EQ(places(2, 7), "50:1:0 51:2:1 52:3:0");
    EXPECT_EQ(fa->PlaceCount(), 1);
}

// Two users saving the check list of the same kind keep separate rows.
TEST_F(ListsOnServer, TwoUsersSaveTheirOwnCheckLists) {
    if (!fbserver::available()) GTEST_SKIP() << "no server in this run";
    // Each user works in a process of his own: the run constants are his while his session acts.
    HostImpl* a = session(QStringLiteral("IVANOV"));
    const int ivanov = CUR_USER;
    HostImpl* b = session(QStringLiteral("PETROVA"));
    const int petrova = CUR_USER;
    auto as = [](HostImpl* h, int user) {
        setHost(h);
        CUR_USER = user;
    };
    as(a, ivanov);
    auto* la = frame<TPermissionPattern_LCBF>(a, "TPermissionPattern_LCBF", 4);
    as(b, petrova);
    auto* lb = frame<TPermissionPattern_LCBF>(b, "TPermissionPattern_LCBF", 4);
    as(a, ivanov);
    la->clbSelect->item(0)->setCheckState(Qt::Checked);
    EXPECT_TRUE(la->SaveItems());
    as(b, petrova);
    lb->clbSelect->item(1)->setCheckState(Qt::Checked);
    lb->clbSelect->item(2)->setCheckState(Qt::Checked);
    EXPECT_TRUE(lb->SaveItems());
    as(a, ivanov);
    EXPECT_TRUE(la->SaveItems()); // saving again replaces only his own rows

    auto d = connectAs(QStringLiteral("SYSDBA"));
    db::Transaction tr(d.get(), db::TransactionOptions::read());
    tr.start();
    db::Query q(d.get(), &tr);
    q.setSql("select ID_USER, count(*) from SEL_PERMIS where KIND=4 group by ID_USER order by ID_USER");
    q.open();
    QStringList rows;
    while (q.next()) rows << QStringLiteral("%1:%2").arg(q.value(0).toInt()).arg(q.value(1).toInt());
    EXPECT_EQ(rows, (QStringList{"2:1", "4:2"}));
}
