#include "frames/edit/EF_PeriodExt.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiDates.h"
#include <QApplication>
#include <QHBoxLayout>
#include <QScopedValueRollback>

namespace frames {

namespace {

// True while SetSelectedPeriod writes the dates, so that the editors' events do not take the
// change for a date typed by hand.
bool IsSetPeriod = false;

bool inside(const QWidget* frame, const QWidget* w) {
    for (; w; w = w->parentWidget())
        if (w == frame) return true;
    return false;
}

ui::DateEdit* periodEditor(QWidget* parent, const QString& name) {
    auto* e = new ui::DateEdit(parent);
    e->setObjectName(name);
    e->setMasked(true);
    e->setSaveTime(false);
    e->setShowTime(false);
    e->setDateButtons(QString()); // one button: the calendar
    e->setToolTip(QStringLiteral("Выбор даты"));
    e->setMinimumWidth(100);
    return e;
}

} // namespace

QString TPeriodExt_EF::PeriodTooLongText() {
    return QStringLiteral("Задан слишком большой период. Автоматически\nбудет установлен период "
                          "максимальной длины.");
}

TPeriodExt_EF::TPeriodExt_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(520, 30);
    lbSelect->setText(QString());
    lbSelect->hide();
    pnPeriod = new QFrame(body());
    pnPeriod->setObjectName(QStringLiteral("pnPeriod"));
    pnPeriod->setFrameShape(QFrame::NoFrame);
    body()->layout()->addWidget(pnPeriod);
    auto* row = new QHBoxLayout(pnPeriod);
    row->setContentsMargins(0, 0, 0, 0);
    lbDate = new QLabel(QStringLiteral("Период "), pnPeriod);
    lbDate->setObjectName(QStringLiteral("lbDate"));
    cbPeriod = new QComboBox(pnPeriod);
    cbPeriod->setObjectName(QStringLiteral("cbPeriod"));
    cbPeriod->setEditable(false);
    cbPeriod->setMaxVisibleItems(12);
    cbPeriod->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    lbFrom = new QLabel(QStringLiteral("c"), pnPeriod);
    lbFrom->setObjectName(QStringLiteral("lbFrom"));
    deFirstDate = periodEditor(pnPeriod, QStringLiteral("deFirstDate"));
    lbTo = new QLabel(QStringLiteral("по"), pnPeriod);
    lbTo->setObjectName(QStringLiteral("lbTo"));
    deLastDate = periodEditor(pnPeriod, QStringLiteral("deLastDate"));
    lbDate->setBuddy(cbPeriod);
    lbFrom->setBuddy(deFirstDate);
    lbTo->setBuddy(deLastDate);
    row->addWidget(lbDate);
    row->addWidget(cbPeriod, 1);
    row->addWidget(lbFrom);
    row->addWidget(deFirstDate);
    row->addWidget(lbTo);
    row->addWidget(deLastDate);

    connect(cbPeriod, &QComboBox::activated, this, [this] { guard([&] { cbPeriodChange(cbPeriod); }); });
    for (ui::DateEdit* e : {deFirstDate, deLastDate}) {
        e->OnClick = [this](QObject* s) { guard([&] { deLastDateClick(s); }); };
        e->OnEditing = [this](QObject* s) { guard([&] { deFirstDateEditing(s); }); };
        e->OnKeyUp = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
            guard([&] { deFirstDateKeyUp(s, key, m); });
        };
        e->OnEditValueChanged = [this](QObject* s) { guard([&] { DateEdited(s); }); };
    }
    // The frame's exit: the focus left the frame (its editors' calendars count as inside).
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* old, QWidget* now) {
        if (old && inside(this, old) && !(now && inside(this, now))) guard([&] { FrameExit(this); });
    });
}

int TPeriodExt_EF::WorkPeriodLength() const {
    return TYConfig()->GetIntValue(WorkPeriodKey());
}

void TPeriodExt_EF::Init() {
    TAbsEditFrame::Init();
    QStringList texts;
    for (int i = 0; i < cbPeriod->count(); ++i) texts << cbPeriod->itemText(i);
    if (texts.join('\n').trimmed().isEmpty()) {
        cbPeriod->clear();
        const int m = maxPeriodLength_;
        QStringList items{PeriodTypeName(ptCustom), PeriodTypeName(ptToday), PeriodTypeName(ptYesterday)};
        if (m == 0 || m >= 7) items << PeriodTypeName(ptWeek) << PeriodTypeName(ptPrevWeek);
        if (m == 0 || m >= 30) items << PeriodTypeName(ptMonth) << PeriodTypeName(ptPrevMonth);
        if (m == 0 || m >= 90) items << PeriodTypeName(ptQuarter) << PeriodTypeName(ptPrevQuarter);
        if (m == 0 || m >= 365) items << PeriodTypeName(ptYear) << PeriodTypeName(ptPrevYear);
        const int n = WorkPeriodLength();
        if (n > 0) items << WorkPeriodName(n);
        cbPeriod->addItems(items);
    }
    ApplyStoredIndex();
}

void TPeriodExt_EF::ApplyStoredIndex() {
    cbPeriod->setCurrentIndex(storedIndex_ >= 0 && storedIndex_ < cbPeriod->count() ? storedIndex_ : -1);
    if (cbPeriod->currentIndex() != storedIndex_) {
        // The stored choice is not in this list (it was built with a smaller limit).
        storedIndex_ = 0;
        cbPeriod->setCurrentIndex(0);
    }
    SetSelectedPeriod();
}

void TPeriodExt_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    cbPeriod->setEnabled(!value);
    deFirstDate->setReadOnly(value);
    deLastDate->setReadOnly(value);
}

bool TPeriodExt_EF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return deFirstDate->isNull() && deLastDate->isNull();
}

