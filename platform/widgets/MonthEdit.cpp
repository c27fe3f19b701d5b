#include "platform/widgets/MonthEdit.h"
#include "platform/widgets/DateEdit.h"
#include "platform/widgets/ErrorReporter.h"
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QRegularExpression>

namespace frames::ui {

namespace {

const QLocale& russian() {
    static const QLocale ru(QLocale::Russian, QLocale::Russia);
    return ru;
}

QString capitalised(QString s) {
    if (!s.isEmpty()) s[0] = s[0].toUpper();
    return s;
}

QDate withMonth(const QDate& d, int year, int month) {
    const QDate first(year, month, 1);
    if (!first.isValid()) return {};
    return QDate(year, month, qMin(d.isValid() ? d.day() : 1, first.daysInMonth()));
}

} // namespace

QString MonthEdit::monthText(const QDate& d, const QString& format) {
    if (!d.isValid()) return {};
    QString out;
    for (int i = 0; i < format.size();) {
        auto run = [&](QChar c) {
            int n = 0;
            while (i + n < format.size() && format[i + n] == c) ++n;
            return n;
        };
        const QChar c = format[i];
        if (c == 'M') {
            const int n = run(c);
            if (n >= 3)
                out += capitalised(russian().standaloneMonthName(d.month(), n == 3 ? QLocale::ShortFormat
                                                                                   : QLocale::LongFormat));
            else
                out += n == 2 ? QString("%1").arg(d.month(), 2, 10, QChar('0')) : QString::number(d.month());
            i += n;
        } else if (c == 'y') {
            const int n = run(c);
            out += n >= 4 ? QString::number(d.year()) : QString("%1").arg(d.year() % 100, 2, 10, QChar('0'));
            i += n;
        } else {
            out += c;
            ++i;
        }
    }
    return out;
}

QDate MonthEdit::parseMonth(const QString& text) {
    static const QRegularExpression numeric(QStringLiteral("^(\\d{1,2})\\s*[./\\- ]\\s*(\\d{2}|\\d{4})$"));
    static const QRegularExpression named(QStringLiteral("^(\\p{L}+)\\.?\\s*(\\d{2}|\\d{4})$"));
    const QString s = text.trimmed();
    auto year = [](const QString& y) {
        const int v = y.toInt();
        return y.size() == 2 ? (v < 50 ? 2000 + v : 1900 + v) : v;
    };
    if (const auto m = numeric.match(s); m.hasMatch())
        return QDate(year(m.captured(2)), m.captured(1).toInt(), 1);
    const auto m = named.match(s);
    if (!m.hasMatch()) return {};
    const QString word = m.captured(1).toLower();
    if (word.size() < 3) return {};
    for (int month = 1; month <= 12; ++month) {
        const QString names[] = {russian().standaloneMonthName(month, QLocale::LongFormat).toLower(),
                                 russian().monthName(month, QLocale::LongFormat).toLower()};
        for (const QString& name : names)
            if (name.startsWith(word)) return QDate(year(m.captured(2)), month, 1);
    }
    return {};
}

MonthEdit::MonthEdit(QWidget* parent) : QAbstractSpinBox(parent) {
    setButtonSymbols(QAbstractSpinBox::UpDownArrows);
    setKeyboardTracking(false);
    date_ = clockToday();
    showValue();
    connect(this, &QAbstractSpinBox::editingFinished, this, [this] { commitText(); });
}

void MonthEdit::setFormat(const QString& f) {
    format_ = f.isEmpty() ? QStringLiteral("MMMM yyyy") : f;
    showValue();
}

void MonthEdit::showValue() {
    const QString t = monthText(date_, format_);
    if (lineEdit()->text() != t) {
        const int pos = lineEdit()->cursorPosition();
        lineEdit()->setText(t);
        lineEdit()->setCursorPosition(qMin(pos, int(t.size())));
    }
}

void MonthEdit::setDate(const QDate& d) {
    if (!d.isValid()) return;
    date_ = d;
    showValue();
}

void MonthEdit::userSetDate(const QDate& d) {
    if (isReadOnly() || !d.isValid()) {
        showValue();
        return;
    }
    const QDate before = date_;
    setDate(d);
    if (before != date_ && OnChange) guarded([&] { OnChange(this); });
}

bool MonthEdit::commitText() {
    const QString text = lineEdit()->text();
    if (text == monthText(date_, format_)) return true;
    const QDate first = parseMonth(text);
    if (!first.isValid()) {
        showValue();
        return false;
    }
    monthStepped_ = false;
    userSetDate(withMonth(date_, first.year(), first.month()));
    return true;
}

bool MonthEdit::yearSection() const {
    // The year is the part after the last run of letters or separators before its digits.
    const QString t = lineEdit()->text();
    const int yearAt = t.lastIndexOf(QRegularExpression(QStringLiteral("[^\\d]"))) + 1;
    return yearAt > 0 && lineEdit()->cursorPosition() >= yearAt && format_.endsWith('y');
}

void MonthEdit::stepBy(int steps) {
    if (isReadOnly() || !date_.isValid()) return;
    const int pos = lineEdit()->cursorPosition();
    // With the whole text selected (the spin box selects it after a step) the part stays.
    const bool all = lineEdit()->hasSelectedText() && lineEdit()->selectedText() == lineEdit()->text();
    if (!all) yearStep_ = yearSection();
    QDate d;
    if (yearStep_) {
        d = withMonth(date_, date_.year() + steps, date_.month());
    } else {
        const int m = ((date_.month() - 1 + steps) % 12 + 12) % 12 + 1;
        d = withMonth(date_, date_.year(), m);
    }
    monthStepped_ = !yearStep_;
    userSetDate(d);
    if (!all) lineEdit()->setCursorPosition(qMin(pos, int(lineEdit()->text().size())));
}

QAbstractSpinBox::StepEnabled MonthEdit::stepEnabled() const {
    if (isReadOnly()) return StepNone;
    return StepUpEnabled | StepDownEnabled;
}

QValidator::State MonthEdit::validate(QString& input, int&) const {
    if (parseMonth(input).isValid()) return QValidator::Acceptable;
    return input.size() <= 40 ? QValidator::Intermediate : QValidator::Invalid;
}

void MonthEdit::keyPressEvent(QKeyEvent* e) {
    if (e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) {
        commitText();
        e->ignore();
        return;
    }
    QAbstractSpinBox::keyPressEvent(e);
}

void MonthEdit::focusOutEvent(QFocusEvent* e) {
    commitText();
    QAbstractSpinBox::focusOutEvent(e);
}

} // namespace frames::ui
