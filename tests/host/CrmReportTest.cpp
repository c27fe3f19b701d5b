#include "frames/core/RunParams.h"
#include "frames/crm/EF_CRMSelect.h"
#include "frames/crm/EF_FirmCharacter.h"
#include "host/CrmForms.h"
#include "host/CrmReportForm.h"
#include "host/FrameHostForms.h"
#include "platform/db/DataSet.h"
#include "tests/host/WorkbenchFixture.h"

using namespace frames;

namespace {
class CrmReport : public test::WorkbenchHostTest<> {};
} // namespace

// The report form gives its kind to every tree; the report lists the companies chosen on the
// company tab with the events of the managers chosen on either manager tab, for this user only.
TEST_F(CrmReport, ReportJoinsTheChoicesOfTheUser) {
    workbench::CrmReportForm form(31);
    form.prepare();
    auto* firms = qobject_cast<TCRMSelect_Frame*>(form.frame("TCRMFirmSelect_Frame"));
    ASSERT_NE(firms, nullptr);
    EXPECT_EQ(firms->Kind, 31);
    ASSERT_TRUE(firms->DBTreeView->setCurrentKey(261)); // key clients: company 4
    firms->actSelect->trigger();
    ASSERT_TRUE(firms->DBTreeView->setCurrentKey(263)); // restaurants and cafes: 1 and 2
    firms->dbgrdUnSelected->selectAll();
    firms->actSelect->trigger();

    form.runReport();
    EXPECT_EQ(form.result()->recordCount(), 3);
    auto events = [&](int firm) {
        db::DataSet* r = form.result();
        for (int i = 0; i < r->recordCount(); ++i)
            if (r->valueAt(i, 0).toInt() == firm) return r->valueAt(i, 2).toInt();
        return -1;
    };
    EXPECT_EQ(events(1), 0); // no manager chosen yet
    exec(QString("insert into REPORT_MANAGER (report_id, owner_id, manager_id) values (31, %1, 7)")
             .arg(CUR_USER));
    exec(QString("insert into CRM_REPORT_MANAGER (kind, owner_id, manager_id) values (31, %1, 4)")
             .arg(CUR_USER));
    exec("insert into CRM_REPORT_FIRM (kind, owner_id, firm_id) values (31, 2, 3)"); // another user's
    form.runReport();
    EXPECT_EQ(form.result()->recordCount(), 3);
    EXPECT_EQ(events(1), 1); // event 1: company 1, manager 7
    EXPECT_EQ(events(4), 1); // event 3: company 4, manager 7
    EXPECT_EQ(events(2), 0);
    EXPECT_EQ(events(3), -1);
}

// On the edit dialog of a company the check lists show that company's marks and OK stores what
// was ticked; on an event's dialog the event's own characteristics show.
TEST_F(CrmReport, CompanyAndEventDialogsEditTheirMarks) {
    std::unique_ptr<workbench::RecordListForm> firms(workbench::makeFirmList(wb.get()));
    ASSERT_TRUE(firms->records()->locate("ID", 3));
    {
        workbench::FrameEditDialog dlg(wb.get(), firms.get());
        dlg.prepare();
        auto* territory = qobject_cast<TFirmTerritory_Frame*>(dlg.frame("TFirmTerritory_Frame"));
        ASSERT_NE(territory, nullptr);
        EXPECT_EQ(territory->ObjectKey, 3);
        QList<int> ids = territory->CheckedIds();
        std::sort(ids.begin(), ids.end());
        EXPECT_EQ(ids, (QList<int>{1, 2}));
        territory->SetChecked(4, true);
        dlg.accept();
        EXPECT_TRUE(wb->loggedMessages().isEmpty()) << wb->loggedMessages().join("\n").toStdString();
    }
    EXPECT_EQ(scalar("select count(*) from FIRM_TERRITORY where firm = 3").toInt(), 3);

    std::unique_ptr<workbench::RecordListForm> events(workbench::makeEventList(wb.get()));
    ASSERT_TRUE(events->records()->locate("ID", 2));
    workbench::FrameEditDialog dlg(wb.get(), events.get());
    dlg.prepare();
    auto* chars = qobject_cast<TEventCharacter_Frame*>(dlg.frame("TEventCharacter_Frame"));
    ASSERT_NE(chars, nullptr);
    EXPECT_EQ(chars->Firm, 3);
    EXPECT_EQ(chars->CheckedIds(), (QList<int>{2}));
    dlg.reject();
}
