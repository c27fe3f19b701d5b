#include "frames/edit/EF_DBTimeEdit.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include <QLayout>

namespace frames {

TDBTimeEdit_Frame::TDBTimeEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(120, 42);
    DBTimeEdit = new ui::TimeEdit(body());
    DBTimeEdit->setObjectName(QStringLiteral("DBTimeEdit"));
    DBTimeEdit->setDisplayFormat(QStringLiteral("HH:mm"));
    DBTimeEdit->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    body()->layout()->addWidget(DBTimeEdit);
    lbSelect->setBuddy(DBTimeEdit);
}

void TDBTimeEdit_Frame::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* bound = editDialogBinding(this)) DBTimeEdit->setDataSource(bound);
}

bool TDBTimeEdit_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return DBTimeEdit->isNull();
}

void TDBTimeEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    DBTimeEdit->setReadOnly(value);
}

FRAMES_REGISTER(TDBTimeEdit_Frame, "edit");

} // namespace frames
