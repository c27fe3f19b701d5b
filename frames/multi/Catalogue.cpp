#include "frames/multi/Catalogue.h"
#include "frames/core/Registry.h"

namespace frames {

FRAMES_REGISTER(TMultiCountry_LF, "multi");
FRAMES_REGISTER(TMultiCardType_LF, "multi");
FRAMES_REGISTER(TMultiMesuriment_LF, "multi");
FRAMES_REGISTER(TMultiTradeMark_LF, "multi");
FRAMES_REGISTER(TMultiManufacturer_LF, "multi");
FRAMES_REGISTER(TMultiPlace_LF, "multi");
FRAMES_REGISTER(TMultiSection_LF, "multi");
FRAMES_REGISTER(TMultiCategory_LF, "multi");
FRAMES_REGISTER(TMultiGroupPlaces_LF, "multi");
FRAMES_REGISTER(TMultiCardPermis_LF, "multi");
FRAMES_REGISTER(TMultiDocTypeFilial_LF, "multi");
FRAMES_REGISTER(TMultiDocType_LF, "multi");
FRAMES_REGISTER(TMultiAddClassif_LF, "multi");
FRAMES_REGISTER(TMultiOperation_LF, "multi");
FRAMES_REGISTER(TMultiABC_LF, "multi");
FRAMES_REGISTER(TMultiXYZ_LF, "multi");
FRAMES_REGISTER(TMultiDiscCliCategor_LF, "multi");
FRAMES_REGISTER(TMultiExtCardParam_LF, "multi");
FRAMES_REGISTER(TMultiCustomer_LF, "multi");
FRAMES_REGISTER(TMultiCardGender_LF, "multi");
FRAMES_REGISTER(TMultiRefAdd_LF, "multi");
FRAMES_REGISTER(TMultiActKind_LF, "multi");
FRAMES_REGISTER(TMultiPostStatus_LF, "multi");
FRAMES_REGISTER(TMultiUser_LF, "multi");
FRAMES_REGISTER(TMultiGroup_LF, "multi");
FRAMES_REGISTER(TMultiVidProd_LF, "multi");
FRAMES_REGISTER(TMultiCity_LF, "multi");
FRAMES_REGISTER(TMultiFirmState_LF, "multi");
FRAMES_REGISTER(TMultiFirmPriority_LF, "multi");
FRAMES_REGISTER(TMultiReklInfo_LF, "multi");
FRAMES_REGISTER(TMultiFirmCharacter_LF, "multi");
FRAMES_REGISTER(TMultiPalmStatus_LF, "multi");
FRAMES_REGISTER(TMultiManagerCRM_LF, "multi");
FRAMES_REGISTER(TMultiEventPriority_LF, "multi");
FRAMES_REGISTER(TMultiEventType_LF, "multi");
FRAMES_REGISTER(TMultiFirm_LF, "multi");
FRAMES_REGISTER(TMultiEventCharacter_LF, "multi");
FRAMES_REGISTER(TMultiProduct_LF, "multi");
FRAMES_REGISTER(TMultiPlan_LF, "multi");
FRAMES_REGISTER(TMultiBusinessSphere_LF, "multi");
FRAMES_REGISTER(TMultiTerritory_LF, "multi");
FRAMES_REGISTER(TMultiCFO_LF, "multi");
FRAMES_REGISTER(TMultiCFU_LF, "multi");

} // namespace frames
