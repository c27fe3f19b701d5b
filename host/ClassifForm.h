#pragma once
#include "frames/core/HostForms.h"
#include "frames/core/RunParams.h"
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace frames {
namespace db {
class Database;
class DataSet;
class Transaction;
} // namespace db
namespace ui {
class ClassifTreeView;
}
} // namespace frames

namespace workbench {

// The classifier tree form ("QucikClassifForm"): the branches of one classifier type as a tree,
// opened on the caller's current branch, with a search box. The caller gives the type in
// params.ResultInt, the current branch in params.KeyInt (-1: none) and, in params.Params,
// DONT_ACCEPT_ROOT (true: a branch at the top of the tree is not an answer). OK writes the chosen
// branch into params.ResultInt (and KeyInt, KeyValue) and ends with 1; Cancel ends with 2 and
// leaves the parameters as they were.
class ClassifForm : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    ClassifForm(frames::db::Database* db, frames::db::Transaction* tr, frames::TRunParams& params,
                QWidget* parent = nullptr);
    ~ClassifForm() override;

    enum Result { Confirmed = 1, Cancelled = 2 };
    static constexpr const char* FormName = "QucikClassifForm";

    // Reads the type's name and its branches and positions the tree; throws db::Error.
    void open();

    int classifType() const { return type_; }
    bool dontAcceptRoot() const { return dontAcceptRoot_; }
    // Makes the branch of the key current; false when the tree has no such branch.
    bool setCurrentKey(int key);
    std::optional<int> currentKey() const;

    // Search: a new text looks from the top, findNext from the branch after the current one.
    void setSearchText(const QString& text);
    bool findNext();

    // OK and Cancel as the buttons do them. confirm() refuses (with a message) a top branch when
    // the caller asked so, and does nothing without a current branch.
    void confirm();
    void cancel();
    void reject() override { cancel(); }

    frames::ui::ClassifTreeView* tree() const { return tree_; }
    QLineEdit* searchEdit() const { return search_; }
    QLabel* searchState() const { return found_; }
    QPushButton* okButton() const { return ok_; }
    QPushButton* cancelButton() const { return cancel_; }
    frames::db::DataSet* dataSet() const { return dataSet_; }

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    bool findFrom(int after);
    void updateButtons();

    frames::TRunParams& params_;
    int type_ = 0;
    bool dontAcceptRoot_ = false;
    frames::db::DataSet* dataSet_;
    frames::ui::ClassifTreeView* tree_;
    QLineEdit* search_;
    QLabel* found_;
    QPushButton* ok_;
    QPushButton* cancel_;
};

} // namespace workbench
