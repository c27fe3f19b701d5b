#pragma once
#include <QString>
#include <QStringList>

namespace frames::schema {

// Names of the schema scripts in the order they run (resource paths under :/schema).
QStringList scriptNames();
// Creates a database file at path from the schema scripts and demo data. An existing file is
// replaced. Throws db::Error.
void createDemoDatabase(const QString& path);
// Creates the database only when the file does not exist yet; returns true when it created it.
bool ensureDemoDatabase(const QString& path);

} // namespace frames::schema
