#include "frames/medit/ME_Edit.h"
#include "frames/core/Registry.h"

namespace frames {

namespace {
void cutToLength(TEditComboBox_EF* ed, int length) {
    const QString text = ed->ComboBox->currentText();
    if (text.size() > length) ed->ComboBox->setEditText(text.left(length));
}
} // namespace

TEdit_ME::TEdit_ME(QWidget* parent) : TTwoValue_ME(parent) {
    makeEditors("TEditComboBox_EF", QStringLiteral("ef"), efNewValue, efOldValue);
    efNewValue->OnComboBoxChange = [this](QObject* s) { efNewValueComboBoxChange(s); };
    efOldValue->OnComboBoxChange = [this](QObject* s) { efOldValueComboBoxChange(s); };
}

void TEdit_ME::efNewValueComboBoxChange(QObject*) {
    NewValueChanged();
    cutToLength(efNewValue, MaxLength);
}

void TEdit_ME::efOldValueComboBoxChange(QObject*) {
    OldValueChanged();
    cutToLength(efOldValue, MaxLength);
}

void TEdit_ME::pfUpdateBeforeExecute(QObject* sender) {
    TTwoValue_ME::pfUpdateBeforeExecute(sender);
    // The texts just sent join the drop-down histories.
    efNewValue->ComboBox->addToHistory(efNewValue->Text());
    efOldValue->ComboBox->addToHistory(efOldValue->Text());
}

void TEdit_ME::RestoreLayout(TConfigItem* node) {
    TTwoValue_ME::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists("efNewValue")) efNewValue->RestoreLayout(node->ItemByName("efNewValue"));
    if (node->IsExists("efOldValue")) efOldValue->RestoreLayout(node->ItemByName("efOldValue"));
    // No history entry is preselected: the frame starts empty.
    efNewValue->ComboBox->setCurrentIndex(-1);
    efOldValue->ComboBox->setCurrentIndex(-1);
}

void TEdit_ME::SaveLayout(TConfigItem* node) {
    TTwoValue_ME::SaveLayout(node);
    if (!node) return;
    efNewValue->SaveLayout(node->ItemByName("efNewValue"));
    efOldValue->SaveLayout(node->ItemByName("efOldValue"));
}

FRAMES_REGISTER(TEdit_ME, "medit");

} // namespace frames
