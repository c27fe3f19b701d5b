#pragma once
#include "frames/core/ConfigItem.h"
#include <QDate>
#include <QString>

class QSpinBox;

namespace frames {
namespace ui {
class DateEdit;
}

// Date helpers of the frames. Dates in date edits are also known by their day number: day 0 is
// 30 December 1899 and -700000 is "no date"; a frame counts both as empty.
inline constexpr double NullDate = -700000;
QDate DateZero(); // day 0

// Whether a text is a valid date (as a user types it: "15.03.2024", "15.03.24", "2024-03-15").
bool CheckDateSilent(const QString& text);
// The same, telling the user through the host's error box when the text is not a date.
bool CheckDate(const QString& text);

// Keeps a period in order: when both dates are set and the first lies after the last, the edit
// that was not changed follows the changed one (changed == last: the first date becomes the last
// one; otherwise the last date becomes the first one).
void AdjustDates(ui::DateEdit* first, ui::DateEdit* last, ui::DateEdit* changed);

// The key-up helper of date edits: Delete empties the date, and so does Backspace once no digit
// is left in the text. The key is set to 0 when the date was emptied. A read-only edit is left.
void setNull(int& key, ui::DateEdit* edit);
// Shows the edit's value again (a text left half-typed in an edit without focus is dropped).
void setRefreshcx(ui::DateEdit* edit);

// The edit's value under the node: "yyyy-MM-dd" (with "THH:mm:ss" when the edit keeps a time),
// "" for no date.
void SaveLayoutDT(TConfigItem* node, const ui::DateEdit* edit);
// Reads it back: "" (or the day number -700000) empties the edit, another number is taken as a
// day number; a text that is not a date, or a day the database does not take, leaves the edit
// as it is.
void RestoreLayoutDT(TConfigItem* node, ui::DateEdit* edit);

// The condition that a column's date or timestamp lies in the days first to last, either of
// them open when invalid ("" when both are): up to the start of the day after the last one, so
// that any time on the last day counts, and valid up to the last day the database takes.
QString DateRangeSql(const QString& field, const QDate& first, const QDate& last);

// Keeps a spin box's value within its bounds, taking a typed text that is not yet its value.
void CheckMinMax(QSpinBox* edit);

} // namespace frames
