#include "frames/edit/EF_CheckBoxEdt.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TCheckBoxEdt_Frame, "edit");
}
