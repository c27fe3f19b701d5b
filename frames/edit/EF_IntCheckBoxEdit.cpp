#include "frames/edit/EF_IntCheckBoxEdit.h"
#include "frames/core/Registry.h"

namespace frames {
FRAMES_REGISTER(TIntCheckBoxEdit_Frame, "edit");
}
