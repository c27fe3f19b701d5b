#include "frames/edit/EF_PriceType.h"
#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>
#include <QSignalBlocker>

namespace frames {

TPriceType_EF::TPriceType_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    ComboBox = new QComboBox(body());
    ComboBox->setObjectName("ComboBox");
    body()->layout()->addWidget(ComboBox);
    lbSelect->setBuddy(ComboBox);
    DBEdit1 = new ui::DBEdit(body());
    DBEdit1->setObjectName("DBEdit1");
    DBEdit1->hide();
    connect(ComboBox, &QComboBox::activated, this, [this] { guard([&] { ComboBoxChange(ComboBox); }); });
    // The edit follows the record; the combo follows the edit.
    connect(DBEdit1, &QLineEdit::textChanged, this, [this] { showCode(); });
}

void TPriceType_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    ComboBox->setEnabled(!value);
    DBEdit1->setReadOnly(value);
}

void TPriceType_EF::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* record = editDialogBinding(this)) DBEdit1->setDataSource(record);
    showCode();
}

bool TPriceType_EF::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || Code().isEmpty();
}

void TPriceType_EF::Clear() {
    if (db::Field* f = DBEdit1->field()) {
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        f->clear();
    } else {
        DBEdit1->clear();
    }
}

QStringList TPriceType_EF::Items() const {
    QStringList l;
    for (int i = 0; i < ComboBox->count(); ++i) l << ComboBox->itemText(i);
    return l;
}

void TPriceType_EF::SetItems(const QStringList& items) {
    const QSignalBlocker block(ComboBox);
    ComboBox->clear();
    ComboBox->addItems(items);
}

int TPriceType_EF::IndexOfCode(const QString& code) const {
    const int last = ComboBox->count() - 1;
    for (int i = 0; i < last && i < Codes.size(); ++i)
        if (Codes[i] == code) return i;
    return last;
}

void TPriceType_EF::showCode() {
    const QSignalBlocker block(ComboBox);
    ComboBox->setCurrentIndex(IndexOfCode(Code()));
}

void TPriceType_EF::ComboBoxChange(QObject*) {
    const int i = ComboBox->currentIndex();
    if (GetReadOnly() || i < 0 || i >= Codes.size()) return;
    if (db::Field* f = DBEdit1->field()) {
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        f->setAsString(Codes[i]);
    } else {
        DBEdit1->setText(Codes[i]);
    }
}

FRAMES_REGISTER(TPriceType_EF, "edit");

} // namespace frames
