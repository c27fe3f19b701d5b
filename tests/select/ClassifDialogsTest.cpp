#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lookup/LF_AddClassif.h"
#include "frames/select/DF_Classif.h"
#include "frames/select/DF_HRCClassif.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTest>

using namespace frames;

namespace {

constexpr int kKind = 7;
constexpr int kType = 1005; // a classifier of the tests' own

// A classifier of its own for every test:
//   A (9001) ─┬─ A1 (9002)
//             └─ A2 (9003) ── A21 (9004)
//   B (9005)
class ClassifDialogs : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        exec("INSERT INTO CLASSIF_TYPE (ID_CLASSIF_TYPE, NAME_CLASSIF_TYPE, SET_FOR) VALUES (1005, "
             "'Тестовый', 0)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9001, -1, 'А', 1005)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9002, 9001, 'А1', 1005)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9003, 9001, 'А2', 1005)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9004, 9003, 'А21', 1005)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9005, -1, 'Б', 1005)");
        top = std::make_unique<QWidget>();
        top->resize(400, 500);
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }

    template <typename T> T* make(const QString& cls) {
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, top.get()));
        EXPECT_NE(f, nullptr);
        f->Kind = kKind;
        f->ClassifType = kType;
        f->resize(400, 500);
        return f;
    }
    TDFClassif* classif() {
        auto* f = make<TDFClassif>("TDFClassif");
        f->Init();
        top->show();
        return f;
    }
    TDF_HRCClassif* hrc(int filial) {
        auto* f = make<TDF_HRCClassif>("TDF_HRCClassif");
        f->HrcFilial = filial;
        f->Init();
        top->show();
        return f;
    }

    void choose(int classif, const QString& table = "SEL_CLASSIF", int filial = -1) {
        if (filial < 0)
            exec(QString("INSERT INTO %1 (ID_USER, KIND, CLASSIF, CLASSIF_TYPE) VALUES (%2, %3, %4, %5)")
                     .arg(table)
                     .arg(CUR_USER)
                     .arg(kKind)
                     .arg(classif)
                     .arg(kType));
        else
            exec(QString("INSERT INTO %1 (ID_USER, KIND, HRC_FILIAL, CLASSIF, CLASSIF_TYPE) VALUES "
                         "(%2, %3, %4, %5, %6)")
                     .arg(table)
                     .arg(CUR_USER)
                     .arg(kKind)
                     .arg(filial)
                     .arg(classif)
                     .arg(kType));
    }
    // The chosen branches of the user and kind, as the server keeps them.
    QList<int> chosen(const QString& where = "SEL_CLASSIF where 1=1") const {
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(QString("select CLASSIF from %1 and ID_USER=%2 and KIND=%3 order by CLASSIF")
                     .arg(where)
                     .arg(CUR_USER)
                     .arg(kKind));
        q.open();
        QList<int> out;
        while (q.next()) out << q.value(0).toInt();
        return out;
    }

    static int image(const ui::ClassifTreeView* t, int key) { return t->stateIndex(t->findNode(key)); }
    // A press of the right button on the node of the key, as the user makes it.
    static void rightClick(ui::ClassifTreeView* t, int key) {
        const int node = t->findNode(key);
        ASSERT_GE(node, 0) << key;
        t->expandToNode(node);
        t->scrollTo(t->indexOfNode(node));
        const QRect r = t->visualRect(t->indexOfNode(node));
        ASSERT_TRUE(r.isValid()) << key;
        QTest::mousePress(t->viewport(), Qt::RightButton, {}, r.center());
        QTest::mouseRelease(t->viewport(), Qt::RightButton, {}, r.center());
    }
    QStringList traceSince(int from) const { return host->trace.mid(from); }

    std::unique_ptr<QWidget> top;
};

} // namespace

