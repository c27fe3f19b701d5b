#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QIcon>

namespace frames {

// The priority of an event: each row shows a priority mark beside its name. The list's key is
// the priority level, from 0 upwards: 0 low, 1 normal, 2 high, 3 and above urgent.
class TEventPriority_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TEventPriority_LF(QWidget* parent = nullptr);

    virtual QIcon lcSelectGetImage(QObject* sender, int row);

    // The mark of a level: a round badge in the level's colour with one bar more than the level
    // (at most four); a level below 0 shows a grey badge without bars.
    static QPixmap PriorityImage(int level);
    static QColor PriorityColor(int level);
};

} // namespace frames
