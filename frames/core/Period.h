#pragma once
#include <QDate>
#include <QString>
#include <functional>

namespace frames {

class TConfigItem;

// Report period types, by the numbers the period frames and TPeriod share.
enum PeriodKind {
    ptCustom = 0,      // "<Заданный>": dates typed by the user
    ptToday = 1,       // "Сегодня"
    ptYesterday = 2,   // "Вчера"
    ptWeek = 3,        // "Неделя": Monday to Sunday of the current week
    ptPrevWeek = 4,    // "Предыдущая неделя"
    ptMonth = 5,       // "Текущий месяц"
    ptPrevMonth = 6,   // "Предыдущий месяц"
    ptQuarter = 7,     // "Текущий квартал"
    ptPrevQuarter = 8, // "Предыдущий квартал"
    ptYear = 9,        // "Текущий год"
    ptPrevYear = 10,   // "Предыдущий год"
    ptWorkPeriod = 11, // "Рабочий период (N дн.)": the last N days up to today
};

// The list text of a period type; for ptWorkPeriod the bare words "Рабочий период", for any
// number outside 1..11 "<Заданный>".
QString PeriodTypeName(int type);
// The list text of the working period of n days: "Рабочий период (n дн.)".
QString WorkPeriodName(int n);

// The first and last day of a named period as seen on the day today; workDays is the length of
// the working period. False (dates untouched) for ptCustom, an unknown type, or a working period
// of no length.
bool PeriodDates(int type, const QDate& today, int workDays, QDate& first, QDate& last);

// The host's period object: a report form's period (its type and its two dates) that the period
// frames fill and read. Save stores it under the layout node given at construction, Load reads
// it back; OnSave tells the owner that a period was saved.
class TPeriod {
public:
    explicit TPeriod(TConfigItem* store = nullptr) : store_(store) {}

    int PeriodType() const { return type_; }
    void SetPeriodType(int type) { type_ = type; }
    QDate FirstDate() const { return first_; }
    void SetFirstDate(const QDate& d) { first_ = d; }
    QDate LastDate() const { return last_; }
    void SetLastDate(const QDate& d) { last_ = d; }
    int SaveCount() const { return saves_; }

    // Items "PeriodType", "FirstDate" and "LastDate" ("yyyy-MM-dd", "" for no date).
    void Save();
    // False when the store holds no period.
    bool Load();
    // For a named type, the dates of that period as seen today (the host's clock); the working
    // period takes its length from the configuration "WorkPeriodLenght".
    void Recalculate();

    std::function<void(const TPeriod&)> OnSave;

private:
    TConfigItem* store_;
    int type_ = ptCustom;
    QDate first_, last_;
    int saves_ = 0;
};

} // namespace frames