// The state image of a branch: 4 when its whole subtree is chosen, 3 when part of it, none when
// nothing is; a row whose subtree has nothing to choose (ALL_COUNTER 0) shows none even though
// its other counters are equal. IsEmptySelection looks at the first node only.
TEST_F(ClassifDialogs, StateImagesFollowTheCounters) {
    choose(9002);
    choose(9003);
    choose(9004);
    TDFClassif* f = classif();
    ui::ClassifTreeView* t = f->TreeView;
    EXPECT_EQ(t->nodeCount(), 5);
    EXPECT_EQ(image(t, 9001), 3); // three of its four branches
    EXPECT_EQ(image(t, 9002), 4);
    EXPECT_EQ(image(t, 9003), 4);
    EXPECT_EQ(image(t, 9004), 4);
    EXPECT_EQ(image(t, 9005), -1);
    EXPECT_TRUE(t->isExpanded(t->indexOfNode(t->findNode(9001)))); // the first node is open
    EXPECT_FALSE(f->IsEmptySelection());

    // The same user's choice in another kind and another user's choice do not count.
    exec(QString("INSERT INTO SEL_CLASSIF (ID_USER, KIND, CLASSIF, CLASSIF_TYPE) VALUES (%1, 8, 9005, 1005)")
             .arg(CUR_USER));
    const int other =
        scalar(QString("select first 1 ID_USER from USERS where ID_USER<>%1").arg(CUR_USER)).toInt();
    exec(QString("INSERT INTO SEL_CLASSIF (ID_USER, KIND, CLASSIF, CLASSIF_TYPE) VALUES (%1, 7, 9001, 1005)")
             .arg(other));
    f->DataRefresh();
    EXPECT_EQ(image(t, 9001), 3);
    EXPECT_EQ(image(t, 9005), -1);

    // Rows given directly: the four rules in their order.
    f->pfDataSet->close();
    f->pfDataSet->setSelectSql(
        "select 1 as classif_id, cast(null as integer) as parent_id, 'нет ветвей' as name, 0 as all_counter, "
        "0 as sel_counter, 0 as not_counter from rdb$database union all "
        "select 2, null, 'все', 5, 5, 0 from rdb$database union all "
        "select 3, null, 'ни одной', 5, 0, 5 from rdb$database union all "
        "select 4, null, 'часть', 5, 2, 3 from rdb$database");
    f->pfDataSet->open();
    EXPECT_EQ(image(t, 1), -1);
    EXPECT_EQ(image(t, 2), 4);
    EXPECT_EQ(image(t, 3), -1);
    EXPECT_EQ(image(t, 4), 3);
    EXPECT_TRUE(f->IsEmptySelection()); // the first node shows none

    f->ClearTreeView();
    EXPECT_EQ(t->nodeCount(), 0);
    EXPECT_TRUE(f->IsEmptySelection());
}

