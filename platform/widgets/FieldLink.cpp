#include "platform/widgets/FieldLink.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"

namespace frames::ui {

FieldLink::FieldLink(QObject* owner, std::function<void()> onChange)
    : owner_(owner), onChange_(std::move(onChange)) {}

FieldLink::~FieldLink() {
    for (auto& c : conns_) QObject::disconnect(c);
}

void FieldLink::setDataSource(db::DataSource* ds) {
    for (auto& c : conns_) QObject::disconnect(c);
    conns_.clear();
    source_ = ds;
    if (ds) {
        auto any = [this] { changed(-1); };
        conns_ << QObject::connect(ds, &db::DataSource::recordChanged, owner_, any);
        conns_ << QObject::connect(ds, &db::DataSource::fieldChanged, owner_, [this](int c) { changed(c); });
        conns_ << QObject::connect(ds, &db::DataSource::dataSetChanged, owner_, any);
        conns_ << QObject::connect(ds, &db::DataSource::stateChanged, owner_, any);
        conns_ << QObject::connect(ds, &db::DataSource::dataSetReplaced, owner_, any);
    }
    onChange_();
}

void FieldLink::setDataField(const QString& name) {
    dataField_ = name.trimmed();
    onChange_();
}

void FieldLink::changed(int column) {
    if (column >= 0 && ownFieldOnly_) {
        db::Field* f = field();
        if (!f || f->index() != column) return;
    }
    onChange_();
}

db::Field* FieldLink::field() const {
    if (!source_ || dataField_.isEmpty()) return nullptr;
    db::AbstractDataSet* ds = source_->dataSet();
    if (!ds || !ds->active()) return nullptr;
    return ds->findField(dataField_);
}

db::Field* FieldLink::rowField() const {
    db::Field* f = field();
    // A record being inserted has its values even in a table without rows (no current row yet).
    return f && (f->dataSet()->recNo() >= 0 || f->dataSet()->state() == db::DataSetState::Insert) ? f
                                                                                                  : nullptr;
}

QString FieldLink::fieldText() const {
    db::Field* f = rowField();
    if (!f) return {};
    try {
        return f->displayText();
    } catch (...) {
        return {};
    }
}

bool FieldLink::write(const QVariant& v) {
    db::Field* f = field();
    if (!f) return false;
    bool ok = false;
    {
        const auto scope = writingScope();
        ok = guarded([&] {
            db::AbstractDataSet* ds = f->dataSet();
            if (!ds->inEditMode()) ds->edit();
            if (!v.isValid() || v.isNull() || (v.toString().isEmpty() && !f->isText()))
                f->clear();
            else
                f->setValue(v);
        });
    }
    if (!ok) onChange_();
    return ok;
}

} // namespace frames::ui
