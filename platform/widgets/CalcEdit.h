#pragma once
#include "platform/widgets/FieldLink.h"
#include <QFrame>
#include <QVariant>
#include <QWidget>
#include <functional>

class QLabel;
class QLineEdit;
class QToolButton;

namespace frames::ui {

// ---- number text

// Numbers are shown the Russian way: a comma before the decimals and a no-break space between
// thousands ("1 234,50"). Reading accepts a comma or a point and ignores spaces, so any text the
// edit shows reads back as its value.
inline constexpr QChar kDecimalSeparator = u',';
inline constexpr QChar kGroupSeparator = QChar(0x00A0);

// Text to number: true when the whole text is one finite number ("-1 234,5", "1.5", "2e3").
bool strToFloat(const QString& text, double& value);
// Number to text in the machine form used in SQL and logs: point as decimal separator, up to 15
// significant digits, never an exponent ("1234.5", "-0.0001", "1000000000").
QString floatToStr(double value);
// Number to the plain text an edit holds while it is being edited: like floatToStr with the
// comma, rounded to precision significant digits (0: 15).
QString editTextOf(double value, int precision = 0);
// Number by a display format: sections "positive;negative;zero", '0' a forced digit, '#' an
// optional one, '.' the decimal point, ',' anywhere before it groups thousands, text in quotes
// and other characters kept as they stand (",0.00" -> "1 234,50", "0.0000" -> "1,5000").
// An empty format shows editTextOf(value).
QString formatFloat(const QString& format, double value);

// ---- calculator

enum class CalcButton {
    Digit0,
    Digit1,
    Digit2,
    Digit3,
    Digit4,
    Digit5,
    Digit6,
    Digit7,
    Digit8,
    Digit9,
    Decimal,
    Sign,
    Add,
    Subtract,
    Multiply,
    Divide,
    Equals,
    Clear,
    Back
};

// The calculator that CalcEdit drops down: a display and buttons for digits, the decimal comma,
// the sign, + - * /, =, C (clear) and backspace; the same keys work from the keyboard (Enter is
// "=", Delete is C). "=" ends the calculation and hands the result to the edit. Escape closes the
// calculator and goes no further, so a dialog under it stays open.
class CalcPopup : public QFrame {
    Q_OBJECT
public:
    explicit CalcPopup(QWidget* parent = nullptr);

    // Starts a new calculation with value on the display.
    void start(double value);
    void press(CalcButton b);
    QString displayText() const { return entry_; }
    bool hasError() const { return error_; }
    int precision() const { return precision_; }
    void setPrecision(int p) { precision_ = p > 0 ? p : 10; }
    QToolButton* buttonOf(CalcButton b) const;

    // A button was pressed (after the calculator handled it).
    std::function<void(CalcButton)> OnButtonClick;
    // A key reached the calculator; setting key to 0 swallows it.
    std::function<void(int& key)> OnKeyPress;
    // "=" produced a result.
    std::function<void(double)> OnResult;

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    enum class Op { None, Add, Subtract, Multiply, Divide };
    double entryValue() const;
    void showValue(double v);
    bool apply(); // acc_ op entry -> acc_; false on division by zero

    QLabel* display_;
    QString entry_ = "0";
    double acc_ = 0;
    Op op_ = Op::None;
    bool fresh_ = true, error_ = false;
    int precision_ = 10;
};

// ---- the edit

// A number edit with a button that drops down the calculator. The value is a double or null (an
// empty edit). While the edit has the focus it shows the plain edit text; otherwise the value by
// DisplayFormat. Typed text becomes the value when editing ends (Enter, leaving the edit) or, with
// ImmediatePost, at every change; text that is not a number is then put back to the value.
// Bounds are the owner's business: the edit keeps any number.
class CalcEdit : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString DisplayFormat READ displayFormat WRITE setDisplayFormat)
    Q_PROPERTY(int Precision READ precision WRITE setPrecision)
    Q_PROPERTY(bool ImmediatePost READ immediatePost WRITE setImmediatePost)
    Q_PROPERTY(bool QuickClose READ quickClose WRITE setQuickClose)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(double Value READ value WRITE setValue)
    Q_PROPERTY(Qt::Alignment Alignment READ alignment WRITE setAlignment)
