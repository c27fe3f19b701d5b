#include "host/HostedFrames.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Guard.h"
#include <QEvent>
#include <QWidget>

namespace workbench {

HostedFrames::HostedFrames(QWidget* form, NodeOf nodeOf)
    : QObject(form), form_(form), nodeOf_(std::move(nodeOf)) {
    form_->installEventFilter(this);
}

void HostedFrames::open(frames::TAbsEditFrame* f) {
    frames_.push_back(f);
    f->Init();
    f->RestoreLayout(nodeOf_(f->objectName()));
    if (form_->isVisible()) frames::guard([f] { f->FormShow(); });
}

void HostedFrames::show() {
    for (frames::TAbsEditFrame* f : frames_) frames::guard([f] { f->FormShow(); });
}

void HostedFrames::close() {
    const std::vector<frames::TAbsEditFrame*> closing = std::move(frames_);
    frames_.clear();
    for (frames::TAbsEditFrame* f : closing) {
        frames::guard([&] {
            f->SaveLayout(nodeOf_(f->objectName()));
            f->FormClose();
        });
    }
}

void HostedFrames::remove(frames::TAbsEditFrame* f) {
    std::erase(frames_, f);
}

frames::TAbsEditFrame* HostedFrames::firstEmptyRequired() const {
    for (frames::TAbsEditFrame* f : frames_) {
        bool empty = false;
        if (f->GetRequired() && frames::guard([&] { empty = f->IsEmpty(); }) && empty) return f;
    }
    return nullptr;
}

bool HostedFrames::eventFilter(QObject* watched, QEvent* event) {
    // Show comes once each time the form goes from hidden to shown.
    if (watched == form_ && event->type() == QEvent::Show) show();
    return QObject::eventFilter(watched, event);
}

QString requiredValueText(const frames::TAbsEditFrame* f) {
    QString caption = f->Caption().trimmed();
    while (caption.endsWith(QLatin1Char(':'))) caption.chop(1);
    if (caption.isEmpty()) caption = f->objectName();
    return QStringLiteral("Заполните поле «%1».").arg(caption);
}

} // namespace workbench
