#pragma once
#include "platform/widgets/FieldLink.h"
#include <QCheckBox>
#include <QLineEdit>

namespace frames::ui {

// A line edit showing one field of a data source's current record. Typing puts the dataset into
// edit state and writes the text into the field (a text that does not convert yet, such as "-"
// in a number field, is written when editing finishes, and a failure is reported then).
class DBEdit : public QLineEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
public:
    explicit DBEdit(QWidget* parent = nullptr);

    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed

    // Re-reads the field.
    void updateFromField();

protected:
    // Out of focus the box shows the start of its text; going into it from the keyboard or by
    // code puts the cursor at the end (a click puts it where it was clicked, Tab selects all).
    void focusInEvent(QFocusEvent* e) override;

private:
    bool writeText(bool report);

    bool pending_ = false;
    FieldLink link_{this, [this] { updateFromField(); }};
};

// A check box bound to a field. Checked writes ValueChecked, unchecked ValueUnchecked; left
// empty they default by the field's type: true/false for a boolean field, "T"/"F" for text,
// 1/0 for numbers. A null field shows unchecked.
class DBCheckBox : public QCheckBox {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(QString ValueChecked READ valueChecked WRITE setValueChecked)
    Q_PROPERTY(QString ValueUnchecked READ valueUnchecked WRITE setValueUnchecked)
public:
    explicit DBCheckBox(QWidget* parent = nullptr);
    explicit DBCheckBox(const QString& text, QWidget* parent = nullptr);

    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); }
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b) { readOnly_ = b; }
    QString valueChecked() const { return valueChecked_; }
    void setValueChecked(const QString& v);
    QString valueUnchecked() const { return valueUnchecked_; }
    void setValueUnchecked(const QString& v);

    void updateFromField();

protected:
    void nextCheckState() override;

private:
    QVariant storedValue(bool checked) const;

    QString valueChecked_, valueUnchecked_;
    bool readOnly_ = false;
    FieldLink link_{this, [this] { updateFromField(); }};
};

} // namespace frames::ui
