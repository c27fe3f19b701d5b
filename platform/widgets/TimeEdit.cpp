#include "platform/widgets/TimeEdit.h"
#include "platform/db/Field.h"
#include "platform/widgets/DateEdit.h"
#include "platform/widgets/ErrorReporter.h"
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpression>

namespace frames::ui {

QTime parseTime(const QString& text) {
    const QString s = text.trimmed();
    static const QRegularExpression hm(QStringLiteral("^(\\d{1,2})[:.](\\d{1,2})(?:[:.](\\d{1,2}))?$"));
    if (const auto m = hm.match(s); m.hasMatch())
        return QTime(m.captured(1).toInt(), m.captured(2).toInt(),
                     m.captured(3).isEmpty() ? 0 : m.captured(3).toInt());
    static const QRegularExpression digits(QStringLiteral("^(\\d{1,2})(\\d{2})$"));
    if (const auto m = digits.match(s); m.hasMatch())
        return QTime(m.captured(1).toInt(), m.captured(2).toInt());
    return {};
}

TimeEdit::TimeEdit(QWidget* parent) : QAbstractSpinBox(parent) {
    setButtonSymbols(QAbstractSpinBox::UpDownArrows);
    setAccelerated(true);
    setKeyboardTracking(false);
    connect(this, &QAbstractSpinBox::editingFinished, this, [this] { commitText(); });
}

void TimeEdit::updateFromField() {
    if (!dataSource()) return;
    QTime t;
    if (db::Field* f = link_.rowField()) {
        try {
            if (!f->isNull()) t = f->asTime();
        } catch (...) {
            t = {};
        }
    }
    value_ = normalized(t);
    showValue();
}

void TimeEdit::setDisplayFormat(const QString& f) {
    format_ = f.isEmpty() ? QStringLiteral("HH:mm") : f;
    value_ = normalized(value_);
    showValue();
}

QTime TimeEdit::normalized(const QTime& t) const {
    if (!t.isValid()) return {};
    if (format_.contains('s')) return QTime(t.hour(), t.minute(), t.second());
    return QTime(t.hour(), t.minute());
}

void TimeEdit::showValue() {
    const QString t = value_.isValid() ? value_.toString(format_) : QString();
    if (lineEdit()->text() != t) {
        const int pos = lineEdit()->cursorPosition();
        lineEdit()->setText(t);
        lineEdit()->setCursorPosition(qMin(pos, int(t.size())));
    }
}

void TimeEdit::setTime(const QTime& t) {
    const QTime n = normalized(t);
    if (db::Field* f = field()) {
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        if (!n.isValid())
            f->clear();
        else if (f->dataType() == db::FieldType::Timestamp) {
            const QDate day = f->isNull() ? dayZero() : f->asDate();
            f->setValue(QDateTime(day, n));
        } else
            f->setValue(n);
    }
    value_ = n;
    showValue();
}

void TimeEdit::userSetTime(const QTime& t) {
    if (isReadOnly()) {
        showValue();
        return;
    }
    const QTime before = value_;
    if (!guarded([&] { setTime(t); })) {
        updateFromField();
        return;
    }
    if (before != value_ && OnChange) guarded([&] { OnChange(this); });
}

bool TimeEdit::commitText() {
    const QString text = lineEdit()->text().trimmed();
    if (text == (value_.isValid() ? value_.toString(format_) : QString())) return true;
    if (text.isEmpty()) {
        userSetTime({});
        return true;
    }
    const QTime t = parseTime(text);
    if (!t.isValid()) {
        showValue();
        return false;
    }
    userSetTime(t);
    showValue();
    return true;
}

void TimeEdit::stepBy(int steps) {
    if (isReadOnly()) return;
    // Text typed but not yet taken counts as the starting point.
    const QTime typed = parseTime(lineEdit()->text());
    const QTime from = typed.isValid() ? normalized(typed) : (value_.isValid() ? value_ : QTime(0, 0));
    const int pos = lineEdit()->cursorPosition();
    // With the whole text selected (the spin box selects it after a step) the part stays.
    const bool all = lineEdit()->hasSelectedText() && lineEdit()->selectedText() == lineEdit()->text();
    if (!all) unit_ = pos <= 2 ? 3600 : (pos <= 5 || !format_.contains('s') ? 60 : 1);
    userSetTime(from.addSecs(steps * unit_));
    if (!all) lineEdit()->setCursorPosition(pos);
}

QAbstractSpinBox::StepEnabled TimeEdit::stepEnabled() const {
    if (isReadOnly()) return StepNone;
    return StepUpEnabled | StepDownEnabled;
}

QValidator::State TimeEdit::validate(QString& input, int&) const {
    const QString s = input.trimmed();
    if (s.isEmpty() || parseTime(s).isValid()) return QValidator::Acceptable;
    static const QRegularExpression partial(QStringLiteral("^\\d{0,4}([:.]\\d{0,2}([:.]\\d{0,2})?)?$"));
    return partial.match(s).hasMatch() ? QValidator::Intermediate : QValidator::Invalid;
}

void TimeEdit::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        commitText();
        e->ignore(); // the dialog's default button still sees Enter
        return;
    }
    if (e->key() == Qt::Key_Escape &&
        lineEdit()->text() != (value_.isValid() ? value_.toString(format_) : "")) {
        showValue();
        e->accept();
        return;
    }
    QAbstractSpinBox::keyPressEvent(e);
}

void TimeEdit::focusOutEvent(QFocusEvent* e) {
    commitText();
    QAbstractSpinBox::focusOutEvent(e);
}

} // namespace frames::ui
