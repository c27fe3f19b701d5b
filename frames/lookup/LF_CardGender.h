#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// The gender of a card holder. The system row -1 ("not given") counts as no value.
class TCardGender_LF : public TAbs_LF {
    Q_OBJECT
public:
    using TAbs_LF::TAbs_LF;
    bool IsEmpty() override;
};

} // namespace frames
