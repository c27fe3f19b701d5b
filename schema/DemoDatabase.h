#pragma once
#include <QString>
#include <QStringList>

namespace frames::schema {

// The script sets: the main database's (the default everywhere below) and the image
// database's, which the host keeps beside the main one.
QString mainScripts();  // ":/schema"
QString imageScripts(); // ":/schema/images"
// The image database that belongs to a main database: "<name>_images.fdb" in its folder (also
// for host/port:path on a server).
QString imageDatabasePath(const QString& mainPath);

// Names of the schema scripts of a set in the order they run (resource paths under the set).
QStringList scriptNames(const QString& set = mainScripts());
// One statement that the build sends to the server, from the script named `script`. A block of
// data statements run in one transaction keeps them in `parts`; `sql` is then the block.
struct BuildStep {
    QString script;
    QString sql;
    QStringList parts;
};
// Every statement of the build, in order: what createDemoDatabase runs on the new database, each
// in a transaction of its own, committed at once.
QList<BuildStep> buildSteps(const QString& set = mainScripts());
// A fingerprint of the scripts (names and text): a database made from other scripts differs.
QString schemaFingerprint(const QString& set = mainScripts());
// Creates a database file at path from the schema scripts and demo data, and records the
// scripts' fingerprint beside it (path + ".schema"). An existing file is replaced. Throws
// db::Error.
void createDemoDatabase(const QString& path, const QString& set = mainScripts());
// A claim on a demo database file, through a lock file beside it (path + ".lock"). Every process
// that uses the database holds a shared claim while it runs; building or replacing the file takes
// the exclusive one, which no process gets while another uses the file or builds it.
class DemoDatabaseLock {
public:
    explicit DemoDatabaseLock(const QString& databasePath);
    ~DemoDatabaseLock();
    DemoDatabaseLock(const DemoDatabaseLock&) = delete;
    DemoDatabaseLock& operator=(const DemoDatabaseLock&) = delete;

    // Waits up to timeoutMs for the claim; false when it was not had by then.
    bool lockShared(int timeoutMs);
    // The exclusive claim, without waiting.
    bool tryLockExclusive();
    void unlock();

private:
    QString path_;
    int fd_ = -1;
};

// Creates the database when the file does not exist yet or was made from other scripts; returns
// true when it created it. An outdated file is kept as path + ".previous" (named in
// keptPrevious). A file that another process uses is never replaced: a start that finds another
// one building the database waits for it (up to waitMs), and one that finds an outdated database
// in use says so (db::Error). With lock, the caller keeps the shared claim on the database it may
// now open, for as long as it uses it.
bool ensureDemoDatabase(const QString& path, QString* keptPrevious = nullptr,
                        DemoDatabaseLock* lock = nullptr, int waitMs = 120000,
                        const QString& set = mainScripts());

} // namespace frames::schema
