#include "frames/lookup/LF_EventPriority.h"
#include "frames/core/Registry.h"
#include <QComboBox>
#include <QPainter>

namespace frames {

TEventPriority_LF::TEventPriority_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->comboBox()->setIconSize(QSize(16, 16));
    lcSelect->OnGetImage = [this](QObject* sender, int row) { return lcSelectGetImage(sender, row); };
}

QColor TEventPriority_LF::PriorityColor(int level) {
    switch (level) {
    case 0:
        return QColor(0x46, 0x82, 0xB4); // low: steel blue
    case 1:
        return QColor(0x2E, 0x8B, 0x57); // normal: green
    case 2:
        return QColor(0xFF, 0x8C, 0x00); // high: orange
    default:
        return level >= 3 ? QColor(0xDC, 0x14, 0x3C) /* urgent: red */ : QColor(0xA9, 0xA9, 0xA9);
    }
}

QPixmap TEventPriority_LF::PriorityImage(int level) {
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(PriorityColor(level));
    p.drawEllipse(QRectF(0.5, 0.5, 15, 15));
    // White bars of growing height along the bottom, one per level.
    p.setRenderHint(QPainter::Antialiasing, false);
    const int bars = qBound(0, level + 1, 4);
    for (int i = 0; i < bars; ++i) {
        const int h = 2 + 2 * i;
        p.fillRect(QRect(4 + 2 * i, 11 - h, 1, h), Qt::white);
    }
    return pm;
}

QIcon TEventPriority_LF::lcSelectGetImage(QObject*, int row) {
    if (row < 0) return {};
    const db::Field* id = pFIBDataSet1->findField("ID");
    if (!id || id->isNull()) return {};
    return QIcon(PriorityImage(id->asInteger()));
}

FRAMES_REGISTER(TEventPriority_LF, "lookup");

} // namespace frames
