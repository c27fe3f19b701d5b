#include "frames/crm/EF_CRMSelect.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "frames/crm/CRMCommon.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/Field.h"
#include "platform/db/Query.h"
#include "platform/widgets/LookupCombo.h"
#include <QApplication>
#include <QBoxLayout>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QSplitter>
#include <QStyle>

namespace frames {

namespace {

// State images: 3 all chosen (a ticked box), 4 some chosen (a box with a square); the others are
// not drawn.
QIcon stateIcon(int kind) {
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(60, 60, 60), 1));
    p.setBrush(Qt::white);
    p.drawRect(2, 2, 11, 11);
    if (kind == 3) {
        p.setPen(QPen(QColor(0, 110, 0), 2));
        QPolygon tick;
        tick << QPoint(4, 8) << QPoint(7, 11) << QPoint(12, 4);
        p.drawPolyline(tick);
    } else if (kind == 4) {
        p.fillRect(5, 5, 6, 6, QColor(0, 110, 0));
    }
    return QIcon(pm);
}

} // namespace

TCRMSelect_Frame::TCRMSelect_Frame(QWidget* parent, const Names& names, bool withClassifs, bool withUvolen)
    : TAbsEditFrame(parent) {
    resize(700, 420);
    lbSelect->hide();
    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");

    auto* split = new QSplitter(Qt::Horizontal, body());
    split->setObjectName("splitter");
    body()->layout()->addWidget(split);

    auto* left = new QWidget(split);
    auto* leftBox = new QVBoxLayout(left);
    leftBox->setContentsMargins(0, 0, 0, 0);
    if (withClassifs) {
        lfClassifs = new TAbs_LF(left);
        lfClassifs->setObjectName("lfClassifs");
        lfClassifs->SetCaption("Классификация");
        lfClassifs->lcSelect->setLookupField("ID_CLASSIF");
        lfClassifs->lcSelect->setLookupDisplay("NAME_CLASSIF");
        leftBox->addWidget(lfClassifs);
    }
    DBTreeView = new ui::ClassifTreeView(left);
    DBTreeView->setObjectName("DBTreeView");
    DBTreeView->setEditTriggers(QAbstractItemView::NoEditTriggers);
    leftBox->addWidget(DBTreeView, 1);
    QList<QIcon> states;
    for (int i = 0; i < 5; ++i) states << (i >= 3 ? stateIcon(i) : QIcon());
    DBTreeView->setStateImages(states);
    QStyle* st = style();
    DBTreeView->setImages({st->standardIcon(QStyle::SP_DirOpenIcon),
                           st->standardIcon(QStyle::SP_DirClosedIcon), st->standardIcon(QStyle::SP_FileIcon),
                           st->standardIcon(QStyle::SP_FileDialogDetailedView)});

    trDataSet = new db::DataSet(this);
    trDataSet->setObjectName("trDataSet");
    dsTree = new db::DataSource(trDataSet, this);

    auto* right = new QWidget(split);
    auto* rightBox = new QVBoxLayout(right);
    rightBox->setContentsMargins(0, 0, 0, 0);
    auto makeGrid = [&](QGroupBox*& box, ui::DBGrid*& grid, db::DataSet*& ds, const char* boxName,
                        const char* gridName, const char* dataName) {
        box = new QGroupBox(right);
        box->setObjectName(boxName);
        auto* l = new QVBoxLayout(box);
        grid = new ui::DBGrid(box);
        grid->setObjectName(gridName);
        grid->setMultiSelect(true);
        grid->setReadOnly(true);
        grid->viewport()->setAcceptDrops(true);
        grid->viewport()->installEventFilter(this);
        l->addWidget(grid);
        ds = new db::DataSet(this);
        ds->setObjectName(dataName);
        grid->setDataSource(new db::DataSource(ds, this));
        grid->horizontalHeader()->setStretchLastSection(true); // the grid's whole width is used
    };
    makeGrid(gbUnSelected, dbgrdUnSelected, ibqryUnSelected, "gbUnSelected", names.unselectedGrid,
             names.unselectedData);
    if (withUvolen) {
        sbShowUvolen = new QToolButton(gbUnSelected);
        sbShowUvolen->setObjectName("sbShowUvolen");
        sbShowUvolen->setCheckable(true);
        sbShowUvolen->setChecked(true);
        sbShowUvolen->setText("Уволенные");
        sbShowUvolen->setToolTip("Показывать уволенных сотрудников");
        static_cast<QVBoxLayout*>(gbUnSelected->layout())->insertWidget(0, sbShowUvolen, 0, Qt::AlignLeft);
        connect(sbShowUvolen, &QToolButton::clicked, this, [this] { guard([&] { sbShowUvolenClick(); }); });
    }
    rightBox->addWidget(gbUnSelected, 1);

    actSelect = new QAction(QString::fromUtf8("\u25bc"), this);
    actSelect->setObjectName(names.selectAction);
    actSelect->setToolTip("Добавить в выбранных менеджеров");
    actUnSelect = new QAction(QString::fromUtf8("\u25b2"), this);
    actUnSelect->setObjectName(names.unselectAction);
    actUnSelect->setToolTip("Удалить из выбранных менеджеров");
    auto* buttons = new QHBoxLayout;
    for (QAction* a : {actSelect, actUnSelect}) {
        auto* b = new QToolButton(right);
        b->setDefaultAction(a);
        buttons->addWidget(b);
    }
    buttons->addStretch();
    rightBox->addLayout(buttons);
    makeGrid(gbSelected, dbgrdSelected, ibqrySelected, "gbSelected", names.selectedGrid, names.selectedData);
    rightBox->addWidget(gbSelected, 1);
    split->setStretchFactor(1, 2);

    for (db::DataSet* ds : {trDataSet, ibqryUnSelected, ibqrySelected}) {
        ds->setDatabase(dmDataBaseFIB()->RvDatabase());
        ds->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    }
    trDataSet->beforeOpen.connect([this](db::AbstractDataSet& ds) { trDataSetBeforeOpen(ds); });
    ibqryUnSelected->beforeOpen.connect([this](db::AbstractDataSet& ds) { GridBeforeOpen(ds); });
    ibqrySelected->beforeOpen.connect([this](db::AbstractDataSet& ds) { GridBeforeOpen(ds); });

    connect(actSelect, &QAction::triggered, this,
            [this] { guard([&] { DoSelection(dbgrdUnSelected, ibqryUnSelected, ChooseSQL); }); });
    connect(actUnSelect, &QAction::triggered, this,
            [this] { guard([&] { DoSelection(dbgrdSelected, ibqrySelected, UnchooseSQL); }); });
    connect(dbgrdUnSelected, &ui::DBGrid::activated, actSelect, &QAction::trigger);
    connect(dbgrdSelected, &ui::DBGrid::activated, actUnSelect, &QAction::trigger);
    connect(DBTreeView, &ui::ClassifTreeView::currentNodeChanged, this,
            [this] { guard([&] { DBTreeViewChange(); }); });
    DBTreeView->viewport()->installEventFilter(this);
    for (ui::DBGrid* g : {dbgrdUnSelected, dbgrdSelected})
        connect(g, &ui::DBGrid::sortKeysChanged, this,
                [this, g] { guard([&] { dbgrdSortMarkingChanged(g); }); });
    for (db::DataSet* ds : {ibqryUnSelected, ibqrySelected})
        ds->afterOpen.connect([this](db::AbstractDataSet&) { alManagersUpdate(); });
    alManagersUpdate();
}

