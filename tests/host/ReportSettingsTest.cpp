#include "frames/core/RunParams.h"
#include "frames/lists/BF_Manager.h"
#include "frames/lists/LCBF_PermissionPattern.h"
#include "host/ReportSettingsForm.h"
#include "tests/host/WorkbenchFixture.h"
#include <QSpinBox>

namespace frames::test {
namespace {

class ReportSettings : public WorkbenchHostTest<> {
protected:
    std::unique_ptr<workbench::HostImpl> restarted() {
        workbench::HostImpl::Settings s;
        s.profileRoot = root.path();
        s.interactive = false;
        auto again = std::make_unique<workbench::HostImpl>(s);
        EXPECT_TRUE(again->loadLayout());
        again->openDatabase(databasePath());
        setHost(again.get());
        return again;
    }
};

} // namespace

// The report settings form keeps the managers and the patterns of its kind on the server and the
// kind in the layout: after a restart the form opens on the same kind with the same choice.
TEST_F(ReportSettings, ChoiceAndKindComeBackAfterARestart) {
    {
        workbench::ReportSettingsForm form(wb.get());
        form.prepare();
        form.setKind(3);
        TManager_BF* m = form.managers();
        ASSERT_NE(m, nullptr);
        EXPECT_EQ(m->Kind, 3);
        ASSERT_TRUE(m->mdAvailabled->locate("ID", 7));
        m->sbSel->click();
        form.patterns()->clbSelect->item(1)->setCheckState(Qt::Checked);
        form.done(0);
    }
    EXPECT_EQ(scalar(QString("select MANAGER from FILTER_MANAGER where ID_USER=%1 and KIND=3").arg(CUR_USER))
                  .toInt(),
              7);
    EXPECT_EQ(
        scalar(QString("select count(*) from SEL_PERMIS where ID_USER=%1 and KIND=3").arg(CUR_USER)).toInt(),
        1);

    auto again = restarted();
    workbench::ReportSettingsForm form(again.get());
    form.prepare();
    EXPECT_EQ(form.kind(), 3);
    EXPECT_EQ(form.managers()->ItemsList(), "7");
    EXPECT_EQ(form.patterns()->CheckedIds().size(), 1);
    EXPECT_EQ(form.patterns()->clbSelect->item(1)->checkState(), Qt::Checked);

    // Another kind has a choice of its own.
    form.setKind(4);
    EXPECT_EQ(form.managers()->ItemsCount(), 0);
    EXPECT_TRUE(form.patterns()->CheckedIds().isEmpty());
    form.done(0);
    EXPECT_TRUE(again->loggedMessages().isEmpty()) << again->loggedMessages().join("\n").toStdString();
}

} // namespace frames::test
