#include "platform/db/Error.h"
#include "platform/db/Charset.h"
#include "platform/db/FbCommon.h"
#include <algorithm>
#include <ibase.h>

namespace frames::db {

Error::Error(Kind kind, const QString& text, std::vector<long> gdsCodes, int sqlCode)
    : std::runtime_error(text.toStdString()), kind_(kind), text_(text), message_(text),
      codes_(std::move(gdsCodes)), sqlCode_(sqlCode) {}

Error::Error(Kind kind, const QString& message, const QString& context, std::vector<long> gdsCodes,
             int sqlCode)
    : Error(kind, context.isEmpty() ? message : message + QLatin1Char('\n') + context, std::move(gdsCodes),
            sqlCode) {
    message_ = message;
    context_ = context;
}

const QString& Error::lockConflictText() {
    static const QString t = QStringLiteral(
        "Запись редактируется другим пользователем. Ваши изменения не записаны, но остались на форме: "
        "повторите сохранение позже.");
    return t;
}

const QString& Error::connectionLostText() {
    static const QString t = QStringLiteral("Соединение с сервером базы данных потеряно.");
    return t;
}

const QString& Error::recordChangedText() {
    static const QString t =
        QStringLiteral("Запись изменена другим пользователем после того, как вы её открыли.");
    return t;
}

QString Error::userText() const {
    if (!userText_.isEmpty()) return userText_;
    switch (kind_) {
    case Kind::LockConflict:
        return lockConflictText();
    case Kind::ConnectionLost:
        return connectionLostText();
    case Kind::RecordChanged:
        return recordChangedText();
    default:
        return message_;
    }
}

bool Error::hasCode(long gds) const {
    return std::find(codes_.begin(), codes_.end(), gds) != codes_.end();
}

Error Error::configuration(const QString& text) {
    return Error(Kind::Configuration, text);
}

namespace fb {

Firebird::IMaster* master() {
    static Firebird::IMaster* m = Firebird::fb_get_master_interface();
    return m;
}

Firebird::IUtil* util() {
    static Firebird::IUtil* u = master()->getUtilInterface();
    return u;
}

namespace {

Error::Kind kindOf(const std::vector<long>& codes) {
    auto has = [&](std::initializer_list<long> list) {
        return std::any_of(codes.begin(), codes.end(),
                           [&](long c) { return std::find(list.begin(), list.end(), c) != list.end(); });
    };
    if (has({isc_lock_conflict, isc_update_conflict, isc_deadlock, isc_lock_timeout}))
        return Error::Kind::LockConflict;
    if (has({isc_network_error, isc_net_read_err, isc_net_write_err, isc_conn_lost, isc_lost_db_connection,
             isc_shutdown, isc_att_shutdown, isc_net_connect_err}))
        return Error::Kind::ConnectionLost;
    if (has({isc_unique_key_violation, isc_foreign_key, isc_not_valid, isc_check_constraint, isc_no_dup}))
        return Error::Kind::ConstraintViolation;
    return Error::Kind::Other;
}

} // namespace

Error toError(const Firebird::IStatus* status, const QString& context) {
    auto* s = const_cast<Firebird::IStatus*>(status);
    char buf[4096];
    unsigned n = util()->formatStatus(buf, sizeof buf - 1, s);
    buf[std::min<unsigned>(n, sizeof buf - 1)] = 0;
    QString text = fromServerMessage(buf).trimmed();
    std::vector<long> codes;
    const ISC_STATUS* v = s->getErrors();
    for (int i = 0; v && v[i] != isc_arg_end;) {
        ISC_STATUS arg = v[i];
        if (arg == isc_arg_gds) codes.push_back(long(v[i + 1]));
        i += (arg == isc_arg_cstring) ? 3 : 2;
    }
    int sqlCode = v ? int(isc_sqlcode(v)) : 0;
    const Error::Kind kind = kindOf(codes);
    return Error(kind, text, context, std::move(codes), sqlCode);
}

void rethrow(const Firebird::FbException& e, const QString& context) {
    throw toError(e.getStatus(), context);
}

} // namespace fb
} // namespace frames::db
