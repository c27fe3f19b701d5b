#pragma once
#include "frames/medit/ME_ComboEdit.h"

namespace frames {

// A value of an additional reference of one kind (key REFADD_KIND, an integer): both lists get
// the parameter KIND, and the update gets SESSION and KIND (no fieldname).
class TRefAdd_ComboEdit_ME : public TComboEdit_ME {
    Q_OBJECT
public:
    using TComboEdit_ME::TComboEdit_ME;

protected:
    void PrepareList(db::DataSet* dataSet) override;
    void SendNameAndKind() override;
    // REFADD_KIND as an integer; an error for anything else.
    int Kind() const;
};

} // namespace frames
