#pragma once
#include "frames/edit/EF_DBEdit.h"

namespace frames {

// The payment kind code: digits only (set by its form).
class TPaymentKind_EF : public TDBEdit_Frame {
    Q_OBJECT
public:
    using TDBEdit_Frame::TDBEdit_Frame;
};

} // namespace frames
