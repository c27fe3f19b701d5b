#pragma once
#include "frames/core/HostForms.h"
#include "host/HostedFrames.h"
#include <QJsonObject>
#include <QList>
#include <QStringList>
#include <vector>

class QHBoxLayout;
class QPushButton;
class QScrollArea;

namespace frames {
class TAbsEditFrame;
class TConfigItem;
namespace db {
class AbstractDataSet;
class DataSet;
class DataSource;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}
} // namespace frames

namespace workbench {

class HostImpl;

// One frame of a record's edit dialog and how the dialog points it at its column.
//  - description: applied to the frame after it was made and before Init, as a form description
//    (the bound control's DataField, a caption, the items of a combo …);
//  - valueProperty: for a frame that does not bind itself, "Component.Property" (or "Property"
//    of the frame) through which the dialog hands it the column's value and takes it back on OK;
//  - keyProperty: for a frame that keeps data of its own about the record (its pages, its
//    address), the frame's property that gets the column's value (the record's key) before Init.
struct EditorSlot {
    QString className;
    QString column;
    QJsonObject description;
    QString valueProperty;
    // Name of the frame on the dialog and of its layout node: the class name, or the class and
    // the column when the class edits more than one column.
    QString name;
    // The record cannot be saved while this frame holds no value.
    bool required = false;
    QString keyProperty = {};

    QString frameName() const { return name.isEmpty() ? className : name; }
};

// Gives a frame the list parameters the workbench keeps for its class (frame_params.json), as a
// host form sets them before Init. Frames without such parameters are left alone.
void applyFrameParams(frames::TAbsEditFrame* frame);

// A list form over the records of any dataset, with an edit dialog that shows frames bound to
// the current record through the owner chain, as the system's own list forms host them. The
// frame browser opens one for the frame it shows; the payment documents are one over a table.
class RecordListForm : public frames::TfmLayer1_FIB {
    Q_OBJECT
public:
    // Lists records (which the form takes over) and edits them with the frames of those classes.
    RecordListForm(HostImpl* host, frames::db::AbstractDataSet* records, const QStringList& frameClasses,
                   QWidget* parent = nullptr);
    RecordListForm(HostImpl* host, frames::db::AbstractDataSet* records, const QList<EditorSlot>& editors,
                   QWidget* parent = nullptr);
    ~RecordListForm() override;

    // The list for one lookup frame: records that point at the first rows of the frame's own list
    // and one that points at nothing, in the field the frame edits. Throws on a database error.
    static RecordListForm* forLookup(HostImpl* host, const QString& className, QWidget* parent = nullptr);

    frames::db::AbstractDataSet* records() const { return records_; }
    frames::ui::DBGrid* grid() const { return grid_; }
    const QList<EditorSlot>& editors() const { return editors_; }
    QStringList frameClasses() const;
    // The column that shows, after each edit, the name the lookup frame showed for the key.
    QString shownColumn;
    // Columns of frames on the edit dialog (1: one frame under the other).
    int editorColumns = 1;
    // The frame the edit dialog gives the focus to first (its name); empty: the first.
    QString focusEditor;

    // Edits are written in this transaction (the records' update transaction), committed when
    // the dialog is confirmed and rolled back when saving fails. None: records in memory.
    void setWriteTransaction(frames::db::Transaction* tr);
    frames::db::Transaction* writeTransaction() const { return writeTr_; }

    // Shows the edit dialog over the current record (or a new one); returns its result.
    int editCurrent();
    int addNew();
    // Shows the current record on the dialog without editing it: the record stays in browse
    // state, so the frames show it as viewed (a lookup reads just the row the record points at),
    // read-only.
    int viewCurrent();
    // Reads the records again, keeping the position.
    void refresh();
    // Puts a button of the form's own after "Добавить…".
    void addButton(QPushButton* button);

private:
    int showDialog(bool viewOnly);
    // Gives every column that a frame edits the display format that frame shows it in (its
    // description's DisplayFormat, else for a number the format of its amount tag).
    void applyEditorFormats();

    HostImpl* host_;
    frames::db::AbstractDataSet* records_;
    frames::db::DataSource* source_;
    frames::ui::DBGrid* grid_;
    frames::db::Transaction* writeTr_ = nullptr;
    QList<EditorSlot> editors_;
    QHBoxLayout* buttons_ = nullptr;
};

// The edit dialog of a RecordListForm: its frames, created by class name with the dialog as
// owner, bind themselves to the list's current record in Init. OK saves the frames' values and
// posts the record (committing the list's write transaction); a failure is reported through the
// host and keeps the dialog open. Cancel cancels the edit. Viewing only, the record is left in
// browse state, the frames are read-only and the one button closes the dialog.
class FrameEditDialog : public frames::TfmAbsEditDlg {
    Q_OBJECT
public:
    FrameEditDialog(HostImpl* host, RecordListForm* owner, bool viewOnly = false);
    ~FrameEditDialog() override;

    // Puts the record into edit state (unless it is being inserted, or only viewed), creates the
    // frames, runs Init and RestoreLayout and hands the unbound frames their values. Throws.
    void prepare();
    const std::vector<frames::TAbsEditFrame*>& frames() const { return frames_; }
    bool viewOnly() const { return viewOnly_; }
    // The frame of that name (see EditorSlot::frameName), or nullptr.
    frames::TAbsEditFrame* frame(const QString& name) const;

    // Saves the frames' values into the record, posts it and commits. A required frame without
    // a value is asked for first. On failure rolls back, reports through the host and returns
    // false with the record still in edit state.
    // A row changed by another user since it was read is shown as it is now, and the user
    // chooses: write his edit over it (true when written) or drop it (the record shows the
    // current row; dropped() is true and accept closes the dialog).
    bool save();
    bool dropped() const { return dropped_; }

    void accept() override;
    void reject() override;

private:
    void cancelEdit();
    void closeFrames();
    void postRecord();
    bool resolveConflict();
    // "column: was, now" for each column where current differs from the row as read.
    QString describeChanges(const std::vector<QVariant>& current) const;
    frames::TConfigItem* layoutNode(const QString& name) const;

    HostImpl* host_;
    RecordListForm* list_;
    bool viewOnly_;
    QScrollArea* scroll_;
    QWidget* body_;
    HostedFrames* hosted_;
    std::vector<frames::TAbsEditFrame*> frames_;
    std::vector<const EditorSlot*> slotOf_;
    bool closed_ = false;
    bool dropped_ = false;
};

} // namespace workbench
