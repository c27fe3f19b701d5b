#pragma once
#include "frames/core/Period.h"
#include "frames/edit/EF_SetDate.h"
#include <QComboBox>

namespace frames {

// The date range filter with a choice of named periods above the dates: "<Заданный>", "Месяц",
// "Квартал", "Год", "Предыдущий месяц", "Предыдущий квартал", "Предыдущий год". Choosing one fills
// both dates from today's date (and so switches the filter on); typing a date turns the choice
// back into "<Заданный>". A stored named choice is recomputed for the day the layout is restored.
class TSetPeriod_EF : public TSetDate_EF {
    Q_OBJECT
public:
    explicit TSetPeriod_EF(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    void Clear() override;
    // The base's items, then "cbPeriod.ItemIndex".
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;

    // The period type (PeriodKind) of the chosen entry; SetPeriodType chooses the entry of a type,
    // "<Заданный>" for a type the list does not hold. Neither recomputes the dates.
    int GetPeriodType() const;
    void SetPeriodType(int type);
    // Fills both dates for the chosen type; "<Заданный>" leaves them.
    void SetSelectedPeriod();
    // Copies the period in (dates, type, then the dates of a named type).
    void SetPeriod(TPeriod* period);
    // Writes the type and the dates into the period and saves it.
    void Save(TPeriod* period);
    using TSetDate_EF::Save;

    virtual void cbPeriodChange(QObject* sender);
    virtual void deDateEditing(QObject* sender);

    QComboBox* cbPeriod;

    // The period type of each list entry, in list order.
    static const QList<int>& ListTypes();

private:
    bool setting_ = false;
};

} // namespace frames
