#include "frames/medit/ME_ComboEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"

namespace frames {

namespace {
TAbs_LF* makeLookup(QWidget* parent, const char* name) {
    auto* lf = new TAbs_LF(parent);
    lf->setObjectName(name);
    FormLoader::apply(lf, QStringLiteral("TAbs_LF"));
    lf->lcSelect->setLookupField(QStringLiteral("ID"));
    lf->lcSelect->setLookupDisplay(QStringLiteral("NAME"));
    lf->AfterConstruction();
    return lf;
}
} // namespace

TComboEdit_ME::TComboEdit_ME(QWidget* parent) : TTwoValue_ME(parent) {
    lfNewValue = makeLookup(this, "lfNewValue");
    lfOldValue = makeLookup(this, "lfOldValue");
    placeEditors(lfNewValue, lfOldValue);
    lfNewValue->lcSelect->OnChange = [this](QObject* s) { guard([&] { lfNewValuelcSelectChange(s); }); };
    lfOldValue->lcSelect->OnChange = [this](QObject* s) { guard([&] { lfOldValuelcSelectChange(s); }); };
}

void TComboEdit_ME::AfterConstruction() {
    TTwoValue_ME::AfterConstruction();
    // The lists here never open their reference forms.
    lfNewValue->lcSelect->OnDlgClick = nullptr;
    lfOldValue->lcSelect->OnDlgClick = nullptr;
    lfNewValue->lcSelect->setShowButton(false);
    lfOldValue->lcSelect->setShowButton(false);
}

void TComboEdit_ME::SetParams(const QString& params) {
    TTwoValue_ME::SetParams(params);
    const QString csql = Values(QStringLiteral("CSQL")).trimmed();
    if (csql.isEmpty()) return; // the lists keep the select they were given elsewhere
    for (TAbs_LF* lf : {lfNewValue, lfOldValue}) {
        db::DataSet* ds = lf->pFIBDataSet1;
        ds->close();
        ds->setSelectSql(Values(QStringLiteral("CSQL")));
        GetDataSetParams(ds);
        PrepareList(ds);
        ds->open();
    }
}

void TComboEdit_ME::GetDataSetParams(db::DataSet* dataSet) {
    for (int i = 1;; ++i) {
        const QString name = Values(QStringLiteral("PAR_") + QString::number(i)).trimmed();
        if (name.isEmpty()) break;
        dataSet->paramByName(name)->setValue(GetParamValue(name));
    }
}

void TComboEdit_ME::PrepareList(db::DataSet*) {}

void TComboEdit_ME::lfNewValuelcSelectChange(QObject*) {
    NewValueChanged();
}

void TComboEdit_ME::lfOldValuelcSelectChange(QObject*) {
    OldValueChanged();
}

QString TComboEdit_ME::keyText(TAbs_LF* lf) {
    if (lf->lcSelect->displayText().trimmed().isEmpty()) return QStringLiteral("-1");
    return lf->lcSelect->keyValue().toString();
}

void TComboEdit_ME::SendNameAndKind() {
    setParam(QStringLiteral("fieldname"), FieldName());
}

FRAMES_REGISTER(TComboEdit_ME, "medit");

} // namespace frames
