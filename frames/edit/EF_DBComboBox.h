#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBTextEdits.h"

namespace frames {

// A data-bound choice: the combo writes the chosen item's text into the field DBComboBox.DataField
// of the record it is bound to (on the host's edit dialog over a list form); unbound it keeps
// its own choice.
class TDBComboBox_Frame : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TDBComboBox_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    void Clear() override;

    ui::DBComboBox* DBComboBox;
};

} // namespace frames
