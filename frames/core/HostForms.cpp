#include "frames/core/HostForms.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Host.h"
#include <stdexcept>

namespace frames {

namespace {

const QString kGeometry = QStringLiteral("Geometry");

// The node the host keeps a form's place under; nullptr without a host or a name.
TConfigItem* placementNode(const QString& name) {
    if (name.isEmpty()) return nullptr;
    try {
        return host()->FormLayout(name);
    } catch (const std::logic_error&) {
        return nullptr; // no host installed
    }
}

} // namespace

bool RestoreWindowPlacement(QWidget* window, const TConfigItem* node) {
    const TConfigItem* item = node ? node->Find(kGeometry) : nullptr;
    if (!item) return false;
    const QByteArray geometry = QByteArray::fromBase64(item->GetAsString().toLatin1());
    return !geometry.isEmpty() && window->restoreGeometry(geometry);
}

void SaveWindowPlacement(const QWidget* window, TConfigItem* node) {
    node->ItemByName(kGeometry)->SetAsString(QString::fromLatin1(window->saveGeometry().toBase64()));
}

TfmPersistentForm::TfmPersistentForm(QWidget* parent) : QDialog(parent) {}

TfmPersistentForm::~TfmPersistentForm() {
    // A form that goes with its owner while still open keeps its place as closing would.
    if (isVisible()) {
        try {
            SavePlacement();
        } catch (...) {
        }
    }
}

void TfmPersistentForm::setVisible(bool visible) {
    // Before the dialog places itself over its owner: a kept place counts as moved by the user.
    if (visible && !placed_ && isWindow() && !isVisible()) {
        placed_ = true;
        placement_ = PlacementName();
        RestoreWindowPlacement(this, placementNode(placement_));
    }
    QDialog::setVisible(visible);
}

void TfmPersistentForm::done(int r) {
    SavePlacement();
    QDialog::done(r);
}

void TfmPersistentForm::SavePlacement() {
    if (!placed_ || !isWindow() || !isVisible()) return;
    TConfigItem* node = placementNode(placement_);
    if (!node) return;
    SaveWindowPlacement(this, node);
    host()->FormLayoutChanged();
}

void TfmPersistentForm::NotifyChanged() {
    ++changes_;
    emit changed();
}

db::DataSource* editDialogBinding(const QObject* frame) {
    auto* dlg = qobject_cast<TfmAbsEditDlg*>(ownerOf(frame));
    if (!dlg) return nullptr;
    auto* list = qobject_cast<TfmLayer1_FIB*>(ownerOf(dlg));
    return list ? list->CurrentSource() : nullptr;
}

} // namespace frames
