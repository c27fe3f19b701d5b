#pragma once
#include "platform/db/Error.h"
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

namespace Firebird {
class IAttachment;
class IMaster;
class IStatus;
} // namespace Firebird

namespace frames::db {

class Transaction;

// One attachment to a Firebird database. A plain path uses the embedded engine; "host:path" or
// "host/port:path" reaches a server. The connection character set is WIN1251, the databases' own (see
// Charset.h).
class Database : public QObject {
    Q_OBJECT
public:
    explicit Database(QObject* parent = nullptr);
    ~Database() override;

    struct Options {
        QString user = "SYSDBA";
        QString password = "masterkey";
        QString role;
        // Forced (synchronous) writes of the database file: -1 leaves the database's setting,
        // 0 turns them off, 1 on. The setting is kept in the database; changing it takes the
        // owner or SYSDBA.
        int forcedWrites = -1;
        // Seconds a server has to answer when attaching; 0: the client library's default.
        int connectTimeout = 10;
        // Seconds of silence after which the server probes the connection (dead clients are
        // dropped and their locks freed); 0: the server's setting.
        int dummyPacketInterval = 30;
        // Seconds a call on an open server connection may wait for the server's answer before
        // the connection is given up as lost; 0: no limit. (Long reports answer as they fetch.)
        int answerTimeout = 30;
    };

    // True for "host:path" and "host/port:path", false for a file of the embedded engine.
    static bool isRemote(const QString& connectString);

    void open(const QString& connectString, const Options& options);
    void open(const QString& connectString) { open(connectString, Options{}); }
    // Creates a new database file (default character set WIN1251, page size 8192) and stays
    // attached to it.
    void create(const QString& connectString, const Options& options);
    void create(const QString& connectString) { create(connectString, Options{}); }
    void close();
    bool isOpen() const;
    const QString& connectString() const { return connectString_; }
    const Options& options() const { return options_; }
    // Attaches again with the same connect string and options after the connection was lost.
    // The Database object and its Transaction objects stay (frames keep pointers to them); the
    // old handles are dropped without asking the dead server, every transaction is inactive and
    // statements prepared before are invalid (Statement::valid) and prepared again on next use.
    void reconnect();
    // Counts attachments made by this object: a statement belongs to one of them.
    quint64 generation() const { return generation_; }

    // Runs a script of statements (see SqlScript) in its own transactions, committing after each
    // statement so that later statements see earlier metadata.
    void executeScript(const QString& scriptText);
    // Runs one statement without parameters or results in its own committed transaction.
    void executeImmediate(const QString& sql);

    // Default transaction used by datasets/queries that were given none.
    Transaction* defaultTransaction() const { return defaultTransaction_; }
    void setDefaultTransaction(Transaction* t) { defaultTransaction_ = t; }

    Firebird::IAttachment* handle() const { return attachment_; }
    // The sockets of the server connection (empty for the embedded engine).
    const std::vector<int>& serverSockets() const { return sockets_; }

private:
    friend class Transaction;
    void attach(const QString& connectString, const Options& options, bool create);
    void attachWith(const QByteArray& path, const QString& connectString, const Options& options, bool create,
                    const QString& context);

    Firebird::IAttachment* attachment_ = nullptr;
    QString connectString_;
    Options options_;
    quint64 generation_ = 0;
    std::vector<int> sockets_;
    Transaction* defaultTransaction_ = nullptr;
    QList<Transaction*> transactions_; // every Transaction on this database, ended by close()
};

// Splits a script into statements: honours "SET TERM x ;" (the terminator may change), skips
// "--" line comments and "/* */" block comments between statements, and never splits inside
// quoted text or quoted identifiers. Empty statements are dropped; SET TERM is not returned.
class SqlScript {
public:
    static QStringList split(const QString& script);
};

} // namespace frames::db
