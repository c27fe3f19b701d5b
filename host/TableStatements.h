#pragma once
#include <QList>
#include <QString>
#include <QStringList>

namespace frames {
namespace db {
class Transaction;
}
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

// The statements of a list form over one table whose edit dialog writes `columns` of the row
// keyed by `key`. The update writes the row only while every one of those columns still holds
// what was read: else no row is updated and the dataset reports that another user changed it.
QString checkedUpdateSql(const QString& table, const QString& key, const QStringList& columns);
QString insertSql(const QString& table, const QString& key, const QStringList& columns);

// The next value of a generator, taken in tr (started when it is not): a new record's key at once,
// so that what belongs to it can be stored under it and the row read again after it was posted.
int nextKey(frames::db::Transaction* tr, const QString& generator);

// A column of a list form's grid: field, caption and width.
struct GridColumn {
    QString field;
    QString caption;
    int width;
};
void setGridColumns(frames::ui::DBGrid* grid, const QList<GridColumn>& columns);

} // namespace workbench
