#include "host/Usability.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/HostForms.h"
#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QEvent>
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

const QString kGeometry = QStringLiteral("Geometry");
const char* const kPlaced = "workbenchPlaced";

QString placementName(const QWidget* form) {
    const QVariant name = form->property("placementName");
    return name.isValid() ? name.toString() : form->objectName();
}

} // namespace

bool restorePlacement(QWidget* window, const frames::TConfigItem* node) {
    const frames::TConfigItem* item = node ? node->Find(kGeometry) : nullptr;
    if (!item) return false;
    const QByteArray geometry = QByteArray::fromBase64(item->GetAsString().toLatin1());
    return !geometry.isEmpty() && window->restoreGeometry(geometry);
}

void savePlacement(const QWidget* window, frames::TConfigItem* node) {
    node->ItemByName(kGeometry)->SetAsString(QString::fromLatin1(window->saveGeometry().toBase64()));
}

FormPlacement::FormPlacement(NodeOf nodeOf, std::function<void()> saved)
    : nodeOf_(std::move(nodeOf)), saved_(std::move(saved)) {
    qApp->installEventFilter(this);
}

FormPlacement::~FormPlacement() {
    qApp->removeEventFilter(this);
}

bool FormPlacement::eventFilter(QObject* watched, QEvent* event) {
    // Only what the program does: a window the user minimises and brings back stays as it is.
    const QEvent::Type type = event->type();
    if ((type != QEvent::Show && type != QEvent::Hide) || event->spontaneous() || !watched->isWidgetType())
        return false;
    auto* form = qobject_cast<frames::TfmPersistentForm*>(watched);
    if (!form || !form->isWindow()) return false;
    const QString name = placementName(form);
    if (name.isEmpty()) return false;
    if (type == QEvent::Show) {
        // Shown the first time: before it reaches the screen, where the user left it.
        if (form->property(kPlaced).toBool()) return false;
        form->setProperty(kPlaced, true);
        restorePlacement(form, nodeOf_(name));
    } else if (form->property(kPlaced).toBool()) {
        if (frames::TConfigItem* node = nodeOf_(name)) {
            savePlacement(form, node);
            saved_();
        }
    }
    return false;
}

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
