#pragma once
// Lookup frames that differ from TAbs_LF only by their form description (caption, fields, SQL,
// reference form). Q_OBJECT starts a line of its own so that the build's moc scan finds it.
#include "frames/lookup/LF_Abs.h"

namespace frames {

// clang-format off

class TAlgoritm_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TAnalogKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TAttrib_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TBankAccount_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TBank_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCardCategor_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCardKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCardType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCashKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCashPrintGroup_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCfo_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCity_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TClAddChar_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TClientStatus_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TContactType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCountry_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCursType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCustCat_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TCustomer_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TDayOfWeek_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TDiscAlgKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TDiscCliCategor_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TDisc_Type_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TDistrict_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TEducation_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TEventType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TExpTypes_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TExtCardParam_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TFirmPriority_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TFirmState_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TForwarder_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TGrXYZ_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TGroup_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class THEH_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class THRCFilial_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class THRMDepartment_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class THRMJob_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TImportType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TManagerCRM_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TManufacturer_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMarginAlg_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMatSimple_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMatType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMaterial_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercBusiness_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercCountry_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercEnterprise_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercPackage_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercProductType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TMercSubProduct_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TNLoss_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TNumberKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOccupation_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOpRetGroup_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOperKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOperRef_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOperType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOrderKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TOwnKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPack_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPayKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPermisPattern_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPermission_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPriceGroupKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPriceGroup_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPriceKindLinkKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TPriceKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TProduct_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TProject_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TRegion_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TReklInfo_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TRoute_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TScaleType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TSection_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TSfera_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TShipment_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TShopEquipmentKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TShopEquipmentType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TShopIndex_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TStoreDocKind_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TStreet_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TTariff_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TTaskForm_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TTaxHead_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TTovar_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TTrademark_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TUser_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TVehicle_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TVidProd_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TWebShopType_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };
class TWebShops_LF : public TAbs_LF {
    Q_OBJECT public: using TAbs_LF::TAbs_LF; };

// clang-format on

} // namespace frames
