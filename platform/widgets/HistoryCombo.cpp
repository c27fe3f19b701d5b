#include "platform/widgets/HistoryCombo.h"
#include <QKeyEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace frames::ui {

HistoryCombo::HistoryCombo(QWidget* parent) : QComboBox(parent) {
    setEditable(true);
    setInsertPolicy(QComboBox::NoInsert);
    setMaxVisibleItems(12);
}

void HistoryCombo::setMaxHistory(int n) {
    maxHistory_ = qMax(1, n);
    if (count() > maxHistory_) fill(history());
}

QStringList HistoryCombo::history() const {
    QStringList l;
    for (int i = 0; i < count(); ++i) l << itemText(i);
    return l;
}

void HistoryCombo::fill(const QStringList& texts) {
    QStringList clean;
    for (const QString& t : texts) {
        const QString s = t.trimmed();
        if (!s.isEmpty() && !clean.contains(s)) clean << s;
        if (clean.size() >= maxHistory_) break;
    }
    // Rebuilding the list moves the current index; the editor keeps what the user sees.
    const QString text = currentText();
    const QSignalBlocker block(this);
    clear();
    addItems(clean);
    setCurrentIndex(-1);
    setEditText(text);
}

void HistoryCombo::setHistory(const QStringList& texts) {
    fill(texts);
}

void HistoryCombo::addToHistory(const QString& text) {
    const QString s = text.trimmed();
    if (s.isEmpty()) return;
    QStringList l = history();
    l.removeAll(s);
    l.prepend(s);
    fill(l);
}

QString HistoryCombo::commitText() {
    const QString s = currentText().trimmed();
    addToHistory(s);
    return s;
}

void HistoryCombo::keyPressEvent(QKeyEvent* e) {
    if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) && lineEdit() &&
        !lineEdit()->isReadOnly()) {
        const QString s = commitText();
        if (!s.isEmpty()) emit textCommitted(s);
    }
    QComboBox::keyPressEvent(e);
}

} // namespace frames::ui
