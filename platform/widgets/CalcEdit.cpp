#include "platform/widgets/CalcEdit.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include <QApplication>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QScopedValueRollback>
#include <QScreen>
#include <QToolButton>
#include <cmath>

namespace frames::ui {

// ---- number text

bool strToFloat(const QString& text, double& value) {
    QString s;
    s.reserve(text.size());
    for (QChar c : text) {
        if (c.isSpace() || c == kGroupSeparator || c == QChar(0x202F)) continue;
        s += c == u',' ? u'.' : c;
    }
    if (s.count(u'.') > 1) return false;
    // A separator at either end is a number being typed: "12," is 12, ",5" is 0.5.
    if (s.endsWith(u'.')) s.chop(1);
    if (s.isEmpty() || s == QLatin1String("-") || s == QLatin1String("+")) return false;
    // Only digits, one sign in front, a point and an exponent: no "inf", "nan" or hex.
    for (QChar c : s)
        if (!c.isDigit() && c != u'.' && c != u'-' && c != u'+' && c != u'e' && c != u'E') return false;
    bool ok = false;
    const double v = QLocale::c().toDouble(s, &ok);
    if (!ok || !std::isfinite(v)) return false;
    value = v;
    return true;
}

namespace {

// Fixed-point text with at most `digits` significant digits, trailing zeros dropped.
QString plainText(double value, int digits, QChar point) {
    if (value == 0 || !std::isfinite(value)) return QStringLiteral("0");
    const int magnitude = int(std::floor(std::log10(std::fabs(value))));
    const int decimals = std::clamp(digits - 1 - magnitude, 0, 30);
    // Round to the significant digits first so that binary noise (0.1 + 0.2) does not show.
    const double rounded = QString::number(value, 'g', digits).toDouble();
    QString s = QString::number(rounded, 'f', decimals);
    if (s.contains(u'.')) {
        while (s.endsWith(u'0')) s.chop(1);
        if (s.endsWith(u'.')) s.chop(1);
    }
    if (s == QLatin1String("-0")) s = QStringLiteral("0");
    if (point != u'.') s.replace(u'.', point);
    return s;
}

QString groupThousands(const QString& digits) {
    QString out;
    const int n = int(digits.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) out += kGroupSeparator;
        out += digits[i];
    }
    return out;
}

// One section of a display format, split into the text before the number, the number pattern
// and the text after it.
struct Section {
    QString prefix, suffix;
    int minInt = 0, minDec = 0, maxDec = 0;
    bool grouping = false, hasNumber = false;
};

Section parseSection(const QString& f) {
    Section s;
    bool inNumber = false, afterPoint = false, done = false;
    for (int i = 0; i < f.size(); ++i) {
        const QChar c = f[i];
        if (c == u'\'' || c == u'"') { // quoted text
            const int end = f.indexOf(c, i + 1);
            const QString lit = f.mid(i + 1, end < 0 ? -1 : end - i - 1);
            (s.hasNumber ? s.suffix : s.prefix) += lit;
            if (s.hasNumber) done = true;
            i = end < 0 ? int(f.size()) : end;
            continue;
        }
        const bool numberChar =
            c == u'0' || c == u'#' || (c == u'.' && !afterPoint) || (c == u',' && !afterPoint);
        if (numberChar && !done) {
            inNumber = s.hasNumber = true;
            if (c == u'.')
                afterPoint = true;
            else if (c == u',')
                s.grouping = true;
            else if (afterPoint) {
                ++s.maxDec;
                if (c == u'0') s.minDec = s.maxDec;
            } else if (c == u'0')
                ++s.minInt;
            continue;
        }
        if (inNumber) done = true;
        (s.hasNumber ? s.suffix : s.prefix) += c;
    }
    return s;
}

// Splits on ';' outside quotes.
QStringList sectionsOf(const QString& format) {
    QStringList parts;
    QString cur;
    QChar quote;
    for (QChar c : format) {
        if (!quote.isNull()) {
            if (c == quote) quote = QChar();
        } else if (c == u'\'' || c == u'"') {
            quote = c;
        } else if (c == u';') {
            parts << cur;
            cur.clear();
            continue;
        }
        cur += c;
    }
    parts << cur;
    return parts;
}

QString renderSection(const Section& s, double magnitude) {
    if (!s.hasNumber) return s.prefix + s.suffix;
    QString fixed = QString::number(magnitude, 'f', s.maxDec);
    QString intPart = fixed, decPart;
    if (const int dot = int(fixed.indexOf(u'.')); dot >= 0) {
        intPart = fixed.left(dot);
        decPart = fixed.mid(dot + 1);
    }
    while (decPart.size() > s.minDec && decPart.endsWith(u'0')) decPart.chop(1);
    if (intPart == QLatin1String("0") && s.minInt == 0) intPart.clear();
    while (intPart.size() < s.minInt) intPart.prepend(u'0');
    if (s.grouping) intPart = groupThousands(intPart);
    QString out = intPart;
    if (!decPart.isEmpty()) out += kDecimalSeparator + decPart;
    if (out.isEmpty()) out = QStringLiteral("0");
    return s.prefix + out + s.suffix;
}

} // namespace

