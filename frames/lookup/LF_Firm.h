#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// The company lookup of the CRM. Users with the CRM log-in right open the full company form,
// the others the simple one; both run with the company reference number 27.
class TFirm_LF : public TAbs_LF {
    Q_OBJECT
public:
    using TAbs_LF::TAbs_LF;

    void AfterConstruction() override;
    void lcSelectDlgClick(QObject* sender) override;

    static constexpr int FirmReference = 27;
};

} // namespace frames
