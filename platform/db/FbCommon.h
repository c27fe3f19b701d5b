#pragma once
// Private helpers shared by the Firebird-backed classes: the master interface, a status object
// that disposes itself, and the conversion of a Firebird failure into db::Error.
#include "platform/db/Error.h"
#include <firebird/Interface.h>

namespace frames::db::fb {

Firebird::IMaster* master();
Firebird::IUtil* util();

// A ThrowStatusWrapper that owns its status object.
class Status : public Firebird::ThrowStatusWrapper {
public:
    Status() : Firebird::ThrowStatusWrapper(master()->getStatus()) {}
    ~Status() { dispose(); }
    Status(const Status&) = delete;
    Status& operator=(const Status&) = delete;
};

// Builds a db::Error from a Firebird status; `context` (for example the statement text) is
// appended to the server's message when not empty.
Error toError(const Firebird::IStatus* status, const QString& context = {});
[[noreturn]] void rethrow(const Firebird::FbException& e, const QString& context = {});

// Runs f(status) and turns a Firebird failure into db::Error.
template <typename F> auto call(F&& f, const QString& context = {}) {
    Status st;
    try {
        return f(&st);
    } catch (const Firebird::FbException& e) {
        rethrow(e, context);
    }
}

} // namespace frames::db::fb
