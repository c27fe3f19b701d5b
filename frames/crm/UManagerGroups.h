#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QToolBar>
#include <QTreeWidget>
#include <functional>

class QSettings;

namespace frames {

namespace db {
class Query;
}

// The managers a report covers, chosen with a tree of manager groups that the users keep
// themselves. Two fixed nodes head the tree: "<все группы>" (-2000, every manager) and
// "<без групп>" (-1000, managers in no group); the groups follow, their children loaded when a
// node is opened. For the selected node the grids list its managers not chosen and chosen; a right
// click on a node chooses all its managers, or unchooses them when some are chosen. Each node
// shows by its state whether some (4) or all (3) of its managers are chosen. With the right
// MANAGER_GROUPS the user creates, renames, moves and deletes groups and drops managers into
// them. Every change runs as its own committed statement.
//
// The owner sets ReportId (and may give the transaction), calls FrameInit and reads Changed.
class TfrmManagerGroups : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int ReportId MEMBER ReportId)
public:
    static constexpr int kAllGroups = -2000;
    static constexpr int kNoGroup = -1000;

    explicit TfrmManagerGroups(QWidget* parent = nullptr);
    ~TfrmManagerGroups() override;

    void Init() override { FrameInit(); }
    void SetFocus() override;

    void FrameInit();
    void CheckRights();
    void BuildRoot();
    void UpdateNodeState(QTreeWidgetItem* node, bool propagate);
    void UpdateNodeState(int managerId, bool propagate);
    void ExecuteSQL(const QString& sql, const std::function<void(db::Query&, void*)>& callback = {},
                    void* data = nullptr);
    void OpenDataSets();
    void DoSelection(ui::DBGrid* grid, db::DataSet* dataSet, const QString& sqlTemplate);
    void AddGroup(bool root);
    void ReadOptions(QSettings& ini);
    void SaveOptions(QSettings& ini);

    // Handlers.
    void tvManagerGroupsExpanding(QTreeWidgetItem* node);
    void tvManagerGroupsMouseDown(Qt::MouseButton button, const QPoint& pos);
    bool tvManagerGroupsEditing(QTreeWidgetItem* node) const;
    void tvManagerGroupsEdited(QTreeWidgetItem* node, const QString& text);
    void actDropGroupExecute();
    void alManagersUpdate();
    // Drops: source is a grid (managers) or the tree (the selected group); target the node under
    // the pointer (nullptr: empty space of the tree).
    bool TreeDragOver(QObject* source, QTreeWidgetItem* target) const;
    void TreeDragDrop(QObject* source, QTreeWidgetItem* target);
    bool GridDragOver(ui::DBGrid* target, QObject* source) const;
    // The grids sort on the server, by columns of "u.".
    void dbgrdSortMarkingChanged(ui::DBGrid* grid);
    void GridDragDrop(ui::DBGrid* target, QObject* source);

    static int NodeId(const QTreeWidgetItem* node);
    static int StateIndex(const QTreeWidgetItem* node);
    // The node of a group: its own when loaded, else its nearest loaded ancestor's.
    QTreeWidgetItem* FindNode(int groupId);
    // A statement template filled with integers (%d, %N:d) and texts (%s) as they stand.
    static QString Format(const QString& fmt, const QVariantList& args);

    QTreeWidget* tvManagerGroups;
    QToolBar* tbarTree;
    ui::DBGrid* dbgrdUnSelectedManagers;
    ui::DBGrid* dbgrdSelectedManagers;
    db::DataSet* ibqryUnSelectedManagers;
    db::DataSet* ibqrySelectedManagers;
    QAction *actAddRootGroup, *actAddSubGroup, *actEditGroup, *actDropGroup, *actRecursive, *actShowToolBar,
        *actSelectManagers, *actUnSelectManagers;
    db::Transaction* Transaction;

    int ReportId = 0;
    bool Changed = false;
    bool Rights = false;

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    QTreeWidgetItem* addNode(QTreeWidgetItem* parent, int id, const QString& name, bool hasChildren);
    void setState(QTreeWidgetItem* node, int state);
    void setStateDeep(QTreeWidgetItem* node, int state);
    void updateImage(QTreeWidgetItem* node);
    bool isInside(const QTreeWidgetItem* node, const QTreeWidgetItem* ancestor) const;
    QPoint dragStart_;
    bool building_ = false;
    QHash<const ui::DBGrid*, QString> baseSelect_;
};

} // namespace frames
