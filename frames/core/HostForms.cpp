#include "frames/core/HostForms.h"
#include "frames/core/AbsEditFrame.h"

namespace frames {

TfmPersistentForm::TfmPersistentForm(QWidget* parent) : QDialog(parent) {}

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
