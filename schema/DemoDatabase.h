#pragma once
#include <QString>
#include <QStringList>

namespace frames::schema {

// Names of the schema scripts in the order they run (resource paths under :/schema).
QStringList scriptNames();
// One statement that the build sends to the server, from the script named `script`. A block of
// data statements run in one transaction keeps them in `parts`; `sql` is then the block.
struct BuildStep {
    QString script;
    QString sql;
    QStringList parts;
};
// Every statement of the build, in order: what createDemoDatabase runs on the new database, each
// in a transaction of its own, committed at once.
QList<BuildStep> buildSteps();
// A fingerprint of the scripts (names and text): a database made from other scripts differs.
QString schemaFingerprint();
// Creates a database file at path from the schema scripts and demo data, and records the
// scripts' fingerprint beside it (path + ".schema"). An existing file is replaced. Throws
// db::Error.
void createDemoDatabase(const QString& path);
// Creates the database when the file does not exist yet or was made from other scripts; returns
// true when it created it. An outdated file is kept as path + ".previous" (named in
// keptPrevious).
bool ensureDemoDatabase(const QString& path, QString* keptPrevious = nullptr);

} // namespace frames::schema