public:
    explicit CalcEdit(QWidget* parent = nullptr);
    ~CalcEdit() override;

    // The value: a double, or an invalid QVariant for none.
    QVariant editValue() const { return value_; }
    // Sets the value and the text; editValueChanged follows when the value changed.
    void setEditValue(const QVariant& v);
    double value() const { return value_.isValid() ? value_.toDouble() : 0.0; }
    void setValue(double v) { setEditValue(v); }
    bool isNull() const { return !value_.isValid(); }

    // The plain text being edited (what the user typed, or the value's edit text).
    QString editText() const { return text_; }
    // Sets the text as if typed, and takes it as the value when it is a number (empty: null).
    void setEditText(const QString& text);
    // The value shown by DisplayFormat ("" for null).
    QString displayText() const;
    // Puts a pending change back: the text before the last change when it is a number (or
    // empty), else the value's text.
    void revertEdit();
    // Takes the text as the value when it is a number (empty: null), otherwise puts the value's
    // text back; then posts. Called when editing ends.
    void commit();
    // Hands the value on: the data-bound edit writes it to its field; here it does nothing.
    virtual void postEditValue() {}
    bool isModified() const { return modified_; }

    QString displayFormat() const { return displayFormat_; }
    void setDisplayFormat(const QString& f);
    int precision() const { return precision_; }
    void setPrecision(int p);
    bool immediatePost() const { return immediatePost_; }
    void setImmediatePost(bool b) { immediatePost_ = b; }
    // "=" also closes the calculator.
    bool quickClose() const { return quickClose_; }
    void setQuickClose(bool b) { quickClose_ = b; }
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b);
    Qt::Alignment alignment() const;
    void setAlignment(Qt::Alignment a);

    void selectAll();
    // The calculator, started with the current value (not while read-only).
    void dropDown();
    void closeUp();
    bool isDroppedDown() const;

    QLineEdit* lineEdit() const { return edit_; }
    QToolButton* button() const { return button_; }
    CalcPopup* popup() const { return popup_; }

    // Events, one handler each, as owners assign and remove them (sender is this edit).
    std::function<void(QObject*)> OnChange;           // the edit text changed
    std::function<void(QObject*)> OnEditValueChanged; // the value changed through the edit
    std::function<void(QObject*)> OnButtonClick;      // the button, before the calculator opens
    std::function<void(QObject*)> OnClick;            // a mouse click in the text
    std::function<void(QObject*)> OnExit;             // the edit lost the focus
    std::function<void(QObject*, CalcButton)> OnCalcButtonClick;
    std::function<void(QObject*, int& key)> OnCalcKeyPress;

signals:
    void textChanged(const QString& text);
    void editValueChanged(const QVariant& value);

protected:
    bool eventFilter(QObject* o, QEvent* e) override;
    // Sets text and value as read from a data field: neither modified nor reported as a change
    // of the value (OnChange still fires when the text changes).
    void loadValue(const QVariant& v);
    // The value or text changed through the edit.
    virtual void valueChangedByEdit();

private:
    void userEdited(const QString& text);
    void changeText(QString text); // by value: callers pass prevText_
    // Makes text the value (an empty text empties it); false, leaving the value, when it is no number.
    bool takeText(const QString& text);
    QString valueText() const; // the value as edit text, empty when null
    void refreshShown();
    void calcResult(double v);
    void fire(const std::function<void(QObject*)>& handler);

    QLineEdit* edit_;
    QToolButton* button_;
    CalcPopup* popup_ = nullptr;
    QVariant value_;
    QString text_, prevText_;
    QString displayFormat_;
    int precision_ = 10;
    bool immediatePost_ = false, quickClose_ = false, readOnly_ = false;
    bool modified_ = false, showing_ = false;
};

// A CalcEdit bound to a field of a data source's current record. It shows the field and follows
// the record; posting (at the end of editing, at every change with ImmediatePost, or by
// postEditValue) puts the dataset into edit state and writes the value (null when empty).
class DBCalcEdit : public CalcEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
public:
    explicit DBCalcEdit(QWidget* parent = nullptr);

    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed

    void updateFromField();
    void postEditValue() override;

private:
    FieldLink link_{this, [this] { updateFromField(); }};
};

} // namespace frames::ui
