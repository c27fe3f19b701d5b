#pragma once
#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

namespace frames {

// A node of the per-user layout tree: a name, an optional value and named children in the order
// they were created. The host keeps one tree per user and stores it as JSON.
class TConfigItem {
public:
    explicit TConfigItem(QString name = {}) : name_(std::move(name)) {}
    TConfigItem(const TConfigItem&) = delete;
    TConfigItem& operator=(const TConfigItem&) = delete;

    const QString& Name() const { return name_; }
    // The child of that name (names compare without regard to case), created when missing.
    TConfigItem* ItemByName(const QString& name);
    bool IsExists(const QString& name) const;
    TConfigItem* Find(const QString& name) const;
    void Remove(const QString& name);
    int Count() const { return int(children_.size()); }
    TConfigItem* Item(int i) const { return children_[size_t(i)].get(); }
    void ClearItems() { children_.clear(); }

    bool HasValue() const { return value_.isValid(); }
    QString GetAsString() const { return value_.toString(); }
    int GetAsInteger() const;
    double GetAsFloat() const;
    bool GetAsBoolean() const;
    void SetAsString(const QString& v) { value_ = v; }
    void SetAsInteger(int v) { value_ = v; }
    void SetAsFloat(double v) { value_ = v; }
    void SetAsBoolean(bool v) { value_ = v; }
    const QVariant& Value() const { return value_; }

    // JSON form: {"value": ..., "items": {"Child": {...}, ...}}.
    QJsonObject toJson() const;
    void fromJson(const QJsonObject& o); // replaces value and children

private:
    QString name_;
    QVariant value_;
    std::vector<std::unique_ptr<TConfigItem>> children_;
};

} // namespace frames
