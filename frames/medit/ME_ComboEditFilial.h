#pragma once
#include "frames/medit/ME_ComboEdit.h"

namespace frames {

// A branch: as TComboEdit_ME, and the frame's Tag tells the host whether a new value is chosen:
// 0 when the new list shows a branch, NoValueTag (666) when it shows none.
class TComboEditFilial_ME : public TComboEdit_ME {
    Q_OBJECT
    Q_PROPERTY(int Tag READ Tag WRITE SetTag)
public:
    using TComboEdit_ME::TComboEdit_ME;
    static constexpr int NoValueTag = 666;

    void AfterConstruction() override;
    void lfNewValuelcSelectChange(QObject* sender) override;
    void chbNewNullClick(QObject* sender) override;

    int Tag() const { return tag_; }
    void SetTag(int t) { tag_ = t; }

private:
    void updateTag();
    int tag_ = 0;
};

} // namespace frames
