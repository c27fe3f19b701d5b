#pragma once
#include "frames/lookup/LF_Abs.h"
#include <optional>

class QLabel;

namespace frames {

// A pallet of a storage place, in the warehouse zones of one kind (1 receiving, 2 storage,
// 3 picking, 4 shipping). Beside the list, lbStore names the location the chosen pallet stands
// on. Until the host names them (SetPlace, SetZoneKind), the zone kind is storage and the place
// is the first one (the current shop's places first) that has pallets in such a zone.
class TStorePallet_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(int Place READ Place WRITE SetPlace)
    Q_PROPERTY(int ZoneKind READ ZoneKind WRITE SetZoneKind)
public:
    explicit TStorePallet_LF(QWidget* parent = nullptr);

    static constexpr int StorageZone = 2;

    int Place() const;
    // The storage place whose pallets are listed; the list is read again when it is open, and a
    // pallet the new list does not hold is let go.
    void SetPlace(int place);
    int ZoneKind() const { return zoneKind_; }
    void SetZoneKind(int kind);
    int Shop() const;
    void SetShop(int shop);

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    void pFIBDataSet1AfterOpen(db::AbstractDataSet& dataSet) override;
    virtual void lcSelectChange(QObject* sender);
    // Shows the location of the chosen pallet in lbStore (empty without a pallet).
    virtual void UpdateStoreName();
    // The location (NAME_STORE) and its key (ID_STORE) of the chosen pallet; empty when none.
    QString StoreName() const;
    QVariant StoreId() const;

    QLabel* lbStore;

protected:
    void reopenList();

private:
    // The list row of the chosen pallet, -1 when none.
    int chosenRow() const;

    mutable std::optional<int> place_;
    bool placeSet_ = false;
    std::optional<int> shop_;
    int zoneKind_ = StorageZone;
};

} // namespace frames
