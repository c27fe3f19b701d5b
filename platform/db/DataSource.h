#pragma once
#include "platform/db/AbstractDataSet.h"
#include <QObject>
#include <QPointer>

namespace frames::db {

// The link between one dataset and the controls bound to it. Controls listen to its signals;
// it forwards the dataset's changes and can be switched off (enabled = false) as a whole.
class DataSource : public QObject {
    Q_OBJECT
public:
    explicit DataSource(QObject* parent = nullptr);
    explicit DataSource(AbstractDataSet* ds, QObject* parent = nullptr);

    AbstractDataSet* dataSet() const { return ds_; }
    void setDataSet(AbstractDataSet* ds);
    bool enabled() const { return enabled_; }
    void setEnabled(bool e);
    DataSetState state() const { return ds_ ? ds_->state() : DataSetState::Inactive; }

signals:
    void dataSetReplaced(); // setDataSet was called
    void stateChanged();
    void recordChanged();          // current row moved or its values changed
    void fieldChanged(int column); // a field of the edit buffer changed
    void dataSetChanged();         // rows reloaded/reordered

private:
    QPointer<AbstractDataSet> ds_;
    QList<QMetaObject::Connection> conns_;
    bool enabled_ = true;
};

} // namespace frames::db
