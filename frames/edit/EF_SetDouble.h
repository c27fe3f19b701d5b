#pragma once
#include "frames/core/SetFilter_EF.h"
#include "frames/edit/EF_CalcEdt.h"
#include <QLabel>

namespace frames {

// A from-to amount filter of a report form. Its condition on a column is "between" the two
// amounts, or, when the upper amount is below the lower one, outside them; with allowNull a
// range that holds 0 also takes rows where the column is null.
class TSetDouble_EF : public TSetFilter_EF {
    Q_OBJECT
public:
    explicit TSetDouble_EF(QWidget* parent = nullptr);
    ~TSetDouble_EF() override;

    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override; // "FromSumma", "ToSumma", "cbSet.Checked"
    void SaveLayout(TConfigItem* node) override;
    // Both amounts back to their lower bounds, and the filter off.
    void Clear() override;

    QString SQL(const QString& fieldName) override { return SQL(fieldName, false); }
    // "" while the filter is off; otherwise the condition on fieldName.
    QString SQL(const QString& fieldName, bool allowNull);
    // Whether 0 lies in the range the filter describes (false while it is off).
    bool ZeroInRange();

    // Handlers of the two editors.
    virtual void ceSummaEditValueChanged(QObject* sender);
    virtual void ceSummaExit(QObject* sender);

    QLabel* Label1;
    QLabel* Label2;
    TCalcEdt_Frame* ceFromSumma;
    TCalcEdt_Frame* ceToSumma;
};

} // namespace frames
