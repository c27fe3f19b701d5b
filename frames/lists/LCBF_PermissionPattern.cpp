#include "frames/lists/LCBF_PermissionPattern.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

TPermissionPattern_LCBF::TPermissionPattern_LCBF(QWidget* parent) : TAbs_LCBF(parent) {
    Kind = -1;
    TableName = QStringLiteral("SEL_PERMIS");
    KeyColumn = QStringLiteral("ID_PERMIS");
    pfItems->setUpdateTransaction(dmDataBaseFIB()->pfReadTransaction());
}

FRAMES_REGISTER(TPermissionPattern_LCBF, "lists");

} // namespace frames
