#pragma once
#include "frames/lists/BF_Abs.h"

namespace frames {

// Managers (users) chosen for a report filter, kept in FILTER_MANAGER. Dismissed users are
// offered only while "Показывать уволенных пользователей" is down.
class TManager_BF : public TAbs_BF {
    Q_OBJECT
public:
    explicit TManager_BF(QWidget* parent = nullptr);

    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void FillItems() override;
    void pfAvailabledBeforeOpen(db::AbstractDataSet& ds) override;
    void sbUnselClick() override;
    void sbAllUnSelClick() override;
    virtual void sbShowUvolenClick();

    QToolButton* sbShowUvolen;

private:
    int loadedShowUvolen_ = -1; // the SHOW_UVOLEN the lists were last read with
};

} // namespace frames
