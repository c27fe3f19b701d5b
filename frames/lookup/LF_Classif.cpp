#include "frames/lookup/LF_Classif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"

namespace frames {

TClassif_LF::TClassif_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->OnDropDown = [this](QObject* sender, bool& show) {
        show = false;
        guard([&] { lcSelectDropDown(sender); });
    };
}

void TClassif_LF::Init() {
    // The branch is chosen through the drop-down, not through the dialog button.
    lcSelect->OnDlgClick = nullptr;
    ClassifType = GLOBAL_PAR_CLASSIF_TYPE;
    Chosen = false;
    DontAcceptRoot = false;
    TAbs_LF::Init();
}

void TClassif_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    db::DataSource* src = lcSelect->dataSource();
    if (!src || !src->dataSet()) return; // free-standing: the key the last dialog set stays
    const db::Field* field = src->dataSet()->fieldByName(lcSelect->dataField());
    pFIBDataSet1->paramByName("ID_CLASSIF")->setValue(field->isNull() ? -1 : field->asInteger());
}

void TClassif_LF::lcSelectDropDown(QObject* sender) {
    lcSelectDlgClick(sender);
    Abort();
}

void TClassif_LF::showFreeStanding(int key) {
    pFIBDataSet1->paramByName("ID_CLASSIF")->setValue(key);
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    lcSelect->setKeyValue(key);
}

void TClassif_LF::SetClassif(int key) {
    if (lcSelect->dataSource() && lcSelect->dataSource()->dataSet()) return;
    showFreeStanding(key);
}

void TClassif_LF::lcSelectDlgClick(QObject* sender) {
    if (lcSelect->isReadOnly()) Abort();
    RunParams.ResultInt = ClassifType;
    RunParams.Params = std::make_shared<TVarParams>();
    // The parameters live for this run only, whatever happens in it.
    struct FreeParams {
        TRunParams& p;
        ~FreeParams() { p.Params.reset(); }
    } freeParams{RunParams};
    RunParams.Params->ByName("DONT_ACCEPT_ROOT").Value = DontAcceptRoot;
    const QVariant key = lcSelect->keyValue();
    RunParams.KeyInt = key.isValid() && !key.isNull() ? key.toInt() : -1;

    const int result = RunModule(TreeFormName, RunParams);
    Chosen = true;
    // Any answer but a cancel counts: the tree form has no other way to say "no".
    if (result == 2) return;
    db::DataSource* src = lcSelect->dataSource();
    if (!src || !src->dataSet()) {
        showFreeStanding(RunParams.ResultInt);
        return;
    }
    db::AbstractDataSet* record = src->dataSet();
    if (!record->inEditMode()) record->edit();
    record->fieldByName(lcSelect->dataField())->setValue(QVariant(RunParams.ResultInt));
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    if (lcSelect->OnChange) lcSelect->OnChange(sender);
}

FRAMES_REGISTER(TClassif_LF, "lookup");

} // namespace frames
