#include "frames/edit/EF_DBDateTimeEdit.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiDates.h"
#include <QLayout>

namespace frames {

TDBDateTimeEdit_Frame::TDBDateTimeEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(180, 42);
    DBDateTimeEdit = new ui::DateTimeEdit(body());
    DBDateTimeEdit->setObjectName(QStringLiteral("DBDateTimeEdit"));
    DBDateTimeEdit->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    body()->layout()->addWidget(DBDateTimeEdit);
    lbSelect->setBuddy(DBDateTimeEdit);
}

void TDBDateTimeEdit_Frame::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* bound = editDialogBinding(this)) DBDateTimeEdit->setDataSource(bound);
}

bool TDBDateTimeEdit_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    const double day = DBDateTimeEdit->dayNumber();
    return day == NullDate || day == 0;
}

void TDBDateTimeEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    DBDateTimeEdit->setReadOnly(value);
}

FRAMES_REGISTER(TDBDateTimeEdit_Frame, "edit");

} // namespace frames
