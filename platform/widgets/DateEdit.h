#pragma once
#include "platform/widgets/FieldLink.h"
#include <QDateTime>
#include <QLineEdit>
#include <functional>

class QCalendarWidget;
class QFrame;
class QTimeEdit;

namespace frames::ui {

// Where date controls take "today" and "now" from. The frames layer points it at the host's
// clock; by default it is the system clock.
struct DateClock {
    std::function<QDate()> today;
    std::function<QDateTime()> now;
};
DateClock& dateClock();
QDate clockToday();
QDateTime clockNow();

// Stored dates are also known by their day number: day 0 is 30 December 1899, the fraction is
// the time of day. NullDay stands for "no date".
inline constexpr double NullDay = -700000;
QDate dayZero();
double toDayNumber(const QDateTime& value); // NullDay for a null value
// Null for NullDay and for a day outside the dates the database takes.
QDateTime fromDayNumber(double day);
// The dates the database takes: 1 January 0001 to 31 December 9999. A date edit holds no other.
QDate firstStorableDay();
QDate lastStorableDay();
bool isStorableDay(const QDate& d);

// Reads a date typed by a user: "d.m.yyyy", "d.m.yy" (years 50..99 are 19xx, 00..49 are 20xx),
// "d.m" (the clock's current year), "/" or "-" as separators, "ddmmyy", "ddmmyyyy",
// "yyyy-mm-dd"; with withTime an
// optional "h:mm" or "h:mm:ss" after the date. Null when the text is not a date.
QDateTime parseDateTime(const QString& text, bool withTime = false);

// A date edit that can be empty. The text shows DisplayFormat (Qt date format, default
// "dd.MM.yyyy"); with Masked the input is masked digit by digit. A button opens a calendar with
// the DateButtons ("clear", "today", "now", separated by ";"). ShowTime shows and edits the time
// of day, SaveTime keeps it in the value (otherwise the value is the date at midnight).
//
// Bound to DataSource and DataField the edit shows that field of the current record and writes a
// new value into it (the record is put into edit state); unbound it keeps the value itself.
//
// Typed text becomes the value when the user presses Enter or leaves the edit: a text that is
// not a date then reverts to the value, and an erased text empties it. The events are plain
// handlers, one each, as the frames assign them.
class DateEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(QString DisplayFormat READ displayFormat WRITE setDisplayFormat)
    Q_PROPERTY(bool Masked READ masked WRITE setMasked)
    Q_PROPERTY(bool ShowTime READ showTime WRITE setShowTime)
    Q_PROPERTY(bool SaveTime READ saveTime WRITE setSaveTime)
    Q_PROPERTY(QString DateButtons READ dateButtons WRITE setDateButtons)
    Q_PROPERTY(bool WeekNumbers READ weekNumbers WRITE setWeekNumbers)
public:
    explicit DateEdit(QWidget* parent = nullptr);

    // ---- binding
    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed
    void updateFromField();

    // ---- settings
    bool isReadOnly() const { return QLineEdit::isReadOnly(); }
    void setReadOnly(bool b);
    QString displayFormat() const { return format_; }
    void setDisplayFormat(const QString& f);
    bool masked() const { return masked_; }
    void setMasked(bool b);
    bool showTime() const { return showTime_; }
    void setShowTime(bool b);
    bool saveTime() const { return saveTime_; }
    void setSaveTime(bool b);
    QString dateButtons() const { return buttons_.join(';'); }
    void setDateButtons(const QString& list);
    bool weekNumbers() const { return weekNumbers_; }
    void setWeekNumbers(bool b);

    // ---- value
    QDateTime value() const { return value_; } // null when empty
    QDate date() const { return value_.date(); }
    bool isNull() const { return value_.isNull(); }
    double dayNumber() const { return toDayNumber(value_); }
    // Sets the value (without the time of day unless SaveTime); bound, writes the field.
    void setValue(const QDateTime& v);
    void setDate(const QDate& d) { setValue(d.isValid() ? QDateTime(d, QTime(0, 0)) : QDateTime()); }
    void setDayNumber(double day) { setValue(fromDayNumber(day)); }
    void clearValue() { setValue(QDateTime()); }
    // A change made by the user: OnEditing first, then the value, then OnEditValueChanged.
    void userSetValue(const QDateTime& v);
    // The text as typed, without the blanks of the mask ("15.03.", "" for an untouched mask).
    QString editText() const;
    // Shows the value again, dropping text typed but not yet taken.
    void refresh() { showValue(); }
    // Makes the typed text the value (see the class comment). True when the text was a date or
    // empty, false when it was reverted.
    bool commitText();

    // ---- calendar
    void showPopup();
    void hidePopup();
    bool isPopupVisible() const;
    QFrame* popup() const { return popup_; }
    QCalendarWidget* calendar() const { return calendar_; }
    QTimeEdit* popupTime() const { return popupTime_; }
    // The value chosen in the calendar (its date, with the popup's time when ShowTime), as a
    // user choice; closes the calendar.
    void acceptCalendar();

    // ---- events
    std::function<void(QObject* sender)> OnClick; // mouse click in the text, or a calendar choice
    std::function<void(QObject* sender)> OnEnter;
    std::function<void(QObject* sender)> OnExit;
    // key may be set to 0 by the handler: the edit then does not handle the key itself.
    std::function<void(QObject* sender, int& key, Qt::KeyboardModifiers shift)> OnKeyDown;
    std::function<void(QObject* sender, int& key, Qt::KeyboardModifiers shift)> OnKeyUp;
    std::function<void(QObject* sender)> OnEditing;          // the user is changing the value
    std::function<void(QObject* sender)> OnChange;           // the text changed (any cause)
    std::function<void(QObject* sender)> OnEditValueChanged; // the user changed the value

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void keyReleaseEvent(QKeyEvent* e) override;
    void focusInEvent(QFocusEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseReleaseEvent(QMouseEvent* e) override;
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    QString render(const QDateTime& v) const;
    QDateTime normalized(const QDateTime& v) const;
    void showValue();
    void applyMask();
    // Masked: where typing goes on, the first blank after the digits typed (0 when none).
    int typingPosition() const;
    void buildPopup();
    void writeField(const QDateTime& v);
    void fire(const std::function<void(QObject*)>& handler);

    QString format_ = QStringLiteral("dd.MM.yyyy");
    QStringList buttons_{QStringLiteral("clear"), QStringLiteral("today")};
    bool masked_ = false, showTime_ = false, saveTime_ = false, weekNumbers_ = false;
    QDateTime value_;
    bool syncing_ = false;
    QAction* dropAction_ = nullptr;
    QFrame* popup_ = nullptr;
    QCalendarWidget* calendar_ = nullptr;
    QTimeEdit* popupTime_ = nullptr;
    FieldLink link_{this, [this] { updateFromField(); }};
};

} // namespace frames::ui
