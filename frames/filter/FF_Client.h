#pragma once
#include "frames/filter/FF_Classif.h"

namespace frames {

class TClientSelect_DF;

// The client filter box: the client selection dialog ClientSelect_DF inside, whose choice of
// counterparties lives in SEL_CLIENT for the current user and the box's kind. On closing the box
// writes its summary row into sel_client_filter (the count of chosen legal entities); on opening
// it is switched on exactly when that row exists. Moving clients between the dialog's grids and
// choosing or dropping a whole tree node switch the box on.
class TClient_FF : public TDialogFilter_FF {
    Q_OBJECT
    Q_PROPERTY(int Kind READ GetKind WRITE SetKind)
public:
    explicit TClient_FF(QWidget* parent = nullptr);
    ~TClient_FF() override;

    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;

    // The kind lives in the dialog; a dialog already open reads its grids again.
    void SetKind(int kind);
    int GetKind() const;

    // ---- handlers, each after the dialog's own
    void ClientSelect_DFDBGridDblClick();
    void ClientSelect_DFDBGridSelectedDblClick();
    void ClientSelect_DFDBTreeViewSelecting(int node);

    TClientSelect_DF* ClientSelect_DF;
};

} // namespace frames
