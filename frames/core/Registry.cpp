#include "frames/core/Registry.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Designed.h"
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaProperty>
#include <QWidget>
#include <memory>
#include <stdexcept>

namespace frames {

namespace {

[[noreturn]] void fail(const QString& text) {
    throw std::runtime_error(text.toStdString());
}

// Class name -> resource path of its description, built once from the resource tree.
const QHash<QString, QString>& descriptionIndex() {
    static const QHash<QString, QString> index = [] {
        QHash<QString, QString> h;
        QDirIterator it(":/forms", {"*.json"}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            h.insert(QFileInfo(path).completeBaseName(), path);
        }
        return h;
    }();
    return index;
}

QVariant toPropertyValue(const QJsonValue& v, const QMetaProperty& prop) {
    if (v.isArray()) {
        QStringList lines;
        for (const auto& x : v.toArray()) lines << x.toString();
        if (prop.metaType().id() == QMetaType::QString) return lines.join('\n');
        return lines;
    }
    if (prop.metaType().id() == QMetaType::QStringList && v.isString())
        return QStringList(v.toString().split('\n'));
    return v.toVariant();
}

void setProperties(QObject* target, const QJsonObject& props, const QString& cls, const QString& component) {
    const QMetaObject* mo = target->metaObject();
    for (auto it = props.begin(); it != props.end(); ++it) {
        const int idx = mo->indexOfProperty(it.key().toUtf8().constData());
        if (idx < 0)
            fail(QString("Form %1: component %2 (%3) has no property %4")
                     .arg(cls, component, mo->className(), it.key()));
        const QMetaProperty prop = mo->property(idx);
        QVariant value = toPropertyValue(it.value(), prop);
        if (!value.convert(prop.metaType()) || !prop.write(target, value))
            fail(QString("Form %1: cannot set %2.%3 to %4")
                     .arg(cls, component, it.key(), it.value().toVariant().toString()));
    }
}

QObject* findComponent(QObject* root, const QString& name) {
    if (root->objectName() == name) return root;
    return root->findChild<QObject*>(name, Qt::FindChildrenRecursively);
}

} // namespace

Registry& Registry::instance() {
    static Registry r;
    return r;
}

void Registry::add(FrameClass c) {
    const QString name = c.name;
    classes_[name] = std::move(c);
}

const FrameClass* Registry::find(const QString& className) const {
    auto it = classes_.find(className);
    return it == classes_.end() ? nullptr : &it->second;
}

QStringList Registry::classNames() const {
    QStringList l;
    for (auto& [name, c] : classes_) l << name;
    return l;
}

QStringList Registry::classNames(const QString& family) const {
    QStringList l;
    for (auto& [name, c] : classes_)
        if (c.family == family) l << name;
    return l;
}

QStringList Registry::families() const {
    QStringList l;
    for (auto& [name, c] : classes_)
        if (!l.contains(c.family)) l << c.family;
    l.sort();
    return l;
}

QString Registry::familyCaption(const QString& family) {
    static const QHash<QString, QString> names{
        {QStringLiteral("lookup"), QStringLiteral("Выбор из справочника")},
        {QStringLiteral("multi"), QStringLiteral("Выбор нескольких значений")},
        {QStringLiteral("edit"), QStringLiteral("Ввод значений")},
        {QStringLiteral("media"), QStringLiteral("Изображения, адреса, диаграммы")},
        {QStringLiteral("select"), QStringLiteral("Диалоги выбора")},
        {QStringLiteral("filter"), QStringLiteral("Фильтры отчётов")},
        {QStringLiteral("medit"), QStringLiteral("Групповое изменение")},
        {QStringLiteral("lists"), QStringLiteral("Списки")},
        {QStringLiteral("crm"), QStringLiteral("Выбор для отчётов CRM, характеристики")},
    };
    return names.value(family, family);
}

TAbsEditFrame* Registry::create(const QString& className, QWidget* parent) const {
    const FrameClass* c = find(className);
    if (!c) fail(QString("Unknown frame class %1").arg(className));
    std::unique_ptr<TAbsEditFrame> frame(c->make(parent));
    finishFrame(frame.get(), className);
    return frame.release();
}

void finishFrame(TAbsEditFrame* frame, const QString& className) {
    frame->setObjectName(className.mid(1)); // "TBank_LF" -> "Bank_LF", as a component name
    FormLoader::apply(frame, className);
    frame->AfterConstruction();
}

QJsonObject FormLoader::description(const QString& className) {
    const QString path = descriptionIndex().value(className);
    if (path.isEmpty()) return {};
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) fail(QString("Form %1: cannot read %2").arg(className, path));
    QJsonParseError err;
    const QJsonDocument doc = QJsonDocument::fromJson(f.readAll(), &err);
    if (err.error != QJsonParseError::NoError || !doc.isObject())
        fail(QString("Form %1: %2 at offset %3").arg(className, err.errorString()).arg(err.offset));
    return doc.object();
}

QStringList FormLoader::chain(const QString& className) {
    QStringList classes;
    for (QString cls = className; !cls.isEmpty();) {
        if (classes.contains(cls)) fail(QString("Form %1: inheritance loop").arg(className));
        classes.prepend(cls);
        cls = description(cls).value("inherits").toString();
    }
    return classes;
}

QString FormLoader::caption(const QString& className) {
    const QStringList classes = chain(className);
    for (auto it = classes.crbegin(); it != classes.crend(); ++it) {
        const QJsonObject d = description(*it);
        const QString own = d.value("caption").toString().trimmed();
        if (!own.isEmpty()) return own;
        const QJsonObject label = d.value("components").toObject().value("lbSelect").toObject();
        const QString text = label.value("text").toString().trimmed();
        if (!text.isEmpty()) return text;
    }
    return {};
}

void FormLoader::applyDescription(QObject* target, const QJsonObject& d, const QString& cls) {
    setProperties(target, d.value("properties").toObject(), cls, "(frame)");
    const QJsonObject comps = d.value("components").toObject();
    for (auto it = comps.begin(); it != comps.end(); ++it) {
        QObject* comp = findComponent(target, it.key());
        if (!comp) fail(QString("Form %1: no component %2").arg(cls, it.key()));
        setProperties(comp, it.value().toObject(), cls, it.key());
    }
}

void FormLoader::apply(QObject* target, const QString& className) {
    for (const QString& cls : chain(className)) applyDescription(target, description(cls), cls);
}

} // namespace frames

extern "C" frames::Registry* frames_registry() {
    return &frames::Registry::instance();
}
