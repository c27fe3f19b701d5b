#pragma once
// Multi-select lookup frames that differ from TMultiAbs_LF only by their form description (caption,
// reference form, classifier type, query template and exclusion clause). Q_OBJECT starts a line of
// its own so that the build's moc scan finds it.
#include "frames/multi/LF_MultiAbs.h"

namespace frames {

// clang-format off

class TMultiCountry_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCardType_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiMesuriment_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiTradeMark_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiManufacturer_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiPlace_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiSection_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCategory_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiGroupPlaces_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCardPermis_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiDocTypeFilial_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiDocType_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiAddClassif_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiOperation_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiABC_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiXYZ_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiDiscCliCategor_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiExtCardParam_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCustomer_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCardGender_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiRefAdd_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiActKind_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiPostStatus_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiUser_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiGroup_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiVidProd_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCity_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiFirmState_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiFirmPriority_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiReklInfo_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiFirmCharacter_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiPalmStatus_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiManagerCRM_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiEventPriority_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiEventType_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiFirm_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiEventCharacter_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiProduct_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiPlan_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiBusinessSphere_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiTerritory_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCFO_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };
class TMultiCFU_LF : public TMultiAbs_LF {
    Q_OBJECT public: using TMultiAbs_LF::TMultiAbs_LF; };

// clang-format on

} // namespace frames
