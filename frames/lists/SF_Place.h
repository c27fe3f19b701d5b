#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QToolButton>
#include <QVector>

namespace frames {

// The storage places of the current shop that the user chose (SEL_PLACE), in priority order,
// each switched on or off ("Используется"). Moves up and down the order and switches are
// written in the frame's own write transaction, open from Init on, and become permanent when
// the host calls Commit (Rollback drops them).
class TSFPlace : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
public:
    explicit TSFPlace(QWidget* parent = nullptr);
    ~TSFPlace() override;

    void Init() override;
    void FormClose() override;
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;

    // The used places (IS_USED 1) in the list's order, read once and kept until Commit or
    // Rollback.
    int PlaceCount();
    // The key of the i-th used place; -1 out of range.
    int Places(int i);
    void Commit();
    void Rollback();

    // Handlers.
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& ds);
    virtual void pfDataSetAfterOpen(db::AbstractDataSet& ds);
    virtual void aCustomizeExecute();
    virtual void aUpUpdate();
    virtual void aDownUpdate();
    virtual void aUpExecute();
    virtual void aDownExecute();
    // Switches the current place on or off.
    virtual void ToggleUsed();

    ui::DBGrid* dbGrid;
    QToolButton* bbUp;
    QToolButton* bbDown;
    db::DataSet* pfDataSet;
    db::Transaction* pfTransaction;
    db::DataSource* ds;
    QAction* aCustomize;
    QAction* aUp;
    QAction* aDown;

    int Kind = -1;
    bool FFirstShow = false; // set in the constructor; kept for hosts that read it
    QVector<int> FPlaces;    // the used places' cache

private:
    // Moves the current place one step: step -1 up the order, +1 down.
    void move(int step);
    void updateActions();
};

} // namespace frames
