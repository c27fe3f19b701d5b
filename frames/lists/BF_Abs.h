#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QToolButton>

namespace frames {

// Two lists, "Доступные" and "Выбранные", and buttons that move rows between them. The lists are
// read into memory from pfAvailabled and pfSelected; the chosen keys are written to TableName
// (ID_USER, Kind, MANAGER) for the user and kind whenever the host saves the layout. At most
// 1500 rows can be chosen.
class TAbs_BF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString TableName MEMBER TableName)
    Q_PROPERTY(int Kind MEMBER Kind)
public:
    static constexpr int MaxSelected = 1500;

    explicit TAbs_BF(QWidget* parent = nullptr);
    ~TAbs_BF() override;

    void Init() override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;

    virtual void FillItems();
    virtual void SaveItems();
    int ItemsCount() const;
    QString ItemsItem(int index) const;
    QString ItemsList() const;

    void DoSel();
    void DoUnSel();

    // Handlers.
    virtual void sbSelClick();
    virtual void sbUnselClick();
    virtual void sbAllSelClick();
    virtual void sbAllUnSelClick();
    virtual void aSearchExecute();
    virtual void DBGridFind(ui::DBGrid* grid, const QString& character);
    virtual void pfAvailabledBeforeOpen(db::AbstractDataSet& ds);
    virtual void pfSelectedBeforeOpen(db::AbstractDataSet& ds);

    QToolButton* sbAllUnSel;
    QToolButton* sbUnsel;
    QToolButton* sbSel;
    QToolButton* sbAllSel;
    ui::DBGrid* dbgAvailabled;
    ui::DBGrid* dbgSelected;
    db::MemTable* mdAvailabled;
    db::MemTable* mdSelected;
    db::DataSource* dsAvailabled;
    db::DataSource* dsSelected;
    db::DataSet* pfAvailabled;
    db::DataSet* pfSelected;
    db::Transaction* pfTransaction;
    QAction* aSearch;

    ui::DBGrid* ActiveGrid = nullptr;
    QString TableName;
    int Kind = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The column of buttons between the grids (descendants add their own).
    QWidget* buttonColumn() const { return buttons_; }

private:
    static void copyRows(db::DataSet* from, db::MemTable* to);
    // Moves the current row of from into to (kept sorted by NAME).
    static void moveRow(db::MemTable* from, db::MemTable* to);

    QWidget* buttons_;
};

} // namespace frames
