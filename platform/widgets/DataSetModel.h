#pragma once
#include "platform/db/DataSource.h"
#include <QAbstractTableModel>
#include <QHash>
#include <QPointer>
#include <QStringList>
#include <functional>
#include <vector>

namespace frames::ui {

// A table model read straight from a dataset: data() asks the dataset for the value of a row
// (or the edit buffer for the current row in edit or insert state); nothing is copied. Reset
// costs nothing per row, so a list of hundreds of thousands of rows opens at once.
//
// The model follows its DataSource: dataSetChanged and dataSetReplaced reset it, recordChanged
// and fieldChanged refresh the rows concerned, and a change of the row count (insert, delete,
// cancel of an insert) resets it. Columns are every field of the dataset, or the fields named in
// setFieldNames in that order (names the dataset does not have are left out).
//
// Display text goes through the field's getText handler with the row's own value as the text
// handed in; a handler should transform that text rather than read the field, because the
// dataset's cursor is not moved to the row being painted.
class DataSetModel : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit DataSetModel(QObject* parent = nullptr);
    explicit DataSetModel(db::DataSource* source, QObject* parent = nullptr);
    ~DataSetModel() override;

    db::DataSource* dataSource() const { return source_; }
    void setDataSource(db::DataSource* source);
    db::AbstractDataSet* dataSet() const;

    // Fields shown as columns, in order; empty = all fields of the dataset.
    QStringList fieldNames() const { return names_; }
    void setFieldNames(const QStringList& names);
    // Dataset field index of a model column (-1 when out of range).
    int fieldIndex(int column) const;
    db::Field* field(int column) const;
    // Model column of a field (case-insensitive name), -1 when not shown.
    int columnOf(const QString& fieldName) const;

    // Header captions by field name (case-insensitive); the field name is shown otherwise.
    void setCaption(const QString& fieldName, const QString& caption);
    QString caption(int column) const;

    // Fields shown as check boxes (Qt::CheckStateRole): booleans, "T"/"F", "Y"/"N", 1/0.
    void setCheckFields(const QStringList& fieldNames);
    QStringList checkFields() const { return checkNames_; }
    bool isCheckColumn(int column) const;
    static bool isTrueValue(const QVariant& v);

    // Per-row decoration (icon, pixmap or colour) shown in one column; row is the dataset row,
    // -1 for the leading "empty" row.
    using DecorationFn = std::function<QVariant(int row)>;
    void setDecoration(DecorationFn fn, int column = 0);

    // An extra first row standing for "no value", showing text in the first column. Dataset row
    // r is then model row r + 1.
    void setLeadingRow(bool on, const QString& text = QString());
    bool hasLeadingRow() const { return leading_; }
    int rowOffset() const { return leading_ ? 1 : 0; }
    int dataSetRow(int modelRow) const { return modelRow - rowOffset(); }
    int modelRow(int dataSetRow) const { return dataSetRow < 0 ? -1 : dataSetRow + rowOffset(); }

    // Value and text of a dataset row (edit buffer for the current row while it is edited).
    QVariant valueAt(int dsRow, int fieldIndex) const;
    QString textAt(int dsRow, int fieldIndex) const;
    // Text of a value as a control shows it: dates dd.MM.yyyy (or the field's displayFormat),
    // numbers in the C locale (or in a ",0.00" style displayFormat, as the numeric editors show them).
    static QString valueText(const db::Field* f, const QVariant& v);

    // While quiet, cursor moves and field changes are not turned into row updates: for a control
    // that moves the cursor for a moment (to ask for a row's image) and moves it back.
    void setQuiet(bool quiet);
    bool isQuiet() const { return quiet_ > 0; }

    // While blank, data() answers nothing: QComboBox measures the text of every item when its
    // list opens, which a control over a long list suppresses this way.
    void setBlank(bool blank) { blank_ = blank; }

    // Re-reads the dataset's shape (columns, row count) and resets the views.
    void refresh();

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation o, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    // For tests and diagnostics: how many times data() has been asked.
    qint64 dataCalls() const { return dataCalls_; }

private:
    void connectSource();
    void resolveColumns();
    int liveRowCount() const;
    bool checkRowCount(); // resets when the dataset's row count differs; true if it did
    void onRecordChanged();
    void onFieldChanged(int column);
    void emitRowChanged(int dsRow);

    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QStringList names_, checkNames_;
    std::vector<int> columns_;         // model column -> dataset field index
    std::vector<bool> checks_;         // per model column
    QHash<QString, QString> captions_; // upper-case field name -> caption
    DecorationFn decoration_;
    int decorationColumn_ = 0;
    bool leading_ = false;
    QString leadingText_;
    int rows_ = 0; // dataset rows as last told to the views
    int lastCur_ = -1;
    int quiet_ = 0;
    bool blank_ = false;
    mutable qint64 dataCalls_ = 0;
};

} // namespace frames::ui
