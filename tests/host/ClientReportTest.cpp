#include "frames/core/Registry.h"
#include "frames/select/DF_PlaceSelect.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "host/ClientReportForm.h"
#include "host/MainWindow.h"
#include "platform/db/DataSet.h"
#include "tests/host/WorkbenchFixture.h"
#include <QLabel>

using namespace frames;

namespace {

using ClientReport = test::WorkbenchHostTest<>;

} // namespace

// The report lists the payments of exactly the chosen clients with their count; the choice and
// the dialog's node are there again after the workbench restarts.
TEST_F(ClientReport, ShowsTheChosenClientsDocumentsAndKeepsTheChoiceAcrossARestart) {
    const int before = scalar("select count(*) from SEL_CLIENT where id_user = 1 and kind = 1").toInt();
    int chosenDocs = 0;
    {
        workbench::MainWindow window(wb.get(), &Registry::instance());
        workbench::ClientReportForm* form = window.openClientReport();
        ASSERT_NE(form, nullptr);
        TClientSelect_DF* d = form->dialog();
        ASSERT_TRUE(d->DBTreeView->setCurrentKey(430));
        d->DBGridUnSelected->setMarked(0, true);
        d->DBGridUnSelected->setMarked(1, true);
        d->TransferRecDown();
        form->runReport();
        chosenDocs = scalar("select count(*) from PAYMENT_DOC p join SEL_CLIENT s on s.client_index = "
                            "p.link_to_client and s.id_user = 1 and s.kind = 1")
                         .toInt();
        EXPECT_EQ(form->documents()->recordCount(), chosenDocs);
        EXPECT_TRUE(form->countLabel()->text().startsWith(
            QStringLiteral("Документов: %1 (выбрано контрагентов: %2)").arg(chosenDocs).arg(before + 2)))
            << form->countLabel()->text().toStdString();
        form->close();
        window.close();
    }
    auto again = restarted();
    workbench::MainWindow window(again.get(), &Registry::instance());
    workbench::ClientReportForm* form = window.openClientReport();
    ASSERT_NE(form, nullptr);
    EXPECT_EQ(form->dialog()->DBTreeView->currentKey().value_or(0), 430);
    EXPECT_EQ(form->dialog()->pfSelected->recordCount(), 2);
    EXPECT_EQ(form->documents()->recordCount(), chosenDocs);
}

// Every selection dialog opens in the frame browser with its kind, showing records.
TEST_F(ClientReport, EveryDialogOpensInTheFrameBrowser) {
    workbench::MainWindow window(wb.get(), &Registry::instance());
    for (const QString& cls : Registry::instance().classNames("select")) {
        TAbsEditFrame* f = window.showFrame(cls);
        ASSERT_NE(f, nullptr) << cls.toStdString();
        auto* d = qobject_cast<TAbs_DF*>(f);
        if (!d) continue; // a classifier tree dialog: no record grids
        EXPECT_EQ(d->Kind, 1) << cls.toStdString();
        EXPECT_GT(d->DBTreeView->nodeCount(), 0) << cls.toStdString();
        EXPECT_GT(d->MXCount, 0) << cls.toStdString();
    }
    EXPECT_TRUE(window.hasHostForm("TClientSelect_DF"));
}
