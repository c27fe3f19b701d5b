#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBEdit.h"

namespace frames {

// A check box. With Bound set (the default) it edits the field CheckBox.DataField of the list
// form's current record on the host's edit dialog; the stored values are CheckBox.ValueChecked
// and ValueUnchecked. Otherwise it keeps its own state. The caption is the check box's text.
class TCheckBoxEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(bool Bound MEMBER Bound)
public:
    explicit TCheckBoxEdit_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    // Bound to a record whose field is null, the frame holds no value.
    bool IsEmpty() override;
    // Unticks the check box (bound: stores the unchecked value).
    void Clear() override;

    bool Checked() const { return CheckBox->isChecked(); }
    // 1 when ticked, 0 otherwise.
    int GetValue() const { return CheckBox->isChecked() ? 1 : 0; }

    ui::DBCheckBox* CheckBox;
    bool Bound = true;
};

} // namespace frames