// A right click on a partly chosen branch chooses the rest of its subtree (only the missing rows
// are inserted: the chosen one would violate the key); on an all-chosen branch it drops the
// subtree. Each change is committed at once, traced, announced, and the tree read again.
TEST_F(ClassifDialogs, RightClickChoosesAndDropsWholeSubtrees) {
    choose(9003);
    TDFClassif* f = classif();
    ui::ClassifTreeView* t = f->TreeView;
    QSignalSpy changed(f, &TDFClassif::SelectionChanged);
    EXPECT_EQ(image(t, 9001), 3);

    const int mark = int(host->trace.size());
    rightClick(t, 9001);
    EXPECT_TRUE(host->messages.empty()) << host->errors().join("\n").toStdString();
    EXPECT_EQ(chosen(), (QList<int>{9001, 9002, 9003, 9004}));
    EXPECT_EQ(scalar("select count(*) from SEL_CLASSIF where CLASSIF_TYPE=1005 and KIND=7").toInt(), 4);
    EXPECT_EQ(traceSince(mark),
              (QStringList{"1: TDFClassif.TreeViewMouseDown", "1: TDFClassif Before DoXSelect",
                           "1: TDFClassif.DoXSelect Before Exec", "1: TDFClassif.DoXSelect After Exec",
                           "1: TDFClassif.DoXSelect After Commit", "1: TDFClassif After DoXSelect",
                           "1: TDFClassif.TreeViewMouseDown End"}));
    EXPECT_EQ(changed.count(), 1);
    EXPECT_EQ(image(t, 9001), 4);
    EXPECT_EQ(image(t, 9004), 4);
    EXPECT_EQ(image(t, 9005), -1);
    EXPECT_EQ(t->currentKey(), 9001);

    // Dropping a branch inside: its parent becomes partly chosen.
    rightClick(t, 9003);
    EXPECT_EQ(chosen(), (QList<int>{9001, 9002}));
    EXPECT_EQ(image(t, 9001), 3);
    EXPECT_EQ(image(t, 9003), -1);
    EXPECT_EQ(t->currentKey(), 9003);

    // The left button only moves the current node; Space toggles it like the right button.
    const QRect r = t->visualRect(t->indexOfNode(t->findNode(9005)));
    QTest::mouseClick(t->viewport(), Qt::LeftButton, {}, r.center());
    EXPECT_EQ(t->currentKey(), 9005);
    EXPECT_EQ(chosen(), (QList<int>{9001, 9002}));
    QTest::keyClick(t, Qt::Key_Space);
    EXPECT_EQ(chosen(), (QList<int>{9001, 9002, 9005}));
    EXPECT_EQ(image(t, 9005), 4);
}

// Dropping a subtree of 250 branches sends three delete statements of 100, 100 and 50 ids, each
// committed by itself: when the last batch meets a row locked by another session, the first two
// stay deleted, the user is told, and the tree shows what the server keeps.
TEST_F(ClassifDialogs, DroppingALargeSubtreeDeletesInBatchesOf100) {
    {
        db::Transaction tr(host->database.get(), db::TransactionOptions::writeNoWait());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) "
                 "VALUES (:id, :parent, :name, 1005)");
        for (int i = 0; i < 250; ++i) {
            q.paramByName("id")->setValue(20000 + i);
            q.paramByName("parent")->setValue(i == 0 ? -1 : 20000);
            q.paramByName("name")->setValue(i == 0 ? QString("Большая ветвь")
                                                   : QString("Узел %1").arg(i, 3, 10, QChar('0')));
            q.exec();
        }
        tr.commit();
    }
    TDFClassif* f = classif();
    ui::ClassifTreeView* t = f->TreeView;
    rightClick(t, 20000);
    ASSERT_EQ(chosen().size(), 250);
    EXPECT_EQ(image(t, 20000), 4);

    int mark = int(host->trace.size());
    rightClick(t, 20000);
    EXPECT_TRUE(chosen().isEmpty());
    EXPECT_EQ(traceSince(mark).filter("DoXUnSelect"),
              (QStringList{"1: TDFClassif.DoXUnSelect Exec 100 ids", "1: TDFClassif.DoXUnSelect Exec 100 ids",
                           "1: TDFClassif.DoXUnSelect Exec 50 ids"}));
    EXPECT_EQ(image(t, 20000), -1);

    // Again, with the last branch (in the third batch) locked by another session.
    rightClick(t, 20000);
    ASSERT_EQ(chosen().size(), 250);
    auto other = secondConnection();
    db::Transaction lock(other.get(), db::TransactionOptions::writeNoWait());
    lock.start();
    db::Query q(other.get(), &lock);
    q.setSql(QString("update SEL_CLASSIF set CLASSIF_TYPE = CLASSIF_TYPE where ID_USER=%1 and KIND=7 and "
                     "CLASSIF=20249")
                 .arg(CUR_USER));
    q.exec();
    mark = int(host->trace.size());
    rightClick(t, 20000);
    EXPECT_EQ(
        traceSince(mark).filter("DoXUnSelect"),
        (QStringList{"1: TDFClassif.DoXUnSelect Exec 100 ids", "1: TDFClassif.DoXUnSelect Exec 100 ids",
                     "1: TDFClassif.DoXUnSelect Exec 50 ids", "1: TDFClassif.DoXUnSelect After RollBack"}));
    EXPECT_TRUE(traceSince(mark).contains("1: TDFClassif.TreeViewMouseDown End"));
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_EQ(chosen().size(), 50);
    EXPECT_EQ(chosen().first(), 20200);
    EXPECT_EQ(image(t, 20000), 3);
    EXPECT_EQ(image(t, 20249), 4);
    EXPECT_EQ(image(t, 20001), -1);
    lock.rollback();
}

