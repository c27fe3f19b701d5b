#include "platform/widgets/ColorSwatch.h"
#include <QPainter>

namespace frames::ui {

QColor colorFromBgr(qint64 value) {
    const auto v = quint32(value) & 0x00FFFFFFu;
    return QColor(int(v & 0xFF), int((v >> 8) & 0xFF), int((v >> 16) & 0xFF));
}

qint64 bgrFromColor(const QColor& color) {
    return qint64(color.red()) | (qint64(color.green()) << 8) | (qint64(color.blue()) << 16);
}

QPixmap colorSwatch(const QColor& color, QSize size) {
    size = size.expandedTo(QSize(5, 5));
    QPixmap pm(size);
    pm.fill(QColor(0x80, 0x80, 0x80));
    QPainter p(&pm);
    p.fillRect(QRect(1, 1, size.width() - 2, size.height() - 2), Qt::white);
    p.fillRect(QRect(2, 2, size.width() - 4, size.height() - 4), color);
    return pm;
}

} // namespace frames::ui
