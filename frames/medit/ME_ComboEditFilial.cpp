#include "frames/medit/ME_ComboEditFilial.h"
#include "frames/core/Registry.h"

namespace frames {

void TComboEditFilial_ME::updateTag() {
    tag_ = lfNewValue->lcSelect->displayText().isEmpty() ? NoValueTag : 0;
}

void TComboEditFilial_ME::AfterConstruction() {
    TComboEdit_ME::AfterConstruction();
    updateTag();
}

void TComboEditFilial_ME::lfNewValuelcSelectChange(QObject* sender) {
    TComboEdit_ME::lfNewValuelcSelectChange(sender);
    updateTag();
}

void TComboEditFilial_ME::chbNewNullClick(QObject* sender) {
    TComboEdit_ME::chbNewNullClick(sender);
    updateTag();
}

FRAMES_REGISTER(TComboEditFilial_ME, "medit");

} // namespace frames
