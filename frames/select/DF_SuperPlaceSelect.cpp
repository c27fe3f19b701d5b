#include "frames/select/DF_SuperPlaceSelect.h"
#include "frames/core/Registry.h"

namespace frames {

FRAMES_REGISTER(TSuperPlaceSelect_DF, "select");
FRAMES_REGISTER(TClientSelect_DF, "select");
FRAMES_REGISTER(TTradeMark_DF, "select");

void TSuperPlaceSelect_DF::AfterConstruction() {
    SpKind = -1;
    TreeType = -1;
    TAbs_DF::AfterConstruction();
}

void TSuperPlaceSelect_DF::SetSpKind(int kind) {
    SpKind = kind;
    pfSelected->close();
    pfDataSet->close();
    for (db::DataSet* d : {pfSelected, pfDataSet})
        if (db::Param* p = d->findParam("SPKIND")) p->setValue(SpKind);
    for (TFIBQuery* s : {pfClassItemsCount, pfIsEmpty, pfSelectedList, pfAddSelected})
        s->setParam("SPKIND", SpKind);
    // Before Init the tree is not open yet: Init opens everything.
    if (trDataSet->active()) ReopenDataSet();
}

void TClientSelect_DF::AfterConstruction() {
    TAbs_DF::AfterConstruction();
    TreeType = 1;
}

void TTradeMark_DF::AfterConstruction() {
    TAbs_DF::AfterConstruction();
    TreeType = 5;
}

} // namespace frames
