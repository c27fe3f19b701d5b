#include "platform/widgets/DBEdit.h"
#include "platform/db/Field.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/ErrorReporter.h"
#include <QFocusEvent>

namespace frames::ui {

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

void DBEdit::updateFromField() {
    if (link_.writing()) return;
    pending_ = false;
    const QString text = link_.fieldText();
    // (Setting the length puts the cursor at the end of the text, even when it does not change.)
    if (db::Field* f = link_.rowField()) {
        const int length = f->isText() && f->size() > 0 ? f->size() : 32767;
        if (length != maxLength()) setMaxLength(length);
    }
    if (text != this->text()) {
        setText(text);
        // A text longer than the box shows its start, not its end, until the user goes into it.
        if (!hasFocus()) setCursorPosition(0);
    }
}

void DBEdit::focusInEvent(QFocusEvent* e) {
    QLineEdit::focusInEvent(e);
    if (e->reason() != Qt::MouseFocusReason && !hasSelectedText()) end(false);
}

bool DBEdit::writeText(bool report) {
    db::Field* f = field();
    if (!f || isReadOnly()) return false;
    const auto writing = link_.writingScope();
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

void DBCheckBox::setValueChecked(const QString& v) {
    valueChecked_ = v;
    updateFromField();
}

void DBCheckBox::setValueUnchecked(const QString& v) {
    valueUnchecked_ = v;
    updateFromField();
}

void DBCheckBox::updateFromField() {
    if (link_.writing()) return;
    bool on = false;
    if (db::Field* f = link_.rowField()) {
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
        const auto writing = link_.writingScope();
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        f->setValue(storedValue(on));
    });
    if (ok) setChecked(on);
    updateFromField();
}

} // namespace frames::ui
