#include "host/FilterPanel.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/SetFilter_EF.h"
#include "frames/core/TyapiDates.h"
#include "frames/core/WaitCursor.h"
#include "frames/edit/EF_Period.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/media/EF_ReportChart.h"
#include "host/DocumentForms.h"
#include "host/HostImpl.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DateEdit.h"
#include <QAbstractButton>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>

namespace workbench {

namespace {

enum Column { ColFilter, ColField, ColCondition, ColKeys };

QString dayText(const QDate& d) {
    return d.toString(QStringLiteral("dd.MM.yyyy"));
}

// A period frame's first and last date; false when the frame is not a period frame. A date that
// is not given comes back invalid.
bool periodDates(frames::TAbsEditFrame* f, QDate& first, QDate& last) {
    if (auto* p = qobject_cast<frames::TPeriodExt_EF*>(f)) {
        // The dates the editors hold (GetBeginDate would also take a text being typed).
        first = p->deFirstDate->isNull() ? QDate() : p->deFirstDate->date();
        last = p->deLastDate->isNull() ? QDate() : p->deLastDate->date();
    } else if (auto* p = qobject_cast<frames::TPeriod_EF*>(f)) {
        first = p->GetBeginDate();
        last = p->GetEndDate();
    } else {
        return false;
    }
    // Day 0 is how a period frame says "no date".
    if (first.isValid() && first <= frames::DateZero()) first = QDate();
    if (last.isValid() && last <= frames::DateZero()) last = QDate();
    return true;
}

} // namespace

FilterPanelForm::FilterPanelForm(HostImpl* host, QWidget* parent) : TfmPersistentForm(parent), host_(host) {
    setObjectName(QStringLiteral("FilterPanel"));
    setWindowTitle(QStringLiteral("Панель фильтров: платёжные документы"));
    resize(1100, 900);
    hosted_ = new HostedFrames(this, [this](const QString& name) { return layoutNode(name); });

    // The frames sit on a plain panel in a scroll area; their owner is this form.
    scroll_ = new QScrollArea;
    scroll_->setObjectName(QStringLiteral("sbFilters"));
    scroll_->setWidgetResizable(true);
    body_ = new QWidget;
    body_->setObjectName(QStringLiteral("pnFilters"));
    new QGridLayout(body_);
    scroll_->setWidget(body_);

    results_ = new QTableWidget(0, 4);
    results_->setObjectName(QStringLiteral("twConditions"));
    results_->setHorizontalHeaderLabels({QStringLiteral("Фильтр"), QStringLiteral("Колонка"),
                                         QStringLiteral("Условие SQL(поле)"), QStringLiteral("Ключи")});
    results_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    results_->verticalHeader()->setVisible(false);
    results_->horizontalHeader()->setStretchLastSection(true);
    results_->setColumnWidth(ColFilter, 150);
    results_->setColumnWidth(ColField, 90);
    results_->setColumnWidth(ColCondition, 430);

    // The report's result as a chart: payments by client of the documents the filters leave.
    chartRows_ = new frames::db::DataSet(this);
    chartRows_->setObjectName(QStringLiteral("dsChartRows"));
    chartRows_->setDatabase(host_->RvDatabase());
    chartRows_->setTransaction(host_->pfReadTransaction());
    chartSource_ = new frames::db::DataSource(chartRows_, this);
    chart_ =
        qobject_cast<frames::TReportChart_EF*>(frames::Registry::instance().create("TReportChart_EF", this));
    chart_->setObjectName(QStringLiteral("TReportChart_EF"));

    auto* split = new QSplitter(Qt::Vertical, this);
    split->addWidget(scroll_);
    split->addWidget(results_);
    split->addWidget(chart_);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    split->setStretchFactor(2, 2);
    split->setSizes({420, 200, 300});

    query_ = new QPlainTextEdit(this);
    query_->setObjectName(QStringLiteral("edQuery"));
    query_->setReadOnly(true);
    query_->setMaximumHeight(70);
    auto* btRun = new QPushButton(QStringLiteral("Выполнить запрос"), this);
    btRun->setObjectName(QStringLiteral("btRun"));
    setActionIcon(btRun, "system-run", QStyle::SP_MediaPlay);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lbCount"));
    auto* btClose = new QPushButton(QStringLiteral("Закрыть"), this);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(btRun);
    bottom->addWidget(count_, 1);
    bottom->addWidget(btClose);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(split, 1);
    layout->addWidget(new QLabel(QStringLiteral("Запрос отчёта:"), this));
    layout->addWidget(query_);
    layout->addLayout(bottom);

    connect(btRun, &QPushButton::clicked, this, [this] { frames::guard([this] { runQuery(); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);
}

FilterPanelForm::~FilterPanelForm() {
    closeFrames();
}

frames::TConfigItem* FilterPanelForm::layoutNode(const QString& className) const {
    return host_->LayoutRoot()->ItemByName(objectName())->ItemByName(className);
}

void FilterPanelForm::prepare() {
    const frames::WaitCursor wait;
    auto* grid = static_cast<QGridLayout*>(body_->layout());
    int i = 0;
    for (const DocumentFilter& def : documentFilters()) {
        auto* caption = new QLabel(QStringLiteral("%1 → %2").arg(def.className, def.column), body_);
        caption->setObjectName(QStringLiteral("lb") + def.className);
        caption->setStyleSheet(QStringLiteral("color: palette(mid)"));
        frames::TAbsEditFrame* f = frames::Registry::instance().create(def.className, body_);
        f->setObjectName(def.className);
        filters_.push_back({&def, f});
        auto* cell = new QVBoxLayout;
        cell->addWidget(caption);
        cell->addWidget(f);
        cell->addStretch(1);
        grid->addLayout(cell, i / 2, i % 2);
        ++i;
        if (!def.description.isEmpty())
            frames::FormLoader::applyDescription(f, def.description, def.className);
        hosted_->open(f);
        followChanges(f);
    }
    grid->setRowStretch(grid->rowCount(), 1);
    hosted_->open(chart_);
    chart_->SetDataSource(chartSource_);
    results_->setRowCount(int(filters_.size()));
    updateResults();
}

void FilterPanelForm::followChanges(frames::TAbsEditFrame* f) {
    // The pane follows the changes a user makes: a value taken by an editor, a choice in a list,
    // a ticked box, a date shown. Text still being typed into a number is left alone, since
    // asking a filter for its condition takes that text as its value.
    auto later = [this] { scheduleUpdate(); };
    if (auto* box = qobject_cast<frames::TSetFilter_EF*>(f))
        connect(box, &frames::TSetFilter_EF::filterChanged, this, later);
    for (auto* c : f->findChildren<QComboBox*>()) connect(c, &QComboBox::currentIndexChanged, this, later);
    for (auto* b : f->findChildren<QAbstractButton*>()) connect(b, &QAbstractButton::toggled, this, later);
    for (auto* d : f->findChildren<frames::ui::DateEdit*>()) connect(d, &QLineEdit::textChanged, this, later);
    for (auto* n : f->findChildren<frames::ui::CalcEdit*>())
        connect(n, &frames::ui::CalcEdit::editValueChanged, this, later);
}

void FilterPanelForm::scheduleUpdate() {
    if (updatePending_) return;
    updatePending_ = true;
    QTimer::singleShot(0, this, [this] {
        updatePending_ = false;
        if (!closed_) frames::guard([this] { updateResults(); });
    });
}

frames::TAbsEditFrame* FilterPanelForm::frame(const QString& className) const {
    for (const Filter& f : filters_)
        if (f.def->className == className) return f.frame;
    return nullptr;
}

QString FilterPanelForm::condition(const Filter& f) const {
    if (auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame)) return box->SQL(f.def->column);
    QDate first, last;
    if (!periodDates(f.frame, first, last) || f.frame->IsEmpty()) return {};
    return frames::DateRangeSql(f.def->column, first, last);
}

QString FilterPanelForm::keys(const Filter& f) const {
    if (auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame))
        return QStringLiteral("ItemsCount = %1; ItemsList = «%2»")
            .arg(box->ItemsCount())
            .arg(box->ItemsList());
    QDate first, last;
    if (!periodDates(f.frame, first, last)) return {};
    return QStringLiteral("c %1 по %2")
        .arg(first.isValid() ? dayText(first) : QStringLiteral("…"),
             last.isValid() ? dayText(last) : QStringLiteral("…"));
}

QString FilterPanelForm::whereClause() const {
    QStringList conditions;
    for (const Filter& f : filters_) {
        const QString c = condition(f);
        if (!c.isEmpty()) conditions << c;
    }
    return conditions.join(QStringLiteral("\n  and "));
}

QString FilterPanelForm::countSql() const {
    const QString where = whereClause();
    QString sql = QStringLiteral("select count(*) from PAYMENT_DOC");
    if (!where.isEmpty()) sql += QStringLiteral("\nwhere ") + where;
    return sql;
}

QString FilterPanelForm::chartSql() const {
    const QString where = whereClause();
    QString docs = QStringLiteral("select LINK_TO_CLIENT, AMOUNT from PAYMENT_DOC");
    if (!where.isEmpty()) docs += QStringLiteral(" where ") + where;
    return QStringLiteral("select coalesce(c.NAME_CLIENTS, 'Без клиента') as FIRM_NAME,\n"
                          "  cast(sum(d.AMOUNT) as double precision) as PAY_RUB\n"
                          "from (%1) d left join CLIENTS c on c.ID_CLIENTS = d.LINK_TO_CLIENT\n"
                          "group by 1 order by 2 desc")
        .arg(docs);
}

void FilterPanelForm::updateResults() {
    for (int row = 0; row < int(filters_.size()); ++row) {
        const Filter& f = filters_[size_t(row)];
        const QString texts[] = {f.def->className, f.def->column, condition(f), keys(f)};
        for (int col = 0; col < 4; ++col) {
            QTableWidgetItem* item = results_->item(row, col);
            if (!item) results_->setItem(row, col, item = new QTableWidgetItem);
            if (item->text() != texts[col]) {
                item->setText(texts[col]);
                item->setToolTip(texts[col]);
            }
        }
    }
    const QString sql = countSql();
    if (query_->toPlainText() != sql) query_->setPlainText(sql);
}

int FilterPanelForm::runQuery() {
    updateResults();
    for (const Filter& f : filters_) {
        auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame);
        if (box && !box->IsCorrect()) {
            host_->WarningBox(QStringLiteral("Фильтр «%1» задан неверно: исправьте его или снимите отметку.")
                                  .arg(box->GroupBox->title().trimmed()));
            box->SetFocus();
            return -1;
        }
    }
    const frames::WaitCursor wait;
    lastCount_ = -1;
    count_->setText(QString());
    frames::db::Query q(host_->RvDatabase(), host_->pfReadTransaction());
    q.setSql(countSql());
    q.open();
    lastCount_ = q.next() ? q.value(0).toInt() : 0;
    q.close();
    count_->setText(QStringLiteral("Документов по условиям: %1").arg(lastCount_));
    chartRows_->close();
    chartRows_->setSelectSql(chartSql());
    chartRows_->open();
    return lastCount_;
}

void FilterPanelForm::focusFilter(const QString& className) {
    if (frames::TAbsEditFrame* f = frame(className)) {
        scroll_->ensureWidgetVisible(f);
        frames::guard([f] { f->SetFocus(); });
    }
}

void FilterPanelForm::closeFrames() {
    if (closed_) return;
    closed_ = true;
    hosted_->close();
    host_->saveLayout();
}

void FilterPanelForm::done(int r) {
    closeFrames();
    TfmPersistentForm::done(r);
}

} // namespace workbench
