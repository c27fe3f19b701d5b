#include "frames/edit/EF_Month.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QLayout>

namespace frames {

TNewMonth_EF::TNewMonth_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(160, 42);
    DateTimePicker = new ui::MonthEdit(body());
    DateTimePicker->setObjectName(QStringLiteral("DateTimePicker"));
    DateTimePicker->setFormat(QStringLiteral("MMMM yyyy"));
    DateTimePicker->setDate(host()->Today());
    DateTimePicker->setMinimumWidth(130);
    body()->layout()->addWidget(DateTimePicker);
    lbSelect->setBuddy(DateTimePicker);
    DateTimePicker->OnChange = [this](QObject* s) { guard([&] { DateTimePickerChange(s); }); };
    remember();
}

void TNewMonth_EF::remember() {
    month_ = DateTimePicker->month();
    year_ = DateTimePicker->date().year();
}

void TNewMonth_EF::Init() {
    TAbsEditFrame::Init();
    remember();
}

void TNewMonth_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    DateTimePicker->setReadOnly(value);
}

bool TNewMonth_EF::IsEmpty() {
    return TAbsEditFrame::IsEmpty();
}

void TNewMonth_EF::Clear() {
    SetDate(host()->Today());
}

void TNewMonth_EF::SetDate(const QDate& d) {
    DateTimePicker->setDate(d);
    remember();
}

void TNewMonth_EF::DateTimePickerChange(QObject*) {
    const QDate d = DateTimePicker->date();
    // Only a step of the month is carried; a month typed with its year is taken as typed.
    if (DateTimePicker->monthStepped() && d.year() == year_) {
        if (month_ == 12 && d.month() == 1)
            DateTimePicker->setDate(d.addYears(1));
        else if (month_ == 1 && d.month() == 12)
            DateTimePicker->setDate(d.addYears(-1));
    }
    remember();
}

FRAMES_REGISTER(TNewMonth_EF, "edit");

} // namespace frames
