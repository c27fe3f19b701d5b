#pragma once
#include "frames/lookup/LF_ParamLookup.h"

namespace frames {

// The kinds of additional references.
class TRefAddKind_LF : public TAbs_LF {
    Q_OBJECT
public:
    using TAbs_LF::TAbs_LF;
    void Clear() override { lcSelect->clear(); }
};

// A value of one additional reference (its kind set by the host form, which also gives the
// caption). The reference form opens on the same kind.
class TRefAdd_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;
    void SetKind(int kind) { SetListParam("KIND", kind); }
    void Clear() override { lcSelect->clear(); }
};

// Additional references of a company and of a company's staff member.
class TFirmInfoRef_LF : public TRefAdd_LF {
    Q_OBJECT
public:
    using TRefAdd_LF::TRefAdd_LF;
};

class TFirmStaffInfoRef_LF : public TRefAdd_LF {
    Q_OBJECT
public:
    using TRefAdd_LF::TRefAdd_LF;
};

} // namespace frames
