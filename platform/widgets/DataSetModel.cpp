#include "platform/widgets/DataSetModel.h"
#include "platform/db/Field.h"
#include "platform/widgets/CalcEdit.h"
#include <QColor>

namespace frames::ui {

DataSetModel::DataSetModel(QObject* parent) : QAbstractTableModel(parent) {}

DataSetModel::DataSetModel(db::DataSource* source, QObject* parent) : QAbstractTableModel(parent) {
    setDataSource(source);
}

DataSetModel::~DataSetModel() = default;

db::AbstractDataSet* DataSetModel::dataSet() const {
    return source_ ? source_->dataSet() : nullptr;
}

void DataSetModel::setDataSource(db::DataSource* source) {
    if (source_ == source) return;
    for (auto& c : conns_) disconnect(c);
    conns_.clear();
    source_ = source;
    connectSource();
    refresh();
}

void DataSetModel::connectSource() {
    if (!source_) return;
    conns_ << connect(source_, &db::DataSource::dataSetReplaced, this, &DataSetModel::refresh);
    conns_ << connect(source_, &db::DataSource::dataSetChanged, this, &DataSetModel::refresh);
    conns_ << connect(source_, &db::DataSource::stateChanged, this, [this] {
        if (!checkRowCount()) onRecordChanged();
    });
    conns_ << connect(source_, &db::DataSource::recordChanged, this, &DataSetModel::onRecordChanged);
    conns_ << connect(source_, &db::DataSource::fieldChanged, this, &DataSetModel::onFieldChanged);
    conns_ << connect(source_, &QObject::destroyed, this, [this] {
        conns_.clear();
        refresh();
    });
}

void DataSetModel::setFieldNames(const QStringList& names) {
    names_ = names;
    refresh();
}

void DataSetModel::setCheckFields(const QStringList& fieldNames) {
    checkNames_ = fieldNames;
    refresh();
}

void DataSetModel::setCaption(const QString& fieldName, const QString& caption) {
    captions_.insert(fieldName.toUpper(), caption);
    const int c = columnOf(fieldName);
    if (c >= 0) emit headerDataChanged(Qt::Horizontal, c, c);
}

QString DataSetModel::caption(int column) const {
    db::Field* f = field(column);
    if (!f) return QString();
    auto it = captions_.constFind(f->fieldName().toUpper());
    return it != captions_.constEnd() ? *it : f->fieldName();
}

void DataSetModel::setDecoration(DecorationFn fn, int column) {
    decoration_ = std::move(fn);
    decorationColumn_ = column;
    if (rowCount() > 0 && columnCount() > column)
        emit dataChanged(index(0, column), index(rowCount() - 1, column), {Qt::DecorationRole});
}

void DataSetModel::setLeadingRow(bool on, const QString& text) {
    if (leading_ == on && leadingText_ == text) return;
    beginResetModel();
    leading_ = on;
    leadingText_ = text;
    endResetModel();
}

void DataSetModel::resolveColumns() {
    columns_.clear();
    checks_.clear();
    db::AbstractDataSet* ds = dataSet();
    if (!ds) return;
    auto add = [&](int fi) {
        columns_.push_back(fi);
        bool check = false;
        for (const QString& n : checkNames_)
            if (n.compare(ds->field(fi)->fieldName(), Qt::CaseInsensitive) == 0) check = true;
        checks_.push_back(check);
    };
    if (names_.isEmpty()) {
        for (int i = 0; i < ds->fieldCount(); ++i) add(i);
    } else {
        for (const QString& n : names_) {
            db::Field* f = ds->findField(n.trimmed());
            if (f) add(f->index());
        }
    }
}

int DataSetModel::liveRowCount() const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active()) return 0;
    return ds->recordCount();
}

void DataSetModel::refresh() {
    beginResetModel();
    resolveColumns();
    rows_ = liveRowCount();
    db::AbstractDataSet* ds = dataSet();
    lastCur_ = ds && ds->active() ? ds->recNo() : -1;
    endResetModel();
}

bool DataSetModel::checkRowCount() {
    if (liveRowCount() == rows_) return false;
    refresh();
    return true;
}

void DataSetModel::emitRowChanged(int dsRow) {
    if (dsRow < 0 || dsRow >= rows_ || columns_.empty()) return;
    const int r = modelRow(dsRow);
    emit dataChanged(index(r, 0), index(r, int(columns_.size()) - 1));
}

void DataSetModel::setQuiet(bool quiet) {
    quiet_ += quiet ? 1 : -1;
    if (quiet_ < 0) quiet_ = 0;
    if (quiet_ == 0) {
        db::AbstractDataSet* ds = dataSet();
        lastCur_ = ds && ds->active() ? ds->recNo() : -1;
    }
}

void DataSetModel::onRecordChanged() {
    if (quiet_) return;
    if (checkRowCount()) return;
    db::AbstractDataSet* ds = dataSet();
    const int cur = ds && ds->active() ? ds->recNo() : -1;
    // The row left behind may have been posted or cancelled.
    if (lastCur_ != cur) emitRowChanged(lastCur_);
    emitRowChanged(cur);
    lastCur_ = cur;
}

void DataSetModel::onFieldChanged(int column) {
    if (quiet_) return;
    if (checkRowCount()) return;
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active()) return;
    const int r = modelRow(ds->recNo());
    if (r < 0 || r >= rowCount()) return;
    for (size_t c = 0; c < columns_.size(); ++c)
        if (columns_[c] == column) emit dataChanged(index(r, int(c)), index(r, int(c)));
}

int DataSetModel::fieldIndex(int column) const {
    return column >= 0 && column < int(columns_.size()) ? columns_[size_t(column)] : -1;
}

