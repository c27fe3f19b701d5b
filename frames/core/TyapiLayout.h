#pragma once
#include "frames/core/ConfigItem.h"

class QComboBox;
class QListWidget;

namespace frames {

// Layout helpers for list and combo boxes. A control is kept under node's child named after the
// control (its objectName), as "Count", "Item0".."Item<n-1>" and "ItemIndex"; an editable combo
// also keeps its "Text". A history combo's items are its history.
//
// Restoring reads only what exists. A combo that is not editable takes only the saved ItemIndex,
// when it is within its own items: its list comes from the form, not from the layout.
void SaveLayout(TConfigItem* node, QListWidget* list);
void RestoreLayout(TConfigItem* node, QListWidget* list);
void SaveLayout(TConfigItem* node, QComboBox* combo);
void RestoreLayout(TConfigItem* node, QComboBox* combo);

// Sends a press and release of key to the focused control (nothing when no control has the focus).
void PressKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

} // namespace frames
