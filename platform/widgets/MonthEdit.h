#pragma once
#include <QAbstractSpinBox>
#include <QDate>
#include <functional>

namespace frames::ui {

// A month picker: shows its date as Format ("MMMM yyyy": the Russian month name and the year,
// "Январь 2011"). The up and down arrows step the part under the cursor: the month runs round
// within its year (December up gives January of the same year, as a picker's month field does;
// whoever wants a calendar month carries the year in OnChange), the year steps by one. The day
// is kept, cut to the length of a shorter month. A typed month name (or its first letters) and
// year, or "mm.yyyy", is taken on Enter or when the edit loses focus; other text reverts.
class MonthEdit : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(QString Format READ format WRITE setFormat)
    Q_PROPERTY(QDate Date READ date WRITE setDate)
public:
    explicit MonthEdit(QWidget* parent = nullptr);

    QString format() const { return format_; }
    void setFormat(const QString& f);
    QDate date() const { return date_; }
    int month() const { return date_.month(); }
    // Sets the date without OnChange.
    void setDate(const QDate& d);
    // A change made by the user: the date, then OnChange when it differs.
    void userSetDate(const QDate& d);
    bool commitText();

    void stepBy(int steps) override;
    // The text part, where the cursor says which part the arrows step.
    using QAbstractSpinBox::lineEdit;
    // The year part of the text is under the cursor.
    bool yearSection() const;
    // The last change by the user stepped the month part (so its year was not touched), rather
    // than stepping the year or typing a month with its year.
    bool monthStepped() const { return monthStepped_; }

    std::function<void(QObject* sender)> OnChange; // the user changed the month or the year

    // The text of a date in a format of "MMMM" (month name, capitalised), "MM", "M", "yyyy",
    // "yy" and literal characters.
    static QString monthText(const QDate& d, const QString& format);
    // The first of the month that a text names; invalid when it names none.
    static QDate parseMonth(const QString& text);

protected:
    StepEnabled stepEnabled() const override;
    QValidator::State validate(QString& input, int& pos) const override;
    void fixup(QString&) const override {}
    void keyPressEvent(QKeyEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

private:
    void showValue();

    QString format_ = QStringLiteral("MMMM yyyy");
    QDate date_;
    bool yearStep_ = false; // the part last stepped
    bool monthStepped_ = false;
};

} // namespace frames::ui
