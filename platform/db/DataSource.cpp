#include "platform/db/DataSource.h"

namespace frames::db {

DataSource::DataSource(QObject* parent) : QObject(parent) {}

DataSource::DataSource(AbstractDataSet* ds, QObject* parent) : QObject(parent) {
    setDataSet(ds);
}

void DataSource::setDataSet(AbstractDataSet* ds) {
    if (ds == ds_) return;
    for (auto& c : conns_) disconnect(c);
    conns_.clear();
    ds_ = ds;
    if (ds_) {
        conns_ << connect(ds_, &AbstractDataSet::stateChanged, this, [this] {
            if (enabled_) emit stateChanged();
        });
        conns_ << connect(ds_, &AbstractDataSet::recordChanged, this, [this] {
            if (enabled_) emit recordChanged();
        });
        conns_ << connect(ds_, &AbstractDataSet::fieldChanged, this, [this](int c) {
            if (enabled_) emit fieldChanged(c);
        });
        conns_ << connect(ds_, &AbstractDataSet::dataSetChanged, this, [this] {
            if (enabled_) emit dataSetChanged();
        });
    }
    emit dataSetReplaced();
}

void DataSource::setEnabled(bool e) {
    if (e == enabled_) return;
    enabled_ = e;
    // Controls re-read everything when the link comes back.
    if (enabled_) emit dataSetChanged();
}

} // namespace frames::db
