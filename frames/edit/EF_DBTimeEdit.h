#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/TimeEdit.h"

namespace frames {

// A time of day ("Время", hours and minutes) bound, on the host's edit dialog of a list form, to
// the list form's current record.
class TDBTimeEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ DataField WRITE SetDataField)
public:
    explicit TDBTimeEdit_Frame(QWidget* parent = nullptr);

    void Init() override;
    bool IsEmpty() override;
    void SetReadOnly(bool value) override;

    QString DataField() const { return DBTimeEdit->dataField(); }
    void SetDataField(const QString& f) { DBTimeEdit->setDataField(f); }

    ui::TimeEdit* DBTimeEdit;
};

} // namespace frames
