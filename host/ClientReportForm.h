#pragma once
#include "frames/core/HostForms.h"

class QLabel;

namespace frames {
class TClientSelect_DF;
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
class HostedFrames;

// The report over chosen counterparties: the client selection dialog on top, and under it the
// payment documents of the clients the user chose, read by a query that joins the selection table
// SEL_CLIENT for the user and the report's kind, with their count. The choice stays on the server:
// closing the form or the workbench keeps it.
class ClientReportForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    // The selection kind of this report.
    static constexpr int kKind = 1;

    explicit ClientReportForm(HostImpl* host, QWidget* parent = nullptr);
    ~ClientReportForm() override;

    // Creates the dialog, runs Init and RestoreLayout, and runs the report. Throws.
    void prepare();
    // Reads the documents of the chosen clients again.
    void runReport();

    frames::TClientSelect_DF* dialog() const { return dialog_; }
    frames::db::DataSet* documents() const { return documents_; }
    QLabel* countLabel() const { return count_; }

    // The report's statement; :user_id and :kind are the user and the report's kind.
    static QString reportSql();

protected:
    void done(int r) override;

private:
    void closeFrames();

    HostImpl* host_;
    HostedFrames* hosted_;
    frames::TClientSelect_DF* dialog_ = nullptr;
    frames::db::DataSet* documents_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
    QLabel* count_;
    bool closed_ = false;
};

} // namespace workbench
