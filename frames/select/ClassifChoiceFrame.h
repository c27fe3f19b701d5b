#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include <QList>

class QVBoxLayout;

namespace frames {

// What the classifier tree dialogs have in common: a tree of classifier branches with a
// check-state image on each, read from pfDataSet in the host's read transaction; the frame's own
// write transaction pfTransaction and statement pfUpdate; a right click (or Space) on a branch
// toggles its subtree through ToggleNode; the current branch is kept in the layout as "CurNode".
class ClassifChoiceFrame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(int ClassifType MEMBER ClassifType)
public:
    explicit ClassifChoiceFrame(QWidget* parent = nullptr);
    ~ClassifChoiceFrame() override;

    void DataRefresh() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;

    // True when the tree has no nodes or its first node shows no state image.
    bool IsEmptySelection();
    // Adds the node and the nodes below it, depth first: in mode "GetSelected" those whose state
    // image is not 4, in mode "GetUnSelected" those whose image is 4.
    void FillXSelectedList(QList<int>& list, int node, const QString& mode);
    void BuildTreeView();
    void ClearTreeView();

    // Handlers.
    virtual void TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPoint& pos);
    virtual void TreeViewContextPopup(const QPoint& pos, bool& handled);
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& ds) = 0;
    virtual void pfDataSetAfterOpen(db::AbstractDataSet& ds);

    // Chooses (or, all chosen, drops) the subtree of a node, as a right click on it does.
    virtual void ToggleNode(int node) = 0;

    ui::ClassifTreeView* TreeView;
    db::DataSet* pfDataSet;
    db::Query* pfUpdate;
    db::Transaction* pfTransaction;

    // State, in order.
    QString ParentField = QStringLiteral("parent_id");
    QString KeyField = QStringLiteral("classif_id");
    QString TextField = QStringLiteral("name");
    bool UseAClassif = false;
    int Kind = 0;
    int ClassifType = 0;
    int UserID = 0;

signals:
    // The choice on the server changed (after every committed statement of pfUpdate).
    void SelectionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void reopenTree();
    // Sets a parameter of the tree query when the query has it.
    void setTreeParam(const QString& name, const QVariant& value);
    // The column that holds the tree (descendants put their controls above it).
    QVBoxLayout* column() const { return column_; }

private:
    QVBoxLayout* column_;
};

} // namespace frames
