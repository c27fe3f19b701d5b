#pragma once
#include "platform/db/Database.h"
#include <QString>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <memory>

namespace frames::test {

// The private Firebird server the fbserver fixture (support/fbserver.sh) started for this run:
// 127.0.0.1 only, its own port and security database with SYSDBA and the demo users.
namespace fbserver {
bool available();
QString dir();
int port();
qint64 pid();
// "127.0.0.1/PORT:file"
QString connectString(const QString& file);
// The fixture's passwords: SYSDBA "masterkey", a demo user his login in lower case.
QString password(const QString& login);
// Stops the server (the port closes) and starts it again on the same port and root.
bool stop();
bool start();
// Freezes the server process (SIGSTOP) and lets it go on (SIGCONT).
void freeze();
void thaw();
} // namespace fbserver

// A port on 127.0.0.1 that takes connections (the kernel completes them) and never answers.
class SilentPort {
public:
    SilentPort();
    ~SilentPort();
    SilentPort(const SilentPort&) = delete;
    SilentPort& operator=(const SilentPort&) = delete;
    int port() const { return port_; }

private:
    int fd_ = -1;
    int port_ = 0;
};

// A test on a fresh copy of the demo database beside the server (the server reaches it by path).
class ServerTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    QString databaseFile() const { return file_; }
    QString connectString() const { return fbserver::connectString(file_); }
    // An attachment over the network as that user.
    std::unique_ptr<db::Database> connectAs(const QString& login) const;
    // The first column of the first row of a query, read as SYSDBA (null when no row).
    QVariant scalar(const QString& sql) const;

private:
    std::unique_ptr<QTemporaryDir> dir_;
    QString file_;
};

} // namespace frames::test
