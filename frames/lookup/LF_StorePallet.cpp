#include "frames/lookup/LF_StorePallet.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include <QLabel>
#include <QLayout>

namespace frames {

TStorePallet_LF::TStorePallet_LF(QWidget* parent) : TAbs_LF(parent) {
    lbStore = new QLabel(body());
    lbStore->setObjectName("lbStore");
    lbStore->setMinimumWidth(80);
    body()->layout()->addWidget(lbStore);
    lcSelect->OnChange = [this](QObject* sender) { lcSelectChange(sender); };
}

int TStorePallet_LF::Place() const {
    if (!place_) {
        // Without a database (a form designer reading the property) there is no place yet.
        if (!HasDatabase()) return -1;
        // The first place, the current shop's own places first, with pallets in a zone of the kind.
        const QVariant first =
            QvSqlValue({"select first 1 s.id_place from STORE s join STORE_ZONE sz on sz.id = s.id_zone ",
                        "where sz.kind = ", zoneKind_,
                        " and exists(select 1 from STORE_PALLET st where st.id_store = s.id ",
                        "and st.id <> -1) order by iif(exists(select 1 from place_view_prg(", CUR_SHOPINDEX,
                        ") p where p.id_clients = s.id_place), 0, 1), s.id_place"});
        if (first.isNull() || !first.isValid()) return -1;
        place_ = first.toInt();
    }
    return *place_;
}

void TStorePallet_LF::SetPlace(int place) {
    place_ = place;
    placeSet_ = true;
    reopenList();
}

void TStorePallet_LF::SetZoneKind(int kind) {
    zoneKind_ = kind;
    if (!placeSet_) place_.reset(); // the default place depends on the zone kind
    reopenList();
}

int TStorePallet_LF::Shop() const {
    return shop_.value_or(CUR_SHOPINDEX);
}

void TStorePallet_LF::SetShop(int shop) {
    shop_ = shop;
    reopenList();
}

void TStorePallet_LF::reopenList() {
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    if (!IsEmpty() && chosenRow() < 0 && !lcSelect->dataSource()) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
    UpdateStoreName();
}

void TStorePallet_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (db::Param* p = pFIBDataSet1->findParam("PLACEINDEX")) p->setValue(Place());
    if (db::Param* p = pFIBDataSet1->findParam("ZONE_KIND")) p->setValue(zoneKind_);
    if (db::Param* p = pFIBDataSet1->findParam("SHOPINDEX")) p->setValue(Shop());
}

void TStorePallet_LF::pFIBDataSet1AfterOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1AfterOpen(dataSet);
    UpdateStoreName();
}

void TStorePallet_LF::lcSelectChange(QObject*) {
    UpdateStoreName();
}

int TStorePallet_LF::chosenRow() const {
    const QVariant key = lcSelect->keyValue();
    if (!key.isValid() || key.isNull() || !pFIBDataSet1->active()) return -1;
    const db::Field* id = pFIBDataSet1->findField(lcSelect->lookupField());
    if (!id) return -1;
    for (int row = 0, n = pFIBDataSet1->recordCount(); row < n; ++row)
        if (pFIBDataSet1->valueAt(row, id->index()).toString() == key.toString()) return row;
    return -1;
}

QString TStorePallet_LF::StoreName() const {
    const int row = chosenRow();
    const db::Field* f = pFIBDataSet1->findField("NAME_STORE");
    return row < 0 || !f ? QString() : pFIBDataSet1->valueAt(row, f->index()).toString();
}

QVariant TStorePallet_LF::StoreId() const {
    const int row = chosenRow();
    const db::Field* f = pFIBDataSet1->findField("ID_STORE");
    return row < 0 || !f ? QVariant() : pFIBDataSet1->valueAt(row, f->index());
}

void TStorePallet_LF::UpdateStoreName() {
    const QString name = StoreName();
    lbStore->setText(name.isEmpty() ? QString() : QStringLiteral("Место: %1").arg(name));
}

FRAMES_REGISTER(TStorePallet_LF, "lookup");

} // namespace frames
