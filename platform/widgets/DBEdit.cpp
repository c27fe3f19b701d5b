#include "platform/widgets/DBEdit.h"
#include "platform/db/Field.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/ErrorReporter.h"
#include <QScopedValueRollback>

namespace frames::ui {

namespace {

db::Field* boundField(db::DataSource* src, const QString& name) {
    if (!src || name.isEmpty()) return nullptr;
    db::AbstractDataSet* ds = src->dataSet();
    if (!ds || !ds->active()) return nullptr;
    return ds->findField(name);
}

QList<QMetaObject::Connection> follow(db::DataSource* src, QObject* ctx, const std::function<void()>& f) {
    QList<QMetaObject::Connection> c;
    if (!src) return c;
    c << QObject::connect(src, &db::DataSource::recordChanged, ctx, f);
    c << QObject::connect(src, &db::DataSource::fieldChanged, ctx, f);
    c << QObject::connect(src, &db::DataSource::dataSetChanged, ctx, f);
    c << QObject::connect(src, &db::DataSource::stateChanged, ctx, f);
    c << QObject::connect(src, &db::DataSource::dataSetReplaced, ctx, f);
    return c;
}

} // namespace

// ---- DBEdit

DBEdit::DBEdit(QWidget* parent) : QLineEdit(parent) {
    connect(this, &QLineEdit::textEdited, this, [this] {
        pending_ = true;
        writeText(false);
    });
    connect(this, &QLineEdit::editingFinished, this, [this] {
        if (pending_) writeText(true);
    });
}

DBEdit::~DBEdit() {
    for (auto& c : conns_) disconnect(c);
}

void DBEdit::setDataSource(db::DataSource* ds) {
    source_ = ds;
    connectSource();
    updateFromField();
}

void DBEdit::setDataField(const QString& f) {
    dataField_ = f.trimmed();
    updateFromField();
}

void DBEdit::connectSource() {
    for (auto& c : conns_) disconnect(c);
    conns_ = follow(source_, this, [this] { updateFromField(); });
}

db::Field* DBEdit::field() const {
    return boundField(source_, dataField_);
}

void DBEdit::updateFromField() {
    if (writing_) return;
    pending_ = false;
    db::Field* f = field();
    QString text;
    if (f && f->dataSet()->recNo() >= 0) {
        try {
            text = f->displayText();
        } catch (...) {
            text.clear();
        }
        setMaxLength(f->isText() && f->size() > 0 ? f->size() : 32767);
    }
    if (text != this->text()) setText(text);
}

bool DBEdit::writeText(bool report) {
    db::Field* f = field();
    if (!f || isReadOnly()) return false;
    QScopedValueRollback guard(writing_, true);
    auto write = [&] {
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        if (text().isEmpty() && !f->isText())
            f->clear();
        else
            f->setAsString(text());
        pending_ = false;
    };
    if (report) return guarded(write);
    try {
        write();
        return true;
    } catch (...) {
        return false; // reported when editing finishes, if the text still does not convert
    }
}

// ---- DBCheckBox

DBCheckBox::DBCheckBox(QWidget* parent) : QCheckBox(parent) {}

DBCheckBox::DBCheckBox(const QString& text, QWidget* parent) : QCheckBox(text, parent) {}

DBCheckBox::~DBCheckBox() {
    for (auto& c : conns_) disconnect(c);
}

void DBCheckBox::setDataSource(db::DataSource* ds) {
    for (auto& c : conns_) disconnect(c);
    source_ = ds;
    conns_ = follow(source_, this, [this] { updateFromField(); });
    updateFromField();
}

void DBCheckBox::setDataField(const QString& f) {
    dataField_ = f.trimmed();
    updateFromField();
}

void DBCheckBox::setValueChecked(const QString& v) {
    valueChecked_ = v;
    updateFromField();
}

void DBCheckBox::setValueUnchecked(const QString& v) {
    valueUnchecked_ = v;
    updateFromField();
}

db::Field* DBCheckBox::field() const {
    return boundField(source_, dataField_);
}

void DBCheckBox::updateFromField() {
    if (writing_) return;
    db::Field* f = field();
    bool on = false;
    if (f && f->dataSet()->recNo() >= 0) {
        try {
            const QVariant v = f->value();
            if (!valueChecked_.isEmpty())
                on = v.isValid() && !v.isNull() &&
                     v.toString().trimmed().compare(valueChecked_.trimmed(), Qt::CaseInsensitive) == 0;
            else
                on = DataSetModel::isTrueValue(v);
        } catch (...) {
            on = false;
        }
    }
    setChecked(on);
}

QVariant DBCheckBox::storedValue(bool checked) const {
    const QString& explicitValue = checked ? valueChecked_ : valueUnchecked_;
    if (!explicitValue.isEmpty()) return explicitValue;
    db::Field* f = field();
    if (f && f->dataType() == db::FieldType::Boolean) return checked;
    if (f && f->isText()) return checked ? QStringLiteral("T") : QStringLiteral("F");
    return checked ? 1 : 0;
}

void DBCheckBox::nextCheckState() {
    if (readOnly_) return;
    db::Field* f = field();
    if (!f) {
        QCheckBox::nextCheckState();
        return;
    }
    const bool on = !isChecked();
    const bool ok = guarded([&] {
        QScopedValueRollback guard(writing_, true);
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        f->setValue(storedValue(on));
    });
    if (ok) setChecked(on);
    updateFromField();
}

} // namespace frames::ui
