#include "schema/DemoDatabase.h"
#include "platform/db/Database.h"
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QThread>
#include <algorithm>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

static void initSchemaResources() {
    // The scripts live in a static library: make sure its resources are registered.
    Q_INIT_RESOURCE(schema_scripts);
}

namespace frames::schema {

QString mainScripts() {
    return QStringLiteral(":/schema");
}

QString imageScripts() {
    return QStringLiteral(":/schema/images");
}

QString imageDatabasePath(const QString& mainPath) {
    QString base = mainPath;
    const qsizetype slash = std::max(base.lastIndexOf(QLatin1Char('/')), base.lastIndexOf(QLatin1Char('\\')));
    const qsizetype dot = base.lastIndexOf(QLatin1Char('.'));
    if (dot > slash && dot > base.lastIndexOf(QLatin1Char(':'))) base.truncate(dot);
    return base + QStringLiteral("_images.fdb");
}

QStringList scriptNames(const QString& set) {
    initSchemaResources();
    QStringList names;
    const QStringList files = QDir(set).entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
    for (const QString& f : files) names << set + QLatin1Char('/') + f;
    return names;
}

static QString readScript(const QString& name) {
    QFile f(name);
    if (!f.open(QIODevice::ReadOnly))
        throw db::Error::configuration(QStringLiteral("Cannot read schema script %1").arg(name));
    return QString::fromUtf8(f.readAll());
}

// Statements that only steer an interactive tool and mean nothing to the server.
static bool clientOnly(const QString& statement) {
    static const QRegularExpression re(
        QStringLiteral("^(commit(\\s+work)?|set\\s+(sql\\s+dialect|names|autoddl|echo|bail|list|stats|"
                       "plan|heading|count|warnings)\\b.*)$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return re.match(statement).hasMatch();
}

static bool isDataChange(const QString& statement) {
    static const QRegularExpression re(QStringLiteral("^(insert|update|delete)\\s"),
                                       QRegularExpression::CaseInsensitiveOption);
    return re.match(statement).hasMatch();
}

// The statements of one script as the build sends them. Consecutive data statements go to the
// server as one block in one transaction (each statement of its own would cost a commit, which is
// most of the build time).
static void planScript(const QString& scriptName, const QString& text, QList<BuildStep>& steps) {
    constexpr qsizetype maxBlockBytes = 48 * 1024; // well under the server's statement size limit
    QStringList batch;
    qsizetype batchBytes = 0;
    auto flush = [&] {
        if (batch.isEmpty()) return;
        if (batch.size() == 1) {
            steps.append({scriptName, batch.front(), {}});
        } else {
            QString block = QStringLiteral("EXECUTE BLOCK AS BEGIN\n");
            for (const QString& s : batch) block += s + QStringLiteral(";\n");
            block += QStringLiteral("END");
            steps.append({scriptName, block, batch});
        }
        batch.clear();
        batchBytes = 0;
    };
    for (const QString& statement : db::SqlScript::split(text)) {
        if (clientOnly(statement)) continue;
        if (!isDataChange(statement)) {
            flush();
            steps.append({scriptName, statement, {}});
            continue;
        }
        const qsizetype bytes = statement.toUtf8().size() + 2;
        if (batchBytes + bytes > maxBlockBytes) flush();
        batch << statement;
        batchBytes += bytes;
    }
    flush();
}

QList<BuildStep> buildSteps(const QString& set) {
    QList<BuildStep> steps;
    for (const QString& name : scriptNames(set))
        planScript(QFileInfo(name).fileName(), readScript(name), steps);
    return steps;
}

// Runs one step; when a block fails its statements run one by one so that the error names the
// statement at fault.
static void runStep(db::Database& database, const BuildStep& step) {
    auto runOne = [&](const QString& statement) {
        try {
            database.executeImmediate(statement);
        } catch (const db::Error& e) {
            QString detail = e.text();
            const auto at = detail.lastIndexOf(QStringLiteral("\nStatement: "));
            if (at >= 0) detail.truncate(at);
            throw db::Error(
                e.kind(),
                QStringLiteral("%1: %2\nStatement: %3").arg(step.script, detail, statement.left(300)),
                e.gdsCodes(), e.sqlCode());
        }
    };
    if (step.parts.isEmpty()) {
        runOne(step.sql);
        return;
    }
    try {
        database.executeImmediate(step.sql);
    } catch (const db::Error&) {
        for (const QString& s : step.parts) runOne(s);
        throw; // every statement ran alone: the block failed for a reason of its own
    }
}

QString schemaFingerprint(const QString& set) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& name : scriptNames(set)) {
        hash.addData(QFileInfo(name).fileName().toUtf8());
        hash.addData(readScript(name).toUtf8());
    }
    return QString::fromLatin1(hash.result().toHex());
}

static QString stampPath(const QString& path) {
    return path + QStringLiteral(".schema");
}

static void writeStamp(const QString& path, const QString& set) {
    QFile f(stampPath(path));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(schemaFingerprint(set).toLatin1());
}

void createDemoDatabase(const QString& path, const QString& set) {
    const QFileInfo target(path);
    const QString dir = target.absolutePath();
    if (!QDir().mkpath(dir))
        throw db::Error::configuration(QStringLiteral("Не удалось создать папку %1").arg(dir));
    const QString finalPath = target.absoluteFilePath();
    // Built under a temporary name and renamed at the end, so that a failed build never leaves
    // a half-made database under the real name.
    const QString tempPath = QStringLiteral("%1/.%2.%3.building")
                                 .arg(dir, target.fileName())
                                 .arg(QCoreApplication::applicationPid());
    QFile::remove(tempPath);

    const QList<BuildStep> steps = buildSteps(set);
    if (steps.isEmpty()) throw db::Error::configuration(QStringLiteral("No schema scripts found"));
    {
        db::Database database;
        try {
            // Built with forced writes off (every page write would wait for the disk) and switched
            // on once the data is in, as a working database should be.
            db::Database::Options building;
            building.forcedWrites = 0;
            database.create(tempPath, building);
            for (const BuildStep& step : steps) runStep(database, step);
            database.close();
            db::Database::Options finished;
            finished.forcedWrites = 1;
            database.open(tempPath, finished);
            database.close();
        } catch (...) {
            try {
                database.close();
            } catch (...) {
            }
            QFile::remove(tempPath);
            throw;
        }
    }
    if (QFile::exists(finalPath) && !QFile::remove(finalPath)) {
        QFile::remove(tempPath);
        throw db::Error::configuration(QStringLiteral("Не удалось заменить файл %1").arg(finalPath));
    }
    if (!QFile::rename(tempPath, finalPath)) {
        QFile::remove(tempPath);
        throw db::Error::configuration(
            QStringLiteral("Не удалось переименовать %1 в %2").arg(tempPath, finalPath));
    }
    writeStamp(finalPath, set);
}

namespace {

// Takes a claim (LOCK_SH or LOCK_EX) on a lock file, waiting up to timeoutMs (0: not at all).
bool claimFile(int& fd, const QString& path, int operation, int timeoutMs) {
    if (fd < 0) {
        QDir().mkpath(QFileInfo(path).absolutePath());
        fd = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
        if (fd < 0) return false;
    }
    QElapsedTimer clock;
    clock.start();
    for (;;) {
        if (::flock(fd, operation | LOCK_NB) == 0) return true;
        if (clock.elapsed() >= timeoutMs) return false;
        QThread::msleep(20);
    }
}

void releaseFile(int& fd) {
    if (fd < 0) return;
    ::flock(fd, LOCK_UN);
    ::close(fd);
    fd = -1;
}

// The exclusive claim on path + ".gate", held by the one start that decides whether to build.
struct Gate {
    int fd = -1;
    ~Gate() { releaseFile(fd); }
};

bool upToDate(const QString& path, const QString& set) {
    if (!QFileInfo::exists(path)) return false;
    QFile stamp(stampPath(path));
    return stamp.open(QIODevice::ReadOnly) && QString::fromLatin1(stamp.readAll()) == schemaFingerprint(set);
}

} // namespace

DemoDatabaseLock::DemoDatabaseLock(const QString& databasePath)
    : path_(databasePath + QStringLiteral(".lock")) {}

DemoDatabaseLock::~DemoDatabaseLock() {
    unlock();
}

bool DemoDatabaseLock::lockShared(int timeoutMs) {
    return claimFile(fd_, path_, LOCK_SH, timeoutMs);
}

bool DemoDatabaseLock::tryLockExclusive() {
    return claimFile(fd_, path_, LOCK_EX, 0);
}

void DemoDatabaseLock::unlock() {
    releaseFile(fd_);
}

bool ensureDemoDatabase(const QString& path, QString* keptPrevious, DemoDatabaseLock* lock, int waitMs,
                        const QString& set) {
    if (keptPrevious) keptPrevious->clear();
    DemoDatabaseLock own(path);
    DemoDatabaseLock& claim = lock ? *lock : own;
    // One start at a time decides, and builds while the others wait at the gate.
    Gate gate;
    if (!claimFile(gate.fd, path + QStringLiteral(".gate"), LOCK_EX, waitMs))
        throw db::Error::configuration(
            QStringLiteral("Демонстрационную базу %1 создаёт другой запуск рабочего места; он не закончил "
                           "за %2 с")
                .arg(path)
                .arg(waitMs / 1000));
    if (upToDate(path, set)) {
        // Others may use it: a shared claim is had at once (builders wait at the gate).
        if (!claim.lockShared(waitMs))
            throw db::Error::configuration(QStringLiteral("Нет доступа к файлу %1.lock").arg(path));
        return false;
    }
    // The exclusive claim is had only when no one uses the file.
    if (!claim.tryLockExclusive())
        throw db::Error::configuration(
            QStringLiteral("Демонстрационная база %1 создана по старым скриптам и открыта в другом запуске "
                           "рабочего места: закройте его, и база будет создана заново")
                .arg(path));
    try {
        if (QFileInfo::exists(path)) {
            // Made from other scripts: the frames may name objects it lacks. The old file is kept
            // beside the new one rather than thrown away.
            const QString previous = path + QStringLiteral(".previous");
            QFile::remove(previous);
            if (!QFile::rename(path, previous))
                throw db::Error::configuration(
                    QStringLiteral("Не удалось убрать в сторону старую демонстрационную базу %1").arg(path));
            if (keptPrevious) *keptPrevious = previous;
        }
        createDemoDatabase(path, set);
    } catch (...) {
        claim.unlock();
        throw;
    }
    claim.lockShared(0); // from the exclusive claim to the shared one
    return true;
}

} // namespace frames::schema
