#include "host/FrameHostForms.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/LookupCombo.h"
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

// ---- RecordListForm

RecordListForm::RecordListForm(HostImpl* host, db::AbstractDataSet* records, const QStringList& frameClasses,
                               QWidget* parent)
    : TfmLayer1_FIB(parent), host_(host), records_(records), classes_(frameClasses) {
    setObjectName(QStringLiteral("RecordListForm"));
    setWindowTitle(QStringLiteral("Записи: %1").arg(frameClasses.join(QStringLiteral(", "))));
    resize(640, 320);
    records_->setParent(this);
    source_ = new db::DataSource(records_, this);
    SetCurrentSource(source_);

    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grRecords"));
    grid_->setMultiSelect(false);
    grid_->setDataSource(source_);

    auto* btEdit = new QPushButton(QStringLiteral("Изменить…"), this);
    btEdit->setObjectName(QStringLiteral("btEdit"));
    auto* btClose = new QPushButton(QStringLiteral("Закрыть"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btEdit);
    buttons->addStretch(1);
    buttons->addWidget(btClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("Двойной щелчок или «Изменить…» открывает запись на форме "
                                                "редактирования: фреймы на ней привязаны к этой записи."),
                                 this));
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons);

    connect(btEdit, &QPushButton::clicked, this, [this] { frames::guard([this] { editCurrent(); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(grid_, &ui::DBGrid::activated, this, [this] { frames::guard([this] { editCurrent(); }); });
}

RecordListForm::~RecordListForm() {
    // The grid goes before the records it shows.
    delete grid_;
}

RecordListForm* RecordListForm::forLookup(HostImpl* host, const QString& className, QWidget* parent) {
    // The frame's own list, read free-standing, gives the keys the records point at.
    QWidget scratch;
    std::unique_ptr<frames::TAbsEditFrame> probe(frames::Registry::instance().create(className, &scratch));
    auto* lf = qobject_cast<frames::TAbs_LF*>(probe.get());
    if (!lf) throw std::runtime_error(className.toStdString() + " is not a lookup frame");
    lf->Init();
    const QString keyField = lf->lcSelect->lookupField();
    const QString field = lf->lcSelect->dataField().isEmpty() ? keyField : lf->lcSelect->dataField();
    if (field.isEmpty()) throw std::runtime_error(className.toStdString() + " names no key field");

    auto* records = new db::MemTable;
    db::DataSet* list = lf->pFIBDataSet1;
    const db::Field* key = list->active() ? list->findField(keyField) : nullptr;
    records->addFieldDef(QStringLiteral("N"), db::FieldType::Integer);
    if (key)
        records->addFieldDef(field, key->dataType(), key->size(), key->scale());
    else
        records->addFieldDef(field, db::FieldType::Integer);
    records->addFieldDef(QStringLiteral("SHOWN"), db::FieldType::VarChar, 200);
    records->open();
    int n = 0;
    if (key) {
        const QString display = lf->lcSelect->lookupDisplay().split(QLatin1Char(';')).value(0).trimmed();
        const db::Field* shown = list->findField(display);
        for (list->first(); !list->eof() && n < 5; list->next())
            records->appendRecord({++n, key->value(), shown ? shown->displayText() : QString()});
    }
    records->appendRecord({++n, QVariant(), QString()});
    records->first();
    lf->FormClose();

    auto* form = new RecordListForm(host, records, {className}, parent);
    form->setWindowTitle(QStringLiteral("%1 на форме редактирования").arg(className));
    form->shownColumn = QStringLiteral("SHOWN");
    if (lf->lcSelect->dataField().isEmpty()) form->boundFields.insert(className, field);
    form->grid_->setColumns({QStringLiteral("N"), field, QStringLiteral("SHOWN")});
    form->grid_->setCaptions({{QStringLiteral("N"), QStringLiteral("№")},
                              {field, field + QStringLiteral(" (ключ)")},
                              {QStringLiteral("SHOWN"), QStringLiteral("Показано фреймом")}});
    return form;
}

int RecordListForm::editCurrent() {
    if (!records_->active() || records_->isEmpty()) return 2;
    FrameEditDialog dlg(host_, this);
    dlg.prepare();
    return dlg.exec();
}

// ---- FrameEditDialog

FrameEditDialog::FrameEditDialog(HostImpl* host, RecordListForm* owner)
    : TfmAbsEditDlg(owner), host_(host), list_(owner) {
    setObjectName(QStringLiteral("FrameEditDialog"));
    setWindowTitle(QStringLiteral("Редактирование записи"));
    resize(520, 160);
    body_ = new QWidget(this);
    body_->setObjectName(QStringLiteral("pnFrames"));
    new QVBoxLayout(body_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(body_, 1);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { frames::guard([this] { accept(); }); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { frames::guard([this] { reject(); }); });
}

FrameEditDialog::~FrameEditDialog() {
    frames::guard([this] { closeFrames(false); });
}

frames::TConfigItem* FrameEditDialog::layoutNode(const QString& className) const {
    return host_->LayoutRoot()->ItemByName(QStringLiteral("FrameEditDialog"))->ItemByName(className);
}

void FrameEditDialog::prepare() {
    db::AbstractDataSet* record = list_->records();
    if (!record->inEditMode()) record->edit();
    for (const QString& cls : list_->frameClasses()) {
        frames::TAbsEditFrame* f = frames::Registry::instance().create(cls, body_);
        f->setObjectName(cls);
        frames_.push_back(f);
        body_->layout()->addWidget(f);
        if (auto* lf = qobject_cast<frames::TAbs_LF*>(f); lf && list_->boundFields.contains(cls))
            lf->lcSelect->setDataField(list_->boundFields.value(cls));
        f->Init();
        f->RestoreLayout(layoutNode(cls));
    }
}

void FrameEditDialog::closeFrames(bool posted) {
    if (closed_) return;
    closed_ = true;
    for (frames::TAbsEditFrame* f : frames_) {
        if (posted) f->Save();
        f->SaveLayout(layoutNode(f->objectName()));
        f->FormClose();
    }
}

void FrameEditDialog::accept() {
    db::AbstractDataSet* record = list_->records();
    if (!list_->shownColumn.isEmpty())
        for (frames::TAbsEditFrame* f : frames_)
            if (auto* lf = qobject_cast<frames::TAbs_LF*>(f))
                record->fieldByName(list_->shownColumn)->setValue(lf->lcSelect->displayText());
    if (record->inEditMode()) record->post();
    closeFrames(true);
    TfmAbsEditDlg::accept();
}

void FrameEditDialog::reject() {
    db::AbstractDataSet* record = list_->records();
    if (record->inEditMode()) record->cancel();
    closeFrames(false);
    TfmAbsEditDlg::reject();
}

} // namespace workbench