QString floatToStr(double value) {
    return plainText(value, 15, u'.');
}

QString editTextOf(double value, int precision) {
    return plainText(value, precision > 0 ? precision : 15, kDecimalSeparator);
}

QString formatFloat(const QString& format, double value) {
    if (format.trimmed().isEmpty()) return editTextOf(value);
    const QStringList parts = sectionsOf(format);
    const Section pos = parseSection(parts[0]);
    // Zero after rounding to the positive section's decimals takes the zero section.
    const double rounded = QString::number(value, 'f', pos.maxDec).toDouble();
    if (rounded == 0 && parts.size() > 2 && !parts[2].isEmpty())
        return renderSection(parseSection(parts[2]), 0);
    if (value < 0 && rounded != 0) {
        if (parts.size() > 1 && !parts[1].isEmpty()) return renderSection(parseSection(parts[1]), -value);
        return u'-' + renderSection(pos, -value);
    }
    return renderSection(pos, std::fabs(value));
}

// ---- calculator

namespace {

struct ButtonDef {
    CalcButton kind;
    const char* text;
    const char* name;
    int row, col;
};

const ButtonDef kButtons[] = {
    {CalcButton::Back, "\u2190", "btnBack", 0, 0}, {CalcButton::Clear, "C", "btnClear", 0, 1},
    {CalcButton::Sign, "\u00B1", "btnSign", 0, 2}, {CalcButton::Divide, "/", "btnDivide", 0, 3},
    {CalcButton::Digit7, "7", "btn7", 1, 0},       {CalcButton::Digit8, "8", "btn8", 1, 1},
    {CalcButton::Digit9, "9", "btn9", 1, 2},       {CalcButton::Multiply, "*", "btnMultiply", 1, 3},
    {CalcButton::Digit4, "4", "btn4", 2, 0},       {CalcButton::Digit5, "5", "btn5", 2, 1},
    {CalcButton::Digit6, "6", "btn6", 2, 2},       {CalcButton::Subtract, "-", "btnSubtract", 2, 3},
    {CalcButton::Digit1, "1", "btn1", 3, 0},       {CalcButton::Digit2, "2", "btn2", 3, 1},
    {CalcButton::Digit3, "3", "btn3", 3, 2},       {CalcButton::Add, "+", "btnAdd", 3, 3},
    {CalcButton::Digit0, "0", "btn0", 4, 0},       {CalcButton::Decimal, ",", "btnDecimal", 4, 1},
    {CalcButton::Equals, "=", "btnEquals", 4, 2},
};

} // namespace

