#include "frames/medit/ME_ClassifComboEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "platform/db/Params.h"

namespace frames {

TClassifComboEdit_ME::TClassifComboEdit_ME(QWidget* parent) : TComboEdit_ME(parent) {
    for (TAbs_LF* lf : {lfNewValue, lfOldValue})
        lf->pFIBDataSet1->beforeOpen.connect([this](db::AbstractDataSet& ds) { DataSetBeforeOpen(ds); });
}

void TClassifComboEdit_ME::AfterConstruction() {
    TComboEdit_ME::AfterConstruction();
    for (TAbs_LF* lf : {lfNewValue, lfOldValue}) {
        lf->lcSelect->OnDlgClick = [this](QObject* s) { guard([&] { DlgClick(s); }); };
        lf->lcSelect->setShowButton(true);
    }
}

void TClassifComboEdit_ME::SetParams(const QString& params) {
    TAbsMEditFrame::SetParams(params);
    const QString type = Values(QStringLiteral("TYPE_CLASSIF")).trimmed();
    bool ok = false;
    const int value = type.toInt(&ok);
    if (ok) classifType_ = value; // a type that is not a number leaves the type as it was
    TComboEdit_ME::SetParams(params);
}

void TClassifComboEdit_ME::DataSetBeforeOpen(db::AbstractDataSet& dataSet) {
    if (auto* ds = qobject_cast<db::DataSet*>(&dataSet))
        if (db::Param* p = ds->findParam(QStringLiteral("TYPE_CLASSIF"))) p->setValue(classifType_);
}

void TClassifComboEdit_ME::DlgClick(QObject* sender) {
    TAbs_LF* lf = sender == lfNewValue->lcSelect ? lfNewValue : lfOldValue;
    ui::LookupCombo* combo = lf->lcSelect;
    TRunParams params;
    ResetParams(params);
    const QVariant key = combo->keyValue();
    const int current = key.isNull() || !key.isValid() ? -1 : key.toInt();
    params.ResultInt = classifType_;
    params.KeyInt = current;
    params.KeyValue = current;
    const int result = RunModule(QStringLiteral("QucikClassifForm"), params);
    lf->pFIBDataSet1->close();
    lf->pFIBDataSet1->open();
    if (result == 2) return;
    const int chosen =
        params.KeyValue.isValid() && !params.KeyValue.isNull() ? params.KeyValue.toInt() : params.KeyInt;
    if (chosen < 0 || chosen == current) return;
    combo->setKeyValue(chosen);
}

FRAMES_REGISTER(TClassifComboEdit_ME, "medit");

} // namespace frames
