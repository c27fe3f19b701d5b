#pragma once
#include "frames/lookup/LF_Clients.h"

class QCheckBox;

namespace frames {

// The legal entity a document is issued in the name of: a client of the system status. Its
// default comes from the host's explicit client, the user's saved choice for the current branch,
// the storage place, the given branch and the current branch, in that order. With the switch
// "FromNameLocal" on, chbSave keeps the user's choice as his default for the current branch.
class TFromName_LF : public TClients_LF {
    Q_OBJECT
    Q_PROPERTY(int DefClient MEMBER DefClient)
    Q_PROPERTY(int Filial MEMBER Filial)
    Q_PROPERTY(int Place MEMBER Place)
public:
    explicit TFromName_LF(QWidget* parent = nullptr);

    void AfterConstruction() override;
    void FormShow() override;
    void FormClose() override;
    void Save() override;
    void lcSelectDlgClick(QObject* sender) override;
    // Works out the default legal entity and makes it the combo's key.
    void GetDefValue();

    QCheckBox* chbSave;
    int DefClient = -1; // given by the host; wins over every other source
    int Filial = -1;    // a branch whose linked client is the default
    int Place = -1;     // a storage place whose configured legal entity is the default

private:
    static bool localDefaults();
    // The key as an integer, -1 when there is none.
    int currentKey() const;
    // Sets the key when the list holds it; otherwise the combo is left empty.
    void setListKey(int key);
};

} // namespace frames
