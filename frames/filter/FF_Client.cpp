#include "frames/filter/FF_Client.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/filter/FF_Classif.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include <QBoxLayout>

namespace frames {

namespace {
const char* const kDialogNode = "ClientSelect_DF";
}

TClient_FF::TClient_FF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(560, 380);
    ClientSelect_DF = qobject_cast<TClientSelect_DF*>(
        Registry::instance().create(QStringLiteral("TClientSelect_DF"), content()));
    ClientSelect_DF->setObjectName("ClientSelect_DF");
    contentLayout()->addWidget(ClientSelect_DF, 1);
    // The dialog connected its own handlers when it was built: these run after them.
    connect(ClientSelect_DF->DBGridUnSelected, &ui::DBGrid::activated, this,
            [this] { guard([&] { ClientSelect_DFDBGridDblClick(); }); });
    connect(ClientSelect_DF->DBGridSelected, &ui::DBGrid::activated, this,
            [this] { guard([&] { ClientSelect_DFDBGridSelectedDblClick(); }); });
    connect(ClientSelect_DF->sbtnSelectClients, &QToolButton::clicked, this, [this] { ContentChanged(); });
    connect(ClientSelect_DF->sbtnUnSelectClients, &QToolButton::clicked, this, [this] { ContentChanged(); });
    connect(ClientSelect_DF, &TAbs_DF::NodeChoiceChanged, this,
            [this](int node) { guard([&] { ClientSelect_DFDBTreeViewSelecting(node); }); });
}

TClient_FF::~TClient_FF() = default;

void TClient_FF::Init() {
    TSetFilter_EF::Init();
    ClientSelect_DF->Init();
}

void TClient_FF::DataRefresh() {
    TSetFilter_EF::DataRefresh();
    ClientSelect_DF->DataRefresh();
}

void TClient_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    ClientSelect_DF->SetReadOnly(value);
}

void TClient_FF::FormClose() {
    ClientSelect_DF->FormClose();
    TSetFilter_EF::FormClose();
}

void TClient_FF::SetKind(int kind) {
    if (ClientSelect_DF->GetKind() == kind) return;
    ClientSelect_DF->SetKind(kind);
    if (ClientSelect_DF->trDataSet->active()) ClientSelect_DF->ReopenDataSet();
}

int TClient_FF::GetKind() const {
    return ClientSelect_DF->GetKind();
}

void TClient_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    const int user = CUR_USER;
    const int kind = GetKind();
    if (node) ClientSelect_DF->SaveLayout(node->ItemByName(kDialogNode));
    filter_summary::Replace({"delete from sel_client_filter where id_user=", user, " and kind=", kind},
                            {"insert into sel_client_filter (id_user,kind,itemcount)", "  select id_user,",
                             kind, ",", "    (select count(*) from sel_client sc ",
                             "        where sc.id_user=", user, " and sc.kind=", kind,
                             " and sc.client_type=0)", "    from users", "    where id_user=", user},
                            QStringLiteral("Не удалось сохранить фильтр по контрагентам"));
}

void TClient_FF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (node && node->IsExists(kDialogNode)) ClientSelect_DF->RestoreLayout(node->ItemByName(kDialogNode));
    const filter_summary::FirstRow exists = filter_summary::ReadFirst(
        {"select 1 from sel_client_filter where id_user=", CUR_USER, " and kind=", GetKind(), " rows 1"},
        QStringLiteral("Не удалось прочитать фильтр по контрагентам"));
    if (exists.ok) cbSet->setChecked(exists.found);
}

void TClient_FF::ClientSelect_DFDBGridDblClick() {
    ContentChanged();
}

void TClient_FF::ClientSelect_DFDBGridSelectedDblClick() {
    ContentChanged();
}

void TClient_FF::ClientSelect_DFDBTreeViewSelecting(int) {
    ContentChanged();
}

FRAMES_REGISTER(TClient_FF, "filter");

} // namespace frames
