#pragma once
#include "frames/edit/EF_MultiEdit.h"
#include "platform/widgets/HistoryCombo.h"

namespace frames {

// A combo box over the list of chosen values: Enter moves the combo's text into the list and
// into the combo's history. Layout: "ListBox" (the values) and "ComboBox" (the history).
class TMultiEditComboBox_EF : public TValueList_Frame {
    Q_OBJECT
public:
    explicit TMultiEditComboBox_EF(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void Clear() override;

    // Key handler of the combo; key set to 0 when the frame took the key.
    virtual void ComboBoxKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);

    ui::HistoryCombo* ComboBox;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace frames
