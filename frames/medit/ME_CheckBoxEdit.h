#pragma once
#include "frames/core/ME_Abs.h"
#include <QCheckBox>

namespace frames {

// A yes/no column: the new value is the check box, sent as "T" or "F". No old value and no
// "Пусто": every marked record gets the value.
class TCheckBoxEdit_ME : public TAbsMEditFrame {
    Q_OBJECT
public:
    explicit TCheckBoxEdit_ME(QWidget* parent = nullptr);

    void pfUpdateBeforeExecute(QObject* sender) override;

    QCheckBox* chbNewValue;
};

} // namespace frames
