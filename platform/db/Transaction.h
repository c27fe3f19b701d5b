#pragma once
#include "platform/db/Error.h"
#include <QObject>

namespace Firebird {
class ITransaction;
}

namespace frames::db {

class Database;

struct TransactionOptions {
    enum class Isolation { Concurrency, Consistency, ReadCommitted, ReadCommittedRecVersion };
    Isolation isolation = Isolation::ReadCommittedRecVersion;
    bool readOnly = false;
    bool wait = true;
    int lockTimeout = 0;          // seconds when wait is on; 0 = wait for ever
    bool commitOnTimeout = false; // action when a dataset closes an idle transaction

    static TransactionOptions read() { return {Isolation::ReadCommittedRecVersion, true, true, 0, false}; }
    // "write, nowait, rec_version, read_committed"
    static TransactionOptions writeNoWait() {
        return {Isolation::ReadCommittedRecVersion, false, false, 0, false};
    }
};

// A transaction on one database. Datasets and queries name the transaction they run in;
// starting is implicit on first use (ensureStarted) and explicit through start().
class Transaction : public QObject {
    Q_OBJECT
public:
    explicit Transaction(Database* db, TransactionOptions options = {}, QObject* parent = nullptr);
    ~Transaction() override; // rolls back when still active

    Database* database() const { return db_; }
    const TransactionOptions& options() const { return options_; }
    void setOptions(const TransactionOptions& o) { options_ = o; }

    void start();
    void ensureStarted() {
        if (!active()) start();
    }
    void commit();
    void rollback();
    void commitRetaining();
    void rollbackRetaining();
    bool active() const { return handle_ != nullptr; }
    Firebird::ITransaction* handle() const { return handle_; }

signals:
    // Emitted before commit/rollback end the transaction: open cursors must be closed then.
    void ending();

private:
    friend class Database;
    Database* db_;
    TransactionOptions options_;
    Firebird::ITransaction* handle_ = nullptr;
};

} // namespace frames::db
