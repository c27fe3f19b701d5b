#pragma once
#include "frames/edit/EF_CheckBoxEdit.h"

namespace frames {

// The integer-valued check box: stores 1 and 0 (set by its form).
class TIntCheckBoxEdit_Frame : public TCheckBoxEdit_Frame {
    Q_OBJECT
public:
    using TCheckBoxEdit_Frame::TCheckBoxEdit_Frame;
};

} // namespace frames
