#pragma once
#include "frames/edit/EF_CalcEdit.h"

namespace frames {

// A free-standing number editor, used inside other frames: the value lives in the editor only,
// and its magnitude never exceeds 999999999 (larger numbers are cut to that limit). Bounds work
// as in TCalcEdit_Frame, with the marker 0.0001.
class TCalcEdt_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(double MinValue READ MinValue WRITE SetMinValue)
    Q_PROPERTY(double MaxValue READ MaxValue WRITE SetMaxValue)
    Q_PROPERTY(QString DisplayFormat READ DisplayFormat WRITE SetDisplayFormat)
    Q_PROPERTY(int DecimalPlaces READ DecimalPlaces WRITE SetDecimalPlaces)
public:
    explicit TCalcEdt_Frame(QWidget* parent = nullptr);
    ~TCalcEdt_Frame() override;

    static double Min_c() { return 0.0001; }
    static double Max_c() { return 0.0001; }

    // ---- contract
    void SetEnabled(bool value) override;
    void SetFocus() override;
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    void Clear() override; // the value becomes MinValue

    // ---- value
    double GetValue();
    void SetValue(double v); // when v differs from the editor's value
    double AsFloat() { return GetValue(); }
    void SetAsFloat(double v);
    int AsInteger(); // an error outside the 32-bit range
    void SetAsInteger(int v);
    QString Text() const;
    void SetText(const QString& text);
    QString EditText() const;
    void SetEditText(const QString& text); // an error when text is not a number
    bool GetEmpty() const;                 // null or 0

    QString DisplayFormat() const { return displayFormat_; }
    void SetDisplayFormat(const QString& format);
    int DecimalPlaces() const { return decimalPlaces_; }
    // Always 10 places, whatever is asked: the calculator keeps its full precision.
    void SetDecimalPlaces(int places);
    double MinValue() const { return minValue_; }
    void SetMinValue(double v);
    double MaxValue() const { return maxValue_; }
    void SetMaxValue(double v);
    bool ReadOnly() const { return readOnly_; }
    bool Enabled() const { return enabled_; }

    void SelectAll();
    void CheckMinMax();
    bool CheckSilent(const QString& text) const { return numedit::checkSilent(text); }
    // Cuts the value to the magnitude limit; false when it had to.
    bool CheckRange();
    static bool SignOf(double v) { return v >= 0; }

    // ---- handlers of CalcEdit
    virtual void CalcEditPropertiesButtonClick(QObject* sender);
    virtual void CalcEditPropertiesEditValueChanged(QObject* sender);
    virtual void CalcEditClick(QObject* sender);
    virtual void CalcEditExit(QObject* sender);

    ui::CalcEdit* CalcEdit;

protected:
    bool readOnly_ = false;
    bool enabled_ = true;
    QString displayFormat_;
    double minValue_ = 0;
    double maxValue_ = 0;
    int decimalPlaces_ = 10;
};

} // namespace frames