CalcPopup::CalcPopup(QWidget* parent) : QFrame(parent, Qt::Popup) {
    setObjectName("CalcPopup");
    setFrameShape(QFrame::Box);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(3, 3, 3, 3);
    grid->setSpacing(2);
    display_ = new QLabel(entry_, this);
    display_->setObjectName("display");
    display_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    display_->setFrameShape(QFrame::Panel);
    display_->setFrameShadow(QFrame::Sunken);
    display_->setMinimumHeight(22);
    grid->addWidget(display_, 0, 0, 1, 4);
    for (const ButtonDef& d : kButtons) {
        auto* b = new QToolButton(this);
        b->setText(QString::fromUtf8(d.text));
        b->setObjectName(d.name);
        b->setFocusPolicy(Qt::NoFocus);
        b->setMinimumSize(30, 24);
        b->setProperty("calcButton", int(d.kind));
        const bool wide = d.kind == CalcButton::Equals;
        grid->addWidget(b, d.row + 1, d.col, 1, wide ? 2 : 1);
        b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        connect(b, &QToolButton::clicked, this, [this, k = d.kind] { press(k); });
    }
}

QToolButton* CalcPopup::buttonOf(CalcButton b) const {
    for (auto* t : findChildren<QToolButton*>())
        if (t->property("calcButton").toInt() == int(b)) return t;
    return nullptr;
}

void CalcPopup::start(double value) {
    acc_ = 0;
    op_ = Op::None;
    error_ = false;
    fresh_ = true;
    entry_ = editTextOf(value, precision_);
    display_->setText(entry_);
}

double CalcPopup::entryValue() const {
    double v = 0;
    return strToFloat(entry_, v) ? v : 0.0;
}

void CalcPopup::showValue(double v) {
    entry_ = editTextOf(v, precision_);
    display_->setText(entry_);
}

bool CalcPopup::apply() {
    const double x = entryValue();
    switch (op_) {
    case Op::None:
        acc_ = x;
        break;
    case Op::Add:
        acc_ += x;
        break;
    case Op::Subtract:
        acc_ -= x;
        break;
    case Op::Multiply:
        acc_ *= x;
        break;
    case Op::Divide:
        if (x == 0) return false;
        acc_ /= x;
        break;
    }
    return std::isfinite(acc_);
}

void CalcPopup::press(CalcButton b) {
    const int kind = int(b);
    if (error_ && b != CalcButton::Clear) {
        // After an error only C (or a new number) starts again.
        if (kind > int(CalcButton::Digit9)) {
            if (OnButtonClick) OnButtonClick(b);
            return;
        }
        error_ = false;
        op_ = Op::None;
        fresh_ = true;
    }
    if (kind <= int(CalcButton::Digit9)) {
        const QChar d = QChar(u'0' + kind);
        if (fresh_ || entry_ == QLatin1String("0"))
            entry_ = d;
        else if (entry_ == QLatin1String("-0"))
            entry_ = QStringLiteral("-") + d;
        else {
            int digits = 0;
            for (QChar c : entry_) digits += c.isDigit();
            if (digits < precision_) entry_ += d;
        }
        fresh_ = false;
    } else {
        switch (b) {
        case CalcButton::Decimal:
            if (fresh_) entry_ = QStringLiteral("0");
            if (!entry_.contains(kDecimalSeparator)) entry_ += kDecimalSeparator;
            fresh_ = false;
            break;
        case CalcButton::Sign:
            if (entry_.startsWith(u'-'))
                entry_.remove(0, 1);
            else if (entryValue() != 0 || !fresh_)
                entry_.prepend(u'-');
            break;
        case CalcButton::Back:
            if (!fresh_) {
                entry_.chop(1);
                if (entry_.isEmpty() || entry_ == QLatin1String("-")) entry_ = QStringLiteral("0");
            }
            break;
        case CalcButton::Clear:
            acc_ = 0;
            op_ = Op::None;
            error_ = false;
            fresh_ = true;
            entry_ = QStringLiteral("0");
            break;
        case CalcButton::Add:
        case CalcButton::Subtract:
        case CalcButton::Multiply:
        case CalcButton::Divide:
            // A second operator in a row only replaces the first.
            if (!(fresh_ && op_ != Op::None)) {
                if (!apply()) {
                    error_ = true;
                    entry_ = QString::fromUtf8("Ошибка");
                    break;
                }
                showValue(acc_);
            }
            op_ = b == CalcButton::Add        ? Op::Add
                  : b == CalcButton::Subtract ? Op::Subtract
                  : b == CalcButton::Multiply ? Op::Multiply
                                              : Op::Divide;
            fresh_ = true;
            break;
        case CalcButton::Equals: {
            if (op_ != Op::None) {
                if (!apply()) {
                    error_ = true;
                    entry_ = QString::fromUtf8("Ошибка");
                    break;
                }
                showValue(acc_);
                op_ = Op::None;
            }
            fresh_ = true;
            const double result = entryValue();
            display_->setText(entry_);
            if (OnResult) OnResult(result);
            break;
        }
        default:
            break;
        }
    }
    display_->setText(entry_);
    if (OnButtonClick) OnButtonClick(b);
}

