#include "frames/crm/EF_FirmCharacter.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"

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

void TEventCharacter_Frame::TakeRecordKeys(const db::AbstractDataSet& record) {
    TFirmCharacter_Frame::TakeRecordKeys(record);
    if (db::Field* f = record.findField("FIRM"); f && !f->isNull()) Firm = f->value().toInt();
    if (db::Field* f = record.findField("MANAGER"); f && !f->isNull()) Manager = f->value().toInt();
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
