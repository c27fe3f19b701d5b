#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QPair>

class QComboBox;

namespace frames {

// A lookup over a fixed list of values instead of a reference table: a plain combo box shows the
// values' texts; the inherited lcSelect is hidden and holds the chosen value (and, bound through
// the edit dialog, writes it into the record). The values come from the description's Items,
// each "value=text" (a value that reads as an integer is an integer), or from a descendant.
class TItemList_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(QStringList Items READ Items WRITE SetItems)
    Q_PROPERTY(QString EmptyText MEMBER EmptyText)
public:
    TItemList_LF(QWidget* parent, const QString& comboName);
    ~TItemList_LF() override;

    void Init() override;
    void SetReadOnly(bool value) override;
    void DataRefresh() override;

    QStringList Items() const { return items_; }
    void SetItems(const QStringList& items);
    // Text of the entry that stands for "no value"; empty: no such entry.
    QString EmptyText;

    // The values offered, in order: (value, text).
    using Item = QPair<QVariant, QString>;
    virtual QList<Item> ListItems();
    // Fills the combo box and shows the frame's value.
    void FillItems();
    // Shows the frame's value; a value the list does not offer is shown as it stands.
    void ShowValue();
    // The user chose an entry.
    void ItemsChange();
    // Delete (without modifiers) clears the value on an editable frame.
    virtual void ItemsKeyDown(int& key, Qt::KeyboardModifiers shift);
    // How a value that the list does not offer is shown.
    virtual QString UnlistedText(const QVariant& value) const;

    QComboBox* itemsCombo() const { return combo_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QComboBox* combo_;
    QStringList items_;
    bool busy_ = false;
};

// The sex of a person.
class TPol_LF : public TItemList_LF {
    Q_OBJECT
public:
    explicit TPol_LF(QWidget* parent = nullptr);
    QComboBox* rxcbPol;
};

// How a printed form is shown.
class TPrView_LF : public TItemList_LF {
    Q_OBJECT
public:
    explicit TPrView_LF(QWidget* parent = nullptr);
    QComboBox* rxcbPrView;
};

} // namespace frames
