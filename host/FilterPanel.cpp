#include "host/FilterPanel.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/SetFilter_EF.h"
#include "frames/core/Tyapi.h"
#include "frames/core/TyapiDates.h"
#include "frames/core/WaitCursor.h"
#include "frames/edit/EF_Period.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/filter/FF_CardPermission.h"
#include "frames/media/EF_ReportChart.h"
#include "host/HostImpl.h"
#include "host/TableStatements.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DateEdit.h"
#include <QAbstractButton>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLocale>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QSplitter>
#include <QTableWidget>
#include <QTimer>
#include <QVBoxLayout>
#include <stdexcept>

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

FilterPanelForm::FilterPanelForm(HostImpl* host, QWidget* parent)
    : FilterPanelForm(host, paymentReport(), parent) {}

FilterPanelForm::FilterPanelForm(HostImpl* host, const ReportDefinition& report, QWidget* parent)
    : TfmPersistentForm(parent), host_(host), report_(report) {
    setObjectName(report_.name);
    setWindowTitle(report_.title);
    resize(1100, 900);
    hosted_ = new HostedFrames(this, [this](const QString& name) { return layoutNode(name); });
    build();
}

void FilterPanelForm::build() {
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

    auto* split = new QSplitter(Qt::Vertical, this);
    split->setObjectName(QStringLiteral("spReport"));
    split->addWidget(scroll_);
    split->addWidget(results_);
    auto* output = new QSplitter(Qt::Horizontal, split);
    output->setObjectName(QStringLiteral("spOutput"));
    if (!report_.rowsSql.isEmpty()) {
        // The report's rows: what the filters leave, with the totals under them.
        rows_ = new frames::db::DataSet(this);
        rows_->setObjectName(QStringLiteral("dsRows"));
        rows_->setDatabase(host_->RvDatabase());
        rows_->setTransaction(host_->pfReadTransaction());
        rowsSource_ = new frames::db::DataSource(rows_, this);
        rowsGrid_ = new frames::ui::DBGrid(output);
        rowsGrid_->setObjectName(QStringLiteral("grRows"));
        rowsGrid_->setReadOnly(true);
        rowsGrid_->setDataSource(rowsSource_);
        output->addWidget(rowsGrid_);
    }
    if (!report_.chartSql.isEmpty()) {
        // The result as a chart.
        chartRows_ = new frames::db::DataSet(this);
        chartRows_->setObjectName(QStringLiteral("dsChartRows"));
        chartRows_->setDatabase(host_->RvDatabase());
        chartRows_->setTransaction(host_->pfReadTransaction());
        chartSource_ = new frames::db::DataSource(chartRows_, this);
        chart_ = qobject_cast<frames::TReportChart_EF*>(
            frames::Registry::instance().create(QStringLiteral("TReportChart_EF"), output));
        chart_->setObjectName(QStringLiteral("TReportChart_EF"));
        if (!report_.chartTitle.isEmpty()) chart_->DBChart->chart()->setTitle(report_.chartTitle);
        output->addWidget(chart_);
    }
    // The rows, when the report has them, get the larger part.
    if (rowsGrid_ && chart_) output->setSizes({700, 400});
    split->addWidget(output);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    split->setStretchFactor(2, 2);
    split->setSizes({420, 200, 300});

    query_ = new QPlainTextEdit(this);
    query_->setObjectName(QStringLiteral("edQuery"));
    query_->setReadOnly(true);
    query_->setMaximumHeight(90);
    auto* btRun = new QPushButton(QStringLiteral("Выполнить"), this);
    btRun->setObjectName(QStringLiteral("btRun"));
    setActionIcon(btRun, "system-run", QStyle::SP_MediaPlay);
    count_ = new QLabel(this);
    count_->setObjectName(QStringLiteral("lbCount"));
    count_->setTextInteractionFlags(Qt::TextSelectableByMouse);
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

frames::TConfigItem* FilterPanelForm::layoutNode(const QString& name) const {
    return host_->LayoutRoot()->ItemByName(objectName())->ItemByName(name);
}

QWidget* FilterPanelForm::boxOf(const ReportFilter& def, frames::TAbsEditFrame* f) {
    // The filter's frame under a line that says what it filters, or why it filters nothing here.
    auto* cell = new QWidget(body_);
    cell->setObjectName(QStringLiteral("pn") + def.className);
    auto* caption = new QLabel(cell);
    caption->setObjectName(QStringLiteral("lb") + def.className);
    caption->setWordWrap(true);
    if (!f) {
        caption->setText(QStringLiteral("%1: класс не зарегистрирован в пакете").arg(def.className));
        caption->setStyleSheet(QStringLiteral("color: #a00000"));
    } else if (!def.affectsReport()) {
        caption->setText(QStringLiteral("%1 — не влияет на этот отчёт: %2").arg(def.className, def.none));
        caption->setStyleSheet(QStringLiteral("color: #a05000"));
    } else {
        caption->setText(QStringLiteral("%1 → %2").arg(
            def.className, def.column.isEmpty() ? QStringLiteral("выбор на сервере") : def.column));
        caption->setStyleSheet(QStringLiteral("color: palette(mid)"));
    }
    auto* box = new QVBoxLayout(cell);
    box->setContentsMargins(0, 0, 0, 0);
    box->addWidget(caption);
    if (f) {
        f->setParent(cell);
        box->addWidget(f);
    }
    box->addStretch(1);
    return cell;
}

void FilterPanelForm::prepare() {
    const frames::WaitCursor wait;
    // Nothing of this report kept for the user yet: the period starts where the data is.
    const frames::TConfigItem* kept = host_->LayoutRoot()->Find(objectName());
    const bool firstOpen = !kept || kept->Count() == 0;
    auto* grid = static_cast<QGridLayout*>(body_->layout());
    const int columns = report_.filters.size() > 10 ? 3 : 2;
    int row = 0, col = 0;
    for (const ReportFilter& def : report_.filters) {
        frames::TAbsEditFrame* f = nullptr;
        if (frames::Registry::instance().find(def.className)) {
            f = frames::Registry::instance().create(def.className, body_);
            f->setObjectName(def.className);
        } else {
            missing_ << def.className;
        }
        QWidget* cell = boxOf(def, f);
        if (def.wide && col > 0) {
            ++row;
            col = 0;
        }
        grid->addWidget(cell, row, col, 1, def.wide ? columns : 1);
        col = def.wide ? columns : col + 1;
        if (col >= columns) {
            ++row;
            col = 0;
        }
        if (!f) continue;
        filters_.push_back({&def, f});
        if (!def.description.isEmpty())
            frames::FormLoader::applyDescription(f, def.description, def.className);
        hosted_->open(f);
        followChanges(f);
    }
    grid->setRowStretch(grid->rowCount(), 1);
    if (firstOpen && !report_.firstPeriodSql.isEmpty()) showFirstPeriod();
    if (chart_) {
        hosted_->open(chart_);
        chart_->SetDataSource(chartSource_);
    }
    if (rowsGrid_) {
        QList<GridColumn> columnsOfRows;
        for (const auto& c : report_.rowColumns) columnsOfRows.append({c.field, c.caption, c.width});
        setGridColumns(rowsGrid_, columnsOfRows);
    }
    results_->setRowCount(int(filters_.size()));
    updateResults();
}

void FilterPanelForm::showFirstPeriod() {
    auto* period = qobject_cast<frames::TPeriodExt_EF*>(frame(QStringLiteral("TPeriodExt_EF")));
    if (!period) return;
    frames::db::Query q(host_->RvDatabase(), host_->pfReadTransaction());
    q.setSql(report_.firstPeriodSql);
    host_->pfReadTransaction()->ensureStarted();
    q.open();
    if (!q.next() || q.value(0).isNull() || q.value(1).isNull()) return;
    period->deFirstDate->setDate(q.value(0).toDate());
    period->deLastDate->setDate(q.value(1).toDate());
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
    const ReportFilter& def = *f.def;
    if (!def.affectsReport()) return {};
    if (auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame)) {
        if (!def.selection.isEmpty()) {
            // The user's choice for this panel's kind, kept on the server.
            if (!box->Checked()) return {};
            const QVariant kind = box->property("Kind");
            QString sql = def.selection;
            sql.replace(QLatin1String("%USER%"), QString::number(frames::CUR_USER));
            sql.replace(QLatin1String("%KIND%"), QString::number(kind.isValid() ? kind.toInt() : def.kind));
            return sql;
        }
        const QString sql = box->SQL(def.column);
        if (sql.isEmpty() || def.sqlTemplate.isEmpty()) return sql;
        // The box's condition goes in last and once: a user's text in it is never taken for a
        // placeholder.
        const qsizetype at = def.sqlTemplate.indexOf(QLatin1String("%SQL%"));
        return def.sqlTemplate.left(at) + QLatin1Char('(') + sql + QLatin1Char(')') +
               def.sqlTemplate.mid(at + 5);
    }
    QDate first, last;
    if (!periodDates(f.frame, first, last) || f.frame->IsEmpty()) return {};
    return frames::DateRangeSql(def.column, first, last);
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
        if (!c.isEmpty()) conditions << QLatin1Char('(') + c + QLatin1Char(')');
    }
    return conditions.join(QStringLiteral("\n  and "));
}

