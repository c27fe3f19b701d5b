#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/crm/EF_CRMSelect.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/widgets/LookupCombo.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QTest>

using namespace frames;

namespace {

class SelectTree : public test::DbTest {
protected:
    std::unique_ptr<TCRMSelect_Frame> make(const char* cls, int kind) {
        std::unique_ptr<TCRMSelect_Frame> f(
            qobject_cast<TCRMSelect_Frame*>(Registry::instance().create(cls, &top)));
        EXPECT_NE(f, nullptr);
        f->Kind = kind;
        f->FrameInit();
        return f;
    }
    static int state(TCRMSelect_Frame* f, int key) {
        return f->DBTreeView->stateIndex(f->DBTreeView->findNode(key));
    }
    static QList<int> ids(db::DataSet* ds, const char* field) {
        QList<int> l;
        for (int r = 0; r < ds->recordCount(); ++r)
            l << ds->valueAt(r, ds->fieldByName(field)->index()).toInt();
        std::sort(l.begin(), l.end());
        return l;
    }
    // Marks the rows of the items and runs the action, as the user does with the buttons.
    static void choose(TCRMSelect_Frame* f, ui::DBGrid* grid, db::DataSet* ds, const char* field,
                       QList<int> items, QAction* action) {
        for (int r = 0; r < ds->recordCount(); ++r)
            grid->setMarked(r, items.contains(ds->valueAt(r, ds->fieldByName(field)->index()).toInt()));
        f->alManagersUpdate();
        action->trigger();
    }
    void rightClick(TCRMSelect_Frame* f, int key) {
        const QRect r = f->DBTreeView->visualRect(f->DBTreeView->indexOfNode(f->DBTreeView->findNode(key)));
        ASSERT_TRUE(r.isValid());
        QTest::mouseClick(f->DBTreeView->viewport(), Qt::RightButton, {}, r.center());
    }
    QString chosenManagers(int kind) const {
        return scalar(QString("select list(manager_id, ',') from (select manager_id from CRM_REPORT_MANAGER "
                              "where kind = %1 and owner_id = %2 order by manager_id)")
                          .arg(kind)
                          .arg(CUR_USER))
            .toString();
    }
    QWidget top;
};

} // namespace

