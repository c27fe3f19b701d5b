#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/SetFilter_EF.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/filter/FF_CardPermission.h"
#include "frames/filter/FF_Group.h"
#include "frames/filter/FF_Manager.h"
#include "frames/filter/FF_Multi.h"
#include "host/FilterPanel.h"
#include "host/MainWindow.h"
#include "host/ReportDefinition.h"
#include "platform/db/DataSet.h"
#include "platform/db/MemTable.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DateEdit.h"
#include "platform/widgets/HistoryCombo.h"
#include "tests/host/WorkbenchFixture.h"
#include <QAction>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace frames::test {
namespace {

using workbench::FilterPanelForm;

// The sales report of the demo database: what its panel's statement gives is compared with a
// statement written here by hand over the same tables.
class SalesReport : public WorkbenchHostTest<> {
protected:
    static constexpr int Kind = 20; // the kind of the report's boxes (reports.json)

    TSetFilter_EF* box(FilterPanelForm& panel, const QString& name) {
        auto* f = qobject_cast<TSetFilter_EF*>(panel.frame(name));
        if (!f) throw std::runtime_error("no filter box " + name.toStdString());
        return f;
    }
    static void switchOffAll(FilterPanelForm& panel) {
        for (const auto& f : panel.filters())
            if (auto* b = qobject_cast<TSetFilter_EF*>(f.frame)) b->SetChecked(false);
        if (auto* p = qobject_cast<TPeriodExt_EF*>(panel.frame("TPeriodExt_EF"))) p->Clear();
    }
    // Documents and the sum of their lines over the lines that pass the condition.
    struct Expected {
        int docs;
        double amount;
    };
    Expected expected(const QString& where) const {
        const QString from = "from SALE_LINE l join SALE_DOC d on d.ID_SALE_DOC = l.ID_SALE_DOC "
                             "join CARD c on c.ID = l.CARD where " +
                             where;
        return {scalar("select count(distinct d.ID_SALE_DOC) " + from).toInt(),
                scalar("select coalesce(sum(l.AMOUNT), 0) " + from).toDouble()};
    }
    // Runs the report and compares its totals and rows with the hand-written condition; the
    // condition must leave some documents and drop some, or the filter proved nothing.
    void expectRun(FilterPanelForm& panel, const QString& where, const Expected& before) {
        SCOPED_TRACE(where.toStdString());
        const Expected e = expected(where);
        EXPECT_GT(e.docs, 0);
        EXPECT_LT(e.docs, before.docs);
        EXPECT_EQ(panel.runQuery(), e.docs);
        ASSERT_EQ(panel.totals().size(), 4);
        EXPECT_NEAR(panel.totals()[3].toDouble(), e.amount, 0.005);
        EXPECT_EQ(panel.rows()->recordCount(), e.docs);
        EXPECT_TRUE(panel.countLabel()->text().startsWith(QString("Документов: %1;").arg(e.docs)))
            << panel.countLabel()->text().toStdString();
    }
    bool logged(const QString& text) const {
        for (const QString& m : wb->loggedMessages())
            if (m.contains(text)) return true;
        return false;
    }
};

} // namespace

