#include "frames/edit/EF_EditComboBox.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiLayout.h"
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLayout>
#include <QLineEdit>

namespace frames {

TEditComboBox_EF::TEditComboBox_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    ComboBox = new ui::HistoryCombo(body());
    ComboBox->setObjectName("ComboBox");
    body()->layout()->addWidget(ComboBox);
    lbSelect->setBuddy(ComboBox);
    // The combo takes the focus and the keys for its editor, so its events are the ones to watch.
    ComboBox->installEventFilter(this);
    auto changed = [this] {
        if (OnComboBoxChange) guard([&] { OnComboBoxChange(ComboBox); });
    };
    connect(ComboBox->lineEdit(), &QLineEdit::textEdited, this, changed);
    connect(ComboBox, &QComboBox::activated, this, changed);
}

bool TEditComboBox_EF::eventFilter(QObject* watched, QEvent* event) {
    if (watched != ComboBox || replaying_) return TAbsEditFrame::eventFilter(watched, event);
    if (event->type() == QEvent::KeyPress && OnComboBoxKeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        const QString typed = e->text();
        if (typed.size() == 1 && !(e->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
            QChar key = typed[0];
            guard([&] { OnComboBoxKeyPress(ComboBox, key); });
            if (key.isNull()) return true; // discarded
            if (key != typed[0]) {
                QKeyEvent replaced(QEvent::KeyPress, e->key(), e->modifiers(), QString(key));
                replaying_ = true;
                QCoreApplication::sendEvent(watched, &replaced);
                replaying_ = false;
                return true;
            }
        }
    } else if (event->type() == QEvent::FocusOut && OnComboBoxExit) {
        guard([&] { OnComboBoxExit(ComboBox); });
    }
    return TAbsEditFrame::eventFilter(watched, event);
}

void TEditComboBox_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    ComboBox->lineEdit()->setReadOnly(value);
    ComboBox->setEnabled(!value);
}

void TEditComboBox_EF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    frames::RestoreLayout(node, ComboBox);
}

void TEditComboBox_EF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    ComboBox->commitText();
    frames::SaveLayout(node, ComboBox);
}

bool TEditComboBox_EF::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || ComboBox->currentText().trimmed().isEmpty();
}

void TEditComboBox_EF::Clear() {
    ComboBox->setEditText(QString());
}

FRAMES_REGISTER(TEditComboBox_EF, "edit");

} // namespace frames
