#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/CalcEdit.h"

namespace frames {

// Helpers shared by the number editor frames.
namespace numedit {
// Largest magnitude a number editor keeps.
inline constexpr double kLimit = 999999999.0;
// True when text is a number of magnitude at most kLimit; value receives it. Never throws.
bool checkSilent(const QString& text, double* value = nullptr);
// The number in text, or an error saying that text is not a number.
double toFloat(const QString& text);
// The value as a 32-bit integer (rounded); an error when it does not fit.
int toInteger(double value);
// Hooks the calculator of an editor: "=" closes it, Escape closes it and is swallowed.
void hookCalculator(ui::CalcEdit* edit);
} // namespace numedit

// A number editor for a record edit dialog: bound to a field of the current record of the list
// form that owns the dialog, shown in the precision the host configures for the field's kind
// (Tag 1 amounts in roubles, 2 amounts in currency, other quantities) and kept inside optional
// bounds. A bound of 0 is no bound; a bound equal to Min_c()/Max_c() is a marker that resets a
// value beyond it to 0.
class TCalcEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(double MinValue READ MinValue WRITE SetMinValue)
    Q_PROPERTY(double MaxValue READ MaxValue WRITE SetMaxValue)
    Q_PROPERTY(QString DisplayFormat READ DisplayFormat WRITE SetDisplayFormat)
public:
    explicit TCalcEdit_Frame(QWidget* parent = nullptr);
    ~TCalcEdit_Frame() override;

    static double Min_c() { return 1e-05; }
    static double Max_c() { return 1e-05; }
    // The display format of an amount by its field's tag, from the host's configuration: 1 roubles,
    // 2 currency, anything else a quantity. A list shows the column in the same format.
    static QString FormatOfTag(int tag);

    // ---- contract
    void SetEnabled(bool value) override;
    void SetFocus() override;
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    // Sets the value to MinValue (a frame with a lower bound clears to that bound).
    void Clear() override;

    // ---- value
    // The value, counting text typed but not yet taken; the last taken value while the text
    // is not a number.
    double GetValue();
    // Writes v (and posts it to the field) when it differs from the editor's value.
    void SetValue(double v);
    double AsFloat() { return GetValue(); }
    void SetAsFloat(double v);
    int AsInteger(); // an error outside the 32-bit range
    void SetAsInteger(int v);
    QString Text() const;
    void SetText(const QString& text);
    QString EditText() const;
    void SetEditText(const QString& text); // an error when text is not a number
    bool GetEmpty() const;                 // null or 0
    bool IsNull() const;                   // the bound field is null
    db::DataSource* DataSource() const;
    void SetDataSource(db::DataSource* ds);

    QString DisplayFormat() const { return displayFormat_; }
    void SetDisplayFormat(const QString& format);
    virtual int DecimalPlaces() const;
    virtual void SetDecimalPlaces(int places); // does nothing here
    double MinValue() const { return minValue_; }
    void SetMinValue(double v);
    double MaxValue() const { return maxValue_; }
    void SetMaxValue(double v);
    bool ReadOnly() const { return readOnly_; }
    bool Enabled() const { return enabled_; }

    void SelectAll();
    // Keeps the value inside the bounds (see the class comment for the markers).
    void CheckMinMax();
    bool CheckSilent(const QString& text) const { return numedit::checkSilent(text); }

    // ---- handlers of DBCalcEdit
    virtual void DBCalcEditPropertiesButtonClick(QObject* sender);
    // On every change of the text: a text the bound field cannot take is put back; an empty
    // text becomes "0" inside the bounds.
    virtual void DBCalcEditPropertiesChange(QObject* sender);
    virtual void DBCalcEditPropertiesEditValueChanged(QObject* sender);
    virtual void DBCalcEditClick(QObject* sender);
    virtual void DBCalcEditExit(QObject* sender);

    ui::DBCalcEdit* DBCalcEdit;

protected:
    bool readOnly_ = false;
    bool enabled_ = true;
    QString displayFormat_;
    double minValue_ = 0;
    double maxValue_ = 0;
};

} // namespace frames
