#include "frames/lookup/LF_ClassifFull.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include <QVBoxLayout>

namespace frames {

namespace {

bool hasValue(const QVariant& v) {
    return v.isValid() && !v.isNull();
}

} // namespace

TClassifFull_LF::TClassifFull_LF(QWidget* parent) : TAbs_LF(parent) {
    // The type sits above the branch: its caption and combo come first in the frame.
    Label1 = new QLabel(this);
    Label1->setObjectName("Label1");
    lcSelect2 = new ui::LookupCombo(this);
    lcSelect2->setObjectName("lcSelect2");
    lcSelect2->setMinimumWidth(120);
    lcSelect2->setShowButton(false);
    Label1->setBuddy(lcSelect2);
    if (auto* box = qobject_cast<QVBoxLayout*>(layout())) {
        box->insertWidget(0, Label1);
        box->insertWidget(1, lcSelect2);
    }
    setTabOrder(lcSelect2, lcSelect);
    resize(451, 80);

    pFIBDataSet2 = new db::DataSet(this);
    pFIBDataSet2->setObjectName("pFIBDataSet2");
    pFIBDataSet2->setDatabase(dmDataBaseFIB()->RvDatabase());
    pFIBDataSet2->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    DataSource2 = new db::DataSource(pFIBDataSet2, this);
    DataSource2->setObjectName("DataSource2");
    lcSelect2->setLookupSource(DataSource2);
    lcSelect2->OnChange = [this](QObject* s) { guard([&] { lcSelect2Change(s); }); };
}

void TClassifFull_LF::SetReadOnly(bool value) {
    TAbs_LF::SetReadOnly(value);
    lcSelect2->setReadOnly(value);
}

void TClassifFull_LF::FormClose() {
    if (lcSelect2->isDroppedDown()) lcSelect2->closeUp(false);
    TAbs_LF::FormClose();
}

void TClassifFull_LF::bindTypeCombo() {
    db::DataSource* bound = editDialogBinding(this);
    if (!bound || !bound->dataSet()) return;
    // A DataField that names no field of the record (the plain frame's ".ID_CLASSIF_TYPE") leaves
    // the type combo with its own value.
    if (bound->dataSet()->findField(lcSelect2->dataField())) lcSelect2->setDataSource(bound);
}

void TClassifFull_LF::Init() {
    pFIBDataSet2->close();
    pFIBDataSet2->paramByName("SET_FOR")->setValue(GLOBAL_PAR_SET_FOR);
    pFIBDataSet2->open();
    // The branch list is opened once, below; the type's change handler would open it before.
    auto handler = std::move(lcSelect2->OnChange);
    lcSelect2->OnChange = nullptr;
    lcSelect2->setKeyValue(GLOBAL_PAR_CLASSIF_TYPE);
    lcSelect2->OnChange = std::move(handler);
    bindTypeCombo();
    TAbs_LF::Init();
}

void TClassifFull_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    pFIBDataSet1->paramByName("ID_CLASSIF_TYPE")->setValue(lcSelect2->keyValue().toInt());
}

void TClassifFull_LF::lcSelect2Change(QObject*) {
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TClassifFull_LF::acceptBranch(int key) {
    db::DataSource* src = lcSelect->dataSource();
    if (src && src->dataSet()) {
        db::AbstractDataSet* record = src->dataSet();
        if (!record->inEditMode()) record->edit();
        record->fieldByName(lcSelect->dataField())->setValue(QVariant(key));
    } else {
        lcSelect->setKeyValue(key);
    }
}

void TClassifFull_LF::lcSelectDlgClick(QObject*) {
    if (lcSelect->isReadOnly()) Abort();
    const QVariant key = lcSelect->keyValue();
    RunParams.ResultInt = lcSelect2->keyValue().toInt();
    RunParams.KeyInt = hasValue(key) ? key.toInt() : -1;
    // Any answer but a cancel counts, as for every classifier lookup.
    if (RunModule(TreeFormName, RunParams) != 2) acceptBranch(RunParams.ResultInt);
}

void TAClassifFull_LF::Init() {
    // The list leaves out the classifier of the host list form that owns the edit dialog.
    QObject* form = ownerOf(Owner());
    const QVariant ref = form ? form->property("RefNumber") : QVariant();
    pFIBDataSet2->close();
    pFIBDataSet2->paramByName("Classif_Type1")->setValue(ref.isValid() ? ref.toInt() : -1);
    pFIBDataSet2->open();
    bindTypeCombo();
    TAbs_LF::Init();
}

void TAClassifFull_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    const QVariant type = lcSelect2->keyValue();
    pFIBDataSet1->paramByName("ID_CLASSIF_TYPE")->setValue(hasValue(type) ? type.toInt() : -1);
}

void TAClassifFull_LF::lcSelectDlgClick(QObject*) {
    if (lcSelect->isReadOnly()) Abort();
    const QVariant type = lcSelect2->keyValue();
    if (!hasValue(type)) return;
    ResetParams(RunParams);
    RunParams.Mode = 1;
    RunParams.ResultInt = type.toInt();
    const QVariant key = lcSelect->keyValue();
    RunParams.KeyInt = hasValue(key) ? key.toInt() : -1;
    if (RunModule(TreeFormName, RunParams) == 2) return;
    db::DataSource* src = lcSelect->dataSource();
    if (src && src->dataSet() && !src->dataSet()->inEditMode()) src->dataSet()->edit();
    lcSelect->setKeyValue(RunParams.ResultInt);
}

FRAMES_REGISTER(TClassifFull_LF, "lookup");
FRAMES_REGISTER(TAClassifFull_LF, "lookup");

} // namespace frames