// The report's statement for one box after another, each added to the ones before, gives the
// documents and the sums that a hand-written statement gives; a box that has no relation to sales
// changes nothing.
TEST_F(SalesReport, EachBoxNarrowsTheReportAsAnIndependentQueryDoes) {
    FilterPanelForm panel(wb.get(), workbench::salesReport());
    panel.prepare();
    EXPECT_TRUE(panel.missingClasses().isEmpty()) << panel.missingClasses().join(", ").toStdString();
    switchOffAll(panel);
    panel.updateResults();
    EXPECT_EQ(panel.whereClause(), "");
    const Expected all = expected("1=1");
    EXPECT_EQ(all.docs, 400);
    EXPECT_EQ(panel.runQuery(), all.docs);
    EXPECT_NEAR(panel.totals()[3].toDouble(), all.amount, 0.005);

    // The first half of the year.
    auto* period = qobject_cast<TPeriodExt_EF*>(panel.frame("TPeriodExt_EF"));
    ASSERT_NE(period, nullptr);
    period->deFirstDate->setDate(QDate(2024, 1, 1));
    period->deLastDate->setDate(QDate(2024, 6, 30));
    QString where = "d.DOC_DATE between '2024-01-01' and '2024-06-30'";
    expectRun(panel, where, all);
    Expected before = expected(where);

    // Goods of Russia and Chile.
    auto* country = box(panel, "TCountry_FF");
    country->AddText("1");
    country->AddText("13");
    country->SetChecked(true);
    where += " and c.ID_COUNTRY in (1, 13)";
    expectRun(panel, where, before);
    before = expected(where);

    // Shops of the December stocktaking group of places (the places written out here).
    auto* places = box(panel, "TGroupPlaces_FF");
    places->AddText("7");
    places->SetChecked(true);
    where += " and d.PLACE_INDEX in (50, 51, 52, 53, 54)";
    expectRun(panel, where, before);
    panel.frame("TGroupPlaces_FF")->Clear();
    where = "d.DOC_DATE between '2024-01-01' and '2024-06-30' and c.ID_COUNTRY in (1, 13)";

    // Card names by pattern: a star, a quote (no card has one: the statement still runs).
    auto* names = box(panel, "TEdit_FF");
    names->AddText("мол*");
    names->AddText("*хлеб*");
    names->AddText("o'ne*");
    names->SetChecked(true);
    expectRun(panel, where + " and (upper(c.NAME) starting with 'МОЛ' or upper(c.NAME) like '%ХЛЕБ%')",
              before);
    names->SetChecked(false);

    // ABC groups A and B.
    auto* groups = qobject_cast<TGroup_FF*>(box(panel, "TGroup_FF"));
    groups->EditComboBox_EF->ComboBox->setEditText("A, B");
    groups->SetChecked(true);
    ASSERT_TRUE(groups->IsCorrect());
    expectRun(panel, where + " and c.ID_GR in (1, 2)", before);
    groups->SetChecked(false);

    // A box that the report has no relation to changes nothing.
    auto* priority = box(panel, "TEventPriority_FF");
    priority->AddText("1");
    priority->SetChecked(true);
    EXPECT_EQ(panel.runQuery(), before.docs);
    priority->SetChecked(false);

    // The clients chosen in the client selection for this report's kind, kept on the server.
    this->exec(QString("insert into SEL_CLIENT (ID_USER, KIND, CLIENT_INDEX, CLIENT_TYPE) "
                       "select %1, %2, ID_CLIENTS, 0 from CLIENTS where ID_CLIENTS in (21, 3, 5)")
                   .arg(CUR_USER)
                   .arg(Kind));
    box(panel, "TClient_FF")->SetChecked(true);
    expectRun(panel, where + " and d.CLIENT_INDEX in (3, 5, 21)", before);
    box(panel, "TClient_FF")->SetChecked(false);

    // The dairy branch of the goods classifier (its subtree as the dialog writes it), which also
    // picks cards by their additional classifiers' branches chosen in the same kind.
    this->exec(
        QString(
            "insert into SEL_CLASSIF (ID_USER, KIND, CLASSIF, CLASSIF_TYPE) "
            "select %1, %2, ID_CLASSIF, ID_CLASSIF_TYPE from CLASSIF where ID_CLASSIF in (3, 4, 5, 6, 313)")
            .arg(CUR_USER)
            .arg(Kind));
    box(panel, "TClassif_FF")->SetChecked(true);
    expectRun(panel,
              where + " and (c.CLASSIF in (3, 4, 5, 6) or c.ID in (select CARD from CARD_ADD_CLASSIF "
                      "where CLASSIF = 313))",
              before);
    box(panel, "TClassif_FF")->SetChecked(false);

    // Sales made by two managers.
    auto* managers = qobject_cast<TManager_FF*>(box(panel, "TManager_FF"));
    for (int id : {4, 6}) {
        ASSERT_TRUE(managers->Manager_BF->mdAvailabled->locate("ID", id));
        managers->Manager_BF->sbSel->click();
    }
    EXPECT_TRUE(managers->Checked());
    expectRun(panel, where + " and d.ID_USER in (4, 6)", before);
    managers->SetChecked(false);

    // The card-permission matrix: the administrator's demo matrix takes full-access and
    // sales-only cards in the December stocktaking places (and a pattern no card has at the
    // Christmas markets); then the cards without discounts in the weekly stocktaking places too,
    // set in the matrix and stored when the report runs.
    auto* matrix = qobject_cast<TCardPermission_FF*>(box(panel, "TCardPermission_FF"));
    matrix->SetChecked(true);
    const QString inDecember = "(c.PERMISSION_PATTERN in (1, 2) and d.PLACE_INDEX in (50, 51, 52, 53, 54))";
    expectRun(panel, where + " and " + inDecember, before);
    ASSERT_TRUE(matrix->mdDataSet->locate("ID", 3));
    matrix->DBGrid->setCurrentIndex(
        matrix->DBGrid->model()->index(matrix->mdDataSet->recNo(), matrix->DBGrid->columnOfField("P_9")));
    matrix->DBGridKeyDown(32);
    EXPECT_TRUE(matrix->Modified());
    expectRun(panel,
              where + " and (" + inDecember +
                  " or (c.PERMISSION_PATTERN = 3 and d.PLACE_INDEX in (60, 61, 62, 63)))",
              before);
    EXPECT_EQ(scalar(QString("select IS_SET from CARDPERMISSION_FILTER where ID_USER = %1 and SUPERPLACE = 9 "
                             "and PERMISSION_PATTERN = 3")
                         .arg(CUR_USER))
                  .toInt(),
              1);
    matrix->SetChecked(false);
}

