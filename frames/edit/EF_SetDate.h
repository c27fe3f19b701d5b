#pragma once
#include "frames/core/SetFilter_EF.h"
#include "platform/widgets/DateEdit.h"
#include <QLabel>

namespace frames {

// The date range filter of a report form (" Период "): from deFromDate to deToDate, either end
// may stay empty. Changing a date switches the filter on; the two dates are kept in order.
class TSetDate_EF : public TSetFilter_EF {
    Q_OBJECT
public:
    explicit TSetDate_EF(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    // The base's layout, then "FromDate" and "ToDate"; restoring takes "cbSet.Checked" last, so
    // that restored dates do not switch the filter on by themselves.
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    // Off, or neither date given.
    bool IsEmpty() override;
    // Empties both dates and switches the filter off.
    void Clear() override;
    // fieldName >= first date and fieldName < the day after the last date (so that a timestamp
    // of the last day still counts); one bound when the other date is empty; "" when off.
    QString SQL(const QString& fieldName) override;
    // Off, or at least one date given and the two in order.
    bool IsCorrect() override;

    QDate GetFromDate() const { return deFromDate->date(); }
    QDate GetToDate() const { return deToDate->date(); }

    virtual void deFromDateExit(QObject* sender);
    virtual void deFromDatePropertiesChange(QObject* sender);
    virtual void deFromDatePropertiesEditValueChanged(QObject* sender);
    virtual void deToDateExit(QObject* sender);
    virtual void deToDatePropertiesChange(QObject* sender);
    virtual void deToDatePropertiesEditValueChanged(QObject* sender);

    QLabel* laDateFrom;
    ui::DateEdit* deFromDate;
    QLabel* laDateTo;
    ui::DateEdit* deToDate;

protected:
    QWidget* datesRow;
};

} // namespace frames
