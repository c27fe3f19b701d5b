#include "frames/medit/ME_LayerFrame.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "platform/db/Query.h"
#include <QLayout>
#include <QVBoxLayout>
#include <stdexcept>

namespace frames {

TLayerFrame_ME::TLayerFrame_ME(QWidget* parent) : TAbsMEditFrame(parent) {
    setMinimumSize(300, 75);
    pnLayer = new QWidget(body());
    pnLayer->setObjectName("pnLayer");
    auto* layout = new QVBoxLayout(pnLayer);
    layout->setContentsMargins(0, 0, 0, 0);
    body()->layout()->addWidget(pnLayer);
}

TLayerFrame_ME::~TLayerFrame_ME() {
    releaseForm();
}

void TLayerFrame_ME::SetParams(const QString& params) {
    TAbsMEditFrame::SetParams(params);
    classId_ = Values(QStringLiteral("ClassID")).trimmed();
    if (classId_.isEmpty()) return;
    TRunParams run;
    ResetParams(run);
    run.Params = std::make_shared<TVarParams>();
    CreateFormId(0, pnLayer, classId_);
    if (auto* layer = qobject_cast<TfmAbsLayer_ME*>(form_.data())) {
        layer->TakeParams(run);
        layer->InitLayer(run);
        layer->OpenData();
    }
    run.Params.reset();
}

void TLayerFrame_ME::CreateFormId(int index, QWidget* parent, const QString& classId) {
    if (index != 0) throw std::out_of_range("TLayerFrame_ME: form slot out of range");
    auto* form = qobject_cast<QWidget*>(RvGetForm(classId));
    if (!form) return;
    releaseForm();
    form_ = form;
    bounds_ = form->geometry();
    form->setParent(parent, Qt::Widget); // no border: a child, not a window
    if (auto* layer = qobject_cast<TfmAbsLayer_ME*>(form)) {
        hidden_ = layer->LayerHiddenControl();
        if (hidden_) hidden_->hide();
        layer->Embedded = true;
    }
    parent->layout()->addWidget(form); // fills the panel
    form->show();
}

void TLayerFrame_ME::releaseForm() {
    if (!form_) return;
    QWidget* form = form_;
    form_ = nullptr;
    if (hidden_) hidden_->show();
    hidden_ = nullptr;
    if (auto* layer = qobject_cast<TfmAbsLayer_ME*>(form)) layer->Embedded = false;
    form->hide();
    form->setParent(nullptr, Qt::Window);
    form->setGeometry(bounds_);
}

void TLayerFrame_ME::pfUpdateAfterExecute(QObject* sender) {
    TAbsMEditFrame::pfUpdateAfterExecute(sender);
    DelParam(QStringLiteral("DelOther"));
}

bool TLayerFrame_ME::ApplyChanges() {
    if (auto* layer = qobject_cast<TfmAbsLayer_ME*>(form_.data())) {
        layer->PrepareChanges();
        if (auto* grid = qobject_cast<TfmAbsGrid_ME*>(layer); grid && !grid->CheckChanges()) return false;
    }
    return TAbsMEditFrame::ApplyChanges();
}

void TLayerFrame_ME::pfUpdateBeforeExecute(QObject* sender) {
    TAbsMEditFrame::pfUpdateBeforeExecute(sender);
    setIfPresent(QStringLiteral("session"), SessionNumber());
    setIfPresent(QStringLiteral("fieldname"), FieldName());
    if (auto* layer = qobject_cast<TfmAbsLayer_ME*>(form_.data())) layer->FillUpdateParams(pfUpdate);
}

void TLayerFrame_ME::FormClose() {
    releaseForm();
    TAbsMEditFrame::FormClose();
}

FRAMES_REGISTER(TLayerFrame_ME, "medit");

} // namespace frames
