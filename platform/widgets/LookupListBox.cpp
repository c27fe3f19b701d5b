#include "platform/widgets/LookupListBox.h"
#include "platform/db/AbstractDataSet.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/ErrorReporter.h"
#include <QKeyEvent>
#include <QListView>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace frames::ui {

LookupListBox::LookupListBox(QWidget* parent) : QWidget(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    view_ = new QListView(this);
    view_->setObjectName("list");
    view_->setUniformItemSizes(true);
    view_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view_->setSelectionMode(QAbstractItemView::SingleSelection);
    layout->addWidget(view_);
    setFocusProxy(view_);
    model_ = new DataSetModel(this);
    model_->setDecoration([this](int row) -> QVariant {
        QVariant image;
        if (OnGetImage) guarded([&] { image = OnGetImage(this, row); });
        return image;
    });
    view_->setModel(model_);
    view_->installEventFilter(this);
    connect(view_->selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (current.isValid()) userMoved(current.row());
            });
    // A reset of the model (the rows changed) leaves the list on the dataset's row again.
    connect(model_, &QAbstractItemModel::modelReset, this, [this] { syncFromCursor(); });
}

LookupListBox::~LookupListBox() = default;

void LookupListBox::setListSource(db::DataSource* ds) {
    for (const auto& c : conns_) disconnect(c);
    conns_.clear();
    source_ = ds;
    model_->setDataSource(ds);
    if (ds) {
        conns_ << connect(ds, &db::DataSource::recordChanged, this, [this] { syncFromCursor(); });
        conns_ << connect(ds, &db::DataSource::dataSetChanged, this, [this] { syncFromCursor(); });
    }
    syncFromCursor();
}

void LookupListBox::setListField(const QString& f) {
    listField_ = f;
    model_->setFieldNames(f.isEmpty() ? QStringList() : QStringList{f});
}

QVariant LookupListBox::keyValue() const {
    db::AbstractDataSet* ds = model_->dataSet();
    if (!ds || !ds->active() || ds->isEmpty()) return {};
    db::Field* f = ds->findField(keyField_);
    return f ? f->value() : QVariant();
}

int LookupListBox::count() const {
    return model_->rowCount();
}

QString LookupListBox::itemText(int row) const {
    return model_->data(model_->index(row, 0)).toString();
}

void LookupListBox::syncFromCursor() {
    if (syncing_) return;
    QScopedValueRollback guard(syncing_, true);
    db::AbstractDataSet* ds = model_->dataSet();
    const int row = ds && ds->active() ? ds->recNo() : -1;
    const QModelIndex idx = row >= 0 ? model_->index(row, 0) : QModelIndex();
    if (view_->currentIndex() != idx) {
        view_->selectionModel()->setCurrentIndex(idx, QItemSelectionModel::ClearAndSelect);
        if (idx.isValid()) view_->scrollTo(idx);
    }
}

void LookupListBox::userMoved(int row) {
    if (syncing_) return;
    db::AbstractDataSet* ds = model_->dataSet();
    if (!ds || !ds->active() || ds->recNo() == row) return;
    QScopedValueRollback guard(syncing_, true);
    guarded([&] { ds->setRecNo(row); });
}

bool LookupListBox::eventFilter(QObject* o, QEvent* e) {
    if (o == view_ && e->type() == QEvent::KeyPress && OnKeyDown) {
        auto* ke = static_cast<QKeyEvent*>(e);
        int key = ke->key();
        if (!guarded([&] { OnKeyDown(this, key, ke->modifiers()); })) return true;
        if (key == 0) return true;
    }
    return QWidget::eventFilter(o, e);
}

} // namespace frames::ui
