#include "frames/media/EF_ReportChart.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "platform/db/AbstractDataSet.h"
#include "platform/db/DataSource.h"
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPieSeries>
#include <QPieSlice>
#include <QVBoxLayout>
#include <QValueAxis>
#include <algorithm>
#include <cmath>

namespace frames {

namespace {
const QString Remaining = QStringLiteral("Остальное");
} // namespace

TReportChart_EF::TReportChart_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(450, 360);
    SetCaption(QString());
    lbSelect->hide();

    pnChartParams = new QWidget(body());
    pnChartParams->setObjectName("pnChartParams");
    auto* params = new QVBoxLayout(pnChartParams);
    params->setContentsMargins(0, 0, 0, 0);
    auto row = [&](const char* name, QLabel*& label, const QString& text) {
        auto* panel = new QWidget(pnChartParams);
        panel->setObjectName(name);
        auto* layout = new QHBoxLayout(panel);
        layout->setContentsMargins(0, 0, 0, 0);
        label = new QLabel(text, panel);
        layout->addWidget(label);
        params->addWidget(panel);
        return panel;
    };
    auto editor = [&](QWidget* panel, const char* name, double value) {
        auto* f = static_cast<TCalcEdt_Frame*>(Registry::instance().create("TCalcEdt_Frame", panel));
        f->setObjectName(name);
        f->SetCaption(QString());
        f->lbSelect->hide();
        f->layout()->setContentsMargins(0, 0, 0, 0);
        f->CalcEdit->setImmediatePost(true);
        f->SetValue(value);
        panel->layout()->addWidget(f);
        return f;
    };
    pnRound = row("pnRound", lbGroup, QStringLiteral("Группировать с % ниже"));
    lbGroup->setObjectName("lbGroup");
    ceProcVal = editor(pnRound, "ceProcVal", 5.0);
    ceProcVal->SetDisplayFormat(QString());
    pnChartType = row("pnChartType", lbChartType, QStringLiteral("Тип диаграммы"));
    lbChartType->setObjectName("lbChartType");
    cbChartType = new QComboBox(pnChartType);
    cbChartType->setObjectName("cbChartType");
    cbChartType->addItems({QStringLiteral("Круговая"), QStringLiteral("Столбчатая")});
    cbChartType->setCurrentIndex(0);
    pnChartType->layout()->addWidget(cbChartType);
    pnBrick = row("pnBrick", lbBrick, QStringLiteral("Выводить первые"));
    lbBrick->setObjectName("lbBrick");
    ceNumVal = editor(pnBrick, "ceNumVal", 10.0);
    ceNumVal->SetDisplayFormat(QStringLiteral("0"));

    auto* chart = new QChart;
    chart->setTitle(QStringLiteral("Заголовок"));
    Series1 = new QPieSeries(chart);
    Series1->setObjectName("Series1");
    Series2 = new QBarSeries(chart);
    Series2->setObjectName("Series2");
    bars_ = new QBarSet(ValueField, Series2);
    Series2->append(bars_);
    chart->addSeries(Series1);
    chart->addSeries(Series2);
    axisX_ = new QBarCategoryAxis(chart);
    axisX_->setLabelsAngle(-90);
    axisX_->setGridLineVisible(false);
    axisY_ = new QValueAxis(chart);
    axisY_->setLabelFormat(QStringLiteral("%.0f"));
    chart->addAxis(axisX_, Qt::AlignBottom);
    chart->addAxis(axisY_, Qt::AlignLeft);
    Series2->attachAxis(axisX_);
    Series2->attachAxis(axisY_);
    DBChart = new QChartView(chart, body());
    DBChart->setObjectName("DBChart");
    DBChart->setRenderHint(QPainter::Antialiasing);
    DBChart->setRubberBand(QChartView::NoRubberBand); // no zoom, no panning
    // Names beside the pie rather than above it, so that a low chart still shows the pie.
    chart->legend()->setAlignment(Qt::AlignRight);
    DBChart->setMinimumHeight(220);

    if (auto* box = qobject_cast<QBoxLayout*>(body()->layout())) {
        box->setDirection(QBoxLayout::TopToBottom);
        box->addWidget(pnChartParams);
        box->addWidget(DBChart, 1);
    } else {
        body()->layout()->addWidget(pnChartParams);
        body()->layout()->addWidget(DBChart);
    }

    ceProcVal->CalcEdit->OnChange = [this](QObject* s) {
        guard([&] { ceProcValCalcEditPropertiesChange(s); });
    };
    ceProcVal->CalcEdit->OnEditValueChanged = [this](QObject* s) {
        guard([&] { ceProcValCalcEditPropertiesEditValueChanged(s); });
    };
    ceNumVal->CalcEdit->OnChange = [this](QObject* s) {
        guard([&] { ceNumValCalcEditPropertiesChange(s); });
    };
    ceNumVal->CalcEdit->OnExit = [this](QObject* s) { guard([&] { ceNumValCalcEditExit(s); }); };
    ceNumVal->CalcEdit->lineEdit()->installEventFilter(this);
    connect(cbChartType, &QComboBox::currentIndexChanged, this,
            [this] { guard([&] { cbChartTypeChange(cbChartType); }); });
    showChartType();
}

TReportChart_EF::~TReportChart_EF() = default;

void TReportChart_EF::Init() {
    TAbsEditFrame::Init();
    showChartType();
}

