#include "platform/widgets/DBTextEdits.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSignalBlocker>

namespace frames::ui {

// ---- FieldLink

FieldLink::~FieldLink() {
    for (auto& c : conns_) QObject::disconnect(c);
}

db::Field* FieldLink::field() const {
    if (!source_ || dataField_.isEmpty()) return nullptr;
    db::AbstractDataSet* ds = source_->dataSet();
    if (!ds || !ds->active()) return nullptr;
    return ds->findField(dataField_);
}

void FieldLink::link(QObject* control, db::DataSource* ds, const std::function<void()>& refresh) {
    for (auto& c : conns_) QObject::disconnect(c);
    conns_.clear();
    source_ = ds;
    if (ds) {
        conns_ << QObject::connect(ds, &db::DataSource::recordChanged, control, refresh);
        conns_ << QObject::connect(ds, &db::DataSource::fieldChanged, control, refresh);
        conns_ << QObject::connect(ds, &db::DataSource::dataSetChanged, control, refresh);
        conns_ << QObject::connect(ds, &db::DataSource::stateChanged, control, refresh);
        conns_ << QObject::connect(ds, &db::DataSource::dataSetReplaced, control, refresh);
    }
    refresh();
}

QString FieldLink::fieldText() const {
    db::Field* f = field();
    if (!f || f->dataSet()->recNo() < 0) return {};
    try {
        return f->displayText();
    } catch (...) {
        return {};
    }
}

bool FieldLink::write(const QVariant& v, const std::function<void()>& refresh) {
    db::Field* f = field();
    if (!f) return false;
    bool ok = false;
    {
        QScopedValueRollback guard(writing_, true);
        ok = guarded([&] {
            db::AbstractDataSet* ds = f->dataSet();
            if (!ds->inEditMode()) ds->edit();
            if (!v.isValid() || v.isNull() || (v.toString().isEmpty() && !f->isText()))
                f->clear();
            else
                f->setValue(v);
        });
    }
    if (!ok) refresh();
    return ok;
}

// ---- DBComboBox

DBComboBox::DBComboBox(QWidget* parent) : QComboBox(parent) {
    connect(this, &QComboBox::activated, this, [this](int i) {
        if (!readOnly_) write(itemText(i), [this] { updateFromField(); });
    });
    connect(this, &QComboBox::editTextChanged, this, [this](const QString& t) {
        if (isEditable() && !readOnly_ && !writing_ && lineEdit() && lineEdit()->hasFocus())
            write(t, [this] { updateFromField(); });
    });
}

void DBComboBox::setDataSource(db::DataSource* ds) {
    link(this, ds, [this] { updateFromField(); });
}

void DBComboBox::setDataField(const QString& f) {
    setField(f);
    updateFromField();
}

QStringList DBComboBox::items() const {
    QStringList l;
    for (int i = 0; i < count(); ++i) l << itemText(i);
    return l;
}

void DBComboBox::setItems(const QStringList& items) {
    const QSignalBlocker block(this);
    clear();
    addItems(items);
    setCurrentIndex(-1);
    updateFromField();
}

void DBComboBox::setReadOnly(bool b) {
    readOnly_ = b;
    if (lineEdit()) lineEdit()->setReadOnly(b);
}

void DBComboBox::updateFromField() {
    if (writing_ || !dataSource()) return;
    const QString text = fieldText();
    const QSignalBlocker block(this);
    if (isEditable()) {
        setCurrentIndex(findText(text));
        setEditText(text);
    } else {
        setCurrentIndex(text.isEmpty() ? -1 : findText(text));
    }
}

// ---- DBMemo

DBMemo::DBMemo(QWidget* parent) : QPlainTextEdit(parent) {
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (writing_ || isReadOnly()) return;
        const QString text = toPlainText();
        write(text.isEmpty() ? QVariant() : QVariant(text), [this] { updateFromField(); });
    });
}

void DBMemo::setDataSource(db::DataSource* ds) {
    link(this, ds, [this] { updateFromField(); });
}

void DBMemo::setDataField(const QString& f) {
    setField(f);
    updateFromField();
}

void DBMemo::updateFromField() {
    if (writing_ || !dataSource()) return;
    const QString text = fieldText();
    if (text == toPlainText()) return;
    QScopedValueRollback guard(writing_, true);
    setPlainText(text);
}

// ---- DBRichEdit

DBRichEdit::DBRichEdit(QWidget* parent) : QTextEdit(parent) {
    setAcceptRichText(true);
    connect(this, &QTextEdit::textChanged, this, [this] {
        if (writing_ || isReadOnly()) return;
        write(toPlainText().isEmpty() ? QVariant() : QVariant(toHtml()), [this] { updateFromField(); });
    });
}

void DBRichEdit::setDataSource(db::DataSource* ds) {
    link(this, ds, [this] { updateFromField(); });
}

void DBRichEdit::setDataField(const QString& f) {
    setField(f);
    updateFromField();
}

void DBRichEdit::updateFromField() {
    if (writing_ || !dataSource()) return;
    const QString text = fieldText();
    QScopedValueRollback guard(writing_, true);
    if (Qt::mightBeRichText(text))
        setHtml(text);
    else
        setPlainText(text);
}

} // namespace frames::ui
