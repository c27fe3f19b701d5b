#pragma once
#include "frames/edit/EF_MemoEdit.h"
#include "frames/medit/ME_Value.h"

namespace frames {

// The new and the old value as multi-line text. Leaving the new value's memo with more than the
// target columns take (255 characters) asks whether to cut it; the old value is not checked (a
// longer old value simply matches no record). The statement must have :fieldname; it gets no
// kind.
class TMemoEdit_ME : public TTwoValue_ME {
    Q_OBJECT
public:
    explicit TMemoEdit_ME(QWidget* parent = nullptr);
    static constexpr int MaxLength = 255;

    virtual void mefNewValueMemoChange(QObject* sender);
    virtual void mefOldValueMemoChange(QObject* sender);
    virtual void mefNewValueMemoExit(QObject* sender);

    TMemoEdit_Frame* mefNewValue;
    TMemoEdit_Frame* mefOldValue;

protected:
    QString NewValueText() override { return mefNewValue->Text(); }
    QString OldValueText() override { return mefOldValue->Text(); }
    void ClearNewValue() override { mefNewValue->Clear(); }
    void ClearOldValue() override { mefOldValue->Clear(); }
    void SendNameAndKind() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace frames
