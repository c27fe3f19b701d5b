#pragma once
#include "frames/core/HostForms.h"

namespace frames {
struct TRunParams;
namespace db {
class Database;
class DataSet;
class DataSource;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

struct HostModule;

// The goods card form ("CardForm") as a chooser: the cards by article; with the run parameters'
// Flag set, several rows can be marked. OK writes the marked rows (or the current one) into the
// parameter "Cards" as "ARTICUL=NAME" lines and KeyValue as the current article, and ends with 1;
// Cancel ends with 2.
class CardChoiceForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    static constexpr const char* FormName = "CardForm";

    CardChoiceForm(frames::db::Database* db, frames::db::Transaction* tr, frames::TRunParams& params,
                   QWidget* parent = nullptr);
    ~CardChoiceForm() override;

    void open();
    void accept() override;
    frames::ui::DBGrid* grid() const { return grid_; }

private:
    frames::TRunParams& params_;
    frames::db::DataSet* cards_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
};

HostModule cardChoiceModule();

} // namespace workbench
