#include "frames/core/ConfigItem.h"
#include <QJsonValue>

namespace frames {

TConfigItem* TConfigItem::Find(const QString& name) const {
    for (auto& c : children_)
        if (c->name_.compare(name, Qt::CaseInsensitive) == 0) return c.get();
    return nullptr;
}

TConfigItem* TConfigItem::ItemByName(const QString& name) {
    if (auto* c = Find(name)) return c;
    children_.push_back(std::make_unique<TConfigItem>(name));
    return children_.back().get();
}

bool TConfigItem::IsExists(const QString& name) const {
    return Find(name) != nullptr;
}

void TConfigItem::Remove(const QString& name) {
    std::erase_if(children_, [&](const auto& c) { return c->name_.compare(name, Qt::CaseInsensitive) == 0; });
}

int TConfigItem::GetAsInteger() const {
    bool ok = false;
    const int v = value_.toInt(&ok);
    return ok ? v : int(value_.toDouble());
}

double TConfigItem::GetAsFloat() const {
    return value_.toDouble();
}

bool TConfigItem::GetAsBoolean() const {
    if (value_.typeId() == QMetaType::QString) {
        const QString s = value_.toString().trimmed().toLower();
        return s == "true" || s == "1" || s == "t" || s == "y";
    }
    return value_.toBool();
}

QJsonObject TConfigItem::toJson() const {
    QJsonObject o;
    if (value_.isValid()) o.insert("value", QJsonValue::fromVariant(value_));
    if (!children_.empty()) {
        QJsonObject items;
        for (auto& c : children_) items.insert(c->name_, c->toJson());
        o.insert("items", items);
    }
    return o;
}

void TConfigItem::fromJson(const QJsonObject& o) {
    children_.clear();
    value_ = o.contains("value") ? o.value("value").toVariant() : QVariant();
    const QJsonObject items = o.value("items").toObject();
    for (auto it = items.begin(); it != items.end(); ++it)
        if (it.value().isObject()) ItemByName(it.key())->fromJson(it.value().toObject());
}

} // namespace frames