// An insert that fails (another session holds one of the rows it needs) is rolled back whole and
// traced; the user is told; the tree keeps the marks it had.
TEST_F(ClassifDialogs, FailedInsertIsRolledBackAndTheMarksKept) {
    choose(9002);
    TDFClassif* f = classif();
    ui::ClassifTreeView* t = f->TreeView;
    QSignalSpy changed(f, &TDFClassif::SelectionChanged);

    auto other = secondConnection();
    db::Transaction pending(other.get(), db::TransactionOptions::writeNoWait());
    pending.start();
    db::Query q(other.get(), &pending);
    q.setSql(
        QString("INSERT INTO SEL_CLASSIF (ID_USER, KIND, CLASSIF, CLASSIF_TYPE) VALUES (%1, 7, 9004, 1005)")
            .arg(CUR_USER));
    q.exec();

    const int mark = int(host->trace.size());
    rightClick(t, 9001);
    ASSERT_EQ(host->errors().size(), 1);
    const QStringList lines = traceSince(mark);
    EXPECT_TRUE(lines.contains("1: TDFClassif.DoXSelect After RollBack")) << lines.join("\n").toStdString();
    EXPECT_FALSE(lines.contains("1: TDFClassif.DoXSelect After Commit"));
    EXPECT_GT(lines.indexOf("1: TDFClassif.TreeViewMouseDown End"),
              lines.indexOf("1: TDFClassif.DoXSelect After RollBack"));
    EXPECT_EQ(changed.count(), 0);
    EXPECT_EQ(chosen(), (QList<int>{9002}));
    EXPECT_EQ(image(t, 9001), 3);
    EXPECT_EQ(image(t, 9002), 4);
    EXPECT_EQ(image(t, 9003), -1);
    EXPECT_EQ(image(t, 9004), -1);
    EXPECT_FALSE(f->pfTransaction->active());

    // Once the other session gives up, the same click works.
    pending.rollback();
    rightClick(t, 9001);
    EXPECT_EQ(chosen(), (QList<int>{9001, 9002, 9003, 9004}));
}

// The restaurant dialog writes one row per branch: choosing a partly chosen branch inserts each
// branch of its subtree that is missing; dropping an all-chosen branch deletes its subtree's rows;
// other restaurants' rows are left alone. The tree never opens a context menu.
TEST_F(ClassifDialogs, RestaurantChoiceIsWrittenPerBranch) {
    choose(9003, "HRC_SEL_CLASSIF", 2);
    choose(9002, "HRC_SEL_CLASSIF", 3);
    TDF_HRCClassif* f = hrc(2);
    ui::ClassifTreeView* t = f->TreeView;
    EXPECT_EQ(image(t, 9001), 3);
    EXPECT_EQ(image(t, 9003), 3); // A2 chosen, A21 not
    EXPECT_EQ(image(t, 9002), -1);

    rightClick(t, 9001);
    EXPECT_TRUE(host->messages.empty()) << host->errors().join("\n").toStdString();
    const QString mine = "HRC_SEL_CLASSIF where HRC_FILIAL=2";
    EXPECT_EQ(chosen(mine), (QList<int>{9001, 9002, 9003, 9004}));
    EXPECT_EQ(image(t, 9001), 4);

    rightClick(t, 9003);
    EXPECT_EQ(chosen(mine), (QList<int>{9001, 9002}));
    EXPECT_EQ(image(t, 9001), 3);
    EXPECT_EQ(image(t, 9004), -1);
    EXPECT_EQ(t->currentKey(), 9003);
    EXPECT_EQ(chosen("HRC_SEL_CLASSIF where HRC_FILIAL=3"), (QList<int>{9002}));

    const QPoint at = t->visualRect(t->indexOfNode(t->findNode(9001))).center();
    QContextMenuEvent menu(QContextMenuEvent::Mouse, at, t->viewport()->mapToGlobal(at));
    EXPECT_TRUE(QApplication::sendEvent(t->viewport(), &menu));
    EXPECT_TRUE(menu.isAccepted());

    // Another restaurant's dialog shows its own choice.
    TDF_HRCClassif* g = hrc(3);
    EXPECT_EQ(image(g->TreeView, 9002), 4);
    EXPECT_EQ(image(g->TreeView, 9003), -1);
}

