#pragma once
#include "platform/db/Error.h"
#include "platform/db/Event.h"
#include "platform/db/Field.h"
#include <QObject>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

namespace frames::db {

enum class DataSetState { Inactive, Browse, Edit, Insert };

struct SortKey {
    QString field;
    bool ascending = true;
};

struct LocateOptions {
    bool caseInsensitive = false;
    bool partialKey = false; // text values match by prefix
};

// The cursor, state and event interface shared by DataSet (rows from Firebird) and MemTable
// (rows in memory). Rows are addressed through a view order (sorting changes the view, not the
// storage); the current row is recNo() in that order.
class AbstractDataSet : public QObject {
    Q_OBJECT
public:
    explicit AbstractDataSet(QObject* parent = nullptr);
    ~AbstractDataSet() override;

    // ---- fields
    int fieldCount() const { return int(fields_.size()); }
    Field* field(int i) const { return fields_[size_t(i)].get(); }
    Field* findField(const QString& name) const; // case-insensitive
    // Throws db::Error (Configuration): "Field NAME not found in DATASET".
    Field* fieldByName(const QString& name) const;
    QStringList fieldNames() const;

    // ---- life
    void open();
    void close();
    bool active() const { return state_ != DataSetState::Inactive; }
    void setActive(bool a) { a ? open() : close(); }
    // Close and open again; keepPosition tries to return to the same key/bookmark.
    void reopen(bool keepPosition = false);

    // ---- cursor
    int recordCount() const;
    int recNo() const { return cur_; } // 0-based, -1 when empty
    void setRecNo(int row);
    void first();
    void last();
    void next();
    void prior();
    void moveBy(int n);
    bool eof() const { return eof_; }
    bool bof() const { return bof_; }
    bool isEmpty() const { return recordCount() == 0; }

    // ---- locate and bookmarks
    bool locate(const QString& keyFields, const QVariantList& values, LocateOptions o = {});
    bool locate(const QString& keyField, const QVariant& value, LocateOptions o = {}) {
        return locate(keyField, QVariantList{value}, o);
    }
    using Bookmark = qint64; // stable while the dataset stays open (survives sorting)
    Bookmark bookmark() const;
    bool bookmarkValid(Bookmark b) const;
    void gotoBookmark(Bookmark b);

    // ---- states
    DataSetState state() const { return state_; }
    bool inEditMode() const { return state_ == DataSetState::Edit || state_ == DataSetState::Insert; }
    void edit();
    void insert(); // new row before the current one
    void append(); // new row at the end
    void post();
    void cancel();
    // While editing: the row as it was read (what update statements get as old_ values), and a
    // new base for it (the row as it is now in the database) when the user chooses to write his
    // edit over another user's change: the columns he changed keep his values, the others take
    // the current ones. Values are by field index.
    const std::vector<QVariant>& originalValues() const { return oldBuffer_; }
    void rebaseEdit(const std::vector<QVariant>& current);
    void remove(); // delete the current row
    bool modified() const { return modified_; }

    // ---- controls
    void disableControls();
    void enableControls(); // nests; the last call tells controls that everything changed
    bool controlsDisabled() const { return disableCount_ > 0; }

    // ---- order
    void setSortKeys(const QList<SortKey>& keys); // empty = storage order
    const QList<SortKey>& sortKeys() const { return sortKeys_; }

    // ---- filter
    // Rows whose value of keyField the predicate refuses are left out of the view (cursor, count,
    // locate, models); storage keeps them, so changing the filter costs no fetch. An empty
    // predicate shows every row. Applied at once when open and again after every open; the
    // current row stays when it is still shown.
    using KeyFilter = std::function<bool(const QVariant& value)>;
    void setKeyFilter(const QString& keyField, KeyFilter accept);
    bool isFiltered() const { return bool(filter_); }
    // Every row of storage, shown or not (the view's count is recordCount()).
    int storedCount() const { return active() ? storageCount() : 0; }

