#include "frames/edit/EF_CalcEdt.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <QLayout>
#include <QLineEdit>
#include <QToolButton>
#include <cmath>

namespace frames {

TCalcEdt_Frame::TCalcEdt_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(129, 74);
    CalcEdit = new ui::CalcEdit(body());
    CalcEdit->setObjectName("CalcEdit");
    CalcEdit->setFixedSize(121, 21);
    CalcEdit->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    CalcEdit->setEditValue(0.0);
    body()->layout()->addWidget(CalcEdit);
    body()->layout()->setAlignment(CalcEdit, Qt::AlignLeft);
    lbSelect->setBuddy(CalcEdit->lineEdit());

    CalcEdit->OnButtonClick = [this](QObject* s) { guard([&] { CalcEditPropertiesButtonClick(s); }); };
    CalcEdit->OnEditValueChanged = [this](QObject* s) {
        guard([&] { CalcEditPropertiesEditValueChanged(s); });
    };
    CalcEdit->OnClick = [this](QObject* s) { guard([&] { CalcEditClick(s); }); };
    CalcEdit->OnExit = [this](QObject* s) { guard([&] { CalcEditExit(s); }); };
    numedit::hookCalculator(CalcEdit);
    // The limit holds however a value comes in: typed (taken at every key with ImmediatePost),
    // set, or restored from a layout. The owners' handlers may replace the frame's own.
    connect(CalcEdit, &ui::CalcEdit::editValueChanged, this, [this] {
        if (!CalcEdit->isNull() && !(std::fabs(CalcEdit->value()) <= numedit::kLimit))
            guard([&] { CheckRange(); });
    });
}

TCalcEdt_Frame::~TCalcEdt_Frame() = default;

void TCalcEdt_Frame::SetEnabled(bool value) {
    TAbsEditFrame::SetEnabled(value);
    enabled_ = value;
    CalcEdit->setEnabled(value);
    CalcEdit->button()->setEnabled(value);
}

void TCalcEdt_Frame::SetFocus() {
    CalcEdit->setFocus();
}

void TCalcEdt_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    readOnly_ = value;
    CalcEdit->setReadOnly(value);
    CalcEdit->button()->setEnabled(!value);
    lbSelect->setEnabled(!value);
}

void TCalcEdt_Frame::Init() {
    TAbsEditFrame::Init();
}

bool TCalcEdt_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return GetEmpty();
}

void TCalcEdt_Frame::Clear() {
    CalcEdit->setEditValue(minValue_);
}

double TCalcEdt_Frame::GetValue() {
    double v = 0;
    if (numedit::checkSilent(CalcEdit->editText(), &v)) CalcEdit->setEditValue(v);
    return CalcEdit->value();
}

void TCalcEdt_Frame::SetValue(double v) {
    if (!CalcEdit->isNull() && CalcEdit->value() == v) return;
    CalcEdit->setEditValue(v);
}

void TCalcEdt_Frame::SetAsFloat(double v) {
    CalcEdit->setEditValue(v);
}

int TCalcEdt_Frame::AsInteger() {
    return numedit::toInteger(GetValue());
}

void TCalcEdt_Frame::SetAsInteger(int v) {
    CalcEdit->setEditValue(double(v));
}

QString TCalcEdt_Frame::Text() const {
    return ui::floatToStr(CalcEdit->value());
}

void TCalcEdt_Frame::SetText(const QString& text) {
    CalcEdit->setEditText(text);
}

QString TCalcEdt_Frame::EditText() const {
    return CalcEdit->editText();
}

void TCalcEdt_Frame::SetEditText(const QString& text) {
    numedit::toFloat(text);
    CalcEdit->setEditText(text);
}

bool TCalcEdt_Frame::GetEmpty() const {
    return CalcEdit->isNull() || CalcEdit->value() == 0;
}

void TCalcEdt_Frame::SetDisplayFormat(const QString& format) {
    if (format == displayFormat_) return;
    displayFormat_ = format;
    CalcEdit->setDisplayFormat(format);
}

void TCalcEdt_Frame::SetDecimalPlaces(int) {
    decimalPlaces_ = 10;
    CalcEdit->setPrecision(10);
}

void TCalcEdt_Frame::SetMinValue(double v) {
    if (v != minValue_) minValue_ = v;
}

void TCalcEdt_Frame::SetMaxValue(double v) {
    if (v != maxValue_) maxValue_ = v;
}

void TCalcEdt_Frame::SelectAll() {
    CalcEdit->selectAll();
}

bool TCalcEdt_Frame::CheckRange() {
    try {
        const double v = CalcEdit->value();
        if (std::fabs(v) <= numedit::kLimit) return true;
        CalcEdit->setEditValue(std::isnan(v) ? 0.0 : SignOf(v) ? numedit::kLimit : -numedit::kLimit);
    } catch (...) {
    }
    return false;
}

void TCalcEdt_Frame::CheckMinMax() {
    // A number beyond the limit is cut on the first pass; the second finds it in range.
    for (int pass = 0; pass < 2; ++pass) {
        double v = 0;
        const QString text = CalcEdit->editText();
        if (ui::strToFloat(text, v)) CalcEdit->setEditValue(v);
        if (text.isEmpty()) CalcEdit->setEditValue(0.0);
        if (CheckRange()) break;
    }
    if (minValue_ != 0 && GetValue() < minValue_) SetValue(minValue_ == Min_c() ? 0 : minValue_);
    if (maxValue_ != 0 && GetValue() > maxValue_) SetValue(maxValue_ == Max_c() ? 0 : maxValue_);
}

void TCalcEdt_Frame::CalcEditPropertiesButtonClick(QObject*) {
    CheckMinMax();
}

void TCalcEdt_Frame::CalcEditPropertiesEditValueChanged(QObject*) {
    CheckMinMax();
}

void TCalcEdt_Frame::CalcEditClick(QObject*) {
    CheckMinMax();
}

void TCalcEdt_Frame::CalcEditExit(QObject*) {
    CheckMinMax();
}

FRAMES_REGISTER(TCalcEdt_Frame, "edit");

} // namespace frames
