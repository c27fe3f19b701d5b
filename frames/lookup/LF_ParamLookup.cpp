#include "frames/lookup/LF_ParamLookup.h"
#include "frames/core/Registry.h"
#include "platform/db/Params.h"
#include <cmath>

namespace frames {

namespace {

// A run constant by name; invalid for any other text.
QVariant runConstant(const QString& name) {
    if (name.compare("CUR_SHOPINDEX", Qt::CaseInsensitive) == 0) return CUR_SHOPINDEX;
    if (name.compare("CUR_FILIALINDEX", Qt::CaseInsensitive) == 0) return CUR_FILIALINDEX;
    if (name.compare("CUR_USER", Qt::CaseInsensitive) == 0) return CUR_USER;
    return {};
}

// Numbers read from a description arrive as doubles; keys are integers.
QVariant normalised(const QVariant& v) {
    if (v.typeId() == QMetaType::Double) {
        const double d = v.toDouble();
        if (std::trunc(d) == d && std::abs(d) < 2147483648.0) return int(d);
    }
    return v;
}

} // namespace

void TParamLookup_LF::SetListParams(const QVariantMap& params) {
    listParams_.clear();
    for (auto it = params.begin(); it != params.end(); ++it)
        listParams_.insert(it.key().toUpper(), normalised(it.value()));
}

QVariant TParamLookup_LF::ListParam(const QString& name) const {
    const QVariant v = listParams_.value(name.toUpper());
    if (v.typeId() == QMetaType::QString) {
        const QVariant constant = runConstant(v.toString());
        if (constant.isValid()) return constant;
    }
    return v;
}

void TParamLookup_LF::SetListParam(const QString& name, const QVariant& value) {
    listParams_.insert(name.toUpper(), normalised(value));
    reopenList();
}

void TParamLookup_LF::reopenList() {
    if (!pFIBDataSet1->active()) return;
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    if (lcSelect->dataSource()) return; // the bound record is the host's
    const QVariant key = lcSelect->keyValue();
    if (key.isValid() && !key.isNull() && !pFIBDataSet1->locate(lcSelect->lookupField(), key))
        lcSelect->clear();
}

void TParamLookup_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    for (auto it = listParams_.begin(); it != listParams_.end(); ++it)
        if (db::Param* p = pFIBDataSet1->findParam(it.key())) p->setValue(ListParam(it.key()));
}

void TParamLookup_LF::lcSelectDlgClick(QObject* sender) {
    if (ParamsToForm)
        for (auto it = listParams_.begin(); it != listParams_.end(); ++it)
            RunParams.EnsureParams().ByName(it.key()).Value = ListParam(it.key());
    TAbs_LF::lcSelectDlgClick(sender);
}

void TDocKind_LF::SetModules(bool payModule, bool order, bool production, bool correctGoodMove) {
    QVariantMap p = ListParams();
    p.insert("LIKPAYMODULE", int(payModule));
    p.insert("LIKORDER", int(order));
    p.insert("LIKPRODUCTION", int(production));
    p.insert("LIKCORRECTGOODMOVE", int(correctGoodMove));
    SetListParams(p);
    reopenList();
}

FRAMES_REGISTER(TCashNumber_LF, "lookup");
FRAMES_REGISTER(TClientBank_LF, "lookup");
FRAMES_REGISTER(TDocKind_LF, "lookup");
FRAMES_REGISTER(TDocPrintForm_LF, "lookup");
FRAMES_REGISTER(TDocTypeLinkKind_LF, "lookup");
FRAMES_REGISTER(TDocType_LF, "lookup");
FRAMES_REGISTER(TExtDocType_LF, "lookup");
FRAMES_REGISTER(TFilial_LF, "lookup");
FRAMES_REGISTER(TFilial_SuperFilial_LF, "lookup");
FRAMES_REGISTER(TFirmStaff_LF, "lookup");
FRAMES_REGISTER(THRCFilialDepartment_LF, "lookup");
FRAMES_REGISTER(TMercProduct_LF, "lookup");
FRAMES_REGISTER(TOperation_LF, "lookup");
FRAMES_REGISTER(TPlace_LF, "lookup");
FRAMES_REGISTER(TRzScale_LF, "lookup");
FRAMES_REGISTER(TSuperCash_LF, "lookup");
FRAMES_REGISTER(TSuperFilial_LF, "lookup");
FRAMES_REGISTER(TSuperPlace_LF, "lookup");

} // namespace frames
