#pragma once
#include "frames/edit/EF_Memo.h"

namespace frames {

// The data-bound memo: TMemo_Frame with Bound set by its form.
class TMemoEdit_Frame : public TMemo_Frame {
    Q_OBJECT
public:
    using TMemo_Frame::TMemo_Frame;
};

} // namespace frames
