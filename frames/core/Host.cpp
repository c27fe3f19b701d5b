#include "frames/core/Host.h"
#include "frames/core/Guard.h"
#include "platform/db/Error.h"
#include "platform/widgets/ErrorReporter.h"
#include <stdexcept>

namespace frames {

namespace {
Host* g_host = nullptr;
}

void setHost(Host* h) {
    g_host = h;
    // Controls of the platform layer report their errors through the host's error box.
    ui::errorReporter = [](const QString& text) {
        if (g_host) g_host->ErrorBox(text);
    };
    ui::exceptionHandler = [](std::exception_ptr e) { guard([&] { std::rethrow_exception(e); }); };
}

Host* host() {
    if (!g_host) throw std::logic_error("frames: no host is installed");
    return g_host;
}

QWidget* ShowGridSearch(ui::DBGrid* grid, const QString& character) {
    Host* h = host();
    const bool echo = !character.isEmpty() && h->GetBoolValue(QStringLiteral("FindEcho"));
    return h->ShowFindForm(grid, echo ? character : QString());
}

QString errorText(std::exception_ptr e) {
    return ui::exceptionText(e);
}

void traceError(std::exception_ptr e) {
    if (!g_host) return;
    try {
        std::rethrow_exception(e);
    } catch (const db::Error& err) {
        // The user is told what failed; the statement behind it goes to the trace log.
        if (err.text() != err.userText())
            g_host->TraceText(QStringLiteral("Database error: ") + err.text(), 1);
    } catch (...) {
    }
}

bool guard(const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const EAbort&) {
        return false;
    } catch (...) {
        reportError(std::current_exception());
        return false;
    }
}

void reportError(std::exception_ptr e, const QString& operation) {
    QString text = errorText(e);
    if (!operation.isEmpty()) text = operation + QStringLiteral(": ") + text;
    bool lost = false;
    try {
        std::rethrow_exception(e);
    } catch (const db::Error& err) {
        lost = err.isConnectionLost();
    } catch (...) {
    }
    if (!g_host) {
        qWarning("%s", qPrintable(text));
        return;
    }
    try {
        traceError(e);
        if (lost)
            g_host->ConnectionLost(text);
        else
            g_host->ErrorBox(text);
    } catch (...) {
    }
}

} // namespace frames
