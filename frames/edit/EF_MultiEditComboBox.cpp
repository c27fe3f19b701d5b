#include "frames/edit/EF_MultiEditComboBox.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiLayout.h"
#include <QKeyEvent>
#include <QLineEdit>

namespace frames {

TMultiEditComboBox_EF::TMultiEditComboBox_EF(QWidget* parent) : TValueList_Frame(parent) {
    ComboBox = new ui::HistoryCombo(body());
    ComboBox->setObjectName("ComboBox");
    insertEditor(ComboBox);
    lbSelect->setBuddy(ComboBox);
    ComboBox->installEventFilter(this);
}

bool TMultiEditComboBox_EF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ComboBox && event->type() == QEvent::KeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        int key = e->key();
        if (key != 0) {
            guard([&] { ComboBoxKeyDown(ComboBox, key, e->modifiers()); });
            if (key == 0) return true; // taken by the frame
        }
    }
    return TValueList_Frame::eventFilter(watched, event);
}

void TMultiEditComboBox_EF::ComboBoxKeyDown(QObject*, int& key, Qt::KeyboardModifiers) {
    if (key != Qt::Key_Return && key != Qt::Key_Enter) return;
    key = 0;
    if (GetReadOnly()) return;
    const QString text = ComboBox->commitText();
    if (AddText(text)) emit Changed();
    ComboBox->setEditText(QString());
}

void TMultiEditComboBox_EF::SetReadOnly(bool value) {
    TValueList_Frame::SetReadOnly(value);
    ComboBox->lineEdit()->setReadOnly(value);
}

void TMultiEditComboBox_EF::RestoreLayout(TConfigItem* node) {
    TValueList_Frame::RestoreLayout(node);
    frames::RestoreLayout(node, ListBox);
    frames::RestoreLayout(node, ComboBox);
}

void TMultiEditComboBox_EF::SaveLayout(TConfigItem* node) {
    TValueList_Frame::SaveLayout(node);
    frames::SaveLayout(node, ListBox);
    frames::SaveLayout(node, ComboBox);
}

void TMultiEditComboBox_EF::Clear() {
    TValueList_Frame::Clear();
    ComboBox->setEditText(QString());
}

FRAMES_REGISTER(TMultiEditComboBox_EF, "edit");

} // namespace frames
