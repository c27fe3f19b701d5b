#include "host/CardForms.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "host/HostImpl.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QDate>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

namespace {

const char* const cardSelect =
    "select c.ID, c.ARTICUL, c.NAME, c.CARDKIND, c.ID_CARDTYPE, c.ALGORITM, c.CUR_TYPE, c.ID_USER,\n"
    "       c.PRICE, c.CREATED, ck.NAME as CARDKIND_NAME, ct.NAME_CARDTYPE, a.NAME as ALGORITM_NAME,\n"
    "       cu.NAME_CUR_TYPE, u.NAME_USER\n"
    "from CARD c\n"
    "  left join CARDKIND ck on ck.ID = c.CARDKIND\n"
    "  left join CARDTYPES ct on ct.ID_CARDTYPE = c.ID_CARDTYPE\n"
    "  left join ALGORITM a on a.ID = c.ALGORITM\n"
    "  left join CUR_TYPE cu on cu.ID_CUR_TYPE = c.CUR_TYPE\n"
    "  left join USERS u on u.ID_USER = c.ID_USER\n";

QString layoutText(const QJsonObject& o) {
    return QString::fromUtf8(QJsonDocument(o).toJson(QJsonDocument::Compact));
}

QJsonObject layoutObject(const QString& text) {
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

} // namespace

// ---- CardListForm

CardListForm::CardListForm(HostImpl* host, QWidget* parent) : TfmLayer1_FIB(parent), host_(host) {
    setObjectName(QStringLiteral("CardListForm"));
    setWindowTitle(QStringLiteral("Карточки товаров"));
    resize(1000, 560);

    dataSet_ = new db::DataSet(host->RvDatabase(), host->pfReadTransaction(), this);
    dataSet_->setObjectName(QStringLiteral("pFIBDataSet1"));
    writeTr_ = new db::Transaction(host->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    dataSet_->setUpdateTransaction(writeTr_);
    dataSet_->setSelectSql(QString::fromLatin1(cardSelect) + QStringLiteral("order by c.NAME"));
    dataSet_->setRefreshSql(QString::fromLatin1(cardSelect) + QStringLiteral("where c.ID = :ID"));
    dataSet_->setUpdateSql(
        QStringLiteral("update CARD set ARTICUL = :ARTICUL, NAME = :NAME, CARDKIND = :CARDKIND, ID_CARDTYPE "
                       "= :ID_CARDTYPE,\n"
                       "  ALGORITM = :ALGORITM, CUR_TYPE = :CUR_TYPE, ID_USER = :ID_USER, PRICE = :PRICE\n"
                       "where ID = :old_ID"));
    dataSet_->setInsertSql(QStringLiteral("insert into CARD (ID, ARTICUL, NAME, CARDKIND, ID_CARDTYPE, "
                                          "ALGORITM, CUR_TYPE, ID_USER, PRICE, CREATED)\n"
                                          "values (:ID, :ARTICUL, :NAME, :CARDKIND, :ID_CARDTYPE, :ALGORITM, "
                                          ":CUR_TYPE, :ID_USER, :PRICE, :CREATED)"));
    dataSet_->setDeleteSql(QStringLiteral("delete from CARD where ID = :old_ID"));
    dataSet_->onNewRecord.connect([this](db::AbstractDataSet& ds) {
        // A new card takes its number from the generator at once, so that the row can be
        // found again after it was posted.
        writeTr_->ensureStarted();
        db::Query q(host_->RvDatabase(), writeTr_);
        q.setSql(QStringLiteral("select gen_id(GEN_CARD_ID, 1) from rdb$database"));
        q.open();
        if (q.next()) ds.fieldByName(QStringLiteral("ID"))->setValue(q.value(0));
        q.close();
        ds.fieldByName(QStringLiteral("CREATED"))->setValue(QDate::currentDate());
        ds.fieldByName(QStringLiteral("ID_USER"))->setValue(frames::CUR_USER);
    });
    source_ = new db::DataSource(dataSet_, this);
    SetCurrentSource(source_);

    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grCards"));
    grid_->setDataSource(source_);

    auto* btEdit = new QPushButton(QStringLiteral("Изменить…"), this);
    btEdit->setObjectName(QStringLiteral("btEdit"));
    auto* btAdd = new QPushButton(QStringLiteral("Добавить…"), this);
    btAdd->setObjectName(QStringLiteral("btAdd"));
    auto* btRefresh = new QPushButton(QStringLiteral("Обновить"), this);
    auto* btFind = new QPushButton(QStringLiteral("&Найти…"), this);
    btFind->setObjectName(QStringLiteral("btFind"));
    btFind->setToolTip(QStringLiteral("Найти карточку по тексту (Ctrl+F)"));
    auto* btColumns = new QPushButton(QStringLiteral("Колонки…"), this);
    auto* btClose = new QPushButton(QStringLiteral("Закрыть"), this);
    setActionIcon(btEdit, "document-edit", QStyle::SP_FileDialogDetailedView);
    setActionIcon(btAdd, "document-new", QStyle::SP_FileIcon);
    setActionIcon(btRefresh, "view-refresh", QStyle::SP_BrowserReload);
    setActionIcon(btFind, "edit-find", QStyle::SP_FileDialogContentsView);
    setActionIcon(btColumns, "view-list-details", QStyle::SP_FileDialogListView);
    setActionIcon(btClose, "window-close", QStyle::SP_DialogCloseButton);

    auto* buttons = new QHBoxLayout;
    for (QPushButton* b : {btEdit, btAdd, btRefresh, btFind, btColumns}) buttons->addWidget(b);
    buttons->addStretch(1);
    buttons->addWidget(btClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons);

    connect(btEdit, &QPushButton::clicked, this, [this] { frames::guard([this] { editCurrent(); }); });
    connect(btAdd, &QPushButton::clicked, this, [this] { frames::guard([this] { addNew(); }); });
    connect(btRefresh, &QPushButton::clicked, this, [this] { frames::guard([this] { refresh(); }); });
    const auto findRow = [this] { frames::guard([this] { host_->FindInGrid(grid_); }); };
    connect(btFind, &QPushButton::clicked, this, findRow);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, findRow);
    connect(btColumns, &QPushButton::clicked, this,
            [this] { frames::guard([this] { host_->CustomizeGrid(grid_); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(grid_, &ui::DBGrid::activated, this, [this] { frames::guard([this] { editCurrent(); }); });
}

CardListForm::~CardListForm() {
    // A form that was never shown or closed keeps its layout too.
    if (!layoutSaved_) frames::guard([this] { saveLayout(); });
    // The grid goes before the dataset it shows.
    delete grid_;
    if (writeTr_->active()) {
        try {
            writeTr_->rollback();
        } catch (const db::Error&) {
        }
    }
}

void CardListForm::open() {
    const frames::WaitCursor wait;
    dataSet_->open();
    grid_->setColumns({"ARTICUL", "NAME", "CARDKIND_NAME", "NAME_CARDTYPE", "ALGORITM_NAME", "NAME_CUR_TYPE",
                       "PRICE", "NAME_USER", "CREATED"});
    grid_->setCaptions({{"ARTICUL", QStringLiteral("Артикул")},
                        {"NAME", QStringLiteral("Наименование")},
                        {"CARDKIND_NAME", QStringLiteral("Вид")},
                        {"NAME_CARDTYPE", QStringLiteral("Тип")},
                        {"ALGORITM_NAME", QStringLiteral("Алгоритм")},
                        {"NAME_CUR_TYPE", QStringLiteral("Валюта")},
                        {"PRICE", QStringLiteral("Цена")},
                        {"NAME_USER", QStringLiteral("Менеджер")},
                        {"CREATED", QStringLiteral("Создана")}});
    for (const auto& [field, width] :
         std::initializer_list<std::pair<const char*, int>>{{"ARTICUL", 80},
                                                            {"NAME", 260},
                                                            {"CARDKIND_NAME", 130},
                                                            {"NAME_CARDTYPE", 160},
                                                            {"ALGORITM_NAME", 180},
                                                            {"NAME_CUR_TYPE", 130},
                                                            {"PRICE", 80},
                                                            {"NAME_USER", 180},
                                                            {"CREATED", 80}})
        grid_->setColumnWidth(grid_->columnOfField(field), width);
    grid_->widenColumnsToContents();
    // The user's own widths, when he has set them, win.
    frames::TConfigItem* node = host_->LayoutRoot()->ItemByName(objectName());
    if (node->IsExists(QStringLiteral("Grid")))
        grid_->restoreLayout(layoutObject(node->ItemByName(QStringLiteral("Grid"))->GetAsString()));
    if (node->IsExists(QStringLiteral("Width")) && node->IsExists(QStringLiteral("Height")))
        resize(node->ItemByName(QStringLiteral("Width"))->GetAsInteger(),
               node->ItemByName(QStringLiteral("Height"))->GetAsInteger());
}

void CardListForm::saveLayout() {
    layoutSaved_ = true;
    frames::TConfigItem* node = host_->LayoutRoot()->ItemByName(objectName());
    node->ItemByName(QStringLiteral("Grid"))->SetAsString(layoutText(grid_->saveLayout()));
    node->ItemByName(QStringLiteral("Width"))->SetAsInteger(width());
    node->ItemByName(QStringLiteral("Height"))->SetAsInteger(height());
    host_->saveLayout();
}

void CardListForm::done(int r) {
    if (!layoutSaved_) frames::guard([this] { saveLayout(); });
    TfmLayer1_FIB::done(r);
}

int CardListForm::editCurrent() {
    if (!dataSet_->active() || dataSet_->isEmpty()) return QDialog::Rejected;
    EditDialog dlg(host_, this);
    dlg.prepare();
    if (!host_->interactive()) {
        dlg.reject();
        return QDialog::Rejected;
    }
    return dlg.exec();
}

int CardListForm::addNew() {
    if (!dataSet_->active()) return QDialog::Rejected;
    dataSet_->append();
    return editCurrent();
}

void CardListForm::refresh() {
    const frames::WaitCursor wait;
    dataSet_->reopen(true);
}

// ---- EditDialog

QStringList EditDialog::frameClasses() {
    return {QStringLiteral("TCardKind_LF"), QStringLiteral("TCardType_LF"), QStringLiteral("TAlgoritm_LF"),
            QStringLiteral("TCursType_LF"), QStringLiteral("TUser_LF")};
}

EditDialog::EditDialog(HostImpl* host, CardListForm* owner)
    : TfmAbsEditDlg(owner), host_(host), list_(owner) {
    setObjectName(QStringLiteral("EditDialog"));
    setWindowTitle(QStringLiteral("Карточка товара"));

    edArticul_ = new QLineEdit(this);
    edArticul_->setObjectName(QStringLiteral("edArticul"));
    edArticul_->setMaxLength(30);
    edName_ = new QLineEdit(this);
    edName_->setObjectName(QStringLiteral("edName"));
    edName_->setMaxLength(150);
    edPrice_ = new QDoubleSpinBox(this);
    edPrice_->setObjectName(QStringLiteral("edPrice"));
    edPrice_->setDecimals(2);
    edPrice_->setRange(0, 1e12);
    edPrice_->setGroupSeparatorShown(true);

    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Артикул"), edArticul_);
    form->addRow(QStringLiteral("Наименование"), edName_);
    form->addRow(QStringLiteral("Цена"), edPrice_);

    // The frames sit on a plain panel: the panel does not count as an owner, the dialog does.
    body_ = new QWidget(this);
    body_->setObjectName(QStringLiteral("pnFrames"));
    auto* bodyLayout = new QVBoxLayout(body_);
    bodyLayout->setContentsMargins(0, 0, 0, 0);

    hosted_ = new HostedFrames(this, [this](const QString& name) { return layoutNode(name); });

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("btOk"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("btCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &EditDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &EditDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(body_);
    layout->addStretch(1);
    layout->addWidget(buttons);
    resize(480, 420);
}

EditDialog::~EditDialog() {
    if (!closed_) {
        frames::guard([this] { cancelEdit(); });
        closeFrames();
    }
}

frames::TConfigItem* EditDialog::layoutNode(const QString& className) const {
    return host_->LayoutRoot()->ItemByName(objectName())->ItemByName(className);
}

void EditDialog::prepare() {
    const frames::WaitCursor wait;
    db::DataSet* ds = list_->dataSet();
    if (!ds->inEditMode()) ds->edit();
    edArticul_->setText(ds->fieldByName(QStringLiteral("ARTICUL"))->asString());
    edName_->setText(ds->fieldByName(QStringLiteral("NAME"))->asString());
    edPrice_->setValue(ds->fieldByName(QStringLiteral("PRICE"))->asDouble());

    for (const QString& cls : frameClasses()) {
        frames::guard([&] {
            frames::TAbsEditFrame* f = frames::Registry::instance().create(cls, body_);
            f->setObjectName(cls);
            body_->layout()->addWidget(f);
            hosted_->open(f);
        });
    }
}

frames::TAbsEditFrame* EditDialog::frame(const QString& className) const {
    for (frames::TAbsEditFrame* f : frames())
        if (f->metaObject()->className() == QStringLiteral("frames::") + className ||
            f->objectName() == className)
            return f;
    return nullptr;
}

bool EditDialog::save() {
    db::DataSet* ds = list_->dataSet();
    db::Transaction* tr = list_->writeTransaction();
    try {
        for (frames::TAbsEditFrame* f : frames()) f->Save();
        const QString articul = edArticul_->text().trimmed();
        if (articul.isEmpty())
            ds->fieldByName(QStringLiteral("ARTICUL"))->clear();
        else
            ds->fieldByName(QStringLiteral("ARTICUL"))->setValue(articul);
        ds->fieldByName(QStringLiteral("NAME"))->setValue(edName_->text().trimmed());
        ds->fieldByName(QStringLiteral("PRICE"))->setValue(edPrice_->value());
        tr->ensureStarted();
        ds->post();
        tr->commit();
    } catch (...) {
        const QString text = frames::errorText(std::current_exception());
        if (tr->active()) {
            try {
                tr->rollback();
            } catch (...) {
            }
        }
        host_->ErrorBox(QStringLiteral("Карточка не сохранена: %1").arg(text));
        return false;
    }
    // The list shows the names of the references: read the row again.
    frames::guard([ds] { ds->refreshRecord(); });
    return true;
}

void EditDialog::cancelEdit() {
    db::DataSet* ds = list_->dataSet();
    if (ds->inEditMode()) ds->cancel();
    db::Transaction* tr = list_->writeTransaction();
    if (tr->active()) tr->rollback();
}

void EditDialog::closeFrames() {
    hosted_->close();
    host_->saveLayout();
    closed_ = true;
}

void EditDialog::accept() {
    if (!frames::guard([this] {
            if (!save()) frames::Abort();
        }))
        return;
    closeFrames();
    TfmAbsEditDlg::accept();
}

void EditDialog::reject() {
    frames::guard([this] { cancelEdit(); });
    closeFrames();
    TfmAbsEditDlg::reject();
}

} // namespace workbench
