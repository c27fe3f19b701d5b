#include "frames/lookup/LF_StoreType.h"
#include "frames/core/Registry.h"

namespace frames {

void TStoreType_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    struct KindText {
        const char* caption;
        const char* form;
    };
    static const KindText kinds[] = {{"Тип стеллажа", "RackStoreType"},
                                     {"Тип яруса", "ShelfStoreType"},
                                     {"Тип ячейки", "CellStoreType"},
                                     {"Тип паллеты", "PalletStoreType"}};
    const int kind = Kind();
    if (kind >= 1 && kind <= 4) {
        SetCaption(QString::fromUtf8(kinds[kind - 1].caption));
        FormName = QString::fromUtf8(kinds[kind - 1].form);
    }
    TParamLookup_LF::pFIBDataSet1BeforeOpen(dataSet);
}

FRAMES_REGISTER(TStoreType_LF, "lookup");

} // namespace frames
