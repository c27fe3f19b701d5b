#pragma once
#include <QIcon>
#include <QObject>
#include <QStringList>
#include <QStyle>
#include <functional>

class QAbstractButton;
class QAction;
class QWidget;

namespace frames {
class TConfigItem;
}

namespace workbench {

// A window's place, size and state under a layout node (its "Geometry" item). Restoring keeps
// the window as it is when the node holds no such item or one that cannot be read, and returns
// false.
bool restorePlacement(QWidget* window, const frames::TConfigItem* node);
void savePlacement(const QWidget* window, frames::TConfigItem* node);

// Keeps the places and sizes of the workbench's forms, for every host form (TfmPersistentForm)
// shown as a window of its own: the first time one is shown it takes the geometry kept under its
// name, and it keeps it there whenever it is hidden (closed). The name is the form's
// "placementName" property when it has one (forms of one class that differ by owner), else its
// objectName. nodeOf gives the node of a name (nullptr: nothing is kept); saved is told after a
// form wrote under its node. Watches the whole application while it lives.
class FormPlacement : public QObject {
public:
    using NodeOf = std::function<frames::TConfigItem*(const QString& name)>;
    FormPlacement(NodeOf nodeOf, std::function<void()> saved);
    ~FormPlacement() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    NodeOf nodeOf_;
    std::function<void()> saved_;
};

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
