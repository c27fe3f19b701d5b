#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// One branch of a classifier. The branch is chosen in the host's classifier tree form, which the
// combo's drop-down arrow opens instead of a list; the combo's dataset only ever holds the chosen
// branch. Bound, the frame edits the record's branch key; free-standing it keeps its own.
class TClassif_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(int ClassifType MEMBER ClassifType)
    Q_PROPERTY(bool DontAcceptRoot MEMBER DontAcceptRoot)
public:
    explicit TClassif_LF(QWidget* parent = nullptr);

    void Init() override;
    void lcSelectDlgClick(QObject* sender) override;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    // Runs the tree form, then aborts silently so that the combo's own list never opens.
    void lcSelectDropDown(QObject* sender);

    // Shows the branch of that key on a free-standing frame (a key that no branch has shows
    // nothing), as if it had been chosen in the tree form.
    void SetClassif(int key);

    bool Chosen = false;         // a tree form has run since Init
    int ClassifType = 0;         // the classifier whose tree is offered; the log-in type after Init
    bool DontAcceptRoot = false; // the tree form refuses the root; false after Init

    static constexpr const char* TreeFormName = "QucikClassifForm";

private:
    void showFreeStanding(int key);
};

} // namespace frames
