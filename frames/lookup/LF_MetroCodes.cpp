#include "frames/lookup/LF_MetroCodes.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"

namespace frames {

TMetroCodes_LF::TMetroCodes_LF(QWidget* parent) : TAbs_LF(parent) {}

int TMetroCodes_LF::Filial() const {
    return filial_.value_or(CUR_FILIALINDEX);
}

void TMetroCodes_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (db::Param* p = pFIBDataSet1->findParam("filial")) p->setValue(Filial());
}

void TMetroCodes_LF::Init() {
    TAbs_LF::Init();
    takeDefaultCode(false);
}

void TMetroCodes_LF::SetFilial(int filial) {
    filial_ = filial;
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    takeDefaultCode(true);
}

void TMetroCodes_LF::takeDefaultCode(bool notify) {
    if (lcSelect->dataSource() || !pFIBDataSet1->active()) return;
    const QVariant key = lcSelect->keyValue();
    if (!IsEmpty() && pFIBDataSet1->locate(lcSelect->lookupField(), key)) return;
    QVariant code;
    if (!pFIBDataSet1->isEmpty()) {
        pFIBDataSet1->first();
        code = pFIBDataSet1->fieldByName(lcSelect->lookupField())->value();
    }
    if (code != key) {
        acceptKey(code);
        if (notify && lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
}

FRAMES_REGISTER(TMetroCodes_LF, "lookup");

} // namespace frames
