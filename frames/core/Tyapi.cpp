#include "frames/core/Tyapi.h"
#include "frames/core/Host.h"
#include "platform/db/Database.h"
#include "platform/db/Error.h"
#include "platform/db/Params.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/CalcEdit.h"
#include <QDate>
#include <QDateTime>
#include <algorithm>
#include <cmath>

namespace frames {

QString StrParam(const QString& value) {
    QString s = value;
    s.replace('\'', "''");
    return '\'' + s + '\'';
}

QString SqlKey(const QString& key) {
    qint64 v = 0;
    return db::parseInteger(key, v) ? QString::number(v) : StrParam(key);
}

QString IBBool(bool value) {
    return value ? QStringLiteral("'T'") : QStringLiteral("'F'");
}

QString IBDelParam(const QString& params, const QString& name) {
    QStringList kept;
    for (const QString& line : params.split(QLatin1Char('\n'))) {
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        const QString key = (eq < 0 ? line : line.left(eq)).trimmed();
        if (key.compare(name.trimmed(), Qt::CaseInsensitive) != 0) kept << line;
    }
    return kept.join(QLatin1Char('\n'));
}

QString SqlNumber(double value) {
    if (!std::isfinite(value)) return QStringLiteral("null");
    const QString plain = ui::floatToStr(value);
    const qsizetype point = plain.indexOf(u'.');
    const qsizetype decimals = point < 0 ? 0 : plain.size() - point - 1;
    const qsizetype digits = std::count_if(plain.begin(), plain.end(), [](QChar c) { return c.isDigit(); });
    if (decimals <= 4 && digits <= 18) return plain;
    QString mantissa = QString::number(value, 'e', 14);
    const qsizetype e = mantissa.indexOf(u'e');
    QString exponent = mantissa.mid(e + 1);
    mantissa.truncate(e);
    while (mantissa.endsWith(u'0')) mantissa.chop(1);
    if (mantissa.endsWith(u'.')) mantissa.chop(1);
    return mantissa + u'e' + QString::number(exponent.toInt());
}

QString SqlLiteral(const QVariant& v) {
    if (!v.isValid() || v.isNull()) return QStringLiteral("null");
    if (v.typeId() == QMetaType::ULongLong || v.typeId() == QMetaType::ULong)
        return QString::number(v.toULongLong());
    if (db::isIntegerValue(v)) return QString::number(v.toLongLong());
    switch (v.typeId()) {
    case QMetaType::Bool:
        return IBBool(v.toBool());
    case QMetaType::Double:
    case QMetaType::Float:
        return SqlNumber(v.toDouble());
    case QMetaType::QDate:
        return StrParam(v.toDate().toString("yyyy-MM-dd"));
    case QMetaType::QDateTime:
        return StrParam(v.toDateTime().toString("yyyy-MM-dd HH:mm:ss.zzz"));
    default:
        return StrParam(v.toString());
    }
}

QString SqlText(const QVariantList& pieces) {
    QString sql;
    for (const QVariant& p : pieces) {
        switch (p.typeId()) {
        case QMetaType::QString:
        case QMetaType::QByteArray:
            sql += p.toString(); // literal SQL; user text must come through StrParam
            break;
        default:
            sql += SqlLiteral(p);
        }
    }
    return sql;
}

namespace {

// The host's database and read transaction; a host without them (a form designer showing frames)
// gets an error, not a crash.
db::Database* database() {
    db::Database* d = dmDataBaseFIB()->RvDatabase();
    if (!d)
        throw db::Error(db::Error::Kind::ConnectionLost, QStringLiteral("Нет соединения с базой данных."));
    return d;
}

db::Transaction* readTransaction() {
    database();
    db::Transaction* tr = dmDataBaseFIB()->pfReadTransaction();
    if (!tr)
        throw db::Error(db::Error::Kind::ConnectionLost, QStringLiteral("Нет соединения с базой данных."));
    return tr;
}

} // namespace

bool HasDatabase() {
    try {
        return host()->RvDatabase() && host()->pfReadTransaction();
    } catch (const std::logic_error&) {
        return false; // no host at all
    }
}

std::unique_ptr<db::Query> QvSqlQuery(db::Transaction* tr, bool, const QVariantList& pieces) {
    auto q = std::make_unique<db::Query>(database(), tr);
    q->setSql(SqlText(pieces));
    tr->ensureStarted();
    q->open();
    q->next();
    return q;
}

std::unique_ptr<db::Query> QvSqlQueryRead(const QVariantList& pieces) {
    return QvSqlQuery(readTransaction(), false, pieces);
}

QVariant QvSqlValue(const QVariantList& pieces) {
    db::Transaction* tr = readTransaction();
    auto q = std::make_unique<db::Query>(database(), tr);
    q->setSql(SqlText(pieces));
    tr->ensureStarted();
    q->open();
    return q->next() ? q->value(0) : QVariant();
}

void QvSqlExec(db::Transaction* tr, bool commit, const QVariantList& pieces) {
    db::Query q(database(), tr);
    q.setSql(SqlText(pieces));
    tr->ensureStarted();
    try {
        q.exec();
        if (commit) tr->commit();
    } catch (...) {
        if (commit && tr->active()) tr->rollback();
        throw;
    }
}

void QvSqlExec(const QVariantList& pieces) {
    db::Transaction tr(database(), db::TransactionOptions::writeNoWait());
    QvSqlExec(&tr, true, pieces);
}

void QvProcExec(const QString& procedure, const QVariantList& values) {
    QVariantList pieces{QStringLiteral("execute procedure ") + procedure};
    if (!values.isEmpty()) {
        pieces << QStringLiteral(" ");
        for (int i = 0; i < values.size(); ++i) {
            if (i) pieces << QStringLiteral(", ");
            pieces << QVariant(SqlLiteral(values[i])).toString();
        }
    }
    QvSqlExec(pieces);
}

} // namespace frames
