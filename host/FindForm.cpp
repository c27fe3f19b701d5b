#include "host/FindForm.h"
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace workbench {

FindForm::FindForm(QWidget* parent) : TfmPersistentForm(parent) {
    setObjectName("FindForm");
    setWindowTitle(QStringLiteral("Поиск"));
    setModal(false);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* layout = new QVBoxLayout(this);
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Найти:"), this));
    edit_ = new QLineEdit(this);
    edit_->setObjectName("edFind");
    row->addWidget(edit_, 1);
    next_ = new QPushButton(QStringLiteral("Найти далее"), this);
    next_->setObjectName("btFindNext");
    next_->setDefault(true);
    row->addWidget(next_);
    layout->addLayout(row);
    wrap_ = new QCheckBox(QStringLiteral("С начала после конца"), this);
    wrap_->setObjectName("cbWrap");
    wrap_->setChecked(true);
    layout->addWidget(wrap_);
    status_ = new QLabel(this);
    status_->setObjectName("lbStatus");
    layout->addWidget(status_);
    connect(next_, &QPushButton::clicked, this, [this] { findNext(); });
    connect(edit_, &QLineEdit::returnPressed, this, [this] { findNext(); });
    connect(edit_, &QLineEdit::textChanged, this, [this] { status_->clear(); });
}

void FindForm::setDBGrid(QTableView* grid) {
    grid_ = grid;
}

int FindForm::findRow(const QTableView* view, const QString& text, int start, bool wrap) {
    const QAbstractItemModel* m = view ? view->model() : nullptr;
    if (!m || text.isEmpty()) return -1;
    const int rows = m->rowCount();
    const int cols = m->columnCount();
    const int from = start < 0 ? -1 : start;
    for (int i = 1; i <= rows; ++i) {
        const int r = from + i;
        if (r >= rows && !wrap) return -1;
        const int row = r % rows;
        if (view->isRowHidden(row)) continue;
        for (int c = 0; c < cols; ++c) {
            if (view->isColumnHidden(c)) continue;
            if (m->index(row, c).data(Qt::DisplayRole).toString().contains(text, Qt::CaseInsensitive))
                return row;
        }
    }
    return -1;
}

bool FindForm::findNext() {
    const QString text = edit_->text();
    if (!grid_ || text.isEmpty()) return false;
    const int row = findRow(grid_, text, grid_->currentIndex().row(), wrap_->isChecked());
    if (row < 0) {
        status_->setText(QStringLiteral("Текст «%1» не найден").arg(text));
        return false;
    }
    status_->clear();
    grid_->setCurrentIndex(grid_->model()->index(row, qMax(0, grid_->currentIndex().column())));
    grid_->scrollTo(grid_->currentIndex());
    return true;
}

} // namespace workbench
