#include "host/TableStatements.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QVariantMap>

namespace workbench {

QString checkedUpdateSql(const QString& table, const QString& key, const QStringList& columns) {
    QStringList sets, unchanged;
    for (const QString& c : columns) {
        sets << QStringLiteral("%1 = :%1").arg(c);
        unchanged << QStringLiteral("%1 is not distinct from :old_%1").arg(c);
    }
    return QStringLiteral("update %1 set ").arg(table) + sets.join(QStringLiteral(", ")) +
           QStringLiteral("\nwhere %1 = :old_%1\n  and ").arg(key) +
           unchanged.join(QStringLiteral("\n  and "));
}

QString insertSql(const QString& table, const QString& key, const QStringList& columns) {
    QStringList names{key}, values{QLatin1Char(':') + key};
    for (const QString& c : columns) {
        names << c;
        values << QLatin1Char(':') + c;
    }
    return QStringLiteral("insert into %1 (%2)\nvalues (%3)")
        .arg(table, names.join(QStringLiteral(", ")), values.join(QStringLiteral(", ")));
}

int nextKey(frames::db::Transaction* tr, const QString& generator) {
    tr->ensureStarted();
    frames::db::Query q(tr->database(), tr);
    q.setSql(QStringLiteral("select gen_id(%1, 1) from rdb$database").arg(generator));
    q.open();
    const int id = q.next() ? q.value(0).toInt() : 0;
    q.close();
    return id;
}

void setGridColumns(frames::ui::DBGrid* grid, const QList<GridColumn>& columns) {
    QStringList fields;
    QVariantMap captions;
    for (const GridColumn& c : columns) {
        fields << c.field;
        captions.insert(c.field, c.caption);
    }
    grid->setColumns(fields);
    grid->setCaptions(captions);
    for (const GridColumn& c : columns) grid->setColumnWidth(grid->columnOfField(c.field), c.width);
    grid->widenColumnsToContents();
}

} // namespace workbench