TCRMSelect_Frame::~TCRMSelect_Frame() = default;

void TCRMSelect_Frame::AfterConstruction() {
    TAbsEditFrame::AfterConstruction();
    if (lfClassifs) {
        lfClassifs->AfterConstruction();
        lfClassifs->pFIBDataSet1->setSelectSqlLines(ClassifsSQL);
        lfClassifs->lcSelect->OnDlgClick = nullptr;
        lfClassifs->lcSelect->setShowButton(false);
        lfClassifs->lcSelect->OnChange = [this](QObject*) { guard([&] { lfClassifslcSelectChange(); }); };
    }
}

int TCRMSelect_Frame::MainClassif() const {
    if (!lfClassifs) return -1;
    const QVariant k = lfClassifs->lcSelect->keyValue();
    return k.isValid() && !k.isNull() ? k.toInt() : -1;
}

QString TCRMSelect_Frame::FormatInts(QString sqlTemplate, const QList<int>& values) {
    for (int v : values) {
        const qsizetype at = sqlTemplate.indexOf(QLatin1String("%d"));
        if (at < 0) break;
        sqlTemplate.replace(at, 2, QString::number(v));
    }
    return sqlTemplate;
}

void TCRMSelect_Frame::ExecuteSQL(const QString& sql, const std::function<void(db::Query&, void*)>& callback,
                                  void* data) {
    crm::executeCommitted(pfTransaction, sql, callback, data);
}

