#include "frames/core/TyapiLayout.h"
#include "platform/widgets/HistoryCombo.h"
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QListWidget>

namespace frames {

namespace {

TConfigItem* controlNode(TConfigItem* node, const QObject* control) {
    return node->ItemByName(control->objectName());
}

void saveTexts(TConfigItem* item, const QStringList& texts, int index) {
    // Items of an earlier, longer list must not survive a shorter one.
    for (int i = texts.size(); item->IsExists("Item" + QString::number(i)); ++i)
        item->Remove("Item" + QString::number(i));
    item->ItemByName("Count")->SetAsInteger(int(texts.size()));
    for (int i = 0; i < texts.size(); ++i)
        item->ItemByName("Item" + QString::number(i))->SetAsString(texts[i]);
    item->ItemByName("ItemIndex")->SetAsInteger(index);
}

QStringList restoreTexts(const TConfigItem* item) {
    QStringList texts;
    if (!item->IsExists("Count")) return texts;
    const int n = item->Find("Count")->GetAsInteger();
    for (int i = 0; i < n; ++i)
        if (const TConfigItem* t = item->Find("Item" + QString::number(i))) texts << t->GetAsString();
    return texts;
}

int restoredIndex(const TConfigItem* item, int count) {
    const TConfigItem* i = item->Find("ItemIndex");
    if (!i) return -2;
    const int index = i->GetAsInteger();
    return index >= 0 && index < count ? index : -1;
}

} // namespace

void SaveLayout(TConfigItem* node, QListWidget* list) {
    if (!node || !list) return;
    QStringList texts;
    for (int i = 0; i < list->count(); ++i) texts << list->item(i)->text();
    saveTexts(controlNode(node, list), texts, list->currentRow());
}

void RestoreLayout(TConfigItem* node, QListWidget* list) {
    if (!node || !list || !node->IsExists(list->objectName())) return;
    const TConfigItem* item = node->Find(list->objectName());
    if (item->IsExists("Count")) {
        list->clear();
        list->addItems(restoreTexts(item));
    }
    const int index = restoredIndex(item, list->count());
    if (index > -2) list->setCurrentRow(index);
}

void SaveLayout(TConfigItem* node, QComboBox* combo) {
    if (!node || !combo) return;
    QStringList texts;
    for (int i = 0; i < combo->count(); ++i) texts << combo->itemText(i);
    TConfigItem* item = controlNode(node, combo);
    saveTexts(item, texts, combo->currentIndex());
    if (combo->isEditable())
        item->ItemByName("Text")->SetAsString(combo->currentText());
    else
        item->Remove("Text");
}

void RestoreLayout(TConfigItem* node, QComboBox* combo) {
    if (!node || !combo || !node->IsExists(combo->objectName())) return;
    const TConfigItem* item = node->Find(combo->objectName());
    if (!combo->isEditable()) {
        const int index = restoredIndex(item, combo->count());
        if (index > -2) combo->setCurrentIndex(index);
        return;
    }
    if (item->IsExists("Count")) {
        if (auto* history = qobject_cast<ui::HistoryCombo*>(combo)) {
            history->setHistory(restoreTexts(item));
        } else {
            const QString text = combo->currentText();
            combo->clear();
            combo->addItems(restoreTexts(item));
            combo->setCurrentIndex(-1);
            combo->setEditText(text);
        }
    }
    if (const TConfigItem* text = item->Find("Text")) combo->setEditText(text->GetAsString());
}

void PressKey(int key, Qt::KeyboardModifiers modifiers) {
    QWidget* w = QApplication::focusWidget();
    if (!w) return;
    QKeyEvent press(QEvent::KeyPress, key, modifiers);
    QKeyEvent release(QEvent::KeyRelease, key, modifiers);
    QApplication::sendEvent(w, &press);
    QApplication::sendEvent(w, &release);
}

} // namespace frames
