#pragma once
#include "frames/core/SetFilter_EF.h"

namespace frames {
namespace db {
class DataSet;
class DataSource;
class MemTable;
} // namespace db
namespace ui {
class DBGrid;
}

// The card-permission filter box: a matrix of permission patterns (rows) against the groups of
// storage places of kind 3 in use (columns, one per group read when the frame is built), each
// cell a check box that says whether the report takes the cards of that pattern in the places of
// that group. The matrix is read from the user's CARDPERMISSION_FILTER rows into the in-memory
// table mdDataSet; a double click or Space on a cell toggles it there and switches the box on;
// ApplyChange stores the whole matrix through CARDPERMISSION_FILTER_UPDATE.
class TCardPermission_FF : public TSetFilter_EF {
    Q_OBJECT
public:
    explicit TCardPermission_FF(QWidget* parent = nullptr);
    ~TCardPermission_FF() override;

    void AfterConstruction() override;
    // The host form closes: toggles not stored yet are stored now, so that the box comes back
    // as the user left it.
    void SaveLayout(TConfigItem* node) override;

    // Builds the matrix statement and the grid's columns from the groups in use now.
    void BuildSQL();
    // Copies pfDataSet's fields and rows into mdDataSet, which the grid shows.
    void CopyDataSets();
    // Stores every cell of the matrix for the current user, all in one write transaction: either
    // the whole matrix is stored or, on a failure (a row another session holds, a lost
    // connection), nothing is, the user is told what failed and the grid keeps what the user set.
    // Returns whether the matrix was stored.
    bool ApplyChange();
    // The user toggled cells that ApplyChange has not stored yet.
    bool Modified() const { return modified_; }

    // ---- handlers
    void DBGridDblClick();
    void DBGridKeyDown(int key);

    ui::DBGrid* DBGrid;
    db::DataSet* pfDataSet;
    db::MemTable* mdDataSet;
    db::DataSource* Ds;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Toggles the current cell of the grid between 1 and 0 (anything but 1 becomes 1).
    void toggleCurrent();
    QString currentFieldName() const;
    // Widths that show every title and pattern name.
    void fitColumns();
    bool modified_ = false;
};

} // namespace frames
