#include "frames/edit/EF_DocIndex.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TDocIndex_EF, "edit");
}
