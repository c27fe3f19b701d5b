#pragma once
#include "frames/core/Host.h"

namespace frames {

// Message boxes under a caption of the caller's. A host that offers them implements this
// interface beside Host (the workbench does); with another host the frames fall back to Host's
// own boxes under its default captions.
class HostBoxes {
public:
    virtual ~HostBoxes() = default;
    virtual void ErrorBox(const QString& text, const QString& caption) = 0;
    // OK and Cancel, with a warning icon: true for OK.
    virtual bool ConfirmBox(const QString& text, const QString& caption) = 0;
};

inline void TyErrorBox(const QString& text, const QString& caption) {
    if (auto* boxes = dynamic_cast<HostBoxes*>(host()))
        boxes->ErrorBox(text, caption);
    else
        host()->ErrorBox(text);
}

inline bool TyConfirmBox(const QString& text, const QString& caption) {
    if (auto* boxes = dynamic_cast<HostBoxes*>(host())) return boxes->ConfirmBox(text, caption);
    return host()->QuestionBox(text);
}

} // namespace frames
