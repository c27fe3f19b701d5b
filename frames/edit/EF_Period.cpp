#include "frames/edit/EF_Period.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiDates.h"
#include <QHBoxLayout>

namespace frames {

namespace {

ui::DateEdit* boundEditor(QWidget* parent, const QString& name) {
    auto* e = new ui::DateEdit(parent);
    e->setObjectName(name);
    e->setMasked(true);
    e->setToolTip(QStringLiteral("Выбор даты"));
    e->setMinimumWidth(100);
    return e;
}

const char* const kFirst = "FirstDate";
const char* const kLast = "LastDate";
const char* const kFirstOn = "chbFirstDate.Checked";
const char* const kLastOn = "chbLastDate.Checked";

} // namespace

TPeriod_EF::TPeriod_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(300, 42);
    lbSelect->setText(QStringLiteral("Период"));
    chbFirstDate = new QCheckBox(QStringLiteral("c"), body());
    chbFirstDate->setObjectName(QStringLiteral("chbFirstDate"));
    deFirstDate = boundEditor(body(), QStringLiteral("deFirstDate"));
    chbLastDate = new QCheckBox(QStringLiteral("по"), body());
    chbLastDate->setObjectName(QStringLiteral("chbLastDate"));
    deLastDate = boundEditor(body(), QStringLiteral("deLastDate"));
    for (QWidget* w : {static_cast<QWidget*>(chbFirstDate), static_cast<QWidget*>(deFirstDate),
                       static_cast<QWidget*>(chbLastDate), static_cast<QWidget*>(deLastDate)})
        body()->layout()->addWidget(w);
    lbSelect->setBuddy(deFirstDate);

    connect(chbFirstDate, &QCheckBox::clicked, this,
            [this] { guard([&] { chbFirstDateClick(chbFirstDate); }); });
    connect(chbLastDate, &QCheckBox::clicked, this,
            [this] { guard([&] { chbLastDateClick(chbLastDate); }); });
    for (ui::DateEdit* e : {deFirstDate, deLastDate}) {
        e->OnEditing = [this](QObject* s) { guard([&] { deDateEditing(s); }); };
        e->OnKeyUp = [](QObject* s, int& key, Qt::KeyboardModifiers) {
            guard([&] { setNull(key, qobject_cast<ui::DateEdit*>(s)); });
        };
    }
    deFirstDate->OnExit = [this](QObject* s) { guard([&] { deFirstDateExit(s); }); };
    deFirstDate->OnEditValueChanged = deFirstDate->OnExit;
    deLastDate->OnExit = [this](QObject* s) { guard([&] { deLastDateExit(s); }); };
    deLastDate->OnEditValueChanged = deLastDate->OnExit;
}

void TPeriod_EF::AfterConstruction() {
    TAbsEditFrame::AfterConstruction();
    const QDate today = host()->Today();
    deFirstDate->setDate(QDate(today.year(), today.month(), 1));
    deLastDate->setDate(today);
    chbFirstDate->setChecked(true);
    chbLastDate->setChecked(true);
}

void TPeriod_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    chbFirstDate->setEnabled(!value);
    chbLastDate->setEnabled(!value);
    deFirstDate->setReadOnly(value);
    deLastDate->setReadOnly(value);
}

bool TPeriod_EF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return !GetBeginDate().isValid() && !GetEndDate().isValid();
}

void TPeriod_EF::Clear() {
    chbFirstDate->setChecked(false);
    chbLastDate->setChecked(false);
    deFirstDate->clearValue();
    deLastDate->clearValue();
}

QDate TPeriod_EF::GetBeginDate() const {
    return chbFirstDate->isChecked() && !deFirstDate->isNull() ? deFirstDate->date() : QDate();
}

QDate TPeriod_EF::GetEndDate() const {
    return chbLastDate->isChecked() && !deLastDate->isNull() ? deLastDate->date() : QDate();
}

void TPeriod_EF::SetPeriod(TPeriod* period) {
    if (!period) return;
    deFirstDate->setDate(period->FirstDate());
    deLastDate->setDate(period->LastDate());
    chbFirstDate->setChecked(period->FirstDate().isValid());
    chbLastDate->setChecked(period->LastDate().isValid());
}

void TPeriod_EF::Save(TPeriod* period) {
    if (!period) return;
    period->SetPeriodType(ptCustom);
    period->SetFirstDate(GetBeginDate());
    period->SetLastDate(GetEndDate());
    period->Save();
}

void TPeriod_EF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    SaveLayoutDT(node->ItemByName(kFirst), deFirstDate);
    SaveLayoutDT(node->ItemByName(kLast), deLastDate);
    node->ItemByName(kFirstOn)->SetAsBoolean(chbFirstDate->isChecked());
    node->ItemByName(kLastOn)->SetAsBoolean(chbLastDate->isChecked());
}

void TPeriod_EF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists(kFirst)) RestoreLayoutDT(node->ItemByName(kFirst), deFirstDate);
    if (node->IsExists(kLast)) RestoreLayoutDT(node->ItemByName(kLast), deLastDate);
    if (node->IsExists(kFirstOn)) chbFirstDate->setChecked(node->ItemByName(kFirstOn)->GetAsBoolean());
    if (node->IsExists(kLastOn)) chbLastDate->setChecked(node->ItemByName(kLastOn)->GetAsBoolean());
}

void TPeriod_EF::adjust(ui::DateEdit* changed) {
    if (chbFirstDate->isChecked() && chbLastDate->isChecked()) AdjustDates(deFirstDate, deLastDate, changed);
}

void TPeriod_EF::chbFirstDateClick(QObject*) {
    if (chbFirstDate->isChecked()) adjust(deFirstDate);
}

void TPeriod_EF::chbLastDateClick(QObject*) {
    if (chbLastDate->isChecked()) adjust(deLastDate);
}

void TPeriod_EF::deDateEditing(QObject* sender) {
    if (sender == deFirstDate) chbFirstDate->setChecked(true);
    if (sender == deLastDate) chbLastDate->setChecked(true);
}

void TPeriod_EF::deFirstDateExit(QObject*) {
    adjust(deFirstDate);
}

void TPeriod_EF::deLastDateExit(QObject*) {
    adjust(deLastDate);
}

FRAMES_REGISTER(TPeriod_EF, "edit");

} // namespace frames
