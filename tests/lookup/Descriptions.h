#pragma once
// The lookup descriptions compiled into the package (":/forms/lookup/*.json"), read as data: the
// statements of every component, for tests that run them against the demo schema.
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>

namespace frames::test {

struct LookupDescription {
    QString cls, keyField;                  // the class and its list's key (lcSelect.LookupField)
    QMap<QString, QString> select, refresh; // component -> SelectSQL / RefreshSQL, blank ones left out
};

// A statement is one text or a list of lines.
inline QString joinedSql(const QJsonValue& v) {
    if (v.isString()) return v.toString();
    QStringList lines;
    for (const QJsonValue& line : v.toArray()) lines << line.toString();
    return lines.join('\n');
}

inline QList<LookupDescription> lookupDescriptions() {
    QList<LookupDescription> out;
    QDirIterator it(":/forms/lookup", {"*.json"});
    while (it.hasNext()) {
        QFile f(it.next());
        f.open(QIODevice::ReadOnly);
        const QJsonObject d = QJsonDocument::fromJson(f.readAll()).object();
        const QJsonObject comps = d.value("components").toObject();
        LookupDescription l{d.value("class").toString(),
                            comps.value("lcSelect").toObject().value("LookupField").toString(),
                            {},
                            {}};
        for (auto c = comps.begin(); c != comps.end(); ++c) {
            const QString select = joinedSql(c.value().toObject().value("SelectSQL"));
            const QString refresh = joinedSql(c.value().toObject().value("RefreshSQL"));
            if (!select.trimmed().isEmpty()) l.select.insert(c.key(), select);
            if (!refresh.trimmed().isEmpty()) l.refresh.insert(c.key(), refresh);
        }
        out << l;
    }
    return out;
}

} // namespace frames::test
