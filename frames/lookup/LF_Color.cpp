#include "frames/lookup/LF_Color.h"
#include "frames/core/Registry.h"
#include "platform/widgets/ColorSwatch.h"
#include <QComboBox>

namespace frames {

TColor_LF::TColor_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->comboBox()->setIconSize(QSize(30, 12));
    lcSelect->OnGetImage = [this](QObject* sender, int row) { return lcSelectGetImage(sender, row); };
}

QIcon TColor_LF::lcSelectGetImage(QObject*, int row) {
    if (row < 0) return {};
    const db::Field* color = pFIBDataSet1->findField("COLOR");
    if (!color || color->isNull()) return {};
    return QIcon(ui::colorSwatch(ui::colorFromBgr(color->asInt64())));
}

FRAMES_REGISTER(TColor_LF, "lookup");

} // namespace frames
