#pragma once
#include "frames/core/HostForms.h"

class QSpinBox;

namespace frames {
class TManager_BF;
class TPermissionPattern_LCBF;
} // namespace frames

namespace workbench {

class HostImpl;
class HostedFrames;

// The settings of a report: the managers it covers and the permission patterns it takes, as the
// manager chooser and the check list keep them on the server for the user and a kind ("Вид
// настроек"). Closing the form, or choosing another kind, stores the choice; it is there again
// the next time, also after a restart.
class ReportSettingsForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit ReportSettingsForm(HostImpl* host, QWidget* parent = nullptr);
    ~ReportSettingsForm() override;

    // Creates the two frames for the kind shown and reads their lists. Throws.
    void prepare();
    int kind() const;
    // Stores the current choice and reads the lists of another kind.
    void setKind(int kind);
    // Stores the choice and the layout.
    void done(int result) override;

    frames::TManager_BF* managers() const { return managers_; }
    frames::TPermissionPattern_LCBF* patterns() const { return patterns_; }

private:
    void closeFrames();
    void openFrames();

    HostImpl* host_;
    QSpinBox* sbKind_;
    QWidget* panel_;
    HostedFrames* hosted_ = nullptr;
    frames::TManager_BF* managers_ = nullptr;
    frames::TPermissionPattern_LCBF* patterns_ = nullptr;
    bool closed_ = false;
};

} // namespace workbench
