#pragma once
#include "frames/select/ClassifChoiceFrame.h"

namespace frames {

// Chooses branches of a classifier tree for one restaurant (hrc_filial). The choice lives in
// hrc_sel_classif, one row per chosen branch; a right click chooses the branch and every branch
// below it that is not chosen yet, or drops them all when the branch was all chosen, one
// statement per branch in one committed transaction. The tree never opens a context menu.
class TDF_HRCClassif : public ClassifChoiceFrame {
    Q_OBJECT
    Q_PROPERTY(int HrcFilial MEMBER HrcFilial)
    Q_PROPERTY(QStringList InsertSQL READ insertSqlLines WRITE setInsertSqlLines)
    Q_PROPERTY(QStringList DeleteSQL READ deleteSqlLines WRITE setDeleteSqlLines)
public:
    explicit TDF_HRCClassif(QWidget* parent = nullptr);
    ~TDF_HRCClassif() override;

    void Init() override;

    // Runs the statement once per node of the list (kind, user_id, hrc_filial, type_classif,
    // id_classif) in one transaction, committed at the end; a failure rolls all of it back.
    virtual void DoXSelect(const QList<int>& list, const QString& statement);

    void TreeViewContextPopup(const QPoint& pos, bool& handled) override;
    void pfDataSetBeforeOpen(db::AbstractDataSet& ds) override;
    void ToggleNode(int node) override;

    int HrcFilial = 0;
    QString InsertSQL;
    QString DeleteSQL;

private:
    QStringList insertSqlLines() const { return InsertSQL.split('\n'); }
    void setInsertSqlLines(const QStringList& l) { InsertSQL = l.join('\n'); }
    QStringList deleteSqlLines() const { return DeleteSQL.split('\n'); }
    void setDeleteSqlLines(const QStringList& l) { DeleteSQL = l.join('\n'); }
};

} // namespace frames
