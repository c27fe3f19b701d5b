#include "frames/lookup/LF_ClientState.h"
#include "frames/core/Registry.h"

namespace frames {

void TClientState_LF::lcSelectKeyDown(QObject*, int& key, Qt::KeyboardModifiers shift) {
    const Qt::KeyboardModifiers held = shift & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (key == Qt::Key_Delete && held == Qt::NoModifier && !GetReadOnly() && lcSelect->escapeClear()) {
        lcSelect->setKeyValue(NoState); // tells OnChange when the state changed
        key = 0;
    }
}

FRAMES_REGISTER(TClientState_LF, "lookup");

} // namespace frames
