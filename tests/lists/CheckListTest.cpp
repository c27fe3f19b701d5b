#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lists/LCBF_PermissionPattern.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QAction>
#include <QTest>

using namespace frames;

namespace {

class CheckList : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        top = std::make_unique<QWidget>();
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }
    TPermissionPattern_LCBF* make(int kind) {
        auto* f = qobject_cast<TPermissionPattern_LCBF*>(
            Registry::instance().create("TPermissionPattern_LCBF", top.get()));
        EXPECT_NE(f, nullptr);
        f->Kind = kind;
        f->Init();
        return f;
    }
    QList<int> saved(int user, int kind) const {
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(QString("select ID_PERMIS from SEL_PERMIS where ID_USER=%1 and KIND=%2 order by ID_PERMIS")
                     .arg(user)
                     .arg(kind));
        q.open();
        QList<int> out;
        while (q.next()) out << q.value(0).toInt();
        return out;
    }
    // Clicks the check box of item i as the user does.
    static void clickItem(TAbs_LCBF* f, int i) {
        QListWidgetItem* item = f->clbSelect->item(i);
        item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    }
    static int checkedCount(const TAbs_LCBF* f) { return int(f->CheckedIds().size()); }

    std::unique_ptr<QWidget> top;
};

} // namespace

// The list shows every pattern by name, the checked ones from the user's rows of the kind; saving
// rewrites exactly those rows (with is_used 1), for this user and kind only, and reading them back
// shows the same marks. Saving with nothing checked leaves no row.
TEST_F(CheckList, SaveAndLoadRoundTripPerUserAndKind) {
    const int patterns = scalar("select count(*) from PERMISSION_PATTERN").toInt();
    const int other =
        scalar(QString("select first 1 ID_USER from USERS where ID_USER<>%1").arg(CUR_USER)).toInt();
    exec(QString("insert into SEL_PERMIS (ID_USER, KIND, ID_PERMIS) values (%1, 5, 2)").arg(other));
    exec(QString("insert into SEL_PERMIS (ID_USER, KIND, ID_PERMIS) values (%1, 6, 3)").arg(CUR_USER));

    TPermissionPattern_LCBF* f = make(5);
    ASSERT_EQ(f->clbSelect->count(), patterns);
    EXPECT_EQ(f->clbSelect->currentRow(), 0);
    EXPECT_TRUE(f->IsEmpty()); // the other user's and the other kind's rows are not this list's
    EXPECT_TRUE(host->trace.join("\n").contains("from PERMISSION_PATTERN"));

    clickItem(f, 0);
    clickItem(f, 2);
    EXPECT_FALSE(f->IsEmpty());
    const QList<int> ids = f->CheckedIds();
    ASSERT_EQ(ids.size(), 2);
    TConfigItem node;
    f->SaveLayout(&node);
    QList<int> sortedIds = ids;
    std::sort(sortedIds.begin(), sortedIds.end());
    EXPECT_EQ(saved(CUR_USER, 5), sortedIds);
    EXPECT_EQ(scalar(QString("select min(IS_USED) from SEL_PERMIS where ID_USER=%1 and KIND=5").arg(CUR_USER))
                  .toInt(),
              1);
    EXPECT_EQ(saved(other, 5), QList<int>{2});
    EXPECT_EQ(saved(CUR_USER, 6), QList<int>{3});
    EXPECT_TRUE(host->errors().isEmpty());

    TPermissionPattern_LCBF* again = make(5);
    EXPECT_EQ(again->CheckedIds(), ids);

    again->CheckAll(Qt::Unchecked);
    EXPECT_TRUE(again->SaveItems());
    EXPECT_TRUE(saved(CUR_USER, 5).isEmpty());
    EXPECT_EQ(saved(other, 5), QList<int>{2});
}

