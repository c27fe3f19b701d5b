#include "frames/edit/EF_MultiEdit.h"
#include "frames/core/Registry.h"
#include <QKeyEvent>
#include <QLayout>
#include <QVBoxLayout>

namespace frames {

// ---- TValueList_Frame

TValueList_Frame::TValueList_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(200, 140);
    // The editor comes first (descendants insert it), the list below it.
    column_ = new QVBoxLayout;
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(2);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(column_);
    ListBox = new QListWidget(body());
    ListBox->setObjectName("ListBox");
    column_->addWidget(ListBox);
    ListBox->installEventFilter(this);
}

void TValueList_Frame::insertEditor(QWidget* editor) {
    column_->insertWidget(0, editor);
}

QString TValueList_Frame::ItemsItem(int i) const {
    return i >= 0 && i < ListBox->count() ? ListBox->item(i)->text() : QString();
}

QStringList TValueList_Frame::Items() const {
    QStringList l;
    for (int i = 0; i < ListBox->count(); ++i) l << ListBox->item(i)->text();
    return l;
}

bool TValueList_Frame::AddText(const QString& text) {
    const QString s = text.trimmed();
    if (s.isEmpty() || !ListBox->findItems(s, Qt::MatchExactly).isEmpty()) return false;
    ListBox->addItem(s);
    ListBox->setCurrentRow(ListBox->count() - 1);
    return true;
}

void TValueList_Frame::SetItems(const QStringList& items) {
    ListBox->clear();
    for (const QString& s : items) AddText(s);
}

void TValueList_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
}

bool TValueList_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || ListBox->count() == 0;
}

void TValueList_Frame::Clear() {
    ListBox->clear();
}

bool TValueList_Frame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == ListBox && event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Delete && !GetReadOnly()) {
        if (QListWidgetItem* item = ListBox->currentItem()) {
            delete item;
            emit Changed();
        }
        return true;
    }
    return TAbsEditFrame::eventFilter(watched, event);
}

// ---- TMultiEdit_Frame

TMultiEdit_Frame::TMultiEdit_Frame(QWidget* parent) : TValueList_Frame(parent) {
    Edit = new QLineEdit(body());
    Edit->setObjectName("Edit");
    insertEditor(Edit);
    lbSelect->setBuddy(Edit);
    // The frame takes Enter itself: a line edit passes it on, and on a dialog it would press the
    // default button as well.
    Edit->installEventFilter(this);
}

bool TMultiEdit_Frame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == Edit && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            if (!GetReadOnly()) {
                if (AddText(Edit->text())) emit Changed();
                Edit->clear();
            }
            return true;
        }
    }
    return TValueList_Frame::eventFilter(watched, event);
}

void TMultiEdit_Frame::SetReadOnly(bool value) {
    TValueList_Frame::SetReadOnly(value);
    Edit->setReadOnly(value);
}

void TMultiEdit_Frame::RestoreLayout(TConfigItem* node) {
    TValueList_Frame::RestoreLayout(node);
    if (!node || !node->IsExists("ListBox.RecordCount")) return;
    QStringList values;
    const int n = node->ItemByName("ListBox.RecordCount")->GetAsInteger();
    for (int i = 0; i < n; ++i)
        if (const TConfigItem* r = node->Find("ListBox.Record" + QString::number(i)))
            values << r->GetAsString();
    SetItems(values);
}

void TMultiEdit_Frame::SaveLayout(TConfigItem* node) {
    TValueList_Frame::SaveLayout(node);
    if (!node) return;
    for (int i = ItemsCount(); node->IsExists("ListBox.Record" + QString::number(i)); ++i)
        node->Remove("ListBox.Record" + QString::number(i));
    node->ItemByName("ListBox.RecordCount")->SetAsInteger(ItemsCount());
    for (int i = 0; i < ItemsCount(); ++i)
        node->ItemByName("ListBox.Record" + QString::number(i))->SetAsString(ItemsItem(i));
}

void TMultiEdit_Frame::Clear() {
    TValueList_Frame::Clear();
    Edit->clear();
}

FRAMES_REGISTER(TMultiEdit_Frame, "edit");

} // namespace frames
