#pragma once
#include <QString>
#include <QStringList>

namespace frames::schema {

// Names of the schema scripts in the order they run (resource paths under :/schema).
QStringList scriptNames();
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
