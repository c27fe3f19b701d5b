#pragma once
#include "frames/core/SetFilter_EF.h"
#include "frames/filter/FF_Ticks.h"
#include "frames/multi/LF_MultiAbs.h"

namespace frames {

// The filter box over a multi-select lookup: the lookup sits inside the group box, named after its
// class without the "T" (MultiCountry_LF for TMultiCountry_LF), and the filter's items are the
// lookup's: item 0 the combo's own key ("-1" when it holds none), then the chosen keys, so that
// SQL(field) gives field " in (" keys ")". Picking a row in the combo, adding a key to the list
// and taking one back each tick cbSet.
//
// The concrete filters differ only by their description: the group box's title and the lookup's
// class (the property LookupClass, which builds the lookup when the description is applied).
class TMultiFilter_FF : public TSetFilter_EF {
    Q_OBJECT
    Q_PROPERTY(QString LookupClass READ LookupClass WRITE SetLookupClass)
public:
    explicit TMultiFilter_FF(QWidget* parent = nullptr);
    ~TMultiFilter_FF() override;

    // The inline lookup (nullptr until LookupClass is set).
    TMultiAbs_LF* Lookup() const { return lookup_; }
    QString LookupClass() const { return lookupClass_; }
    // Builds the inline lookup of that class, replacing one built before. Throws for a class
    // that is not a multi-select lookup.
    void SetLookupClass(const QString& className);

    void SetReadOnly(bool value) override;
    void Init() override;
    // The base's "cbSet.Checked", and the lookup's own layout (its combo key and its chosen keys)
    // under a node named after the lookup.
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    void FormShow() override;
    void FormClose() override;
    // Off, or no key chosen.
    bool IsEmpty() override;
    // Empties the lookup's list and combo and switches the filter off.
    void Clear() override;

    // ---- item interface, passed through to the lookup
    Q_INVOKABLE int ItemsCount() override;
    Q_INVOKABLE QString ItemsItem(int i) override;
    Q_INVOKABLE QString ItemsList() override;
    Q_INVOKABLE QString KnownItemsList() override;
    // Adds the key given as text to the lookup's list when the reference table holds it (a text
    // that is not a key, or a key already chosen, changes nothing). Before Init the key waits and
    // is added once the list is read. Does not switch the filter on: that is the host's call.
    Q_INVOKABLE void AddText(const QString& text) override;

    // ---- handlers of the lookup's events: each ticks cbSet.
    virtual void lcSelectChange(QObject* sender);
    virtual void mdListAfterPost(db::AbstractDataSet& dataSet);
    virtual void mdListAfterDelete(db::AbstractDataSet& dataSet);

protected:
    TickGate quiet_;
    // Ticks cbSet unless the frame itself is changing the lookup (Init, restore, clear).
    void tick();

private:
    void addKey(const QString& text);

    TMultiAbs_LF* lookup_ = nullptr;
    QString lookupClass_;
    QStringList pending_; // keys added before the list was read
    bool initialized_ = false;
};

} // namespace frames
