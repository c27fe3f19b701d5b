#include "platform/widgets/DateEdit.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include "platform/widgets/TimeEdit.h"
#include <QAbstractItemView>
#include <QAction>
#include <QCalendarWidget>
#include <QFocusEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QRegularExpression>
#include <QScopedValueRollback>
#include <QStyle>
#include <QTimeEdit>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

namespace frames::ui {

// ---- clock and day numbers

DateClock& dateClock() {
    static DateClock clock{[] { return QDate::currentDate(); }, [] { return QDateTime::currentDateTime(); }};
    return clock;
}

QDate clockToday() {
    const DateClock& c = dateClock();
    return c.today ? c.today() : QDate::currentDate();
}

QDateTime clockNow() {
    const DateClock& c = dateClock();
    return c.now ? c.now() : QDateTime::currentDateTime();
}

QDate dayZero() {
    return QDate(1899, 12, 30);
}

double toDayNumber(const QDateTime& value) {
    if (value.isNull() || !value.date().isValid()) return NullDay;
    const double days = double(dayZero().daysTo(value.date()));
    const double fraction = value.time().isValid() ? value.time().msecsSinceStartOfDay() / 86400000.0 : 0.0;
    // Before day zero the fraction still counts forward from midnight: -1.25 is 29.12.1899 06:00.
    return days >= 0 ? days + fraction : days - fraction;
}

QDate firstStorableDay() {
    return QDate(1, 1, 1);
}

QDate lastStorableDay() {
    return QDate(9999, 12, 31);
}

bool isStorableDay(const QDate& d) {
    return d.isValid() && d >= firstStorableDay() && d <= lastStorableDay();
}

QDateTime fromDayNumber(double day) {
    if (day == NullDay || !std::isfinite(day)) return {};
    // Checked before the conversion to whole days, which a number this far off would overflow.
    if (day < double(dayZero().daysTo(firstStorableDay())) ||
        day >= double(dayZero().daysTo(lastStorableDay()) + 1))
        return {};
    const double whole = std::trunc(day);
    const QDate date = dayZero().addDays(qint64(whole));
    const int msecs = int(std::llround(std::fabs(day - whole) * 86400000.0));
    if (msecs >= 86400000) return QDateTime(date.addDays(day >= 0 ? 1 : -1), QTime(0, 0));
    return QDateTime(date, QTime::fromMSecsSinceStartOfDay(msecs));
}

// ---- parsing

namespace {

int yearOf(const QString& digits, bool& ok) {
    ok = !digits.isEmpty() && digits.size() != 3 && digits.size() <= 4;
    if (!ok) return 0;
    const int y = digits.toInt(&ok);
    if (digits.size() <= 2) return y < 50 ? 2000 + y : 1900 + y;
    ok = ok && y >= 1;
    return y;
}

QDate parseDate(const QString& s) {
    static const QRegularExpression iso(QStringLiteral("^(\\d{4})-(\\d{1,2})-(\\d{1,2})$"));
    if (const auto m = iso.match(s); m.hasMatch())
        return QDate(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    static const QRegularExpression packed(QStringLiteral("^(\\d{2})(\\d{2})(\\d{2}|\\d{4})$"));
    if (const auto m = packed.match(s); m.hasMatch()) {
        bool ok = false;
        const int y = yearOf(m.captured(3), ok);
        return ok ? QDate(y, m.captured(2).toInt(), m.captured(1).toInt()) : QDate();
    }
    static const QRegularExpression dmy(QStringLiteral("^(\\d{1,2})[./-](\\d{1,2})(?:[./-](\\d*))?$"));
    const auto m = dmy.match(s);
    if (!m.hasMatch()) return {};
    const int d = m.captured(1).toInt(), mo = m.captured(2).toInt();
    int y = clockToday().year();
    if (!m.captured(3).isEmpty()) {
        bool ok = false;
        y = yearOf(m.captured(3), ok);
        if (!ok) return {};
    }
    return QDate(y, mo, d); // invalid for 31.02 and the like
}

QString maskFor(const QString& format) {
    QString mask;
    for (const QChar c : format) {
        if (QStringLiteral("dMyHhms").contains(c))
            mask += '9';
        else if (c.isLetter() || QStringLiteral("09aAnNxX\\<>!#[]{}").contains(c))
            mask += QStringLiteral("\\") + c;
        else
            mask += c;
    }
    return mask + QStringLiteral(";_");
}

bool sameValue(const QDateTime& a, const QDateTime& b) {
    if (a.isNull() || b.isNull()) return a.isNull() == b.isNull();
    return a == b;
}

} // namespace

QDateTime parseDateTime(const QString& text, bool withTime) {
    const QString s = text.trimmed();
    if (s.isEmpty()) return {};
    QString datePart = s, timePart;
    const int sp = s.indexOf(QRegularExpression(QStringLiteral("[ T]")));
    if (sp > 0) {
        datePart = s.left(sp);
        timePart = s.mid(sp + 1).trimmed();
    }
    const QDate d = parseDate(datePart);
    if (!d.isValid()) return {};
    QTime t(0, 0);
    if (!timePart.isEmpty()) {
        t = parseTime(timePart);
        if (!t.isValid()) return {};
        if (!withTime) t = QTime(0, 0);
    }
    return QDateTime(d, t);
}

// ---- DateEdit

DateEdit::DateEdit(QWidget* parent) : QLineEdit(parent) {
    dropAction_ = addAction(style()->standardIcon(QStyle::SP_ArrowDown), QLineEdit::TrailingPosition);
    dropAction_->setObjectName(QStringLiteral("dropButton"));
    connect(dropAction_, &QAction::triggered, this, [this] { showPopup(); });
    connect(this, &QLineEdit::textChanged, this, [this] {
        if (!syncing_) fire(OnChange);
    });
    connect(this, &QLineEdit::textEdited, this, [this] { fire(OnEditing); });
    applyMask();
}

void DateEdit::fire(const std::function<void(QObject*)>& handler) {
    if (handler) guarded([&] { handler(this); });
}

// ---- binding

void DateEdit::updateFromField() {
    if (!dataSource()) return; // unbound: the edit keeps its own value
    QDateTime v;
    if (db::Field* f = link_.rowField()) {
        try {
            if (!f->isNull()) v = f->asDateTime();
        } catch (...) {
            v = {};
        }
    }
    value_ = normalized(v);
    showValue();
}

void DateEdit::writeField(const QDateTime& v) {
    db::Field* f = field();
    if (!f) return;
    db::AbstractDataSet* ds = f->dataSet();
    if (!ds->inEditMode()) ds->edit();
    if (v.isNull())
        f->clear();
    else if (f->dataType() == db::FieldType::Date)
        f->setValue(v.date());
    else if (f->dataType() == db::FieldType::Time)
        f->setValue(v.time());
    else
        f->setValue(v);
}

// ---- settings

void DateEdit::setReadOnly(bool b) {
    QLineEdit::setReadOnly(b);
    dropAction_->setEnabled(!b);
    if (b) hidePopup();
}

void DateEdit::setDisplayFormat(const QString& f) {
    format_ = f.isEmpty() ? QStringLiteral("dd.MM.yyyy") : f;
    applyMask();
}

void DateEdit::setMasked(bool b) {
    masked_ = b;
    applyMask();
}

void DateEdit::setShowTime(bool b) {
    showTime_ = b;
    const int timeAt = format_.indexOf(QRegularExpression(QStringLiteral("\\s*[Hh]")));
    if (b && timeAt < 0) format_ += QStringLiteral(" HH:mm");
    if (!b && timeAt > 0) format_.truncate(timeAt);
    delete popup_;
    popup_ = nullptr;
    applyMask();
}

void DateEdit::setSaveTime(bool b) {
    saveTime_ = b;
    value_ = normalized(value_);
    showValue();
}

void DateEdit::setDateButtons(const QString& list) {
    buttons_.clear();
    for (const QString& b : list.split(';', Qt::SkipEmptyParts)) buttons_ << b.trimmed().toLower();
    delete popup_;
    popup_ = nullptr;
}

void DateEdit::setWeekNumbers(bool b) {
    weekNumbers_ = b;
    if (calendar_)
        calendar_->setVerticalHeaderFormat(b ? QCalendarWidget::ISOWeekNumbers
                                             : QCalendarWidget::NoVerticalHeader);
}

void DateEdit::applyMask() {
    {
        QScopedValueRollback quiet(syncing_, true);
        setInputMask(masked_ ? maskFor(format_) : QString());
    }
    showValue();
}

// ---- value

QDateTime DateEdit::normalized(const QDateTime& v) const {
    if (v.isNull() || !isStorableDay(v.date())) return {};
    if (!saveTime_) return QDateTime(v.date(), QTime(0, 0));
    return v;
}

QString DateEdit::render(const QDateTime& v) const {
    return v.isNull() ? QString() : v.toString(format_);
}

void DateEdit::showValue() {
    const QString t = render(value_);
    if (text() != t) setText(t); // an empty masked edit keeps its separators
    // Setting a text leaves the caret at its end, which in an empty mask is after the mask,
    // where nothing can be typed.
    if (masked_ && t.isEmpty()) setCursorPosition(0);
}

QString DateEdit::editText() const {
    const QString t = text();
    if (masked_ && std::none_of(t.begin(), t.end(), [](QChar c) { return c.isDigit(); })) return {};
    return t;
}

void DateEdit::setValue(const QDateTime& v) {
    const QDateTime n = normalized(v);
    if (dataSource()) writeField(n);
    value_ = n;
    showValue();
}

void DateEdit::userSetValue(const QDateTime& v) {
    if (isReadOnly()) {
        showValue();
        return;
    }
    fire(OnEditing);
    const QDateTime before = value_;
    if (!guarded([&] { setValue(v); })) {
        updateFromField();
        return;
    }
    if (!sameValue(before, value_)) fire(OnEditValueChanged);
}

bool DateEdit::commitText() {
    if (isReadOnly() || text() == render(value_)) return true;
    const QString t = editText().trimmed();
    if (t.isEmpty()) {
        if (isNull())
            showValue();
        else
            userSetValue({});
        return true;
    }
    const QDateTime v = normalized(parseDateTime(t, showTime_));
    if (v.isNull()) {
        showValue(); // not a date: back to the value, without a word
        return false;
    }
    if (sameValue(v, value_))
        showValue();
    else
        userSetValue(v);
    return true;
}

// ---- events

void DateEdit::keyPressEvent(QKeyEvent* e) {
    int key = e->key();
    // Enter makes the typed text the value before the handlers look at it.
    if (key == Qt::Key_Return || key == Qt::Key_Enter) commitText();
    if (OnKeyDown) {
        guarded([&] { OnKeyDown(this, key, e->modifiers()); });
        if (key == 0) {
            e->accept();
            return;
        }
    }
    if ((key == Qt::Key_Down && (e->modifiers() & Qt::AltModifier)) || key == Qt::Key_F4) {
        showPopup();
        e->accept();
        return;
    }
    if (key == Qt::Key_Escape && text() != render(value_)) {
        showValue();
        e->accept();
        return;
    }
    QLineEdit::keyPressEvent(e);
}

void DateEdit::keyReleaseEvent(QKeyEvent* e) {
    int key = e->key();
    if (OnKeyUp) {
        guarded([&] { OnKeyUp(this, key, e->modifiers()); });
        if (key == 0) {
            e->accept();
            return;
        }
    }
    QLineEdit::keyReleaseEvent(e);
}

void DateEdit::focusInEvent(QFocusEvent* e) {
    QLineEdit::focusInEvent(e);
    if (e->reason() != Qt::PopupFocusReason) fire(OnEnter);
}

void DateEdit::focusOutEvent(QFocusEvent* e) {
    QLineEdit::focusOutEvent(e);
    if (e->reason() == Qt::PopupFocusReason) return; // our own calendar, or a menu
    commitText();
    fire(OnExit);
}

int DateEdit::typingPosition() const {
    const QString shown = displayText();
    int pos = 0;
    for (int i = 0; i < shown.size(); ++i)
        if (shown[i].isDigit()) pos = i + 1;
    // Past a separator that follows the digits ("05|.__" -> "05.|__").
    while (pos < shown.size() && !shown[pos].isDigit() && shown[pos] != u'_') ++pos;
    return pos;
}

void DateEdit::mousePressEvent(QMouseEvent* e) {
    QLineEdit::mousePressEvent(e);
    // A click beyond the digits typed puts the caret where typing goes on, not after the mask.
    if (masked_ && e->button() == Qt::LeftButton && !hasSelectedText()) {
        const int pos = typingPosition();
        if (cursorPosition() > pos) setCursorPosition(pos);
    }
}

void DateEdit::mouseReleaseEvent(QMouseEvent* e) {
    QLineEdit::mouseReleaseEvent(e);
    if (e->button() == Qt::LeftButton && rect().contains(e->position().toPoint())) fire(OnClick);
}

// ---- calendar

void DateEdit::buildPopup() {
    popup_ = new QFrame(this, Qt::Popup);
    popup_->setObjectName(QStringLiteral("popup"));
    popup_->setFrameShape(QFrame::StyledPanel);
    auto* box = new QVBoxLayout(popup_);
    box->setContentsMargins(2, 2, 2, 2);
    calendar_ = new QCalendarWidget(popup_);
    calendar_->setObjectName(QStringLiteral("calendar"));
    calendar_->setLocale(QLocale(QLocale::Russian, QLocale::Russia));
    calendar_->setFirstDayOfWeek(Qt::Monday);
    calendar_->setGridVisible(true);
    setWeekNumbers(weekNumbers_);
    box->addWidget(calendar_);
    connect(calendar_, &QCalendarWidget::clicked, this, [this] { acceptCalendar(); });
    connect(calendar_, &QCalendarWidget::activated, this, [this] { acceptCalendar(); });
    if (auto* view = calendar_->findChild<QAbstractItemView*>()) view->installEventFilter(this);
    calendar_->installEventFilter(this);
    popupTime_ = nullptr;
    if (showTime_) {
        popupTime_ = new QTimeEdit(popup_);
        popupTime_->setObjectName(QStringLiteral("time"));
        popupTime_->setDisplayFormat(QStringLiteral("HH:mm"));
        box->addWidget(popupTime_);
    }
    auto* row = new QHBoxLayout;
    box->addLayout(row);
    struct Btn {
        const char* key;
        const char* name;
        QString caption;
    };
    const Btn all[] = {{"now", "btnNow", QStringLiteral("Сейчас")},
                       {"today", "btnToday", QStringLiteral("Сегодня")},
                       {"clear", "btnClear", QStringLiteral("Очистить")}};
    for (const Btn& b : all) {
        if (!buttons_.contains(QLatin1String(b.key))) continue;
        auto* button = new QPushButton(b.caption, popup_);
        button->setObjectName(QLatin1String(b.name));
        button->setAutoDefault(false);
        row->addWidget(button);
        const QString key = QLatin1String(b.key);
        connect(button, &QPushButton::clicked, this, [this, key] {
            QDateTime v;
            if (key == QLatin1String("now"))
                v = clockNow();
            else if (key == QLatin1String("today"))
                v = QDateTime(clockToday(), QTime(0, 0));
            hidePopup();
            userSetValue(v);
            fire(OnClick);
        });
    }
}

void DateEdit::showPopup() {
    if (isReadOnly()) return;
    if (!popup_) buildPopup();
    const QDateTime shown = value_.isNull() ? QDateTime(clockToday(), QTime(0, 0)) : value_;
    calendar_->setSelectedDate(shown.date());
    if (popupTime_) popupTime_->setTime(value_.isNull() ? clockNow().time() : value_.time());
    popup_->adjustSize();
    popup_->move(mapToGlobal(rect().bottomLeft()));
    popup_->show();
    calendar_->setFocus();
}

void DateEdit::hidePopup() {
    if (popup_ && popup_->isVisible()) popup_->hide();
}

bool DateEdit::isPopupVisible() const {
    return popup_ && popup_->isVisible();
}

void DateEdit::acceptCalendar() {
    if (!calendar_) return;
    const QTime t = popupTime_ ? popupTime_->time() : QTime(0, 0);
    const QDateTime v(calendar_->selectedDate(), t);
    hidePopup();
    userSetValue(v);
    fire(OnClick);
}

bool DateEdit::eventFilter(QObject* o, QEvent* e) {
    if (e->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(e)->key() == Qt::Key_Escape) {
        hidePopup();
        return true;
    }
    return QLineEdit::eventFilter(o, e);
}

} // namespace frames::ui
