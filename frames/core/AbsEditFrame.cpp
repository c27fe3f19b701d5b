#include "frames/core/AbsEditFrame.h"
#include "frames/core/HostForms.h"
#include <QVBoxLayout>
#include <stdexcept>

namespace frames {

TAbsEditFrame::TAbsEditFrame(QWidget* parent) : QFrame(parent) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 2, 4, 2);
    layout->setSpacing(2);
    lbSelect = new QLabel(this);
    lbSelect->setObjectName("lbSelect");
    body_ = new QWidget(this);
    body_->setObjectName("body");
    auto* bodyLayout = new QHBoxLayout(body_);
    bodyLayout->setContentsMargins(0, 0, 0, 0);
    bodyLayout->setSpacing(2);
    layout->addWidget(lbSelect);
    layout->addWidget(body_);
    layout->addStretch(1);
}

TAbsEditFrame::~TAbsEditFrame() = default;

void TAbsEditFrame::SetEnabled(bool value) {
    setEnabled(value);
}
void TAbsEditFrame::SetFocus() {
    if (QWidget* w = lbSelect->buddy())
        w->setFocus();
    else
        setFocus();
}
void TAbsEditFrame::SetReadOnly(bool value) {
    readOnly_ = value;
}
void TAbsEditFrame::SetRequired(bool value) {
    required_ = value;
    QFont f = lbSelect->font();
    f.setBold(value);
    lbSelect->setFont(f);
}
bool TAbsEditFrame::GetReadOnly() const {
    return readOnly_;
}
void TAbsEditFrame::RestoreLayout(TConfigItem*) {}
void TAbsEditFrame::SaveLayout(TConfigItem*) {}
void TAbsEditFrame::Init() {}
void TAbsEditFrame::DataRefresh() {}
bool TAbsEditFrame::IsEmpty() {
    return false;
}
void TAbsEditFrame::Clear() {
    throw std::logic_error(std::string(metaObject()->className()) + ": Clear is not implemented");
}
void TAbsEditFrame::FormShow() {}
void TAbsEditFrame::FormClose() {}
void TAbsEditFrame::Save() {}

QObject* ownerOf(const QObject* o) {
    for (QObject* p = o ? o->parent() : nullptr; p; p = p->parent())
        if (qobject_cast<TAbsEditFrame*>(p) || qobject_cast<TfmPersistentForm*>(p)) return p;
    return nullptr;
}

QObject* TAbsEditFrame::Owner() const {
    return ownerOf(this);
}

} // namespace frames
