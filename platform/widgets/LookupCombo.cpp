#include "platform/widgets/LookupCombo.h"
#include "platform/db/Field.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/ErrorReporter.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QListView>
#include <QProxyStyle>
#include <QScopeGuard>
#include <QScopedValueRollback>
#include <QTableView>
#include <QToolButton>
#include <algorithm>
#include <cmath>

namespace frames::ui {

namespace {

// The combo part: asks its owner before the list opens.
class LookupComboBox : public QComboBox {
public:
    using QComboBox::QComboBox;
    std::function<bool()> mayShow;
    void showPopup() override {
        if (mayShow && !mayShow()) return;
        QComboBox::showPopup();
    }
};

// The list drops down below the combo, DropDownCount rows high. A style that places the list
// over the combo instead (the "popup" look) makes QComboBox measure every row to size it and
// ignore the number of rows to show: with this one, opening costs the same for any list size.
class DropDownStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* ret) const override {
        if (hint == QStyle::SH_ComboBox_Popup) return 0;
        return QProxyStyle::styleHint(hint, option, widget, ret);
    }
};

// The list views of the combo: type-ahead (QComboBox hands typed text to its view's
// keyboardSearch, and so does the open list) goes to the combo, which knows the list's order.
template <class View> class TypeAheadView : public View {
public:
    explicit TypeAheadView(LookupCombo* owner) : owner_(owner) {}
    void keyboardSearch(const QString& text) override { owner_->keyboardSearch(text); }

private:
    LookupCombo* owner_;
};

// Sort weight of a character as the server's Cyrillic collation orders text: without regard to
// case, "Ё" a letter of its own between "Е" and "Ж", the other letters after every Latin letter,
// digit and sign.
inline uint sortWeight(QChar c) {
    const uint u = c.toUpper().unicode();
    if (u >= 0x410 && u <= 0x42F) return 0x10000 + (u - 0x410) * 2;
    if (u == 0x401) return 0x10000 + (0x415 - 0x410) * 2 + 1;
    return u;
}

// Compares text with a prefix by sort weight: <0 text sorts before every text that starts with
// the prefix, 0 it starts with the prefix, >0 it sorts after them.
int comparePrefix(const QString& text, const QString& prefix) {
    const qsizetype n = std::min(text.size(), prefix.size());
    for (qsizetype i = 0; i < n; ++i) {
        const uint a = sortWeight(text[i]), b = sortWeight(prefix[i]);
        if (a != b) return a < b ? -1 : 1;
    }
    return text.size() < prefix.size() ? -1 : 0;
}

int compareText(const QString& a, const QString& b) {
    const int c = comparePrefix(a, b);
    if (c != 0) return c;
    return a.size() == b.size() ? 0 : 1; // a starts with b and is longer
}

bool isNullKey(const QVariant& v) {
    return !v.isValid() || v.isNull();
}

// Keys are compared by text so that 5, 5.0, "5" and a CHAR key padded with blanks meet.
QString keyText(const QVariant& v) {
    if (isNullKey(v)) return QString();
    switch (v.typeId()) {
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = v.toDouble();
        if (std::floor(d) == d && std::fabs(d) < 1e15) return QString::number(qint64(d));
        return QString::number(d, 'g', 17);
    }
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        QString s = v.toString();
        while (s.endsWith(' ')) s.chop(1);
        return s;
    }
    default:
        return v.toString();
    }
}

bool sameKey(const QVariant& a, const QVariant& b) {
    if (isNullKey(a) || isNullKey(b)) return isNullKey(a) == isNullKey(b);
    return keyText(a) == keyText(b);
}

} // namespace

