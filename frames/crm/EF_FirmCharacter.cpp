#include "frames/crm/EF_FirmCharacter.h"
#include "frames/core/Registry.h"

namespace frames {

void TEventCharacter_Frame::Init() {
    pFIBDataSet2->setSelectSqlLines(Prefill ? PrefillSQL : EventSQL);
    TFirmCharacter_Frame::Init();
}

void TEventCharacter_Frame::pFIBDataSet2BeforeOpen(db::AbstractDataSet& dataSet) {
    TFirmCharacter_Frame::pFIBDataSet2BeforeOpen(dataSet);
    SetParam(pFIBDataSet2, "FIRM", Firm);
    SetParam(pFIBDataSet2, "MANAGER", Manager);
}

QString TFirmBusinessSphere_Frame::GetSelectedIds() const {
    QStringList ids;
    for (int id : CheckedIds()) ids << QString::number(id);
    return ids.join(',');
}

FRAMES_REGISTER(TFirmCharacter_Frame, "crm");
FRAMES_REGISTER(TUserFirmCharacter_Frame, "crm");
FRAMES_REGISTER(TEventCharacter_Frame, "crm");
FRAMES_REGISTER(TFirmTerritory_Frame, "crm");
FRAMES_REGISTER(TFirmBusinessSphere_Frame, "crm");

} // namespace frames
