#include "frames/edit/EF_CheckBoxEdit.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>

namespace frames {

TCheckBoxEdit_Frame::TCheckBoxEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 25);
    lbSelect->hide();
    CheckBox = new ui::DBCheckBox(body());
    CheckBox->setObjectName("CheckBox");
    body()->layout()->addWidget(CheckBox);
    lbSelect->setBuddy(CheckBox);
}

void TCheckBoxEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    CheckBox->setReadOnly(value);
}

void TCheckBoxEdit_Frame::Init() {
    TAbsEditFrame::Init();
    if (!Bound) return;
    if (db::DataSource* record = editDialogBinding(this)) CheckBox->setDataSource(record);
}

bool TCheckBoxEdit_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    db::Field* f = CheckBox->field();
    return f && f->isNull();
}

void TCheckBoxEdit_Frame::Clear() {
    if (!CheckBox->isChecked()) return;
    if (CheckBox->field()) {
        const bool readOnly = CheckBox->isReadOnly();
        CheckBox->setReadOnly(false); // clearing is the host's act, not the user's click
        CheckBox->click();
        CheckBox->setReadOnly(readOnly);
    } else {
        CheckBox->setChecked(false);
    }
}

FRAMES_REGISTER(TCheckBoxEdit_Frame, "edit");

} // namespace frames