LookupCombo::LookupCombo(QWidget* parent) : QWidget(parent) {
    auto* box = new LookupComboBox(this);
    box->mayShow = [this] { return mayDropDown(); };
    combo_ = box;
    combo_->setObjectName(QStringLiteral("combo"));
    combo_->setEditable(false);
    combo_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo_->setMinimumContentsLength(4);
    combo_->setMaxVisibleItems(dropDownCount_);
    combo_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    combo_->setMinimumHeight(21);
    combo_->installEventFilter(this);
    auto* style = new DropDownStyle;
    style->setParent(combo_);
    combo_->setStyle(style);

    auto* list = new TypeAheadView<QListView>(this);
    list->setUniformItemSizes(true);
    combo_->setView(list);

    button_ = new QToolButton(this);
    button_->setObjectName(QStringLiteral("button"));
    button_->setText(QStringLiteral("..."));
    button_->setFocusPolicy(Qt::NoFocus);
    button_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    button_->setFixedSize(22, 22);

    auto* lay = new QHBoxLayout(this);
    lay->setContentsMargins(0, 0, 0, 0);
    lay->setSpacing(1);
    lay->addWidget(combo_, 1);
    lay->addWidget(button_, 0, Qt::AlignVCenter);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMinimumHeight(22);
    setFocusProxy(combo_);

    model_ = new DataSetModel(this);
    model_->setDecoration([this](int row) { return rowImage(row); });
    combo_->setModel(model_);
    // Connected after setModel so that the combo has handled the reset when the key is re-shown.
    connect(model_, &QAbstractItemModel::modelReset, this, [this] { listReset(); });

    connect(combo_, qOverload<int>(&QComboBox::activated), this, [this](int row) { userChoseRow(row); });
    connect(button_, &QToolButton::clicked, this, [this] {
        if (OnDlgClick) guarded([&] { OnDlgClick(this); });
    });
}

LookupCombo::~LookupCombo() {
    combo_->removeEventFilter(this);
}

// ---- properties

void LookupCombo::setDataSource(db::DataSource* ds) {
    if (dataSource() != ds) link_.setDataSource(ds);
}

void LookupCombo::setLookupSource(db::DataSource* ds) {
    if (lookupSource_ == ds) return;
    lookupSource_ = ds;
    rebuildModel();
}

void LookupCombo::setLookupField(const QString& f) {
    lookupField_ = f.trimmed();
    keyIndexValid_ = false;
    syncFromKey();
}

void LookupCombo::setLookupDisplay(const QString& f) {
    lookupDisplay_ = f;
    rebuildModel();
}

void LookupCombo::setDropDownCount(int n) {
    dropDownCount_ = n;
    combo_->setMaxVisibleItems(qMax(1, n));
}

void LookupCombo::setReadOnly(bool b) {
    readOnly_ = b;
    if (b && isDroppedDown()) closeUp(false);
}

bool LookupCombo::showButton() const {
    return !button_->isHidden();
}

void LookupCombo::setShowButton(bool b) {
    button_->setHidden(!b);
}

void LookupCombo::setEmptyValue(const QString& t) {
    emptyValue_ = t;
    model_->setLeadingRow(!t.isEmpty(), t);
}

// ---- the list

void LookupCombo::rebuildModel() {
    QStringList display;
    for (const QString& part : lookupDisplay_.split(';'))
        if (!part.trimmed().isEmpty()) display << part.trimmed();

    // One column: a plain list. Several: a table whose first column is the one the combo shows.
    const bool table = display.size() > 1;
    if (table != tableView_) {
        tableView_ = table;
        if (table) {
            auto* tv = new TypeAheadView<QTableView>(this);
            tv->horizontalHeader()->hide();
            tv->verticalHeader()->hide();
            tv->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
            tv->verticalHeader()->setDefaultSectionSize(tv->fontMetrics().height() + 4);
            tv->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
            tv->setSelectionBehavior(QAbstractItemView::SelectRows);
            tv->setShowGrid(false);
            tv->setWordWrap(false);
            combo_->setView(tv);
        } else {
            auto* lv = new TypeAheadView<QListView>(this);
            lv->setUniformItemSizes(true);
            combo_->setView(lv);
        }
    }
    model_->setDataSource(lookupSource_);
    model_->setFieldNames(display); // resets the model: listReset() re-shows the key
    combo_->setModelColumn(0);
}

void LookupCombo::listReset() {
    keyIndexValid_ = false;
    keyLookedUp_ = false;
    ordered_ = -1;
    keyIndex_.clear();
    icons_.clear();
    syncFromKey();
}

int LookupCombo::lookupKeyIndex() const {
    db::AbstractDataSet* lds = model_->dataSet();
    if (!lds || lookupField_.isEmpty()) return -1;
    db::Field* f = lds->findField(lookupField_);
    return f ? f->index() : -1;
}

