#pragma once
#include <QString>
#include <QStringList>
#include <QVariant>
#include <memory>
#include <vector>

namespace frames::db {

// True for a QVariant holding any integer type.
bool isIntegerValue(const QVariant& v);
// Reads a text that is exactly an integer: an optional '-' and ASCII digits, nothing before,
// after or between them (no spaces, no '+', no NUL), within 64 bits. False for anything else.
bool parseInteger(QStringView text, qint64& value);

// A named statement parameter. Its value is a QVariant; an invalid QVariant is SQL null.
class Param {
public:
    explicit Param(QString name) : name_(std::move(name)) {}
    const QString& name() const { return name_; }
    const QVariant& value() const { return value_; }
    void setValue(const QVariant& v) { value_ = v; }
    void setAsInteger(int v) { value_ = v; }
    void setAsString(const QString& v) { value_ = v; }
    void setAsDouble(double v) { value_ = v; }
    void clear() { value_ = QVariant(); }
    bool isNull() const { return !value_.isValid() || value_.isNull(); }
    int asInteger() const { return value_.toInt(); }
    QString asString() const { return value_.toString(); }

private:
    QString name_;
    QVariant value_;
};

// The result of scanning SQL text: Firebird's positional text and, for each "?" in it, the index
// of the named parameter that fills it. ":name" and "?name" are parameters; names compare without
// regard to case; a name used twice is one parameter. Quoted text, quoted identifiers, comments
// and names like rdb$... are left alone. A bare "?" is an unnamed positional parameter.
struct ScannedSql {
    QString positionalSql;
    QStringList names;          // distinct parameter names in order of first use (as written)
    std::vector<int> positions; // for each "?" of positionalSql, index into names
    static ScannedSql scan(const QString& sql);
};

// The parameters of one statement.
class Params {
public:
    void rebuild(const QStringList& names); // keeps values of names that stay
    int count() const { return int(items_.size()); }
    Param* at(int i) const { return items_[size_t(i)].get(); }
    Param* find(const QString& name) const; // case-insensitive; nullptr when absent
    // Throws db::Error (Configuration) "Parameter NAME not found" with the statement text.
    Param* byName(const QString& name, const QString& sqlForMessage) const;

private:
    std::vector<std::unique_ptr<Param>> items_;
};

} // namespace frames::db
