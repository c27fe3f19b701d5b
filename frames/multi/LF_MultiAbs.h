#pragma once
#include "frames/lookup/LF_Abs.h"
#include "platform/db/MemTable.h"
#include "platform/widgets/LookupListBox.h"
#include <QSet>

namespace frames {

// A lookup frame that collects a list of keys from one reference table. The user picks a row in
// the combo and presses Insert: the row moves into the list below (mdList) and the combo steps on
// to the next row; Delete takes a row back. Rows already chosen are left out of the drop-down.
//
// mdList is the authoritative choice. Get_sSQL rebuilds what is derived from it: sSQL, the chosen
// keys that the lookup query still returns, joined by ", " in the query's own order, and
// iChosenCount, their number. A chosen key that the table no longer holds stays in mdList but is
// left out of both.
//
// The lookup query is sSQLTemplate with the marker "###" where the exclusion clause sNotInSQL
// goes, and sNotInSQL holds "###" where the key list goes (SelectText). A rebuild reads the query
// without the clause once and hides the chosen rows in the fetched list itself: the server would
// otherwise compare every row with every chosen key, which grows with both.
class TMultiAbs_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(QString sSQLTemplate MEMBER sSQLTemplate)
    Q_PROPERTY(QString sNotInSQL MEMBER sNotInSQL)
    Q_PROPERTY(int ClassifType MEMBER ClassifType)
    Q_PROPERTY(int Kind READ GetKind WRITE SetKind)
    Q_PROPERTY(bool KindRunParam MEMBER KindRunParam)
    // The last rebuild's key list and count (read-only to hosts: Get_sSQL rebuilds them).
    Q_PROPERTY(QString sSQL READ LastKeyList)
    Q_PROPERTY(int iChosenCount READ ChosenCount)
public:
    explicit TMultiAbs_LF(QWidget* parent = nullptr);
    ~TMultiAbs_LF() override;

    void AfterConstruction() override;
    void Init() override;
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;

    // ---- item interface: item 0 is the combo's own key ("-1" when it holds none), items 1..n
    // the keys of mdList in list order.
    Q_INVOKABLE int ItemsCount();
    Q_INVOKABLE QString ItemsItem(int index);
    Q_INVOKABLE QString ItemsList();

    // Rebuilds sSQL and iChosenCount from mdList and the lookup query, and returns sSQL.
    Q_INVOKABLE QString Get_sSQL();
    int ChosenCount() const { return iChosenCount; }
    QString LastKeyList() const { return sSQL; }
    // The lookup query for a key list: sSQLTemplate with "###" replaced (without regard to case)
    // by sNotInSQL holding the keys, or by nothing for an empty list.
    virtual QString SelectText(const QString& keys) const;
    // Whether the query has a place for the exclusion clause (a fixed list keeps every row).
    virtual bool HasExclusion() const;

    // The frame's kind number: bound to a KIND parameter of the lookup query on every open, and
    // handed to the reference form as the run parameter KIND when KindRunParam is set.
    int GetKind() const { return Kind; }
    void SetKind(int kind);

    void lcSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) override;
    virtual void dbListKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    void lcSelectDlgClick(QObject* sender) override;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;

    ui::LookupListBox* dbList;
    db::DataSource* dsList;
    db::MemTable* mdList;

    QString sSQLTemplate;
    QString sSQL;
    QString sNotInSQL;
    int iChosenCount = 0;
    int ClassifType = -1;  // the classifier type handed to the reference form (-1: none)
    int ClassifStart = -1; // the classifier node at which the reference form starts
    int Kind = 0;
    bool KindRunParam = false;

protected:
    // The most keys the list takes before Insert is refused; 0 for no limit.
    virtual int MaxChosen() const { return 1500; }
    // Fills the list's new row (in insert state) from the combo's current row.
    virtual void FillListRow();
    // Opens the lookup list again: a rebuild, so that the chosen rows stay hidden.
    void ReopenList() override;
    // The list's keys as integers.
    QSet<qint64> ListKeys() const;

private:
    void deleteListRow();
    void insertChosen();
};

} // namespace frames
