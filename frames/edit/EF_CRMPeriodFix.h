#pragma once
#include "frames/edit/EF_PeriodFix.h"

namespace frames {

// The capped period of the CRM event reports: "CRMEventMaxWorkPeriodLenght" and
// "CRMEventWorkPeriodLenght".
class TCRMPeriodFix_EF : public TPeriodFix_EF {
    Q_OBJECT
public:
    explicit TCRMPeriodFix_EF(QWidget* parent = nullptr) : TPeriodFix_EF(parent) {}

protected:
    QString MaxPeriodKey() const override { return QStringLiteral("CRMEventMaxWorkPeriodLenght"); }
    QString WorkPeriodKey() const override { return QStringLiteral("CRMEventWorkPeriodLenght"); }
};

} // namespace frames
