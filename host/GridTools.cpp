#include "host/GridTools.h"
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace workbench {

GridColumnsDialog::GridColumnsDialog(QTableView* grid, QWidget* parent)
    : TfmPersistentForm(parent), grid_(grid) {
    setObjectName(QStringLiteral("GridColumnsDialog"));
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

ChooserButtons layOutChooser(QDialog* form, QLineEdit* search, QLabel* info, QWidget* list) {
    auto* buttons = new QDialogButtonBox(form);
    ChooserButtons b{buttons->addButton(QStringLiteral("Выбрать"), QDialogButtonBox::AcceptRole),
                     buttons->addButton(QStringLiteral("Отмена"), QDialogButtonBox::RejectRole)};
    b.ok->setObjectName(QStringLiteral("btOk"));
    b.ok->setDefault(true);
    b.cancel->setObjectName(QStringLiteral("btCancel"));
    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Найти:"), form));
    top->addWidget(search, 1);
    top->addWidget(info);
    auto* layout = new QVBoxLayout(form);
    layout->addLayout(top);
    layout->addWidget(list, 1);
    layout->addWidget(buttons);
    return b;
}

} // namespace workbench
