#pragma once
#include "frames/edit/EF_CalcEdt.h"
#include "frames/medit/ME_Value.h"

namespace frames {

// The new and the old value as numbers, at the precision the key PrecKind names ("Rub", "Cur",
// "Int", "Volume"; anything else the quantity precision). The values travel as the text of the
// number with the user's decimal separator; the statement converts them.
class TCalcEdit_ME : public TTwoValue_ME {
    Q_OBJECT
public:
    explicit TCalcEdit_ME(QWidget* parent = nullptr);

    void SetParams(const QString& params) override;

    virtual void cefNewValueCalcEditPropertiesChange(QObject* sender);
    virtual void cefOldValueCalcEditPropertiesChange(QObject* sender);
    virtual void FrameResize(QObject* sender);

    TCalcEdt_Frame* cefNewValue;
    TCalcEdt_Frame* cefOldValue;

protected:
    QString NewValueText() override;
    QString OldValueText() override;
    void ClearNewValue() override;
    void ClearOldValue() override;
    void resizeEvent(QResizeEvent* e) override;
};

// A number as the run-time library's float-to-string gives it, with the user's decimal separator.
QString FloatToStr(double value);

} // namespace frames
