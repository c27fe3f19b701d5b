#include "frames/lookup/LF_Measurement.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"

namespace frames {

TMeasurement_LF::TMeasurement_LF(QWidget* parent) : TAbs_LF(parent) {}

void TMeasurement_LF::SetWeight(bool weight) {
    weight_ = weight;
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TMeasurement_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (db::Param* p = pFIBDataSet1->findParam("Weight")) p->setValue(weight_ ? 1 : 0);
}

void TMeasurement_LF::lcSelectDlgClick(QObject* sender) {
    const QVariant previous = lcSelect->keyValue();
    RunParams.EnsureParams().ByName("WEIGHT").Value = weight_ ? 1 : 0;
    TAbs_LF::lcSelectDlgClick(sender);
    if (!LastKey.isValid() || LastKey.isNull()) return;
    if (pFIBDataSet1->locate(lcSelect->lookupField(), LastKey)) return;
    const QString name =
        QvSqlValue({"select name_mesuriment from Mesuriment where id_mesuriment=", SqlLiteral(LastKey)})
            .toString();
    TyWarningBox(weight_
                     ? QStringLiteral("Единица измерения «%1» здесь не выбирается: это упаковка.").arg(name)
                     : QStringLiteral("Единица измерения «%1» здесь не выбирается: товар штучный, а это "
                                      "упаковка или весовая единица.")
                           .arg(name));
    LastKey = QVariant();
    if (previous.isValid() && !previous.isNull())
        acceptKey(previous);
    else
        lcSelect->clear();
    if (lcSelect->OnChange) lcSelect->OnChange(sender);
}

FRAMES_REGISTER(TMeasurement_LF, "lookup");

} // namespace frames
