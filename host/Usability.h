#pragma once
#include <QIcon>
#include <QStringList>
#include <QStyle>

class QAbstractButton;
class QAction;
class QWidget;

namespace workbench {

// What a person would stumble on in a window, found without looking at it: each push or tool
// button shown (on the window or any of its children) that has neither text nor icon, named by
// its objectName (its class when unnamed), its tooltip and the window's name.
QStringList blankButtons(const QWidget* window);

// The icon of an action: the desktop theme's icon of that name where the theme has one, else the
// style's standard picture.
QIcon actionIcon(const char* themeName, QStyle::StandardPixmap fallback);
// Gives a button or an action that icon; its text stays.
void setActionIcon(QAbstractButton* button, const char* themeName, QStyle::StandardPixmap fallback);
void setActionIcon(QAction* action, const char* themeName, QStyle::StandardPixmap fallback);

} // namespace workbench
