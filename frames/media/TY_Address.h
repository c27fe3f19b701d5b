#pragma once
#include "frames/core/AbsEditFrame.h"

class QAction;
class QGridLayout;

namespace frames {
class TAbs_LF;
class TDBEdit_Frame;
namespace db {
class DataSet;
class DataSource;
class Transaction;
} // namespace db

// One structured postal address, the row of address_kladr of one owning object (ObjectKind,
// ObjectIndex): lookups and edits all bound to the frame's own data set. On the host's edit dialog
// over a list form whose record is being edited, the address is edited in the list's transaction
// and is in edit state from the start; a missing row is created on the first change with the
// object's key. Elsewhere changes are written in the frame's own transaction by Save.
class TfrAddress : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int ObjectKind MEMBER ObjectKind)
    Q_PROPERTY(int ObjectIndex MEMBER ObjectIndex)
public:
    explicit TfrAddress(QWidget* parent = nullptr);
    ~TfrAddress() override;

    void Init() override;
    void Save() override;
    void SetReadOnly(bool value) override;

    virtual void pfAddressBeforeOpen();
    virtual void pfAddressNewRecord();
    // Empties every edited field of the address.
    virtual void ClearAllActionExecute();

    int ObjectKind = -1;
    int ObjectIndex = -1;
    db::DataSet* pfAddress;
    db::DataSource* dsAddress;
    QAction* ClearAllAction;
    TAbs_LF* Country_LF1;

protected:
    // Makes the data set, its source and the country lookup; descendants add their editors.
    TfrAddress(QWidget* parent, const char* dataSetName, const char* sourceName);
    TAbs_LF* addLookup(const QString& className, const char* name, const QString& field);
    TAbs_LF* addTypeLookup(const char* name, const QString& caption, const QString& field, int level);
    TDBEdit_Frame* addEdit(const char* name, const QString& caption, const QString& field, int maxLength);
    // The inner frames in the order they were added.
    QList<TAbsEditFrame*> inner_;

private:
    void place(TAbsEditFrame* f);
    QGridLayout* grid_;
    db::Transaction* own_; // where a free-standing address is written
};

// The address reduced to its country.
class TfrAddress_City : public TfrAddress {
    Q_OBJECT
public:
    explicit TfrAddress_City(QWidget* parent = nullptr);
    db::DataSet* pfAddress_City;
    db::DataSource* dsAddress_City;
};

} // namespace frames
