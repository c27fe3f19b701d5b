#pragma once
#include "frames/edit/EF_DBEdit.h"

namespace frames {

// The article code of a goods card: capitals, no blanks (set by its form).
class TArticul_EF : public TDBEdit_Frame {
    Q_OBJECT
public:
    using TDBEdit_Frame::TDBEdit_Frame;
};

} // namespace frames
