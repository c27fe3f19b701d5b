#pragma once
#include "frames/core/ME_Abs.h"
#include "frames/edit/EF_MemoEdit.h"
#include <QCheckBox>
#include <QToolButton>

namespace frames {

// A goods group picked in the classifier form "QucikClassifForm": the buttons beside the
// read-only memos open it on the stored branch; the branch chosen (unless the form was
// cancelled) is stored and its name shown. The keys travel as text, "" when none was picked (not
// NULL); picking an old value turns "Использовать" on. The statement must have :fieldname.
class TCardClassif_ME : public TAbsMEditFrame {
    Q_OBJECT
public:
    explicit TCardClassif_ME(QWidget* parent = nullptr);

    void pfUpdateBeforeExecute(QObject* sender) override;

    virtual void sbNewValueClick(QObject* sender);
    virtual void sbOldValueClick(QObject* sender);

    QVariant NewKey() const { return newKey_; }
    QVariant OldKey() const { return oldKey_; }

    TMemoEdit_Frame* mefNewValue;
    TMemoEdit_Frame* mefOldValue;
    QToolButton* sbNewValue;
    QToolButton* sbOldValue;
    QCheckBox* chbUseOldValue;

private:
    // Runs the form for key; true (with key and memo set) unless it was cancelled.
    bool pick(QVariant& key, TMemoEdit_Frame* memo);

    QVariant newKey_, oldKey_;
};

} // namespace frames
