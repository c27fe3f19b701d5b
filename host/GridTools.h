#pragma once
#include <QDialog>

class QListWidget;
class QTableView;

namespace workbench {

// The grid customisation: the grid's columns in their visual order with a visibility box each.
class GridColumnsDialog : public QDialog {
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

} // namespace workbench
