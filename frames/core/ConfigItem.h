#pragma once
#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <QString>
#include <QVariant>
#include <memory>
#include <vector>

namespace frames {

// A node of the per-user layout tree: a name, an optional value and named children in the order
// they were created. The host keeps one tree per user and stores it as JSON.
//
// Children are found by name in constant time (names compare without regard to case) and keep
// their order, which is the order they are written in.
class TConfigItem {
public:
    // Deepest tree a layout file may hold: the frames nest a few levels, a file nested deeper
    // than this is not a layout.
    static constexpr int MaxDepth = 100;

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
    void ClearItems();

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

    // JSON form: {"value": ..., "items": {"Child": {...}, ...}}. A value is a string, a number
    // or a Boolean.
    QJsonObject toJson() const;
    void fromJson(const QJsonObject& o); // replaces value and children
    // The JSON text of the tree, children in their order.
    QByteArray toJsonText(bool indented = true) const;
    // Reads JSON text into this node, replacing its value and children. Text that is not such a
    // tree (not JSON, not an object, a member of the wrong type, deeper than MaxDepth) leaves
    // the node as it was and returns false with the reason in error.
    bool readJsonText(const QByteArray& text, QString* error = nullptr);

    // Same names (without regard to case), values and children in the same order.
    bool sameTree(const TConfigItem& other) const;

private:
    static QString keyOf(const QString& name) { return name.toCaseFolded(); }
    class Reader;
    void writeText(QByteArray& out, bool indented, int indent) const;

    QString name_;
    QVariant value_;
    std::vector<std::unique_ptr<TConfigItem>> children_;
    QHash<QString, TConfigItem*> index_; // folded name -> child
};

} // namespace frames
