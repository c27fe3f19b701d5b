#pragma once
#include <QIcon>
#include <QList>
#include <QString>
#include <functional>

namespace frames {
namespace db {
class AbstractDataSet;
class Transaction;
} // namespace db
namespace ui {
class ClassifTreeView;
}

// What the classifier tree dialogs share: the check-state images of their tree and the walks
// over it.
namespace classif_state {

// State images of a chosen tree: 3 some of the subtree chosen, 4 all of it chosen.
inline constexpr int PartlyChosen = 3;
inline constexpr int AllChosen = 4;
inline constexpr int NoImage = -1;

// The state image list (indexes 0..4; only 3 and 4 are drawn).
QList<QIcon> stateImages();

// The state image of a branch from its counters: none for a subtree without branches to
// choose, 4 when all are chosen, none when none is, 3 otherwise.
int stateImageOf(int allCounter, int selCounter, int notCounter);

// Builds the tree from the dataset's rows (parent, key and text columns as the view names them)
// with updates suspended, opens the first node and gives every node its state image from the
// ALL_COUNTER, SEL_COUNTER and NOT_COUNTER columns of its row.
void build(ui::ClassifTreeView* tree, const db::AbstractDataSet& ds);

// The node and every node below it, depth first, whose state image is 4 (wantAll) or is not
// (!wantAll).
QList<int> collect(const ui::ClassifTreeView* tree, int node, bool wantAll);

// What a click on the state image does in the tree control: a node shown all chosen and its
// subtree become not chosen; any other node and its subtree become all chosen.
void toggle(ui::ClassifTreeView* tree, int node);

// Rebuilds the tree through rebuild() keeping the user's place: the node at the same position
// in tree order (when the tree had nodes) and the open branches.
void rebuildKeepingPlace(ui::ClassifTreeView* tree, const std::function<void()>& rebuild);

// Rolls a write transaction back after a failed statement, keeping the first error.
void rollbackQuietly(db::Transaction* tr);

// Sets up a tree for choosing: the three column names, state images, branch lines.
void setupTree(ui::ClassifTreeView* tree, const QString& keyField, const QString& parentField,
               const QString& textField);

// Writes a trace line when it goes out of scope, however the handler ends.
struct TraceOnExit {
    QString text;
    ~TraceOnExit();
};

} // namespace classif_state
} // namespace frames
