#include "frames/lookup/LF_ItemList.h"
#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include <QComboBox>
#include <QKeyEvent>
#include <QLayout>
#include <QScopedValueRollback>

namespace frames {

namespace {

bool isNull(const QVariant& v) {
    return !v.isValid() || v.isNull();
}

bool sameValue(const QVariant& a, const QVariant& b) {
    if (isNull(a) || isNull(b)) return isNull(a) == isNull(b);
    return a.toString().trimmed() == b.toString().trimmed();
}

} // namespace

TItemList_LF::TItemList_LF(QWidget* parent, const QString& comboName) : TAbs_LF(parent) {
    lcSelect->hide();
    lcSelect->setEnabled(false);
    combo_ = new QComboBox(body());
    combo_->setObjectName(comboName);
    combo_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    combo_->installEventFilter(this);
    body()->layout()->addWidget(combo_);
    lbSelect->setBuddy(combo_);
    connect(combo_, qOverload<int>(&QComboBox::activated), this, [this] { guard([&] { ItemsChange(); }); });
}

TItemList_LF::~TItemList_LF() = default;

void TItemList_LF::SetItems(const QStringList& items) {
    items_ = items;
}

QList<TItemList_LF::Item> TItemList_LF::ListItems() {
    QList<Item> list;
    for (const QString& line : items_) {
        const qsizetype eq = line.indexOf('=');
        const QString value = eq < 0 ? line : line.left(eq);
        const QString text = eq < 0 ? line : line.mid(eq + 1);
        bool isInt = false;
        const int n = value.trimmed().toInt(&isInt);
        list.append({isInt ? QVariant(n) : QVariant(value), text});
    }
    return list;
}

void TItemList_LF::Init() {
    // The list is the frame's own: only the binding of lcSelect is made, no dataset is opened.
    TAbsEditFrame::Init();
    if (Owner())
        if (db::DataSource* bound = editDialogBinding(this)) lcSelect->setDataSource(bound);
    FillItems();
}

void TItemList_LF::FillItems() {
    QScopedValueRollback busy(busy_, true);
    const QList<Item> items = ListItems(); // may settle EmptyText as well
    combo_->clear();
    if (!EmptyText.isEmpty()) combo_->addItem(EmptyText, QVariant());
    for (const Item& item : items) combo_->addItem(item.second, item.first);
    ShowValue();
}

QString TItemList_LF::UnlistedText(const QVariant& value) const {
    return value.toString();
}

void TItemList_LF::ShowValue() {
    QScopedValueRollback busy(busy_, true);
    constexpr int UnlistedRole = Qt::UserRole + 1;
    for (int i = combo_->count() - 1; i >= 0; --i)
        if (combo_->itemData(i, UnlistedRole).toBool()) combo_->removeItem(i);
    const QVariant value = lcSelect->keyValue();
    int index = -1;
    for (int i = 0; i < combo_->count() && index < 0; ++i)
        if (sameValue(combo_->itemData(i), value)) index = i;
    // A value the list does not offer (any more) is kept and shown as it stands.
    if (index < 0 && !isNull(value)) {
        combo_->addItem(UnlistedText(value), value);
        index = combo_->count() - 1;
        combo_->setItemData(index, true, UnlistedRole);
    }
    combo_->setCurrentIndex(index);
}

void TItemList_LF::ItemsChange() {
    if (busy_) return;
    if (GetReadOnly()) {
        ShowValue();
        return;
    }
    const QVariant value = combo_->currentIndex() < 0 ? QVariant() : combo_->currentData();
    if (isNull(value)) {
        if (!IsEmpty()) {
            lcSelect->clear();
            if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
        }
    } else {
        lcSelect->setKeyValue(value);
    }
    ShowValue();
    lcSelectClick(combo_);
}

void TItemList_LF::ItemsKeyDown(int& key, Qt::KeyboardModifiers shift) {
    const Qt::KeyboardModifiers held = shift & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (key != Qt::Key_Delete || held != Qt::NoModifier) return;
    key = 0;
    if (GetReadOnly() || IsEmpty()) return;
    lcSelect->clear();
    if (lcSelect->OnChange) lcSelect->OnChange(combo_);
    ShowValue();
    lcSelectClick(combo_);
}

void TItemList_LF::SetReadOnly(bool value) {
    TAbs_LF::SetReadOnly(value);
    combo_->setEnabled(!value);
}

void TItemList_LF::DataRefresh() {
    TAbs_LF::DataRefresh();
    ShowValue();
}

bool TItemList_LF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == combo_ && event->type() == QEvent::KeyPress) {
        auto* ke = static_cast<QKeyEvent*>(event);
        int key = ke->key();
        guard([&] { ItemsKeyDown(key, ke->modifiers()); });
        if (key == 0) return true;
    }
    return TAbs_LF::eventFilter(watched, event);
}

TPol_LF::TPol_LF(QWidget* parent) : TItemList_LF(parent, "rxcbPol"), rxcbPol(itemsCombo()) {}

TPrView_LF::TPrView_LF(QWidget* parent) : TItemList_LF(parent, "rxcbPrView"), rxcbPrView(itemsCombo()) {}

FRAMES_REGISTER(TPol_LF, "lookup");
FRAMES_REGISTER(TPrView_LF, "lookup");

} // namespace frames
