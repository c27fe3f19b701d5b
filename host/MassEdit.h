#pragma once
#include "frames/core/HostForms.h"
#include "frames/core/ME_Abs.h"
#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

class QButtonGroup;
class QComboBox;
class QDialogButtonBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace frames {
class TAbsMEditFrame;
class TConfigItem;
namespace db {
class Database;
class Transaction;
} // namespace db
} // namespace frames

namespace workbench {

class HostImpl;
class RecordListForm;

// What a mass edit can set in a table: its editable columns, each with the frame that edits it,
// the conversion of the text values the frames send, and the frame's parameters (CSQL, PAR_n,
// PrecKind, REFADD_KIND, TYPE_CLASSIF …).
struct MassEditColumn {
    QString column;
    QString caption;
    QString frameClass;
    // How the statement turns the text a frame sends into the column's value: "text", "number",
    // "date", "bool" ('T'/'F' as it is), "flag" ('T'/'F' as 1/0), "key" (an integer key; "" is
    // no key, NULL), "key_or_null" (a key whose reference has no row -1: "-1" is NULL too).
    QString conversion;
    QStringList params; // name=value lines for the frame
};

struct MassEditTable {
    QString table;
    QString keyColumn;
    QList<MassEditColumn> columns;
    const MassEditColumn* find(const QString& column) const;
    // The first column edited by a frame of that class, or nullptr.
    const MassEditColumn* findByFrame(const QString& frameClass) const;
};

// The payment documents' editable columns.
const MassEditTable& documentMassEdit();

// The update statement for one column, as the frame of that column expects it: the table joined
// with the marks of :session, the column set to the converted :new_value and, for frames with an
// old value, restricted to rows that still hold :old_value when :use_old_value is 'T'. The
// column must be one of the table's editable columns (std::invalid_argument otherwise); it goes
// into the text as a quoted name, never as given.
QString massEditStatement(const MassEditTable& table, const QString& column);
// The parameter string the column's frame gets (FIELDNAME, SQL and the column's own lines).
QString massEditParams(const MassEditTable& table, const QString& column);

// Runs the frame's update over the records with those keys, in the frame's own transaction: the
// keys are written into MEDIT_MARKS under the session number, the update runs, the marks are
// deleted and everything is committed at once; on any error it is all rolled back and the error
// rethrown. Returns the number of records changed, or -1 when the frame declined to run.
int runMassEdit(frames::TAbsMEditFrame* frame, const QList<int>& keys);

// The host form that the mass-edit frame TLayerFrame_ME embeds for the payment kind of the
// documents: the kinds as a choice of one, sent as the new value; the update does not run until a
// kind is chosen. Its own OK and Cancel are hidden while it is embedded.
class PaymentKindLayer : public frames::TfmAbsGrid_ME {
    Q_OBJECT
public:
    static constexpr const char* FormName = "PaymentKindLayer";
    explicit PaymentKindLayer(QWidget* parent = nullptr);

    void TakeParams(frames::TRunParams& params) override;
    bool CheckChanges() override;
    void FillUpdateParams(frames::db::Query* update) override;
    QWidget* LayerHiddenControl() const override;

    // The chosen kind's code ('1' … '4'), "" while none is chosen.
    QString kind() const;
    void setKind(const QString& code);

private:
    QButtonGroup* kinds_;
    QDialogButtonBox* buttons_;
};

// The forms that mass-edit frames embed, by name (RvGetForm); nullptr for any other name.
std::unique_ptr<QObject> makeMassEditLayer(const QString& name);

// The mass-edit dialog ("Групповое изменение") over a list form: the records marked in the list
// (or its current record), a column to set, and the column's frame. "Применить" runs the update,
// tells how many records changed and reads the list again.
class MassEditDialog : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    MassEditDialog(HostImpl* host, RecordListForm* list, const MassEditTable& table,
                   QWidget* parent = nullptr);
    ~MassEditDialog() override;

    // The keys of the marked records (the current one when none is marked).
    QList<int> keys() const { return keys_; }
    // Shows the frame of the column (one of the table's).
    void chooseColumn(const QString& column);
    frames::TAbsMEditFrame* frame() const { return frame_; }
    QComboBox* columnBox() const { return cbColumn_; }
    // Runs the update; the number of records changed, -1 when nothing ran.
    int apply();

private:
    // Saves the frame's layout (under the column's node) and closes it.
    void closeFrame();
    frames::TConfigItem* layoutNode(const QString& column) const;

    HostImpl* host_;
    RecordListForm* list_;
    const MassEditTable& table_;
    QList<int> keys_;
    QLabel* lbMarked_;
    QComboBox* cbColumn_;
    QVBoxLayout* frameBox_;
    frames::TAbsMEditFrame* frame_ = nullptr;
};

} // namespace workbench
