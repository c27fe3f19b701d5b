#pragma once
#include "frames/core/HostForms.h"

class QLabel;
class QTabWidget;

namespace frames {
class TAbsEditFrame;
namespace db {
class DataSet;
}
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

// A CRM report as a host form builds it: the user chooses the managers (through the manager
// groups or the manager tree), the companies and the products on the tabs; "Сформировать" lists
// the chosen companies with the number of events the chosen managers had with them and whether
// the company works with a chosen product group's products (the report query joins the choice
// tables of the user and report kind).
class CrmReportForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit CrmReportForm(int kind, QWidget* parent = nullptr);
    ~CrmReportForm() override;

    // Creates the frames and gives them the report kind (throws on a database error).
    void prepare();
    // Runs the report query into the result grid.
    void runReport();

    frames::TAbsEditFrame* frame(const QString& className) const;
    frames::db::DataSet* result() const { return result_; }

private:
    int kind_;
    QTabWidget* tabs_;
    frames::ui::DBGrid* grid_;
    frames::db::DataSet* result_;
    QLabel* summary_;
};

} // namespace workbench
