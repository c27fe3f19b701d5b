// The filter boxes that keep their choice on the server: the summary rows of the classifier and
// client boxes, the card-permission matrix, and how each kind of change switches a box on.
#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/filter/FF_CardPermission.h"
#include "frames/filter/FF_Classif.h"
#include "frames/filter/FF_Client.h"
#include "frames/select/DF_Classif.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "platform/db/MemTable.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DataSetModel.h"
#include "tests/support/DbFixture.h"
#include <QHeaderView>
#include <QTest>

using namespace frames;

namespace {

constexpr int kType = 1005; // a classifier of the tests' own

class FilterServerSide : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        top = std::make_unique<QWidget>();
        top->resize(700, 600);
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }
    template <typename T> T* make(const QString& cls) {
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, top.get()));
        EXPECT_NE(f, nullptr) << cls.toStdString();
        f->resize(680, 580);
        return f;
    }
    void testClassifier() {
        exec("INSERT INTO CLASSIF_TYPE (ID_CLASSIF_TYPE, NAME_CLASSIF_TYPE, SET_FOR) VALUES (1005, "
             "'Тестовый', 0)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9001, -1, 'А', 1005)");
        exec("INSERT INTO CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) VALUES "
             "(9002, 9001, 'А1', 1005)");
    }
    // The summary row of the current user and a kind, as numbers (empty when there is none).
    QList<int> summary(const QString& table, int kind) const {
        QList<int> out;
        for (const QVariant& v : row(QStringLiteral("select * from %1 where id_user=%2 and kind=%3")
                                         .arg(table)
                                         .arg(CUR_USER)
                                         .arg(kind)))
            out << v.toInt();
        return out;
    }
    int count(const QString& sql) const { return scalar(sql).toInt(); }
    // What the matrix holds on the server for the current user: a missing row reads 0.
    int stored(int group, int pattern) const {
        return scalar(QStringLiteral(
                          "select coalesce(max(is_set), 0) from CARDPERMISSION_FILTER where id_user=%1 "
                          "and superplace=%2 and permission_pattern=%3")
                          .arg(CUR_USER)
                          .arg(group)
                          .arg(pattern))
            .toInt();
    }
    static int cell(TCardPermission_FF* f, int row, const QString& field) {
        const QVariant v = f->mdDataSet->valueAt(row, f->mdDataSet->fieldByName(field)->index());
        return v.isNull() ? 0 : v.toInt();
    }
    static int rowOf(TCardPermission_FF* f, int pattern) {
        for (int r = 0; r < f->mdDataSet->recordCount(); ++r)
            if (f->mdDataSet->valueAt(r, f->mdDataSet->fieldByName("ID")->index()).toInt() == pattern)
                return r;
        return -1;
    }
    static void focusCell(TCardPermission_FF* f, int row, const QString& field) {
        f->DBGrid->setCurrentIndex(f->DBGrid->model()->index(row, f->DBGrid->columnOfField(field)));
    }
    static void doubleClickCell(TCardPermission_FF* f, int row, const QString& field) {
        const QModelIndex idx = f->DBGrid->model()->index(row, f->DBGrid->columnOfField(field));
        f->DBGrid->scrollTo(idx);
        const QPoint p = f->DBGrid->visualRect(idx).center();
        QTest::mouseClick(f->DBGrid->viewport(), Qt::LeftButton, {}, p);
        QTest::mouseDClick(f->DBGrid->viewport(), Qt::LeftButton, {}, p);
    }
    std::unique_ptr<QWidget> top;
};

} // namespace

