#include "frames/filter/FF_Client.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include <QBoxLayout>

namespace frames {

TClient_FF::TClient_FF(QWidget* parent) : TDialogFilter_FF(parent) {
    resize(560, 380);
    ClientSelect_DF = qobject_cast<TClientSelect_DF*>(
        createDialog(QStringLiteral("TClientSelect_DF"), QStringLiteral("ClientSelect_DF")));
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

void TClient_FF::SetKind(int kind) {
    if (ClientSelect_DF->GetKind() == kind) return;
    ClientSelect_DF->SetKind(kind);
    if (ClientSelect_DF->trDataSet->active()) ClientSelect_DF->ReopenDataSet();
}

int TClient_FF::GetKind() const {
    return ClientSelect_DF->GetKind();
}

void TClient_FF::SaveLayout(TConfigItem* node) {
    TDialogFilter_FF::SaveLayout(node);
    const int user = CUR_USER;
    const int kind = GetKind();
    filter_summary::Replace({"delete from sel_client_filter where id_user=", user, " and kind=", kind},
                            {"insert into sel_client_filter (id_user,kind,itemcount)", "  select id_user,",
                             kind, ",", "    (select count(*) from sel_client sc ",
                             "        where sc.id_user=", user, " and sc.kind=", kind,
                             " and sc.client_type=0)", "    from users", "    where id_user=", user},
                            QStringLiteral("Не удалось сохранить фильтр по контрагентам"));
}

void TClient_FF::RestoreLayout(TConfigItem* node) {
    TDialogFilter_FF::RestoreLayout(node);
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
