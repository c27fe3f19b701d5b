#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBTextEdits.h"

namespace frames {

// Multi-line plain text. With Bound set the memo edits the field Memo.DataField of the list
// form's current record (on the host's edit dialog); otherwise it keeps its own text.
class TMemo_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(bool Bound MEMBER Bound)
public:
    explicit TMemo_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    void Clear() override;

    QString Text() const { return Memo->toPlainText(); }

    ui::DBMemo* Memo;
    bool Bound = false;
};

} // namespace frames
