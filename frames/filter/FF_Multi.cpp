#include "frames/filter/FF_Multi.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <QVBoxLayout>
#include <memory>
#include <stdexcept>
#include <utility>

namespace frames {

TMultiFilter_FF::TMultiFilter_FF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(280, 130);
}

TMultiFilter_FF::~TMultiFilter_FF() = default;

void TMultiFilter_FF::SetLookupClass(const QString& className) {
    std::unique_ptr<TAbsEditFrame> made(Registry::instance().create(className, content()));
    auto* lookup = qobject_cast<TMultiAbs_LF*>(made.get());
    if (!lookup)
        throw std::runtime_error(
            QStringLiteral("%1 is not a multi-select lookup").arg(className).toStdString());
    made.release();
    delete lookup_;
    lookup_ = lookup;
    lookupClass_ = className;
    // The group box carries the caption; the lookup's own label would repeat it.
    lookup_->lbSelect->hide();
    contentLayout()->addWidget(lookup_, 1);
    lookup_->lcSelect->OnChange = [this](QObject* s) { guard([&] { lcSelectChange(s); }); };
    lookup_->mdList->afterPost.connect([this](db::AbstractDataSet& d) { mdListAfterPost(d); });
    lookup_->mdList->afterDelete.connect([this](db::AbstractDataSet& d) { mdListAfterDelete(d); });
}

void TMultiFilter_FF::tick() {
    if (quiet_.open()) ContentChanged();
}

void TMultiFilter_FF::lcSelectChange(QObject*) {
    tick();
}

void TMultiFilter_FF::mdListAfterPost(db::AbstractDataSet&) {
    tick();
}

void TMultiFilter_FF::mdListAfterDelete(db::AbstractDataSet&) {
    tick();
}

void TMultiFilter_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    if (lookup_) lookup_->SetReadOnly(value);
}

void TMultiFilter_FF::Init() {
    TSetFilter_EF::Init();
    if (!lookup_) return;
    quiet_.hold([this] {
        lookup_->Init();
        initialized_ = true;
        const QStringList waiting = std::exchange(pending_, {});
        for (const QString& key : waiting) addKey(key);
    });
}

void TMultiFilter_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (node && lookup_) lookup_->SaveLayout(node->ItemByName(lookup_->objectName()));
}

void TMultiFilter_FF::RestoreLayout(TConfigItem* node) {
    quiet_.hold([&] {
        TSetFilter_EF::RestoreLayout(node);
        if (node && lookup_ && node->IsExists(lookup_->objectName()))
            lookup_->RestoreLayout(node->ItemByName(lookup_->objectName()));
    });
}

void TMultiFilter_FF::FormShow() {
    TSetFilter_EF::FormShow();
    if (lookup_) lookup_->FormShow();
}

void TMultiFilter_FF::FormClose() {
    if (lookup_) lookup_->FormClose();
    TSetFilter_EF::FormClose();
}

bool TMultiFilter_FF::IsEmpty() {
    return TSetFilter_EF::IsEmpty() || KnownItemsList().isEmpty();
}

void TMultiFilter_FF::Clear() {
    if (lookup_) {
        quiet_.hold([this] {
            lookup_->mdList->disableControls();
            while (!lookup_->mdList->isEmpty()) {
                lookup_->mdList->first();
                lookup_->mdList->remove();
            }
            lookup_->mdList->enableControls();
            lookup_->lcSelect->clear();
            if (lookup_->pFIBDataSet1->active()) lookup_->Get_sSQL();
        });
    }
    TSetFilter_EF::Clear();
}

int TMultiFilter_FF::ItemsCount() {
    return lookup_ ? lookup_->ItemsCount() : 0;
}

QString TMultiFilter_FF::ItemsItem(int i) {
    return lookup_ ? lookup_->ItemsItem(i) : QString();
}

QString TMultiFilter_FF::ItemsList() {
    return lookup_ ? lookup_->ItemsList() : QString();
}

QString TMultiFilter_FF::KnownItemsList() {
    return TSetFilter_EF::KnownItemsList();
}

void TMultiFilter_FF::AddText(const QString& text) {
    if (!lookup_) return;
    if (!initialized_ || !lookup_->pFIBDataSet1->active()) {
        pending_ << text;
        return;
    }
    quiet_.hold([&] { addKey(text); });
}

void TMultiFilter_FF::addKey(const QString& text) {
    bool ok = false;
    const qint64 key = text.trimmed().toLongLong(&ok);
    if (!ok) return;
    db::DataSet* list = lookup_->pFIBDataSet1;
    db::MemTable* chosen = lookup_->mdList;
    const int id = chosen->fieldByName("ID")->index();
    for (int row = 0; row < chosen->recordCount(); ++row)
        if (chosen->valueAt(row, id).toLongLong() == key) return;
    // The rows the list hides are the chosen ones: the key is looked for in the whole query.
    list->setKeyFilter(QString(), {});
    const int keyColumn = list->fieldByName(lookup_->lcSelect->lookupField())->index();
    const QString display = lookup_->lcSelect->lookupDisplay().section(';', 0, 0).trimmed();
    const int nameColumn = list->fieldByName(display)->index();
    for (int row = 0, n = list->recordCount(); row < n; ++row) {
        const QVariant v = list->valueAt(row, keyColumn);
        if (v.isNull() || v.toLongLong() != key) continue;
        chosen->appendRecord({v, list->valueAt(row, nameColumn)});
        break;
    }
    lookup_->Get_sSQL();
}

} // namespace frames
