#pragma once
#include "platform/db/DataSource.h"
#include <QComboBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTextEdit>

namespace frames::ui {

// The binding shared by the text controls below: a data source, a field name, and the flags
// that keep a write from echoing back into the control.
class FieldLink {
public:
    db::DataSource* dataSource() const { return source_; }
    QString dataField() const { return dataField_; }
    db::Field* field() const; // null while unbound or the dataset is closed
    bool bound() const { return field() != nullptr; }

protected:
    ~FieldLink();
    void link(QObject* control, db::DataSource* ds, const std::function<void()>& refresh);
    void setField(const QString& f) { dataField_ = f.trimmed(); }
    // Writes v into the field (the dataset goes into edit state); a failure goes to the error
    // reporter and the control is refreshed from the field. Returns false when nothing was written.
    bool write(const QVariant& v, const std::function<void()>& refresh);
    // The field's value as text for display ("" when unbound or on no row).
    QString fieldText() const;

    bool writing_ = false;

private:
    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QString dataField_;
};

// A combo box bound to a field. Non-editable it shows the field's text as the chosen item (no
// item when the text is not in the list) and writes the chosen item's text; editable it writes
// what is typed. Unbound it keeps its own choice.
class DBComboBox : public QComboBox, public FieldLink {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(QStringList Items READ items WRITE setItems)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
public:
    explicit DBComboBox(QWidget* parent = nullptr);
    void setDataSource(db::DataSource* ds);
    void setDataField(const QString& f);
    QStringList items() const;
    void setItems(const QStringList& items);
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b);
    void updateFromField();

private:
    bool readOnly_ = false;
};

// A multi-line plain text bound to a field; unbound it keeps its own text.
class DBMemo : public QPlainTextEdit, public FieldLink {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
public:
    explicit DBMemo(QWidget* parent = nullptr);
    void setDataSource(db::DataSource* ds);
    void setDataField(const QString& f);
    void updateFromField();
};

// Formatted text bound to a text field: the field holds the document as HTML; a field holding
// plain text is shown as it is. Unbound it keeps its own document.
class DBRichEdit : public QTextEdit, public FieldLink {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
public:
    explicit DBRichEdit(QWidget* parent = nullptr);
    void setDataSource(db::DataSource* ds);
    void setDataField(const QString& f);
    void updateFromField();
};

} // namespace frames::ui
