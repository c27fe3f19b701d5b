#pragma once
#include "frames/lookup/LF_ParamLookup.h"

namespace frames {

// The client lookup. Its list is narrowed by the client status (15 all clients, 5 statuses 0 and
// 2, 0..4 that one status), the state and the classifier type, and reads the current branch; the
// dialog button opens the client form and hands it the form's reference number.
class TClients_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;

    void SetStatus(int status) { SetListParam("STATUS", status); }
    void SetState(int state) { SetListParam("STATE", state); }
    void SetTypeClassif(int typeClassif) { SetListParam("TYPECLASSIF", typeClassif); }

    void lcSelectDlgClick(QObject* sender) override;
};

// The consignee and the consignor of a document: client lookups with their own captions.
class TConsignee_LF : public TClients_LF {
    Q_OBJECT
public:
    using TClients_LF::TClients_LF;
};

class TConsignor_LF : public TClients_LF {
    Q_OBJECT
public:
    using TClients_LF::TClients_LF;
};

} // namespace frames
