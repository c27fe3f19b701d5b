#pragma once
#include "frames/core/RunParams.h"
#include "frames/edit/EF_CalcEdit.h"
#include <QAction>
#include <QDateTime>
#include <QToolButton>

namespace frames {

// The exchange rate of a record (field CURS), with a button that picks the rate from the rate
// history form of the record's currency. A rate is never clamped on click or exit, and its text
// is kept to 9 characters.
class TCursFrame_CE : public TCalcEdit_Frame {
    Q_OBJECT
    Q_PROPERTY(QString ModuleName MEMBER ModuleName)
    Q_PROPERTY(QString CurTypeField MEMBER CurTypeField)
public:
    explicit TCursFrame_CE(QWidget* parent = nullptr);
    ~TCursFrame_CE() override;

    void AfterConstruction() override;
    void SetReadOnly(bool value) override;
    void Init() override;

    // The action is on while the frame is writable, the record has a currency and is being
    // edited or inserted.
    virtual void SelCurHistoryActionUpdate();
    // Runs the rate history form with "CurType" (and "Date" when set); a confirmed choice
    // writes the returned "CurType" and "Curs" into the record.
    virtual void SelCurHistoryActionExecute();
    void DBCalcEditPropertiesChange(QObject* sender) override;

    QToolButton* siSelect;
    QObject* ActionList;
    QAction* SelCurHistoryAction;

    QString ModuleName;   // the rate history form
    QString CurTypeField; // the record's currency field; empty: no choice
    QDateTime CursDate;   // the date the rate is for; invalid when none is set
    TRunParams RunParams;

private:
    db::AbstractDataSet* boundDataSet() const;
    // The action follows the edited record as the host's idle updates would.
    ui::FieldLink record_;
};

} // namespace frames
