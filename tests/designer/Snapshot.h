#pragma once
#include <QMetaProperty>
#include <QStringList>
#include <QWidget>
#include <functional>

namespace frames::test {

// What construction and the form description make of a frame: every property its classes and its
// components' classes declare beyond QWidget (or QObject), as "path.property=value" with the path
// of object names and classes from the frame down. Geometry and the like are QWidget's: a form
// places the frame its own way.
inline QStringList snapshot(QObject* frame) {
    QStringList out;
    std::function<void(QObject*, const QString&)> walk = [&](QObject* o, const QString& path) {
        const QMetaObject* mo = o->metaObject();
        const int first =
            (o->isWidgetType() ? QWidget::staticMetaObject : QObject::staticMetaObject).propertyCount();
        for (int i = first; i < mo->propertyCount(); ++i) {
            const QMetaProperty p = mo->property(i);
            const QVariant v = p.read(o);
            QString text;
            if (v.metaType().id() == QMetaType::QStringList)
                text = v.toStringList().join(QLatin1Char('|'));
            else if (v.canConvert<QString>())
                text = v.toString();
            else
                continue;
            out << path + QLatin1Char('.') + QLatin1String(p.name()) + QLatin1Char('=') + text;
        }
        for (QObject* c : o->children())
            walk(c, path + QLatin1Char('/') + c->objectName() + QLatin1Char(':') +
                        QLatin1String(c->metaObject()->className()));
    };
    walk(frame, frame->objectName());
    return out;
}

} // namespace frames::test
