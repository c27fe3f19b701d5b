#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include <QList>

namespace frames {

// Chooses branches of a classifier tree for one restaurant (hrc_filial). The choice lives in
// hrc_sel_classif, one row per chosen branch; a right click chooses the branch and every branch
// below it that is not chosen yet, or drops them all when the branch was all chosen, one
// statement per branch in one committed transaction. The tree never opens a context menu.
class TDF_HRCClassif : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(int ClassifType MEMBER ClassifType)
    Q_PROPERTY(int HrcFilial MEMBER HrcFilial)
    Q_PROPERTY(QStringList InsertSQL READ insertSqlLines WRITE setInsertSqlLines)
    Q_PROPERTY(QStringList DeleteSQL READ deleteSqlLines WRITE setDeleteSqlLines)
public:
    explicit TDF_HRCClassif(QWidget* parent = nullptr);
    ~TDF_HRCClassif() override;

    void Init() override;
    void DataRefresh() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;

    // True when the tree has no nodes or its first node shows no state image.
    bool IsEmptySelection();
    void FillXSelectedList(QList<int>& list, int node, const QString& mode);
    // Runs the statement once per node of the list (kind, user_id, hrc_filial, type_classif,
    // id_classif) in one transaction, committed at the end; a failure rolls all of it back.
    virtual void DoXSelect(const QList<int>& list, const QString& statement);
    void BuildTreeView();
    void ClearTreeView();

    // Handlers.
    virtual void TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPoint& pos);
    virtual void TreeViewContextPopup(const QPoint& pos, bool& handled);
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& ds);
    virtual void pfDataSetAfterOpen(db::AbstractDataSet& ds);

    // Chooses (or, all chosen, drops) a node and the nodes below it, as a right click does.
    void ToggleNode(int node);

    ui::ClassifTreeView* TreeView;
    db::DataSet* pfDataSet;
    db::Query* pfUpdate;
    db::Transaction* pfTransaction;

    QString ParentField = QStringLiteral("parent_id");
    QString KeyField = QStringLiteral("classif_id");
    QString TextField = QStringLiteral("name");
    bool UseAClassif = false;
    int Kind = 0;
    int ClassifType = 0;
    int UserID = 0;
    int HrcFilial = 0;

    QString InsertSQL;
    QString DeleteSQL;

signals:
    void SelectionChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void reopenTree();

private:
    QStringList insertSqlLines() const { return InsertSQL.split('\n'); }
    void setInsertSqlLines(const QStringList& l) { InsertSQL = l.join('\n'); }
    QStringList deleteSqlLines() const { return DeleteSQL.split('\n'); }
    void setDeleteSqlLines(const QStringList& l) { DeleteSQL = l.join('\n'); }
};

} // namespace frames
