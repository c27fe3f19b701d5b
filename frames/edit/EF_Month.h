#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/MonthEdit.h"

namespace frames {

// A month of a year ("Январь 2011"), stepped with the arrows. The picker's month runs round
// within its year; the frame carries the year: December up gives January of the next year,
// January down December of the year before.
class TNewMonth_EF : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TNewMonth_EF(QWidget* parent = nullptr);

    void Init() override;
    void SetReadOnly(bool value) override;
    // A month is always chosen.
    bool IsEmpty() override;
    // Back to the current month.
    void Clear() override;

    // The date shown and setting it (without the change handler).
    QDate GetDate() const { return DateTimePicker->date(); }
    void SetDate(const QDate& d);

    virtual void DateTimePickerChange(QObject* sender);

    ui::MonthEdit* DateTimePicker;

private:
    void remember();

    int month_ = 0; // the month last shown, 1..12
    int year_ = 0;
};

} // namespace frames
