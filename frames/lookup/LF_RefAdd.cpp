#include "frames/lookup/LF_RefAdd.h"
#include "frames/core/Registry.h"

namespace frames {

FRAMES_REGISTER(TRefAddKind_LF, "lookup");
FRAMES_REGISTER(TRefAdd_LF, "lookup");
FRAMES_REGISTER(TFirmInfoRef_LF, "lookup");
FRAMES_REGISTER(TFirmStaffInfoRef_LF, "lookup");

} // namespace frames
