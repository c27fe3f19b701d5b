#include "frames/lookup/LF_ComplectHeader.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

TComplectHeader_LF::TComplectHeader_LF(QWidget* parent) : TAbs_LF(parent) {}

void TComplectHeader_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (db::Param* p = pFIBDataSet1->findParam("articul"))
        p->setValue(articul_.isEmpty() ? QVariant() : QVariant(articul_));
}

void TComplectHeader_LF::reopen() {
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TComplectHeader_LF::setKey(const QVariant& key) {
    const QVariant old = lcSelect->keyValue();
    if (old == key || (old.isNull() && key.isNull())) return;
    if (key.isValid() && !key.isNull())
        lcSelect->setKeyValue(key);
    else {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
}

void TComplectHeader_LF::SetArticul(const QString& articul) {
    articul_ = articul.trimmed();
    reopen();
    const QVariant key = lcSelect->keyValue();
    if (pFIBDataSet1->active() && !IsEmpty() && !pFIBDataSet1->locate(lcSelect->lookupField(), key))
        setKey(QVariant());
}

void TComplectHeader_LF::SetNewArticul(const QString& articul) {
    articul_ = articul.trimmed();
    reopen();
    if (!pFIBDataSet1->active()) return;
    // Rows come ordered by date: the last one not later than today is in force.
    const QDate today = host()->Today();
    const db::Field* date = pFIBDataSet1->fieldByName("COMPL_DATE");
    const db::Field* id = pFIBDataSet1->fieldByName(lcSelect->lookupField());
    QVariant chosen;
    for (pFIBDataSet1->first(); !pFIBDataSet1->eof(); pFIBDataSet1->next()) {
        if (chosen.isValid() && date->asDate() > today) break;
        chosen = id->value();
    }
    setKey(chosen);
}

void TComplectHeader_LF::SetCardName(const QString& name) {
    cardName_ = name;
    setToolTip(name);
}

void TComplectHeader_LF::lcSelectDlgClick(QObject* sender) {
    if (lcSelect->isReadOnly()) Abort();
    if (articul_.isEmpty()) {
        TyWarningBox(QStringLiteral("Не указан артикул карточки: комплекты выбирать не из чего."));
        return;
    }
    TVarParams& params = RunParams.EnsureParams();
    params.ByName("ARTICUL").Value = articul_;
    params.ByName("CARD_NAME").Value = cardName_;
    TAbs_LF::lcSelectDlgClick(sender);
}

FRAMES_REGISTER(TComplectHeader_LF, "lookup");

} // namespace frames
