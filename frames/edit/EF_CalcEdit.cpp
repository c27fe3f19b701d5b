#include "frames/edit/EF_CalcEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>
#include <QLineEdit>
#include <QToolButton>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace frames {

namespace numedit {

bool checkSilent(const QString& text, double* value) {
    double v = 0;
    if (!ui::strToFloat(text, v) || std::fabs(v) > kLimit) return false;
    if (value) *value = v;
    return true;
}

double toFloat(const QString& text) {
    double v = 0;
    if (!ui::strToFloat(text, v))
        throw std::invalid_argument(QString::fromUtf8("\"%1\" не является числом").arg(text).toStdString());
    return v;
}

int toInteger(double value) {
    const double r = std::round(value);
    if (!std::isfinite(r) || r < double(std::numeric_limits<int>::min()) ||
        r > double(std::numeric_limits<int>::max()))
        throw std::out_of_range(QString::fromUtf8("Значение %1 вне допустимого диапазона")
                                    .arg(ui::floatToStr(value))
                                    .toStdString());
    return int(r);
}

void hookCalculator(ui::CalcEdit* edit) {
    edit->OnCalcButtonClick = [edit](QObject*, ui::CalcButton b) {
        guard([&] {
            if (b == ui::CalcButton::Equals) edit->closeUp();
        });
    };
    edit->OnCalcKeyPress = [edit](QObject*, int& key) {
        guard([&] {
            if (key == Qt::Key_Escape) {
                key = 0;
                edit->closeUp();
            }
        });
    };
}

} // namespace numedit

namespace {

// Whether a text typed so far can still become a number ("-", ",").
bool unfinishedNumber(const QString& text, bool integer) {
    const QString t = text.trimmed();
    if (t == QLatin1String("-")) return true;
    return !integer && (t == QLatin1String(",") || t == QLatin1String(".") || t == QLatin1String("-,") ||
                        t == QLatin1String("-."));
}

bool isIntegerText(const QString& text, qint64 min, qint64 max) {
    bool ok = false;
    const qint64 v = text.trimmed().toLongLong(&ok);
    return ok && v >= min && v <= max;
}

} // namespace

TCalcEdit_Frame::TCalcEdit_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(129, 54);
    DBCalcEdit = new ui::DBCalcEdit(body());
    DBCalcEdit->setObjectName("DBCalcEdit");
    DBCalcEdit->setFixedWidth(121);
    DBCalcEdit->setPrecision(10);
    body()->layout()->addWidget(DBCalcEdit);
    body()->layout()->setAlignment(DBCalcEdit, Qt::AlignLeft);
    lbSelect->setBuddy(DBCalcEdit->lineEdit());

    DBCalcEdit->OnButtonClick = [this](QObject* s) { guard([&] { DBCalcEditPropertiesButtonClick(s); }); };
    DBCalcEdit->OnChange = [this](QObject* s) { guard([&] { DBCalcEditPropertiesChange(s); }); };
    DBCalcEdit->OnEditValueChanged = [this](QObject* s) {
        guard([&] { DBCalcEditPropertiesEditValueChanged(s); });
    };
    DBCalcEdit->OnClick = [this](QObject* s) { guard([&] { DBCalcEditClick(s); }); };
    DBCalcEdit->OnExit = [this](QObject* s) { guard([&] { DBCalcEditExit(s); }); };
    numedit::hookCalculator(DBCalcEdit);
}

TCalcEdit_Frame::~TCalcEdit_Frame() = default;

QString TCalcEdit_Frame::FormatOfTag(int tag) {
    const Host* config = TYConfig();
    return tag == 1   ? config->PrecisionRubFormat()
           : tag == 2 ? config->PrecisionCurFormat()
                      : config->PrecisionQuantityFormat();
}

void TCalcEdit_Frame::SetEnabled(bool value) {
    TAbsEditFrame::SetEnabled(value);
    enabled_ = value;
    DBCalcEdit->setEnabled(value);
    DBCalcEdit->button()->setEnabled(value);
}

void TCalcEdit_Frame::SetFocus() {
    DBCalcEdit->setFocus();
}

void TCalcEdit_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    readOnly_ = value;
    DBCalcEdit->setReadOnly(value);
    DBCalcEdit->button()->setEnabled(!value);
    lbSelect->setEnabled(!value);
}

void TCalcEdit_Frame::Init() {
    if (db::DataSource* src = editDialogBinding(this)) {
        DBCalcEdit->setDataSource(src);
        db::AbstractDataSet* record = src->dataSet();
        if (record && record->active() && !DBCalcEdit->dataField().isEmpty()) {
            const db::Field* f = record->fieldByName(DBCalcEdit->dataField());
            SetDisplayFormat(FormatOfTag(f->tag));
        }
        // An empty amount of a new record starts at 0, and the record stores the 0 it shows; an
        // existing record is shown as it is stored, an empty amount as an empty editor.
        if (DBCalcEdit->editText().isEmpty() && record && record->state() == db::DataSetState::Insert) {
            DBCalcEdit->setEditText("0");
            CheckMinMax();
            DBCalcEdit->postEditValue();
        }
        DBCalcEdit->setPrecision(10);
    }
    TAbsEditFrame::Init();
}

