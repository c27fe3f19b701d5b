// The report filter frames in the workbench's frame browser.
#include "frames/core/Registry.h"
#include "frames/core/SetFilter_EF.h"
#include "frames/filter/FF_Multi.h"
#include "host/HostImpl.h"
#include "host/MainWindow.h"
#include "tests/host/WorkbenchFixture.h"
#include <QComboBox>
#include <QLabel>
#include <QTest>

namespace frames::test {
namespace {

class FilterBrowser : public WorkbenchHostTest<> {};

// Every filter frame opens free-standing without a message, as a filter box; the pane under a
// list filter shows its items; a chosen key and the tick come back after a restart.
TEST_F(FilterBrowser, EveryFilterFrameOpensAndAListFilterSurvivesARestart) {
    QString chosen, items;
    {
        workbench::MainWindow window(wb.get(), &Registry::instance());
        const qsizetype before = wb->loggedMessages().size();
        const QStringList classes = Registry::instance().classNames("filter");
        EXPECT_GE(classes.size(), 51);
        for (const QString& cls : classes) {
            TAbsEditFrame* f = window.showFrame(cls);
            EXPECT_NE(qobject_cast<TSetFilter_EF*>(f), nullptr) << cls.toStdString();
        }
        EXPECT_EQ(wb->loggedMessages().mid(before), QStringList());

        auto* f = qobject_cast<TMultiFilter_FF*>(window.showFrame("TCountry_FF"));
        ASSERT_NE(f, nullptr);
        TMultiAbs_LF* l = f->Lookup();
        l->lcSelect->setKeyValue(l->pFIBDataSet1->valueAt(2, 0));
        QTest::keyClick(l->lcSelect->comboBox(), Qt::Key_Insert);
        chosen = f->ItemsItem(1);
        items = f->ItemsList();
        EXPECT_TRUE(f->cbSet->isChecked());
        auto* pane = window.findChild<QLabel*>("lbItems");
        ASSERT_NE(pane, nullptr);
        QTRY_VERIFY(pane->text().contains("ItemsCount: 2"));
        EXPECT_TRUE(pane->text().contains(chosen)) << pane->text().toStdString();
        window.close();
    }
    auto again = restarted();
    workbench::MainWindow window(again.get(), &Registry::instance());
    auto* f = qobject_cast<TMultiFilter_FF*>(window.showFrame("TCountry_FF"));
    ASSERT_NE(f, nullptr);
    EXPECT_TRUE(f->cbSet->isChecked());
    EXPECT_EQ(f->ItemsItem(1), chosen);
    EXPECT_EQ(f->ItemsList(), items); // the combo's own key (item 0) too
    EXPECT_TRUE(f->SQL("F").contains(chosen));
}

} // namespace
} // namespace frames::test