// The manager tree: choosing managers of a group writes their rows for the kind and user, and the
// node states (asked of the server) show some or all chosen up the tree; the other kind is not
// touched; right click chooses everything below a node with nothing chosen and unchooses
// everything below one with some chosen.
TEST_F(SelectTree, ManagersChooseAndNodeStates) {
    exec(QString("insert into CRM_REPORT_MANAGER (kind, owner_id, manager_id) values (6, %1, 4)")
             .arg(CUR_USER));
    top.resize(800, 500);
    auto f = make("TCRMManagerSelect_Frame", 5);
    top.show();
    EXPECT_EQ(f->lfClassifs->lcSelect->comboBox()->count(), 1);
    EXPECT_EQ(f->DBTreeView->nodeCount(), 5);
    for (int key : {280, 281, 282, 283, 284}) EXPECT_EQ(state(f.get(), key), -1) << key;

    ASSERT_TRUE(f->DBTreeView->setCurrentKey(283)); // "Опт": managers 4 and 6
    EXPECT_EQ(ids(f->ibqryUnSelected, "ID_USER"), (QList<int>{4, 6}));
    EXPECT_FALSE(f->actUnSelect->isEnabled());
    choose(f.get(), f->dbgrdUnSelected, f->ibqryUnSelected, "ID_USER", {4}, f->actSelect);
    EXPECT_EQ(chosenManagers(5), "4");
    EXPECT_EQ(ids(f->ibqrySelected, "ID_USER"), (QList<int>{4}));
    EXPECT_EQ(state(f.get(), 283), 4);
    EXPECT_EQ(state(f.get(), 281), 4);
    EXPECT_EQ(state(f.get(), 282), -1);
    EXPECT_TRUE(f->Changed);

    f->DragDrop(f->dbgrdSelected, f->dbgrdUnSelected->viewport()); // the rest of the group, by a drop
    EXPECT_EQ(chosenManagers(5), "4,6");
    EXPECT_EQ(state(f.get(), 283), 3);
    EXPECT_EQ(state(f.get(), 281), 4);
    EXPECT_FALSE(f->DragOver(f->dbgrdSelected, f->dbgrdUnSelected)); // nothing left to drag from
    EXPECT_FALSE(f->DragOver(f->dbgrdUnSelected, f->dbgrdUnSelected));

    rightClick(f.get(), 281); // partly chosen: unchoose all of it
    EXPECT_EQ(chosenManagers(5), "");
    EXPECT_EQ(state(f.get(), 283), -1);
    rightClick(f.get(), 282); // nothing chosen: choose all, the dismissed one too while shown
    EXPECT_EQ(chosenManagers(5), "3,7,9");
    EXPECT_EQ(state(f.get(), 282), 3);
    EXPECT_EQ(state(f.get(), 280), 4);
    EXPECT_EQ(chosenManagers(6), "4");

    // Hiding the dismissed hides them among the available only; the chosen stay listed.
    rightClick(f.get(), 282);
    f->sbShowUvolen->click();
    EXPECT_EQ(ids(f->ibqryUnSelected, "ID_USER"), (QList<int>{3, 7}));
    exec(QString("insert into CRM_REPORT_MANAGER (kind, owner_id, manager_id) values (5, %1, 9)")
             .arg(CUR_USER));
    f->OpenDataSets();
    EXPECT_EQ(ids(f->ibqrySelected, "ID_USER"), (QList<int>{9}));
    TConfigItem layout;
    f->SaveLayout(&layout);
    EXPECT_FALSE(layout.Find("sbShowUvolen.Down")->GetAsBoolean());
    auto again = make("TCRMManagerSelect_Frame", 5);
    again->RestoreLayout(&layout);
    EXPECT_FALSE(again->sbShowUvolen->isChecked());
    TConfigItem empty;
    again->RestoreLayout(&empty);
    EXPECT_TRUE(again->sbShowUvolen->isChecked());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// The server's node state for each count combination: nothing below, none, some, all chosen.
TEST_F(SelectTree, ServerNodeStates) {
    auto st = [&](const char* proc, int main, int node, int kind) {
        return scalar(QString("select node_state from %1(%2, %3, %4, %5)")
                          .arg(proc)
                          .arg(main)
                          .arg(node)
                          .arg(kind)
                          .arg(CUR_USER))
            .toInt();
    };
    exec("insert into CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) values (290, 280, "
         "'Пустая', 32)");
    EXPECT_EQ(st("CRM_REPORT_MANAGER_NODE_STATE", -1, 290, 1), 0);
    EXPECT_EQ(st("CRM_REPORT_MANAGER_NODE_STATE", -1, 284, 1), 0);
    exec(QString("insert into CRM_REPORT_MANAGER (kind, owner_id, manager_id) values (1, %1, 2)")
             .arg(CUR_USER));
    EXPECT_EQ(st("CRM_REPORT_MANAGER_NODE_STATE", -1, 284, 1), 2);
    EXPECT_EQ(st("CRM_REPORT_MANAGER_NODE_STATE", -1, 280, 1), 1);
    EXPECT_EQ(st("CRM_REPORT_MANAGER_NODE_STATE", 32, 280, 2), 0); // another kind
    exec(QString("insert into CRM_REPORT_FIRM (kind, owner_id, firm_id) values (1, %1, 4)").arg(CUR_USER));
    EXPECT_EQ(st("CRM_REPORT_FIRM_NODE_STATE", -1, 261, 1), 2); // company 4 is the only key client
    EXPECT_EQ(st("CRM_REPORT_FIRM_NODE_STATE", -1, 260, 1), 1);
    EXPECT_EQ(st("CRM_REPORT_FIRM_NODE_STATE", -1, 264, 1), 0);
}

// The company tree follows the main classifier; the product tree counts its states here, over
// every kind and user.
TEST_F(SelectTree, CompaniesByClassificationAndProductCounts) {
    auto f = make("TCRMFirmSelect_Frame", 3);
    EXPECT_EQ(f->lfClassifs->lcSelect->comboBox()->count(), 2);
    EXPECT_GE(f->DBTreeView->findNode(263), 0);
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(263)); // restaurants and cafes: companies 1 and 2
    EXPECT_EQ(ids(f->ibqryUnSelected, "ID"), (QList<int>{1, 2}));
    choose(f.get(), f->dbgrdUnSelected, f->ibqryUnSelected, "ID", {1, 2}, f->actSelect);
    EXPECT_EQ(
        scalar(
            QString(
                "select count(*) from CRM_REPORT_FIRM where kind = 3 and owner_id = %1 and firm_id in (1, 2)")
                .arg(CUR_USER))
            .toInt(),
        2);
    EXPECT_EQ(state(f.get(), 263), 3);
    EXPECT_EQ(state(f.get(), 260), 4);

    f->lfClassifs->lcSelect->setKeyValue(1); // by the groups of their clients
    EXPECT_LT(f->DBTreeView->findNode(263), 0);
    EXPECT_GE(f->DBTreeView->nodeCount(), 1);
    f->lfClassifs->lcSelect->setKeyValue(27);
    EXPECT_EQ(state(f.get(), 263), 3);

    auto p = make("TCRMProductSelect_Frame", 3);
    EXPECT_EQ(p->lfClassifs, nullptr);
    ASSERT_TRUE(p->DBTreeView->setCurrentKey(273)); // food: products 1, 2, 3
    EXPECT_EQ(ids(p->ibqryUnSelected, "ID"), (QList<int>{1, 2, 3}));
    rightClick(p.get(), 273);
    EXPECT_EQ(state(p.get(), 273), 3);
    EXPECT_EQ(state(p.get(), 271), 4);
    EXPECT_EQ(state(p.get(), 272), -1);
    exec(QString("insert into CRM_REPORT_PRODUCT (kind, owner_id, product_id) values (9, %1, 8)")
             .arg(CUR_USER));
    auto other = make("TCRMProductSelect_Frame", 3);
    EXPECT_EQ(state(other.get(), 272), 3); // chosen for another kind still counts
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// A choice the database refuses (another session chose the item meanwhile) reaches the user
// through the host and leaves the frame usable.
TEST_F(SelectTree, RefusedChoiceIsReported) {
    auto f = make("TCRMManagerSelect_Frame", 5);
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(284));
    exec(QString("insert into CRM_REPORT_MANAGER (kind, owner_id, manager_id) values (5, %1, 2)")
             .arg(CUR_USER));
    choose(f.get(), f->dbgrdUnSelected, f->ibqryUnSelected, "ID_USER", {2}, f->actSelect);
    ASSERT_EQ(host->errors().size(), 1);
    f->OpenDataSets();
    EXPECT_EQ(ids(f->ibqrySelected, "ID_USER"), (QList<int>{2}));
    f->UpdateNodeState(f->DBTreeView->findNode(284), true);
    EXPECT_EQ(state(f.get(), 284), 3);
}
