#include "platform/widgets/DBTextEdits.h"
#include <QLineEdit>
#include <QSignalBlocker>

namespace frames::ui {

// ---- DBComboBox

DBComboBox::DBComboBox(QWidget* parent) : QComboBox(parent) {
    connect(this, &QComboBox::activated, this, [this](int i) {
        if (!readOnly_) link_.write(itemText(i));
    });
    connect(this, &QComboBox::editTextChanged, this, [this](const QString& t) {
        if (isEditable() && !readOnly_ && !link_.writing() && lineEdit() && lineEdit()->hasFocus())
            link_.write(t);
    });
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
    if (link_.writing() || !dataSource()) return;
    const QString text = link_.fieldText();
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
        if (link_.writing() || isReadOnly()) return;
        const QString text = toPlainText();
        link_.write(text.isEmpty() ? QVariant() : QVariant(text));
    });
}

void DBMemo::updateFromField() {
    if (link_.writing() || !dataSource()) return;
    const QString text = link_.fieldText();
    if (text == toPlainText()) return;
    const auto writing = link_.writingScope();
    setPlainText(text);
}

// ---- DBRichEdit

DBRichEdit::DBRichEdit(QWidget* parent) : QTextEdit(parent) {
    setAcceptRichText(true);
    connect(this, &QTextEdit::textChanged, this, [this] {
        if (link_.writing() || isReadOnly()) return;
        link_.write(toPlainText().isEmpty() ? QVariant() : QVariant(toHtml()));
    });
}

void DBRichEdit::updateFromField() {
    if (link_.writing() || !dataSource()) return;
    const QString text = link_.fieldText();
    const auto writing = link_.writingScope();
    if (Qt::mightBeRichText(text))
        setHtml(text);
    else
        setPlainText(text);
}

} // namespace frames::ui
