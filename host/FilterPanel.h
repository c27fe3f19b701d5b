#pragma once
#include "frames/core/HostForms.h"
#include "host/HostedFrames.h"
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
} // namespace frames

namespace workbench {

class HostImpl;
struct DocumentFilter;

// The filter panel of a report over the payment documents: every filter frame (the filter boxes
// and the period frames), each on the column of PAYMENT_DOC it filters. A pane shows, as the
// user works, the condition each frame puts on its column and the keys it holds; "Выполнить
// запрос" counts the documents that pass every condition. The frames' settings are kept in the
// layout tree under "FilterPanel".
class FilterPanelForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit FilterPanelForm(HostImpl* host, QWidget* parent = nullptr);
    ~FilterPanelForm() override;

    // Creates the frames, runs Init and RestoreLayout, shows the conditions. Throws.
    void prepare();

    struct Filter {
        const DocumentFilter* def;
        frames::TAbsEditFrame* frame;
    };
    const std::vector<Filter>& filters() const { return filters_; }
    frames::TAbsEditFrame* frame(const QString& className) const;

    // The condition a filter puts on its column ("" when it sets none): a filter box's SQL, a
    // period frame's dates as a range of days.
    QString condition(const Filter& f) const;
    // What the filter holds besides: a filter box's keys (ItemsCount and ItemsList), a period
    // frame's two dates.
    QString keys(const Filter& f) const;
    // Every condition, joined with "and"; and the statement that counts the documents.
    QString whereClause() const;
    QString countSql() const;
    // Payments by client of the documents the conditions leave: the chart's rows.
    QString chartSql() const;
    frames::TReportChart_EF* chart() const { return chart_; }

    // Refreshes the pane of conditions (done after every change the user makes in a frame).
    void updateResults();
    // Counts the documents; shows and returns the count. A filter that is not correct is
    // reported through the host and nothing runs (-1); a database error goes to the host too.
    int runQuery();
    int lastCount() const { return lastCount_; }

    // Brings the frame of that class into view and gives it the focus.
    void focusFilter(const QString& className);

    QTableWidget* resultsTable() const { return results_; }
    QPlainTextEdit* queryText() const { return query_; }
    QLabel* countLabel() const { return count_; }

    void done(int r) override;

private:
    frames::TConfigItem* layoutNode(const QString& className) const;
    void closeFrames();
    void followChanges(frames::TAbsEditFrame* f);
    void scheduleUpdate();

    HostImpl* host_;
    QScrollArea* scroll_;
    QWidget* body_;
    QTableWidget* results_;
    QPlainTextEdit* query_;
    QLabel* count_;
    frames::TReportChart_EF* chart_;
    frames::db::DataSet* chartRows_;
    frames::db::DataSource* chartSource_;
    std::vector<Filter> filters_;
    HostedFrames* hosted_;
    int lastCount_ = -1;
    bool closed_ = false;
    bool updatePending_ = false;
};

} // namespace workbench
