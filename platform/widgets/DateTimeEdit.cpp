#include "platform/widgets/DateTimeEdit.h"

namespace frames::ui {

DateTimeEdit::DateTimeEdit(QWidget* parent) : DateEdit(parent) {
    setMasked(false);
    setDisplayFormat(QStringLiteral("dd.MM.yyyy HH:mm"));
    setShowTime(true);
    setSaveTime(true);
    setWeekNumbers(true);
    setDateButtons(QStringLiteral("clear;now;today"));
}

} // namespace frames::ui
