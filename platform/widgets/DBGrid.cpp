#include "platform/widgets/DBGrid.h"
#include "platform/db/Field.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/ErrorReporter.h"
#include <QFontMetrics>
#include <QHeaderView>
#include <QJsonArray>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QStyle>
#include <QStyledItemDelegate>
#include <algorithm>

namespace frames::ui {

namespace {

// Header that shows an arrow on every sorted column and, with several sort keys, the key's
// position next to it.
class SortHeader : public QHeaderView {
public:
    SortHeader(DBGrid* grid) : QHeaderView(Qt::Horizontal, grid), grid_(grid) {}

protected:
    void paintSection(QPainter* p, const QRect& rect, int logical) const override {
        p->save();
        QHeaderView::paintSection(p, rect, logical);
        p->restore();
        const QList<db::SortKey> keys = grid_->sortKeys();
        db::Field* f = grid_->dataModel()->field(logical);
        if (!f || keys.isEmpty()) return;
        for (int i = 0; i < keys.size(); ++i) {
            if (keys[i].field.compare(f->fieldName(), Qt::CaseInsensitive) != 0) continue;
            QStyleOptionHeader opt;
            initStyleOption(&opt);
            const int side = qMin(rect.height() - 6, 10);
            opt.rect = QRect(rect.right() - side - 4, rect.center().y() - side / 2, side, side);
            opt.sortIndicator = keys[i].ascending ? QStyleOptionHeader::SortUp : QStyleOptionHeader::SortDown;
            style()->drawPrimitive(QStyle::PE_IndicatorHeaderArrow, &opt, p, this);
            if (keys.size() > 1) {
                p->save();
                QFont font = p->font();
                font.setPointSizeF(font.pointSizeF() * 0.75);
                p->setFont(font);
                p->drawText(QRect(opt.rect.left() - 12, rect.top(), 11, rect.height()),
                            Qt::AlignRight | Qt::AlignVCenter, QString::number(i + 1));
                p->restore();
            }
            break;
        }
    }

private:
    DBGrid* grid_;
};

// Marked rows get a tinted background (the current row keeps the selection colour).
class MarkDelegate : public QStyledItemDelegate {
public:
    MarkDelegate(DBGrid* grid) : QStyledItemDelegate(grid), grid_(grid) {}

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        if (grid_->isMarked(index.row()) && !(option->state & QStyle::State_Selected)) {
            QColor c = option->palette.color(QPalette::Highlight);
            c.setAlpha(90);
            option->backgroundBrush = c;
            option->font.setBold(true);
        }
    }

private:
    DBGrid* grid_;
};

// The dataset may answer bookmark questions for any row directly; otherwise the grid moves the
// cursor there and back.
template <typename DS> qint64 directBookmarkAt(const DS& ds, int row, bool& done) {
    if constexpr (requires { ds.bookmarkAt(row); }) {
        done = true;
        return ds.bookmarkAt(row);
    } else {
        done = false;
        return -1;
    }
}

template <typename DS> int directRowOfBookmark(const DS& ds, qint64 b, bool& done) {
    if constexpr (requires { ds.rowOfBookmark(b); }) {
        done = true;
        return ds.rowOfBookmark(b);
    } else {
        done = false;
        return -1;
    }
}

} // namespace

DBGrid::DBGrid(QWidget* parent) : QTableView(parent) {
    setHorizontalHeader(new SortHeader(this));
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setSectionsClickable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSortIndicatorShown(false);
    horizontalHeader()->viewport()->installEventFilter(this);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setWordWrap(false);
    setItemDelegate(new MarkDelegate(this));

    model_ = new DataSetModel(this);
    setModel(model_);
    connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, [this] { beforeReset(); });
    connect(model_, &QAbstractItemModel::modelReset, this, [this] { afterReset(); });
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int s) { headerClicked(s); });
}

DBGrid::~DBGrid() {
    for (auto& c : conns_) disconnect(c);
}

db::AbstractDataSet* DBGrid::dataSet() const {
    return source_ ? source_->dataSet() : nullptr;
}

