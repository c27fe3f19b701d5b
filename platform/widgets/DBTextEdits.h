#pragma once
#include "platform/widgets/FieldLink.h"
#include <QComboBox>
#include <QPlainTextEdit>
#include <QTextEdit>

namespace frames::ui {

// A combo box bound to a field. Non-editable it shows the field's text as the chosen item (no
// item when the text is not in the list) and writes the chosen item's text; editable it writes
// what is typed. Unbound it keeps its own choice.
class DBComboBox : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(QStringList Items READ items WRITE setItems)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
public:
    explicit DBComboBox(QWidget* parent = nullptr);
    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed
    QStringList items() const;
    void setItems(const QStringList& items);
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b);
    void updateFromField();

private:
    bool readOnly_ = false;
    FieldLink link_{this, [this] { updateFromField(); }};
};

// A multi-line plain text bound to a field; unbound it keeps its own text.
class DBMemo : public QPlainTextEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
public:
    explicit DBMemo(QWidget* parent = nullptr);
    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed
    void updateFromField();

private:
    FieldLink link_{this, [this] { updateFromField(); }};
};

// Formatted text bound to a text field: the field holds the document as HTML; a field holding
// plain text is shown as it is. Unbound it keeps its own document.
class DBRichEdit : public QTextEdit {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
public:
    explicit DBRichEdit(QWidget* parent = nullptr);
    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); } // null while unbound or the dataset is closed
    void updateFromField();

private:
    FieldLink link_{this, [this] { updateFromField(); }};
};

} // namespace frames::ui
