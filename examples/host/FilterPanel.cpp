#include "FilterPanel.h"
#include "ExampleHost.h"
#include "PaymentList.h"
#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <frames/core/Guard.h>
#include <frames/core/Registry.h>
#include <frames/edit/EF_PeriodExt.h>
#include <frames/multi/LF_MultiAbs.h>

namespace example {

namespace {

// A date as an SQL literal; the text is made here, never taken from the user.
QString dateLiteral(const QDate& d) {
    return QStringLiteral("date '%1'").arg(d.toString(QStringLiteral("yyyy-MM-dd")));
}

// A period frame says "no date" with day 0 (30.12.1899) or an invalid date.
bool given(const QDate& d) {
    return d.isValid() && d > QDate(1899, 12, 30);
}

} // namespace

FilterPanel::FilterPanel(PaymentList* list) : TfmPersistentForm(list), list_(list) {
    setObjectName(QStringLiteral("FilterPanel"));
    setWindowTitle(QStringLiteral("Фильтр платёжных документов"));
    resize(520, 420);
    // Made by class name, as a host that loads forms from data would; the frames' owner is this
    // form, which learns of every change through NotifyChanged.
    auto& registry = frames::Registry::instance();
    period_ = qobject_cast<frames::TPeriodExt_EF*>(registry.create(QStringLiteral("TPeriodExt_EF"), this));
    clients_ = qobject_cast<frames::TMultiAbs_LF*>(registry.create(QStringLiteral("TMultiClient_LF"), this));
    condition_ = new QLabel(this);
    condition_->setObjectName(QStringLiteral("lbCondition"));
    condition_->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(QStringLiteral("Применить"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(period_);
    layout->addWidget(clients_, 1);
    layout->addWidget(condition_);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { frames::guard([this] { apply(); }); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

FilterPanel::~FilterPanel() {
    closeFrames();
}

void FilterPanel::prepare() {
    for (frames::TAbsEditFrame* f :
         {static_cast<frames::TAbsEditFrame*>(period_), static_cast<frames::TAbsEditFrame*>(clients_)}) {
        f->Init();
        f->RestoreLayout(list_->host()->layoutNode(objectName(), f->objectName()));
    }
    NotifyChanged();
}

QString FilterPanel::condition() {
    QStringList parts;
    if (!period_->IsEmpty()) {
        const QDate first = period_->GetBeginDate(), last = period_->GetEndDate();
        if (given(first)) parts << QStringLiteral("d.DOC_DATE >= ") + dateLiteral(first);
        if (given(last)) parts << QStringLiteral("d.DOC_DATE <= ") + dateLiteral(last);
    }
    // The keys the lookup holds (item 0 is its combo's own, "-1" for none), taken as numbers only.
    QStringList keys;
    for (const QString& item : clients_->ItemsList().split(QLatin1Char(','), Qt::SkipEmptyParts)) {
        bool ok = false;
        const qlonglong key = item.trimmed().toLongLong(&ok);
        if (ok && key != -1 && !keys.contains(QString::number(key))) keys << QString::number(key);
    }
    if (!keys.isEmpty()) parts << QStringLiteral("d.LINK_TO_CLIENT in (%1)").arg(keys.join(QLatin1Char(',')));
    return parts.join(QStringLiteral(" and "));
}

bool FilterPanel::apply() {
    if (!period_->IsEmpty() && period_->CheckDates() != 0) return false; // the frame told the user
    list_->setCondition(condition());
    accept();
    return true;
}

void FilterPanel::NotifyChanged() {
    TfmPersistentForm::NotifyChanged();
    frames::guard([this] {
        const QString c = condition();
        condition_->setText(c.isEmpty() ? QStringLiteral("Фильтр не задан: все документы.")
                                        : QStringLiteral("Условие: ") + c);
    });
}

void FilterPanel::closeFrames() {
    if (closed_) return;
    closed_ = true;
    for (frames::TAbsEditFrame* f :
         {static_cast<frames::TAbsEditFrame*>(period_), static_cast<frames::TAbsEditFrame*>(clients_)}) {
        frames::guard([&] { f->SaveLayout(list_->host()->layoutNode(objectName(), f->objectName())); });
        frames::guard([&] { f->FormClose(); });
    }
    list_->host()->saveLayout();
}

void FilterPanel::done(int result) {
    closeFrames();
    TfmPersistentForm::done(result);
}

} // namespace example
