#include "frames/crm/CRMCommon.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "platform/db/Field.h"
#include "platform/db/Query.h"
#include <QDrag>
#include <QMimeData>
#include <QMouseEvent>

namespace frames::crm {

namespace {
const char* const kDragMime = "application/x-frames-crm-rows";
}

void executeCommitted(db::Transaction* tr, const QString& sql,
                      const std::function<void(db::Query&, void*)>& callback, void* data) {
    db::Query q(dmDataBaseFIB()->RvDatabase(), tr);
    tr->ensureStarted();
    try {
        q.setSql(sql);
        if (callback) {
            q.open();
            callback(q, data);
            q.close();
        } else {
            q.exec();
        }
        tr->commit();
    } catch (...) {
        if (tr->active()) tr->rollback();
        throw;
    }
}

ui::DBGrid* gridOf(QObject* o) {
    for (; o; o = o->parent())
        if (auto* g = qobject_cast<ui::DBGrid*>(o)) return g;
    return nullptr;
}

QList<int> markedKeys(ui::DBGrid* grid, db::AbstractDataSet* dataSet, const QString& keyField) {
    QList<int> ids;
    if (dataSet->isEmpty()) return ids;
    if (grid->markedCount() == 0)
        grid->setMarked(grid->currentIndex().isValid() ? grid->currentIndex().row() : 0, true);
    for (const auto& b : grid->markedBookmarks()) {
        dataSet->gotoBookmark(b);
        ids << dataSet->fieldByName(keyField)->value().toInt();
    }
    return ids;
}

void orderOnServer(ui::DBGrid* grid, db::DataSet* dataSet, QString& baseSql, const QString& alias) {
    if (baseSql.isEmpty()) baseSql = dataSet->selectSql();
    QStringList order;
    for (const db::SortKey& k : grid->sortKeys()) order << k.field + (k.ascending ? "" : " desc");
    QString sql = baseSql;
    if (!order.isEmpty()) sql += "\norder by " + alias + order.join(", " + alias);
    if (sql == dataSet->selectSql()) return;
    dataSet->setSelectSql(sql);
    if (dataSet->active()) dataSet->reopen();
}

bool handleDragStart(QObject* view, QEvent* e, QPoint& pressedAt) {
    if (e->type() == QEvent::MouseButtonPress) {
        pressedAt = static_cast<QMouseEvent*>(e)->position().toPoint();
        return false;
    }
    if (e->type() != QEvent::MouseMove) return false;
    auto* me = static_cast<QMouseEvent*>(e);
    if (!(me->buttons() & Qt::LeftButton) || (me->position().toPoint() - pressedAt).manhattanLength() < 5)
        return false;
    auto* drag = new QDrag(view);
    auto* mime = new QMimeData;
    mime->setData(kDragMime, view->objectName().toUtf8());
    drag->setMimeData(mime);
    drag->exec(Qt::MoveAction);
    return true;
}

bool handleDrop(QEvent* e, const std::function<bool(QObject* source, const QPoint& pos)>& accepts,
                const std::function<void(QObject* source, const QPoint& pos)>& drop) {
    switch (e->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto* de = static_cast<QDropEvent*>(e);
        if (de->mimeData()->hasFormat(kDragMime) && accepts(de->source(), de->position().toPoint()))
            de->acceptProposedAction();
        else
            de->ignore();
        return true;
    }
    case QEvent::Drop: {
        auto* de = static_cast<QDropEvent*>(e);
        QObject* source = de->source();
        const QPoint pos = de->position().toPoint();
        de->acceptProposedAction();
        guard([&] { drop(source, pos); });
        return true;
    }
    default:
        return false;
    }
}

} // namespace frames::crm
