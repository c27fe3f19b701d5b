#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/crm/UManagerGroups.h"
#include "tests/support/DbFixture.h"
#include <QSettings>
#include <QTest>

using namespace frames;

namespace {

class ManagerGroups : public test::DbTest {
protected:
    std::unique_ptr<TfrmManagerGroups> make(int report) {
        std::unique_ptr<TfrmManagerGroups> f(
            qobject_cast<TfrmManagerGroups*>(Registry::instance().create("TfrmManagerGroups", &top)));
        EXPECT_NE(f, nullptr);
        f->ReportId = report;
        f->FrameInit();
        return f;
    }
    static QTreeWidgetItem* top_(TfrmManagerGroups* f, const QString& text) {
        const auto items = f->tvManagerGroups->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
        return items.value(0);
    }
    static QList<int> ids(db::DataSet* ds) {
        QList<int> l;
        for (int r = 0; r < ds->recordCount(); ++r)
            l << ds->valueAt(r, ds->fieldByName("ID_USER")->index()).toInt();
        std::sort(l.begin(), l.end());
        return l;
    }
    void rightClick(TfrmManagerGroups* f, QTreeWidgetItem* n) {
        const QRect r = f->tvManagerGroups->visualItemRect(n);
        ASSERT_TRUE(r.isValid());
        QTest::mouseClick(f->tvManagerGroups->viewport(), Qt::RightButton, {}, r.center());
    }
    QString chosen(int report) const {
        return scalar(
                   QString("select list(manager_id, ',') from (select manager_id from REPORT_MANAGER where "
                           "report_id = %1 and owner_id = %2 order by manager_id)")
                       .arg(report)
                       .arg(CUR_USER))
            .toString();
    }
    QWidget top;
};

} // namespace

