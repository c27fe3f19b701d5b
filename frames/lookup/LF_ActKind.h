#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// The activity kind lookup. The list holds the kinds the user may see plus the kind the bound
// record already has, so a record keeps showing a kind the user has no access to.
class TActKind_LF : public TAbs_LF {
    Q_OBJECT
public:
    using TAbs_LF::TAbs_LF;

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;

    // The ID parameter's value while the record is being inserted (no kind of its own yet).
    static constexpr int InsertingKey = -2;
};

} // namespace frames
