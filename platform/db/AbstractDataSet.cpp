#include "platform/db/AbstractDataSet.h"
#include "platform/db/Statement.h"
#include <algorithm>
#include <numeric>

namespace frames::db {

AbstractDataSet::AbstractDataSet(QObject* parent) : QObject(parent) {}

AbstractDataSet::~AbstractDataSet() = default;

QString AbstractDataSet::description() const {
    return objectName().isEmpty() ? QString::fromLatin1(metaObject()->className()) : objectName();
}

// ---- fields

Field* AbstractDataSet::findField(const QString& name) const {
    for (auto& f : fields_)
        if (f->fieldName().compare(name, Qt::CaseInsensitive) == 0) return f.get();
    return nullptr;
}

Field* AbstractDataSet::fieldByName(const QString& name) const {
    if (Field* f = findField(name)) return f;
    throw Error::configuration(
        QStringLiteral("Field \"%1\" not found in dataset %2").arg(name, description()));
}

QStringList AbstractDataSet::fieldNames() const {
    QStringList r;
    for (auto& f : fields_) r << f->fieldName();
    return r;
}

Field* AbstractDataSet::addField(const QString& name, FieldType type, int size, int scale) {
    const int index = int(fields_.size());
    if (size_t(index) < oldFields_.size()) {
        auto& old = oldFields_[size_t(index)];
        if (old && old->fieldName() == name && old->dataType() == type && old->size() == size &&
            old->scale() == scale) {
            fields_.push_back(std::move(old));
            return fields_.back().get();
        }
    }
    fields_.push_back(std::make_unique<Field>(this, index, name, type, size, scale));
    return fields_.back().get();
}

void AbstractDataSet::clearFields() {
    fields_.clear();
    oldFields_.clear();
}

// ---- notifications

void AbstractDataSet::notifyState() {
    if (!disableCount_) emit stateChanged();
}
void AbstractDataSet::notifyRecord() {
    if (!disableCount_) emit recordChanged();
}
void AbstractDataSet::notifyField(int column) {
    if (!disableCount_) emit fieldChanged(column);
}
void AbstractDataSet::notifyDataSet() {
    if (!disableCount_) emit dataSetChanged();
}

void AbstractDataSet::disableControls() {
    ++disableCount_;
}

void AbstractDataSet::enableControls() {
    if (disableCount_ == 0) return;
    if (--disableCount_ == 0) emit dataSetChanged();
}

// ---- life

void AbstractDataSet::open() {
    if (active()) return;
    beforeOpen(*this);
    oldFields_ = std::move(fields_);
    fields_.clear();
    try {
        doOpen();
    } catch (...) {
        // doOpen may have moved some of the old fields over before it failed: put each back in
        // its slot, so that the dataset keeps every field it had (controls hold Field pointers).
        for (size_t i = 0; i < oldFields_.size(); ++i)
            if (!oldFields_[i] && i < fields_.size()) oldFields_[i] = std::move(fields_[i]);
        std::erase(oldFields_, nullptr);
        fields_ = std::move(oldFields_);
        oldFields_.clear();
        try {
            doClose();
        } catch (...) {
        }
        view_.clear();
        throw;
    }
    oldFields_.clear();
    resetView();
    state_ = DataSetState::Browse;
    modified_ = false;
    cur_ = view_.empty() ? -1 : 0;
    bof_ = true;
    eof_ = view_.empty();
    notifyState();
    notifyDataSet();
    notifyRecord();
    afterOpen(*this);
}

void AbstractDataSet::close() {
    if (!active()) return;
    beforeClose(*this);
    buffer_.clear();
    oldBuffer_.clear();
    modified_ = false;
    doClose();
    view_.clear();
    cur_ = -1;
    eof_ = bof_ = true;
    state_ = DataSetState::Inactive;
    notifyState();
    notifyDataSet();
    notifyRecord();
    afterClose(*this);
}

void AbstractDataSet::reopen(bool keepPosition) {
    QVariant key;
    int oldRec = cur_;
    const bool keep = keepPosition && active() && cur_ >= 0 && fieldCount() > 0;
    if (keep) key = storageValue(view_[size_t(cur_)], 0);
    const QString keyName = keep ? field(0)->fieldName() : QString();
    disableControls();
    try {
        close();
        open();
        if (keep && !view_.empty()) {
            if (key.isNull() || !locate(keyName, key)) setRecNo(std::min(oldRec, recordCount() - 1));
        }
    } catch (...) {
        enableControls();
        throw;
    }
    enableControls();
    notifyState();
    notifyRecord();
}

void AbstractDataSet::checkActive() const {
    if (!active()) throw Error::configuration(QStringLiteral("Dataset %1 is not open").arg(description()));
}

void AbstractDataSet::checkBrowseMode() {
    if (!inEditMode()) return;
    if (modified_)
        post();
    else
        cancel();
}

// ---- view

void AbstractDataSet::buildView() {
    view_.resize(size_t(storageCount()));
    std::iota(view_.begin(), view_.end(), 0);
    // Deleted rows keep their storage slot (bookmarks are storage rows) but never come back.
    if (!removed_.empty())
        std::erase_if(view_,
                      [&](int phys) { return size_t(phys) < removed_.size() && removed_[size_t(phys)]; });
    if (filter_) {
        if (const Field* f = findField(filterField_)) {
            const int column = f->index();
            std::erase_if(view_, [&](int phys) { return !filter_(storageValue(phys, column)); });
        }
    }
    if (!sortKeys_.isEmpty()) applySort();
}

void AbstractDataSet::resetView() {
    removed_.clear();
    buildView();
    if (!active()) return;
    const int n = int(view_.size());
    if (cur_ >= n) cur_ = n - 1;
    if (cur_ < 0 && n > 0) cur_ = 0;
    if (n == 0) {
        cur_ = -1;
        eof_ = bof_ = true;
    }
    notifyDataSet();
    notifyRecord();
}

void AbstractDataSet::currentRowChanged() {
    notifyRecord();
}

int AbstractDataSet::viewIndexOf(int physRow) const {
    auto it = std::find(view_.begin(), view_.end(), physRow);
    return it == view_.end() ? -1 : int(it - view_.begin());
}

std::vector<QVariant> AbstractDataSet::rowValues(int physRow) const {
    std::vector<QVariant> r(fields_.size());
    for (size_t i = 0; i < r.size(); ++i) r[i] = storageValue(physRow, int(i));
    return r;
}

int AbstractDataSet::recordCount() const {
    return active() ? int(view_.size()) : 0;
}

QVariant AbstractDataSet::valueAt(int row, int column) const {
    if (!active() || row < 0 || row >= int(view_.size()) || column < 0 || column >= fieldCount()) return {};
    return storageValue(view_[size_t(row)], column);
}

QVariant AbstractDataSet::currentValue(int column) const {
    if (column < 0 || column >= fieldCount()) return {};
    if (inEditMode()) return size_t(column) < buffer_.size() ? buffer_[size_t(column)] : QVariant();
    return valueAt(cur_, column);
}

QString AbstractDataSet::currentNumericText(int column) const {
    if (column < 0 || column >= fieldCount()) return {};
    const Field* f = field(column);
    if (!inEditMode() && cur_ >= 0 && cur_ < int(view_.size())) {
        const QString exact = storageNumericText(view_[size_t(cur_)], column);
        if (!exact.isNull()) return exact;
    }
    const QVariant v = currentValue(column);
    if (!v.isValid() || v.isNull()) return {};
    return QString::number(v.toDouble(), 'f', f->scale());
}

void AbstractDataSet::setCurrentValue(int column, const QVariant& v) {
    if (!inEditMode())
        throw Error::configuration(
            QStringLiteral("Dataset %1 is not in edit or insert mode").arg(description()));
    if (column < 0 || column >= fieldCount())
        throw Error::configuration(
            QStringLiteral("No field %1 in dataset %2").arg(column).arg(description()));
    const Field* f = field(column);
    buffer_[size_t(column)] = convertForField(f->dataType(), f->scale(), v, f->fieldName());
    modified_ = true;
    notifyField(column);
}

// ---- cursor

void AbstractDataSet::scroll(int row, bool eof, bool bof) {
    checkActive();
    checkBrowseMode();
    beforeScroll(*this);
    cur_ = row;
    eof_ = eof;
    bof_ = bof;
    notifyRecord();
    afterScroll(*this);
}

void AbstractDataSet::first() {
    const int n = recordCount();
    scroll(n ? 0 : -1, n == 0, true);
}

void AbstractDataSet::last() {
    const int n = recordCount();
    scroll(n - 1, true, n == 0);
}

void AbstractDataSet::next() {
    const int n = recordCount();
    if (cur_ < n - 1)
        scroll(cur_ + 1, false, false);
    else
        scroll(cur_, true, n == 0 ? true : bof_);
}

void AbstractDataSet::prior() {
    const int n = recordCount();
    if (cur_ > 0)
        scroll(cur_ - 1, false, false);
    else
        scroll(cur_, n == 0 ? true : eof_, true);
}

void AbstractDataSet::moveBy(int n) {
    if (n == 0) return;
    const int count = recordCount();
    const int target = cur_ + n;
    if (count == 0)
        scroll(-1, true, true);
    else if (target >= count)
        scroll(count - 1, true, false);
    else if (target < 0)
        scroll(0, false, true);
    else
        scroll(target, false, false);
}

void AbstractDataSet::setRecNo(int row) {
    const int n = recordCount();
    if (n == 0) {
        scroll(-1, true, true);
        return;
    }
    scroll(std::clamp(row, 0, n - 1), false, false);
}

// ---- comparing values (locate, sort)

namespace {

bool isNullValue(const QVariant& v) {
    return !v.isValid() || v.isNull();
}

bool isNumber(const QVariant& v) {
    switch (v.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Double:
    case QMetaType::Float:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Bool:
        return true;
    default:
        return false;
    }
}

bool isIntegral(const QVariant& v) {
    return isNumber(v) && v.typeId() != QMetaType::Double && v.typeId() != QMetaType::Float;
}

// Nulls first; text without regard to case.
int compareValues(const QVariant& a, const QVariant& b) {
    const bool an = isNullValue(a), bn = isNullValue(b);
    if (an || bn) return an == bn ? 0 : (an ? -1 : 1);
    if (isNumber(a) && isNumber(b)) {
        if (isIntegral(a) && isIntegral(b)) {
            const qlonglong x = a.toLongLong(), y = b.toLongLong();
            return x < y ? -1 : (x > y ? 1 : 0);
        }
        const double x = a.toDouble(), y = b.toDouble();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    const int ta = a.typeId(), tb = b.typeId();
    if (ta == QMetaType::QDate && tb == QMetaType::QDate) {
        const QDate x = a.toDate(), y = b.toDate();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (ta == QMetaType::QTime && tb == QMetaType::QTime) {
        const QTime x = a.toTime(), y = b.toTime();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if ((ta == QMetaType::QDateTime || ta == QMetaType::QDate) &&
        (tb == QMetaType::QDateTime || tb == QMetaType::QDate)) {
        const QDateTime x = a.toDateTime(), y = b.toDateTime();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (ta == QMetaType::QByteArray && tb == QMetaType::QByteArray) {
        const int c = a.toByteArray().compare(b.toByteArray());
        return c < 0 ? -1 : (c > 0 ? 1 : 0);
    }
    const int c = a.toString().compare(b.toString(), Qt::CaseInsensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

bool matches(const Field* f, const QVariant& stored, const QVariant& wanted, LocateOptions o) {
    const bool sn = isNullValue(stored), wn = isNullValue(wanted);
    if (sn || wn) return sn && wn;
    if (f->isText() || stored.typeId() == QMetaType::QString) {
        const QString s = stored.toString(), w = wanted.toString();
        const auto cs = o.caseInsensitive ? Qt::CaseInsensitive : Qt::CaseSensitive;
        return o.partialKey ? s.startsWith(w, cs) : s.compare(w, cs) == 0;
    }
    QVariant w = wanted;
    try {
        w = convertForField(f->dataType(), f->scale(), wanted, f->fieldName());
    } catch (const Error&) {
        return false;
    }
    if (isNullValue(w)) return false;
    if (f->dataType() == FieldType::Numeric || f->dataType() == FieldType::Float ||
        f->dataType() == FieldType::Double) {
        const double x = stored.toDouble(), y = w.toDouble();
        return std::abs(x - y) <= 1e-9 * std::max(1.0, std::abs(x));
    }
    return compareValues(stored, w) == 0;
}

} // namespace

bool AbstractDataSet::locate(const QString& keyFields, const QVariantList& values, LocateOptions o) {
    checkActive();
    const QStringList names = keyFields.split(';', Qt::SkipEmptyParts);
    std::vector<Field*> keys;
    for (const QString& n : names) keys.push_back(fieldByName(n.trimmed()));
    if (keys.empty()) return false;
    checkBrowseMode();
    const int n = recordCount();
    for (int row = 0; row < n; ++row) {
        bool ok = true;
        for (size_t k = 0; k < keys.size() && ok; ++k) {
            const QVariant want = k < size_t(values.size()) ? values[qsizetype(k)] : QVariant();
            ok = matches(keys[k], storageValue(view_[size_t(row)], keys[k]->index()), want, o);
        }
        if (ok) {
            scroll(row, false, false);
            return true;
        }
    }
    return false;
}

AbstractDataSet::Bookmark AbstractDataSet::bookmark() const {
    if (!active() || cur_ < 0 || cur_ >= int(view_.size())) return -1;
    return view_[size_t(cur_)];
}

bool AbstractDataSet::bookmarkValid(Bookmark b) const {
    return active() && b >= 0 && viewIndexOf(int(b)) >= 0;
}

void AbstractDataSet::gotoBookmark(Bookmark b) {
    checkActive();
    const int row = b >= 0 ? viewIndexOf(int(b)) : -1;
    if (row < 0)
        throw Error::configuration(QStringLiteral("Bookmark not found in dataset %1").arg(description()));
    scroll(row, false, false);
}

// ---- states

void AbstractDataSet::edit() {
    checkActive();
    if (inEditMode()) return;
    if (recordCount() == 0) {
        append();
        return;
    }
    beforeEdit(*this);
    buffer_ = rowValues(view_[size_t(cur_)]);
    oldBuffer_ = buffer_;
    state_ = DataSetState::Edit;
    modified_ = false;
    notifyState();
    afterEdit(*this);
}

void AbstractDataSet::beginInsert(bool atEnd) {
    checkActive();
    checkBrowseMode();
    beforeInsert(*this);
    insertRow_ = atEnd ? recordCount() : std::max(cur_, 0);
    buffer_.assign(fields_.size(), QVariant());
    oldBuffer_ = buffer_;
    state_ = DataSetState::Insert;
    modified_ = false;
    try {
        onNewRecord(*this);
    } catch (...) {
        state_ = DataSetState::Browse;
        buffer_.clear();
        oldBuffer_.clear();
        modified_ = false;
        throw;
    }
    modified_ = false;
    notifyState();
    notifyDataSet();
    notifyRecord();
    afterInsert(*this);
}

void AbstractDataSet::insert() {
    beginInsert(false);
}
void AbstractDataSet::append() {
    beginInsert(true);
}

void AbstractDataSet::post() {
    checkActive();
    if (!inEditMode()) return;
    beforePost(*this);
    const bool inserting = state_ == DataSetState::Insert;
    const int phys = inserting ? -1 : view_[size_t(cur_)];
    const int stored = storePost(phys, oldBuffer_, buffer_);
    if (inserting) {
        const int at = std::clamp(insertRow_, 0, int(view_.size()));
        view_.insert(view_.begin() + at, stored);
        cur_ = at;
    }
    state_ = DataSetState::Browse;
    buffer_.clear();
    oldBuffer_.clear();
    modified_ = false;
    eof_ = bof_ = false;
    notifyState();
    if (inserting) notifyDataSet();
    notifyRecord();
    afterPost(*this);
}

void AbstractDataSet::rebaseEdit(const std::vector<QVariant>& current) {
    if (state_ != DataSetState::Edit) return;
    auto same = [](const QVariant& a, const QVariant& b) {
        return a.isNull() == b.isNull() && (a.isNull() || a == b);
    };
    bool shown = false;
    for (size_t i = 0; i < current.size() && i < oldBuffer_.size() && i < buffer_.size(); ++i) {
        // A column the user did not change takes the other user's value; his own changes stay.
        if (same(buffer_[i], oldBuffer_[i]) && !same(buffer_[i], current[i])) {
            buffer_[i] = current[i];
            shown = true;
        }
        oldBuffer_[i] = current[i];
    }
    if (shown) notifyRecord();
}

void AbstractDataSet::cancel() {
    if (!inEditMode()) return;
    beforeCancel(*this);
    const bool inserting = state_ == DataSetState::Insert;
    state_ = DataSetState::Browse;
    buffer_.clear();
    oldBuffer_.clear();
    modified_ = false;
    notifyState();
    if (inserting) notifyDataSet();
    notifyRecord();
    afterCancel(*this);
}

void AbstractDataSet::remove() {
    checkActive();
    if (state_ == DataSetState::Insert) {
        cancel();
        return;
    }
    if (recordCount() == 0 || cur_ < 0)
        throw Error::configuration(QStringLiteral("Cannot delete from empty dataset %1").arg(description()));
    beforeDelete(*this);
    const int phys = view_[size_t(cur_)];
    storeDelete(phys);
    if (removed_.size() <= size_t(phys)) removed_.resize(size_t(phys) + 1, false);
    removed_[size_t(phys)] = true;
    if (state_ == DataSetState::Edit) {
        state_ = DataSetState::Browse;
        buffer_.clear();
        oldBuffer_.clear();
        modified_ = false;
        notifyState();
    }
    view_.erase(view_.begin() + cur_);
    const int n = int(view_.size());
    if (cur_ >= n) cur_ = n - 1;
    eof_ = n == 0;
    bof_ = n == 0;
    notifyDataSet();
    notifyRecord();
    afterDelete(*this);
}

// ---- order

void AbstractDataSet::applySort() {
    std::sort(view_.begin(), view_.end());
    std::vector<std::pair<int, bool>> keys; // column, ascending
    for (const SortKey& k : sortKeys_)
        if (Field* f = findField(k.field)) keys.push_back({f->index(), k.ascending});
    if (keys.empty()) return;
    const size_t n = view_.size();
    std::vector<std::vector<QVariant>> vals(n);
    for (size_t i = 0; i < n; ++i) {
        vals[i].reserve(keys.size());
        for (auto& k : keys) vals[i].push_back(storageValue(view_[i], k.first));
    }
    std::vector<size_t> idx(n);
    std::iota(idx.begin(), idx.end(), 0);
    std::stable_sort(idx.begin(), idx.end(), [&](size_t a, size_t b) {
        for (size_t k = 0; k < keys.size(); ++k) {
            const int c = compareValues(vals[a][k], vals[b][k]);
            if (c != 0) return keys[k].second ? c < 0 : c > 0;
        }
        return false;
    });
    std::vector<int> sorted(n);
    for (size_t i = 0; i < n; ++i) sorted[i] = view_[idx[i]];
    view_ = std::move(sorted);
}

void AbstractDataSet::setKeyFilter(const QString& keyField, KeyFilter accept) {
    if (active()) {
        if (accept) fieldByName(keyField);
        checkBrowseMode();
    }
    filterField_ = keyField;
    filter_ = std::move(accept);
    if (!active()) return;
    const Bookmark bm = bookmark();
    const int old = cur_;
    buildView();
    const int n = int(view_.size());
    const int at = bm >= 0 ? viewIndexOf(int(bm)) : -1;
    cur_ = at >= 0 ? at : (n == 0 ? -1 : std::clamp(old, 0, n - 1));
    eof_ = bof_ = n == 0;
    notifyDataSet();
    notifyRecord();
}

void AbstractDataSet::setSortKeys(const QList<SortKey>& keys) {
    if (active()) {
        for (const SortKey& k : keys) fieldByName(k.field);
        checkBrowseMode();
    }
    sortKeys_ = keys;
    if (!active()) return;
    const Bookmark bm = bookmark();
    applySort();
    if (bm >= 0) cur_ = viewIndexOf(int(bm));
    notifyDataSet();
    notifyRecord();
}

} // namespace frames::db