void CalcPopup::keyPressEvent(QKeyEvent* e) {
    int key = e->key();
    if (OnKeyPress) OnKeyPress(key);
    if (key == 0) {
        e->accept();
        return;
    }
    const QString t = e->text();
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        press(CalcButton(key - Qt::Key_0));
    else if (t == QLatin1String(",") || t == QLatin1String("."))
        press(CalcButton::Decimal);
    else if (key == Qt::Key_Plus)
        press(CalcButton::Add);
    else if (key == Qt::Key_Minus)
        press(CalcButton::Subtract);
    else if (key == Qt::Key_Asterisk)
        press(CalcButton::Multiply);
    else if (key == Qt::Key_Slash)
        press(CalcButton::Divide);
    else if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Equal)
        press(CalcButton::Equals);
    else if (key == Qt::Key_Backspace)
        press(CalcButton::Back);
    else if (key == Qt::Key_Delete || key == Qt::Key_C)
        press(CalcButton::Clear);
    else if (key == Qt::Key_F9)
        press(CalcButton::Sign);
    else if (key == Qt::Key_Escape)
        close();
    // Whatever reaches the calculator ends here: nothing goes on to the window below.
    e->accept();
}

// ---- the edit

CalcEdit::CalcEdit(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    edit_ = new QLineEdit(this);
    edit_->setObjectName("edit");
    button_ = new QToolButton(this);
    button_->setObjectName("button");
    button_->setArrowType(Qt::DownArrow);
    button_->setFocusPolicy(Qt::NoFocus);
    row->addWidget(edit_, 1);
    row->addWidget(button_);
    setFocusProxy(edit_);
    setFocusPolicy(Qt::StrongFocus);
    edit_->installEventFilter(this);
    connect(edit_, &QLineEdit::textEdited, this, [this](const QString& t) { userEdited(t); });
    connect(button_, &QToolButton::clicked, this, [this] {
        fire(OnButtonClick);
        dropDown();
    });
}

CalcEdit::~CalcEdit() = default;

void CalcEdit::fire(const std::function<void(QObject*)>& handler) {
    if (handler) guarded([&] { handler(this); });
}

void CalcEdit::changeText(QString text) {
    if (text == text_) {
        refreshShown();
        return;
    }
    prevText_ = text_;
    text_ = text;
    refreshShown();
    emit textChanged(text_);
    fire(OnChange);
}

