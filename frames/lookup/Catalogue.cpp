#include "frames/lookup/Catalogue.h"
#include "frames/core/Registry.h"

namespace frames {

FRAMES_REGISTER(TAlgoritm_LF, "lookup");
FRAMES_REGISTER(TCardKind_LF, "lookup");
FRAMES_REGISTER(TCardType_LF, "lookup");
FRAMES_REGISTER(TCursType_LF, "lookup");
FRAMES_REGISTER(TUser_LF, "lookup");

} // namespace frames
