#include "frames/lists/BF_Manager.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <QBoxLayout>

namespace frames {

TManager_BF::TManager_BF(QWidget* parent) : TAbs_BF(parent) {
    TableName = QStringLiteral("FILTER_MANAGER");
    sbShowUvolen = new QToolButton(buttonColumn());
    sbShowUvolen->setObjectName("sbShowUvolen");
    sbShowUvolen->setText(QStringLiteral("У"));
    sbShowUvolen->setToolTip(QStringLiteral("Показывать уволенных пользователей"));
    sbShowUvolen->setCheckable(true);
    sbShowUvolen->setChecked(true);
    static_cast<QBoxLayout*>(buttonColumn()->layout())->insertWidget(0, sbShowUvolen);
    connect(sbShowUvolen, &QToolButton::clicked, this, [this] { guard([&] { sbShowUvolenClick(); }); });
}

void TManager_BF::RestoreLayout(TConfigItem* node) {
    TAbs_BF::RestoreLayout(node);
    const bool down = node && node->IsExists("sbShowUvolen.Down")
                          ? node->ItemByName("sbShowUvolen.Down")->GetAsBoolean()
                          : true;
    sbShowUvolen->setChecked(down);
    if (int(down) != loadedShowUvolen_) {
        SaveItems();
        FillItems();
    }
}

void TManager_BF::SaveLayout(TConfigItem* node) {
    TAbs_BF::SaveLayout(node);
    if (node) node->ItemByName("sbShowUvolen.Down")->SetAsBoolean(sbShowUvolen->isChecked());
}

void TManager_BF::FillItems() {
    TAbs_BF::FillItems();
    loadedShowUvolen_ = sbShowUvolen->isChecked() ? 1 : 0;
}

void TManager_BF::pfAvailabledBeforeOpen(db::AbstractDataSet& ds) {
    TAbs_BF::pfAvailabledBeforeOpen(ds);
    if (db::Param* p = pfAvailabled->findParam("SHOW_UVOLEN")) p->setValue(sbShowUvolen->isChecked() ? 1 : 0);
}

void TManager_BF::sbShowUvolenClick() {
    SaveItems();
    FillItems();
}

void TManager_BF::sbUnselClick() {
    TAbs_BF::sbUnselClick();
    if (!sbShowUvolen->isChecked()) {
        SaveItems();
        FillItems();
    }
}

void TManager_BF::sbAllUnSelClick() {
    TAbs_BF::sbAllUnSelClick();
    if (!sbShowUvolen->isChecked()) {
        SaveItems();
        FillItems();
    }
}

FRAMES_REGISTER(TManager_BF, "lists");

} // namespace frames
