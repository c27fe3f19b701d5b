#pragma once
#include "frames/select/ClassifChoiceFrame.h"

namespace frames {

class TAddClassif_LF;

// Chooses whole subtrees of a classifier tree. The choice lives in sel_classif, one row per
// chosen branch, keyed by the user, the kind and the branch; the tree shows each branch's state
// (all of its subtree chosen, some, none) from sel_classif_state. A right click on a branch
// chooses its whole subtree, or drops it when it was all chosen; each change is committed at
// once in the frame's own write transaction and the tree is read again from the server.
class TDFClassif : public ClassifChoiceFrame {
    Q_OBJECT
    Q_PROPERTY(QStringList InsertSQL READ insertSqlLines WRITE setInsertSqlLines)
    Q_PROPERTY(QStringList DeleteHead READ deleteHeadLines WRITE setDeleteHeadLines)
public:
    explicit TDFClassif(QWidget* parent = nullptr);
    ~TDFClassif() override;

    void Init() override;

    void SetUseAClassif(bool use);
    void RefreshAClassif();
    // Makes type the classifier type in force: ClassifType and the key of the classifier-type
    // lookup (without running the lookup's change handling); a tree already read is read again
    // when it shows another type.
    void SetClassifType(int type);
    // Runs the insert statement for one branch in the write transaction and commits; a failure
    // is rolled back and rethrown.
    virtual void DoXSelect(int id, const QString& statement);
    // Deletes the branches given by their node handles in batches of at most 100 ids, each batch
    // committed by itself: head + ids joined by "," + "))".
    virtual void DoXUnSelect(const QList<int>& list, const QString& head);

    void pfDataSetBeforeOpen(db::AbstractDataSet& ds) override;
    virtual void lfAddClassiflcSelectChange(QObject* sender);
    void ToggleNode(int node) override;

    static constexpr int BatchSize = 100;

    TAddClassif_LF* lfAddClassif;
    QString InsertSQL;
    QString DeleteHead;

protected:
    // Reads the tree again when it is not open with the classifier type in force.
    void reopenUnlessShowing(int classifType);
    // Sets the lookup's value without running its change handler.
    void setLookupValue(int value);

private:
    QStringList insertSqlLines() const { return InsertSQL.split('\n'); }
    void setInsertSqlLines(const QStringList& l) { InsertSQL = l.join('\n'); }
    QStringList deleteHeadLines() const { return DeleteHead.split('\n'); }
    void setDeleteHeadLines(const QStringList& l) { DeleteHead = l.join('\n'); }
};

} // namespace frames
