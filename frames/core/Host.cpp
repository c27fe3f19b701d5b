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

QString errorText(std::exception_ptr e) { return ui::exceptionText(e); }

bool guard(const std::function<void()>& handler) {
    try {
        handler();
        return true;
    } catch (const EAbort&) {
        return false;
    } catch (...) {
        const QString text = errorText(std::current_exception());
        if (g_host) {
            try {
                g_host->ErrorBox(text);
            } catch (...) {
            }
        } else {
            qWarning("%s", qPrintable(text));
        }
        return false;
    }
}

} // namespace frames
