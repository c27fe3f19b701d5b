#include "frames/core/TyapiDates.h"
#include "frames/core/Host.h"
#include "frames/core/Tyapi.h"
#include "platform/widgets/DateEdit.h"
#include <QSpinBox>
#include <stdexcept>

namespace frames {

namespace {

// Date edits take "today" and "now" from the host's clock once a host is installed.
const bool hostClock = [] {
    ui::DateClock& clock = ui::dateClock();
    clock.today = [] {
        try {
            return host()->Today();
        } catch (const std::logic_error&) {
            return QDate::currentDate();
        }
    };
    clock.now = [] {
        try {
            return host()->Now();
        } catch (const std::logic_error&) {
            return QDateTime::currentDateTime();
        }
    };
    return true;
}();

} // namespace

QDate DateZero() {
    return ui::dayZero();
}

bool CheckDateSilent(const QString& text) {
    return !ui::parseDateTime(text, true).isNull();
}

bool CheckDate(const QString& text) {
    if (CheckDateSilent(text)) return true;
    TyErrorBox(QStringLiteral("Неверно указана дата: \"%1\"").arg(text.trimmed()));
    return false;
}

void AdjustDates(ui::DateEdit* first, ui::DateEdit* last, ui::DateEdit* changed) {
    if (!first || !last || first->isNull() || last->isNull()) return;
    if (first->value() <= last->value()) return;
    if (changed == last)
        first->setValue(last->value());
    else
        last->setValue(first->value());
}

void setNull(int& key, ui::DateEdit* edit) {
    if (!edit || edit->isReadOnly()) return;
    bool clear = key == Qt::Key_Delete;
    if (key == Qt::Key_Backspace) {
        const QString t = edit->editText();
        clear = std::none_of(t.begin(), t.end(), [](QChar c) { return c.isDigit(); });
    }
    if (!clear) return;
    if (!edit->isNull()) edit->userSetValue({});
    edit->refresh(); // also drops digits typed into an edit that had no date
    key = 0;
}

void setRefreshcx(ui::DateEdit* edit) {
    if (!edit) return;
    if (!edit->hasFocus() && !edit->isPopupVisible()) edit->refresh();
    edit->update();
}

void SaveLayoutDT(TConfigItem* node, const ui::DateEdit* edit) {
    if (!node || !edit) return;
    const QDateTime v = edit->value();
    if (v.isNull())
        node->SetAsString(QString());
    else if (edit->saveTime())
        node->SetAsString(v.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")));
    else
        node->SetAsString(v.date().toString(QStringLiteral("yyyy-MM-dd")));
}

void RestoreLayoutDT(TConfigItem* node, ui::DateEdit* edit) {
    if (!node || !edit) return;
    const QVariant& v = node->Value();
    const int type = v.typeId();
    // What the edit would not take from a user (a day beyond 31.12.9999) leaves it as it is.
    if (type == QMetaType::Double || type == QMetaType::Int || type == QMetaType::LongLong) {
        const double day = v.toDouble();
        if (day == NullDate)
            edit->clearValue();
        else if (const QDateTime d = ui::fromDayNumber(day); !d.isNull())
            edit->setValue(d);
        return;
    }
    const QString text = node->GetAsString().trimmed();
    if (text.isEmpty()) {
        edit->clearValue();
        return;
    }
    QDateTime d = QDateTime::fromString(text, Qt::ISODate);
    if (d.isNull()) d = ui::parseDateTime(text, true);
    if (!d.isNull() && ui::isStorableDay(d.date())) edit->setValue(d);
}

QString DateRangeSql(const QString& field, const QDate& first, const QDate& last) {
    const auto literal = [](const QDate& d) { return StrParam(d.toString(QStringLiteral("yyyy-MM-dd"))); };
    QStringList parts;
    if (first.isValid()) parts << field + QStringLiteral(" >= ") + literal(first);
    // The last day the database takes has no day after it: every date lies on or before it.
    if (last.isValid() && last < ui::lastStorableDay())
        parts << field + QStringLiteral(" < ") + literal(last.addDays(1));
    else if (last.isValid() && parts.isEmpty())
        parts << field + QStringLiteral(" is not null");
    if (parts.size() < 2) return parts.value(0);
    return QLatin1Char('(') + parts.join(QStringLiteral(" and ")) + QLatin1Char(')');
}

void CheckMinMax(QSpinBox* edit) {
    if (!edit) return;
    bool ok = false;
    const int typed = edit->locale().toInt(edit->cleanText().trimmed(), &ok);
    const int v = ok ? typed : edit->value();
    edit->setValue(qBound(edit->minimum(), v, edit->maximum()));
}

} // namespace frames