// The fixed nodes head the tree; choosing managers shows every count combination as the node's
// state (none, some, all), up to the parents; right click chooses or unchooses a whole group.
TEST_F(ManagerGroups, StatesFollowTheChoice) {
    top.resize(900, 500);
    auto f = make(11);
    top.show();
    ASSERT_GE(f->tvManagerGroups->topLevelItemCount(), 4);
    EXPECT_EQ(f->tvManagerGroups->topLevelItem(0)->text(0), "<все группы>");
    EXPECT_EQ(f->tvManagerGroups->topLevelItem(1)->text(0), "<без групп>");
    EXPECT_TRUE(f->Rights);

    QTreeWidgetItem* moscow = top_(f.get(), "Москва");
    ASSERT_NE(moscow, nullptr);
    moscow->setExpanded(true);
    QTreeWidgetItem* centre = top_(f.get(), "Центр");
    ASSERT_NE(centre, nullptr);
    f->tvManagerGroups->setCurrentItem(moscow); // Moscow with its centre: managers 4 and 7
    EXPECT_EQ(ids(f->ibqryUnSelectedManagers), (QList<int>{4, 7}));
    for (QTreeWidgetItem* n : {moscow, centre}) EXPECT_EQ(TfrmManagerGroups::StateIndex(n), -1);

    f->dbgrdUnSelectedManagers->setMarked(1, true);
    const int marked = f->ibqryUnSelectedManagers->valueAt(1, 0).toInt();
    f->actSelectManagers->trigger();
    EXPECT_EQ(chosen(11), QString::number(marked));
    EXPECT_EQ(TfrmManagerGroups::StateIndex(moscow), 4);
    EXPECT_EQ(TfrmManagerGroups::StateIndex(f->tvManagerGroups->topLevelItem(0)), 4);
    EXPECT_TRUE(f->Changed);

    rightClick(f.get(), moscow); // partly chosen: unchoose all
    EXPECT_EQ(chosen(11), "");
    EXPECT_EQ(TfrmManagerGroups::StateIndex(moscow), -1);
    rightClick(f.get(), centre); // nothing chosen: choose all of it
    EXPECT_EQ(chosen(11), "7");
    EXPECT_EQ(TfrmManagerGroups::StateIndex(centre), 3);
    EXPECT_EQ(TfrmManagerGroups::StateIndex(moscow), 4);
    rightClick(f.get(), f->tvManagerGroups->topLevelItem(1)); // managers in no group: Иванов
    EXPECT_EQ(chosen(11), "2,7");
    EXPECT_EQ(TfrmManagerGroups::StateIndex(f->tvManagerGroups->topLevelItem(1)), 3);
    rightClick(f.get(), f->tvManagerGroups->topLevelItem(0));
    EXPECT_EQ(chosen(11), "");
    EXPECT_EQ(TfrmManagerGroups::StateIndex(centre), -1);
    rightClick(f.get(), f->tvManagerGroups->topLevelItem(0));
    EXPECT_EQ(chosen(11), "2,3,4,6,7,9");
    EXPECT_EQ(TfrmManagerGroups::StateIndex(centre), 3);
    EXPECT_EQ(chosen(12), "");

    // The chosen grid sorts on the server by the marked column.
    f->dbgrdSelectedManagers->setSortKeys({{"NAME_USER", false}});
    EXPECT_TRUE(f->ibqrySelectedManagers->selectSql().endsWith("order by u.NAME_USER desc"))
        << f->ibqrySelectedManagers->selectSql().toStdString();
    ASSERT_EQ(f->ibqrySelectedManagers->recordCount(), 2); // Moscow, still current: Яковлева, Петрова
    EXPECT_EQ(f->ibqrySelectedManagers->valueAt(0, 0).toInt(), 7);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Groups: a name with quotes stays one literal; a group cannot be dropped into itself or its
// descendants; managers dropped on a group move there; without the right the group actions and
// drops on the tree are refused while choosing still works.
TEST_F(ManagerGroups, GroupEditingRightsAndCycles) {
    auto f = make(11);
    QTreeWidgetItem* regions = top_(f.get(), "Регионы");
    ASSERT_NE(regions, nullptr);
    f->tvManagerGroups->setCurrentItem(regions);
    f->AddGroup(false);
    QTreeWidgetItem* fresh = f->tvManagerGroups->currentItem();
    ASSERT_NE(fresh, nullptr);
    const int id = TfrmManagerGroups::NodeId(fresh);
    EXPECT_EQ(scalar(QString("select parent_id from report_managers_classif where classif_id = %1").arg(id))
                  .toInt(),
              3);
    f->tvManagerGroupsEdited(fresh, "  Юг 'и' Кавказ\"  ");
    EXPECT_EQ(
        scalar(QString("select name from report_managers_classif where classif_id = %1").arg(id)).toString(),
        "Юг 'и' Кавказ\"");
    EXPECT_EQ(fresh->text(0), "Юг 'и' Кавказ\"");

    // Regions may not go into its own new child; the child may go to the root.
    f->tvManagerGroups->setCurrentItem(regions);
    EXPECT_FALSE(f->TreeDragOver(f->tvManagerGroups, fresh));
    EXPECT_FALSE(f->TreeDragOver(f->tvManagerGroups, regions));
    EXPECT_FALSE(f->TreeDragOver(f->tvManagerGroups, f->tvManagerGroups->topLevelItem(1)));
    f->tvManagerGroups->setCurrentItem(fresh);
    EXPECT_TRUE(f->TreeDragOver(f->tvManagerGroups, nullptr));
    f->TreeDragDrop(f->tvManagerGroups, nullptr);
    EXPECT_EQ(scalar(QString("select parent_id from report_managers_classif where classif_id = %1").arg(id))
                  .toInt(),
              -1);
    EXPECT_EQ(fresh->parent(), nullptr);
    exec("update report_managers_classif set parent_id = 3 where classif_id = 1");
    EXPECT_THROW(exec("update report_managers_classif set parent_id = 2 where classif_id = 1"),
                 std::exception);

    // Managers of "<без групп>" dropped on the new group move there.
    f->tvManagerGroups->setCurrentItem(f->tvManagerGroups->topLevelItem(1));
    EXPECT_EQ(ids(f->ibqryUnSelectedManagers), (QList<int>{2}));
    EXPECT_FALSE(f->TreeDragOver(f->dbgrdUnSelectedManagers, f->tvManagerGroups->topLevelItem(0)));
    f->TreeDragDrop(f->dbgrdUnSelectedManagers, fresh);
    EXPECT_EQ(scalar("select classif_id from x_report_managers_classif where manager_id = 2").toInt(), id);

    f->tvManagerGroups->setCurrentItem(fresh);
    f->alManagersUpdate();
    EXPECT_TRUE(f->actDropGroup->isEnabled());
    host->answers.push_back(true);
    f->actDropGroup->trigger();
    EXPECT_EQ(
        scalar(QString("select count(*) from report_managers_classif where classif_id = %1").arg(id)).toInt(),
        0);

    // Without the right (user 7 has 'F'): group actions are off, choosing still works.
    exec(QString("update pmodright_users set pmodrigth_value = 'F' where id_user = %1 and prop_id = 3")
             .arg(CUR_USER));
    auto g = make(11);
    EXPECT_FALSE(g->Rights);
    g->tvManagerGroups->setCurrentItem(top_(g.get(), "Москва"));
    g->alManagersUpdate();
    for (QAction* a : {g->actAddRootGroup, g->actAddSubGroup, g->actEditGroup, g->actDropGroup})
        EXPECT_FALSE(a->isEnabled()) << a->objectName().toStdString();
    EXPECT_FALSE(g->TreeDragOver(g->dbgrdUnSelectedManagers, top_(g.get(), "Москва")));
    EXPECT_FALSE(g->tvManagerGroupsEditing(top_(g.get(), "Москва")));
    g->actSelectManagers->trigger();
    EXPECT_FALSE(chosen(11).isEmpty());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();

    // Options: the recursion switch is kept, the tool bar is read only.
    QSettings ini(databasePath() + ".ini", QSettings::IniFormat);
    ini.setValue("Common/MCToolBar", true);
    ini.setValue("Common/MCRecursive", false);
    g->ReadOptions(ini);
    EXPECT_FALSE(g->actRecursive->isChecked());
    EXPECT_TRUE(g->actShowToolBar->isChecked());
    g->actRecursive->setChecked(true);
    g->actShowToolBar->setChecked(false);
    g->SaveOptions(ini);
    EXPECT_TRUE(ini.value("Common/MCRecursive").toBool());
    EXPECT_TRUE(ini.value("Common/MCToolBar").toBool());
}
