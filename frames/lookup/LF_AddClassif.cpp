#include "frames/lookup/LF_AddClassif.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"

namespace frames {

TAddClassif_LF::TAddClassif_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->OnChange = [this](QObject* s) { guard([&] { lcSelectChange(s); }); };
}

void TAddClassif_LF::lcSelectChange(QObject*) {
    if (!lcSelect->displayText().isEmpty()) return;
    const QVariant key = lcSelect->keyValue();
    // A key 0 that the list does not show stays as it is (and ends the change chain).
    if (key.isValid() && !key.isNull() && key.toString().trimmed() == QLatin1String("0")) return;
    lcSelect->setKeyValue(0);
}

FRAMES_REGISTER(TAddClassif_LF, "lookup");

} // namespace frames
