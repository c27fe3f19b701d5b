#include "frames/edit/EF_MemoEdit.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TMemoEdit_Frame, "edit");
}
