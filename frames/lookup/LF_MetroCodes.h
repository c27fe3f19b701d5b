#pragma once
#include "frames/lookup/LF_Abs.h"
#include <optional>

namespace frames {

// A unique customer code of a branch: the codes the user may use in the branch (its main code
// first, then the common codes). The branch is the current one until SetFilial names another.
// A free-standing frame without a code takes the branch's first code.
class TMetroCodes_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(int Filial READ Filial WRITE SetFilial)
public:
    explicit TMetroCodes_LF(QWidget* parent = nullptr);

    void Init() override;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;

    // The branch whose codes are listed; the list is read again when it is open. A free-standing
    // frame keeps its code when the branch offers it, otherwise takes the branch's first code.
    void SetFilial(int filial);
    int Filial() const;

private:
    // Free-standing and without a code the list offers: the first code of the list (none when
    // the list is empty); notify calls the combo's change handler when the code changed.
    void takeDefaultCode(bool notify);

    std::optional<int> filial_;
};

} // namespace frames
