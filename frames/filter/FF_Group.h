#pragma once
#include "frames/core/SetFilter_EF.h"
#include "frames/edit/EF_EditComboBox.h"

namespace frames {

// The group letter filter: a list of group letters, "A" to "Z", separated by commas ("A, C").
// Typing admits only the letters (lower-case ones become capitals), the comma, the hyphen, the
// full stop and the editing keys. Leaving the combo with a text that is not such a list puts the
// focus back and tells the user "Группа задана не верна".
class TGroup_FF : public TSetFilter_EF {
    Q_OBJECT
public:
    explicit TGroup_FF(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    // The base's "cbSet.Checked" and the combo's text and history under "EditComboBox_EF".
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    // Empties the text and switches the filter off.
    void Clear() override;
    // Off, or no letters given.
    bool IsEmpty() override;

    // ---- item interface: the letters given, in order
    Q_INVOKABLE int ItemsCount() override;
    Q_INVOKABLE QString ItemsItem(int i) override;

    // The trimmed text is empty, or letters A..Z and commas alternating, starting and ending with
    // a letter; blanks and control characters between them are skipped.
    bool IsCorrect() override;
    // Whether a text is a correct list of group letters (as IsCorrect for the combo's text).
    static bool IsCorrectText(const QString& text);
    // fieldName " in (" letters ")" with each letter quoted and everything else kept as typed;
    // "" when off, empty or not correct.
    QString SQL(const QString& fieldName) override;

    // ---- handlers of the combo's events
    virtual void EditComboBox_EFComboBoxKeyPress(QObject* sender, QChar& key);
    virtual void EditComboBox_EFComboBoxChange(QObject* sender);
    // A wrong text: the focus goes back into the combo and the host's error box says so.
    virtual void EditComboBox_EFComboBoxExit(QObject* sender);

    // How many times leaving the combo was refused for a wrong text.
    int RefusedExits() const { return refusedExits_; }

    TEditComboBox_EF* EditComboBox_EF;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QStringList letters() const;

    int refusedExits_ = 0;
    bool refusing_ = false;     // the error box of a refused exit is up
    bool leavingField_ = false; // the focus goes to another control of the form
};

} // namespace frames
