#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DateTimeEdit.h"

namespace frames {

// A date with its time of day ("Дата") bound, on the host's edit dialog of a list form, to the
// list form's current record. The calendar shows week numbers and offers clear, now and today.
class TDBDateTimeEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TDBDateTimeEdit_Frame(QWidget* parent = nullptr);

    void Init() override;
    // Empty when the host says so, or when the value is "no date" or day 0 at midnight.
    bool IsEmpty() override;
    void SetReadOnly(bool value) override;

    QString DataField() const { return DBDateTimeEdit->dataField(); }
    void SetDataField(const QString& f) { DBDateTimeEdit->setDataField(f); }

    ui::DateTimeEdit* DBDateTimeEdit;
};

} // namespace frames
