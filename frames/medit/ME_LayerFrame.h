#pragma once
#include "frames/core/ME_Abs.h"
#include <QPointer>
#include <QRect>

namespace frames {

// A whole host form embedded in the panel pnLayer: the form registered under the key ClassID
// (RvGetForm). The form keeps its own editors; before the update it gets ready and, when it is a
// grid form, may refuse. An unknown ClassID leaves the panel empty and the frame runs the update
// as it is. The form is given back to the host, with its own bounds, when the frame closes.
class TLayerFrame_ME : public TAbsMEditFrame {
    Q_OBJECT
public:
    explicit TLayerFrame_ME(QWidget* parent = nullptr);
    ~TLayerFrame_ME() override;

    void SetParams(const QString& params) override;
    bool ApplyChanges() override;
    void pfUpdateBeforeExecute(QObject* sender) override;
    // The one-off parameter "DelOther" is dropped once the update has run.
    void pfUpdateAfterExecute(QObject* sender) override;
    void FormClose() override;

    // Embeds the form of that class id in parent, in slot index (only 0 exists).
    virtual void CreateFormId(int index, QWidget* parent, const QString& classId);

    QWidget* Form() const { return form_; }
    QString ClassID() const { return classId_; }
    QRect FormBounds() const { return bounds_; }

    QWidget* pnLayer;

private:
    void releaseForm();

    QPointer<QWidget> form_;
    QString classId_;
    QRect bounds_;
    QWidget* hidden_ = nullptr;
};

} // namespace frames
