#include "frames/edit/EF_Memo.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include <QLayout>

namespace frames {

TMemo_Frame::TMemo_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(250, 100);
    Memo = new ui::DBMemo(body());
    Memo->setObjectName("Memo");
    body()->layout()->addWidget(Memo);
    lbSelect->setBuddy(Memo);
}

void TMemo_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    Memo->setReadOnly(value);
}

void TMemo_Frame::Init() {
    TAbsEditFrame::Init();
    if (!Bound) return;
    if (db::DataSource* record = editDialogBinding(this)) Memo->setDataSource(record);
}

bool TMemo_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || Memo->toPlainText().trimmed().isEmpty();
}

void TMemo_Frame::Clear() {
    Memo->clear(); // bound, the emptied text reaches the field as null
}

FRAMES_REGISTER(TMemo_Frame, "edit");

} // namespace frames