// "CurNode" keeps the current branch by its key; a layout without it leaves the tree as it is.
TEST_F(ClassifDialogs, CurrentNodeSurvivesTheLayout) {
    TConfigItem root;
    {
        TDFClassif* f = classif();
        EXPECT_TRUE(f->IsEmptySelection());
        f->TreeView->setCurrentKey(9004);
        f->SaveLayout(&root);
        f->FormClose();
        delete f;
    }
    EXPECT_EQ(root.ItemByName("CurNode")->GetAsInteger(), 9004);
    TDFClassif* g = classif();
    g->RestoreLayout(&root);
    EXPECT_EQ(g->TreeView->currentKey(), 9004);
    EXPECT_TRUE(g->TreeView->isExpanded(g->TreeView->indexOfNode(g->TreeView->findNode(9003))));

    TConfigItem empty;
    g->TreeView->setCurrentKey(9005);
    g->RestoreLayout(&empty);
    EXPECT_EQ(g->TreeView->currentKey(), 9005);

    TDF_HRCClassif* h = hrc(1);
    h->TreeView->setCurrentKey(9002);
    TConfigItem hr;
    h->SaveLayout(&hr);
    TDF_HRCClassif* h2 = hrc(1);
    h2->RestoreLayout(&hr);
    EXPECT_EQ(h2->TreeView->currentKey(), 9002);
}

// With the classifier type lookup on, the tree follows the type chosen in it; switching the
// lookup off goes back to type 0.
TEST_F(ClassifDialogs, ClassifierTypeLookupChoosesTheTree) {
    TDFClassif* f = classif();
    EXPECT_FALSE(f->lfAddClassif->isVisible());
    EXPECT_EQ(f->TreeView->findNode(9001) >= 0, true);

    f->SetUseAClassif(true);
    EXPECT_TRUE(f->lfAddClassif->isVisible());
    EXPECT_EQ(f->lfAddClassif->lbSelect->text(), "Вид классификатора");
    EXPECT_EQ(f->ClassifType, 0);
    EXPECT_EQ(f->TreeView->findNode(9001), -1);
    const int goods =
        scalar("select count(*) from CLASSIF where ID_CLASSIF_TYPE=0 and ID_CLASSIF>-1").toInt();
    EXPECT_EQ(f->TreeView->nodeCount(), goods);

    f->lfAddClassif->lcSelect->setKeyValue(1005);
    EXPECT_EQ(f->ClassifType, 1005);
    EXPECT_EQ(f->TreeView->nodeCount(), 5);

    f->ClassifType = 0;
    f->RefreshAClassif();
    EXPECT_EQ(f->lfAddClassif->lcSelect->keyValue().toInt(), 0);
    EXPECT_EQ(f->TreeView->nodeCount(), goods);

    f->SetUseAClassif(false);
    EXPECT_FALSE(f->lfAddClassif->isVisible());
    EXPECT_FALSE(f->lfAddClassif->pFIBDataSet1->active());
}
