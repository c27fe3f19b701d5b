#pragma once
#include "platform/widgets/DateEdit.h"

namespace frames::ui {

// A date edit for a date with its time of day: plain (unmasked) input "dd.MM.yyyy HH:mm", a
// calendar with ISO week numbers and a time field, and the buttons clear, now and today.
class DateTimeEdit : public DateEdit {
    Q_OBJECT
public:
    explicit DateTimeEdit(QWidget* parent = nullptr);
};

} // namespace frames::ui
