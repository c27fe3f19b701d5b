#include "frames/lookup/LF_Clients.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

void TClients_LF::lcSelectDlgClick(QObject* sender) {
    // The client form learns which registered form it is through its reference number.
    if (QObject* form = RvGetForm(FormName)) {
        RunParams.FormFound = 1;
        RunParams.ResultInt = form->property("RefNumber").toInt();
    } else {
        RunParams.FormFound = 0;
    }
    TParamLookup_LF::lcSelectDlgClick(sender);
}

FRAMES_REGISTER(TClients_LF, "lookup");
FRAMES_REGISTER(TConsignee_LF, "lookup");
FRAMES_REGISTER(TConsignor_LF, "lookup");

} // namespace frames
