#pragma once
#include "frames/core/AbsEditFrame.h"
#include <QComboBox>

namespace frames {

// A choice from a fixed list (Items, from the form). The layout item "ComboBox" gives back the
// chosen item when the frame is restored; the frame does not write it itself.
class TComboBox_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QStringList Items READ Items WRITE SetItems)
public:
    explicit TComboBox_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override;
    bool IsEmpty() override;
    void Clear() override;

    QStringList Items() const;
    void SetItems(const QStringList& items);

    QComboBox* ComboBox;
};

} // namespace frames
