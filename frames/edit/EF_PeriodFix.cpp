#include "frames/edit/EF_PeriodFix.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

TPeriodFix_EF::TPeriodFix_EF(QWidget* parent) : TPeriodExt_EF(parent) {}

void TPeriodFix_EF::Init() {
    int m = TYConfig()->GetIntValue(MaxPeriodKey());
    if (m <= 0) m = WorkPeriodLength();
    SetMaxPeriodLength(qMax(m, 0));
    TPeriodExt_EF::Init();
    if (!restoredIndex_ && WorkPeriodLength() > 0) {
        SetPeriodType(ptWorkPeriod);
        SetSelectedPeriod();
    }
    CheckPeriodLength(true);
}

void TPeriodFix_EF::ApplyStoredIndex() {
    TPeriodExt_EF::ApplyStoredIndex();
    CheckPeriodLength(true);
}

void TPeriodFix_EF::cbPeriodChange(QObject* sender) {
    TPeriodExt_EF::cbPeriodChange(sender);
    CheckPeriodLength(true);
}

void TPeriodFix_EF::DateEdited(QObject*) {
    CheckPeriodLength(false);
}

FRAMES_REGISTER(TPeriodFix_EF, "edit");

} // namespace frames
