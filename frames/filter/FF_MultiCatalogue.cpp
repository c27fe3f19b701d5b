#include "frames/filter/FF_MultiCatalogue.h"
#include "frames/core/Registry.h"

namespace frames {

void TCardType_FF::MultiCardType_LF1lcSelectChange(QObject*) {
    tick();
}

void TCardType_FF::MultiCardType_LF1mdListAfterPost(db::AbstractDataSet&) {
    tick();
}

void TCardType_FF::MultiCardType_LFmdListAfterDelete(db::AbstractDataSet&) {
    tick();
}

void TPlace_FF::AfterConstruction() {
    TMultiFilter_FF::AfterConstruction();
    if (Lookup()) Lookup()->SetKind(1);
}

FRAMES_REGISTER(TABC_FF, "filter");
FRAMES_REGISTER(TActKind_FF, "filter");
FRAMES_REGISTER(TAddClassif_FF, "filter");
FRAMES_REGISTER(TBusinessSphere_FF, "filter");
FRAMES_REGISTER(TCFO_FF, "filter");
FRAMES_REGISTER(TCFU_FF, "filter");
FRAMES_REGISTER(TCardGender_FF, "filter");
FRAMES_REGISTER(TCardPermis_FF, "filter");
FRAMES_REGISTER(TCardType_FF, "filter");
FRAMES_REGISTER(TCategory_FF, "filter");
FRAMES_REGISTER(TCity_FF, "filter");
FRAMES_REGISTER(TClientList_FF, "filter");
FRAMES_REGISTER(TColor_FF, "filter");
FRAMES_REGISTER(TCountry_FF, "filter");
FRAMES_REGISTER(TCustomer_FF, "filter");
FRAMES_REGISTER(TDiscCliCategor_FF, "filter");
FRAMES_REGISTER(TDocTypeFilial_FF, "filter");
FRAMES_REGISTER(TDocType_FF, "filter");
FRAMES_REGISTER(TEventCharacter_FF, "filter");
FRAMES_REGISTER(TEventPriority_FF, "filter");
FRAMES_REGISTER(TEventType_FF, "filter");
FRAMES_REGISTER(TExtCardParam_FF, "filter");
FRAMES_REGISTER(TFilial_FF, "filter");
FRAMES_REGISTER(TFirmCharacter_FF, "filter");
FRAMES_REGISTER(TFirmPriority_FF, "filter");
FRAMES_REGISTER(TFirmState_FF, "filter");
FRAMES_REGISTER(TFirm_FF, "filter");
FRAMES_REGISTER(TGroupPlaces_FF, "filter");
FRAMES_REGISTER(TUserGroup_FF, "filter");
FRAMES_REGISTER(TManagerCRM_FF, "filter");
FRAMES_REGISTER(TManufacturer_FF, "filter");
FRAMES_REGISTER(TMesuriment_FF, "filter");
FRAMES_REGISTER(TOperation_FF, "filter");
FRAMES_REGISTER(TPalmStatus_FF, "filter");
FRAMES_REGISTER(TPlace_FF, "filter");
FRAMES_REGISTER(TPlan_FF, "filter");
FRAMES_REGISTER(TPostStatus_FF, "filter");
FRAMES_REGISTER(TProduct_FF, "filter");
FRAMES_REGISTER(TRefAdd_FF, "filter");
FRAMES_REGISTER(TReklInfo_FF, "filter");
FRAMES_REGISTER(TSection_FF, "filter");
FRAMES_REGISTER(TSupplier_FF, "filter");
FRAMES_REGISTER(TTerritory_FF, "filter");
FRAMES_REGISTER(TTradeMark_FF, "filter");
FRAMES_REGISTER(TUser_FF, "filter");
FRAMES_REGISTER(TVidProd_FF, "filter");
FRAMES_REGISTER(TXYZ_FF, "filter");

} // namespace frames
