#include "frames/medit/ME_CheckBoxEdit.h"
#include "frames/core/Registry.h"
#include "platform/db/Query.h"
#include <QLayout>

namespace frames {

TCheckBoxEdit_ME::TCheckBoxEdit_ME(QWidget* parent) : TAbsMEditFrame(parent) {
    setMinimumSize(300, 40);
    chbNewValue = new QCheckBox(body());
    chbNewValue->setObjectName("chbNewValue");
    chbNewValue->setChecked(true);
    body()->layout()->addWidget(chbNewValue);
    lbSelect->setBuddy(chbNewValue);
}

void TCheckBoxEdit_ME::pfUpdateBeforeExecute(QObject* sender) {
    TAbsMEditFrame::pfUpdateBeforeExecute(sender);
    setParam(QStringLiteral("session"), SessionNumber());
    setIfPresent(QStringLiteral("fieldname"), FieldName());
    setIfPresent(QStringLiteral("kind"), Values(QStringLiteral("REFADD_KIND")));
    setParam(QStringLiteral("new_value"), BoolText(chbNewValue->isChecked()));
}

FRAMES_REGISTER(TCheckBoxEdit_ME, "medit");

} // namespace frames
