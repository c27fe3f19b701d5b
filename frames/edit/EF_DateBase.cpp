#include "frames/edit/EF_DateBase.h"
#include "frames/core/HostForms.h"
#include "frames/core/TyapiDates.h"
#include <QLayout>

namespace frames {

TSingleDate_Frame::TSingleDate_Frame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(145, 42);
    oldDate_ = DateZero();
    changed_ = false;
}

void TSingleDate_Frame::makeEditor(const QString& name) {
    editor_ = new ui::DateEdit(body());
    editor_->setObjectName(name);
    editor_->setMasked(true);
    editor_->setSaveTime(false);
    editor_->setShowTime(false);
    editor_->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    editor_->setMinimumWidth(100);
    body()->layout()->addWidget(editor_);
    lbSelect->setBuddy(editor_);
}

void TSingleDate_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    editor_->setReadOnly(value);
}

bool TSingleDate_Frame::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    const double day = editor_->dayNumber();
    return day == NullDate || day == 0;
}

void TSingleDate_Frame::DateChange() {
    if (editor_->isNull() || editor_->date() == oldDate_) return;
    oldDate_ = editor_->date();
    changed_ = true;
    if (OnDateChanged) OnDateChanged(editor_);
}

void TSingleDate_Frame::DateEnter() {
    oldDate_ = editor_->isNull() ? QDate() : editor_->date();
    editor_->selectAll();
}

void TSingleDate_Frame::DateClick() {
    DateChange();
    if (auto* form = qobject_cast<TfmPersistentForm*>(Owner())) form->NotifyChanged();
}

void TSingleDate_Frame::DateKeyDown(int& key) {
    if (key == Qt::Key_Return || key == Qt::Key_Enter) DateChange();
}

void TSingleDate_Frame::DateKeyUp(int& key) {
    setNull(key, editor_);
}

} // namespace frames
