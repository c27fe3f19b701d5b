#include "platform/db/Params.h"
#include "platform/db/Error.h"
#include <limits>

namespace frames::db {

namespace {

bool identChar(QChar c) {
    return c.isLetterOrNumber() || c == '_' || c == '$';
}

} // namespace

ScannedSql ScannedSql::scan(const QString& sql) {
    ScannedSql r;
    const int n = int(sql.size());
    r.positionalSql.reserve(n);
    int unnamed = 0;
    int i = 0;
    auto copyTo = [&](int end) {
        r.positionalSql += QStringView(sql).mid(i, end - i);
        i = end;
    };
    while (i < n) {
        const QChar c = sql[i];
        if (c == '\'' || c == '"') {
            int j = i + 1;
            while (j < n) {
                if (sql[j] == c) {
                    if (j + 1 < n && sql[j + 1] == c) {
                        j += 2;
                        continue;
                    }
                    break;
                }
                ++j;
            }
            copyTo(std::min(j + 1, n));
            continue;
        }
        if (c == '-' && i + 1 < n && sql[i + 1] == '-') {
            int j = sql.indexOf('\n', i);
            copyTo(j < 0 ? n : j);
            continue;
        }
        if (c == '/' && i + 1 < n && sql[i + 1] == '*') {
            int j = sql.indexOf(QStringLiteral("*/"), i + 2);
            copyTo(j < 0 ? n : j + 2);
            continue;
        }
        // ':' starts a parameter only where no name, "::" cast or parameter goes on; '?' is always
        // a parameter marker, named by the name that follows it, if any.
        const bool prevOk =
            c == '?' || i == 0 || (!identChar(sql[i - 1]) && sql[i - 1] != ':' && sql[i - 1] != '?');
        if ((c == ':' || c == '?') && prevOk && i + 1 < n && identChar(sql[i + 1]) && sql[i + 1] != '$') {
            int j = i + 1;
            while (j < n && identChar(sql[j])) ++j;
            const QString name = sql.mid(i + 1, j - i - 1);
            int idx = -1;
            for (int k = 0; k < r.names.size(); ++k)
                if (r.names[k].compare(name, Qt::CaseInsensitive) == 0) {
                    idx = k;
                    break;
                }
            if (idx < 0) {
                idx = int(r.names.size());
                r.names << name;
            }
            r.positions.push_back(idx);
            r.positionalSql += '?';
            i = j;
            continue;
        }
        if (c == '?') {
            r.positions.push_back(int(r.names.size()));
            r.names << QStringLiteral("?%1").arg(++unnamed);
            r.positionalSql += '?';
            ++i;
            continue;
        }
        r.positionalSql += c;
        ++i;
    }
    return r;
}

void Params::rebuild(const QStringList& names) {
    std::vector<std::unique_ptr<Param>> next;
    next.reserve(size_t(names.size()));
    for (const QString& name : names) {
        std::unique_ptr<Param> p;
        for (auto& old : items_)
            if (old && old->name().compare(name, Qt::CaseInsensitive) == 0) {
                p = std::move(old);
                break;
            }
        if (!p) p = std::make_unique<Param>(name);
        next.push_back(std::move(p));
    }
    items_ = std::move(next);
}

Param* Params::find(const QString& name) const {
    for (auto& p : items_)
        if (p->name().compare(name, Qt::CaseInsensitive) == 0) return p.get();
    return nullptr;
}

Param* Params::byName(const QString& name, const QString& sqlForMessage) const {
    if (Param* p = find(name)) return p;
    throw Error::configuration(
        QStringLiteral("Parameter \"%1\" not found in statement: %2").arg(name, sqlForMessage.simplified()));
}

bool parseInteger(QStringView text, qint64& value) {
    qsizetype i = 0;
    const bool negative = !text.isEmpty() && text[0] == u'-';
    if (negative) ++i;
    if (i == text.size()) return false;
    // Accumulated as a negative number, whose range includes the most negative one.
    qint64 v = 0;
    for (; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < u'0' || c > u'9') return false;
        const int digit = c - u'0';
        if (v < (std::numeric_limits<qint64>::min() + digit) / 10) return false;
        v = v * 10 - digit;
    }
    if (!negative) {
        if (v == std::numeric_limits<qint64>::min()) return false;
        v = -v;
    }
    value = v;
    return true;
}

bool isIntegerValue(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Char:
    case QMetaType::SChar:
    case QMetaType::UChar:
        return true;
    default:
        return false;
    }
}

} // namespace frames::db