void DBGrid::setDataSource(db::DataSource* ds) {
    if (source_ == ds) return;
    for (auto& c : conns_) disconnect(c);
    conns_.clear();
    marks_.clear();
    source_ = ds;
    model_->setDataSource(ds); // connects the model first: rows are current when we sync
    if (source_) {
        conns_ << connect(source_, &db::DataSource::recordChanged, this, [this] { syncFromDataSet(); });
        conns_ << connect(source_, &db::DataSource::stateChanged, this, [this] { syncFromDataSet(); });
    }
    syncFromDataSet();
}

// ---- columns

QStringList DBGrid::columns() const {
    return model_->fieldNames();
}

void DBGrid::setColumns(const QStringList& fieldNames) {
    haveHeld_ = false;
    held_.clear();
    QScopedValueRollback guard(newColumns_, true); // no layout carried over: the new order rules
    model_->setFieldNames(fieldNames);
}

void DBGrid::widenColumnsToContents(int maxWidth, int sampleRows) {
    const QFontMetrics fm(font());
    const QFontMetrics headerFm(horizontalHeader()->font());
    const int rows = std::min(model_->rowCount(), sampleRows);
    const int padding = 2 * style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 12;
    for (int c = 0; c < model_->columnCount(); ++c) {
        if (isColumnHidden(c)) continue;
        int need = headerFm.horizontalAdvance(model_->headerData(c, Qt::Horizontal).toString()) + 24;
        for (int r = 0; r < rows; ++r)
            need = std::max(need, fm.horizontalAdvance(model_->index(r, c).data().toString()) + padding);
        need = std::min(need, maxWidth);
        if (need > columnWidth(c)) setColumnWidth(c, need);
    }
}

void DBGrid::setCaptions(const QVariantMap& fieldToCaption) {
    for (auto it = fieldToCaption.begin(); it != fieldToCaption.end(); ++it)
        setColumnCaption(it.key(), it.value().toString());
}

void DBGrid::setColumnCaption(const QString& fieldName, const QString& caption) {
    captions_.insert(fieldName, caption);
    model_->setCaption(fieldName, caption);
}

QStringList DBGrid::checkFields() const {
    return model_->checkFields();
}

void DBGrid::setCheckFields(const QStringList& fieldNames) {
    model_->setCheckFields(fieldNames);
}

int DBGrid::columnOfField(const QString& fieldName) const {
    return model_->columnOf(fieldName);
}

void DBGrid::setMultiSelect(bool b) {
    multiSelect_ = b;
    if (!b) clearMarks();
}

std::vector<DBGrid::ColumnState> DBGrid::columnStates() const {
    std::vector<ColumnState> out;
    const QHeaderView* h = horizontalHeader();
    for (int v = 0; v < h->count(); ++v) {
        const int logical = h->logicalIndex(v);
        db::Field* f = model_->field(logical);
        if (!f) continue;
        out.push_back({f->fieldName(), h->sectionSize(logical), !h->isSectionHidden(logical)});
    }
    return out;
}

void DBGrid::applyColumnStates(const std::vector<ColumnState>& states) {
    QHeaderView* h = horizontalHeader();
    int pos = 0;
    for (const ColumnState& s : states) {
        const int logical = model_->columnOf(s.field);
        if (logical < 0) continue;
        const int from = h->visualIndex(logical);
        if (from != pos) h->moveSection(from, pos);
        ++pos;
        if (s.width > 0) h->resizeSection(logical, qBound(8, s.width, 4000));
        h->setSectionHidden(logical, !s.visible);
    }
}

void DBGrid::beforeReset() {
    if (newColumns_) return;
    if (model_->columnCount() > 0) {
        held_ = columnStates();
        haveHeld_ = true;
    }
}

void DBGrid::afterReset() {
    if (haveHeld_ && model_->columnCount() > 0) applyColumnStates(held_);
    // The first rows widen the columns that are too narrow for them, unless the user's own
    // layout sets the widths.
    if (!haveHeld_ && !widened_ && model_->rowCount() > 0) {
        widened_ = true;
        widenColumnsToContents();
    }
    remapMarks();
    syncFromDataSet();
    horizontalHeader()->viewport()->update();
}

