#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DateEdit.h"
#include <QDate>
#include <functional>

namespace frames {

// What the two single-date frames (TDBDateEdit_Frame, TDateEdit_Frame) share: one date edit,
// the date remembered when the user enters it, and the date-changed event, which DateChange
// fires once per real change of the date (not on every keystroke). The frames wire their
// editor's events to their own handlers, which call the Date* operations here.
class TSingleDate_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TSingleDate_Frame(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    // Empty when the host says so, or when the date is "no date" (-700000) or day 0.
    bool IsEmpty() override;

    // Fires OnDateChanged (sender: the editor) when the editor holds a date other than the one
    // remembered, and remembers it.
    void DateChange();

    ui::DateEdit* Editor() const { return editor_; }
    QString DataField() const { return editor_->dataField(); }
    void SetDataField(const QString& f) { editor_->setDataField(f); }
    // The date against which a change is detected (null while the editor was empty).
    QDate RememberedDate() const { return oldDate_; }
    // Set once the date-changed event has fired.
    bool DateChanged() const { return changed_; }

    std::function<void(QObject* sender)> OnDateChanged;

protected:
    // The editor's events, as the named handlers of the frames pass them on.
    void DateEnter();           // remembers the date, selects the text
    void DateClick();           // DateChange, then tells the owner
    void DateKeyDown(int& key); // Enter: DateChange
    void DateKeyUp(int& key);   // setNull
    void ResetRemembered() { oldDate_ = QDate(); }

    // Creates the editor (named name) in the frame's body.
    void makeEditor(const QString& name);

    ui::DateEdit* editor_ = nullptr;

private:
    QDate oldDate_;
    bool changed_ = false;
};

} // namespace frames
