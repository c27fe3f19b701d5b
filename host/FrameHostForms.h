#pragma once
#include "frames/core/HostForms.h"
#include <QHash>
#include <QStringList>
#include <vector>

namespace frames {
class TAbsEditFrame;
class TConfigItem;
namespace db {
class AbstractDataSet;
class DataSource;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

class HostImpl;

// A list form over the records of any dataset, with an edit dialog that shows frames bound to
// the current record through the owner chain, as the system's own list forms host them. The
// frame browser opens one for the frame it shows.
class RecordListForm : public frames::TfmLayer1_FIB {
    Q_OBJECT
public:
    // Lists records (which the form takes over) and edits them with the frames of those classes.
    RecordListForm(HostImpl* host, frames::db::AbstractDataSet* records, const QStringList& frameClasses,
                   QWidget* parent = nullptr);
    ~RecordListForm() override;

    // The list for one lookup frame: records that point at the first rows of the frame's own list
    // and one that points at nothing, in the field the frame edits. Throws on a database error.
    static RecordListForm* forLookup(HostImpl* host, const QString& className, QWidget* parent = nullptr);

    frames::db::AbstractDataSet* records() const { return records_; }
    frames::ui::DBGrid* grid() const { return grid_; }
    const QStringList& frameClasses() const { return classes_; }
    // The field a lookup frame without a field of its own edits here (set before its Init).
    QHash<QString, QString> boundFields;
    // The column that shows, after each edit, the name the lookup frame showed for the key.
    QString shownColumn;

    // Shows the edit dialog over the current record; returns its result.
    int editCurrent();

private:
    HostImpl* host_;
    frames::db::AbstractDataSet* records_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
    QStringList classes_;
};

// The edit dialog of a RecordListForm: its frames, created by class name with the dialog as
// owner, bind themselves to the list's current record in Init. OK posts the record, Cancel
// cancels the edit.
class FrameEditDialog : public frames::TfmAbsEditDlg {
    Q_OBJECT
public:
    FrameEditDialog(HostImpl* host, RecordListForm* owner);
    ~FrameEditDialog() override;

    // Puts the record into edit state, creates the frames, runs Init and RestoreLayout. Throws.
    void prepare();
    const std::vector<frames::TAbsEditFrame*>& frames() const { return frames_; }

    void accept() override;
    void reject() override;

private:
    void closeFrames(bool posted);
    frames::TConfigItem* layoutNode(const QString& className) const;

    HostImpl* host_;
    RecordListForm* list_;
    QWidget* body_;
    std::vector<frames::TAbsEditFrame*> frames_;
    bool closed_ = false;
};

} // namespace workbench
