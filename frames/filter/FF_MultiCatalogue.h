#pragma once
// Filter boxes over the multi-select lookups: each one is its form description (the group box's
// title and the lookup's class) and a one-line class. Q_OBJECT starts a line of its own so that the
// build's moc scan finds it.
#include "frames/filter/FF_Multi.h"

namespace frames {

// clang-format off

class TABC_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TActKind_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TAddClassif_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TBusinessSphere_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCFO_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCFU_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCardGender_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCardPermis_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCategory_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCity_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TClientList_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TColor_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCountry_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TCustomer_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TDiscCliCategor_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TDocTypeFilial_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TDocType_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TEventPriority_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TEventType_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TFilial_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TFirmPriority_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TFirmState_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TFirm_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TGroupPlaces_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TUserGroup_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TManagerCRM_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TManufacturer_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TMesuriment_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TOperation_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TPalmStatus_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TPlan_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TPostStatus_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TProduct_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TReklInfo_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TSection_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TSupplier_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TTerritory_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TTradeMark_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TUser_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TVidProd_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };
class TXYZ_FF : public TMultiFilter_FF {
    Q_OBJECT public: using TMultiFilter_FF::TMultiFilter_FF; };

// clang-format on

// Filters whose Clear leaves the chosen keys as they are: the host's clear of the panel keeps
// these characteristics and parameters.
class TRefAdd_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    void Clear() override {}
};

class TEventCharacter_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    void Clear() override {}
};

class TExtCardParam_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    void Clear() override {}
};

class TFirmCharacter_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    void Clear() override {}
};

// Card types. Its handlers keep the names they were given after an inline frame once called
// MultiCardType_LF1; they tick cbSet as every other filter's do.
class TCardType_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    virtual void MultiCardType_LF1lcSelectChange(QObject* sender);
    virtual void MultiCardType_LF1mdListAfterPost(db::AbstractDataSet& dataSet);
    virtual void MultiCardType_LFmdListAfterDelete(db::AbstractDataSet& dataSet);
    void lcSelectChange(QObject* sender) override { MultiCardType_LF1lcSelectChange(sender); }
    void mdListAfterPost(db::AbstractDataSet& d) override { MultiCardType_LF1mdListAfterPost(d); }
    void mdListAfterDelete(db::AbstractDataSet& d) override { MultiCardType_LFmdListAfterDelete(d); }
};

// Storage places: the place lookup is of kind 1, which the place form receives as its run
// parameter KIND.
class TPlace_FF : public TMultiFilter_FF {
    Q_OBJECT
public:
    using TMultiFilter_FF::TMultiFilter_FF;
    void AfterConstruction() override;
};

} // namespace frames
