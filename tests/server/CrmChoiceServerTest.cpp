// Two users and two sessions of one user choosing in the CRM trees on the test run's server.
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/crm/EF_CRMSelect.h"
#include "frames/crm/UManagerGroups.h"
#include "host/HostImpl.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "tests/server/HostSessions.h"
#include "tests/support/ServerFixture.h"

namespace frames::test {
namespace {

class CrmOnServer : public ServerTest {
protected:
    void TearDown() override {
        frames_.clear();
        setHost(nullptr);
        hosts_.clear();
        ServerTest::TearDown();
    }
    // A workbench session as that user; `use` makes it the frames' host and user again.
    workbench::HostImpl* session(const QString& login) {
        workbench::HostImpl* h = hosts_.open(login, connectString());
        users_[h] = CUR_USER;
        return h;
    }
    void use(workbench::HostImpl* h) {
        setHost(h);
        CUR_USER = users_.value(h);
    }
    template <typename T> T* frame(workbench::HostImpl* h, const char* cls) {
        use(h);
        frames_.emplace_back(Registry::instance().create(cls, &top_));
        return qobject_cast<T*>(frames_.back().get());
    }

    QWidget top_;
    std::vector<std::unique_ptr<TAbsEditFrame>> frames_;
    HostSessions<> hosts_;
    QHash<const workbench::HostImpl*, int> users_;
};

int stateOf(TCRMSelect_Frame* f, int key) {
    return f->DBTreeView->stateIndex(f->DBTreeView->findNode(key));
}

} // namespace

// Each user's choice is his own; the same item chosen meanwhile in another session of the user is
// refused with a message, and the frame shows the stored choice afterwards.
TEST_F(CrmOnServer, ChoicesArePerUserAndARaceIsReported) {
    if (!fbserver::available()) GTEST_SKIP() << "no test server";
    auto* ivanov = session("IVANOV");
    auto* petrova = session("PETROVA");
    auto* petrova2 = session("PETROVA");

    auto* a = frame<TCRMSelect_Frame>(ivanov, "TCRMManagerSelect_Frame");
    a->Kind = 7;
    a->FrameInit();
    auto* b = frame<TCRMSelect_Frame>(petrova, "TCRMManagerSelect_Frame");
    b->Kind = 7;
    b->FrameInit();
    auto* c = frame<TCRMSelect_Frame>(petrova2, "TCRMManagerSelect_Frame");
    c->Kind = 7;
    c->FrameInit();

    use(ivanov);
    ASSERT_TRUE(a->DBTreeView->setCurrentKey(283));
    a->actSelect->trigger(); // the current row
    EXPECT_EQ(scalar("select count(*) from CRM_REPORT_MANAGER where kind = 7 and owner_id = 2").toInt(), 1);
    EXPECT_EQ(stateOf(a, 283), 4);

    use(petrova);
    ASSERT_TRUE(b->DBTreeView->setCurrentKey(283));
    EXPECT_EQ(b->ibqrySelected->recordCount(), 0);
    EXPECT_EQ(stateOf(b, 283), -1);
    use(petrova2);
    ASSERT_TRUE(c->DBTreeView->setCurrentKey(283));
    use(petrova);
    b->actSelect->trigger();
    const int messages = ivanov->loggedMessages().size() + petrova2->loggedMessages().size();
    use(petrova2);
    c->actSelect->trigger(); // the same manager, from a list read before
    EXPECT_EQ(petrova2->loggedMessages().size() + ivanov->loggedMessages().size(), messages + 1);
    EXPECT_EQ(scalar("select count(*) from CRM_REPORT_MANAGER where kind = 7 and owner_id = 4").toInt(), 1);
    c->OpenDataSets();
    EXPECT_EQ(c->ibqrySelected->recordCount(), 1);
}

// Two sessions move groups at once: the second move, checked against a tree read before the first,
// would close a cycle; the server refuses it, the user is told and the groups stay as they were.
TEST_F(CrmOnServer, GroupMovesThatWouldMakeACycleAreRefused) {
    if (!fbserver::available()) GTEST_SKIP() << "no test server";
    auto* one = session("SYSDBA");
    auto* two = session("SYSDBA");
    auto* a = frame<TfrmManagerGroups>(one, "TfrmManagerGroups");
    a->FrameInit();
    auto* b = frame<TfrmManagerGroups>(two, "TfrmManagerGroups");
    b->FrameInit();
    auto find = [](TfrmManagerGroups* f, const QString& name) {
        return f->tvManagerGroups->findItems(name, Qt::MatchExactly | Qt::MatchRecursive).value(0);
    };
    use(two);
    find(b, "Регионы")->setExpanded(true); // loads "Санкт-Петербург"
    ASSERT_NE(find(b, "Санкт-Петербург"), nullptr);

    use(one);
    a->tvManagerGroups->setCurrentItem(find(a, "Регионы"));
    ASSERT_TRUE(a->TreeDragOver(a->tvManagerGroups, find(a, "Москва")));
    a->TreeDragDrop(a->tvManagerGroups, find(a, "Москва"));
    EXPECT_EQ(scalar("select parent_id from report_managers_classif where classif_id = 3").toInt(), 1);

    use(two);
    b->tvManagerGroups->setCurrentItem(find(b, "Москва"));
    ASSERT_TRUE(b->TreeDragOver(b->tvManagerGroups, find(b, "Санкт-Петербург")));
    const int before = two->loggedMessages().size();
    guard([&] { b->TreeDragDrop(b->tvManagerGroups, find(b, "Санкт-Петербург")); });
    EXPECT_EQ(two->loggedMessages().size(), before + 1);
    EXPECT_TRUE(scalar("select parent_id from report_managers_classif where classif_id = 1").isNull());
}

} // namespace frames::test
