#include "frames/lookup/LF_ShopEquipment.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"

namespace frames {

TShopEquipment_LF::TShopEquipment_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->OnDropDown = [this](QObject* sender, bool& show) { lcSelectDropDown(sender, show); };
}

int TShopEquipment_LF::ShopEquipmentType() const {
    if (!type_) {
        // Without a database (a form designer reading the property) there is no type yet.
        if (!HasDatabase()) return -1;
        const QVariant first = QvSqlValue(
            {"select first 1 t.id from SHOP_EQUIPMENT_TYPE t where (", kind_, " = -1 or t.kind = ", kind_,
             ") and exists(select 1 from SECTIONS_EQUIPMENT se where se.type = t.id) order by t.name, t.id"});
        if (!first.isValid() || first.isNull()) return -1;
        type_ = first.toInt();
    }
    return *type_;
}

void TShopEquipment_LF::SetShopEquipmentType(int type) {
    type_ = type;
    typeSet_ = true;
    reopenList();
}

void TShopEquipment_LF::SetKind(int kind) {
    kind_ = kind;
    if (!typeSet_) type_.reset();
    reopenList();
}

void TShopEquipment_LF::SetShowShortcuts(bool show) {
    showShortcuts_ = show;
    reopenList();
}

void TShopEquipment_LF::reopenList() {
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    // A free-standing frame lets go of equipment the new list does not hold.
    if (lcSelect->dataSource() || IsEmpty()) return;
    if (!pFIBDataSet1->locate(lcSelect->lookupField(), lcSelect->keyValue())) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
}

void TShopEquipment_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (db::Param* p = pFIBDataSet1->findParam("equipment_type")) p->setValue(ShopEquipmentType());
    if (db::Param* p = pFIBDataSet1->findParam("show_shortcuts")) p->setValue(showShortcuts_ ? 1 : 0);
}

void TShopEquipment_LF::lcSelectDropDown(QObject*, bool& show) {
    if (!show) return;
    pFIBDataSet1->reopen(true);
}

void TShopEquipment_LF::lcSelectDlgClick(QObject*) {
    if (lcSelect->isReadOnly()) Abort();
    TRunParams params;
    params.Mode = 1;
    params.KeyFieldName = "ID";
    const int type = ShopEquipmentType();
    if (type != -1) params.KeyValue = type;
    params.Transaction = TRunParams::NoTransaction();
    if (RunModule(TypeForm, params) != 1) return;
    if (!params.KeyValue.isValid() || params.KeyValue.isNull()) return;
    SetShopEquipmentType(params.KeyValue.toInt());
    notifyOwnerChanged();
}

FRAMES_REGISTER(TShopEquipment_LF, "lookup");

} // namespace frames
