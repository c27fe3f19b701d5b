#include "host/ReferenceForms.h"
#include "frames/core/Guard.h"
#include "frames/core/WaitCursor.h"
#include "host/GridTools.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DataSetModel.h"
#include <QDialogButtonBox>
#include <QFile>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <stdexcept>

static void initHostResources() {
    Q_INIT_RESOURCE(workbench_resources);
}

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

namespace {

std::vector<ReferenceFormDef> readForms() {
    initHostResources();
    QFile f(QStringLiteral(":/workbench/reference_forms.json"));
    if (!f.open(QIODevice::ReadOnly)) throw std::runtime_error("reference_forms.json is missing");
    QJsonParseError err{};
    const QJsonDocument doc = QJsonDocument::fromJson(f.readAll(), &err);
    if (doc.isNull()) throw std::runtime_error("reference_forms.json: " + err.errorString().toStdString());
    std::vector<ReferenceFormDef> forms;
    for (const QJsonValue& v : doc.object().value(QStringLiteral("forms")).toArray()) {
        const QJsonObject o = v.toObject();
        ReferenceFormDef d;
        d.name = o.value(QStringLiteral("name")).toString();
        d.caption = o.value(QStringLiteral("caption")).toString(d.name);
        d.select = o.value(QStringLiteral("select")).toString();
        d.keyColumn = o.value(QStringLiteral("key")).toString();
        for (const QJsonValue& c : o.value(QStringLiteral("columns")).toArray()) {
            const QJsonObject co = c.toObject();
            d.columns.push_back({co.value(QStringLiteral("field")).toString(),
                                 co.value(QStringLiteral("caption")).toString(),
                                 co.value(QStringLiteral("width")).toInt()});
        }
        if (d.name.isEmpty() || d.select.isEmpty() || d.keyColumn.isEmpty())
            throw std::runtime_error("reference_forms.json: entry " + std::to_string(forms.size() + 1) +
                                     " lacks name, select or key");
        d.refNumber = int(forms.size()) + 1;
        forms.push_back(std::move(d));
    }
    return forms;
}

} // namespace

const std::vector<ReferenceFormDef>& referenceForms() {
    static const std::vector<ReferenceFormDef> forms = readForms();
    return forms;
}

const ReferenceFormDef* findReferenceForm(const QString& name) {
    for (const ReferenceFormDef& d : referenceForms())
        if (d.name.compare(name, Qt::CaseInsensitive) == 0) return &d;
    return nullptr;
}

// ---- ReferenceForm

ReferenceForm::ReferenceForm(const ReferenceFormDef& def, db::Database* database, db::Transaction* tr,
                             frames::TRunParams& params, QWidget* parent)
    : TfmPersistentForm(parent), def_(def), params_(params) {
    setObjectName(def.name);
    setWindowTitle(def.caption);
    resize(560, 420);

    dataSet_ = new db::DataSet(database, tr, this);
    dataSet_->setObjectName(QStringLiteral("dsReference"));
    dataSet_->setSelectSql(def.select);
    source_ = new db::DataSource(dataSet_, this);

    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("edSearch"));
    search_->setPlaceholderText(QStringLiteral("Поиск"));
    search_->setClearButtonEnabled(true);
    count_ = new QLabel(this);

    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grReference"));
    grid_->setMultiSelect(false);
    grid_->setDataSource(source_);

    const ChooserButtons b = layOutChooser(this, search_, count_, grid_);
    ok_ = b.ok;
    cancel_ = b.cancel;

    connect(search_, &QLineEdit::textChanged, this, [this] { frames::guard([this] { applyFilter(); }); });
    connect(ok_, &QPushButton::clicked, this, [this] { frames::guard([this] { confirm(); }); });
    connect(cancel_, &QPushButton::clicked, this, [this] { frames::guard([this] { cancel(); }); });
    connect(grid_, &ui::DBGrid::activated, this, [this] { frames::guard([this] { confirm(); }); });
    // A reset of the grid (sorting, reopening) shows every row again: filter once more.
    connect(grid_->dataModel(), &QAbstractItemModel::modelReset, this,
            [this] { frames::guard([this] { applyFilter(); }); });
}

