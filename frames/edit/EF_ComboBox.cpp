#include "frames/edit/EF_ComboBox.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiLayout.h"
#include <QLayout>

namespace frames {

TComboBox_Frame::TComboBox_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    ComboBox = new QComboBox(body());
    ComboBox->setObjectName("ComboBox");
    body()->layout()->addWidget(ComboBox);
    lbSelect->setBuddy(ComboBox);
}

void TComboBox_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    ComboBox->setEnabled(!value);
}

void TComboBox_Frame::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    frames::RestoreLayout(node, ComboBox);
}

bool TComboBox_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || ComboBox->currentIndex() < 0;
}

void TComboBox_Frame::Clear() {
    ComboBox->setCurrentIndex(-1);
}

QStringList TComboBox_Frame::Items() const {
    QStringList l;
    for (int i = 0; i < ComboBox->count(); ++i) l << ComboBox->itemText(i);
    return l;
}

void TComboBox_Frame::SetItems(const QStringList& items) {
    ComboBox->clear();
    ComboBox->addItems(items);
}

FRAMES_REGISTER(TComboBox_Frame, "edit");

} // namespace frames
