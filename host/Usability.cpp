#include "host/Usability.h"
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QPushButton>
#include <QToolButton>

namespace workbench {

namespace {

bool showsSomething(const QAbstractButton* b) {
    if (!b->text().trimmed().isEmpty()) return true;
    const QIcon icon = b->icon();
    if (!icon.isNull() && !icon.pixmap(16, 16).isNull()) return true;
    const auto* tool = qobject_cast<const QToolButton*>(b);
    return tool && tool->arrowType() != Qt::NoArrow;
}

} // namespace

QStringList blankButtons(const QWidget* window) {
    QStringList found;
    for (const QAbstractButton* b : window->findChildren<QAbstractButton*>()) {
        if (!qobject_cast<const QPushButton*>(b) && !qobject_cast<const QToolButton*>(b)) continue;
        if (!b->isVisibleTo(window) || showsSomething(b)) continue;
        QString name =
            b->objectName().isEmpty() ? QString::fromLatin1(b->metaObject()->className()) : b->objectName();
        if (!b->toolTip().isEmpty()) name += QStringLiteral(" («%1»)").arg(b->toolTip());
        found << name;
    }
    return found;
}

QIcon actionIcon(const char* themeName, QStyle::StandardPixmap fallback) {
    const QString name = QString::fromLatin1(themeName);
    if (QIcon::hasThemeIcon(name)) return QIcon::fromTheme(name);
    return QApplication::style()->standardIcon(fallback);
}

void setActionIcon(QAbstractButton* button, const char* themeName, QStyle::StandardPixmap fallback) {
    button->setIcon(actionIcon(themeName, fallback));
}

void setActionIcon(QAction* action, const char* themeName, QStyle::StandardPixmap fallback) {
    action->setIcon(actionIcon(themeName, fallback));
}

} // namespace workbench
