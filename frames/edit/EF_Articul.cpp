#include "frames/edit/EF_Articul.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TArticul_EF, "edit");
}
