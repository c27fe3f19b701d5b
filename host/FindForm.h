#pragma once
#include "frames/core/HostForms.h"
#include <QPointer>
#include <QTableView>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace workbench {

// The find form over a grid (TFindForm): shown without waiting beside the grid it searches. "Найти
// далее" moves the grid to the next row (after the current one) that holds the text in any
// shown column, without regard to case (Cyrillic too), going round from the last row to the first
// when "С начала после конца" is on. Any grid will do; the form lets go of a grid that is closed.
class FindForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit FindForm(QWidget* parent = nullptr);

    void setDBGrid(QTableView* grid);
    QTableView* grid() const { return grid_; }
    QLineEdit* edit() const { return edit_; }
    QCheckBox* wrap() const { return wrap_; }
    QLabel* status() const { return status_; }

    // Moves the grid to the next row with the text; false (and the grid where it was) when none.
    bool findNext();

    // The next row after start (-1: from the top) whose shown cells hold text; -1 when none. With
    // wrap the search goes round to the rows before start.
    static int findRow(const QTableView* view, const QString& text, int start, bool wrap);

private:
    QPointer<QTableView> grid_;
    QLineEdit* edit_;
    QCheckBox* wrap_;
    QPushButton* next_;
    QLabel* status_;
};

} // namespace workbench
