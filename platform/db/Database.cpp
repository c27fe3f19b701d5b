#include "platform/db/Database.h"
#include "platform/db/AnswerWatch.h"
#include "platform/db/Charset.h"
#include "platform/db/FbCommon.h"
#include "platform/db/Transaction.h"
#include <QRegularExpression>
#include <algorithm>

namespace frames::db {

using namespace Firebird;

Database::Database(QObject* parent) : QObject(parent) {}

Database::~Database() {
    try {
        close();
    } catch (...) {
        if (attachment_) attachment_->release();
        attachment_ = nullptr;
    }
    for (Transaction* t : transactions_) t->db_ = nullptr;
}

namespace {

// An attach that failed for a reason the user can act on gets a message in words; the server's
// own lines stay in the error's context for the trace log.
Error attachError(const Error& e, const QString& connectString, const Database::Options& options) {
    Error r = e;
    if (Database::isRemote(connectString) && (e.isConnectionLost() || e.hasCode(isc_connect_reject))) {
        const QString server = connectString.left(connectString.indexOf(QLatin1Char(':')));
        r = Error(Error::Kind::ConnectionLost, e.message(), e.context(), e.gdsCodes(), e.sqlCode());
        r.setUserText(
            QStringLiteral("Не удалось соединиться с сервером базы данных %1: сервер недоступен или "
                           "не ответил за %2 с.")
                .arg(server)
                .arg(options.connectTimeout));
    } else if (e.hasCode(isc_login)) {
        r.setUserText(QStringLiteral("Сервер базы данных не принял вход пользователя %1: неверное имя "
                                     "пользователя или пароль.")
                          .arg(options.user.toUpper()));
    }
    return r;
}

} // namespace

void Database::attach(const QString& connectString, const Options& options, bool create) {
    if (attachment_) close();
    const QByteArray path = connectString.toUtf8();
    const QString context = QStringLiteral("Database: %1").arg(connectString);
    const bool remote = isRemote(connectString);
    const std::vector<int> before = remote ? openSockets() : std::vector<int>();
    try {
        attachWith(path, connectString, options, create, context);
    } catch (const Error& e) {
        throw attachError(e, connectString, options);
    }
    // The sockets the attachment opened are its connection: the answer watch shuts them down
    // when the server stops answering.
    sockets_.clear();
    if (remote)
        for (int fd : openSockets())
            if (std::find(before.begin(), before.end(), fd) == before.end()) sockets_.push_back(fd);
    connectString_ = connectString;
    options_ = options;
    ++generation_;
}

void Database::attachWith(const QByteArray& path, const QString& connectString, const Options& options,
                          bool create, const QString& context) {
    fb::call(
        [&](fb::Status* st) {
            IXpbBuilder* dpb = fb::util()->getXpbBuilder(st, IXpbBuilder::DPB, nullptr, 0);
            try {
                dpb->insertString(st, isc_dpb_user_name, options.user.toUtf8().constData());
                dpb->insertString(st, isc_dpb_password, options.password.toUtf8().constData());
                if (!options.role.isEmpty())
                    dpb->insertString(st, isc_dpb_sql_role_name, options.role.toUtf8().constData());
                dpb->insertString(st, isc_dpb_lc_ctype, connectionCharset);
                if (isRemote(connectString)) {
                    if (options.connectTimeout > 0)
                        dpb->insertInt(st, isc_dpb_connect_timeout, options.connectTimeout);
                    if (options.dummyPacketInterval > 0)
                        dpb->insertInt(st, isc_dpb_dummy_packet_interval, options.dummyPacketInterval);
                }
                if (create) {
                    dpb->insertInt(st, isc_dpb_page_size, 8192);
                    dpb->insertString(st, isc_dpb_set_db_charset, "WIN1251");
                    dpb->insertInt(st, isc_dpb_sql_dialect, 3);
                }
                if (options.forcedWrites >= 0) dpb->insertInt(st, isc_dpb_force_write, options.forcedWrites);
                IProvider* prov = fb::master()->getDispatcher();
                try {
                    if (create)
                        attachment_ = prov->createDatabase(st, path.constData(), dpb->getBufferLength(st),
                                                           dpb->getBuffer(st));
                    else
                        attachment_ = prov->attachDatabase(st, path.constData(), dpb->getBufferLength(st),
                                                           dpb->getBuffer(st));
                } catch (...) {
                    prov->release();
                    throw;
                }
                prov->release();
            } catch (...) {
                dpb->dispose();
                throw;
            }
            dpb->dispose();
        },
        context);
}

bool Database::isRemote(const QString& connectString) {
    // A server is named before the first colon; a colon at index 1 is a drive letter.
    const int colon = int(connectString.indexOf(QLatin1Char(':')));
    if (colon <= 1) return false;
    const QString host = connectString.left(colon);
    return !host.contains(QLatin1Char('\\')) && !host.startsWith(QLatin1Char('/')) &&
           !host.startsWith(QLatin1Char('.'));
}

void Database::reconnect() {
    if (connectString_.isEmpty()) throw Error::configuration(QStringLiteral("Database was never opened"));
    // Nothing is asked of the old server: it may be gone or frozen.
    for (Transaction* t : QList<Transaction*>(transactions_)) {
        if (!t->handle_) continue;
        emit t->ending();
        t->handle_->release();
        t->handle_ = nullptr;
    }
    if (attachment_) {
        attachment_->release();
        attachment_ = nullptr;
    }
    attach(connectString_, options_, false);
}

void Database::open(const QString& connectString, const Options& options) {
    attach(connectString, options, false);
}

void Database::create(const QString& connectString, const Options& options) {
    attach(connectString, options, true);
}

void Database::close() {
    if (!attachment_) return;
    for (Transaction* t : QList<Transaction*>(transactions_)) {
        if (t->active()) {
            try {
                t->rollback();
            } catch (const Error&) {
                // the attachment is going away; the server rolls back what is left
            }
        }
    }
    IAttachment* a = attachment_;
    attachment_ = nullptr;
    try {
        const ServerWait wait(this);
        fb::Status st;
        a->detach(&st);
    } catch (const FbException&) {
        a->release();
    }
    sockets_.clear(); // their numbers may soon be other sockets'
}

bool Database::isOpen() const {
    return attachment_ != nullptr;
}

void Database::executeImmediate(const QString& sql) {
    if (!attachment_) throw Error::configuration(QStringLiteral("Database is not open: %1").arg(sql));
    Transaction tr(this,
                   TransactionOptions{TransactionOptions::Isolation::Concurrency, false, true, 0, false});
    tr.start();
    const QByteArray text = toConnectionText(sql, sql);
    fb::call(
        [&](fb::Status* st) {
            const ServerWait wait(this);
            attachment_->execute(st, tr.handle(), unsigned(text.size()), text.constData(), 3, nullptr,
                                 nullptr, nullptr, nullptr);
        },
        QStringLiteral("Statement: %1").arg(sql));
    tr.commit();
}

void Database::executeScript(const QString& scriptText) {
    static const QRegularExpression clientOnly(
        QStringLiteral("^(commit(\\s+work)?|set\\s+(sql\\s+dialect|names|autoddl|echo|bail|list|stats|"
                       "plan|heading|count|warnings)\\b.*)$"),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    const QStringList statements = SqlScript::split(scriptText);
    for (int i = 0; i < statements.size(); ++i) {
        const QString& s = statements[i];
        if (clientOnly.match(s).hasMatch()) continue;
        try {
            executeImmediate(s);
        } catch (const Error& e) {
            QString text = e.text();
            // executeImmediate appended the whole statement; replace it with the short form.
            const int at = text.lastIndexOf(QStringLiteral("\nStatement: "));
            if (at >= 0) text.truncate(at);
            text += QStringLiteral("\nScript statement %1: %2").arg(i + 1).arg(s.left(200));
            throw Error(e.kind(), text, e.gdsCodes(), e.sqlCode());
        }
    }
}

// ---- SqlScript

QStringList SqlScript::split(const QString& script) {
    static const QRegularExpression setTerm(QStringLiteral("^set\\s+term\\s+(\\S+)$"),
                                            QRegularExpression::CaseInsensitiveOption);
    QStringList out;
    QString term = QStringLiteral(";");
    QString cur;
    const int n = int(script.size());
    bool content = false; // cur holds more than white space
    auto finish = [&] {
        const QString s = cur.trimmed();
        cur.clear();
        content = false;
        if (s.isEmpty()) return;
        const auto m = setTerm.match(s);
        if (m.hasMatch()) {
            term = m.captured(1);
            return;
        }
        out << s;
    };
    int i = 0;
    while (i < n) {
        const QChar c = script[i];
        const bool blank = !content;
        if (c == '\'' || c == '"') {
            int j = i + 1;
            while (j < n) {
                if (script[j] == c) {
                    if (j + 1 < n && script[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            const int end = std::min(j + 1, n);
            cur += script.mid(i, end - i);
            content = true;
            i = end;
            continue;
        }
        if (c == '-' && i + 1 < n && script[i + 1] == '-') {
            int j = script.indexOf('\n', i);
            if (j < 0) j = n;
            if (!blank) cur += script.mid(i, j - i);
            i = j;
            continue;
        }
        if (c == '/' && i + 1 < n && script[i + 1] == '*') {
            int j = script.indexOf(QStringLiteral("*/"), i + 2);
            j = j < 0 ? n : j + 2;
            if (!blank) cur += script.mid(i, j - i);
            i = j;
            continue;
        }
        if (QStringView(script).mid(i).startsWith(term, Qt::CaseInsensitive)) {
            finish();
            i += int(term.size());
            continue;
        }
        cur += c;
        if (!c.isSpace()) content = true;
        ++i;
    }
    finish();
    return out;
}

} // namespace frames::db
