#include "platform/widgets/ErrorReporter.h"
#include "platform/db/Error.h"
#include <QtGlobal>

namespace frames::ui {

std::function<void(const QString&)> errorReporter = [](const QString& text) {
    qWarning("%s", qPrintable(text));
};
std::function<void(std::exception_ptr)> exceptionHandler;

void reportError(const QString& text) {
    try {
        if (errorReporter)
            errorReporter(text);
        else
            qWarning("%s", qPrintable(text));
    } catch (...) {
        qWarning("error reporter failed: %s", qPrintable(text));
    }
}

QString exceptionText(std::exception_ptr e) {
    try {
        std::rethrow_exception(e);
    } catch (const db::Error& err) {
        return err.userText();
    } catch (const std::exception& err) {
        return QString::fromUtf8(err.what());
    } catch (...) {
        return QStringLiteral("Неизвестная ошибка");
    }
}

void handleException(std::exception_ptr e) {
    if (exceptionHandler) {
        try {
            exceptionHandler(e);
            return;
        } catch (...) {
            // The handler itself failed: fall back to the plain report of the original error.
        }
    }
    reportError(exceptionText(e));
}

} // namespace frames::ui
