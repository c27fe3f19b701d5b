#include "host/ReportDefinition.h"
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <map>
#include <stdexcept>

namespace workbench {

namespace {

// A text given as one string or as an array of lines.
QString text(const QJsonValue& v) {
    if (!v.isArray()) return v.toString();
    QStringList lines;
    for (const QJsonValue& line : v.toArray()) lines << line.toString();
    return lines.join('\n');
}

ReportFilter filterOf(const QJsonObject& e) {
    ReportFilter f;
    f.className = e.value(QStringLiteral("class")).toString();
    f.column = e.value(QStringLiteral("column")).toString();
    f.sqlTemplate = text(e.value(QStringLiteral("template")));
    f.selection = text(e.value(QStringLiteral("selection")));
    f.summary = e.value(QStringLiteral("summary")).toString();
    f.none = e.value(QStringLiteral("none")).toString();
    f.kind = e.value(QStringLiteral("kind")).toInt(-1);
    f.wide = e.value(QStringLiteral("wide")).toBool();
    f.apply = e.value(QStringLiteral("apply")).toBool();
    QJsonObject properties = e.value(QStringLiteral("properties")).toObject();
    if (f.kind >= 0) properties.insert(QStringLiteral("Kind"), f.kind);
    if (!properties.isEmpty()) f.description.insert(QStringLiteral("properties"), properties);
    if (e.contains(QStringLiteral("components")))
        f.description.insert(QStringLiteral("components"), e.value(QStringLiteral("components")));
    if (f.className.isEmpty()) throw std::logic_error("reports.json: a filter without a class");
    if (!f.sqlTemplate.isEmpty() && !f.sqlTemplate.contains(QLatin1String("%SQL%")))
        throw std::logic_error("reports.json: the template of " + f.className.toStdString() +
                               " has no %SQL%");
    return f;
}

ReportDefinition reportOf(const QJsonObject& e) {
    ReportDefinition r;
    r.name = e.value(QStringLiteral("name")).toString();
    r.title = e.value(QStringLiteral("title")).toString();
    r.from = text(e.value(QStringLiteral("from")));
    const QJsonObject totals = e.value(QStringLiteral("totals")).toObject();
    r.totalsSql = text(totals.value(QStringLiteral("sql")));
    for (const QJsonValue& t : totals.value(QStringLiteral("titles")).toArray())
        r.totalTitles << t.toString();
    const QJsonObject rows = e.value(QStringLiteral("rows")).toObject();
    r.rowsSql = text(rows.value(QStringLiteral("sql")));
    for (const QJsonValue& c : rows.value(QStringLiteral("columns")).toArray()) {
        const QJsonArray a = c.toArray();
        r.rowColumns.append({a.at(0).toString(), a.at(1).toString(), a.at(2).toInt(100)});
    }
    r.chartSql = text(e.value(QStringLiteral("chart")));
    r.chartTitle = e.value(QStringLiteral("chartTitle")).toString();
    r.firstPeriodSql = text(e.value(QStringLiteral("firstPeriod")));
    for (const QJsonValue& f : e.value(QStringLiteral("filters")).toArray())
        r.filters.append(filterOf(f.toObject()));
    if (r.name.isEmpty() || r.from.isEmpty() || r.totalsSql.isEmpty() || r.totalTitles.isEmpty())
        throw std::logic_error("reports.json: a report needs a name, from and totals with titles");
    return r;
}

const std::map<QString, ReportDefinition>& reports() {
    static const std::map<QString, ReportDefinition> all = [] {
        QFile f(QStringLiteral(":/workbench/reports.json"));
        if (!f.open(QIODevice::ReadOnly)) throw std::logic_error("reports.json is missing");
        QJsonParseError err;
        const QJsonDocument doc = QJsonDocument::fromJson(f.readAll(), &err);
        if (!doc.isObject()) throw std::logic_error("reports.json: " + err.errorString().toStdString());
        std::map<QString, ReportDefinition> out;
        for (const QJsonValue& v : doc.object().value(QStringLiteral("reports")).toArray()) {
            ReportDefinition r = reportOf(v.toObject());
            const QString name = r.name;
            out.emplace(name, std::move(r));
        }
        return out;
    }();
    return all;
}

} // namespace

const ReportFilter* ReportDefinition::findFilter(const QString& className) const {
    for (const ReportFilter& f : filters)
        if (f.className == className) return &f;
    return nullptr;
}

QString ReportDefinition::statement(const QString& sqlTemplate, const QString& where) const {
    // The conditions go in last: what a filter put into them (a user's quoted text) is never
    // taken for a placeholder.
    QString sql = sqlTemplate;
    sql.replace(QLatin1String("%FROM%"), from);
    const qsizetype at = sql.indexOf(QLatin1String("%WHERE%"));
    if (at < 0) return sql;
    return sql.left(at) + (where.isEmpty() ? QString() : QStringLiteral("\nwhere ") + where) +
           sql.mid(at + 7);
}

const ReportDefinition& reportDefinition(const QString& name) {
    const auto& all = reports();
    auto it = all.find(name);
    if (it == all.end()) throw std::logic_error("reports.json has no report " + name.toStdString());
    return it->second;
}

const ReportDefinition& paymentReport() {
    return reportDefinition(QStringLiteral("FilterPanel"));
}

const ReportDefinition& salesReport() {
    return reportDefinition(QStringLiteral("SalesReport"));
}

} // namespace workbench
