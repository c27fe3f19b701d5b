#pragma once
#include "frames/core/HostBoxes.h"
#include "tests/support/TestHost.h"
#include <deque>

namespace frames::test {

// The test host with an image database and the captioned boxes (recorded like the others; the
// OK/Cancel confirmations as "confirm", answered from confirmations, OK by default).
class ImagesTestHost : public TestHost, public HostBoxes {
public:
    using TestHost::TestHost;
    ~ImagesTestHost() override;

    // Opens the image database of that file for ImageDatabase().
    void openImageDatabase(const QString& path);

    db::Database* ImageDatabase() const override { return imageDatabase.get(); }
    using TestHost::ErrorBox;
    void ErrorBox(const QString& text, const QString& caption) override {
        messages.push_back({"error", text, caption});
    }
    bool ConfirmBox(const QString& text, const QString& caption) override;

    std::unique_ptr<db::Database> imageDatabase;
    std::deque<bool> confirmations;
};

// The first row of a select on that database, in a transaction of its own (empty: no row).
QVariantList firstRow(db::Database* database, const QString& sql);

// A copy of the demo image database (built once per run by the demo fixture) beside a test's
// database, under the name the host looks for (<name>_images.fdb); returns its path.
QString copyDemoImageDatabase(const QString& databasePath);

} // namespace frames::test
