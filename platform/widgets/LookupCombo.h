#pragma once
#include "platform/widgets/FieldLink.h"
#include <QElapsedTimer>
#include <QIcon>
#include <QPointer>
#include <QVariant>
#include <QWidget>
#include <functional>

class QComboBox;
class QToolButton;

namespace frames::ui {

class DataSetModel;

// A drop-down lookup over a reference dataset (LookupSource): shows the LookupDisplay column(s)
// of its rows and holds the LookupField value of the chosen row as its key. Bound to DataSource
// and DataField it reads and writes the key in that record; unbound it keeps the key itself.
// A dialog button beside it raises OnDlgClick.
class LookupCombo : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(QString LookupField READ lookupField WRITE setLookupField)
    Q_PROPERTY(QString LookupDisplay READ lookupDisplay WRITE setLookupDisplay)
    Q_PROPERTY(int DropDownCount READ dropDownCount WRITE setDropDownCount)
    Q_PROPERTY(bool IndexSwitch READ indexSwitch WRITE setIndexSwitch)
    Q_PROPERTY(bool EscapeClear READ escapeClear WRITE setEscapeClear)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(bool ShowButton READ showButton WRITE setShowButton)
    Q_PROPERTY(QString EmptyValue READ emptyValue WRITE setEmptyValue)
public:
    explicit LookupCombo(QWidget* parent = nullptr);
    ~LookupCombo() override;

    // Binding of the edited record.
    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds);
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    // The list.
    db::DataSource* lookupSource() const { return lookupSource_; }
    void setLookupSource(db::DataSource* ds);
    QString lookupField() const { return lookupField_; }
    void setLookupField(const QString& f);
    QString lookupDisplay() const { return lookupDisplay_; } // "NAME" or "KOD; NAME"
    void setLookupDisplay(const QString& f);

    int dropDownCount() const { return dropDownCount_; }
    void setDropDownCount(int n);
    bool indexSwitch() const { return indexSwitch_; }
    void setIndexSwitch(bool b) { indexSwitch_ = b; }
    // Delete (without modifiers) empties the value when the combo is not read-only.
    bool escapeClear() const { return escapeClear_; }
    void setEscapeClear(bool b) { escapeClear_ = b; }
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b);
    bool showButton() const;
    void setShowButton(bool b);
    // Text of an extra first list entry that stands for "no value" (empty: no such entry).
    QString emptyValue() const { return emptyValue_; }
    void setEmptyValue(const QString& t);

    // The key: the bound field's value when bound, the combo's own value otherwise. Setting it
    // (bound: the record must be in edit or insert state, or is put into edit) fires OnChange
    // when the value changes.
    QVariant keyValue() const;
    void setKeyValue(const QVariant& key);
    // Empties the key without firing OnChange.
    void clear();
    // Display text of the current key (first display column, through the field's getText).
    QString displayText() const;
    bool isDroppedDown() const;
    void dropDown();           // opens the list (after OnDropDown agreed)
    void closeUp(bool accept); // closes the list; accept = take the highlighted row

    // Events, one handler each as the frames assign and remove them.
    std::function<void(QObject* sender)> OnChange;
    std::function<void(QObject* sender)> OnClick; // the user chose a row from the list
    std::function<void(QObject* sender)> OnDlgClick;
    // key may be set to 0 by the handler: the combo then does not handle the key itself.
    std::function<void(QObject* sender, int& key, Qt::KeyboardModifiers shift)> OnKeyDown;
    // Before the list opens; set show to false to keep it closed.
    std::function<void(QObject* sender, bool& show)> OnDropDown;
    // Image for a list row (current row of the lookup dataset is that row while it runs; row -1
    // is the EmptyValue entry). Images are kept per row until the list is reloaded.
    std::function<QIcon(QObject* sender, int row)> OnGetImage;

    // Type-ahead: the first list row (dataset row) at or after `from`, wrapping, whose display
    // text starts with `prefix` regardless of case; -1 when none. A list ordered by its display
    // column (as "order by" a Cyrillic collation leaves it) is searched by halving, any other
    // row by row.
    int findByPrefix(const QString& prefix, int from = 0) const;
    // What the list's type-ahead does with typed text (the keys of the closed combo and of the
    // open list both end here): moves to the matching row of the text typed so far.
    void keyboardSearch(const QString& text);

    QComboBox* comboBox() const { return combo_; }
    QToolButton* button() const { return button_; }

protected:
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    void rebuildModel();
    void syncFromKey();
    void userChoseRow(int row);
    int rowOfKey(const QVariant& key) const;
    // Added in the implementation.
    bool isBound() const;
    int lookupKeyIndex() const;
    void writeKey(const QVariant& key);
    void listReset();
    bool mayDropDown();
    QVariant rowImage(int row) const;

    QComboBox* combo_ = nullptr;
    QToolButton* button_ = nullptr;
    DataSetModel* model_ = nullptr;
    QPointer<db::DataSource> lookupSource_;
    QString lookupField_, lookupDisplay_, emptyValue_;
    QVariant ownKey_;
    int dropDownCount_ = 8;
    bool indexSwitch_ = true, escapeClear_ = true, readOnly_ = false;
    bool syncing_ = false;
    mutable QHash<QString, int> keyIndex_;
    mutable bool keyIndexValid_ = false;
    mutable bool keyLookedUp_ = false; // one key was looked up since the list was loaded
    mutable int ordered_ = -1;         // list ordered by its display text: -1 not known yet
    QString typed_;                    // type-ahead text typed so far
    QElapsedTimer typedTimer_;
    mutable QHash<int, QIcon> icons_;
    mutable bool inImage_ = false;
    bool tableView_ = false;
    FieldLink link_{this, [this] { syncFromKey(); }};
};

} // namespace frames::ui
