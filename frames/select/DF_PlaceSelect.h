#pragma once
#include "frames/select/DF_Abs.h"

namespace frames {

// Chooses storage places under the user's current shop (or, with IsFilial, his current branch).
// The kind of selection (SEL_PLACE_KIND) decides which access a place needs to be offered.
class TPlaceSelect_DF : public TAbs_DF {
    Q_OBJECT
    Q_PROPERTY(bool IsFilial READ GetIsFilial WRITE SetIsFilial)
public:
    using TAbs_DF::TAbs_DF;

    void AfterConstruction() override;
    void SetKind(int kind) override;
    void GetMXPanelTexts(QString& text, QString& extraText, QColor& textColor, QColor& extraColor,
                         QString& rightName) override;

    bool GetIsFilial() const { return IsFilial; }
    void SetIsFilial(bool value);

    int AccessGoodMove = 0;
    int UseOrderReglament = 0;
    bool IsFilial = false;
    int PlaceTotal = 0;

protected:
    void trDataSetBeforeOpen(db::AbstractDataSet& dataSet) override;
    void pfClearInvalidBeforeExecute() override;

private:
    int treeRoot() const;
};

} // namespace frames
