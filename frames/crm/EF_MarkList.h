#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include <QListWidget>

namespace frames {

// A check list of the marks of one object (a company's characteristics, territories ...). pfLoad
// lists every possible mark (ID, NAME), pFIBDataSet2 the marks stored for the object (column
// ValueField). Init checks the stored rows; Save writes the state of every row, one statement
// per row, checked or not: "execute procedure UpdateProcedure(key, kind, id, 1|0)" when the
// description names a procedure, else "update or insert" into / "delete from" LinkTable on
// (LinkKeyColumn, LinkValueColumn). The owner sets Kind and ObjectKey before Init; the datasets'
// parameters KIND and KeyParam take them (any other parameter is set by a derived frame).
class TMarkList_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(int ObjectKey MEMBER ObjectKey)
    Q_PROPERTY(QString KeyParam MEMBER KeyParam)
    Q_PROPERTY(QString ValueField MEMBER ValueField)
    Q_PROPERTY(QString UpdateProcedure MEMBER UpdateProcedure)
    Q_PROPERTY(QString LinkTable MEMBER LinkTable)
    Q_PROPERTY(QString LinkKeyColumn MEMBER LinkKeyColumn)
    Q_PROPERTY(QString LinkValueColumn MEMBER LinkValueColumn)
    Q_PROPERTY(QString RecordKeyField MEMBER RecordKeyField)
public:
    // listName: the component name of the check list (clbCharacter, clbTerritory ...).
    TMarkList_Frame(QWidget* parent, const char* listName);

    void Init() override;
    void Save() override;
    // Unchecks every row (nothing is written until Save).
    void Clear() override;
    void SetReadOnly(bool value) override;
    // True when no row is checked.
    bool IsEmpty() override;

    virtual void pfLoadBeforeOpen(db::AbstractDataSet& dataSet);
    virtual void pFIBDataSet2BeforeOpen(db::AbstractDataSet& dataSet);

    // Ids of the rows, and of the checked rows, in list order.
    QList<int> Ids() const;
    QList<int> CheckedIds() const;
    void SetChecked(int id, bool checked);

    QListWidget* List;
    db::DataSet* pfLoad;
    db::DataSet* pFIBDataSet2;

    int Kind = 0;
    int ObjectKey = -1;
    QString KeyParam;
    QString ValueField;
    QString UpdateProcedure;
    QString LinkTable, LinkKeyColumn, LinkValueColumn;
    // On a host's edit dialog over a list form, the object key is this field of the list's current
    // record (taken in Init).
    QString RecordKeyField;

protected:
    // Takes the keys from the record the frame is bound to.
    virtual void TakeRecordKeys(const db::AbstractDataSet& record);
    // The statement that stores one row's state.
    virtual QVariantList RowStatement(int id, bool checked) const;
    static void SetParam(db::DataSet* ds, const QString& name, const QVariant& value);
};

} // namespace frames
