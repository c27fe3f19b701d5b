#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QGroupBox>
#include <QToolButton>
#include <functional>

namespace frames {

class TAbs_LF;
namespace db {
class Query;
}

// The choice of the items (managers, companies, products) one CRM report covers, kept per report
// kind and user in a choice table. A classifier tree on the left (trDataSet), for its selected
// node the available and the chosen items on the right. Every choice is written and committed at
// once, one statement per item. Each node shows whether none (no state image), some (4) or all (3)
// of the items below it are chosen: asked of the server (NodeStateProc), or counted here when the
// description gives no procedure (products).
//
// The owner sets Kind (and may give pfTransaction options), calls FrameInit, and reads Changed.
class TCRMSelect_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(int TreeType MEMBER TreeType)
    Q_PROPERTY(QString KeyField MEMBER KeyField)
    Q_PROPERTY(QString ChooseSQL MEMBER ChooseSQL)
    Q_PROPERTY(QString UnchooseSQL MEMBER UnchooseSQL)
    Q_PROPERTY(QString NodeStateProc MEMBER NodeStateProc)
    Q_PROPERTY(QString SortAlias MEMBER SortAlias)
    Q_PROPERTY(QStringList ClassifsSQL MEMBER ClassifsSQL)
public:
    // names: the component names of the available and chosen grids, their datasets and the two
    // actions; withClassifs: the frame has the main classifier list lfClassifs; withUvolen: the
    // dismissed-employees toggle sbShowUvolen.
    struct Names {
        const char *unselectedGrid, *selectedGrid, *unselectedData, *selectedData, *selectAction,
            *unselectAction;
    };
    TCRMSelect_Frame(QWidget* parent, const Names& names, bool withClassifs, bool withUvolen);
    ~TCRMSelect_Frame() override;

    void AfterConstruction() override;
    void Init() override { FrameInit(); }
    void SetFocus() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;

    virtual void FrameInit();
    virtual void OpenDataSets();
    virtual void UpdateNodeState(int node, bool propagate);
    // Runs one statement in pfTransaction and commits it; callback (if any) sees the query
    // before the commit. Rolled back and rethrown on error.
    void ExecuteSQL(const QString& sql, const std::function<void(db::Query&, void*)>& callback = {},
                    void* data = nullptr);
    // Runs the statement template (integers for kind, user, item) for every marked row of the
    // grid (the current row when none is marked).
    virtual void DoSelection(ui::DBGrid* grid, db::DataSet* dataSet, const QString& sqlTemplate);

    // Handlers.
    virtual void DBTreeViewMouseDown(Qt::MouseButton button, const QPoint& pos);
    virtual void DBTreeViewChange();
    virtual int DBTreeViewGetImage(int node);
    virtual void trDataSetBeforeOpen(db::AbstractDataSet& ds);
    virtual void GridBeforeOpen(db::AbstractDataSet& ds);
    // Drag and drop between the grids: a grid accepts only the other grid's rows, and only when
    // that grid's dataset has rows; a drop runs the matching action when it is enabled.
    virtual bool DragOver(ui::DBGrid* target, QObject* source);
    virtual void DragDrop(ui::DBGrid* target, QObject* source);
    virtual void dbgrdSortMarkingChanged(ui::DBGrid* grid);
    virtual void lfClassifslcSelectChange();
    virtual void sbShowUvolenClick();
    virtual void alManagersUpdate();

    // The main classifier key, -1 when lfClassifs is empty or missing.
    int MainClassif() const;
    // Every tree node in the order shown.
    QList<int> Nodes() const { return DBTreeView->nodesInTreeOrder(); }

    TAbs_LF* lfClassifs = nullptr;
    ui::ClassifTreeView* DBTreeView;
    db::DataSet* trDataSet;
    db::DataSource* dsTree;
    QGroupBox* gbUnSelected;
    QGroupBox* gbSelected;
    ui::DBGrid* dbgrdUnSelected;
    ui::DBGrid* dbgrdSelected;
    db::DataSet* ibqryUnSelected;
    db::DataSet* ibqrySelected;
    QToolButton* sbShowUvolen = nullptr;
    QAction* actSelect;
    QAction* actUnSelect;
    db::Transaction* pfTransaction;

    int Kind = 0;
    bool Changed = false;
    int TreeType = 32;
    QString KeyField = "ID_USER";
    QString ChooseSQL, UnchooseSQL;
    QString NodeStateProc;
    QString SortAlias = "cv.";
    QStringList ClassifsSQL;

protected:
    bool eventFilter(QObject* o, QEvent* e) override;
    // The node's state index from the counts below it.
    int ClientNodeState(int key) const;
    static QString FormatInts(QString sqlTemplate, const QList<int>& values);
    void UpdateAllNodes();

private:
    void reopenTree();
    QPoint dragStart_;
    QHash<const ui::DBGrid*, QString> baseSelect_;
    QHash<int, QVariant> images_; // IMAGE_ID by node key
};

// The managers a report covers, by the manager groups; dismissed employees on request.
class TCRMManagerSelect_Frame : public TCRMSelect_Frame {
    Q_OBJECT
public:
    explicit TCRMManagerSelect_Frame(QWidget* parent = nullptr);
};

// The companies a report covers, by the company groups or their clients' groups.
class TCRMFirmSelect_Frame : public TCRMSelect_Frame {
    Q_OBJECT
public:
    explicit TCRMFirmSelect_Frame(QWidget* parent = nullptr);
};

// The products a report covers, by the product classifier; node states counted here.
class TCRMProductSelect_Frame : public TCRMSelect_Frame {
    Q_OBJECT
public:
    explicit TCRMProductSelect_Frame(QWidget* parent = nullptr);
};

} // namespace frames
