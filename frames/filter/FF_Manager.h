#pragma once
#include "frames/core/SetFilter_EF.h"
#include "frames/filter/FF_Ticks.h"
#include "frames/lists/BF_Manager.h"

namespace frames {

// The managers filter: the dual-list chooser of managers inside the group box. The choice lives
// on the server, in FILTER_MANAGER (ID_USER, KIND, MANAGER), written when the layout is saved;
// Kind, which belongs to the chooser, keeps one filter panel's managers apart from another's. The
// items are the chosen managers' keys. A manager moved into or out of the chosen list ticks cbSet.
class TManager_FF : public TSetFilter_EF {
    Q_OBJECT
    Q_PROPERTY(int Kind READ GetKind WRITE SetKind)
public:
    explicit TManager_FF(QWidget* parent = nullptr);

    // The chooser's kind. Once the lists are read, the choice of the former kind is stored and
    // the lists are read again for the new one.
    void SetKind(int kind);
    int GetKind() const;

    void SetReadOnly(bool value) override;
    void Init() override;
    // The base's "cbSet.Checked", then the chooser's layout under "Manager_BF" (which writes the
    // chosen managers to FILTER_MANAGER).
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    void FormClose() override;
    // Off, or no manager chosen.
    bool IsEmpty() override;
    // Returns every chosen manager to the available list and switches the filter off.
    void Clear() override;

    // ---- item interface: the chosen managers' keys
    Q_INVOKABLE int ItemsCount() override;
    Q_INVOKABLE QString ItemsItem(int i) override;

    // A row was posted to or deleted from the chosen list: ticks cbSet.
    virtual void Manager_BFmdSelectedAfterPost(db::AbstractDataSet& dataSet);
    virtual void Manager_BFmdSelectedAfterDelete(db::AbstractDataSet& dataSet);

    TManager_BF* Manager_BF;

protected:
    TickGate quiet_;
    // For descendants that tick on other events of the chooser.
    TManager_FF(QWidget* parent, bool tickOnChosenList);
    // Ticks cbSet unless the frame itself is filling the chooser (Init, restore, kind, clear).
    void tick();
    void saveChooser(TConfigItem* node);
    void restoreChooser(TConfigItem* node);

private:
    bool filled_ = false;
};

// The managers filter of the card reports: ticks cbSet on a double click in the available list
// and on the select and select-all buttons (not when managers are returned), and restores the
// chooser before its own check box, saving it after.
class TCardManager_FF : public TManager_FF {
    Q_OBJECT
public:
    explicit TCardManager_FF(QWidget* parent = nullptr);

    // The chooser's layout, then the base's (saving keeps the inherited order: the base, then
    // the chooser).
    void RestoreLayout(TConfigItem* node) override;

    virtual void Manager_BFdbgAvailabledDblClick(QObject* sender);
    virtual void Manager_BFsbSelClick(QObject* sender);
    virtual void Manager_BFsbAllSelClick(QObject* sender);
};

} // namespace frames