void CalcEdit::refreshShown() {
    QString shown = text_;
    if (!edit_->hasFocus()) {
        double v = 0;
        const bool isValue =
            text_.isEmpty() ? !value_.isValid() : (strToFloat(text_, v) && value_.isValid() && v == value());
        if (isValue) shown = displayText();
    }
    if (edit_->text() != shown) {
        QScopedValueRollback guard(showing_, true);
        const bool wasEmpty = edit_->text().isEmpty();
        edit_->setText(shown);
        // While the user types: a text that replaced an emptied edit ("0") is selected, so
        // that the next key replaces it; otherwise the cursor goes to the end.
        if (edit_->hasFocus() && wasEmpty) edit_->selectAll();
    }
}

QString CalcEdit::displayText() const {
    return value_.isValid() ? formatFloat(displayFormat_, value()) : QString();
}

void CalcEdit::setEditValue(const QVariant& v) {
    QVariant nv;
    if (v.isValid() && !v.isNull()) nv = v.toDouble();
    const bool changed = nv != value_;
    value_ = nv;
    double typed = 0;
    const bool textIsValue =
        nv.isValid() ? (strToFloat(text_, typed) && typed == nv.toDouble()) : text_.isEmpty();
    if (!textIsValue)
        changeText(valueText());
    else
        refreshShown();
    if (changed) valueChangedByEdit();
}

void CalcEdit::loadValue(const QVariant& v) {
    QVariant nv;
    if (v.isValid() && !v.isNull()) nv = v.toDouble();
    value_ = nv;
    modified_ = false;
    changeText(valueText());
    refreshShown();
}

void CalcEdit::valueChangedByEdit() {
    emit editValueChanged(value_);
    fire(OnEditValueChanged);
}

void CalcEdit::setEditText(const QString& text) {
    changeText(text);
    takeText(text);
}

bool CalcEdit::takeText(const QString& text) {
    double v = 0;
    if (text.trimmed().isEmpty())
        setEditValue(QVariant());
    else if (strToFloat(text, v))
        setEditValue(v);
    else
        return false;
    return true;
}

QString CalcEdit::valueText() const {
    return value_.isValid() ? editTextOf(value()) : QString();
}

void CalcEdit::userEdited(const QString& text) {
    if (showing_) return;
    modified_ = true;
    changeText(text);
    if (!immediatePost_) return;
    if (!takeText(text_)) return; // not a number yet ("-"): wait for more
    guarded([&] { postEditValue(); });
    modified_ = false;
}

void CalcEdit::revertEdit() {
    double v = 0;
    if (prevText_ != text_ && (prevText_.trimmed().isEmpty() || strToFloat(prevText_, v)))
        changeText(prevText_);
    else
        changeText(valueText());
}

void CalcEdit::commit() {
    if (!takeText(text_)) changeText(valueText());
    if (modified_) guarded([&] { postEditValue(); });
    modified_ = false;
    refreshShown();
}

void CalcEdit::calcResult(double v) {
    if (readOnly_) return;
    modified_ = true;
    changeText(editTextOf(v));
    setEditValue(v);
    guarded([&] { postEditValue(); });
    modified_ = false;
    refreshShown();
}

void CalcEdit::setDisplayFormat(const QString& f) {
    displayFormat_ = f;
    refreshShown();
}

void CalcEdit::setPrecision(int p) {
    precision_ = p > 0 ? p : 10;
    if (popup_) popup_->setPrecision(precision_);
}

void CalcEdit::setReadOnly(bool b) {
    readOnly_ = b;
    edit_->setReadOnly(b);
    if (b) closeUp();
}

Qt::Alignment CalcEdit::alignment() const {
    return edit_->alignment();
}

void CalcEdit::setAlignment(Qt::Alignment a) {
    edit_->setAlignment(a);
}

void CalcEdit::selectAll() {
    edit_->selectAll();
}

