#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// A unit of measurement (packs are not units). Weight units are offered unless SetWeight(false)
// says that the goods are counted by the piece.
class TMeasurement_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(bool Weight READ Weight WRITE SetWeight)
public:
    explicit TMeasurement_LF(QWidget* parent = nullptr);

    bool Weight() const { return weight_; }
    // Whether weight units are offered; the list is read again when it is open.
    void SetWeight(bool weight);

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    // Opens the units form (told whether weight units may be chosen); a unit that the list does
    // not offer is refused with a warning and the previous unit is kept.
    void lcSelectDlgClick(QObject* sender) override;

private:
    bool weight_ = true;
};

} // namespace frames
