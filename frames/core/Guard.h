#pragma once
#include <QString>
#include <exception>
#include <functional>

namespace frames {

// The silent abort: ends an action that the frame's state forbids, with no message.
struct EAbort {};
[[noreturn]] inline void Abort() {
    throw EAbort{};
}

// Text of any exception for the user (db::Error text, std::exception what()).
QString errorText(std::exception_ptr e);
// Writes a database error's whole text (with its statement) to the host's trace log.
void traceError(std::exception_ptr e);
// Tells the user about an error through the host: "operation: what failed" in the error box, a
// lost connection through the host's ConnectionLost; the statement goes to the trace log.
void reportError(std::exception_ptr e, const QString& operation = {});

// Runs an event handler: swallows the silent abort and sends any other error to the host's
// error box, so that no exception leaves a handler. Returns false when the handler failed.
bool guard(const std::function<void()>& handler);

// Wraps a handler for assignment to a control's event.
template <typename... Args> std::function<void(Args...)> guarded(std::function<void(Args...)> f) {
    return [f = std::move(f)](Args... args) { guard([&] { f(args...); }); };
}

} // namespace frames
