#pragma once
#include "frames/core/HostForms.h"
#include "frames/core/RunParams.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <vector>

class QLineEdit;
class QPushButton;
class QLabel;

namespace frames {
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

// One reference form of the module runner, described by data: the table of forms is the
// resource reference_forms.json, one entry per form name.
struct ReferenceFormDef {
    struct Column {
        QString field;
        QString caption;
        int width = 0; // 0: the grid's own
    };
    QString name;      // the name the frames run it under
    QString caption;   // window title
    QString select;    // the list's select statement
    QString keyColumn; // the key returned when the caller names none
    QList<Column> columns;
    int refNumber = 0; // the form's reference number (position in the table, from 1)
};

// Every reference form, in the order of the table. Throws std::runtime_error when the table is
// malformed (a build error, not a user's).
const std::vector<ReferenceFormDef>& referenceForms();
const ReferenceFormDef* findReferenceForm(const QString& name); // case-insensitive

// A searchable list over a reference table. At open it positions on params.KeyValue (looked up
// in the column params.KeyFieldName, or the form's key column); OK (or double-click, Enter)
// writes the current row's key into params.KeyValue and ends with 1, Cancel ends with 2.
class ReferenceForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    ReferenceForm(const ReferenceFormDef& def, frames::db::Database* db, frames::db::Transaction* tr,
                  frames::TRunParams& params, QWidget* parent = nullptr);
    ~ReferenceForm() override;

    enum Result { Confirmed = 1, Cancelled = 2 };

    // Opens the list and positions it; throws db::Error when the statement fails.
    void open();
    // The filter: rows whose shown columns contain the text (without regard to case) stay.
    void setSearchText(const QString& text);
    int visibleRowCount() const;
    // The key field in use and the key of the current row (null when no row is current).
    QString keyField() const { return keyField_; }
    QVariant currentKey() const;

    // Confirm or cancel as the buttons do.
    void confirm();
    void cancel();
    void reject() override { cancel(); }

    frames::ui::DBGrid* grid() const { return grid_; }
    QLineEdit* searchEdit() const { return search_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    frames::db::DataSet* dataSet() const { return dataSet_; }

private:
    void applyFilter();
    void updateButtons();
    void focusFirstVisible();

    const ReferenceFormDef def_;
    frames::TRunParams& params_;
    QString keyField_;
    frames::db::DataSet* dataSet_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
    QLineEdit* search_;
    QLabel* count_;
    QPushButton* ok_;
    QPushButton* cancel_;
};

} // namespace workbench