// Every list box that the report maps has a key that narrows the report without emptying it:
// the demo sales are rich enough for each of them to matter, and each mapping prepares and runs.
// The boxes the report has no relation to change nothing.
TEST_F(SalesReport, EveryMappedListBoxChangesTheResult) {
    FilterPanelForm panel(wb.get(), workbench::salesReport());
    panel.prepare();
    switchOffAll(panel);
    const int all = scalar(panel.countSql()).toInt();
    ASSERT_EQ(all, 400);
    QList<int> keys;
    for (int k = 1; k <= 70; ++k) keys << k;
    keys << 101 << 102 << 103 << 201 << 301 << 401 << 1001 << 1002 << 1003 << 1004;
    QStringList unchanged, changedButUnmapped;
    int mapped = 0;
    for (const auto& f : panel.filters()) {
        auto* list = qobject_cast<TMultiFilter_FF*>(f.frame);
        if (!list) continue;
        bool narrows = false;
        for (int key : keys) {
            list->Clear();
            list->AddText(QString::number(key));
            if (list->KnownItemsList().isEmpty()) continue;
            list->SetChecked(true);
            const int n = scalar(panel.countSql()).toInt();
            if (n != all && !f.def->affectsReport()) changedButUnmapped << f.def->className;
            if (n > 0 && n < all) {
                narrows = true;
                break;
            }
        }
        list->Clear();
        list->SetChecked(false); // some boxes keep their content on Clear
        if (!f.def->affectsReport()) continue;
        ++mapped;
        if (!narrows) unchanged << f.def->className;
    }
    EXPECT_EQ(mapped, 38);
    EXPECT_TRUE(unchanged.isEmpty()) << unchanged.join(", ").toStdString();
    EXPECT_TRUE(changedButUnmapped.isEmpty()) << changedButUnmapped.join(", ").toStdString();
}

// A wrong group text stops the run with a message: nothing runs, the last result is not shown
// as if it were the new one.
TEST_F(SalesReport, WrongGroupTextStopsTheRun) {
    FilterPanelForm panel(wb.get(), workbench::salesReport());
    panel.prepare();
    switchOffAll(panel);
    EXPECT_EQ(panel.runQuery(), 400);
    auto* groups = qobject_cast<TGroup_FF*>(box(panel, "TGroup_FF"));
    groups->EditComboBox_EF->ComboBox->setEditText("A,,b");
    groups->SetChecked(true);
    ASSERT_FALSE(groups->IsCorrect());
    EXPECT_EQ(panel.runQuery(), -1);
    EXPECT_TRUE(logged("задан неверно"));
    EXPECT_EQ(panel.countLabel()->text(), "");
    panel.reject();
}

