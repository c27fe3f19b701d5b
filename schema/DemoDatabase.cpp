#include "schema/DemoDatabase.h"
#include "platform/db/Database.h"
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

static void initSchemaResources() {
    // The scripts live in a static library: make sure its resources are registered.
    Q_INIT_RESOURCE(schema_scripts);
}

namespace frames::schema {

QStringList scriptNames() {
    initSchemaResources();
    QStringList names;
    const QStringList files =
        QDir(QStringLiteral(":/schema")).entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name);
    for (const QString& f : files) names << QStringLiteral(":/schema/") + f;
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

QList<BuildStep> buildSteps() {
    QList<BuildStep> steps;
    for (const QString& name : scriptNames()) planScript(QFileInfo(name).fileName(), readScript(name), steps);
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

QString schemaFingerprint() {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    for (const QString& name : scriptNames()) {
        hash.addData(QFileInfo(name).fileName().toUtf8());
        hash.addData(readScript(name).toUtf8());
    }
    return QString::fromLatin1(hash.result().toHex());
}

static QString stampPath(const QString& path) {
    return path + QStringLiteral(".schema");
}

static void writeStamp(const QString& path) {
    QFile f(stampPath(path));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(schemaFingerprint().toLatin1());
}

void createDemoDatabase(const QString& path) {
    const QFileInfo target(path);
    const QString dir = target.absolutePath();
    if (!QDir().mkpath(dir))
        throw db::Error::configuration(QStringLiteral("Cannot create folder %1").arg(dir));
    const QString finalPath = target.absoluteFilePath();
    // Built under a temporary name and renamed at the end, so that a failed build never leaves
    // a half-made database under the real name.
    const QString tempPath = QStringLiteral("%1/.%2.%3.building")
                                 .arg(dir, target.fileName())
                                 .arg(QCoreApplication::applicationPid());
    QFile::remove(tempPath);

    const QList<BuildStep> steps = buildSteps();
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
        throw db::Error::configuration(QStringLiteral("Cannot replace %1").arg(finalPath));
    }
    if (!QFile::rename(tempPath, finalPath)) {
        QFile::remove(tempPath);
        throw db::Error::configuration(QStringLiteral("Cannot rename %1 to %2").arg(tempPath, finalPath));
    }
    writeStamp(finalPath);
}

bool ensureDemoDatabase(const QString& path, QString* keptPrevious) {
    if (keptPrevious) keptPrevious->clear();
    if (QFileInfo::exists(path)) {
        QFile stamp(stampPath(path));
        if (stamp.open(QIODevice::ReadOnly) && QString::fromLatin1(stamp.readAll()) == schemaFingerprint())
            return false;
        // Made from other scripts: the frames may name objects it lacks. The old file is kept
        // beside the new one rather than thrown away.
        const QString previous = path + QStringLiteral(".previous");
        QFile::remove(previous);
        if (!QFile::rename(path, previous))
            throw db::Error::configuration(
                QStringLiteral("Cannot move the old demo database %1 aside").arg(path));
        if (keptPrevious) *keptPrevious = previous;
    }
    createDemoDatabase(path);
    return true;
}

} // namespace frames::schema
