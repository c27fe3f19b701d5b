#pragma once
#include "platform/db/DataSet.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <functional>

class QEvent;

namespace frames {

namespace db {
class Query;
}

// Helpers shared by the CRM selection frames.
namespace crm {

// Runs one statement in tr and commits it: with a callback the statement is opened as a select
// and the callback reads it before the commit. Rolled back and rethrown on error.
void executeCommitted(db::Transaction* tr, const QString& sql,
                      const std::function<void(db::Query&, void*)>& callback = {}, void* data = nullptr);

// The grid an object belongs to (the grid or its viewport), nullptr for anything else.
ui::DBGrid* gridOf(QObject* o);

// The key values of the marked rows of a grid; the current row is marked first when none is.
QList<int> markedKeys(ui::DBGrid* grid, db::AbstractDataSet* dataSet, const QString& keyField);

// The grids sort on the server: rebuilds the order clause of the grid's dataset from its sort
// markers, each column prefixed with alias ("cv.", "u."), and reopens it. baseSql keeps the text
// without the clause (taken on the first call).
void orderOnServer(ui::DBGrid* grid, db::DataSet* dataSet, QString& baseSql, const QString& alias);

// Dragging rows or nodes between the frame's own views, for an event filter on their viewports.
// handleDragStart records the press and starts the drag once the left button moved 5 pixels
// (true: the event was used). handleDrop answers drag-enter/move through `accepts` and runs
// `drop` on a drop (true: the event was a drag event of ours).
bool handleDragStart(QObject* view, QEvent* e, QPoint& pressedAt);
bool handleDrop(QEvent* e, const std::function<bool(QObject* source, const QPoint& pos)>& accepts,
                const std::function<void(QObject* source, const QPoint& pos)>& drop);

} // namespace crm
} // namespace frames
