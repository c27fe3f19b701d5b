#pragma once
#include <QDialog>

namespace frames {
namespace db {
class DataSource;
class DataSet;
class Transaction;
} // namespace db

// A host form that wants to learn that a value on it changed.
class TfmPersistentForm : public QDialog {
    Q_OBJECT
public:
    explicit TfmPersistentForm(QWidget* parent = nullptr);
    // The change notification: frames call it after the user chose a value.
    virtual void NotifyChanged();
    int ChangeCount() const { return changes_; }

signals:
    void changed();

private:
    int changes_ = 0;
};

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
