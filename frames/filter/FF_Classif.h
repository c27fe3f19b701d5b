#pragma once
#include "frames/core/SetFilter_EF.h"
#include <QVariantList>

namespace frames {

class TDFClassif;

// The summary row that a filter box built on a selection dialog keeps for the host's report
// queries (sel_classif_filter, sel_client_filter): the report applies the filter exactly when the
// row for its user and kind exists.
namespace filter_summary {
// Runs the delete of the old row and, when it succeeded, the insert of the new one, in one write
// transaction of their own ("write, nowait, rec_version, read_committed"), committed together.
// On failure nothing changes on the server, the user is told what failed (operation) and the
// statement goes to the trace log; returns false then.
bool Replace(const QVariantList& deleteSql, const QVariantList& insertSql, const QString& operation);
// The first column of a select's first row, read in the host's read transaction.
struct FirstRow {
    bool ok = false;    // false: the read failed (the user was told what failed)
    bool found = false; // the select returned a row
    QVariant value;
};
FirstRow ReadFirst(const QVariantList& selectSql, const QString& operation);
} // namespace filter_summary

// A filter box around a selection dialog whose choice lives on the server (the classifier and
// the client boxes): the contract's steps go on to the dialog, and the dialog's own layout (its
// current node, splitters, grids) is kept under the dialog's name in the box's node.
class TDialogFilter_FF : public TSetFilter_EF {
    Q_OBJECT
public:
    void Init() override;
    void DataRefresh() override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FormClose() override;
    void SetReadOnly(bool value) override;

protected:
    explicit TDialogFilter_FF(QWidget* parent = nullptr);
    // Creates the inline dialog of that class, named name, filling the box.
    TAbsEditFrame* createDialog(const QString& className, const QString& name);

private:
    TAbsEditFrame* dialog_ = nullptr;
};

// The classifier filter box: the classifier tree dialog DF_Classif inside, whose choice of
// branches lives in sel_classif for the current user and the box's kind. On closing the box
// writes its summary row into sel_classif_filter (classifier type and the summed item count of
// the chosen branches); on opening it is switched on exactly when that row exists, and the
// dialog takes the row's classifier type. Every choice made in the dialog switches the box on.
class TClassif_FF : public TDialogFilter_FF {
    Q_OBJECT
    Q_PROPERTY(int Kind READ GetKind WRITE SetKind)
public:
    explicit TClassif_FF(QWidget* parent = nullptr);
    ~TClassif_FF() override;

    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;

    // The kind lives in the dialog; a dialog already showing its tree reads it again.
    void SetKind(int kind);
    int GetKind() const;

    // ---- handlers
    // The dialog committed a change of the choice.
    void DF_ClassifpfUpdateAfterExecute();
    // A mouse press on the dialog's tree goes to the dialog's own handler unchanged.
    void DF_ClassifTreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift, const QPoint& pos);

    TDFClassif* DF_Classif;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace frames
