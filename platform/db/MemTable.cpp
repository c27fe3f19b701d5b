#include "platform/db/MemTable.h"

namespace frames::db {

MemTable::MemTable(QObject* parent) : AbstractDataSet(parent) {}

MemTable::~MemTable() = default;

void MemTable::addFieldDef(const QString& name, FieldType type, int size, int scale) {
    defs_.push_back({name, type, size, scale});
}

void MemTable::clearFieldDefs() {
    defs_.clear();
}

void MemTable::emptyTable() {
    if (inEditMode()) cancel();
    rows_.clear();
    deleted_.clear();
    resetView();
}

void MemTable::appendRecord(const QVariantList& values) {
    append();
    try {
        for (int i = 0; i < values.size() && i < fieldCount(); ++i) field(i)->setValue(values[i]);
        post();
    } catch (...) {
        cancel();
        throw;
    }
}

void MemTable::doOpen() {
    for (const Def& d : defs_) addField(d.name, d.type, d.size, d.scale);
    rows_.clear();
    deleted_.clear();
}

void MemTable::doClose() {
    rows_.clear();
    deleted_.clear();
}

int MemTable::storageCount() const {
    return int(rows_.size());
}

QVariant MemTable::storageValue(int physRow, int column) const {
    if (physRow < 0 || size_t(physRow) >= rows_.size()) return {};
    const auto& r = rows_[size_t(physRow)];
    return size_t(column) < r.size() ? r[size_t(column)] : QVariant();
}

int MemTable::storePost(int physRow, const std::vector<QVariant>&, const std::vector<QVariant>& newValues) {
    if (physRow < 0) {
        rows_.push_back(newValues);
        deleted_.push_back(false);
        return int(rows_.size()) - 1;
    }
    rows_[size_t(physRow)] = newValues;
    return physRow;
}

void MemTable::storeDelete(int physRow) {
    // The slot stays (bookmarks are physical rows); its values are dropped.
    deleted_[size_t(physRow)] = true;
    rows_[size_t(physRow)].clear();
}

} // namespace frames::db
