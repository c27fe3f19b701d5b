#pragma once
#include "frames/core/AbsEditFrame.h"
#include "frames/core/RunParams.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/widgets/LookupCombo.h"
#include <QStringList>

namespace frames {

// The base of every single-value lookup frame: a caption and a lookup combo over a reference
// dataset. Bound to the host list form's current record (through the edit dialog) the combo
// edits that record's key field; free-standing it keeps its own key. The dialog button opens the
// reference form FormName through the module runner.
class TAbs_LF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString FormName MEMBER FormName)
    Q_PROPERTY(bool RunFlag MEMBER RunFlag)
public:
    explicit TAbs_LF(QWidget* parent = nullptr);
    ~TAbs_LF() override;

    void AfterConstruction() override;
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    void FormClose() override;
    virtual void FillParamList(QStringList& list);
    // Whether the dialog button does something: a reference form to open, or an own handler.
    virtual bool HasDialog() const { return !FormName.isEmpty(); }

    // Handlers of lcSelect and pFIBDataSet1; descendants override them.
    virtual void lcSelectClick(QObject* sender);
    virtual void lcSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    virtual void lcSelectDlgClick(QObject* sender);
    virtual void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet);
    virtual void pFIBDataSet1AfterOpen(db::AbstractDataSet& dataSet);
    // The field text event: a leading lower-case "я" shows as "Я".
    void FieldGetText(const db::Field& field, QString& text, bool displayText);

    ui::LookupCombo* lcSelect;
    db::DataSource* DataSource1;
    db::DataSet* pFIBDataSet1;

    TRunParams RunParams;
    QString FormName;
    bool RunFlag = false;
    QVariant LastKey;

protected:
    // Opens the lookup list again after the reference form ran (it may have changed the table).
    virtual void ReopenList();
    // Tells the owner (a persistent host form) that the value changed.
    void notifyOwnerChanged();
    // Writes a key chosen in a reference form into the bound record or the free-standing combo,
    // as a confirmed dialog does.
    void acceptKey(const QVariant& key);
};

} // namespace frames