void TCRMSelect_Frame::FrameInit() {
    if (lfClassifs) {
        lfClassifs->pFIBDataSet1->close();
        lfClassifs->pFIBDataSet1->open();
    }
    reopenTree();
    OpenDataSets();
    UpdateAllNodes();
}

void TCRMSelect_Frame::reopenTree() {
    trDataSet->close();
    trDataSet->open();
    DBTreeView->build(*trDataSet);
    images_.clear();
    if (db::Field* image = trDataSet->findField("IMAGE_ID")) {
        const int key = trDataSet->fieldByName("ID_CLASSIF")->index();
        for (int row = 0; row < trDataSet->recordCount(); ++row)
            images_.insert(trDataSet->valueAt(row, key).toInt(), trDataSet->valueAt(row, image->index()));
    }
    for (int node : Nodes()) DBTreeView->setImageIndex(node, DBTreeViewGetImage(node));
    if (DBTreeView->currentNode() < 0 && DBTreeView->nodeCount() > 0) {
        const QSignalBlocker block(DBTreeView);
        DBTreeView->setCurrentNode(DBTreeView->childNodes(-1).value(0, 0));
    }
}

void TCRMSelect_Frame::trDataSetBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = trDataSet->findParam("TYPE")) p->setValue(TreeType);
    if (db::Param* p = trDataSet->findParam("CLASSIF")) p->setValue(MainClassif());
}

void TCRMSelect_Frame::GridBeforeOpen(db::AbstractDataSet& ds) {
    auto* d = static_cast<db::DataSet*>(&ds);
    const int node = DBTreeView->currentNode();
    const int classif = node >= 0 ? DBTreeView->nodeKey(node) : -1;
    auto set = [d](const char* name, const QVariant& v) {
        if (db::Param* p = d->findParam(name)) p->setValue(v);
    };
    set("CLASSIF", classif);
    set("V_CLASSIF", classif);
    set("CLASSIF_MAIN", MainClassif());
    set("KIND", Kind);
    set("USER_ID", CUR_USER);
    set("SHOW_UVOLEN", d == ibqrySelected || !sbShowUvolen || sbShowUvolen->isChecked() ? 1 : 0);
}

void TCRMSelect_Frame::OpenDataSets() {
    ibqrySelected->close();
    ibqryUnSelected->close();
    ibqrySelected->open();
    ibqryUnSelected->open();
    alManagersUpdate();
}

int TCRMSelect_Frame::ClientNodeState(int key) const {
    const QString tree = " from GET_CARD_TREE(";
    auto count = [&](const QString& join, const QString& where) {
        auto q = QvSqlQueryRead({"select count(*) as cnt  ", tree, key, ", 0) gct ",
                                 "  left join CRM_PRODUCT p on  gct.id = p.classif ", join, where});
        return q->value("CNT").toInt();
    };
    const int total = count("", "  where (p.id is not null and p.id>0)");
    const int chosen = count("  left join CRM_REPORT_PRODUCT sp on  sp.product_id = p.id ",
                             "  where (p.id is not null and sp.product_id is not null and p.id>0)");
    if (chosen == 0) return -1;
    return chosen == total ? 3 : 4;
}

