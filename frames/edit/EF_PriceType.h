#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBEdit.h"
#include <QComboBox>

namespace frames {

// The type of a price list, chosen by name in ComboBox and stored as a one-letter code in the
// field behind the hidden DBEdit1 (Items and Codes pair up by index). A code that is not one of
// the others shows the last item. Unbound, DBEdit1 keeps the code itself.
class TPriceType_EF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QStringList Items READ Items WRITE SetItems)
    Q_PROPERTY(QStringList Codes MEMBER Codes)
public:
    explicit TPriceType_EF(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    // Empties the code (the field becomes null).
    void Clear() override;

    QStringList Items() const;
    void SetItems(const QStringList& items);
    // The stored code ("" when none).
    QString Code() const { return DBEdit1->text().trimmed(); }
    // The combo index that shows a code.
    int IndexOfCode(const QString& code) const;

    // The user chose an item: its code goes into the field.
    void ComboBoxChange(QObject* sender);

    QComboBox* ComboBox;
    ui::DBEdit* DBEdit1;
    QStringList Codes;

private:
    void showCode();
};

} // namespace frames
