#pragma once
#include "frames/lists/LCBF_Abs.h"

namespace frames {

// Permission patterns as a check list, kept in SEL_PERMIS (key column ID_PERMIS).
class TPermissionPattern_LCBF : public TAbs_LCBF {
    Q_OBJECT
public:
    explicit TPermissionPattern_LCBF(QWidget* parent = nullptr);
};

} // namespace frames
