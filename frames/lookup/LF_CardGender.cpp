#include "frames/lookup/LF_CardGender.h"
#include "frames/core/Registry.h"

namespace frames {

bool TCardGender_LF::IsEmpty() {
    if (TAbs_LF::IsEmpty()) return true;
    bool ok = false;
    const int key = lcSelect->keyValue().toInt(&ok);
    return ok && key == -1;
}

FRAMES_REGISTER(TCardGender_LF, "lookup");

} // namespace frames