QString FilterPanelForm::countSql() const {
    return report_.statement(report_.totalsSql, whereClause());
}

QString FilterPanelForm::rowsSql() const {
    return report_.rowsSql.isEmpty() ? QString() : report_.statement(report_.rowsSql, whereClause());
}

QString FilterPanelForm::chartSql() const {
    return report_.chartSql.isEmpty() ? QString() : report_.statement(report_.chartSql, whereClause());
}

void FilterPanelForm::updateResults() {
    for (int row = 0; row < int(filters_.size()); ++row) {
        const Filter& f = filters_[size_t(row)];
        const ReportFilter& def = *f.def;
        const QString field = !def.affectsReport()      ? QStringLiteral("—")
                              : def.selection.isEmpty() ? def.column
                                                        : QStringLiteral("выбор на сервере");
        const QString cond =
            def.affectsReport() ? condition(f) : QStringLiteral("не влияет на этот отчёт: ") + def.none;
        const QString texts[] = {def.className, field, cond, keys(f)};
        for (int col = 0; col < 4; ++col) {
            QTableWidgetItem* item = results_->item(row, col);
            if (!item) results_->setItem(row, col, item = new QTableWidgetItem);
            if (item->text() != texts[col]) {
                item->setText(texts[col]);
                item->setToolTip(texts[col]);
            }
        }
    }
    QString sql = countSql();
    if (!report_.rowsSql.isEmpty()) sql += QStringLiteral(";\n\n") + rowsSql();
    if (query_->toPlainText() != sql) query_->setPlainText(sql);
}

