#pragma once
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Period.h"
#include "platform/widgets/DateEdit.h"
#include <QCheckBox>

namespace frames {

// A period with optional bounds ("Период": [x] c <date> [x] по <date>): a bound takes part only
// while its check box is ticked, and typing or choosing its date ticks it. With both bounds on
// the two dates are kept in order. A new frame offers the current month up to today.
class TPeriod_EF : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TPeriod_EF(QWidget* parent = nullptr);

    void AfterConstruction() override;
    void SetReadOnly(bool value) override;
    // No bound given (off, or on without a date).
    bool IsEmpty() override;
    // Both bounds off and empty.
    void Clear() override;
    // "FirstDate", "LastDate", "chbFirstDate.Checked", "chbLastDate.Checked".
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;

    // The bound's date; invalid when the bound is off or empty.
    QDate GetBeginDate() const;
    QDate GetEndDate() const;
    // Copies the period's dates in (a bound without a date is switched off).
    void SetPeriod(TPeriod* period);
    // Writes the dates (custom type) into the period and saves it.
    void Save(TPeriod* period);
    using TAbsEditFrame::Save;

    virtual void chbFirstDateClick(QObject* sender);
    virtual void chbLastDateClick(QObject* sender);
    virtual void deDateEditing(QObject* sender);
    virtual void deFirstDateExit(QObject* sender);
    virtual void deLastDateExit(QObject* sender);

    QCheckBox* chbFirstDate;
    ui::DateEdit* deFirstDate;
    QCheckBox* chbLastDate;
    ui::DateEdit* deLastDate;

private:
    void adjust(ui::DateEdit* changed);
};

} // namespace frames
