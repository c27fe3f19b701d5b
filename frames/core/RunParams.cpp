#include "frames/core/RunParams.h"

namespace frames {

int CUR_USER = -1;
int CUR_FILIALINDEX = 1;
int CUR_SHOPINDEX = 1;
int GLOBAL_PAR_SET_FOR = 0;
int GLOBAL_PAR_CLASSIF_TYPE = 0;

const TVarParams::Param* TVarParams::Find(const QString& name) const {
    for (auto& p : items_)
        if (p.Name.compare(name, Qt::CaseInsensitive) == 0) return &p;
    return nullptr;
}

TVarParams::Param& TVarParams::ByName(const QString& name) {
    if (auto* p = Find(name)) return const_cast<Param&>(*p);
    items_.push_back({name, {}});
    return items_.back();
}

} // namespace frames
