#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/HistoryCombo.h"
#include <functional>

namespace frames {

// An editable combo box that remembers what was entered (layout item "ComboBox": the history and
// the text). A frame that embeds it handles its events:
//  OnComboBoxKeyPress(sender, key): every typed character; set key to 0 to discard it or to
//    another character to type that one instead;
//  OnComboBoxChange(sender): the user changed the text (typing, or choosing from the history);
//  OnComboBoxExit(sender): the editor lost the focus; an exception thrown here goes to the
//    host's error box.
class TEditComboBox_EF : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TEditComboBox_EF(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override;
    // The current text goes into the history before it is saved.
    void SaveLayout(TConfigItem* node) override;
    bool IsEmpty() override;
    void Clear() override;

    QString Text() const { return ComboBox->currentText(); }

    ui::HistoryCombo* ComboBox;
    std::function<void(QObject* sender, QChar& key)> OnComboBoxKeyPress;
    std::function<void(QObject* sender)> OnComboBoxChange;
    std::function<void(QObject* sender)> OnComboBoxExit;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool replaying_ = false;
};

} // namespace frames