void TPeriodExt_EF::Clear() {
    cbPeriod->setCurrentIndex(cbPeriod->count() > 0 ? 0 : -1);
    deFirstDate->clearValue();
    deLastDate->clearValue();
}

int TPeriodExt_EF::GetPeriodType() {
    const QString text = cbPeriod->currentText();
    for (int t = ptToday; t <= ptPrevYear; ++t)
        if (text == PeriodTypeName(t)) return t;
    if (text.left(14) == PeriodTypeName(ptWorkPeriod)) return ptWorkPeriod;
    return ptCustom;
}

void TPeriodExt_EF::SetPeriodType(int type) {
    const QString name = PeriodTypeName(type);
    int index = 0;
    for (int i = 0; i < cbPeriod->count(); ++i)
        if (cbPeriod->itemText(i).contains(name)) index = i;
    cbPeriod->setCurrentIndex(index);
}

void TPeriodExt_EF::SetSelectedPeriod() {
    QScopedValueRollback setting(IsSetPeriod, true);
    if (cbPeriod->currentIndex() == 0) return;
    QDate first, last;
    if (PeriodDates(GetPeriodType(), host()->Today(), WorkPeriodLength(), first, last)) {
        deFirstDate->setDate(first);
        deLastDate->setDate(last);
    }
}

QDate TPeriodExt_EF::editorDate(ui::DateEdit* edit) {
    const QString text = edit->editText();
    if (CheckDateSilent(text)) {
        const QDateTime typed = ui::parseDateTime(text);
        if (edit->isNull() || typed.date() != edit->date()) edit->setValue(typed);
    }
    return edit->isNull() ? DateZero() : edit->date();
}

QDate TPeriodExt_EF::GetBeginDate() {
    return editorDate(deFirstDate);
}

QDate TPeriodExt_EF::GetEndDate() {
    return editorDate(deLastDate);
}

void TPeriodExt_EF::CheckPeriodLength(bool silent) {
    const int m = maxPeriodLength_;
    if (m <= 0) return;
    const QDate today = host()->Today();
    const QDate b = GetBeginDate();
    QDate e = GetEndDate();
    if (e > today) e = today;
    if (b.daysTo(e) + 1 > m && b <= today) {
        if (!silent) TyWarningBox(PeriodTooLongText(), "Превышение длины периода");
        deFirstDate->setDate(e.addDays(1 - m));
    }
}

int TPeriodExt_EF::CheckDates(bool silent) {
    auto check = [silent](const QString& text) { return silent ? CheckDateSilent(text) : CheckDate(text); };
    if (!check(deFirstDate->editText())) return 1;
    if (!check(deLastDate->editText())) return 2;
    return 0;
}

void TPeriodExt_EF::SetPeriod(TPeriod* period) {
    if (!period) return;
    deFirstDate->setDate(period->FirstDate());
    deLastDate->setDate(period->LastDate());
    SetPeriodType(period->PeriodType());
    SetSelectedPeriod();
}

void TPeriodExt_EF::Save(TPeriod* period) {
    if (!period) return;
    period->SetPeriodType(GetPeriodType());
    period->SetFirstDate(GetBeginDate());
    period->SetLastDate(GetEndDate());
    period->Save();
}

void TPeriodExt_EF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    GetBeginDate(); // a typed date is taken first
    GetEndDate();
    SaveLayoutDT(node->ItemByName(QStringLiteral("FirstDate")), deFirstDate);
    SaveLayoutDT(node->ItemByName(QStringLiteral("LastDate")), deLastDate);
    node->ItemByName(QStringLiteral("cbPeriod.ItemIndex"))->SetAsInteger(cbPeriod->currentIndex());
}

void TPeriodExt_EF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists(QStringLiteral("FirstDate")))
        RestoreLayoutDT(node->ItemByName(QStringLiteral("FirstDate")), deFirstDate);
    if (node->IsExists(QStringLiteral("LastDate")))
        RestoreLayoutDT(node->ItemByName(QStringLiteral("LastDate")), deLastDate);
    if (node->IsExists(QStringLiteral("cbPeriod.ItemIndex"))) {
        storedIndex_ = node->ItemByName(QStringLiteral("cbPeriod.ItemIndex"))->GetAsInteger();
        restoredIndex_ = true;
        // Hosts restore the layout after Init, when the list is already built: the stored choice
        // takes effect at once. Before Init it waits for Init.
        if (cbPeriod->count() > 0) ApplyStoredIndex();
    }
}

void TPeriodExt_EF::cbPeriodChange(QObject*) {
    SetSelectedPeriod();
}

void TPeriodExt_EF::deFirstDateEditing(QObject*) {
    if (!IsSetPeriod) cbPeriod->setCurrentIndex(0);
}

void TPeriodExt_EF::deLastDateClick(QObject*) {
    if (!IsSetPeriod) cbPeriod->setCurrentIndex(0);
}

void TPeriodExt_EF::deFirstDateKeyUp(QObject* sender, int& key, Qt::KeyboardModifiers) {
    // Each editor empties itself (the handler serves both).
    auto* edit = qobject_cast<ui::DateEdit*>(sender);
    setNull(key, edit ? edit : deFirstDate);
}

void TPeriodExt_EF::FrameExit(QObject*) {
    setRefreshcx(deFirstDate);
    setRefreshcx(deLastDate);
}

void TPeriodExt_EF::FrameMouseLeave(QObject*) {
    setRefreshcx(deFirstDate);
    setRefreshcx(deLastDate);
}

void TPeriodExt_EF::leaveEvent(QEvent* e) {
    TAbsEditFrame::leaveEvent(e);
    guard([&] { FrameMouseLeave(this); });
}

FRAMES_REGISTER(TPeriodExt_EF, "edit");

} // namespace frames