int LookupCombo::rowOfKey(const QVariant& key) const {
    if (isNullKey(key)) return -1;
    db::AbstractDataSet* lds = model_->dataSet();
    if (!lds || !lds->active()) return -1;
    if (!keyIndexValid_ && !keyLookedUp_) {
        // The first key after the list was loaded (a frame showing its record) is looked for
        // row by row: that costs less than the index over every row, which the second lookup
        // builds.
        keyLookedUp_ = true;
        const int fi = lookupKeyIndex();
        if (fi < 0) return -1;
        const int n = model_->rowCount() - model_->rowOffset();
        const db::Field* f = lds->field(fi);
        const bool integral = f->dataType() == db::FieldType::SmallInt ||
                              f->dataType() == db::FieldType::Integer ||
                              f->dataType() == db::FieldType::BigInt;
        bool isInt = false;
        const qlonglong wanted = integral ? QVariant(keyText(key)).toLongLong(&isInt) : 0;
        if (integral && isInt) {
            for (int r = 0; r < n; ++r) {
                const QVariant v = model_->valueAt(r, fi);
                if (!isNullKey(v) && v.toLongLong() == wanted) return r;
            }
            return -1;
        }
        const QString wantedText = keyText(key);
        for (int r = 0; r < n; ++r)
            if (keyText(model_->valueAt(r, fi)) == wantedText) return r;
        return -1;
    }
    if (!keyIndexValid_) {
        keyIndex_.clear();
        const int fi = lookupKeyIndex();
        const int n = model_->rowCount() - model_->rowOffset();
        if (fi >= 0) {
            keyIndex_.reserve(n);
            for (int r = n - 1; r >= 0; --r)
                keyIndex_.insert(keyText(model_->valueAt(r, fi)), r); // first wins
        }
        keyIndexValid_ = true;
    }
    auto it = keyIndex_.constFind(keyText(key));
    return it == keyIndex_.constEnd() ? -1 : *it;
}

QVariant LookupCombo::rowImage(int row) const {
    if (!OnGetImage) return QVariant();
    if (auto it = icons_.constFind(row); it != icons_.constEnd()) return it->isNull() ? QVariant() : *it;
    if (inImage_) return QVariant();
    QScopedValueRollback guard(inImage_, true);
    QIcon icon;
    db::AbstractDataSet* lds = model_->dataSet();
    auto* self = const_cast<LookupCombo*>(this);
    guarded([&] {
        // The handler reads the row through the dataset's fields: put the cursor there for the
        // call and back afterwards, without the model treating the moves as changes.
        const bool move = row >= 0 && lds && lds->state() == db::DataSetState::Browse && lds->recNo() != row;
        const int back = lds ? lds->recNo() : -1;
        if (move) {
            model_->setQuiet(true);
            lds->setRecNo(row);
        }
        try {
            icon = OnGetImage(self, row);
        } catch (...) {
            if (move) {
                lds->setRecNo(back);
                model_->setQuiet(false);
            }
            throw;
        }
        if (move) {
            lds->setRecNo(back);
            model_->setQuiet(false);
        }
    });
    icons_.insert(row, icon);
    return icon.isNull() ? QVariant() : QVariant(icon);
}

// ---- the key

bool LookupCombo::isBound() const {
    return dataSource() && dataSource()->dataSet() && !dataField().isEmpty();
}

QVariant LookupCombo::keyValue() const {
    if (!isBound()) return ownKey_;
    db::Field* f = link_.rowField();
    if (!f) return QVariant();
    return f->isNull() ? QVariant() : f->value();
}

void LookupCombo::writeKey(const QVariant& key) {
    if (!isBound()) {
        ownKey_ = isNullKey(key) ? QVariant() : key;
        return;
    }
    db::AbstractDataSet* ds = dataSource()->dataSet();
    db::Field* f = ds->fieldByName(dataField()); // throws naming the missing field
    if (!ds->inEditMode()) ds->edit();
    if (isNullKey(key))
        f->clear();
    else
        f->setValue(key);
}

