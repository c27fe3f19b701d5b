#pragma once
#include "frames/lookup/LF_ParamLookup.h"

namespace frames {

// The state of a client. The list leaves out the states meant for other kinds of client
// (forclient); Delete sets the system state -1 ("no state") rather than an empty value, since a
// client always has a state.
class TClientState_LF : public TParamLookup_LF {
    Q_OBJECT
public:
    using TParamLookup_LF::TParamLookup_LF;

    void SetTypeCl(int typeCl) { SetListParam("TYPECL", typeCl); }
    void lcSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) override;

    static constexpr int NoState = -1;
};

} // namespace frames
