#pragma once
#include "frames/edit/EF_EditComboBox.h"
#include "frames/medit/ME_Value.h"

namespace frames {

// The new and the old value as typed text, in editable combo boxes that remember what was sent
// (layout items "efNewValue" and "efOldValue"). A text longer than the target columns (255
// characters) is cut as it is typed or pasted.
class TEdit_ME : public TTwoValue_ME {
    Q_OBJECT
public:
    explicit TEdit_ME(QWidget* parent = nullptr);
    static constexpr int MaxLength = 255;

    void pfUpdateBeforeExecute(QObject* sender) override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;

    virtual void efNewValueComboBoxChange(QObject* sender);
    virtual void efOldValueComboBoxChange(QObject* sender);

    TEditComboBox_EF* efNewValue;
    TEditComboBox_EF* efOldValue;

protected:
    QString NewValueText() override { return efNewValue->Text(); }
    QString OldValueText() override { return efOldValue->Text(); }
    void ClearNewValue() override { efNewValue->Clear(); }
    void ClearOldValue() override { efOldValue->Clear(); }
};

} // namespace frames
