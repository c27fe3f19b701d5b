#include "frames/edit/EF_SetPeriod.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace frames {

namespace {

const char* const kIndex = "cbPeriod.ItemIndex";

QString listText(int type) {
    switch (type) {
    case ptMonth:
        return QStringLiteral("Месяц");
    case ptQuarter:
        return QStringLiteral("Квартал");
    case ptYear:
        return QStringLiteral("Год");
    default:
        return PeriodTypeName(type); // the names shared with the other period frames
    }
}

} // namespace

const QList<int>& TSetPeriod_EF::ListTypes() {
    static const QList<int> types{ptCustom,    ptMonth,       ptQuarter, ptYear,
                                  ptPrevMonth, ptPrevQuarter, ptPrevYear};
    return types;
}

TSetPeriod_EF::TSetPeriod_EF(QWidget* parent) : TSetDate_EF(parent) {
    resize(280, 100);
    cbPeriod = new QComboBox(content());
    cbPeriod->setObjectName(QStringLiteral("cbPeriod"));
    cbPeriod->setEditable(false);
    for (int t : ListTypes()) cbPeriod->addItem(listText(t));
    cbPeriod->setCurrentIndex(0);
    contentLayout()->insertWidget(0, cbPeriod);
    connect(cbPeriod, &QComboBox::activated, this, [this] { guard([&] { cbPeriodChange(cbPeriod); }); });
    for (ui::DateEdit* e : {deFromDate, deToDate})
        e->OnEditing = [this](QObject* s) { guard([&] { deDateEditing(s); }); };
}

void TSetPeriod_EF::SetReadOnly(bool value) {
    TSetDate_EF::SetReadOnly(value);
    cbPeriod->setEnabled(!value);
}

void TSetPeriod_EF::Clear() {
    cbPeriod->setCurrentIndex(0);
    TSetDate_EF::Clear();
}

int TSetPeriod_EF::GetPeriodType() const {
    const int i = cbPeriod->currentIndex();
    return i >= 0 && i < ListTypes().size() ? ListTypes()[i] : ptCustom;
}

void TSetPeriod_EF::SetPeriodType(int type) {
    const int i = ListTypes().indexOf(type);
    cbPeriod->setCurrentIndex(i < 0 ? 0 : i);
}

void TSetPeriod_EF::SetSelectedPeriod() {
    QScopedValueRollback guardSetting(setting_, true);
    QDate first, last;
    if (PeriodDates(GetPeriodType(), host()->Today(), 0, first, last)) {
        deFromDate->setDate(first);
        deToDate->setDate(last);
    }
}

void TSetPeriod_EF::SetPeriod(TPeriod* period) {
    if (!period) return;
    deFromDate->setDate(period->FirstDate());
    deToDate->setDate(period->LastDate());
    SetPeriodType(period->PeriodType());
    SetSelectedPeriod();
}

void TSetPeriod_EF::Save(TPeriod* period) {
    if (!period) return;
    period->SetPeriodType(GetPeriodType());
    period->SetFirstDate(deFromDate->date());
    period->SetLastDate(deToDate->date());
    period->Save();
}

void TSetPeriod_EF::SaveLayout(TConfigItem* node) {
    TSetDate_EF::SaveLayout(node);
    if (node) node->ItemByName(kIndex)->SetAsInteger(cbPeriod->currentIndex());
}

void TSetPeriod_EF::RestoreLayout(TConfigItem* node) {
    TSetDate_EF::RestoreLayout(node);
    if (!node || !node->IsExists(kIndex)) return;
    const int i = node->ItemByName(kIndex)->GetAsInteger();
    cbPeriod->setCurrentIndex(i >= 0 && i < cbPeriod->count() ? i : 0);
    // Recomputing the dates must not switch the filter on or off.
    const bool on = cbSet->isChecked();
    SetSelectedPeriod();
    cbSet->setChecked(on);
}

void TSetPeriod_EF::cbPeriodChange(QObject*) {
    SetSelectedPeriod();
    ContentChanged();
}

void TSetPeriod_EF::deDateEditing(QObject*) {
    if (!setting_) cbPeriod->setCurrentIndex(0);
}

FRAMES_REGISTER(TSetPeriod_EF, "edit");

} // namespace frames