// Restoring: with no summary row for its kind the box comes up off even when the layout had it
// on, and the dialog takes the layout's classifier type; with a row it comes up on over the row's
// classifier type, whatever the layout says. Saving replaces the row: one row per user and kind,
// the classifier type in force and the summed item count of the chosen branches.
TEST_F(FilterServerSide, ClassifierSummaryRowOnRestoreAndSave) {
    testClassifier();
    exec(QStringLiteral("insert into sel_classif_filter (id_user, kind, classif_type, itemcount) "
                        "values (%1, 8, %2, 0)")
             .arg(CUR_USER)
             .arg(kType));

    auto* noRow = make<TClassif_FF>("TClassif_FF");
    noRow->SetKind(7);
    EXPECT_EQ(noRow->property("Kind").toInt(), 7);
    EXPECT_EQ(noRow->DF_Classif->Kind, 7);
    noRow->Init();
    TConfigItem layout("TClassif_FF");
    layout.ItemByName("cbSet.Checked")->SetAsBoolean(true);
    layout.ItemByName("DF_Classif.ClassifType")->SetAsInteger(kType);
    noRow->RestoreLayout(&layout);
    EXPECT_FALSE(noRow->cbSet->isChecked());
    EXPECT_EQ(noRow->DF_Classif->ClassifType, kType);
    EXPECT_EQ(noRow->DF_Classif->TreeView->nodeCount(), 2); // the tree of the layout's classifier

    auto* withRow = make<TClassif_FF>("TClassif_FF");
    withRow->setProperty("Kind", 8);
    withRow->Init();
    TConfigItem other("TClassif_FF");
    other.ItemByName("cbSet.Checked")->SetAsBoolean(false);
    other.ItemByName("DF_Classif.ClassifType")->SetAsInteger(0);
    withRow->RestoreLayout(&other);
    EXPECT_TRUE(withRow->cbSet->isChecked());
    EXPECT_EQ(withRow->DF_Classif->ClassifType, kType);
    EXPECT_EQ(withRow->DF_Classif->TreeView->nodeCount(), 2);

    // Saving over the client classifier (type 1) after choosing a branch: the row counts what its
    // branches hold, counted here independently of the classifier's computed column.
    auto* box = make<TClassif_FF>("TClassif_FF");
    box->SetKind(9);
    box->Init();
    box->RestoreLayout(&layout);
    box->DF_Classif->SetClassifType(1);
    ASSERT_GE(box->DF_Classif->TreeView->findNode(100), 0);
    box->DF_Classif->ToggleNode(box->DF_Classif->TreeView->findNode(100));
    const int chosen =
        count(QStringLiteral("select count(*) from sel_classif where id_user=%1 and kind=9").arg(CUR_USER));
    ASSERT_GT(chosen, 1);
    auto itemsOfChoice = [&] {
        const QString in =
            QStringLiteral("(select classif from sel_classif where id_user=%1 and kind=9)").arg(CUR_USER);
        return count("select count(*) from clients where classif in " + in) +
               count("select count(*) from firm where classif in " + in) +
               count("select count(*) from tovar where classif in " + in) +
               count("select count(*) from crm_manager where classif in " + in);
    };
    const int items = itemsOfChoice();
    ASSERT_GT(items, 0);
    TConfigItem saved("TClassif_FF");
    box->SaveLayout(&saved);
    EXPECT_EQ(saved.ItemByName("DF_Classif.ClassifType")->GetAsInteger(), 1);
    EXPECT_EQ(summary("sel_classif_filter", 9), (QList<int>{CUR_USER, 9, 1, items}));

    // Dropping part of the choice and saving again replaces the row.
    box->DF_Classif->ToggleNode(box->DF_Classif->TreeView->findNode(101)); // a branch of five clients
    box->SaveLayout(&saved);
    EXPECT_EQ(count(QStringLiteral("select count(*) from sel_classif_filter where id_user=%1 and kind=9")
                        .arg(CUR_USER)),
              1);
    EXPECT_EQ(summary("sel_classif_filter", 9).value(3), itemsOfChoice());
    EXPECT_LT(itemsOfChoice(), items);
    // The other kinds keep their rows.
    EXPECT_EQ(summary("sel_classif_filter", 8).value(2), kType);
    EXPECT_TRUE(summary("sel_classif_filter", 7).isEmpty());

    // A box created afterwards for the same kind comes up as it was left.
    auto* again = make<TClassif_FF>("TClassif_FF");
    again->SetKind(9);
    again->Init();
    again->RestoreLayout(&saved);
    EXPECT_TRUE(again->cbSet->isChecked());
    EXPECT_EQ(again->DF_Classif->ClassifType, 1);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// The client box: off without a summary row even when the layout had it on; saving writes the
// count of chosen legal entities of its kind (one row, replaced on every save); the next box of
// that kind comes up on. The administrator's demo row of kind 1 switches that kind's box on.
TEST_F(FilterServerSide, ClientSummaryRowOnRestoreAndSave) {
    TConfigItem layout("TClient_FF");
    layout.ItemByName("cbSet.Checked")->SetAsBoolean(true);

    auto* f = make<TClient_FF>("TClient_FF");
    f->SetKind(6);
    EXPECT_EQ(f->ClientSelect_DF->GetKind(), 6);
    f->Init();
    f->RestoreLayout(&layout);
    EXPECT_FALSE(f->cbSet->isChecked());

    ASSERT_TRUE(f->ClientSelect_DF->DBTreeView->setCurrentKey(430));
    for (int r : {0, 1, 3}) f->ClientSelect_DF->DBGridUnSelected->setMarked(r, true);
    f->ClientSelect_DF->TransferRecDown();
    // A private person chosen by other means is not counted.
    exec(QStringLiteral("insert into sel_client (id_user, kind, client_index, client_type) "
                        "select first 1 %1, 6, id_clients, 1 from clients where client_type = 1")
             .arg(CUR_USER));
    TConfigItem saved("TClient_FF");
    f->SaveLayout(&saved);
    EXPECT_EQ(summary("sel_client_filter", 6), (QList<int>{CUR_USER, 6, 3}));
    f->ClientSelect_DF->pfSelected->first();
    f->ClientSelect_DF->TransferRecUp();
    f->SaveLayout(&saved);
    EXPECT_EQ(summary("sel_client_filter", 6), (QList<int>{CUR_USER, 6, 2}));

    auto* next = make<TClient_FF>("TClient_FF");
    next->SetKind(6);
    next->Init();
    saved.ItemByName("cbSet.Checked")->SetAsBoolean(false);
    next->RestoreLayout(&saved);
    EXPECT_TRUE(next->cbSet->isChecked());

    auto* demo = make<TClient_FF>("TClient_FF");
    demo->SetKind(1);
    demo->Init();
    demo->RestoreLayout(nullptr);
    EXPECT_TRUE(demo->cbSet->isChecked());
    EXPECT_EQ(demo->ClientSelect_DF->ItemsList().split(',').size(), summary("sel_client_filter", 1).value(2));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// Every change the user makes inside switches the box on, after the dialog did its own work:
// a right click on a classifier branch (which is toggled once, not twice), a double click or
// Enter in either client grid, the buttons, a whole tree node; a toggle in the matrix.
// Moving the tree's current node or the classifier's choice of type changes nothing.
TEST_F(FilterServerSide, EveryKindOfChangeSwitchesTheBoxOn) {
    auto* c = make<TClassif_FF>("TClassif_FF");
    c->SetKind(9);
    c->Init();
    top->show();
    ui::ClassifTreeView* t = c->DF_Classif->TreeView;
    const int node = t->findNode(3);
    ASSERT_GE(node, 0);
    t->setCurrentNode(node);
    EXPECT_FALSE(c->cbSet->isChecked());
    t->scrollTo(t->indexOfNode(node));
    const QPoint p = t->visualRect(t->indexOfNode(node)).center();
    QTest::mousePress(t->viewport(), Qt::RightButton, {}, p);
    QTest::mouseRelease(t->viewport(), Qt::RightButton, {}, p);
    EXPECT_TRUE(c->cbSet->isChecked());
    EXPECT_GT(
        count(QStringLiteral("select count(*) from sel_classif where id_user=%1 and kind=9").arg(CUR_USER)),
        1);
    EXPECT_EQ(t->stateIndex(t->findNode(3)), 4);

    auto* f = make<TClient_FF>("TClient_FF");
    f->SetKind(6);
    f->Init();
    top->show();
    TClientSelect_DF* d = f->ClientSelect_DF;
    ASSERT_TRUE(d->DBTreeView->setCurrentKey(430));
    EXPECT_FALSE(f->cbSet->isChecked());
    auto clients = [&] {
        return count(
            QStringLiteral("select count(*) from sel_client where id_user=%1 and kind=6").arg(CUR_USER));
    };
    auto dblClick = [](ui::DBGrid* g) {
        const QPoint at = g->visualRect(g->model()->index(0, 0)).center();
        QTest::mouseClick(g->viewport(), Qt::LeftButton, {}, at);
        QTest::mouseDClick(g->viewport(), Qt::LeftButton, {}, at);
    };
    dblClick(d->DBGridUnSelected);
    EXPECT_EQ(clients(), 1);
    EXPECT_TRUE(f->cbSet->isChecked());

    f->cbSet->setChecked(false);
    dblClick(d->DBGridSelected);
    EXPECT_EQ(clients(), 0);
    EXPECT_TRUE(f->cbSet->isChecked());

    f->cbSet->setChecked(false);
    d->DBGridUnSelected->setFocus();
    QTest::keyClick(d->DBGridUnSelected, Qt::Key_Return);
    EXPECT_EQ(clients(), 1);
    EXPECT_TRUE(f->cbSet->isChecked());

    f->cbSet->setChecked(false);
    d->sbtnUnSelectClients->click();
    EXPECT_EQ(clients(), 0);
    EXPECT_TRUE(f->cbSet->isChecked());

    f->cbSet->setChecked(false);
    d->DBTreeView->setCurrentKey(410); // only looking
    EXPECT_FALSE(f->cbSet->isChecked());
    d->DBTreeViewSelecting(d->NodeOfClassif(430));
    EXPECT_GT(clients(), 100);
    EXPECT_TRUE(f->cbSet->isChecked());

    auto* m = make<TCardPermission_FF>("TCardPermission_FF");
    m->show();
    EXPECT_FALSE(m->cbSet->isChecked());
    focusCell(m, 0, "NAME");
    m->DBGrid->setFocus();
    QTest::keyClick(m->DBGrid, Qt::Key_Space);
    EXPECT_FALSE(m->cbSet->isChecked()); // the pattern's name is no cell to toggle
    EXPECT_FALSE(m->Modified());
    focusCell(m, 0, "P_8");
    QTest::keyClick(m->DBGrid, Qt::Key_Space);
    EXPECT_TRUE(m->cbSet->isChecked());
    EXPECT_TRUE(m->Modified());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// The matrix: a column per group of storage places of kind 3 in use, titled on two levels; the
// cells as the server keeps them (a missing row is an empty box). A group added on the server
// shows only in a frame created afterwards. Toggling by double click and Space changes the grid
// only; ApplyChange stores exactly what the grid shows, and a cell toggled twice is 0.
TEST_F(FilterServerSide, PermissionMatrixBuildToggleAndApply) {
    auto* f = make<TCardPermission_FF>("TCardPermission_FF");
    top->show();
    const QStringList groups{"P_7", "P_8", "P_9"}; // kind 3 in use; 1-6 are of other kinds or unused
    EXPECT_EQ(f->DBGrid->columns(), (QStringList{"name"} + QStringList{"p_7", "p_8", "p_9"}));
    auto* model = f->DBGrid->dataModel();
    EXPECT_EQ(model->caption(0), QStringLiteral("Шаблон разрешений"));
    EXPECT_EQ(model->caption(1), QStringLiteral("Группа мест хранения|Инвентаризация в декабре"));
    EXPECT_EQ(model->caption(2), QStringLiteral("Группа мест хранения|ёлочные базары"));
    EXPECT_TRUE(model->isCheckColumn(1));
    EXPECT_FALSE(model->isCheckColumn(0));
    EXPECT_GT(f->DBGrid->horizontalHeader()->sizeHint().height(),
              QFontMetrics(f->DBGrid->horizontalHeader()->font()).height() * 2);
    const int patterns = count("select count(*) from PERMISSION_PATTERN");
    ASSERT_EQ(f->mdDataSet->recordCount(), patterns);
    for (int r = 0; r < patterns; ++r)
        for (const QString& g : groups) {
            const int pattern = f->mdDataSet->valueAt(r, 0).toInt();
            EXPECT_EQ(cell(f, r, g), stored(g.mid(2).toInt(), pattern)) << pattern << g.toStdString();
        }
    EXPECT_EQ(cell(f, rowOf(f, 1), "P_7"), 1); // the administrator's demo matrix
    EXPECT_EQ(model->data(model->index(rowOf(f, 1), 1), Qt::CheckStateRole).toInt(), int(Qt::Checked));

    // A new group on the server: not in this frame, even after a refresh; in the next one.
    exec("insert into SUPERPLACE_HEAD (id, name, spkind, is_used, shopindex) values (40, 'Новая группа', 3, "
         "'T', 1)");
    f->DataRefresh();
    EXPECT_EQ(f->DBGrid->columns().size(), 4);
    auto* later = make<TCardPermission_FF>("TCardPermission_FF");
    EXPECT_EQ(later->DBGrid->columns().last(), QStringLiteral("p_40"));
    EXPECT_EQ(later->DBGrid->dataModel()->caption(4), QStringLiteral("Группа мест хранения|Новая группа"));

    // Toggles: a double click sets an empty cell, Space clears a set one, a cell toggled twice
    // is back where it was; a double click on the name toggles nothing.
    const int r2 = rowOf(f, 2), r3 = rowOf(f, 3), r1 = rowOf(f, 1);
    doubleClickCell(f, r3, "P_9");
    EXPECT_EQ(cell(f, r3, "P_9"), 1);
    focusCell(f, r1, "P_7");
    f->DBGrid->setFocus();
    QTest::keyClick(f->DBGrid, Qt::Key_Space);
    EXPECT_EQ(cell(f, r1, "P_7"), 0);
    doubleClickCell(f, r2, "P_8");
    doubleClickCell(f, r2, "P_8");
    EXPECT_EQ(cell(f, r2, "P_8"), 0);
    doubleClickCell(f, r2, "NAME");
    EXPECT_EQ(f->mdDataSet->valueAt(r2, f->mdDataSet->fieldByName("NAME")->index()).toString(),
              QStringLiteral("Только продажа"));
    EXPECT_EQ(stored(9, 3), 0); // nothing stored before ApplyChange

    EXPECT_TRUE(f->ApplyChange());
    EXPECT_FALSE(f->Modified());
    for (int r = 0; r < patterns; ++r)
        for (const QString& g : groups)
            EXPECT_EQ(stored(g.mid(2).toInt(), f->mdDataSet->valueAt(r, 0).toInt()), cell(f, r, g));
    EXPECT_EQ(stored(9, 3), 1);
    EXPECT_EQ(stored(7, 1), 0);
    EXPECT_EQ(stored(8, 2), 0);
    // Every cell has its row now; the new group's cells were not in this frame's matrix.
    EXPECT_EQ(
        count(QStringLiteral("select count(*) from CARDPERMISSION_FILTER where id_user=%1 and superplace in "
                             "(7, 8, 9)")
                  .arg(CUR_USER)),
        patterns * 3);
    EXPECT_EQ(count("select count(*) from CARDPERMISSION_FILTER where superplace = 40"), 0);
    // Another user's matrix is untouched.
    EXPECT_EQ(scalar("select is_set from CARDPERMISSION_FILTER where id_user=2 and superplace=9 and "
                     "permission_pattern=3")
                  .toInt(),
              1);

    // A frame built afterwards shows what was stored; toggles left unstored when its form closes
    // are stored then.
    auto* after = make<TCardPermission_FF>("TCardPermission_FF");
    EXPECT_EQ(cell(after, rowOf(after, 3), "P_9"), 1);
    EXPECT_EQ(cell(after, rowOf(after, 1), "P_7"), 0);
    focusCell(after, rowOf(after, 4), "P_7");
    after->DBGridKeyDown(32);
    TConfigItem node("TCardPermission_FF");
    after->SaveLayout(&node);
    EXPECT_EQ(stored(7, 4), 1);
    EXPECT_FALSE(after->Modified());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// A summary row that another connection holds: saving fails at once, says in Russian what failed
// and why, writes the statement to the trace log, and leaves the row as it was (the delete is
// not committed on its own).
TEST_F(FilterServerSide, ASummaryRowThatIsHeldElsewhereIsReportedAndKept) {
    auto* f = make<TClient_FF>("TClient_FF");
    f->SetKind(1); // the administrator's demo row
    f->Init();
    const QList<int> before = summary("sel_client_filter", 1);
    ASSERT_EQ(before.size(), 3);
    ASSERT_TRUE(f->ClientSelect_DF->DBTreeView->setCurrentKey(430));
    f->ClientSelect_DF->TransferRecDown(); // the count changes: the row would be rewritten

    auto other = secondConnection();
    db::Transaction holder(other.get(), db::TransactionOptions::writeNoWait());
    holder.start();
    db::Query hold(other.get(), &holder);
    hold.setSql(
        QStringLiteral("update sel_client_filter set itemcount = itemcount where id_user=%1 and kind=1")
            .arg(CUR_USER));
    hold.exec();

    TConfigItem node("TClient_FF");
    f->SaveLayout(&node);
    holder.rollback();
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_TRUE(
        host->errors().first().startsWith(QStringLiteral("Не удалось сохранить фильтр по контрагентам: ")))
        << host->errors().first().toStdString();
    EXPECT_TRUE(host->errors().first().contains(QStringLiteral("другим пользователем")))
        << host->errors().first().toStdString();
    EXPECT_TRUE(host->trace.join('\n').contains(QStringLiteral("sel_client_filter"), Qt::CaseInsensitive))
        << host->trace.join('\n').toStdString();
    EXPECT_EQ(summary("sel_client_filter", 1), before);

    // Once the other connection is done, the next save goes through.
    host->messages.clear();
    f->SaveLayout(&node);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
    EXPECT_EQ(summary("sel_client_filter", 1).value(2), before.value(2) + 1);
}
