#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBTextEdits.h"

namespace frames {

// Formatted text bound to the field RichEdit.DataField of the list form's current record (on
// the host's edit dialog); the field holds the document as HTML. Unbound it keeps its own.
class TRichEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TRichEdit_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    void Clear() override;

    ui::DBRichEdit* RichEdit;
};

} // namespace frames
