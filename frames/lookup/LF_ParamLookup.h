#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QVariantMap>

namespace frames {

// A lookup whose list depends on parameters of its select: a kind, a document type, a shop, a
// client. The form description gives every parameter a starting value in ListParams: a number,
// or the name of a run constant ("CUR_SHOPINDEX", "CUR_FILIALINDEX", "CUR_USER") that is read
// each time the list opens. A host form changes a value with SetListParam (or the frame's named
// setter); an open list is read again at once.
//
// Parameters that the statement in force does not name are left alone, so the same values serve
// the list and the one-row select of a viewed record. With ParamsToForm the values also go to
// the reference form as named parameters of RunParams.Params (the form lists the same subset).
class TParamLookup_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(QVariantMap ListParams READ ListParams WRITE SetListParams)
    Q_PROPERTY(bool ParamsToForm MEMBER ParamsToForm)
public:
    using TAbs_LF::TAbs_LF;

    QVariantMap ListParams() const { return listParams_; }
    void SetListParams(const QVariantMap& params);
    // The value a parameter gets when the list opens (a run constant resolved); invalid when
    // the frame has no such parameter.
    QVariant ListParam(const QString& name) const;
    // Stores the value and reads an open list again. A free-standing key that the new list does
    // not hold is cleared; a bound record keeps its value.
    void SetListParam(const QString& name, const QVariant& value);

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    void lcSelectDlgClick(QObject* sender) override;

    bool ParamsToForm = false;

protected:
    // Reads the list again after a parameter changed.
    void reopenList();

private:
    QVariantMap listParams_; // upper-case name -> number or run constant name
};

// Catalogue frames whose list depends on one parameter. The named setters are what host forms
// call; the parameter names and starting values are in the descriptions.
// clang-format off

class TCashNumber_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetShopIndex(int shop) { SetListParam("SHOPINDEX", shop); }
};

class TClientBank_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetClientIndex(int client) { SetListParam("CLIENT_INDEX", client); }
};

class TDocKind_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    // Which licensed modules' document kinds the list offers.
    void SetModules(bool payModule, bool order, bool production, bool correctGoodMove);
};

class TDocPrintForm_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetDocType(int docType) { SetListParam("DOCTYPE", docType); }
};

class TDocTypeLinkKind_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetBaseDocKind(int docKind) { SetListParam("BASEDOCKIND", docKind); }
};

class TDocType_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetDocKind(int docKind) { SetListParam("DOCKIND", docKind); }
};

class TExtDocType_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetDocKind(int docKind) { SetListParam("DOCKIND", docKind); }
};

class TFilial_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetShopIndex(int shop) { SetListParam("SHOPINDEX", shop); }
};

class TFilial_SuperFilial_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetSuperFilial(int group) { SetListParam("SUPERFILIAL", group); }
};

class TFirmStaff_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetFirm(int firm) { SetListParam("FIRM", firm); }
};

class THRCFilialDepartment_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetHRCFilial(int restaurant) { SetListParam("HRC_FILIAL", restaurant); }
};

class TMercProduct_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetProductType(int productType) { SetListParam("PRODUCTTYPE", productType); }
};

class TOperation_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetDocType(int docType) { SetListParam("DOCTYPE", docType); }
};

class TPlace_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetShopIndex(int shop) { SetListParam("SHOPINDEX", shop); }
};

class TRzScale_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    // -1: any kind of goods / any country.
    void SetTovar(int tovar) { SetListParam("VTOVAR", tovar); }
    void SetCountry(int country) { SetListParam("VCOUNTRY", country); }
};

// Group lookups: which kind of group the list shows.
class TSuperCash_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetKind(int kind) { SetListParam("KIND", kind); }
};

class TSuperFilial_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetKind(int kind) { SetListParam("KIND", kind); }
};

class TSuperPlace_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetKind(int kind) { SetListParam("KIND", kind); }
};

// clang-format on

} // namespace frames
