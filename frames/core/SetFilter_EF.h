#pragma once
#include "frames/core/AbsEditFrame.h"
#include <QCheckBox>
#include <QGroupBox>
#include <QStringList>

class QVBoxLayout;

namespace frames {

// The filter box of a report form's filter panel: a group box around the filter's content and,
// at its bottom, the check box cbSet that says whether the filter takes part in the report query.
// Any change the user makes inside ticks cbSet (descendants call ContentChanged, or connect a
// control's change signal with tickOn), so that a touched filter is on without a second click.
//
// The item interface gives the host the filter's keys: item i as text, the count, the keys joined
// by commas. The base holds no items; list-valued descendants override ItemsCount and ItemsItem and
// get ItemsList, KnownItemsList and SQL from them.
class TSetFilter_EF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(bool Checked READ Checked WRITE SetChecked)
public:
    explicit TSetFilter_EF(QWidget* parent = nullptr);
    ~TSetFilter_EF() override;

    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override; // "cbSet.Checked"
    void SaveLayout(TConfigItem* node) override;
    void Init() override;
    // A filter that is not switched on holds no value for the query.
    bool IsEmpty() override;
    // Switches the filter off; descendants empty their content and call this one.
    void Clear() override;

    // ---- item interface
    virtual int ItemsCount();
    // Item i as text; "" outside 0..ItemsCount()-1.
    virtual QString ItemsItem(int i);
    // Every item, joined by commas.
    virtual QString ItemsList();
    // The items that stand for a real value (not empty, not the "-1" of an empty choice),
    // each once, joined by commas.
    virtual QString KnownItemsList();
    // Adds a value given as text (a key or a pattern) to the filter's content. The base has no
    // list to add to and ignores it.
    virtual void AddText(const QString& text);

    // The condition on the column fieldName: empty when the filter is off or has no known items,
    // otherwise fieldName " in (" keys ")" with every key that is not an integer quoted.
    virtual QString SQL(const QString& fieldName);
    // Whether the content is valid for a query (the host asks before it uses SQL).
    virtual bool IsCorrect();

    bool Checked() const { return cbSet->isChecked(); }
    void SetChecked(bool on) { cbSet->setChecked(on); }

    // Descendants call this from every handler of a change the user made in the content.
    void ContentChanged();

    QGroupBox* GroupBox;
    QCheckBox* cbSet;

signals:
    // The content changed (after cbSet was ticked).
    void filterChanged();

protected:
    // The panel inside the group box, above cbSet, where descendants put their content.
    QWidget* content() const { return content_; }
    QVBoxLayout* contentLayout() const;
    // The items of KnownItemsList, in order, each once.
    QStringList knownItems();

    // Connects a change signal of a control to ContentChanged.
    template <typename Sender, typename Signal> void tickOn(Sender* sender, Signal signal) {
        connect(sender, signal, this, [this] { ContentChanged(); });
    }

private:
    QWidget* content_;
};

} // namespace frames
