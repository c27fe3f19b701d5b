#include "host/GridTools.h"
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace workbench {

GridColumnsDialog::GridColumnsDialog(QTableView* grid, QWidget* parent) : QDialog(parent), grid_(grid) {
    setWindowTitle(QStringLiteral("Настройка колонок"));
    list_ = new QListWidget(this);
    list_->setObjectName(QStringLiteral("lbColumns"));
    const QHeaderView* header = grid->horizontalHeader();
    const QAbstractItemModel* m = grid->model();
    for (int v = 0; m && v < header->count(); ++v) {
        const int logical = header->logicalIndex(v);
        auto* item = new QListWidgetItem(m->headerData(logical, Qt::Horizontal).toString(), list_);
        item->setData(Qt::UserRole, logical);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(grid->isColumnHidden(logical) ? Qt::Unchecked : Qt::Checked);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(list_, 1);
    layout->addWidget(buttons);
}

void GridColumnsDialog::apply() {
    int shown = 0;
    for (int i = 0; i < list_->count(); ++i)
        if (list_->item(i)->checkState() == Qt::Checked) ++shown;
    for (int i = 0; i < list_->count(); ++i) {
        const QListWidgetItem* item = list_->item(i);
        // A grid without any column could not be customised again: the first one stays.
        const bool visible = item->checkState() == Qt::Checked || (shown == 0 && i == 0);
        grid_->setColumnHidden(item->data(Qt::UserRole).toInt(), !visible);
    }
}

} // namespace workbench
