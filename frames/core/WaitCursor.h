#pragma once
#include <QCursor>
#include <QGuiApplication>

namespace frames {

// The hourglass over long work (opening a form that reads its data, running a report's query, a
// mass update, reading a list again): shown while the object lives and taken off however the
// work ends, an exception included. Nested ones stack. Without a GUI application it does nothing.
class WaitCursor {
public:
    WaitCursor() : on_(qGuiApp != nullptr) {
        if (on_) QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    }
    ~WaitCursor() {
        if (on_) QGuiApplication::restoreOverrideCursor();
    }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

    // Whether the hourglass shows now.
    static bool shown() {
        const QCursor* c = qGuiApp ? QGuiApplication::overrideCursor() : nullptr;
        return c && c->shape() == Qt::WaitCursor;
    }

    // The arrow back for the time of a message box or a modal form shown during long work, so
    // that the user sees he is asked; nothing when no hourglass shows.
    class Pause {
    public:
        Pause() : on_(shown()) {
            if (on_) QGuiApplication::setOverrideCursor(Qt::ArrowCursor);
        }
        ~Pause() {
            if (on_) QGuiApplication::restoreOverrideCursor();
        }
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        bool on_;
    };

private:
    bool on_;
};

} // namespace frames
