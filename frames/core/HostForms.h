#pragma once
#include <QDialog>

namespace frames {
class TConfigItem;
namespace db {
class DataSource;
class DataSet;
class Transaction;
} // namespace db

// A host form that wants to learn that a value on it changed. As a window of its own it comes
// back where the user left it: the first time it is shown it takes the place and size kept under
// its name in the user's layout (Host::FormLayout), and it keeps them there when it closes.
class TfmPersistentForm : public QDialog {
    Q_OBJECT
public:
    explicit TfmPersistentForm(QWidget* parent = nullptr);
    ~TfmPersistentForm() override;
    // The change notification: frames call it after the user chose a value.
    virtual void NotifyChanged();
    int ChangeCount() const { return changes_; }

    void setVisible(bool visible) override;
    void done(int r) override;
    // Keeps the form's place and size now (closing does it too); nothing for a form never shown
    // as a window of its own.
    void SavePlacement();

signals:
    void changed();

protected:
    // The name under which the form's place and size are kept: its objectName by default, a
    // path ("List/Dialog") where forms of one class differ by owner; empty keeps nothing.
    virtual QString PlacementName() const { return objectName(); }

private:
    int changes_ = 0;
    bool placed_ = false;
    QString placement_; // the name it was placed under when first shown
};

// A window's place, size and state under a layout node (its "Geometry" item), for windows that
// are not host forms too. Restoring keeps the window as it is when the node holds no such item
// or one that cannot be read, and returns false.
bool RestoreWindowPlacement(QWidget* window, const TConfigItem* node);
void SaveWindowPlacement(const QWidget* window, TConfigItem* node);

// The host's record edit dialog; its owner is the list form whose current record it edits.
class TfmAbsEditDlg : public TfmPersistentForm {
    Q_OBJECT
public:
    explicit TfmAbsEditDlg(QWidget* parent = nullptr) : TfmPersistentForm(parent) {}
};

// The host's list form over a database table: its current record is offered to edit dialogs
// through CurrentSource().
class TfmLayer1_FIB : public TfmPersistentForm {
    Q_OBJECT
    Q_PROPERTY(int RefNumber READ RefNumber WRITE SetRefNumber)
public:
    explicit TfmLayer1_FIB(QWidget* parent = nullptr) : TfmPersistentForm(parent) {}
    virtual db::DataSource* CurrentSource() const { return currentSource_; }
    void SetCurrentSource(db::DataSource* ds) { currentSource_ = ds; }
    int RefNumber() const { return refNumber_; }
    void SetRefNumber(int n) { refNumber_ = n; }

private:
    db::DataSource* currentSource_ = nullptr;
    int refNumber_ = 0;
};

// The two-grid list form; frames owned by it pass its transaction to the forms they open.
class TfmLayer2_TwoGrid : public TfmLayer1_FIB {
    Q_OBJECT
public:
    explicit TfmLayer2_TwoGrid(QWidget* parent = nullptr) : TfmLayer1_FIB(parent) {}
    db::Transaction* Transaction() const { return transaction_; }
    void SetTransaction(db::Transaction* t) { transaction_ = t; }

private:
    db::Transaction* transaction_ = nullptr;
};

// The list form's current-record data source when owner is an edit dialog whose owner is a list
// form; nullptr otherwise. This is the binding rule every data-bound frame follows in Init.
db::DataSource* editDialogBinding(const QObject* frame);

} // namespace frames
