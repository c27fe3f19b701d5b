#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// The additional classifier (a classifier type) of a record. "No additional classifier" is the
// type 0, which the list offers: emptying the combo stores 0, never null.
class TAddClassif_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TAddClassif_LF(QWidget* parent = nullptr);

    virtual void lcSelectChange(QObject* sender);
};

} // namespace frames
