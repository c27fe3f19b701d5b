#pragma once
#include "host/HostImpl.h"
#include "tests/support/ServerFixture.h"
#include <QTemporaryDir>
#include <memory>
#include <vector>

namespace frames::test {

// Workbench sessions on the test run's server, one per open, each as the user of that login with
// its profile under one temporary folder; the newest is the installed host. They live until
// clear() or the end of the test.
template <typename Host = workbench::HostImpl> class HostSessions {
public:
    Host* open(const QString& login, const QString& connectString) {
        workbench::HostImpl::Settings s;
        s.profileRoot = profiles_.path();
        s.userName = login;
        s.password = fbserver::password(login);
        s.interactive = false;
        hosts_.push_back(std::make_unique<Host>(s));
        Host* h = hosts_.back().get();
        h->openDatabase(connectString);
        frames::setHost(h);
        return h;
    }
    QString profileRoot() const { return profiles_.path(); }
    void clear() { hosts_.clear(); }

private:
    QTemporaryDir profiles_;
    std::vector<std::unique_ptr<Host>> hosts_;
};

} // namespace frames::test