void CalcEdit::dropDown() {
    if (readOnly_ || !isEnabled()) return;
    if (!popup_) {
        popup_ = new CalcPopup(this);
        popup_->setPrecision(precision_);
        popup_->OnResult = [this](double v) { calcResult(v); };
        popup_->OnButtonClick = [this](CalcButton b) {
            if (OnCalcButtonClick) guarded([&] { OnCalcButtonClick(this, b); });
            if (quickClose_ && b == CalcButton::Equals) closeUp();
        };
        popup_->OnKeyPress = [this](int& key) {
            if (OnCalcKeyPress) guarded([&] { OnCalcKeyPress(this, key); });
        };
    }
    double v = 0;
    popup_->start(strToFloat(text_, v) ? v : value());
    popup_->adjustSize();
    QPoint at = mapToGlobal(QPoint(0, height()));
    if (QScreen* screen = this->screen()) {
        const QRect area = screen->availableGeometry();
        if (at.y() + popup_->height() > area.bottom())
            at.setY(mapToGlobal(QPoint(0, 0)).y() - popup_->height());
        at.setX(std::clamp(at.x(), area.left(), std::max(area.left(), area.right() - popup_->width())));
    }
    popup_->move(at);
    popup_->show();
    popup_->setFocus(Qt::PopupFocusReason);
}

void CalcEdit::closeUp() {
    if (popup_ && popup_->isVisible()) popup_->close();
}

bool CalcEdit::isDroppedDown() const {
    return popup_ && popup_->isVisible();
}

bool CalcEdit::eventFilter(QObject* o, QEvent* e) {
    if (o != edit_) return QWidget::eventFilter(o, e);
    switch (e->type()) {
    case QEvent::FocusIn:
        refreshShown();
        break;
    case QEvent::FocusOut: {
        const auto reason = static_cast<QFocusEvent*>(e)->reason();
        if (reason == Qt::PopupFocusReason || isDroppedDown()) break;
        commit();
        fire(OnExit);
        break;
    }
    case QEvent::MouseButtonRelease:
        fire(OnClick);
        break;
    case QEvent::KeyPress: {
        auto* k = static_cast<QKeyEvent*>(e);
        if ((k->key() == Qt::Key_F4 && !(k->modifiers() & Qt::AltModifier)) ||
            ((k->key() == Qt::Key_Down || k->key() == Qt::Key_Up) && (k->modifiers() & Qt::AltModifier))) {
            dropDown();
            return true;
        }
        if (k->key() == Qt::Key_Return || k->key() == Qt::Key_Enter) {
            commit();
            break; // the dialog's default button still sees Enter
        }
        if (k->key() == Qt::Key_Escape && modified_) {
            // Escape first drops the typing; a second one goes on to the dialog.
            changeText(valueText());
            modified_ = false;
            return true;
        }
        break;
    }
    default:
        break;
    }
    return QWidget::eventFilter(o, e);
}

// ---- data-bound edit

DBCalcEdit::DBCalcEdit(QWidget* parent) : CalcEdit(parent) {
    // Edits of the record's other fields do not re-read the edit.
    link_.setOwnFieldEditsOnly(true);
}

void DBCalcEdit::updateFromField() {
    if (link_.writing()) return;
    QVariant v;
    if (db::Field* f = link_.rowField()) {
        try {
            if (!f->isNull()) v = f->asDouble();
        } catch (...) {
            v = QVariant();
        }
    }
    if (isModified() && v == editValue()) return; // the field is as typed so far: keep the typing
    loadValue(v);
}

void DBCalcEdit::postEditValue() {
    db::Field* f = field();
    if (!f || isReadOnly()) return;
    const auto writing = link_.writingScope();
    db::AbstractDataSet* ds = f->dataSet();
    const QVariant v = editValue();
    if (!ds->inEditMode()) {
        const QVariant old = f->isNull() ? QVariant() : QVariant(f->asDouble());
        if (old == v) return; // nothing to write: leave the record in browse state
        ds->edit();
    }
    if (v.isValid())
        f->setValue(v);
    else
        f->clear();
}

} // namespace frames::ui
