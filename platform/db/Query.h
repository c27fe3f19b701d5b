#pragma once
#include "platform/db/Error.h"
#include "platform/db/Params.h"
#include <QObject>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace frames::db {

class Database;
class Transaction;
class Statement;

// One statement with named parameters, run in a given transaction. The prepared statement is
// kept and reused while the SQL text does not change.
class Query : public QObject {
    Q_OBJECT
public:
    explicit Query(QObject* parent = nullptr);
    Query(Database* db, Transaction* tr, QObject* parent = nullptr);
    ~Query() override;

    void setDatabase(Database* db);
    Database* database() const { return db_; }
    void setTransaction(Transaction* tr);
    Transaction* transaction() const { return tr_; }

    void setSql(const QString& sql);
    const QString& sql() const { return sql_; }

    Params& params() { return params_; }
    Param* paramByName(const QString& name); // throws db::Error naming the statement
    Param* findParam(const QString& name);   // nullptr when absent

    void prepare();
    bool prepared() const;

    // Runs a statement that returns no cursor (insert/update/delete/execute procedure, DDL).
    // Output values of "execute procedure" or "returning" are available via value().
    void exec();
    // Opens a cursor; then next() moves to each row (returns false past the last).
    void open();
    bool next();
    void close();
    bool isOpen() const;

    // Values of the current row (or of exec()'s single output row).
    int columnCount() const;
    QString columnName(int i) const;
    QVariant value(int i) const;
    QVariant value(const QString& column) const; // throws db::Error when the column is absent
    int rowsAffected() const;

    // Statements prepared by this process so far (shows statement reuse).
    static quint64 prepareCount();

private:
    Database* db_ = nullptr;
    Transaction* tr_ = nullptr;
    QString sql_;
    Params params_;
    std::unique_ptr<Statement> stmt_;
    std::vector<char> rowBuf_; // current row (cursor) or exec()'s output row
    bool rowValid_ = false;
};

} // namespace frames::db
