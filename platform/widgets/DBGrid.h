#pragma once
#include "platform/db/DataSource.h"
#include <QJsonObject>
#include <QPointer>
#include <QSet>
#include <QTableView>
#include <QVariantMap>
#include <vector>

namespace frames::ui {

class DataSetModel;

// A grid over a dataset. Its current row is the dataset's current row (both ways); rows can be
// marked (a set of bookmarks, so marks survive sorting and refreshes that keep bookmarks);
// clicking a column header sorts by that column (again: reverses), Ctrl+click adds the column as
// a further sort key; the column layout (order, widths, visibility, sort keys) saves to JSON.
//
// Marking: Ctrl+click toggles a row, Shift+click and Shift+arrows mark a range from the anchor,
// Space toggles the current row, Ctrl+A marks every row; a plain click clears the marks.
// Double-click and Enter raise activated().
class DBGrid : public QTableView {
    Q_OBJECT
    Q_PROPERTY(QStringList Columns READ columns WRITE setColumns)
    Q_PROPERTY(QVariantMap Captions READ captions WRITE setCaptions)
    Q_PROPERTY(QStringList CheckFields READ checkFields WRITE setCheckFields)
    Q_PROPERTY(bool MultiSelect READ multiSelect WRITE setMultiSelect)
    Q_PROPERTY(bool SortMarking READ sortMarking WRITE setSortMarking)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
public:
    using Bookmark = qint64;

    explicit DBGrid(QWidget* parent = nullptr);
    ~DBGrid() override;

    db::DataSource* dataSource() const { return source_; }
    void setDataSource(db::DataSource* ds);
    db::AbstractDataSet* dataSet() const;
    DataSetModel* dataModel() const { return model_; }

    // Fields shown, in order (empty: all).
    QStringList columns() const;
    void setColumns(const QStringList& fieldNames);
    QVariantMap captions() const { return captions_; }
    void setCaptions(const QVariantMap& fieldToCaption);
    void setColumnCaption(const QString& fieldName, const QString& caption);
    QStringList checkFields() const;
    void setCheckFields(const QStringList& fieldNames);
    // Model column of a field, -1 when it is not shown.
    int columnOfField(const QString& fieldName) const;
    // Widens every shown column that is narrower than its caption or the texts of its first
    // sampleRows rows, up to maxWidth; never narrows one.
    void widenColumnsToContents(int maxWidth = 360, int sampleRows = 200);

    bool multiSelect() const { return multiSelect_; }
    void setMultiSelect(bool b);
    bool sortMarking() const { return sortMarking_; }
    void setSortMarking(bool b) { sortMarking_ = b; }
    // The grid never edits in place; the flag is kept for form descriptions.
    bool isReadOnly() const { return readOnly_; }
    void setReadOnly(bool b) { readOnly_ = b; }

    // ---- marks
    QList<Bookmark> markedBookmarks() const; // in no particular order
    int markedCount() const { return int(marks_.size()); }
    bool isMarked(int row) const;
    bool isBookmarkMarked(Bookmark b) const { return marks_.contains(b); }
    void setMarked(int row, bool on);
    void markRange(int from, int to); // both ends included
    void clearMarks();
    void selectAll() override; // marks every row (when multiSelect)

    // ---- sort markers
    QList<db::SortKey> sortKeys() const;
    void setSortKeys(const QList<db::SortKey>& keys); // applied to the dataset

    // ---- layout
    QJsonObject saveLayout() const;
    void restoreLayout(const QJsonObject& layout); // unknown or invalid entries are ignored

signals:
    void activated(); // double-click or Enter on a row
    void marksChanged();
    void sortKeysChanged();

protected:
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void keyPressEvent(QKeyEvent* e) override;
    void mousePressEvent(QMouseEvent* e) override;
    void mouseMoveEvent(QMouseEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;
    bool eventFilter(QObject* o, QEvent* e) override;

private:
    struct ColumnState {
        QString field;
        int width = -1;
        bool visible = true;
    };
    std::vector<ColumnState> columnStates() const; // visual order
    void applyColumnStates(const std::vector<ColumnState>& states);
    void beforeReset();
    void afterReset();
    void syncFromDataSet();
    void moveDataSetTo(int row);
    void remapMarks();
    void headerClicked(int section);
    Bookmark bookmarkOfRow(int row) const;
    std::vector<Bookmark> bookmarksOfRows(int from, int to) const;
    int rowOfBookmark(Bookmark b) const;
    template <typename F> void withCursorMoved(F&& f) const;

    DataSetModel* model_ = nullptr;
    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QVariantMap captions_;
    QSet<Bookmark> marks_;
    std::vector<char> markedRows_;  // per row of the current order
    std::vector<ColumnState> held_; // column layout carried across a model reset
    bool haveHeld_ = false;
    int anchor_ = -1;
    bool widened_ = false; // the columns were fitted to the first rows
    bool multiSelect_ = true, sortMarking_ = true, readOnly_ = true;
    bool syncing_ = false, newColumns_ = false;
    mutable bool peeking_ = false;
    Qt::KeyboardModifiers headerMods_;
};

} // namespace frames::ui
