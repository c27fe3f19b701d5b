#pragma once
#include "platform/db/DataSource.h"
#include <QPointer>
#include <QVariant>
#include <QWidget>
#include <functional>

class QListView;

namespace frames::ui {

class DataSetModel;

// A list of the rows of a dataset (ListSource), one line each showing ListField; KeyField names
// the column that identifies a row. The list's current line is the dataset's current row, both
// ways: moving in the list moves the cursor, and moving the cursor (or disabling and enabling
// the dataset's controls) moves the list. Rows are read from the dataset as they are painted,
// so a long list costs nothing per row.
class LookupListBox : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString KeyField READ keyField WRITE setKeyField)
    Q_PROPERTY(QString ListField READ listField WRITE setListField)
public:
    explicit LookupListBox(QWidget* parent = nullptr);
    ~LookupListBox() override;

    db::DataSource* listSource() const { return source_; }
    void setListSource(db::DataSource* ds);
    QString keyField() const { return keyField_; }
    void setKeyField(const QString& f) { keyField_ = f; }
    QString listField() const { return listField_; }
    void setListField(const QString& f);

    // Key of the current row; invalid when the list is empty.
    QVariant keyValue() const;
    // Number of lines and the text of one (dataset row), as shown.
    int count() const;
    QString itemText(int row) const;

    // key may be set to 0 by the handler: the list then does not handle the key itself.
    std::function<void(QObject* sender, int& key, Qt::KeyboardModifiers shift)> OnKeyDown;
    // Image shown before a row's text (dataset row; an icon, pixmap or colour). Asked as the row
    // is painted.
    std::function<QVariant(QObject* sender, int row)> OnGetImage;

    QListView* view() const { return view_; }

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    void syncFromCursor();
    void userMoved(int row);

    QListView* view_;
    DataSetModel* model_;
    QPointer<db::DataSource> source_;
    QString keyField_, listField_;
    QList<QMetaObject::Connection> conns_;
    bool syncing_ = false;
};

} // namespace frames::ui
