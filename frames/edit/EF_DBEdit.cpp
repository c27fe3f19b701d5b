#include "frames/edit/EF_DBEdit.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>
#include <QRegularExpressionValidator>

namespace frames {

namespace {

// Accepts the characters of a class and turns letters into capitals when asked.
class CharsValidator : public QValidator {
public:
    CharsValidator(const QString& chars, bool upper, QObject* parent)
        : QValidator(parent), upper_(upper), re_(chars.isEmpty() ? QString() : "^[" + chars + "]*$",
                                                 QRegularExpression::UseUnicodePropertiesOption) {}
    State validate(QString& input, int&) const override {
        if (upper_) input = input.toUpper();
        if (re_.pattern().isEmpty() || !re_.isValid()) return Acceptable;
        return re_.match(input).hasMatch() ? Acceptable : Invalid;
    }

private:
    bool upper_;
    QRegularExpression re_;
};

} // namespace

TDBEdit_Frame::TDBEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 41);
    DBEdit = new ui::DBEdit(body());
    DBEdit->setObjectName("DBEdit");
    body()->layout()->addWidget(DBEdit);
    lbSelect->setBuddy(DBEdit);
}

void TDBEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    DBEdit->setReadOnly(value);
}

void TDBEdit_Frame::Init() {
    TAbsEditFrame::Init();
    recordSource_ = editDialogBinding(this);
    if (recordSource_) BindEditor(recordSource_);
}

void TDBEdit_Frame::BindEditor(db::DataSource* record) {
    DBEdit->setDataSource(record);
}

bool TDBEdit_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || DBEdit->text().trimmed().isEmpty();
}

void TDBEdit_Frame::Clear() {
    if (db::Field* f = DBEdit->field()) {
        db::AbstractDataSet* ds = f->dataSet();
        if (!ds->inEditMode()) ds->edit();
        f->clear();
    } else {
        DBEdit->clear();
    }
}

void TDBEdit_Frame::SetRecordValue(const QString& fieldName, const QVariant& value) {
    if (!recordSource_ || !recordSource_->dataSet()) return;
    db::AbstractDataSet* ds = recordSource_->dataSet();
    if (!ds->inEditMode()) ds->edit();
    db::Field* f = ds->fieldByName(fieldName);
    if (!value.isValid() || value.isNull())
        f->clear();
    else
        f->setValue(value);
}

void TDBEdit_Frame::SetUpperCase(bool on) {
    upperCase_ = on;
    updateValidator();
}

void TDBEdit_Frame::SetValidChars(const QString& chars) {
    validChars_ = chars;
    updateValidator();
}

void TDBEdit_Frame::updateValidator() {
    const QValidator* old = DBEdit->validator();
    DBEdit->setValidator(
        upperCase_ || !validChars_.isEmpty() ? new CharsValidator(validChars_, upperCase_, DBEdit) : nullptr);
    delete old;
}

FRAMES_REGISTER(TDBEdit_Frame, "edit");

} // namespace frames
