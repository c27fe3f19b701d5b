#include "tests/support/ServerFixture.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include <QDir>
#include <QFile>
#include <QProcess>
#include <arpa/inet.h>
#include <csignal>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace frames::test {

namespace fbserver {

namespace {
QString envValue(const QString& key) {
    QFile f(dir() + QStringLiteral("/server.env"));
    if (!f.open(QIODevice::ReadOnly)) return {};
    for (const QByteArray& line : f.readAll().split('\n'))
        if (line.startsWith(key.toLatin1() + '='))
            return QString::fromLatin1(line.mid(key.size() + 1)).trimmed();
    return {};
}

bool script(const QString& command) {
    QProcess p;
    p.start(QStringLiteral("bash"), {QStringLiteral(FRAMES_FBSERVER_SCRIPT), command, dir()});
    return p.waitForFinished(30000) && p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0;
}
} // namespace

QString dir() {
    return QStringLiteral(FRAMES_FBSERVER_DIR);
}
bool available() {
    return port() > 0 && pid() > 0;
}
int port() {
    return envValue(QStringLiteral("PORT")).toInt();
}
qint64 pid() {
    return envValue(QStringLiteral("PID")).toLongLong();
}
QString connectString(const QString& file) {
    return QStringLiteral("127.0.0.1/%1:%2").arg(port()).arg(file);
}
QString password(const QString& login) {
    return login.compare(QStringLiteral("SYSDBA"), Qt::CaseInsensitive) == 0 ? QStringLiteral("masterkey")
                                                                             : login.toLower();
}
bool stop() {
    return script(QStringLiteral("stop"));
}
bool start() {
    return script(QStringLiteral("start"));
}
void freeze() {
    ::kill(pid_t(pid()), SIGSTOP);
}
void thaw() {
    ::kill(pid_t(pid()), SIGCONT);
}

} // namespace fbserver

SilentPort::SilentPort() {
    fd_ = ::socket(AF_INET, SOCK_STREAM, 0);
    if (fd_ < 0) return;
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    a.sin_port = 0;
    socklen_t len = sizeof a;
    if (::bind(fd_, reinterpret_cast<sockaddr*>(&a), sizeof a) != 0 || ::listen(fd_, 8) != 0 ||
        ::getsockname(fd_, reinterpret_cast<sockaddr*>(&a), &len) != 0)
        return;
    port_ = ntohs(a.sin_port);
}

SilentPort::~SilentPort() {
    if (fd_ >= 0) ::close(fd_);
}

void ServerTest::SetUp() {
    ASSERT_TRUE(fbserver::available())
        << "the fbserver fixture has not started a server in " << fbserver::dir().toStdString();
    dir_ = std::make_unique<QTemporaryDir>(fbserver::dir() + QStringLiteral("/db-XXXXXX"));
    ASSERT_TRUE(dir_->isValid());
    file_ = dir_->filePath(QStringLiteral("test.fdb"));
    ASSERT_TRUE(QFile::copy(fbserver::dir() + QStringLiteral("/demo.fdb"), file_));
    QFile::setPermissions(file_, QFile::ReadOwner | QFile::WriteOwner);
}

void ServerTest::TearDown() {
    fbserver::thaw(); // a test that froze the server and failed leaves it running
    dir_.reset();
}

std::unique_ptr<db::Database> ServerTest::connectAs(const QString& login) const {
    auto d = std::make_unique<db::Database>();
    db::Database::Options o;
    o.user = login;
    o.password = fbserver::password(login);
    d->open(connectString(), o);
    return d;
}

QVariant ServerTest::scalar(const QString& sql) const {
    auto d = connectAs(QStringLiteral("SYSDBA"));
    db::Transaction tr(d.get(), db::TransactionOptions::read());
    tr.start();
    db::Query q(d.get(), &tr);
    q.setSql(sql);
    q.open();
    QVariant v = q.next() ? q.value(0) : QVariant();
    q.close();
    tr.commit();
    return v;
}

} // namespace frames::test
