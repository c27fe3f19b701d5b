#include "frames/edit/EF_DBComboBox.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>

namespace frames {

TDBComboBox_Frame::TDBComboBox_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    DBComboBox = new ui::DBComboBox(body());
    DBComboBox->setObjectName("DBComboBox");
    body()->layout()->addWidget(DBComboBox);
    lbSelect->setBuddy(DBComboBox);
}

void TDBComboBox_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    DBComboBox->setReadOnly(value);
    DBComboBox->setEnabled(!value);
}

void TDBComboBox_Frame::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* record = editDialogBinding(this)) DBComboBox->setDataSource(record);
}

bool TDBComboBox_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || DBComboBox->currentText().trimmed().isEmpty();
}

void TDBComboBox_Frame::Clear() {
    if (db::Field* f = DBComboBox->field()) {
        if (!f->dataSet()->inEditMode()) f->dataSet()->edit();
        f->clear();
    } else {
        DBComboBox->setCurrentIndex(-1);
        DBComboBox->setEditText(QString());
    }
}

FRAMES_REGISTER(TDBComboBox_Frame, "edit");

} // namespace frames