void TReportChart_EF::SetDataSource(db::DataSource* source) {
    for (const auto& c : conns_) disconnect(c);
    conns_.clear();
    source_ = source;
    if (source) {
        const auto refresh = [this] { guard([&] { RefreshChart(); }); };
        conns_ << connect(source, &db::DataSource::dataSetChanged, this, refresh);
        conns_ << connect(source, &db::DataSource::dataSetReplaced, this, refresh);
    }
    RefreshChart();
}

void TReportChart_EF::RefreshChart() {
    rows_.clear();
    db::AbstractDataSet* ds = source_ ? source_->dataSet() : nullptr;
    if (ds && ds->active()) {
        const int label = ds->fieldByName(LabelField)->index();
        const int value = ds->fieldByName(ValueField)->index();
        for (int r = 0; r < ds->recordCount(); ++r)
            rows_.append({ds->valueAt(r, label).toString(), ds->valueAt(r, value).toDouble()});
    }
    QStringList categories;
    QList<qreal> values;
    for (const auto& [label, value] : rows_) {
        // Two rows may carry one name: the axis needs each category once.
        QString category = label;
        for (int n = 2; categories.contains(category); ++n)
            category = QStringLiteral("%1 (%2)").arg(label).arg(n);
        categories << category;
        values << value;
    }
    bars_->remove(0, bars_->count());
    bars_->append(values);
    axisX_->clear();
    axisX_->append(categories);
    const auto [lo, hi] = std::minmax_element(values.begin(), values.end());
    axisY_->setRange(values.isEmpty() ? 0 : std::min(0.0, double(*lo)),
                     values.isEmpty() ? 1 : std::max(1.0, double(*hi)));
    applyGrouping();
    applyBarLimit();
}

QList<QPair<QString, double>> TReportChart_EF::PieSlices() const {
    QList<QPair<QString, double>> out;
    for (QPieSlice* s : Series1->slices()) out.append({s->property("name").toString(), s->value()});
    return out;
}

void TReportChart_EF::applyGrouping() {
    // Shares sorted from the largest; those below P percent go together into one slice.
    Series1->clear();
    QList<QPair<QString, double>> shares;
    double total = 0;
    for (const auto& r : rows_)
        if (r.second > 0) {
            shares.append(r);
            total += r.second;
        }
    std::stable_sort(shares.begin(), shares.end(),
                     [](const auto& a, const auto& b) { return a.second > b.second; });
    const double p = ceProcVal->GetValue();
    double remaining = 0;
    auto add = [&](const QString& name, double value) {
        const double percent = total > 0 ? value * 100 / total : 0;
        QPieSlice* slice = Series1->append(
            QStringLiteral("%1: %2%").arg(name, QLocale(QLocale::Russian).toString(percent, 'f', 1)), value);
        slice->setProperty("name", name);
        slice->setLabelVisible(true);
    };
    for (const auto& [name, value] : shares) {
        if (value * 100 < p * total)
            remaining += value;
        else
            add(name, value);
    }
    if (remaining > 0) add(Remaining, remaining);
}

void TReportChart_EF::applyBarLimit() {
    // Bars stand at positions 1..n; the axis shows them up to the N-th, never past the last.
    const int n = int(rows_.size());
    AutoMin = n > 0 ? 1 : 0;
    AutoMax = n;
    const double count = ceNumVal->GetValue();
    if (count >= AutoMin) bottomMax_ = std::min(AutoMax + 0.5, count + 0.5);
    const int shown = VisibleBars();
    const QStringList categories = axisX_->categories();
    if (shown > 0 && shown <= categories.size())
        axisX_->setRange(categories.first(), categories.at(shown - 1));
    DBChart->update();
}

int TReportChart_EF::VisibleBars() const {
    return std::max(0, int(std::floor(bottomMax_ - 0.5 + 1e-9)));
}

void TReportChart_EF::showChartType() {
    const bool pie = cbChartType->currentIndex() == 0;
    Series1->setVisible(pie);
    Series2->setVisible(!pie);
    axisX_->setVisible(!pie);
    axisY_->setVisible(!pie);
    DBChart->chart()->legend()->setVisible(pie);
    // The grouping row belongs to the pie, the first-N row to the bars.
    pnRound->setVisible(pie);
    pnBrick->setVisible(!pie);
}

void TReportChart_EF::ceProcValCalcEditPropertiesChange(QObject*) {
    ceProcVal->CalcEdit->postEditValue();
    applyGrouping();
    applyBarLimit();
}

void TReportChart_EF::ceProcValCalcEditPropertiesEditValueChanged(QObject* sender) {
    ceProcValCalcEditPropertiesChange(sender);
}

void TReportChart_EF::cbChartTypeChange(QObject*) {
    showChartType();
    if (cbChartType->currentIndex() == 0)
        applyGrouping();
    else
        applyBarLimit();
}

void TReportChart_EF::ceNumValCalcEditPropertiesChange(QObject*) {
    applyBarLimit();
}

void TReportChart_EF::ceNumValCalcEditEnter(QObject*) {
    OldNum = ceNumVal->GetValue();
}

void TReportChart_EF::ceNumValCalcEditExit(QObject*) {
    // The limit is already applied as the count changed; leaving with another count fixes the
    // axis's maximum by the same rule.
    if (ceNumVal->GetValue() != OldNum) applyBarLimit();
}

bool TReportChart_EF::eventFilter(QObject* o, QEvent* e) {
    if (o == ceNumVal->CalcEdit->lineEdit() && e->type() == QEvent::FocusIn)
        guard([&] { ceNumValCalcEditEnter(o); });
    return TAbsEditFrame::eventFilter(o, e);
}

FRAMES_REGISTER(TReportChart_EF, "media");

} // namespace frames
