#pragma once
#include "frames/core/HostForms.h"
#include "host/HostedFrames.h"
#include "host/ReportDefinition.h"
#include <QDate>
#include <vector>

class QLabel;
class QPlainTextEdit;
class QScrollArea;
class QTableWidget;

namespace frames {
class TAbsEditFrame;
class TConfigItem;
class TReportChart_EF;
namespace db {
class DataSet;
class DataSource;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

class HostImpl;

// The filter panel of a report (reports.json): every filter frame of the report, each with the
// way its state becomes a condition of the report's statement (a filter box's SQL on a column, a
// period frame's dates, the user's choice kept on the server for the box's kind). A pane shows,
// as the user works, the condition each frame puts and the keys it holds; "Выполнить" runs the
// report: its totals, its rows in a grid and its chart, with the statement it ran shown. The
// frames' settings (and, through them, the choices kept on the server) are saved in the layout
// tree under the report's name when the panel closes and come back when it opens.
class FilterPanelForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    // The payment documents' panel.
    explicit FilterPanelForm(HostImpl* host, QWidget* parent = nullptr);
    FilterPanelForm(HostImpl* host, const ReportDefinition& report, QWidget* parent = nullptr);
    ~FilterPanelForm() override;

    // Creates the frames, runs Init and RestoreLayout, shows the conditions. Throws.
    void prepare();

    const ReportDefinition& report() const { return report_; }

    struct Filter {
        const ReportFilter* def;
        frames::TAbsEditFrame* frame;
    };
    const std::vector<Filter>& filters() const { return filters_; }
    frames::TAbsEditFrame* frame(const QString& className) const;
    // The classes of the report that the package does not register (shown as such, left out).
    const QStringList& missingClasses() const { return missing_; }

    // The condition a filter puts on the report's rows ("" when it sets none).
    QString condition(const Filter& f) const;
    // What the filter holds besides: a filter box's keys (ItemsCount and ItemsList), a period
    // frame's two dates.
    QString keys(const Filter& f) const;
    // Every condition, each in brackets, joined with "and".
    QString whereClause() const;
    // The report's statements with the conditions of the moment.
    QString countSql() const;
    QString rowsSql() const;
    QString chartSql() const;
    frames::TReportChart_EF* chart() const { return chart_; }

    // Refreshes the pane of conditions (done after every change the user makes in a frame).
    void updateResults();
    // Runs the report: shows and returns the first total (the count). A filter that is not
    // correct is reported through the host and nothing runs (-1); a database error goes to the
    // host too.
    int runQuery();
    int lastCount() const { return lastCount_; }
    // The totals of the last run, in the order of the report's titles.
    const QVariantList& totals() const { return totals_; }

    // Brings the frame of that class into view and gives it the focus.
    void focusFilter(const QString& className);

    QTableWidget* resultsTable() const { return results_; }
    QPlainTextEdit* queryText() const { return query_; }
    QLabel* countLabel() const { return count_; }
    frames::ui::DBGrid* rowsGrid() const { return rowsGrid_; }
    frames::db::DataSet* rows() const { return rows_; }

    void done(int r) override;

private:
    frames::TConfigItem* layoutNode(const QString& name) const;
    // Sets the period frame to the report's first period (the dates its data covers).
    void showFirstPeriod();
    void build();
    void closeFrames();
    // Stores the matrices of the ticked boxes that keep their choice in the frame until then (on
    // closing they store it themselves); false when one could not be stored (the user was told).
    bool applyChanges();
    void followChanges(frames::TAbsEditFrame* f);
    void scheduleUpdate();
    QWidget* boxOf(const ReportFilter& def, frames::TAbsEditFrame* f);

    HostImpl* host_;
    const ReportDefinition& report_;
    QScrollArea* scroll_;
    QWidget* body_;
    QTableWidget* results_;
    QPlainTextEdit* query_;
    QLabel* count_;
    frames::TReportChart_EF* chart_ = nullptr;
    frames::db::DataSet* chartRows_ = nullptr;
    frames::db::DataSource* chartSource_ = nullptr;
    frames::db::DataSet* rows_ = nullptr;
    frames::db::DataSource* rowsSource_ = nullptr;
    frames::ui::DBGrid* rowsGrid_ = nullptr;
    std::vector<Filter> filters_;
    QStringList missing_;
    QVariantList totals_;
    HostedFrames* hosted_;
    int lastCount_ = -1;
    bool closed_ = false;
    bool updatePending_ = false;
};

} // namespace workbench