// "Использовать" checks or clears every item; a change of one item by hand greys it, whatever
// the items then are; the layout keeps the box, and restoring a change of it sets every item.
TEST_F(CheckList, UseBoxAndItemsDriveEachOther) {
    TPermissionPattern_LCBF* f = make(5);
    const int n = f->clbSelect->count();
    ASSERT_GE(n, 3);

    QTest::mouseClick(f->cbUse, Qt::LeftButton);
    EXPECT_EQ(f->cbUse->checkState(), Qt::Checked);
    EXPECT_EQ(checkedCount(f), n);

    clickItem(f, 1);
    EXPECT_EQ(f->cbUse->checkState(), Qt::PartiallyChecked);
    clickItem(f, 1); // all checked again by hand: still grey
    EXPECT_EQ(f->cbUse->checkState(), Qt::PartiallyChecked);
    EXPECT_EQ(checkedCount(f), n);

    // From grey a click checks all; the next clears all.
    clickItem(f, 0);
    QTest::mouseClick(f->cbUse, Qt::LeftButton);
    EXPECT_EQ(f->cbUse->checkState(), Qt::Checked);
    EXPECT_EQ(checkedCount(f), n);
    QTest::mouseClick(f->cbUse, Qt::LeftButton);
    EXPECT_EQ(f->cbUse->checkState(), Qt::Unchecked);
    EXPECT_EQ(checkedCount(f), 0);

    // The menu: check all, invert, clear all; the box follows.
    f->findChild<QAction*>("aCheckAll")->trigger();
    EXPECT_EQ(checkedCount(f), n);
    EXPECT_EQ(f->cbUse->checkState(), Qt::Checked);
    clickItem(f, 0);
    f->findChild<QAction*>("aInvert")->trigger();
    EXPECT_EQ(f->CheckedIds(), QList<int>{f->clbSelect->item(0)->data(Qt::UserRole).toInt()});
    EXPECT_EQ(f->cbUse->checkState(), Qt::PartiallyChecked);
    f->findChild<QAction*>("aUncheckAll")->trigger();
    EXPECT_EQ(checkedCount(f), 0);
    EXPECT_EQ(f->cbUse->checkState(), Qt::Unchecked);

    // The layout: "cbUse.Checked" true checks every item of a fresh list; false, over a checked box, clears
    // them.
    QTest::mouseClick(f->cbUse, Qt::LeftButton);
    TConfigItem node;
    f->SaveLayout(&node);
    EXPECT_TRUE(node.ItemByName("cbUse.Checked")->GetAsBoolean());
    TPermissionPattern_LCBF* g = make(9);
    EXPECT_EQ(checkedCount(g), 0);
    g->RestoreLayout(&node);
    EXPECT_EQ(checkedCount(g), n);
    node.ItemByName("cbUse.Checked")->SetAsBoolean(false);
    g->RestoreLayout(&node);
    EXPECT_EQ(checkedCount(g), 0);
    TConfigItem none;
    clickItem(g, 0);
    g->RestoreLayout(&none); // no key: the list stays as it is
    EXPECT_EQ(checkedCount(g), 1);
    // A saved clear box over a list read with its own marks leaves them: the box does not change.
    TPermissionPattern_LCBF* h = make(9);
    clickItem(h, 2);
    h->SaveItems();
    TPermissionPattern_LCBF* k = make(9);
    ASSERT_EQ(k->cbUse->checkState(), Qt::Unchecked);
    k->RestoreLayout(&node); // "cbUse.Checked" false
    EXPECT_EQ(checkedCount(k), 1);
}

// The statements follow the frame's settings: without is_used the insert has three columns; a
// select without KIND and ID_USER opens; a failed save tells the user on two lines and commits
// nothing.
TEST_F(CheckList, StatementsFollowTheSettingsAndAFailedSaveCommitsNothing) {
    exec("create table SEL_PLAIN (ID_USER integer not null, KIND integer not null, ID_X integer not null, "
         "constraint PK_SEL_PLAIN primary key (ID_USER, KIND, ID_X))");
    auto* f = qobject_cast<TAbs_LCBF*>(Registry::instance().create("TAbs_LCBF", top.get()));
    ASSERT_NE(f, nullptr);
    f->Init(); // the bare base lists nothing
    EXPECT_EQ(f->clbSelect->count(), 0);
    EXPECT_TRUE(f->IsEmpty());

    f->TableName = "SEL_PLAIN";
    f->KeyColumn = "ID_X";
    f->UseIsUsed = false;
    f->Kind = 3;
    f->pfItems->setSelectSql(
        "select ID id, NAME name, cast(null as integer) ch from PERMISSION_PATTERN order by ID");
    f->FillItems();
    ASSERT_GT(f->clbSelect->count(), 1);
    EXPECT_TRUE(host->errors().isEmpty());
    clickItem(f, 0);
    clickItem(f, 1);
    EXPECT_TRUE(f->SaveItems()) << host->errors().join("\n").toStdString();
    EXPECT_EQ(
        scalar(QString("select count(*) from SEL_PLAIN where ID_USER=%1 and KIND=3").arg(CUR_USER)).toInt(),
        2);

    // A row of this user and kind locked by another session: the delete fails, nothing changes.
    auto other = secondConnection();
    db::Transaction lock(other.get(), db::TransactionOptions::writeNoWait());
    lock.start();
    db::Query q(other.get(), &lock);
    q.setSql(QString("update SEL_PLAIN set KIND = KIND where ID_USER=%1 and KIND=3 and ID_X=%2")
                 .arg(CUR_USER)
                 .arg(f->CheckedIds().first()));
    q.exec();
    f->CheckAll(Qt::Checked);
    EXPECT_FALSE(f->SaveItems());
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_TRUE(host->errors().first().startsWith("Не удалось сохранить выбор\n"));
    EXPECT_GT(host->errors().first().size(), QString("Не удалось сохранить выбор\n").size());
    lock.rollback();
    EXPECT_EQ(
        scalar(QString("select count(*) from SEL_PLAIN where ID_USER=%1 and KIND=3").arg(CUR_USER)).toInt(),
        2);

    // A table name that is not a plain name never reaches the server.
    f->TableName = "SEL_PLAIN; drop table SEL_PLAIN";
    EXPECT_FALSE(f->SaveItems());
    EXPECT_EQ(host->errors().size(), 2);
    EXPECT_EQ(
        scalar(QString("select count(*) from SEL_PLAIN where ID_USER=%1 and KIND=3").arg(CUR_USER)).toInt(),
        2);
}