void LookupCombo::setKeyValue(const QVariant& key) {
    const QVariant old = keyValue();
    if (!sameKey(old, key)) {
        writeKey(key);
        syncFromKey();
        if (OnChange) OnChange(this);
    } else {
        syncFromKey();
    }
}

void LookupCombo::clear() {
    if (!isNullKey(keyValue())) writeKey(QVariant());
    syncFromKey();
}

QString LookupCombo::displayText() const {
    const int row = rowOfKey(keyValue());
    if (row < 0) return QString();
    return model_->textAt(row, model_->fieldIndex(0));
}

void LookupCombo::syncFromKey() {
    if (syncing_) return;
    QScopedValueRollback guard(syncing_, true);
    const QVariant key = keyValue();
    const int row = rowOfKey(key);
    int comboRow = -1;
    if (row >= 0)
        comboRow = model_->modelRow(row);
    else if (isNullKey(key) && model_->hasLeadingRow())
        comboRow = 0;
    if (combo_->currentIndex() != comboRow) combo_->setCurrentIndex(comboRow);
    // The lookup dataset's current row is the chosen one, so that its other fields can be read.
    // The list's model does not take the move for a change of two rows: a list view re-lays out
    // every row after one.
    db::AbstractDataSet* lds = model_->dataSet();
    if (row >= 0 && lds && lds->state() == db::DataSetState::Browse && lds->recNo() != row)
        guarded([&] {
            model_->setQuiet(true);
            const auto loud = qScopeGuard([&] { model_->setQuiet(false); });
            lds->setRecNo(row);
        });
}

void LookupCombo::userChoseRow(int comboRow) {
    if (readOnly_) {
        syncFromKey();
        return;
    }
    guarded([&] {
        QVariant key;
        const int row = model_->dataSetRow(comboRow);
        if (row >= 0) key = model_->valueAt(row, lookupKeyIndex());
        const bool changed = !sameKey(keyValue(), key);
        if (changed) {
            try {
                writeKey(key);
            } catch (...) {
                syncFromKey();
                throw;
            }
        }
        syncFromKey();
        if (changed && OnChange) OnChange(this);
        if (OnClick) OnClick(this);
    });
}

// ---- the drop-down

bool LookupCombo::isDroppedDown() const {
    return combo_->view() && combo_->view()->isVisible();
}

bool LookupCombo::mayDropDown() {
    if (readOnly_) return false;
    bool show = true;
    if (OnDropDown && !guarded([&] { OnDropDown(this, show); })) return false;
    return show;
}

void LookupCombo::dropDown() {
    if (!isDroppedDown()) combo_->showPopup();
}

void LookupCombo::closeUp(bool accept) {
    if (!isDroppedDown()) return;
    const QModelIndex idx = combo_->view()->currentIndex();
    combo_->hidePopup();
    if (accept && idx.isValid()) {
        combo_->setCurrentIndex(idx.row());
        userChoseRow(idx.row());
    }
}

// ---- type-ahead

int LookupCombo::findByPrefix(const QString& prefix, int from) const {
    db::AbstractDataSet* lds = model_->dataSet();
    const int col = model_->fieldIndex(0);
    const int n = model_->rowCount() - model_->rowOffset();
    if (!lds || !lds->active() || col < 0 || n <= 0 || prefix.isEmpty()) return -1;
    from = std::clamp(from, 0, n - 1);
    auto text = [&](int r) { return model_->textAt(r, col); };
    auto matches = [&](int r) { return comparePrefix(text(r), prefix) == 0; };

    if (ordered_ < 0) {
        // Ordered by the display text if evenly spread sample rows are: cheap for any size, and
        // a list in another order (by a key, by date) is seldom ordered by name at every sample.
        ordered_ = 1;
        const int samples = std::min(n, 65);
        QString prev;
        for (int i = 0; i < samples && ordered_; ++i) {
            const QString t = text(samples > 1 ? int(qint64(n - 1) * i / (samples - 1)) : 0);
            if (i > 0 && compareText(prev, t) > 0) ordered_ = 0;
            prev = t;
        }
    }
    if (ordered_) {
        int lo = 0, hi = n; // first row that does not sort before the prefix
        while (lo < hi) {
            const int mid = lo + (hi - lo) / 2;
            if (comparePrefix(text(mid), prefix) < 0)
                lo = mid + 1;
            else
                hi = mid;
        }
        if (lo == n || !matches(lo)) return -1;
        // As the plain search from `from` would: stay on a matching row at or after it.
        return from > lo && matches(from) ? from : lo;
    }
    for (int i = 0; i < n; ++i) {
        const int r = (from + i) % n;
        if (matches(r)) return r;
    }
    return -1;
}

