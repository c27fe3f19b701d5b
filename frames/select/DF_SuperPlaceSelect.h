#pragma once
#include "frames/select/DF_Abs.h"

namespace frames {

// Chooses groups of storage places of one group kind (SpKind) by shop; the node "Торговый дом"
// (-1) stands for every shop.
class TSuperPlaceSelect_DF : public TAbs_DF {
    Q_OBJECT
    Q_PROPERTY(int SpKind READ GetSpKind WRITE SetSpKind)
public:
    using TAbs_DF::TAbs_DF;

    void AfterConstruction() override;
    int GetSpKind() const { return SpKind; }
    void SetSpKind(int kind);

    int SpKind = -1;
};

// Chooses legal-entity counterparties out of the client classifier.
class TClientSelect_DF : public TAbs_DF {
    Q_OBJECT
public:
    using TAbs_DF::TAbs_DF;
    void AfterConstruction() override;
};

// Chooses trade marks out of their classifier.
class TTradeMark_DF : public TAbs_DF {
    Q_OBJECT
public:
    using TAbs_DF::TAbs_DF;
    void AfterConstruction() override;
};

} // namespace frames
