#pragma once
#include "frames/lookup/LF_Abs.h"
#include <optional>

namespace frames {

// A piece of shop equipment of one type, shown as "place::section::equipment". Shortcuts (the same
// equipment shown in a second section) are left out unless SetShowShortcuts(true). Until the host
// names a type, the type is the first one (of the kind SetKind names, if any) that has
// equipment. The dialog button chooses another type in the types form; the list is read again
// each time it drops down, so that equipment added meanwhile appears.
class TShopEquipment_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(int ShopEquipmentType READ ShopEquipmentType WRITE SetShopEquipmentType)
    Q_PROPERTY(int Kind READ Kind WRITE SetKind)
    Q_PROPERTY(bool ShowShortcuts READ ShowShortcuts WRITE SetShowShortcuts)
public:
    explicit TShopEquipment_LF(QWidget* parent = nullptr);

    static constexpr const char* TypeForm = "ShopEquipmentTypeForm";

    int ShopEquipmentType() const;
    // The type listed; the list is read again when it is open and equipment of another type is
    // let go.
    void SetShopEquipmentType(int type);
    int Kind() const { return kind_; }
    // The kind of equipment (-1: any): without an explicit type, the type follows the kind.
    void SetKind(int kind);
    bool ShowShortcuts() const { return showShortcuts_; }
    void SetShowShortcuts(bool show);

    bool HasDialog() const override { return true; }
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    void lcSelectDlgClick(QObject* sender) override;
    virtual void lcSelectDropDown(QObject* sender, bool& show);

private:
    void reopenList();

    mutable std::optional<int> type_;
    bool typeSet_ = false;
    int kind_ = -1;
    bool showShortcuts_ = false;
};

} // namespace frames
