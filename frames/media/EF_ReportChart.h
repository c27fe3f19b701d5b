#pragma once
#include "frames/core/AbsEditFrame.h"
#include "frames/edit/EF_CalcEdt.h"
#include <QPointer>

class QComboBox;
class QChartView;
class QPieSeries;
class QBarSeries;
class QBarSet;
class QBarCategoryAxis;
class QValueAxis;

namespace frames {
namespace db {
class DataSource;
}

// A report's result as a chart: a pie of shares, where shares below P percent are drawn together
// as one slice "Остальное", or bars of the first N rows. The owner gives the rows (SetDataSource;
// labels from LabelField, values from ValueField); the frame offers the chart type and the two
// limits and keeps the chart in step with them and with the rows.
class TReportChart_EF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString LabelField MEMBER LabelField)
    Q_PROPERTY(QString ValueField MEMBER ValueField)
public:
    explicit TReportChart_EF(QWidget* parent = nullptr);
    ~TReportChart_EF() override;

    void Init() override;

    // The rows shown; the chart follows every change of the dataset.
    void SetDataSource(db::DataSource* source);
    db::DataSource* DataSource() const { return source_; }
    // Reads the rows again and redraws both presentations.
    void RefreshChart();

    // ---- handlers
    virtual void ceProcValCalcEditPropertiesChange(QObject* sender);
    virtual void ceProcValCalcEditPropertiesEditValueChanged(QObject* sender);
    virtual void cbChartTypeChange(QObject* sender);
    virtual void ceNumValCalcEditPropertiesChange(QObject* sender);
    virtual void ceNumValCalcEditEnter(QObject* sender);
    virtual void ceNumValCalcEditExit(QObject* sender);

    // ---- what the chart shows, for hosts and tests
    // The bottom axis of the bars: positions 1..n of the rows, shown up to BottomMax.
    double BottomMax() const { return bottomMax_; }
    int VisibleBars() const;
    // The pie's slices in drawing order: label and value ("Остальное" last when there is one).
    QList<QPair<QString, double>> PieSlices() const;

    QWidget* pnChartParams;
    QWidget* pnRound;
    QWidget* pnChartType;
    QWidget* pnBrick;
    QLabel* lbGroup;
    QLabel* lbChartType;
    QLabel* lbBrick;
    TCalcEdt_Frame* ceProcVal;
    TCalcEdt_Frame* ceNumVal;
    QComboBox* cbChartType;
    QChartView* DBChart;
    QPieSeries* Series1;
    QBarSeries* Series2;

    QString LabelField = QStringLiteral("FIRM_NAME");
    QString ValueField = QStringLiteral("PAY_RUB");
    double AutoMax = 0;
    double AutoMin = 0;
    double OldNum = 0;

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    void applyBarLimit();
    void applyGrouping();
    void showChartType();

    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QList<QPair<QString, double>> rows_; // label, value in the dataset's order
    QBarSet* bars_;
    QBarCategoryAxis* axisX_;
    QValueAxis* axisY_;
    double bottomMax_ = 0;
};

} // namespace frames
