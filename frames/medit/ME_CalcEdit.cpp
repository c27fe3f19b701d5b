#include "frames/medit/ME_CalcEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QLocale>
#include <algorithm>

namespace frames {

QString FloatToStr(double value) {
    QString s = ui::floatToStr(value);
    s.replace(QLatin1Char('.'), QLocale().decimalPoint());
    return s;
}

TCalcEdit_ME::TCalcEdit_ME(QWidget* parent) : TTwoValue_ME(parent) {
    makeEditors("TCalcEdt_Frame", QStringLiteral("cef"), cefNewValue, cefOldValue);
    // The editors' own handlers stay; the frame's run after them on every change of the text.
    cefNewValue->CalcEdit->OnChange = chained<QObject*>(cefNewValue->CalcEdit->OnChange, [this](QObject* s) {
        guard([&] { cefNewValueCalcEditPropertiesChange(s); });
    });
    cefOldValue->CalcEdit->OnChange = chained<QObject*>(cefOldValue->CalcEdit->OnChange, [this](QObject* s) {
        guard([&] { cefOldValueCalcEditPropertiesChange(s); });
    });
}

void TCalcEdit_ME::SetParams(const QString& params) {
    TTwoValue_ME::SetParams(params);
    const QString kind = Values(QStringLiteral("PrecKind")).trimmed();
    Host* config = TYConfig();
    int places;
    QString format;
    if (kind == QLatin1String("Rub")) {
        places = config->GetIntValue(QStringLiteral("PrecisionRub"));
        format = config->PrecisionRubFormat();
    } else if (kind == QLatin1String("Cur")) {
        places = config->GetIntValue(QStringLiteral("PrecisionCur"));
        format = config->PrecisionCurFormat();
    } else if (kind == QLatin1String("Int")) {
        places = 0;
        format = QStringLiteral("0");
    } else if (kind == QLatin1String("Volume")) {
        places = config->GetIntValue(QStringLiteral("PrecisionVolume"));
        format = config->PrecisionVolumeFormat();
    } else {
        places = config->GetIntValue(QStringLiteral("PrecisionQuantity"));
        format = config->PrecisionQuantityFormat();
    }
    for (TCalcEdt_Frame* ed : {cefNewValue, cefOldValue}) {
        ed->SetDecimalPlaces(places);
        ed->SetDisplayFormat(format);
    }
}

void TCalcEdit_ME::cefNewValueCalcEditPropertiesChange(QObject*) {
    NewValueChanged();
}

void TCalcEdit_ME::cefOldValueCalcEditPropertiesChange(QObject*) {
    OldValueChanged();
}

QString TCalcEdit_ME::NewValueText() {
    return FloatToStr(cefNewValue->GetValue());
}

QString TCalcEdit_ME::OldValueText() {
    return FloatToStr(cefOldValue->GetValue());
}

void TCalcEdit_ME::ClearNewValue() {
    cefNewValue->CalcEdit->setEditText(QString());
}

void TCalcEdit_ME::ClearOldValue() {
    cefOldValue->CalcEdit->setEditText(QString());
}

void TCalcEdit_ME::FrameResize(QObject*) {
    // The old value's editor leaves room for "Использовать".
    cefNewValue->setMaximumWidth(std::max(0, width() - 74));
    cefOldValue->setMaximumWidth(std::max(0, width() - 178));
}

void TCalcEdit_ME::resizeEvent(QResizeEvent* e) {
    TTwoValue_ME::resizeEvent(e);
    guard([&] { FrameResize(this); });
}

FRAMES_REGISTER(TCalcEdit_ME, "medit");

} // namespace frames
