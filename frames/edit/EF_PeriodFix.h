#pragma once
#include "frames/edit/EF_PeriodExt.h"

namespace frames {

// A period whose length the host's configuration caps: the maximum is "MaxWorkPeriodLenght"
// (or, when that is not set, the working period "WorkPeriodLenght"). A new frame shows the
// working period; a date changed by hand that makes the period too long is brought back to the
// maximum with the warning, a named period silently.
class TPeriodFix_EF : public TPeriodExt_EF {
    Q_OBJECT
public:
    explicit TPeriodFix_EF(QWidget* parent = nullptr);

    void Init() override;
    void cbPeriodChange(QObject* sender) override;

protected:
    virtual QString MaxPeriodKey() const { return QStringLiteral("MaxWorkPeriodLenght"); }
    void DateEdited(QObject* sender) override;
    void ApplyStoredIndex() override;
};

} // namespace frames
