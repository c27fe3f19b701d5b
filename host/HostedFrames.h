#pragma once
#include <QObject>
#include <QString>
#include <functional>
#include <vector>

class QWidget;

namespace frames {
class TAbsEditFrame;
class TConfigItem;
} // namespace frames

namespace workbench {

// The frames of one host form, driven in the one order every host form keeps: Init, then
// RestoreLayout with the frame's layout node; FormShow whenever the form is shown (at once for a
// frame opened on a form already on the screen); SaveLayout, then FormClose, when it closes.
class HostedFrames : public QObject {
public:
    // nodeOf gives the layout node of a frame by its name (objectName).
    using NodeOf = std::function<frames::TConfigItem*(const QString& name)>;
    HostedFrames(QWidget* form, NodeOf nodeOf);

    // Init and RestoreLayout. The frame joins the set before Init, so that it is closed with the
    // others even when Init fails; what Init or RestoreLayout throws reaches the caller.
    void open(frames::TAbsEditFrame* f);
    const std::vector<frames::TAbsEditFrame*>& frames() const { return frames_; }
    // FormShow of every frame, each in its own guard.
    void show();
    // SaveLayout and FormClose of every frame, each in its own guard; the set is empty after.
    void close();
    // Drops a frame from the set without closing it (one whose Init failed).
    void remove(frames::TAbsEditFrame* f);
    // The first frame marked required (SetRequired) that holds no value, or nullptr.
    frames::TAbsEditFrame* firstEmptyRequired() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* form_;
    NodeOf nodeOf_;
    std::vector<frames::TAbsEditFrame*> frames_;
};

// The text that asks for a required value: "Заполните поле «Caption»." (the frame's name when it
// has no caption).
QString requiredValueText(const frames::TAbsEditFrame* f);

} // namespace workbench
