#pragma once
#include "frames/edit/EF_DBEdit.h"

namespace frames {

// The document index: capitals, digits and "-" / "/" (set by its form).
class TDocIndex_EF : public TDBEdit_Frame {
    Q_OBJECT
public:
    using TDBEdit_Frame::TDBEdit_Frame;
};

} // namespace frames
