#include "frames/filter/FF_Manager.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <QVBoxLayout>

namespace frames {

TManager_FF::TManager_FF(QWidget* parent) : TManager_FF(parent, true) {}

TManager_FF::TManager_FF(QWidget* parent, bool tickOnChosenList) : TSetFilter_EF(parent) {
    resize(460, 240);
    Manager_BF = static_cast<TManager_BF*>(Registry::instance().create("TManager_BF", content()));
    Manager_BF->lbSelect->hide();
    contentLayout()->addWidget(Manager_BF, 1);
    if (tickOnChosenList) {
        Manager_BF->mdSelected->afterPost.connect(
            [this](db::AbstractDataSet& d) { Manager_BFmdSelectedAfterPost(d); });
        Manager_BF->mdSelected->afterDelete.connect(
            [this](db::AbstractDataSet& d) { Manager_BFmdSelectedAfterDelete(d); });
    }
}

void TManager_FF::tick() {
    if (quiet_.open()) ContentChanged();
}

void TManager_FF::Manager_BFmdSelectedAfterPost(db::AbstractDataSet&) {
    tick();
}

void TManager_FF::Manager_BFmdSelectedAfterDelete(db::AbstractDataSet&) {
    tick();
}

int TManager_FF::GetKind() const {
    return Manager_BF->Kind;
}

void TManager_FF::SetKind(int kind) {
    if (kind == Manager_BF->Kind) return;
    quiet_.hold([&] {
        if (filled_) Manager_BF->SaveItems();
        Manager_BF->Kind = kind;
        if (filled_) Manager_BF->FillItems();
    });
}

void TManager_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    Manager_BF->SetReadOnly(value);
    Manager_BF->setEnabled(!value);
}

void TManager_FF::Init() {
    TSetFilter_EF::Init();
    quiet_.hold([this] { Manager_BF->Init(); });
    filled_ = true;
}

void TManager_FF::saveChooser(TConfigItem* node) {
    if (node)
        Manager_BF->SaveLayout(node->ItemByName(Manager_BF->objectName()));
    else
        Manager_BF->SaveItems();
}

void TManager_FF::restoreChooser(TConfigItem* node) {
    if (!node || !node->IsExists(Manager_BF->objectName())) return;
    quiet_.hold([&] { Manager_BF->RestoreLayout(node->ItemByName(Manager_BF->objectName())); });
}

void TManager_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    saveChooser(node);
}

void TManager_FF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    restoreChooser(node);
}

void TManager_FF::FormClose() {
    Manager_BF->FormClose();
    TSetFilter_EF::FormClose();
}

bool TManager_FF::IsEmpty() {
    return TSetFilter_EF::IsEmpty() || Manager_BF->ItemsCount() == 0;
}

void TManager_FF::Clear() {
    quiet_.hold([this] { Manager_BF->sbAllUnSelClick(); });
    TSetFilter_EF::Clear();
}

int TManager_FF::ItemsCount() {
    return Manager_BF->ItemsCount();
}

QString TManager_FF::ItemsItem(int i) {
    return Manager_BF->ItemsItem(i);
}

TCardManager_FF::TCardManager_FF(QWidget* parent) : TManager_FF(parent, false) {
    connect(Manager_BF->dbgAvailabled, &ui::DBGrid::activated, this,
            [this] { guard([this] { Manager_BFdbgAvailabledDblClick(Manager_BF->dbgAvailabled); }); });
    connect(Manager_BF->sbSel, &QToolButton::clicked, this,
            [this] { guard([this] { Manager_BFsbSelClick(Manager_BF->sbSel); }); });
    connect(Manager_BF->sbAllSel, &QToolButton::clicked, this,
            [this] { guard([this] { Manager_BFsbAllSelClick(Manager_BF->sbAllSel); }); });
}

// The chooser's own handlers (connected when it was made) move the rows; these only tick.
void TCardManager_FF::Manager_BFdbgAvailabledDblClick(QObject*) {
    tick();
}

void TCardManager_FF::Manager_BFsbSelClick(QObject*) {
    tick();
}

void TCardManager_FF::Manager_BFsbAllSelClick(QObject*) {
    tick();
}

// The chooser first: its lists are read for the restored settings before cbSet takes its own.
void TCardManager_FF::RestoreLayout(TConfigItem* node) {
    restoreChooser(node);
    TSetFilter_EF::RestoreLayout(node);
}

FRAMES_REGISTER(TManager_FF, "filter");
FRAMES_REGISTER(TCardManager_FF, "filter");

} // namespace frames
