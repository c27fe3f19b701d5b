#pragma once
#include "ui_PaymentDialog.h"
#include <frames/core/HostForms.h>
#include <vector>

namespace example {

class PaymentList;

// The edit dialog of one payment document, drawn in the designer (PaymentDialog.ui): its frames
// are owned by this dialog (TfmAbsEditDlg), whose owner is the list form, so in Init each binds its
// editor to the list's current document. The dialog drives them in the frames' order: Init and
// RestoreLayout when it opens, Save when the user confirms, SaveLayout and FormClose when it
// closes.
class PaymentDialog : public frames::TfmAbsEditDlg {
    Q_OBJECT
public:
    explicit PaymentDialog(PaymentList* list);
    ~PaymentDialog() override;

    // Puts the document into edit state and runs Init and RestoreLayout of every frame. Throws.
    void prepare();
    // Writes the frames' values into the document, posts and commits it. A failure is told
    // through the host, rolled back and leaves the dialog open: false.
    bool save();

    void accept() override;
    void reject() override;

    Ui::PaymentDialog ui;
    const std::vector<frames::TAbsEditFrame*>& frames() const { return frames_; }

private:
    void closeFrames();

    PaymentList* list_;
    std::vector<frames::TAbsEditFrame*> frames_;
    bool closed_ = false;
};

} // namespace example
