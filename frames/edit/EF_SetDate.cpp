#include "frames/edit/EF_SetDate.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiDates.h"
#include <QHBoxLayout>

namespace frames {

namespace {

ui::DateEdit* dateEditor(QWidget* parent, const QString& name) {
    auto* e = new ui::DateEdit(parent);
    e->setObjectName(name);
    e->setMasked(true);
    e->setSaveTime(false);
    e->setShowTime(false);
    e->setToolTip(QStringLiteral("Выбор даты"));
    e->setMinimumWidth(100);
    return e;
}

} // namespace

TSetDate_EF::TSetDate_EF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(280, 75);
    GroupBox->setTitle(QStringLiteral(" Период "));
    datesRow = new QWidget(content());
    datesRow->setObjectName(QStringLiteral("datesRow"));
    auto* row = new QHBoxLayout(datesRow);
    row->setContentsMargins(0, 0, 0, 0);
    laDateFrom = new QLabel(QStringLiteral("c"), datesRow);
    laDateFrom->setObjectName(QStringLiteral("laDateFrom"));
    deFromDate = dateEditor(datesRow, QStringLiteral("deFromDate"));
    laDateTo = new QLabel(QStringLiteral("по"), datesRow);
    laDateTo->setObjectName(QStringLiteral("laDateTo"));
    deToDate = dateEditor(datesRow, QStringLiteral("deToDate"));
    laDateFrom->setBuddy(deFromDate);
    laDateTo->setBuddy(deToDate);
    row->addWidget(laDateFrom);
    row->addWidget(deFromDate, 1);
    row->addWidget(laDateTo);
    row->addWidget(deToDate, 1);
    contentLayout()->addWidget(datesRow);

    deFromDate->OnExit = [this](QObject* s) { guard([&] { deFromDateExit(s); }); };
    deFromDate->OnChange = [this](QObject* s) { guard([&] { deFromDatePropertiesChange(s); }); };
    deFromDate->OnEditValueChanged = [this](QObject* s) {
        guard([&] { deFromDatePropertiesEditValueChanged(s); });
    };
    deToDate->OnExit = [this](QObject* s) { guard([&] { deToDateExit(s); }); };
    deToDate->OnChange = [this](QObject* s) { guard([&] { deToDatePropertiesChange(s); }); };
    deToDate->OnEditValueChanged = [this](QObject* s) {
        guard([&] { deToDatePropertiesEditValueChanged(s); });
    };
    // Delete empties a date.
    auto keyUp = [](QObject* s, int& key, Qt::KeyboardModifiers) {
        guard([&] { setNull(key, qobject_cast<ui::DateEdit*>(s)); });
    };
    deFromDate->OnKeyUp = keyUp;
    deToDate->OnKeyUp = keyUp;
}

void TSetDate_EF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    deFromDate->setReadOnly(value);
    deToDate->setReadOnly(value);
}

void TSetDate_EF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (!node) return;
    SaveLayoutDT(node->ItemByName(QStringLiteral("FromDate")), deFromDate);
    SaveLayoutDT(node->ItemByName(QStringLiteral("ToDate")), deToDate);
}

void TSetDate_EF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists(QStringLiteral("FromDate")))
        RestoreLayoutDT(node->ItemByName(QStringLiteral("FromDate")), deFromDate);
    if (node->IsExists(QStringLiteral("ToDate")))
        RestoreLayoutDT(node->ItemByName(QStringLiteral("ToDate")), deToDate);
    if (node->IsExists(QStringLiteral("cbSet.Checked")))
        cbSet->setChecked(node->ItemByName(QStringLiteral("cbSet.Checked"))->GetAsBoolean());
}

bool TSetDate_EF::IsEmpty() {
    if (TSetFilter_EF::IsEmpty()) return true;
    return deFromDate->isNull() && deToDate->isNull();
}

void TSetDate_EF::Clear() {
    deFromDate->clearValue();
    deToDate->clearValue();
    TSetFilter_EF::Clear();
}

QString TSetDate_EF::SQL(const QString& fieldName) {
    if (!cbSet->isChecked()) return {};
    return DateRangeSql(fieldName, deFromDate->date(), deToDate->date());
}

bool TSetDate_EF::IsCorrect() {
    if (!cbSet->isChecked()) return true;
    if (deFromDate->isNull() && deToDate->isNull()) return false;
    return deFromDate->isNull() || deToDate->isNull() || deFromDate->date() <= deToDate->date();
}

void TSetDate_EF::deFromDateExit(QObject*) {
    AdjustDates(deFromDate, deToDate, deFromDate);
}

void TSetDate_EF::deFromDatePropertiesChange(QObject*) {
    ContentChanged();
}

void TSetDate_EF::deFromDatePropertiesEditValueChanged(QObject*) {
    AdjustDates(deFromDate, deToDate, deFromDate);
}

void TSetDate_EF::deToDateExit(QObject*) {
    AdjustDates(deFromDate, deToDate, deToDate);
}

void TSetDate_EF::deToDatePropertiesChange(QObject*) {
    ContentChanged();
}

void TSetDate_EF::deToDatePropertiesEditValueChanged(QObject*) {
    // The first edit is passed as the changed one: a last date typed before the first one is
    // pulled up to it.
    AdjustDates(deFromDate, deToDate, deFromDate);
}

FRAMES_REGISTER(TSetDate_EF, "edit");

} // namespace frames
