#pragma once
#include <QString>
#include <QStringList>

class QTextStream;

namespace frames {
class Registry;
}

namespace workbench {

class HostImpl;

struct Options {
    QString database;       // empty: the demo database in the user's data folder
    bool list = false;      // print the registered frame classes and exit
    QString screenshotsDir; // set: write screenshots there and exit
    QString user;           // the user the session runs for (and attaches as)
    QString password;       // his password on a server; else WORKBENCH_PASSWORD, else asked
};

// Parses the command line; returns false with a message for bad arguments (help and version
// also return false, with an empty message, after printing).
bool parseOptions(const QStringList& arguments, Options& options, QString& message);

// The embedded demo database of this user: <application data folder>/demo.fdb.
QString defaultDatabasePath();

// The package's registry: from the library loaded by path when it is found beside the
// executable, else through the linked entry point. source tells which.
frames::Registry* loadRegistry(QString* source = nullptr);

// Loads Qt's own Russian texts (standard buttons, dialogs, the context menus of edits) into the
// application; false when the translation files are not installed.
bool installQtTranslations();

// "Class<TAB>family<TAB>caption" per registered class, sorted by class name.
QStringList frameListing(const frames::Registry& registry);

// Screenshot mode: every registered frame free-standing, the card list, the edit dialog over it
// with its bound lookups and each reference form, as PNG files in dir, with index.html. Returns
// the number of pictures written; errors are listed in the index. Throws std::runtime_error
// (a Russian text) when the folder cannot be made or the index cannot be written.
int writeScreenshots(HostImpl& host, const frames::Registry& registry, const QString& dir);

// The whole program; returns the exit code (2 when the database cannot be opened).
int run(int argc, char** argv);

} // namespace workbench
