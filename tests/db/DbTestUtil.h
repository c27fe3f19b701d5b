#pragma once
// A scratch database per test: created in a temporary directory, dropped with it.
#include "platform/db/Database.h"
#include "platform/db/Error.h"
#include "platform/db/Transaction.h"
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace frames::db::test {

class ScratchDb : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(dir.isValid());
        db = std::make_unique<Database>();
        db->create(dir.filePath(QStringLiteral("scratch.fdb")));
        read = std::make_unique<Transaction>(db.get(), TransactionOptions::read());
        db->setDefaultTransaction(read.get());
    }
    void TearDown() override {
        read.reset();
        db.reset();
    }
    // Runs DDL/DML in its own committed transaction.
    void exec(const QString& sql) { db->executeImmediate(sql); }

    QTemporaryDir dir;
    std::unique_ptr<Database> db;
    std::unique_ptr<Transaction> read;
};

// The error a call throws; a test failure (and an empty error) when it throws none.
template <class F> Error thrown(F&& f) {
    try {
        f();
    } catch (const Error& e) {
        return e;
    }
    ADD_FAILURE() << "no error";
    return Error(Error::Kind::Other, QString());
}

} // namespace frames::db::test
