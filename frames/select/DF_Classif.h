#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include <QList>

namespace frames {

class TAddClassif_LF;

// Chooses whole subtrees of a classifier tree. The choice lives in sel_classif, one row per
// chosen branch, keyed by the user, the kind and the branch; the tree shows each branch's state
// (all of its subtree chosen, some, none) from sel_classif_state. A right click on a branch
// chooses its whole subtree, or drops it when it was all chosen; each change is committed at
// once in the frame's own write transaction and the tree is read again from the server.
class TDFClassif : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(int ClassifType MEMBER ClassifType)
    Q_PROPERTY(QStringList InsertSQL READ insertSqlLines WRITE setInsertSqlLines)
    Q_PROPERTY(QStringList DeleteHead READ deleteHeadLines WRITE setDeleteHeadLines)
public:
    explicit TDFClassif(QWidget* parent = nullptr);
    ~TDFClassif() override;

    void Init() override;
    void DataRefresh() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;

    void SetUseAClassif(bool use);
    void RefreshAClassif();
    // True when the tree has no nodes or its first node shows no state image.
    bool IsEmptySelection();
    // Adds the node and the nodes below it, depth first: in mode "GetSelected" those whose state
    // image is not 4, in mode "GetUnSelected" those whose image is 4.
    void FillXSelectedList(QList<int>& list, int node, const QString& mode);
    // Runs the insert statement for one branch in the write transaction and commits; a failure
    // is rolled back and rethrown.
    virtual void DoXSelect(int id, const QString& statement);
    // Deletes the branches given by their node handles in batches of at most 100 ids, each batch
    // committed by itself: head + ids joined by "," + "))".
    virtual void DoXUnSelect(const QList<int>& list, const QString& head);
    void BuildTreeView();
    void ClearTreeView();

    // Handlers.
    virtual void TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPoint& pos);
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& ds);
    virtual void pfDataSetAfterOpen(db::AbstractDataSet& ds);
    virtual void lfAddClassiflcSelectChange(QObject* sender);

    // Chooses (or, all chosen, drops) the subtree of a node, as a right click on it does.
    void ToggleNode(int node);

    static constexpr int BatchSize = 100;

    TAddClassif_LF* lfAddClassif;
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

    QString InsertSQL;
    QString DeleteHead;

signals:
    // The choice on the server changed (after every committed statement of pfUpdate).
    void SelectionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Reads the tree again when it is not open with the classifier type in force.
    void reopenUnlessShowing(int classifType);
    void reopenTree();
    // Sets the lookup's value without running its change handler.
    void setLookupValue(int value);

private:
    QStringList insertSqlLines() const { return InsertSQL.split('\n'); }
    void setInsertSqlLines(const QStringList& l) { InsertSQL = l.join('\n'); }
    QStringList deleteHeadLines() const { return DeleteHead.split('\n'); }
    void setDeleteHeadLines(const QStringList& l) { DeleteHead = l.join('\n'); }
};

} // namespace frames
