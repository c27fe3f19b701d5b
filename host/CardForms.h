#pragma once
#include "frames/core/HostForms.h"
#include "host/HostedFrames.h"
#include <QStringList>
#include <vector>

class QLineEdit;
class QDoubleSpinBox;
class QPushButton;
class QLabel;

namespace frames {
class TAbsEditFrame;
class TConfigItem;
namespace db {
class DataSet;
class DataSource;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

class HostImpl;

// The list form over the goods cards (table CARD). Its current record is the one the edit
// dialog edits; edits are written in a write transaction of the form's own.
class CardListForm : public frames::TfmLayer1_FIB {
    Q_OBJECT
public:
    explicit CardListForm(HostImpl* host, QWidget* parent = nullptr);
    ~CardListForm() override;

    // Opens the list and restores the grid's layout. Throws db::Error.
    void open();
    frames::db::DataSet* dataSet() const { return dataSet_; }
    frames::ui::DBGrid* grid() const { return grid_; }
    frames::db::Transaction* writeTransaction() const { return writeTr_; }

    // Edits the current card (or a new one) in the edit dialog; returns the dialog's result.
    int editCurrent();
    int addNew();
    void refresh();

protected:
    void done(int r) override;

private:
    void saveLayout();

    HostImpl* host_;
    frames::db::DataSet* dataSet_;
    frames::db::DataSource* source_;
    frames::db::Transaction* writeTr_;
    frames::ui::DBGrid* grid_;
    bool layoutSaved_ = false;
};

// The edit dialog of one card: plain editors for its own text and price and the lookup frames of
// its references, created by class name and bound to the list's current record through the
// owner chain (the dialog's owner is the list form).
class EditDialog : public frames::TfmAbsEditDlg {
    Q_OBJECT
public:
    // The lookup frames the dialog shows, by class name.
    static QStringList frameClasses();

    EditDialog(HostImpl* host, CardListForm* owner);
    ~EditDialog() override;

    // Puts the list's record into edit state (unless it is being inserted), creates the frames,
    // runs Init and RestoreLayout. Throws on a database error.
    void prepare();
    // Posts the record in the list form's write transaction and commits; on failure rolls back,
    // reports and keeps the dialog open (returns false).
    bool save();
    void cancelEdit();

    const std::vector<frames::TAbsEditFrame*>& frames() const { return hosted_->frames(); }
    frames::TAbsEditFrame* frame(const QString& className) const;
    QLineEdit* articulEdit() const { return edArticul_; }
    QLineEdit* nameEdit() const { return edName_; }
    QDoubleSpinBox* priceEdit() const { return edPrice_; }
    QWidget* body() const { return body_; }

    void accept() override;
    void reject() override;

private:
    void closeFrames();
    frames::TConfigItem* layoutNode(const QString& className) const;

    HostImpl* host_;
    CardListForm* list_;
    QWidget* body_;
    QLineEdit* edArticul_;
    QLineEdit* edName_;
    QDoubleSpinBox* edPrice_;
    HostedFrames* hosted_;
    bool closed_ = false;
};

} // namespace workbench