db::Field* DataSetModel::field(int column) const {
    db::AbstractDataSet* ds = dataSet();
    const int fi = fieldIndex(column);
    return ds && fi >= 0 && fi < ds->fieldCount() ? ds->field(fi) : nullptr;
}

int DataSetModel::columnOf(const QString& fieldName) const {
    for (int c = 0; c < int(columns_.size()); ++c)
        if (db::Field* f = field(c); f && f->fieldName().compare(fieldName, Qt::CaseInsensitive) == 0)
            return c;
    return -1;
}

bool DataSetModel::isCheckColumn(int column) const {
    return column >= 0 && column < int(checks_.size()) && checks_[size_t(column)];
}

bool DataSetModel::isTrueValue(const QVariant& v) {
    if (!v.isValid() || v.isNull()) return false;
    switch (v.typeId()) {
    case QMetaType::Bool:
        return v.toBool();
    case QMetaType::QString:
    case QMetaType::QByteArray: {
        const QString s = v.toString().trimmed().toUpper();
        return s == "T" || s == "Y" || s == "1" || s == "TRUE" || s == "YES";
    }
    default:
        return v.toDouble() != 0.0;
    }
}

QVariant DataSetModel::valueAt(int dsRow, int fieldIndex) const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || !ds->active() || dsRow < 0 || fieldIndex < 0 || fieldIndex >= ds->fieldCount())
        return QVariant();
    try {
        if (ds->inEditMode() && dsRow == ds->recNo()) return ds->currentValue(fieldIndex);
        if (dsRow >= ds->recordCount()) return QVariant();
        return ds->valueAt(dsRow, fieldIndex);
    } catch (...) {
        return QVariant(); // a row that vanished under a paint: nothing to show
    }
}

QString DataSetModel::valueText(const db::Field* f, const QVariant& v) {
    if (!v.isValid() || v.isNull()) return QString();
    const db::FieldType t = f ? f->dataType() : db::FieldType::VarChar;
    const QString fmt = f ? f->displayFormat : QString();
    switch (t) {
    case db::FieldType::Date:
        return v.toDate().toString(fmt.isEmpty() ? QStringLiteral("dd.MM.yyyy") : fmt);
    case db::FieldType::Time:
        return v.toTime().toString(fmt.isEmpty() ? QStringLiteral("hh:mm:ss") : fmt);
    case db::FieldType::Timestamp:
        return v.toDateTime().toString(fmt.isEmpty() ? QStringLiteral("dd.MM.yyyy hh:mm:ss") : fmt);
    case db::FieldType::Numeric:
    case db::FieldType::Float:
    case db::FieldType::Double:
        // The format of the numeric editors: group separator, decimal comma, its decimals.
        if (!fmt.isEmpty()) return formatFloat(fmt, v.toDouble());
        if (t == db::FieldType::Numeric) return QString::number(v.toDouble(), 'f', f->scale());
        return QString::number(v.toDouble(), 'g', t == db::FieldType::Float ? 7 : 15);
    case db::FieldType::Boolean:
        return v.toBool() ? QStringLiteral("T") : QStringLiteral("F");
    default:
        return v.toString();
    }
}

QString DataSetModel::textAt(int dsRow, int fieldIndex) const {
    db::AbstractDataSet* ds = dataSet();
    if (!ds || fieldIndex < 0 || fieldIndex >= ds->fieldCount()) return QString();
    db::Field* f = ds->field(fieldIndex);
    QString text = valueText(f, valueAt(dsRow, fieldIndex));
    if (f->getText) {
        try {
            f->getText(*f, text, true);
        } catch (...) {
            // A text handler that fails shows the plain value.
        }
    }
    return text;
}

int DataSetModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : rows_ + rowOffset();
}

int DataSetModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : int(columns_.size());
}

QVariant DataSetModel::data(const QModelIndex& index, int role) const {
    ++dataCalls_;
    if (blank_ || !index.isValid() || index.column() >= int(columns_.size())) return QVariant();
    const int dsRow = dataSetRow(index.row());
    const int col = index.column();
    if (dsRow < 0) { // the leading "no value" row
        if (role == Qt::DisplayRole && col == 0) return leadingText_;
        if (role == Qt::DecorationRole && decoration_ && col == decorationColumn_) return decoration_(-1);
        return QVariant();
    }
    if (dsRow >= rows_) return QVariant();
    const int fi = columns_[size_t(col)];
    switch (role) {
    case Qt::DisplayRole:
        if (isCheckColumn(col)) return QVariant();
        return textAt(dsRow, fi);
    case Qt::EditRole:
        return valueAt(dsRow, fi);
    case Qt::CheckStateRole:
        if (!isCheckColumn(col)) return QVariant();
        return isTrueValue(valueAt(dsRow, fi)) ? Qt::Checked : Qt::Unchecked;
    case Qt::DecorationRole:
        if (decoration_ && col == decorationColumn_) return decoration_(dsRow);
        return QVariant();
    case Qt::TextAlignmentRole: {
        db::Field* f = field(col);
        if (isCheckColumn(col)) return int(Qt::AlignCenter);
        if (f && f->isNumeric()) return int(Qt::AlignRight | Qt::AlignVCenter);
        return QVariant();
    }
    default:
        return QVariant();
    }
}

QVariant DataSetModel::headerData(int section, Qt::Orientation o, int role) const {
    if (o == Qt::Horizontal && role == Qt::DisplayRole) return caption(section);
    return QAbstractTableModel::headerData(section, o, role);
}

Qt::ItemFlags DataSetModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return Qt::NoItemFlags;
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}

} // namespace frames::ui
