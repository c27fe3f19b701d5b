#include "frames/core/Period.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Host.h"

namespace frames {

QString PeriodTypeName(int type) {
    switch (type) {
    case ptToday:
        return QStringLiteral("Сегодня");
    case ptYesterday:
        return QStringLiteral("Вчера");
    case ptWeek:
        return QStringLiteral("Неделя");
    case ptPrevWeek:
        return QStringLiteral("Предыдущая неделя");
    case ptMonth:
        return QStringLiteral("Текущий месяц");
    case ptPrevMonth:
        return QStringLiteral("Предыдущий месяц");
    case ptQuarter:
        return QStringLiteral("Текущий квартал");
    case ptPrevQuarter:
        return QStringLiteral("Предыдущий квартал");
    case ptYear:
        return QStringLiteral("Текущий год");
    case ptPrevYear:
        return QStringLiteral("Предыдущий год");
    case ptWorkPeriod:
        return QStringLiteral("Рабочий период");
    default:
        return QStringLiteral("<Заданный>");
    }
}

QString WorkPeriodName(int n) {
    return QStringLiteral("Рабочий период (") + QString::number(n) + QStringLiteral(" дн.)");
}

namespace {

QDate monthStart(int year, int month) {
    return QDate(year, month, 1);
}

QDate monthEnd(int year, int month) {
    const QDate first(year, month, 1);
    return first.addDays(first.daysInMonth() - 1);
}

// Weeks run from Monday (day 1) to Sunday (day 7).
QDate weekStart(const QDate& d) {
    return d.addDays(1 - d.dayOfWeek());
}

} // namespace

bool PeriodDates(int type, const QDate& today, int workDays, QDate& first, QDate& last) {
    if (!today.isValid()) return false;
    const int y = today.year(), m = today.month();
    const int q = (m - 1) / 3;
    switch (type) {
    case ptToday:
        first = last = today;
        return true;
    case ptYesterday:
        first = last = today.addDays(-1);
        return true;
    case ptWeek:
    case ptPrevWeek: {
        const QDate day = type == ptWeek ? today : today.addDays(-7);
        first = weekStart(day);
        last = first.addDays(6);
        return true;
    }
    case ptMonth:
        first = monthStart(y, m);
        last = monthEnd(y, m);
        return true;
    case ptPrevMonth:
        if (m == 1) {
            first = monthStart(y - 1, 12);
            last = monthEnd(y - 1, 12);
        } else {
            first = monthStart(y, m - 1);
            last = monthEnd(y, m - 1);
        }
        return true;
    case ptQuarter:
        first = monthStart(y, 3 * q + 1);
        last = monthEnd(y, 3 * q + 3);
        return true;
    case ptPrevQuarter:
        if (q == 0) {
            first = QDate(y - 1, 10, 1);
            last = QDate(y - 1, 12, 31);
        } else {
            first = monthStart(y, 3 * q - 2);
            last = monthEnd(y, 3 * q);
        }
        return true;
    case ptYear:
    case ptPrevYear: {
        const int year = type == ptYear ? y : today.addYears(-1).year();
        first = QDate(year, 1, 1);
        last = QDate(year, 12, 31);
        return true;
    }
    case ptWorkPeriod:
        if (workDays <= 0) return false;
        first = today.addDays(1 - workDays);
        last = today;
        return true;
    default:
        return false;
    }
}

namespace {
QString dateText(const QDate& d) {
    return d.isValid() ? d.toString(QStringLiteral("yyyy-MM-dd")) : QString();
}
} // namespace

void TPeriod::Save() {
    if (store_) {
        store_->ItemByName(QStringLiteral("PeriodType"))->SetAsInteger(type_);
        store_->ItemByName(QStringLiteral("FirstDate"))->SetAsString(dateText(first_));
        store_->ItemByName(QStringLiteral("LastDate"))->SetAsString(dateText(last_));
    }
    ++saves_;
    if (OnSave) OnSave(*this);
}

bool TPeriod::Load() {
    if (!store_ || !store_->IsExists(QStringLiteral("PeriodType"))) return false;
    type_ = store_->ItemByName(QStringLiteral("PeriodType"))->GetAsInteger();
    first_ = QDate::fromString(store_->ItemByName(QStringLiteral("FirstDate"))->GetAsString(), Qt::ISODate);
    last_ = QDate::fromString(store_->ItemByName(QStringLiteral("LastDate"))->GetAsString(), Qt::ISODate);
    return true;
}

void TPeriod::Recalculate() {
    QDate first, last;
    if (PeriodDates(type_, host()->Today(), TYConfig()->GetIntValue(QStringLiteral("WorkPeriodLenght")),
                    first, last)) {
        first_ = first;
        last_ = last;
    }
}

} // namespace frames
