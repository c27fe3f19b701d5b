#include "frames/edit/EF_Edit.h"
#include "frames/core/Registry.h"
#include <QLayout>

namespace frames {

TEdit_Frame::TEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    Edit = new QLineEdit(body());
    Edit->setObjectName("Edit");
    body()->layout()->addWidget(Edit);
    lbSelect->setBuddy(Edit);
}

void TEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    Edit->setReadOnly(value);
}

void TEdit_Frame::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (node && node->IsExists("Edit.Text")) Edit->setText(node->ItemByName("Edit.Text")->GetAsString());
}

void TEdit_Frame::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (node) node->ItemByName("Edit.Text")->SetAsString(Edit->text());
}

bool TEdit_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || Edit->text().trimmed().isEmpty();
}

void TEdit_Frame::Clear() {
    Edit->clear();
}

FRAMES_REGISTER(TEdit_Frame, "edit");

} // namespace frames