void TCRMSelect_Frame::UpdateNodeState(int node, bool) {
    if (node < 0) return;
    const int key = DBTreeView->nodeKey(node);
    if (NodeStateProc.isEmpty()) {
        DBTreeView->setStateIndex(node, ClientNodeState(key));
        return;
    }
    const QVariant v = QvSqlValue({"select node_state from " + NodeStateProc + "(", MainClassif(), ", ", key,
                                   ",", Kind, ",", CUR_USER, ")"});
    switch (v.isNull() ? -99 : v.toInt()) {
    case 0:
        DBTreeView->setStateIndex(node, -1);
        break;
    case 1:
        DBTreeView->setStateIndex(node, 4);
        break;
    case 2:
        DBTreeView->setStateIndex(node, 3);
        break;
    default:
        break; // an unknown answer leaves the state as it was
    }
}

void TCRMSelect_Frame::UpdateAllNodes() {
    for (int node : Nodes()) UpdateNodeState(node, false);
    DBTreeView->viewport()->update();
}

int TCRMSelect_Frame::DBTreeViewGetImage(int node) {
    // IMAGE_ID of the node's row; NULL or no row: the plain node image.
    const QVariant img = images_.value(DBTreeView->nodeKey(node));
    return img.isValid() && !img.isNull() ? img.toInt() : 2;
}

void TCRMSelect_Frame::DBTreeViewChange() {
    OpenDataSets();
}

void TCRMSelect_Frame::DBTreeViewMouseDown(Qt::MouseButton button, const QPoint& pos) {
    if (button != Qt::RightButton) return;
    const int node = DBTreeView->nodeAt(pos);
    if (node < 0) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    ibqrySelected->disableControls();
    ibqryUnSelected->disableControls();
    struct Restore {
        TCRMSelect_Frame* f;
        ~Restore() {
            f->ibqrySelected->enableControls();
            f->ibqryUnSelected->enableControls();
            QApplication::restoreOverrideCursor();
        }
    } restore{this};
    if (DBTreeView->currentNode() != node) {
        const QSignalBlocker block(DBTreeView);
        DBTreeView->setCurrentNode(node);
        OpenDataSets();
    }
    // Nothing chosen below the node: choose everything; otherwise unchoose everything chosen.
    db::DataSet* source = ibqrySelected->isEmpty() ? ibqryUnSelected : ibqrySelected;
    const QString& sqlTemplate = ibqrySelected->isEmpty() ? ChooseSQL : UnchooseSQL;
    QList<int> ids;
    const int keyColumn = source->fieldByName(KeyField)->index();
    for (int row = 0; row < source->recordCount(); ++row) ids << source->valueAt(row, keyColumn).toInt();
    Changed = true;
    for (int id : ids) ExecuteSQL(FormatInts(sqlTemplate, {Kind, CUR_USER, id}));
    OpenDataSets();
    UpdateAllNodes();
}

void TCRMSelect_Frame::DoSelection(ui::DBGrid* grid, db::DataSet* dataSet, const QString& sqlTemplate) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    struct Restore {
        ~Restore() { QApplication::restoreOverrideCursor(); }
    } restore;
    if (!dataSet->isEmpty()) {
        const QList<int> ids = crm::markedKeys(grid, dataSet, KeyField);
        Changed = true;
        for (int id : ids) ExecuteSQL(FormatInts(sqlTemplate, {Kind, CUR_USER, id}));
        OpenDataSets();
    }
    UpdateAllNodes();
    grid->clearMarks();
    Changed = true;
}

bool TCRMSelect_Frame::DragOver(ui::DBGrid* target, QObject* source) {
    ui::DBGrid* from = crm::gridOf(source);
    if (target == dbgrdSelected) return from == dbgrdUnSelected && !ibqryUnSelected->isEmpty();
    if (target == dbgrdUnSelected) return from == dbgrdSelected && !ibqrySelected->isEmpty();
    return false;
}

void TCRMSelect_Frame::DragDrop(ui::DBGrid* target, QObject* source) {
    if (!DragOver(target, source)) return;
    QAction* a = target == dbgrdSelected ? actSelect : actUnSelect;
    alManagersUpdate();
    if (a->isEnabled()) a->trigger();
}

void TCRMSelect_Frame::dbgrdSortMarkingChanged(ui::DBGrid* grid) {
    crm::orderOnServer(grid, grid == dbgrdSelected ? ibqrySelected : ibqryUnSelected, baseSelect_[grid],
                       SortAlias);
}

