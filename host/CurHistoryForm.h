#pragma once
#include "frames/core/HostForms.h"
#include <QDate>
#include <QVariant>

class QComboBox;
class QLabel;
class QPushButton;

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

// The rate history of a currency ("CurHistoryForm"): the rates of the currency named by the
// parameter "CurType", latest first, positioned on the rate in force on the parameter "Date"
// (dd.MM.yyyy; the latest rate when there is none). Another currency can be chosen above the
// list. OK (double-click, Enter) writes "CurType", "Curs" (the rate as it is shown, "89,2379")
// and "Date" of the chosen row back into the parameters and ends with 1; Cancel ends with 2.
class CurHistoryForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    static constexpr const char* FormName = "CurHistoryForm";

    CurHistoryForm(frames::db::Database* db, frames::db::Transaction* tr, frames::TRunParams& params,
                   QWidget* parent = nullptr);
    ~CurHistoryForm() override;

    // Reads the currencies and the rates and positions the list. Throws db::Error.
    void open();

    // The currency shown (0 when none) and choosing another one (the list is read again and
    // positioned on the date).
    int currency() const;
    void setCurrency(int id);
    // The date the list is positioned on (invalid: the latest rate).
    QDate date() const { return date_; }
    // The current row's date and rate (invalid when the list is empty).
    QDate currentDate() const;
    QVariant currentRate() const;

    void confirm();
    void accept() override { confirm(); }

    frames::ui::DBGrid* grid() const { return grid_; }
    QComboBox* currencyCombo() const { return cbCurrency_; }
    frames::db::DataSet* dataSet() const { return rates_; }
    QPushButton* okButton() const { return ok_; }

    // The rate as the form returns it: four decimals with a comma.
    static QString rateText(double rate);

private:
    void readRates();
    void position();
    void updateState();

    frames::db::Database* db_;
    frames::db::Transaction* tr_;
    frames::TRunParams& params_;
    QDate date_;
    frames::db::DataSet* rates_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
    QComboBox* cbCurrency_;
    QLabel* lbState_;
    QPushButton* ok_;
};

// The module runner's entry for the form.
HostModule curHistoryModule();

} // namespace workbench