    // ---- value access for fields and models (row in view order)
    QVariant valueAt(int row, int column) const;
    QVariant currentValue(int column) const; // edit buffer in edit/insert state
    void setCurrentValue(int column, const QVariant& v);
    // Exact decimal text of a Numeric field's current value (a double cannot hold every
    // numeric(18,x)); empty for null.
    QString currentNumericText(int column) const;

    // ---- events (handlers may throw to abort the operation)
    Event<AbstractDataSet&> beforeOpen, afterOpen, beforeClose, afterClose;
    Event<AbstractDataSet&> beforePost, afterPost, beforeDelete, afterDelete;
    Event<AbstractDataSet&> beforeEdit, afterEdit, beforeInsert, afterInsert;
    Event<AbstractDataSet&> beforeCancel, afterCancel, beforeScroll, afterScroll, onNewRecord;

signals:
    // For DataSource and controls. Not emitted while controls are disabled; enableControls
    // emits dataSetChanged once.
    void stateChanged();
    void recordChanged();          // the cursor moved or the current row's values changed
    void fieldChanged(int column); // one field of the edit buffer changed
    void dataSetChanged();         // rows added, removed, reordered, reopened

protected:
    // Storage interface for the two kinds of dataset. Physical rows are indices into storage.
    virtual void doOpen() = 0;  // build fields (addField) and load rows
    virtual void doClose() = 0; // drop rows
    virtual int storageCount() const = 0;
    virtual QVariant storageValue(int physRow, int column) const = 0;
    // Write a posted row. Insert: physRow = -1, returns the new physical row (appended to
    // storage). Edit: stores over physRow, returns it. DataSet runs its SQL here first.
    virtual int storePost(int physRow, const std::vector<QVariant>& oldValues,
                          const std::vector<QVariant>& newValues) = 0;
    virtual void storeDelete(int physRow) = 0; // DataSet runs its delete SQL first
    // Exact text of a stored Numeric value; a null QString lets the caller format the double.
    virtual QString storageNumericText(int physRow, int column) const { return {}; }
    // How error messages name this dataset.
    virtual QString description() const;

    // During doOpen a field with the same index, name, type, size and scale as before the
    // reopen is kept (with its handlers, tag and format), so pointers to fields stay valid.
    Field* addField(const QString& name, FieldType type, int size = 0, int scale = 0);
    void clearFields();
    // Subclasses call this after storage changed wholesale (fetch-all, refresh): the view
    // becomes every storage row in storage order (sorted again when sort keys are set).
    void resetView();
    int physicalRow(int viewRow) const { return view_[size_t(viewRow)]; }
    // Replaces the values of the current row from storage (after a refresh): tells controls.
    void currentRowChanged();

private:
    void checkActive() const;
    void checkBrowseMode();
    void scroll(int row, bool eof, bool bof);
    void beginInsert(bool atEnd);
    void applySort();
    void buildView(); // every storage row that passes the filter, in sort order
    int viewIndexOf(int physRow) const;
    std::vector<QVariant> rowValues(int physRow) const;
    void notifyState();
    void notifyRecord();
    void notifyField(int column);
    void notifyDataSet();

    std::vector<std::unique_ptr<Field>> fields_;
    std::vector<std::unique_ptr<Field>> oldFields_; // reusable during open()
    std::vector<int> view_;                         // view order -> physical row
    std::vector<QVariant> buffer_;                  // edit buffer
    std::vector<QVariant> oldBuffer_;               // the row as read, while editing
    QList<SortKey> sortKeys_;
    QString filterField_;
    KeyFilter filter_;
    std::vector<bool> removed_; // storage rows deleted since storage was last reset
    DataSetState state_ = DataSetState::Inactive;
    int cur_ = -1;
    int insertRow_ = -1; // view position of a row being inserted
    bool eof_ = true, bof_ = true, modified_ = false;
    int disableCount_ = 0;
};

} // namespace frames::db
