#pragma once
#include "frames/edit/EF_CheckBoxEdit.h"

namespace frames {

// The unbound check box: TCheckBoxEdit_Frame with Bound cleared by its form.
class TCheckBoxEdt_Frame : public TCheckBoxEdit_Frame {
    Q_OBJECT
public:
    using TCheckBoxEdit_Frame::TCheckBoxEdit_Frame;
};

} // namespace frames
