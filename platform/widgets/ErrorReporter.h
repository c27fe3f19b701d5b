#pragma once
#include <QString>
#include <exception>
#include <functional>

namespace frames::ui {

// Controls never let an exception leave a Qt event handler. What they catch goes to
// exceptionHandler when one is installed (the frames layer installs one that swallows its silent
// abort), otherwise its text goes to errorReporter (default: qWarning; the frames layer installs
// the host's error box).
extern std::function<void(const QString&)> errorReporter;
extern std::function<void(std::exception_ptr)> exceptionHandler;

// Sends an error text to errorReporter (or qWarning when none is set).
void reportError(const QString& text);
// Text of a caught exception: db::Error's status text, what() of others.
QString exceptionText(std::exception_ptr e);
// Routes a caught exception through exceptionHandler or errorReporter; never throws.
void handleException(std::exception_ptr e);

// Runs f and routes any exception it throws; returns false when one was caught.
template <typename F> bool guarded(F&& f) noexcept {
    try {
        f();
        return true;
    } catch (...) {
        handleException(std::current_exception());
        return false;
    }
}

} // namespace frames::ui