bool TCalcEdit_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return GetEmpty();
}

void TCalcEdit_Frame::Clear() {
    DBCalcEdit->setEditValue(minValue_);
    DBCalcEdit->postEditValue();
}

double TCalcEdit_Frame::GetValue() {
    double v = 0;
    if (numedit::checkSilent(DBCalcEdit->editText(), &v)) DBCalcEdit->setEditValue(v);
    return DBCalcEdit->value();
}

void TCalcEdit_Frame::SetValue(double v) {
    if (!DBCalcEdit->isNull() && DBCalcEdit->value() == v) return;
    DBCalcEdit->setEditValue(v);
    DBCalcEdit->postEditValue();
}

void TCalcEdit_Frame::SetAsFloat(double v) {
    DBCalcEdit->setEditValue(v);
}

int TCalcEdit_Frame::AsInteger() {
    return numedit::toInteger(GetValue());
}

void TCalcEdit_Frame::SetAsInteger(int v) {
    DBCalcEdit->setEditValue(double(v));
}

QString TCalcEdit_Frame::Text() const {
    return ui::floatToStr(DBCalcEdit->value());
}

void TCalcEdit_Frame::SetText(const QString& text) {
    DBCalcEdit->setEditText(text);
}

QString TCalcEdit_Frame::EditText() const {
    return DBCalcEdit->editText();
}

void TCalcEdit_Frame::SetEditText(const QString& text) {
    numedit::toFloat(text);
    DBCalcEdit->setEditText(text);
}

bool TCalcEdit_Frame::GetEmpty() const {
    return DBCalcEdit->isNull() || DBCalcEdit->value() == 0;
}

bool TCalcEdit_Frame::IsNull() const {
    const db::Field* f = DBCalcEdit->field();
    return !f || f->isNull();
}

db::DataSource* TCalcEdit_Frame::DataSource() const {
    return DBCalcEdit->dataSource();
}

void TCalcEdit_Frame::SetDataSource(db::DataSource* ds) {
    DBCalcEdit->setDataSource(ds);
}

void TCalcEdit_Frame::SetDisplayFormat(const QString& format) {
    if (format == displayFormat_) return;
    displayFormat_ = format;
    DBCalcEdit->setDisplayFormat(format);
}

int TCalcEdit_Frame::DecimalPlaces() const {
    return DBCalcEdit->precision();
}

void TCalcEdit_Frame::SetDecimalPlaces(int) {}

void TCalcEdit_Frame::SetMinValue(double v) {
    if (v != minValue_) minValue_ = v;
}

void TCalcEdit_Frame::SetMaxValue(double v) {
    if (v != maxValue_) maxValue_ = v;
}

void TCalcEdit_Frame::SelectAll() {
    DBCalcEdit->selectAll();
}

void TCalcEdit_Frame::CheckMinMax() {
    CheckSilent(DBCalcEdit->editText());
    if (minValue_ != 0 && GetValue() < minValue_) SetValue(minValue_ == Min_c() ? 0 : minValue_);
    if (maxValue_ != 0 && GetValue() > maxValue_) SetValue(maxValue_ == Max_c() ? 0 : maxValue_);
}

void TCalcEdit_Frame::DBCalcEditPropertiesButtonClick(QObject*) {
    CheckMinMax();
}

void TCalcEdit_Frame::DBCalcEditPropertiesChange(QObject*) {
    const QString text = DBCalcEdit->editText();
    if (text.isEmpty()) {
        // An empty value read from the record stays as stored; the user's cleared text becomes 0.
        if (!DBCalcEdit->isModified() && DBCalcEdit->field()) return;
        DBCalcEdit->setEditText("0");
        CheckMinMax();
        return;
    }
    const db::Field* f = DBCalcEdit->field();
    if (!f) return;
    bool ok = true;
    switch (f->dataType()) {
    case db::FieldType::SmallInt:
        ok = unfinishedNumber(text, true) || isIntegerText(text, -32768, 32767);
        break;
    case db::FieldType::Integer:
        ok = unfinishedNumber(text, true) ||
             isIntegerText(text, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
        break;
    case db::FieldType::Float:
    case db::FieldType::Double:
    case db::FieldType::Numeric: {
        double v = 0;
        ok = unfinishedNumber(text, false) || ui::strToFloat(text, v);
        break;
    }
    default:
        break;
    }
    if (!ok) DBCalcEdit->revertEdit();
}

void TCalcEdit_Frame::DBCalcEditPropertiesEditValueChanged(QObject*) {
    CheckMinMax();
}

void TCalcEdit_Frame::DBCalcEditClick(QObject*) {
    CheckMinMax();
}

void TCalcEdit_Frame::DBCalcEditExit(QObject*) {
    CheckMinMax();
}

FRAMES_REGISTER(TCalcEdit_Frame, "edit");

} // namespace frames
