#pragma once
#include "frames/lookup/LF_Abs.h"
#include "platform/db/MemTable.h"

class QRadioButton;
class QSpinBox;

namespace frames {

// A rounding rule, kept as one integer: -9..9 is a standard rounding to that many decimal
// places (entered in the spin edit stSelect), 10 and above is the key of a special rule of the
// database's rounding list (chosen in spSelect), -10 stands for "no value". The inherited lcSelect
// is hidden and only holds the value (and writes it into the bound record).
class TRound_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TRound_LF(QWidget* parent = nullptr);
    ~TRound_LF() override;

    static constexpr int NoValue = -10;
    static constexpr int MinStandard = -9;
    static constexpr int MaxStandard = 9;

    void AfterConstruction() override;
    void Init() override;
    void SetReadOnly(bool value) override;

    // The rule; -10 when the frame holds none.
    int GetAsInteger();
    // Sets the rule; any value below -9 clears it. Throws on a read-only frame.
    void SetAsInteger(int value);

    // Copies source's key into target when they differ; an empty source clears target and calls
    // target's change handler.
    void SetKeyValue(ui::LookupCombo* target, ui::LookupCombo* source);
    // Shows the value: the kind it belongs to and its number or rule.
    void RefreshV();
    // Reads both rule lists again (after the rounding list changed).
    void RefreshSp();
    // Whether the frame shows a special rule.
    bool IsSpecial() const;

    // Handlers.
    void rbClick();
    void stSelectPropertiesEditValueChanged();
    void stSelectPropertiesButtonClick();
    void stSelectKeyDown(int& key, Qt::KeyboardModifiers shift);
    void spSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    void spSelectClick(QObject* sender);
    void spSelectDlgClick(QObject* sender);
    void mdRoundAfterPost();

    QRadioButton* rbSt;
    QRadioButton* rbSp;
    QSpinBox* stSelect;
    ui::LookupCombo* spSelect;
    db::DataSet* pFIBDataSet2;
    db::DataSource* DataSource2;
    db::MemTable* mdRound;
    db::DataSource* dsRound;
    bool Busy = false;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The key a combo holds; spSelect holds only keys of its own list of special rules.
    QVariant heldKey(ui::LookupCombo* combo) const;
    bool isSpecialRule(const QVariant& key) const;
    void postRound();
    void applyReadOnly();
    void switchKind(bool showing);
    // "Неизвестное правило (N)" for a value that is neither standard nor in the list of rules.
    QString unknownRuleText() const;
};

} // namespace frames
