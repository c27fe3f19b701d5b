#pragma once
#include "frames/lookup/LF_ParamLookup.h"

namespace frames {

// Types of storage locations: racks (kind 1), shelves (2), cells (3) and pallets (4). The kind
// chooses the caption and the reference form each time the list opens; another kind keeps both
// as they were.
class TStoreType_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;

    int Kind() const { return ListParam("KIND").toInt(); }
    void SetKind(int kind) { SetListParam("KIND", kind); }

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
};

} // namespace frames
