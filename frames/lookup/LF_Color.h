#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QIcon>

namespace frames {

// A colour of the colour reference: each row shows a swatch of its colour beside its name.
class TColor_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TColor_LF(QWidget* parent = nullptr);

    // The swatch of a list row (the lookup dataset stands on that row); none for the empty entry
    // and for a colour without a value.
    virtual QIcon lcSelectGetImage(QObject* sender, int row);
};

} // namespace frames
