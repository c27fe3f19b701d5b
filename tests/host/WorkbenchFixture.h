#pragma once
#include "host/HostImpl.h"
#include "tests/support/DbFixture.h"
#include <QTemporaryDir>
#include <memory>

namespace frames::test {

// A database test whose installed host is the workbench's own (HostImpl on the test's copy of
// the database, profile files in a temporary folder) instead of the scripted test host.
template <class Base = DbTest> class WorkbenchHostTest : public Base {
protected:
    void SetUp() override {
        Base::SetUp();
        workbench::HostImpl::Settings s;
        s.profileRoot = root.path();
        s.interactive = false;
        wb = std::make_unique<workbench::HostImpl>(s);
        wb->openDatabase(this->databasePath());
        setHost(wb.get());
    }
    void TearDown() override {
        setHost(this->host.get());
        wb.reset();
        Base::TearDown();
    }
    // The workbench started again on the same profile folder and database, installed as the
    // host until TearDown: what the first one saved must come back here.
    std::unique_ptr<workbench::HostImpl> restarted() {
        workbench::HostImpl::Settings s;
        s.profileRoot = root.path();
        s.interactive = false;
        auto again = std::make_unique<workbench::HostImpl>(s);
        EXPECT_TRUE(again->loadLayout());
        again->openDatabase(this->databasePath());
        setHost(again.get());
        return again;
    }
    QTemporaryDir root;
    std::unique_ptr<workbench::HostImpl> wb;
};

} // namespace frames::test