// ---- current row

void DBGrid::syncFromDataSet() {
    if (peeking_ || syncing_) return;
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || model_->columnCount() == 0) return;
    const int row = ds->recNo();
    if (row < 0 || row >= model_->rowCount()) return;
    if (currentIndex().isValid() && currentIndex().row() == row) return;
    QScopedValueRollback guard(syncing_, true);
    int col = currentIndex().isValid() ? currentIndex().column() : horizontalHeader()->logicalIndex(0);
    if (col < 0) col = 0;
    const QModelIndex idx = model_->index(row, col);
    selectionModel()->setCurrentIndex(idx, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    scrollTo(idx);
}

void DBGrid::moveDataSetTo(int row) {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || ds->recNo() == row) return;
    if (!guarded([&] { ds->setRecNo(row); })) {
        // The dataset refused to move (a post failed): put the grid back on its row.
        QMetaObject::invokeMethod(
            this, [this] { syncFromDataSet(); }, Qt::QueuedConnection);
    }
}

void DBGrid::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (syncing_ || peeking_ || !current.isValid()) return;
    if (!previous.isValid() || previous.row() != current.row()) moveDataSetTo(current.row());
}

// ---- bookmarks

template <typename F> void DBGrid::withCursorMoved(F&& f) const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || ds->inEditMode()) return;
    const int back = ds->recNo();
    QScopedValueRollback guard(peeking_, true);
    model_->setQuiet(true);
    guarded([&] { f(ds); });
    guarded([&] {
        if (back >= 0 && ds->recNo() != back) ds->setRecNo(back);
    });
    model_->setQuiet(false);
}

DBGrid::Bookmark DBGrid::bookmarkOfRow(int row) const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || row < 0 || row >= ds->recordCount()) return -1;
    bool done = false;
    const Bookmark direct = directBookmarkAt(*ds, row, done);
    if (done) return direct;
    if (ds->recNo() == row) return ds->bookmark();
    Bookmark b = -1;
    withCursorMoved([&](db::AbstractDataSet* d) {
        d->setRecNo(row);
        b = d->bookmark();
    });
    return b;
}

std::vector<DBGrid::Bookmark> DBGrid::bookmarksOfRows(int from, int to) const {
    std::vector<Bookmark> out;
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active()) return out;
    from = qMax(0, from);
    to = qMin(to, ds->recordCount() - 1);
    if (to < from) return out;
    out.reserve(size_t(to - from + 1));
    bool done = false;
    directBookmarkAt(*ds, from, done);
    if (done) {
        for (int r = from; r <= to; ++r) out.push_back(directBookmarkAt(*ds, r, done));
        return out;
    }
    withCursorMoved([&](db::AbstractDataSet* d) {
        for (int r = from; r <= to; ++r) {
            d->setRecNo(r);
            out.push_back(d->bookmark());
        }
    });
    return out;
}

int DBGrid::rowOfBookmark(Bookmark b) const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || !ds->bookmarkValid(b)) return -1;
    bool done = false;
    const int direct = directRowOfBookmark(*ds, b, done);
    if (done) return direct;
    int row = -1;
    withCursorMoved([&](db::AbstractDataSet* d) {
        d->gotoBookmark(b);
        row = d->recNo();
    });
    return row;
}

void DBGrid::remapMarks() {
    const int rows = model_->rowCount();
    markedRows_.assign(size_t(rows), 0);
    if (marks_.isEmpty()) return;
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active()) return; // keep the bookmarks: a reopen that keeps them maps them back
    QSet<Bookmark> kept;
    bool done = false;
    directRowOfBookmark(*ds, 0, done);
    auto place = [&](Bookmark b, int row) {
        if (row >= 0 && row < rows) {
            markedRows_[size_t(row)] = 1;
            kept.insert(b);
        }
    };
    if (done) {
        for (Bookmark b : std::as_const(marks_))
            if (ds->bookmarkValid(b)) place(b, directRowOfBookmark(*ds, b, done));
    } else {
        withCursorMoved([&](db::AbstractDataSet* d) {
            for (Bookmark b : std::as_const(marks_)) {
                if (!d->bookmarkValid(b)) continue;
                d->gotoBookmark(b);
                place(b, d->recNo());
            }
        });
    }
    if (kept.size() != marks_.size()) {
        marks_ = kept;
        emit marksChanged();
    }
}