// A statement the server refuses reaches the user through the host's message service; the panel
// stays open and runs again once the cause is gone.
TEST_F(SalesReport, DatabaseErrorReachesTheUser) {
    workbench::ReportDefinition broken = workbench::salesReport();
    broken.name = "BrokenSales";
    broken.from += " join NO_SUCH_TABLE x on x.ID = d.ID_SALE_DOC";
    FilterPanelForm panel(wb.get(), broken);
    panel.prepare();
    auto* run = panel.findChild<QPushButton*>("btRun");
    ASSERT_NE(run, nullptr);
    const int before = int(wb->loggedMessages().size());
    run->click();
    EXPECT_GT(int(wb->loggedMessages().size()), before);
    EXPECT_TRUE(logged("NO_SUCH_TABLE")) << wb->loggedMessages().join("\n").toStdString();
    EXPECT_EQ(panel.lastCount(), -1);
    panel.reject();
}

// What the user set comes back after a restart: the period and the boxes from the layout, the
// client choice and its summary row from the server.
TEST_F(SalesReport, PanelAndChoicesComeBackAfterARestart) {
    QString where;
    {
        FilterPanelForm panel(wb.get(), workbench::salesReport());
        panel.prepare();
        // Opened for the first time, the period covers the sales there are.
        auto* period = qobject_cast<TPeriodExt_EF*>(panel.frame("TPeriodExt_EF"));
        EXPECT_EQ(period->deFirstDate->date(), scalar("select min(DOC_DATE) from SALE_DOC").toDate());
        EXPECT_EQ(period->deLastDate->date(), scalar("select max(DOC_DATE) from SALE_DOC").toDate());
        switchOffAll(panel);
        period->deFirstDate->setDate(QDate(2024, 3, 1));
        period->deLastDate->setDate(QDate(2024, 5, 31));
        auto* country = box(panel, "TCountry_FF");
        country->AddText("1");
        country->SetChecked(true);
        this->exec(
            QString(
                "insert into SEL_CLIENT (ID_USER, KIND, CLIENT_INDEX, CLIENT_TYPE) values (%1, %2, 21, 0)")
                .arg(CUR_USER)
                .arg(Kind));
        box(panel, "TClient_FF")->SetChecked(true);
        panel.updateResults();
        where = panel.whereClause();
        EXPECT_TRUE(where.contains("c.ID_COUNTRY in (1)")) << where.toStdString();
        EXPECT_GT(panel.runQuery(), 0);
        panel.done(0);
    }
    EXPECT_EQ(scalar(QString("select count(*) from SEL_CLIENT_FILTER where ID_USER = %1 and KIND = %2")
                         .arg(CUR_USER)
                         .arg(Kind))
                  .toInt(),
              1);
    // The classifier box was left off: no summary row says it is on.
    EXPECT_EQ(scalar(QString("select count(*) from SEL_CLASSIF_FILTER where ID_USER = %1 and KIND = %2")
                         .arg(CUR_USER)
                         .arg(Kind))
                  .toInt(),
              0);
    wb->saveLayout();

    auto again = restarted();
    FilterPanelForm panel(again.get(), workbench::salesReport());
    panel.prepare();
    EXPECT_TRUE(box(panel, "TCountry_FF")->Checked());
    EXPECT_TRUE(box(panel, "TClient_FF")->Checked());
    EXPECT_FALSE(box(panel, "TGroup_FF")->Checked());
    EXPECT_EQ(panel.whereClause().toStdString(), where.toStdString());
    EXPECT_EQ(panel.runQuery(), expected("d.DOC_DATE between '2024-03-01' and '2024-05-31' and "
                                         "c.ID_COUNTRY = 1 and d.CLIENT_INDEX = 21")
                                    .docs);
    panel.reject();
}

} // namespace frames::test

namespace frames::test {

// The report opens from the "Отчёты" menu, and a filter box shown in the frame browser opens on
// it, in view.
TEST_F(SalesReport, OpensFromTheMenuAndFromTheFrameBrowser) {
    workbench::MainWindow window(wb.get(), &Registry::instance());
    auto* action = window.findChild<QAction*>("actSalesReport");
    ASSERT_NE(action, nullptr);
    action->trigger();
    auto* panel = window.findChild<FilterPanelForm*>("SalesReport");
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->isVisible());
    EXPECT_EQ(panel->filters().size(), size_t(workbench::salesReport().filters.size()));

    EXPECT_TRUE(window.hasHostForm("TCountry_FF"));
    ASSERT_NE(window.showFrame("TCountry_FF"), nullptr);
    window.findChild<QPushButton*>("btBound")->click();
    EXPECT_EQ(window.findChildren<FilterPanelForm*>("SalesReport").size(), 1);
    window.close();
}

} // namespace frames::test
