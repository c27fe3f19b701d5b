#include "frames/lookup/LF_ActKind.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"

namespace frames {

void TActKind_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    db::Param* id = pFIBDataSet1->findParam("ID");
    if (!id) return;
    if (db::DataSource* bound = editDialogBinding(this)) lcSelect->setDataSource(bound);
    db::DataSource* src = lcSelect->dataSource();
    db::AbstractDataSet* record = src ? src->dataSet() : nullptr;
    if (!record || !record->active()) return;
    if (record->state() == db::DataSetState::Insert) {
        id->setValue(InsertingKey);
        return;
    }
    // The record's key field: the combo's data field, or a field named like the list's key.
    const QString fieldName =
        lcSelect->dataField().isEmpty() ? lcSelect->lookupField() : lcSelect->dataField();
    const db::Field* key = record->findField(fieldName);
    if (!key) return;
    id->setValue(key->isNull() ? InsertingKey : key->asInteger());
}

FRAMES_REGISTER(TActKind_LF, "lookup");

} // namespace frames