// ---- marks

QList<DBGrid::Bookmark> DBGrid::markedBookmarks() const {
    return marks_.values();
}

bool DBGrid::isMarked(int row) const {
    return row >= 0 && row < int(markedRows_.size()) && markedRows_[size_t(row)];
}

void DBGrid::setMarked(int row, bool on) {
    if (!multiSelect_ || row < 0 || row >= int(markedRows_.size())) return;
    if (isMarked(row) == on) return;
    const Bookmark b = bookmarkOfRow(row);
    if (b < 0) return;
    if (on)
        marks_.insert(b);
    else
        marks_.remove(b);
    markedRows_[size_t(row)] = on;
    viewport()->update();
    emit marksChanged();
}

void DBGrid::markRange(int from, int to) {
    if (!multiSelect_) return;
    if (from > to) std::swap(from, to);
    from = qMax(0, from);
    to = qMin(to, int(markedRows_.size()) - 1);
    if (to < from) return;
    const std::vector<Bookmark> bms = bookmarksOfRows(from, to);
    for (size_t i = 0; i < bms.size(); ++i) {
        marks_.insert(bms[i]);
        markedRows_[size_t(from) + i] = 1;
    }
    viewport()->update();
    emit marksChanged();
}

void DBGrid::clearMarks() {
    if (marks_.isEmpty()) return;
    marks_.clear();
    std::fill(markedRows_.begin(), markedRows_.end(), 0);
    viewport()->update();
    emit marksChanged();
}

void DBGrid::selectAll() {
    if (multiSelect_) markRange(0, model_->rowCount() - 1);
}

// ---- sorting

QList<db::SortKey> DBGrid::sortKeys() const {
    db::AbstractDataSet* ds = dataSet();
    return ds ? ds->sortKeys() : QList<db::SortKey>{};
}

void DBGrid::setSortKeys(const QList<db::SortKey>& keys) {
    db::AbstractDataSet* ds = dataSet();
    if (!ds) return;
    guarded([&] { ds->setSortKeys(keys); });
    horizontalHeader()->viewport()->update();
    emit sortKeysChanged();
}

void DBGrid::headerClicked(int section) {
    if (!sortMarking_) return;
    db::Field* f = model_->field(section);
    if (!f) return;
    QList<db::SortKey> keys = sortKeys();
    int at = -1;
    for (int i = 0; i < keys.size(); ++i)
        if (keys[i].field.compare(f->fieldName(), Qt::CaseInsensitive) == 0) at = i;
    if (headerMods_ & Qt::ControlModifier) {
        if (at >= 0)
            keys[at].ascending = !keys[at].ascending;
        else
            keys.append({f->fieldName(), true});
    } else if (keys.size() == 1 && at == 0) {
        keys[0].ascending = !keys[0].ascending;
    } else {
        keys = {{f->fieldName(), true}};
    }
    setSortKeys(keys);
}

bool DBGrid::eventFilter(QObject* o, QEvent* e) {
    if (o == horizontalHeader()->viewport() &&
        (e->type() == QEvent::MouseButtonPress || e->type() == QEvent::MouseButtonRelease))
        headerMods_ = static_cast<QMouseEvent*>(e)->modifiers();
    return QTableView::eventFilter(o, e);
}

// ---- layout

QJsonObject DBGrid::saveLayout() const {
    QJsonArray cols;
    for (const ColumnState& s : columnStates())
        cols.append(QJsonObject{{"field", s.field}, {"width", s.width}, {"visible", s.visible}});
    QJsonArray sort;
    for (const db::SortKey& k : sortKeys())
        sort.append(QJsonObject{{"field", k.field}, {"ascending", k.ascending}});
    return QJsonObject{{"columns", cols}, {"sort", sort}};
}