ReferenceForm::~ReferenceForm() {
    // The grid goes before the dataset it shows.
    delete grid_;
    delete source_;
}

void ReferenceForm::open() {
    const frames::WaitCursor wait;
    dataSet_->open();
    if (!def_.columns.isEmpty()) {
        QStringList fields;
        for (const auto& c : def_.columns) fields << c.field;
        grid_->setColumns(fields);
        for (const auto& c : def_.columns) {
            if (!c.caption.isEmpty()) grid_->setColumnCaption(c.field, c.caption);
        }
        for (const auto& c : def_.columns) {
            const int col = grid_->columnOfField(c.field);
            if (col >= 0 && c.width > 0) grid_->setColumnWidth(col, c.width);
        }
    }
    grid_->widenColumnsToContents();
    // The caller names the key column it wants back; a name the list lacks falls back to the
    // form's own key column.
    keyField_ = def_.keyColumn;
    if (!params_.KeyFieldName.isEmpty() && dataSet_->findField(params_.KeyFieldName))
        keyField_ = dataSet_->findField(params_.KeyFieldName)->fieldName();
    const QVariant key = params_.KeyValue;
    if (key.isValid() && !key.isNull() && !dataSet_->locate(keyField_, key)) dataSet_->first();
    applyFilter();
    search_->setFocus();
}

void ReferenceForm::setSearchText(const QString& text) {
    search_->setText(text);
}

int ReferenceForm::visibleRowCount() const {
    int n = 0;
    const int rows = grid_->model() ? grid_->model()->rowCount() : 0;
    for (int r = 0; r < rows; ++r)
        if (!grid_->isRowHidden(r)) ++n;
    return n;
}

void ReferenceForm::applyFilter() {
    QAbstractItemModel* m = grid_->model();
    if (!m) return;
    const QString text = search_->text().trimmed();
    const int rows = m->rowCount();
    const int cols = m->columnCount();
    for (int r = 0; r < rows; ++r) {
        bool match = text.isEmpty();
        for (int c = 0; !match && c < cols; ++c) {
            if (grid_->isColumnHidden(c)) continue;
            match = m->index(r, c).data(Qt::DisplayRole).toString().contains(text, Qt::CaseInsensitive);
        }
        grid_->setRowHidden(r, !match);
    }
    focusFirstVisible();
    count_->setText(QStringLiteral("%1 из %2").arg(visibleRowCount()).arg(rows));
    updateButtons();
}

void ReferenceForm::focusFirstVisible() {
    QAbstractItemModel* m = grid_->model();
    const int cur = dataSet_->active() ? dataSet_->recNo() : -1;
    if (cur >= 0 && cur < m->rowCount() && !grid_->isRowHidden(cur)) {
        grid_->setCurrentIndex(m->index(cur, qMax(0, grid_->currentIndex().column())));
        return;
    }
    for (int r = 0; r < m->rowCount(); ++r) {
        if (!grid_->isRowHidden(r)) {
            grid_->setCurrentIndex(m->index(r, 0));
            if (dataSet_->recNo() != r) dataSet_->setRecNo(r);
            return;
        }
    }
}

QVariant ReferenceForm::currentKey() const {
    if (!dataSet_->active() || dataSet_->isEmpty()) return {};
    const int row = dataSet_->recNo();
    if (row < 0 || grid_->isRowHidden(row)) return {};
    const db::Field* f = dataSet_->findField(keyField_);
    if (!f) return {};
    return dataSet_->valueAt(row, f->index());
}

void ReferenceForm::updateButtons() {
    ok_->setEnabled(currentKey().isValid());
}

void ReferenceForm::confirm() {
    const QVariant key = currentKey();
    if (!key.isValid()) return; // nothing chosen: the form stays open
    params_.KeyValue = key;
    params_.KeyFieldName = keyField_;
    if (key.canConvert<int>()) {
        bool ok = false;
        const int k = key.toInt(&ok);
        if (ok) params_.KeyInt = k;
    }
    done(Confirmed);
}

void ReferenceForm::cancel() {
    done(Cancelled);
}

} // namespace workbench
