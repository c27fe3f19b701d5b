#include "frames/edit/EF_RichEdit.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include <QLayout>

namespace frames {

TRichEdit_Frame::TRichEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(300, 150);
    RichEdit = new ui::DBRichEdit(body());
    RichEdit->setObjectName("RichEdit");
    body()->layout()->addWidget(RichEdit);
    lbSelect->setBuddy(RichEdit);
}

void TRichEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    RichEdit->setReadOnly(value);
}

void TRichEdit_Frame::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* record = editDialogBinding(this)) RichEdit->setDataSource(record);
}

bool TRichEdit_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || RichEdit->toPlainText().trimmed().isEmpty();
}

void TRichEdit_Frame::Clear() {
    RichEdit->clear();
}

FRAMES_REGISTER(TRichEdit_Frame, "edit");

} // namespace frames