void DBGrid::restoreLayout(const QJsonObject& layout) {
    std::vector<ColumnState> states;
    for (const QJsonValue& v : layout.value("columns").toArray()) {
        const QJsonObject o = v.toObject();
        const QString field = o.value("field").toString().trimmed();
        if (field.isEmpty()) continue;
        ColumnState s;
        s.field = field;
        s.width = o.value("width").isDouble() ? o.value("width").toInt() : -1;
        s.visible = o.value("visible").toBool(true);
        states.push_back(s);
    }
    if (!states.empty()) {
        held_ = states; // also applied after the next reset when the dataset is not open yet
        haveHeld_ = true;
        if (model_->columnCount() > 0) applyColumnStates(states);
    }
    if (layout.contains("sort")) {
        QList<db::SortKey> keys;
        db::AbstractDataSet* ds = dataSet();
        for (const QJsonValue& v : layout.value("sort").toArray()) {
            const QJsonObject o = v.toObject();
            const QString field = o.value("field").toString().trimmed();
            if (field.isEmpty() || (ds && ds->fieldCount() > 0 && !ds->findField(field))) continue;
            keys.append({field, o.value("ascending").toBool(true)});
        }
        const QList<db::SortKey> now = sortKeys();
        bool same = keys.size() == now.size();
        for (int i = 0; same && i < keys.size(); ++i)
            same = keys[i].field.compare(now[i].field, Qt::CaseInsensitive) == 0 &&
                   keys[i].ascending == now[i].ascending;
        if (!same) setSortKeys(keys);
    }
}

// ---- input

void DBGrid::keyPressEvent(QKeyEvent* e) {
    const Qt::KeyboardModifiers mods = e->modifiers() & ~Qt::KeypadModifier;
    const int row = currentIndex().row();
    switch (e->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (mods == Qt::NoModifier) {
            emit activated();
            e->accept();
            return;
        }
        break;
    case Qt::Key_Space:
        if (mods == Qt::NoModifier && multiSelect_ && row >= 0) {
            setMarked(row, !isMarked(row));
            anchor_ = row;
            e->accept();
            return;
        }
        break;
    case Qt::Key_A:
        if (mods == Qt::ControlModifier) {
            selectAll();
            e->accept();
            return;
        }
        break;
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        if (mods == Qt::ShiftModifier && multiSelect_ && row >= 0) {
            if (anchor_ < 0 || !isMarked(anchor_)) anchor_ = row;
            QTableView::keyPressEvent(e);
            markRange(anchor_, currentIndex().row());
            return;
        }
        break;
    default:
        break;
    }
    QTableView::keyPressEvent(e);
}

void DBGrid::mousePressEvent(QMouseEvent* e) {
    const QModelIndex idx = indexAt(e->position().toPoint());
    if (!idx.isValid() || e->button() != Qt::LeftButton || !multiSelect_) {
        QTableView::mousePressEvent(e);
        return;
    }
    const Qt::KeyboardModifiers mods = e->modifiers();
    const int row = idx.row();
    if (mods & (Qt::ControlModifier | Qt::ShiftModifier)) {
        const int from = anchor_ >= 0 ? anchor_ : currentIndex().row();
        setFocus(Qt::MouseFocusReason);
        selectionModel()->setCurrentIndex(idx,
                                          QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        if (mods & Qt::ShiftModifier) {
            markRange(from < 0 ? row : from, row);
        } else {
            setMarked(row, !isMarked(row));
            anchor_ = row;
        }
        e->accept();
        return;
    }
    clearMarks();
    anchor_ = row;
    QTableView::mousePressEvent(e);
}

void DBGrid::mouseMoveEvent(QMouseEvent* e) {
    if (e->modifiers() & (Qt::ControlModifier | Qt::ShiftModifier)) return; // no drag-selection
    QTableView::mouseMoveEvent(e);
}

void DBGrid::mouseDoubleClickEvent(QMouseEvent* e) {
    const QModelIndex idx = indexAt(e->position().toPoint());
    QTableView::mouseDoubleClickEvent(e);
    if (idx.isValid() && e->button() == Qt::LeftButton) emit activated();
}

} // namespace frames::ui