int FilterPanelForm::runQuery() {
    updateResults();
    // Whatever happens next, the result of an earlier run is not shown as this one's.
    lastCount_ = -1;
    totals_.clear();
    count_->setText(QString());
    for (const Filter& f : filters_) {
        auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame);
        if (box && box->Checked() && !box->IsCorrect()) {
            host_->WarningBox(QStringLiteral("Фильтр «%1» задан неверно: исправьте его или снимите отметку.")
                                  .arg(box->GroupBox->title().trimmed()));
            box->SetFocus();
            return -1;
        }
    }
    // A box that keeps its choice in the frame stores it on the server, where the statement
    // reads it; when it cannot, it has told the user why and nothing runs.
    if (!applyChanges()) return -1;
    const frames::WaitCursor wait;
    frames::db::Query q(host_->RvDatabase(), host_->pfReadTransaction());
    q.setSql(countSql());
    q.open();
    const bool any = q.next();
    for (int i = 0; i < report_.totalTitles.size(); ++i) totals_ << (any ? q.value(i) : QVariant());
    q.close();
    lastCount_ = totals_.value(0).toInt();
    QStringList shown;
    const QLocale ru(QLocale::Russian, QLocale::Russia);
    for (int i = 0; i < report_.totalTitles.size(); ++i) {
        const QVariant& v = totals_[i];
        const QString number = v.isNull()                        ? QStringLiteral("0")
                               : v.typeId() == QMetaType::Double ? ru.toString(v.toDouble(), 'f', 2)
                               : v.typeId() == QMetaType::Int || v.typeId() == QMetaType::LongLong
                                   ? ru.toString(v.toLongLong())
                                   : v.toString();
        shown << QStringLiteral("%1: %2").arg(report_.totalTitles[i], number);
    }
    count_->setText(shown.join(QStringLiteral("; ")));
    if (rows_) {
        rows_->close();
        rows_->setSelectSql(rowsSql());
        rows_->open();
    }
    if (chartRows_) {
        chartRows_->close();
        chartRows_->setSelectSql(chartSql());
        chartRows_->open();
    }
    return lastCount_;
}

void FilterPanelForm::focusFilter(const QString& className) {
    if (frames::TAbsEditFrame* f = frame(className)) {
        scroll_->ensureWidgetVisible(f);
        frames::guard([f] { f->SetFocus(); });
    }
}

bool FilterPanelForm::applyChanges() {
    for (const Filter& f : filters_) {
        auto* matrix = qobject_cast<frames::TCardPermission_FF*>(f.frame);
        if (!f.def->apply || !matrix || !matrix->Checked()) continue;
        if (matrix->Modified() && !matrix->ApplyChange()) return false;
    }
    return true;
}

void FilterPanelForm::closeFrames() {
    if (closed_) return;
    closed_ = true;
    // A box left off has no summary row: its presence would switch the box on next time.
    std::vector<std::pair<QString, int>> off;
    for (const Filter& f : filters_) {
        auto* box = qobject_cast<frames::TSetFilter_EF*>(f.frame);
        if (box && !f.def->summary.isEmpty() && !box->Checked()) {
            const QVariant kind = box->property("Kind");
            off.emplace_back(f.def->summary, kind.isValid() ? kind.toInt() : f.def->kind);
        }
    }
    hosted_->close();
    host_->saveLayout();
    for (const auto& [table, kind] : off)
        frames::guard([&] {
            frames::QvSqlExec({QStringLiteral("delete from ") + table + QStringLiteral(" where ID_USER = "),
                               frames::CUR_USER, QStringLiteral(" and KIND = "), kind});
        });
}

void FilterPanelForm::done(int r) {
    closeFrames();
    TfmPersistentForm::done(r);
}

} // namespace workbench
