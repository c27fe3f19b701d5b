#include "frames/medit/ME_DateEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <stdexcept>

namespace frames {

QString DateToStr(const QDate& date) {
    return date.isValid() ? date.toString(QStringLiteral("dd.MM.yyyy")) : QString();
}

QDate StrToDate(const QString& text) {
    return ui::parseDateTime(text).date();
}

namespace {
// The editor's date as text, checked by reading it back.
QString checkedDateText(TDateEdit_Frame* editor) {
    const QString text = DateToStr(editor->GetDate());
    const QDate back = StrToDate(text);
    if (!back.isValid() || back != editor->GetDate())
        throw std::runtime_error(QStringLiteral("Неверный формат даты '%1'").arg(text).toStdString());
    return DateToStr(back);
}
} // namespace

TDateEdit_ME::TDateEdit_ME(QWidget* parent) : TTwoValue_ME(parent) {
    makeEditors("TDateEdit_Frame", QStringLiteral("def"), defNewValue, defOldValue);
    for (auto [editor, handler] : {std::pair{defNewValue, &TDateEdit_ME::defNewValueDateEditClick},
                                   {defOldValue, &TDateEdit_ME::defOldValueDateEditClick}}) {
        auto own = [this, handler](QObject* s) { guard([&] { (this->*handler)(s); }); };
        editor->DateEdit->OnClick = chained<QObject*>(editor->DateEdit->OnClick, own);
        editor->DateEdit->OnEditValueChanged = chained<QObject*>(editor->DateEdit->OnEditValueChanged, own);
    }
}

void TDateEdit_ME::SetParams(const QString& params) {
    TTwoValue_ME::SetParams(params);
    if (FieldName().compare(QLatin1String("DOC_DATE"), Qt::CaseInsensitive) == 0) {
        chbNewNull->setChecked(false);
        chbOldNull->setChecked(false);
        chbNewNull->hide();
        chbOldNull->hide();
    }
}

void TDateEdit_ME::defNewValueDateEditClick(QObject*) {
    NewValueChanged();
}

void TDateEdit_ME::defOldValueDateEditClick(QObject*) {
    OldValueChanged();
}

QString TDateEdit_ME::NewValueText() {
    return checkedDateText(defNewValue);
}

QString TDateEdit_ME::OldValueText() {
    return checkedDateText(defOldValue);
}

FRAMES_REGISTER(TDateEdit_ME, "medit");

} // namespace frames
