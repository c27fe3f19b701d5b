#pragma once
#include <frames/core/HostForms.h>

namespace frames {
namespace db {
class DataSet;
class DataSource;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace example {

class ExampleHost;

// The list form of the payment documents. It is the frames' list form (TfmLayer1_FIB): its current
// record, offered through CurrentSource, is what the frames on its edit dialog bind to.
class PaymentList : public frames::TfmLayer1_FIB {
    Q_OBJECT
public:
    explicit PaymentList(ExampleHost* host, QWidget* parent = nullptr);
    ~PaymentList() override;

    // Lists only the documents that satisfy the condition (SQL over the alias d of PAYMENT_DOC);
    // empty: every document.
    void setCondition(const QString& condition);
    QString condition() const { return condition_; }

    // Opens the edit dialog over the current document; returns its result.
    int editCurrent();
    // Opens the filter panel; its conditions, when applied, filter the list.
    int showFilters();

    frames::db::DataSet* records() const { return records_; }
    frames::db::Transaction* writeTransaction() const { return write_; }
    frames::ui::DBGrid* grid() const { return grid_; }
    ExampleHost* host() const { return host_; }

private:
    QString selectSql(const QString& where) const;

    ExampleHost* host_;
    frames::db::DataSet* records_;
    frames::db::DataSource* source_;
    frames::db::Transaction* write_;
    frames::ui::DBGrid* grid_;
    QString condition_;
};

} // namespace example
