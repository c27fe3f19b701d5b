#pragma once
#include "platform/db/AbstractDataSet.h"
#include "platform/db/Params.h"
#include <QStringList>
#include <memory>
#include <vector>

namespace frames::db {

class Database;
class Transaction;
class Statement;

// Rows of a select statement. open() runs SelectSQL with the current parameter values and
// fetches every row as the raw buffer Firebird returns; values are decoded on access. Posting an
// edit runs UpdateSQL, an insert InsertSQL, a delete DeleteSQL; in those statements ":name" takes
// the edited value of field NAME and ":old_name" the value as it was read.
class DataSet : public AbstractDataSet {
    Q_OBJECT
    Q_PROPERTY(QStringList SelectSQL READ selectSqlLines WRITE setSelectSqlLines)
    Q_PROPERTY(QStringList RefreshSQL READ refreshSqlLines WRITE setRefreshSqlLines)
    Q_PROPERTY(QStringList InsertSQL READ insertSqlLines WRITE setInsertSqlLines)
    Q_PROPERTY(QStringList UpdateSQL READ updateSqlLines WRITE setUpdateSqlLines)
    Q_PROPERTY(QStringList DeleteSQL READ deleteSqlLines WRITE setDeleteSqlLines)
public:
    explicit DataSet(QObject* parent = nullptr);
    DataSet(Database* db, Transaction* tr, QObject* parent = nullptr);
    ~DataSet() override;

    void setDatabase(Database* db);
    Database* database() const { return db_; }
    void setTransaction(Transaction* tr); // the read transaction
    Transaction* transaction() const { return tr_; }
    // Transaction for insert/update/delete; defaults to transaction(). The dataset does not
    // commit it: the caller does.
    void setUpdateTransaction(Transaction* tr) { updateTr_ = tr; }
    Transaction* updateTransaction() const { return updateTr_ ? updateTr_ : tr_; }

    // Statement texts. Setting SelectSQL on an open dataset does not reopen it.
    QString selectSql() const { return select_; }
    void setSelectSql(const QString& s);
    QString refreshSql() const { return refresh_; }
    void setRefreshSql(const QString& s) { refresh_ = s; }
    QString insertSql() const { return insert_; }
    void setInsertSql(const QString& s) { insert_ = s; }
    QString updateSql() const { return update_; }
    void setUpdateSql(const QString& s) { update_ = s; }
    QString deleteSql() const { return delete_; }
    void setDeleteSql(const QString& s) { delete_ = s; }
    // The property forms (lines joined by "\n") used by form descriptions.
    QStringList selectSqlLines() const { return select_.split('\n'); }
    void setSelectSqlLines(const QStringList& l) { setSelectSql(l.join('\n')); }
    QStringList refreshSqlLines() const { return refresh_.split('\n'); }
    void setRefreshSqlLines(const QStringList& l) { refresh_ = l.join('\n'); }
    QStringList insertSqlLines() const { return insert_.split('\n'); }
    void setInsertSqlLines(const QStringList& l) { insert_ = l.join('\n'); }
    QStringList updateSqlLines() const { return update_.split('\n'); }
    void setUpdateSqlLines(const QStringList& l) { update_ = l.join('\n'); }
    QStringList deleteSqlLines() const { return delete_.split('\n'); }
    void setDeleteSqlLines(const QStringList& l) { delete_ = l.join('\n'); }

    // Parameters of SelectSQL (rebuilt when the text changes, values of kept names survive).
    Params& params() { return params_; }
    Param* paramByName(const QString& name); // throws db::Error naming the statement
    Param* findParam(const QString& name);

    // Re-reads the current row through RefreshSQL (parameters from the row's fields), or the
    // whole select when RefreshSQL is empty.
    void refreshRecord();
    // The current row as it is now in the database, read through RefreshSQL in the read
    // transaction with the values the row was read with (by field index); empty when the row is
    // gone or there is no RefreshSQL.
    std::vector<QVariant> readCurrentRow();

    // Firebird's prepared statement for SelectSQL (reused while the text is unchanged).
    void prepare();

protected:
    void doOpen() override;
    void doClose() override;
    int storageCount() const override;
    QVariant storageValue(int physRow, int column) const override;
    int storePost(int physRow, const std::vector<QVariant>& oldValues,
                  const std::vector<QVariant>& newValues) override;
    void storeDelete(int physRow) override;
    QString description() const override;
    QString storageNumericText(int physRow, int column) const override;

private:
    struct Rows;
    Transaction* readTransaction() const;
    Transaction* writeTransaction() const;
    Statement* cachedStatement(const QString& sql, Transaction* tr);
    // Values for the parameters of a modifying statement: NAME from `values`, OLD_NAME from `old`.
    std::vector<QVariant> modifyValues(const Statement& st, const std::vector<QVariant>& old,
                                       const std::vector<QVariant>& values) const;
    // Returns the rows an update or delete touched, -1 for other statements.
    qint64 runModify(const QString& sql, const std::vector<QVariant>& old,
                     const std::vector<QVariant>& values, std::vector<QVariant>* returning);

    Database* db_ = nullptr;
    Transaction* tr_ = nullptr;
    Transaction* updateTr_ = nullptr;
    QString select_, refresh_, insert_, update_, delete_;
    Params params_;
    std::unique_ptr<Statement> stmt_;
    std::unique_ptr<Rows> rows_;
    std::vector<std::unique_ptr<Statement>> modifyStmts_; // refresh/insert/update/delete, reused
};

} // namespace frames::db
