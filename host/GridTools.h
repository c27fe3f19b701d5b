#pragma once
#include "frames/core/HostForms.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QTableView;

namespace workbench {

// The grid customisation: the grid's columns in their visual order with a visibility box each.
class GridColumnsDialog : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit GridColumnsDialog(QTableView* grid, QWidget* parent = nullptr);
    // Shows and hides the grid's columns as ticked (at least one column stays visible).
    void apply();
    QListWidget* list() const { return list_; }

private:
    QTableView* grid_;
    QListWidget* list_;
};

// The layout of the workbench's choosing forms: "Найти:" with the search box and an info label
// on top, the list below, and the buttons "Выбрать" (default) and "Отмена" (btOk, btCancel).
struct ChooserButtons {
    QPushButton* ok;
    QPushButton* cancel;
};
ChooserButtons layOutChooser(QDialog* form, QLineEdit* search, QLabel* info, QWidget* list);

} // namespace workbench
