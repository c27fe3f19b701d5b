#include "frames/multi/LF_MultiOwn.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"

namespace frames {

// ---- TMultiSupplier_LF

namespace {
const QString ClientFormName = QStringLiteral("ClientForm");

int clientFormClassifType(int fallback) {
    if (QObject* form = RvGetForm(ClientFormName)) {
        bool ok = false;
        const int type = form->property("ClassifType").toInt(&ok);
        if (ok) return type;
    }
    return fallback;
}
} // namespace

TMultiSupplier_LF::TMultiSupplier_LF(QWidget* parent) : TMultiAbs_LF(parent) {
    ClassifType = clientFormClassifType(1);
    typeClassif_ = ClassifType;
}

void TMultiSupplier_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TMultiAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    pFIBDataSet1->paramByName("TYPE_CLASSIF")->setValue(typeClassif_);
}

void TMultiSupplier_LF::lcSelectDlgClick(QObject* sender) {
    TMultiAbs_LF::lcSelectDlgClick(sender);
    // The client form hands back the classifier type it showed last; when the user switched to
    // another one, the list follows it.
    ClassifType = RunParams.ResultInt;
    if (ClassifType != typeClassif_) {
        typeClassif_ = ClassifType;
        Get_sSQL();
    }
}

// ---- TMultiClient_LF

void TMultiClient_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TMultiAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    pFIBDataSet1->paramByName("TYPECLASSIF")->setValue(ClassifType);
    pFIBDataSet1->paramByName("FILIALINDEX")->setValue(CUR_FILIALINDEX);
    pFIBDataSet1->paramByName("STATUS")->setValue(15);
    pFIBDataSet1->paramByName("STATE")->setValue(2);
}

// ---- TMultiFilial_LF

TMultiFilial_LF::TMultiFilial_LF(QWidget* parent) : TMultiAbs_LF(parent), shopIndex_(CUR_SHOPINDEX) {
    sSQLTemplate =
        QStringLiteral("select thcl.id_th_classif,thcl.parent_id,thcl.name,thcl.link_to_client   from "
                       "TH_CLASSIF thcl   left join USERS_FILIALS uf on uf.id_user=") +
        QString::number(CUR_USER) + QStringLiteral(" and thcl.id_th_classif=uf.filial_index ") +
        QStringLiteral("  where thcl.parent_id=:shopindex and thcl.parent_id>-1 and "
                       "thcl.id_th_classif+0>-1 and uf.access<>") +
        StrParam(QStringLiteral("N")) + QStringLiteral(" ### order by thcl.name");
}

void TMultiFilial_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TMultiAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    pFIBDataSet1->paramByName("SHOPINDEX")->setValue(shopIndex_);
}

FRAMES_REGISTER(TMultiSupplier_LF, "multi");
FRAMES_REGISTER(TMultiClient_LF, "multi");
FRAMES_REGISTER(TMultiFilial_LF, "multi");

} // namespace frames
