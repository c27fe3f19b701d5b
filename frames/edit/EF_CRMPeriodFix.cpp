#include "frames/edit/EF_CRMPeriodFix.h"
#include "frames/core/Registry.h"

namespace frames {

FRAMES_REGISTER(TCRMPeriodFix_EF, "edit");

} // namespace frames
