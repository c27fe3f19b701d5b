#include "frames/lookup/LF_Firm.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

void TFirm_LF::AfterConstruction() {
    FormName = dmDataBaseFIB()->IsFuncRights("CRM.LOGIN") ? QStringLiteral("Firm_Out")
                                                          : QStringLiteral("FirmSimple");
    RunParams.ResultInt = FirmReference;
    TAbs_LF::AfterConstruction();
}

void TFirm_LF::lcSelectDlgClick(QObject* sender) {
    // A confirmed form writes ResultInt back; every run starts with the company reference.
    RunParams.ResultInt = FirmReference;
    TAbs_LF::lcSelectDlgClick(sender);
}

FRAMES_REGISTER(TFirm_LF, "lookup");

} // namespace frames