void LookupCombo::keyboardSearch(const QString& text) {
    if (text.isEmpty() || readOnly_) return;
    QAbstractItemView* view = combo_->view();
    if (!typedTimer_.isValid() || typedTimer_.elapsed() > QApplication::keyboardInputInterval())
        typed_.clear();
    typedTimer_.start();
    typed_ += text;
    // As item views do: a new search starts after the current row, and one letter typed again
    // and again steps through the rows that start with it.
    const bool repeated =
        typed_.size() > 1 && typed_.count(typed_.back(), Qt::CaseInsensitive) == typed_.size();
    const QString prefix = repeated ? typed_.left(1) : typed_;
    const int current = model_->dataSetRow(view->currentIndex().isValid() ? view->currentIndex().row()
                                                                          : combo_->currentIndex());
    const int start = current < 0 ? 0 : (typed_.size() == text.size() || repeated ? current + 1 : current);
    const int n = model_->rowCount() - model_->rowOffset();
    int row = -1;
    guarded([&] { row = findByPrefix(prefix, n > 0 ? start % n : 0); });
    if (row < 0) return;
    const QModelIndex idx = model_->index(model_->modelRow(row), combo_->modelColumn());
    view->setCurrentIndex(idx);
    // The closed list is scrolled when it opens; scrolling the hidden view would lay out every
    // row first.
    if (isDroppedDown()) view->scrollTo(idx);
}

// ---- keys

bool LookupCombo::eventFilter(QObject* o, QEvent* e) {
    if (o != combo_) return QWidget::eventFilter(o, e);
    if (e->type() == QEvent::Wheel) return readOnly_ || !combo_->hasFocus();
    if (e->type() != QEvent::KeyPress) return QWidget::eventFilter(o, e);

    auto* ke = static_cast<QKeyEvent*>(e);
    int key = ke->key();
    const Qt::KeyboardModifiers mods = ke->modifiers();
    if (OnKeyDown) {
        if (!guarded([&] { OnKeyDown(this, key, mods); })) return true;
        // The handler took the key. A letter that came without a key code (a composed one)
        // goes on to type-ahead.
        if (key == 0 && ke->key() != 0) return true;
    }
    const Qt::KeyboardModifiers plain = mods & ~Qt::KeypadModifier;
    if (key == Qt::Key_Delete && plain == Qt::NoModifier) {
        if (escapeClear_ && !readOnly_) {
            guarded([&] {
                const bool had = !isNullKey(keyValue());
                clear();
                if (had && OnChange) OnChange(this);
            });
        }
        return true;
    }
    if (key == Qt::Key_Space && plain == Qt::NoModifier && !readOnly_ && !typed_.isEmpty() &&
        typedTimer_.isValid() && typedTimer_.elapsed() <= QApplication::keyboardInputInterval()) {
        // A space typed within a name ("Иванов И") goes on with the search; only a space of its
        // own opens the list.
        keyboardSearch(QStringLiteral(" "));
        return true;
    }
    if ((key == Qt::Key_F2 && plain == Qt::NoModifier) ||
        ((key == Qt::Key_Down || key == Qt::Key_Up) && plain == Qt::AltModifier)) {
        dropDown();
        return true;
    }
    if (readOnly_) {
        // Nothing that would change the value gets through; focus and dialog keys do.
        switch (key) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
        case Qt::Key_Home:
        case Qt::Key_End:
        case Qt::Key_Space:
        case Qt::Key_F4:
            return true;
        default:
            if (!ke->text().isEmpty() && ke->text().at(0).isPrint() && !(plain & Qt::ControlModifier))
                return true;
        }
    }
    return QWidget::eventFilter(o, e);
}

} // namespace frames::ui