void TCRMSelect_Frame::lfClassifslcSelectChange() {
    if (!lfClassifs) return;
    const QVariant k = lfClassifs->lcSelect->keyValue();
    if (!k.isValid() || k.isNull()) return; // the tree keeps the classifier it shows
    db::Param* p = trDataSet->findParam("CLASSIF");
    if (p && p->value().isValid() && !p->value().isNull() && p->value().toInt() == k.toInt() &&
        trDataSet->active())
        return;
    reopenTree();
    OpenDataSets();
    UpdateAllNodes();
}

void TCRMSelect_Frame::sbShowUvolenClick() {
    OpenDataSets();
}

void TCRMSelect_Frame::alManagersUpdate() {
    actSelect->setEnabled(ibqryUnSelected->active() && !ibqryUnSelected->isEmpty());
    actUnSelect->setEnabled(ibqrySelected->active() && !ibqrySelected->isEmpty());
}

void TCRMSelect_Frame::SetFocus() {
    DBTreeView->setFocus();
}

void TCRMSelect_Frame::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!sbShowUvolen || !node) return;
    TConfigItem* item = node->Find("sbShowUvolen.Down");
    sbShowUvolen->setChecked(item && item->HasValue() ? item->GetAsBoolean() : true);
    db::Param* p = ibqryUnSelected->findParam("SHOW_UVOLEN");
    if (ibqryUnSelected->active() && p && p->value().toInt() != (sbShowUvolen->isChecked() ? 1 : 0))
        OpenDataSets();
}

void TCRMSelect_Frame::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (sbShowUvolen && node) node->ItemByName("sbShowUvolen.Down")->SetAsBoolean(sbShowUvolen->isChecked());
}

bool TCRMSelect_Frame::eventFilter(QObject* o, QEvent* e) {
    if (o == DBTreeView->viewport() && e->type() == QEvent::MouseButtonPress) {
        auto* me = static_cast<QMouseEvent*>(e);
        if (me->button() == Qt::RightButton) {
            const QPoint pos = me->position().toPoint();
            guard([&] { DBTreeViewMouseDown(Qt::RightButton, pos); });
            return true;
        }
        return false;
    }
    ui::DBGrid* grid = crm::gridOf(o);
    if (!grid || (grid != dbgrdSelected && grid != dbgrdUnSelected)) return TAbsEditFrame::eventFilter(o, e);
    if (crm::handleDragStart(grid, e, dragStart_)) return true;
    if (crm::handleDrop(
            e, [this, grid](QObject* source, const QPoint&) { return DragOver(grid, source); },
            [this, grid](QObject* source, const QPoint&) { DragDrop(grid, source); }))
        return true;
    return TAbsEditFrame::eventFilter(o, e);
}

TCRMManagerSelect_Frame::TCRMManagerSelect_Frame(QWidget* parent)
    : TCRMSelect_Frame(parent,
                       {"dbgrdUnSelectedManagers", "dbgrdSelectedManagers", "ibqryUnSelectedManagers",
                        "ibqrySelectedManagers", "actSelectManagers", "actUnSelectManagers"},
                       true, true) {}

TCRMFirmSelect_Frame::TCRMFirmSelect_Frame(QWidget* parent)
    : TCRMSelect_Frame(parent,
                       {"dbgrdUnSelectedFirms", "dbgrdSelectedFirms", "ibqryUnSelectedFirms",
                        "ibqrySelectedFirms", "actSelectFirms", "actUnSelectFirms"},
                       true, false) {}

TCRMProductSelect_Frame::TCRMProductSelect_Frame(QWidget* parent)
    : TCRMSelect_Frame(parent,
                       {"dbgrdUnSelectedFirms", "dbgrdSelectedFirms", "ibqryUnSelectedFirms",
                        "ibqrySelectedFirms", "actSelectFirms", "actUnSelectFirms"},
                       false, false) {}

FRAMES_REGISTER(TCRMManagerSelect_Frame, "crm");
FRAMES_REGISTER(TCRMFirmSelect_Frame, "crm");
FRAMES_REGISTER(TCRMProductSelect_Frame, "crm");

} // namespace frames
