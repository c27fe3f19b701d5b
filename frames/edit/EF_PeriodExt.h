#pragma once
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Period.h"
#include "platform/widgets/DateEdit.h"
#include <QComboBox>
#include <QFrame>
#include <QLabel>

namespace frames {

// A report period: chosen by name from cbPeriod (today, previous quarter, working period …),
// which fills both dates from today's date, or typed as two dates, which turns the choice into
// "<Заданный>". The list is built in Init, leaving out the periods longer than MaxPeriodLength
// (days; 0 = no limit); entries are found by their text, never by position. The period is
// exchanged with the host's TPeriod and its choice kept in the layout.
class TPeriodExt_EF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int MaxPeriodLength READ MaxPeriodLength WRITE SetMaxPeriodLength)
public:
    explicit TPeriodExt_EF(QWidget* parent = nullptr);

    // Builds the list when it is empty, applies the stored index, computes the dates.
    void Init() override;
    void SetReadOnly(bool value) override;
    // Neither date given.
    bool IsEmpty() override;
    // Both dates emptied, the choice back to "<Заданный>".
    void Clear() override;
    // "FirstDate", "LastDate" and "cbPeriod.ItemIndex".
    void SaveLayout(TConfigItem* node) override;
    // The dates at once; the index is stored and applied by the next Init.
    void RestoreLayout(TConfigItem* node) override;

    // The type of the chosen entry (see PeriodKind), found by its text.
    int GetPeriodType();
    // Chooses the last entry whose text contains the name of the type ("<Заданный>" for a type
    // outside 1..11, or when none does). The dates are not recomputed.
    void SetPeriodType(int type);
    // Fills both dates for the chosen type as seen today; "<Заданный>" leaves them.
    void SetSelectedPeriod();
    // The first (last) date: a typed text that is a date is taken first; 30.12.1899 (day 0) when
    // the edit is empty.
    QDate GetBeginDate();
    QDate GetEndDate();
    // With a maximum length M: a period longer than M days (its end cut to today) gets its first
    // date moved to end - M + 1, with a warning unless silent. A period wholly in the future is
    // left alone.
    void CheckPeriodLength(bool silent);
    // 0 when both texts are dates, 1 when the first is not, 2 when the last is not; the user is
    // told unless silent.
    int CheckDates(bool silent = false);

    // Copies the period in: its dates, its type, then the dates of a named type.
    void SetPeriod(TPeriod* period);
    // Writes the type and the dates into the period and saves it.
    void Save(TPeriod* period);
    using TAbsEditFrame::Save;

    int MaxPeriodLength() const { return maxPeriodLength_; }
    void SetMaxPeriodLength(int days) { maxPeriodLength_ = days; }
    int StoredItemIndex() const { return storedIndex_; }

    virtual void cbPeriodChange(QObject* sender);
    virtual void deFirstDateEditing(QObject* sender);
    virtual void deFirstDateKeyUp(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    virtual void deLastDateClick(QObject* sender);
    virtual void FrameExit(QObject* sender);
    virtual void FrameMouseLeave(QObject* sender);

    QFrame* pnPeriod;
    QLabel* lbDate;
    QComboBox* cbPeriod;
    QLabel* lbFrom;
    ui::DateEdit* deFirstDate;
    QLabel* lbTo;
    ui::DateEdit* deLastDate;

    // The warning of CheckPeriodLength.
    static QString PeriodTooLongText();

protected:
    // Configuration key of the working period's length.
    virtual QString WorkPeriodKey() const { return QStringLiteral("WorkPeriodLenght"); }
    int WorkPeriodLength() const;
    // A date was changed by the user (typed and taken, or chosen in the calendar).
    virtual void DateEdited(QObject*) {}
    // Whether RestoreLayout found a stored choice.
    bool restoredIndex_ = false;
    // Selects the stored list index (the custom entry when the list lacks it) and computes the
    // dates of the choice.
    virtual void ApplyStoredIndex();

    void leaveEvent(QEvent* e) override;

private:
    static QDate editorDate(ui::DateEdit* edit);

    int storedIndex_ = 0;
    int maxPeriodLength_ = 0;
};

} // namespace frames
