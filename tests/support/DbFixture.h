#pragma once
#include "tests/support/TestHost.h"
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace frames::test {

// A fresh copy of the demo database (built once per test run by the demo_db fixture) and a
// test host attached to it.
class DbTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    // Path of this test's own database copy.
    QString databasePath() const { return dbPath_; }
    // A second attachment to the same database (another user's connection).
    std::unique_ptr<db::Database> secondConnection() const;
    // Runs a statement in its own committed transaction.
    void exec(const QString& sql) const;
    // First column of the first row of a select in a fresh transaction.
    QVariant scalar(const QString& sql) const;
    // The first row of a select (empty when there is none).
    QVariantList row(const QString& sql) const;

    std::unique_ptr<TestHost> host;

private:
    std::unique_ptr<QTemporaryDir> dir_;
    QString dbPath_;
};

// The demo database path (for tests that only read it: prefer DbTest).
QString demoDatabasePath();

} // namespace frames::test
