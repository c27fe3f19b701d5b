#pragma once
#include "frames/core/AbsEditFrame.h"
#include <QLineEdit>

namespace frames {

// One line of text of the frame's own; the text is kept in the layout as "Edit.Text".
class TEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TEdit_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    bool IsEmpty() override;
    void Clear() override;

    QLineEdit* Edit;
};

} // namespace frames
