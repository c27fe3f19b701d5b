#pragma once
#include <QColor>
#include <QPixmap>
#include <QSize>

namespace frames::ui {

// Colours as the reference tables store them: one integer 0x00BBGGRR (red in the low byte, blue
// in the high byte of the three).
QColor colorFromBgr(qint64 value);
qint64 bgrFromColor(const QColor& color);

// A colour swatch as list rows show it: a two-pixel frame (a dark outer ring and a white inner
// ring) around a field of the colour. The default size suits a list row.
QPixmap colorSwatch(const QColor& color, QSize size = QSize(30, 12));

} // namespace frames::ui
