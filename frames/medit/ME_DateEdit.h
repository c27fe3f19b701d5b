#pragma once
#include "frames/edit/EF_DateEdit.h"
#include "frames/medit/ME_Value.h"

namespace frames {

// The new and the old value as dates. The switches react to the user's choice of a date (a
// click in the editor or in its calendar, or a typed date taken); "Пусто" empties the editor.
// For the document date (field "DOC_DATE", which a document cannot be without) the "Пусто"
// boxes are unchecked and hidden, so a date is always sent. Dates travel as "dd.mm.yyyy"; a
// date that does not read back stops the update with "Неверный формат даты '…'".
class TDateEdit_ME : public TTwoValue_ME {
    Q_OBJECT
public:
    explicit TDateEdit_ME(QWidget* parent = nullptr);

    void SetParams(const QString& params) override;

    virtual void defNewValueDateEditClick(QObject* sender);
    virtual void defOldValueDateEditClick(QObject* sender);

    TDateEdit_Frame* defNewValue;
    TDateEdit_Frame* defOldValue;

protected:
    QString NewValueText() override;
    QString OldValueText() override;
    void ClearNewValue() override { defNewValue->DateEdit->setDayNumber(NullDate); }
    void ClearOldValue() override { defOldValue->DateEdit->setDayNumber(NullDate); }

private:
    // The editors' empty date.
    static constexpr double NullDate = -700000;
};

// A date as the user's short date text ("dd.mm.yyyy"; "" for no date), and back (null when the
// text is not a date).
QString DateToStr(const QDate& date);
QDate StrToDate(const QString& text);

} // namespace frames
