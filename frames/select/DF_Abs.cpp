#include "frames/select/DF_Abs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/RunParams.h"
#include "platform/widgets/DataSetModel.h"
#include <QApplication>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QStyle>
#include <QVBoxLayout>
#include <ibase.h>

namespace frames {

void TFIBQuery::setParam(const QString& name, const QVariant& value) {
    if (!hasSql()) return;
    if (db::Param* p = findParam(name)) p->setValue(value);
}

TMXBar::TMXBar(QWidget* parent) : QWidget(parent) {
    setMinimumHeight(fontMetrics().height() + 6);
}

QSize TMXBar::sizeHint() const {
    return {200, fontMetrics().height() + 6};
}

void TMXBar::paintEvent(QPaintEvent*) {
    QPainter p(this);
    p.fillRect(rect(), palette().window());
    if (onDrawPanel) onDrawPanel(p, rect().adjusted(4, 0, -4, 0));
}

namespace {

// The state images of the tree: 3 partly chosen, 4 all chosen; the rest are blank boxes.
QList<QIcon> stateImages() {
    auto box = [](int kind) {
        QPixmap pm(16, 16);
        pm.fill(Qt::transparent);
        QPainter p(&pm);
        p.setRenderHint(QPainter::Antialiasing);
        p.setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
        p.setBrush(Qt::white);
        p.drawRect(QRectF(1.5, 1.5, 12, 12));
        if (kind == 3) p.fillRect(QRectF(4.5, 4.5, 7, 7), QColor(0x30, 0x60, 0xc0));
        if (kind == 4) {
            p.setPen(QPen(QColor(0x10, 0x70, 0x10), 2));
            p.drawPolyline(QPolygonF({QPointF(4, 8), QPointF(7, 11), QPointF(12, 4)}));
        }
        return QIcon(pm);
    };
    return {box(0), box(0), box(0), box(3), box(4)};
}

// The image of every node: a folder, drawn here so that it is there on any style.
QIcon folderIcon() {
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setPen(QColor(0xb0, 0x80, 0x20));
    p.setBrush(QColor(0xf0, 0xc8, 0x50));
    p.drawRect(QRectF(1.5, 4.5, 13, 9));
    p.drawRect(QRectF(1.5, 2.5, 5, 2));
    return QIcon(pm);
}

// The controls of a dataset disabled for a scope.
class ControlsOff {
public:
    explicit ControlsOff(db::AbstractDataSet* d) : d_(d) { d_->disableControls(); }
    ~ControlsOff() { d_->enableControls(); }
    ControlsOff(const ControlsOff&) = delete;
    ControlsOff& operator=(const ControlsOff&) = delete;

private:
    db::AbstractDataSet* d_;
};

// The hourglass for a scope.
struct WaitCursor {
    WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~WaitCursor() { QApplication::restoreOverrideCursor(); }
};

void rollbackQuietly(db::Transaction* tr) {
    if (!tr->active()) return;
    try {
        tr->rollback();
    } catch (...) {
    }
}

// Closes and opens a dataset with its controls disabled.
void reopenQuietly(db::AbstractDataSet* d) {
    ControlsOff off(d);
    d->close();
    d->open();
}

// A node's decoration: its state image and its folder side by side, or the folder alone centred
// in the same room when the node has no state image.
constexpr int kDecorationWidth = 2 * 16 + 2;
constexpr int kStateImageWidth = 17;

// A lock conflict on a selection row, or a second row for the same record, means that another
// session of the user changes the same choice now (or just did).
[[noreturn]] void tellSelectionLocked(std::exception_ptr e) {
    try {
        std::rethrow_exception(e);
    } catch (db::Error& err) {
        if (err.isLockConflict() || err.hasCode(isc_unique_key_violation) || err.hasCode(isc_no_dup))
            err.setUserText(QStringLiteral("Этот выбор сейчас меняет другой сеанс. Запись не перенесена, "
                                           "сделанный ранее выбор сохранён: повторите позже."));
        throw;
    }
}

} // namespace

TAbs_DF::TAbs_DF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(600, 304);
    lbSelect->hide();

    // ---- controls
    cxSplitterTree = new QSplitter(Qt::Horizontal, body());
    cxSplitterTree->setObjectName("cxSplitterTree");
    cxSplitterTree->setChildrenCollapsible(false);
    body()->layout()->addWidget(cxSplitterTree);

    DBTreeView = new ui::ClassifTreeView(cxSplitterTree);
    DBTreeView->setObjectName("DBTreeView");
    DBTreeView->setRootIsDecorated(false);
    DBTreeView->setKeyField("ID_CLASSIF");
    DBTreeView->setParentField("PARENT_CLASSIF");
    DBTreeView->setTextField("NAME_CLASSIF");
    DBTreeView->setImages({folderIcon()});
    // Room for the state image and the folder side by side.
    DBTreeView->setIconSize(QSize(2 * 16 + 2, 16));
    DBTreeView->setStateImages(stateImages());
    DBTreeView->viewport()->installEventFilter(this);

    pnGrids = new QWidget(cxSplitterTree);
    pnGrids->setObjectName("pnGrids");
    auto* gridsLayout = new QVBoxLayout(pnGrids);
    gridsLayout->setContentsMargins(0, 0, 0, 0);
    cxSplitterUnSelected = new QSplitter(Qt::Vertical, pnGrids);
    cxSplitterUnSelected->setObjectName("cxSplitterUnSelected");
    cxSplitterUnSelected->setChildrenCollapsible(false);
    gridsLayout->addWidget(cxSplitterUnSelected);

    // A group box of the splitter holding a grid, with room for what goes under it.
    auto makeGridBox = [this](const char* boxName, const char* gridName, ui::DBGrid*& grid) {
        auto* box = new QGroupBox(cxSplitterUnSelected);
        box->setObjectName(boxName);
        auto* l = new QVBoxLayout(box);
        l->setContentsMargins(2, 2, 2, 2);
        l->setSpacing(2);
        grid = new ui::DBGrid(box);
        grid->setObjectName(gridName);
        l->addWidget(grid);
        return std::pair{box, l};
    };
    QVBoxLayout* upper = nullptr;
    std::tie(gbUnSelected, upper) = makeGridBox("gbUnSelected", "DBGridUnSelected", DBGridUnSelected);
    PanelBtn = new QWidget(gbUnSelected);
    PanelBtn->setObjectName("PanelBtn");
    auto* buttons = new QHBoxLayout(PanelBtn);
    buttons->setContentsMargins(0, 0, 0, 0);
    auto makeButton = [this](const char* name, const QString& hint, QStyle::StandardPixmap icon) {
        auto* b = new QToolButton(PanelBtn);
        b->setObjectName(name);
        b->setToolTip(hint);
        b->setAutoRaise(true);
        b->setFixedSize(22, 22);
        b->setCursor(Qt::PointingHandCursor);
        b->setIcon(QApplication::style()->standardIcon(icon));
        return b;
    };
    sbtnSelectClients = makeButton("sbtnSelectClients", QStringLiteral("Добавить в выбранных клиентов"),
                                   QStyle::SP_ArrowDown);
    sbtnUnSelectClients = makeButton("sbtnUnSelectClients", QStringLiteral("Удалить из выбранных клиентов"),
                                     QStyle::SP_ArrowUp);
    buttons->addStretch();
    buttons->addWidget(sbtnSelectClients);
    buttons->addWidget(sbtnUnSelectClients);
    buttons->addStretch();
    upper->addWidget(PanelBtn);

    QVBoxLayout* lower = nullptr;
    std::tie(gbSelected, lower) = makeGridBox("gbSelected", "DBGridSelected", DBGridSelected);
    SelectedMXBar = new TMXBar(gbSelected);
    SelectedMXBar->setObjectName("SelectedMXBar");
    lower->addWidget(SelectedMXBar);

    cxSplitterTree->setSizes({169, 431});
    cxSplitterTree->setStretchFactor(1, 1);
    cxSplitterUnSelected->setSizes({146, 158});

    aSearch = new QAction(QStringLiteral("Поиск"), this);
    aSearch->setObjectName("aSearch");
    aSearch->setToolTip(QStringLiteral("Поиск"));
    aSearch->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    aSearch->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(aSearch);

    // ---- data
    db::Database* database = dmDataBaseFIB()->RvDatabase();
    db::Transaction* read = dmDataBaseFIB()->pfReadTransaction();
    pfWriteTransaction = new db::Transaction(database, db::TransactionOptions::writeNoWait(), this);
    pfWriteTransaction->setObjectName("pfWriteTransaction");
    auto makeDataSet = [&](const char* name) {
        auto* d = new db::DataSet(database, read, this);
        d->setObjectName(name);
        return d;
    };
    trDataSet = makeDataSet("trDataSet");
    trDataSet->setSelectSql(
        QStringLiteral("select id_classif, parent_classif, name_classif,\n"
                       "       id_classif_type as type_classif\n"
                       " from CLASSIF_TREE(?type)\n"
                       " order by level_classif, parent_classif, name_classif collate PXW_CYRL "));
    pfDataSet = makeDataSet("pfDataSet");
    pfSelected = makeDataSet("pfSelected");
    dsClassif = new db::DataSource(trDataSet, this);
    dsClassif->setObjectName("dsClassif");
    ds = new db::DataSource(pfDataSet, this);
    ds->setObjectName("ds");
    dsSelected = new db::DataSource(pfSelected, this);
    dsSelected->setObjectName("dsSelected");
    auto makeQuery = [&](const char* name, db::Transaction* tr) {
        auto* q = new TFIBQuery(database, tr, this);
        q->setObjectName(name);
        return q;
    };
    pfClassItemsCount = makeQuery("pfClassItemsCount", read);
    pfSelectItem = makeQuery("pfSelectItem", pfWriteTransaction);
    pfUnSelectItem = makeQuery("pfUnSelectItem", pfWriteTransaction);
    pfIsEmpty = makeQuery("pfIsEmpty", read);
    pfSelectedList = makeQuery("pfSelectedList", read);
    pfAddSelected = makeQuery("pfAddSelected", pfWriteTransaction);
    pfClearInvalid = makeQuery("pfClearInvalid", pfWriteTransaction);
    pfClassItemsCounts = makeQuery("pfClassItemsCounts", read);

    DBTreeView->setDataSource(dsClassif);
    DBGridUnSelected->setDataSource(ds);
    DBGridSelected->setDataSource(dsSelected);

    // ---- events
    trDataSet->beforeOpen.connect([this](db::AbstractDataSet& d) { trDataSetBeforeOpen(d); });
    for (db::DataSet* d : {pfDataSet, pfSelected}) {
        d->beforeOpen.connect([this](db::AbstractDataSet& x) { pfDataSetBeforeOpen(x); });
        d->beforeClose.connect([this](db::AbstractDataSet& x) { pfDataSetBeforeClose(x); });
        d->afterOpen.connect([this](db::AbstractDataSet& x) { pfDataSetAfterOpen(x); });
    }
    connect(DBTreeView, &ui::ClassifTreeView::currentNodeChanged, this,
            [this](int node) { guard([&] { DBTreeViewChange(node); }); });
    connect(DBGridUnSelected, &ui::DBGrid::activated, this, [this] { guard([&] { TransferRecDown(); }); });
    connect(DBGridSelected, &ui::DBGrid::activated, this, [this] { guard([&] { TransferRecUp(); }); });
    connect(sbtnSelectClients, &QToolButton::clicked, this,
            [this] { guard([&] { sbtnSelectClientsClick(); }); });
    connect(sbtnUnSelectClients, &QToolButton::clicked, this,
            [this] { guard([&] { sbtnUnSelectClientsClick(); }); });
    for (ui::DBGrid* g : {DBGridUnSelected, DBGridSelected}) {
        connect(g, &ui::DBGrid::sortKeysChanged, this,
                [this, g] { guard([&] { DBGridSortMarkingChanged(g); }); });
        g->installEventFilter(this);
    }
    connect(aSearch, &QAction::triggered, this,
            [this] { guard([&] { aSearchExecute(QApplication::focusWidget()); }); });
    SelectedMXBar->onDrawPanel = [this](QPainter& p, const QRect& r) {
        guard([&] { SelectedMXBarDrawPanel(p, r); });
    };
}

TAbs_DF::~TAbs_DF() {
    // Grids and tree let go of the datasets before those close.
    DBGridUnSelected->setDataSource(nullptr);
    DBGridSelected->setDataSource(nullptr);
    DBTreeView->setDataSource(nullptr);
    rollbackQuietly(pfWriteTransaction);
}

void TAbs_DF::AfterConstruction() {
    Kind = -1;
    CurClassif = -1;
    LastUnSelectedID = -1;
    LastSelectedID = -1;
    UserID = CUR_USER;
    TAbsEditFrame::AfterConstruction();
    baseSelect_[pfDataSet] = pfDataSet->selectSql();
    baseSelect_[pfSelected] = pfSelected->selectSql();
}

void TAbs_DF::Init() {
    TAbsEditFrame::Init();
    trDataSet->open();
    markNodeImages();
    // Start at the first root when nothing else was chosen.
    if (DBTreeView->currentNode() < 0 && treeNodeCount() > 0) {
        const QList<int> roots = DBTreeView->childNodes(-1);
        if (!roots.isEmpty()) DBTreeView->setCurrentNode(roots.first());
    }
    // The first level shows; deeper branches open with their buttons.
    for (int root : DBTreeView->childNodes(-1)) DBTreeView->expand(DBTreeView->indexOfNode(root));
    const int node = DBTreeView->currentNode();
    CurClassif = node >= 0 ? DBTreeView->nodeKey(node) : -1;
    pfDataSet->open();
    pfSelected->open();
    initialized_ = true;
    CalcMX(true);
}

void TAbs_DF::FormClose() {
    pfDataSet->close();
    pfSelected->close();
    trDataSet->close();
    TAbsEditFrame::FormClose();
}

// ---------------------------------------------------------------- kind and datasets

void TAbs_DF::SetKind(int kind) {
    Kind = kind;
}

void TAbs_DF::trDataSetBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = trDataSet->findParam("TYPE")) p->setValue(TreeType);
}

void TAbs_DF::pfDataSetBeforeOpen(db::AbstractDataSet& dataSet) {
    auto* d = static_cast<db::DataSet*>(&dataSet);
    if (db::Param* p = d->findParam("ID_CLASSIF")) p->setValue(CurClassif);
    if (db::Param* p = d->findParam("KIND")) p->setValue(Kind);
    if (db::Param* p = d->findParam("USER_ID")) p->setValue(UserID);
}

void TAbs_DF::pfDataSetBeforeClose(db::AbstractDataSet& dataSet) {
    if (dataSet.isEmpty() || dataSet.recNo() < 0) return;
    const int id = dataSet.fieldByName("ID")->asInteger();
    if (&dataSet == pfDataSet)
        LastUnSelectedID = id;
    else
        LastSelectedID = id;
}

void TAbs_DF::pfDataSetAfterOpen(db::AbstractDataSet& dataSet) {
    const bool upper = &dataSet == pfDataSet;
    (upper ? UnSelectedCount : SelectedCount) = dataSet.recordCount();
    SelectedMXBar->update();
    const int last = upper ? LastUnSelectedID : LastSelectedID;
    if (last != -1 && !dataSet.isEmpty()) dataSet.locate("ID", last);
}

void TAbs_DF::UpdateDataSet() {
    for (db::DataSet* d : {pfDataSet, pfSelected})
        if (d->active()) reopenQuietly(d);
}

void TAbs_DF::ReopenDataSet() {
    DBTreeView->setUpdatesEnabled(false);
    const std::optional<int> key = DBTreeView->currentKey();
    reopening_ = true;
    try {
        pfSelected->close();
        pfDataSet->close();
        trDataSet->close();
        trDataSet->open();
        markNodeImages();
        // The node shown before, when the new tree still has it; else the first one.
        if (!(key && DBTreeView->setCurrentKey(*key)) && DBTreeView->currentNode() < 0 && treeNodeCount() > 0)
            DBTreeView->setCurrentNode(DBTreeView->childNodes(-1).value(0, 0));
        reopening_ = false;
        const int node = DBTreeView->currentNode();
        CurClassif = node >= 0 ? DBTreeView->nodeKey(node) : -1;
        pfDataSet->open();
        pfSelected->open();
        cacheNodeCounts();
        for (int n = treeNodeCount() - 1; n >= 0; --n) {
            ReadMXCounts(n);
            UpdateSelectImages(n);
            UpdateSelectText(n);
        }
        dropCountCache();
    } catch (...) {
        dropCountCache();
        reopening_ = false;
        DBTreeView->setUpdatesEnabled(true);
        throw;
    }
    DBTreeView->setUpdatesEnabled(true);
}

// ---------------------------------------------------------------- counts and marks

void TAbs_DF::cacheNodeCounts() {
    countCache_.clear();
    if (!pfClassItemsCounts->hasSql()) return;
    pfClassItemsCounts->setParam("USER_ID", UserID);
    pfClassItemsCounts->setParam("KIND", Kind);
    QHash<int, std::pair<int, int>> own;
    pfClassItemsCounts->open();
    while (pfClassItemsCounts->next())
        own.insert(pfClassItemsCounts->value(0).toInt(),
                   {pfClassItemsCounts->value(1).toInt(), pfClassItemsCounts->value(2).toInt()});
    pfClassItemsCounts->close();
    // Children come after their parents in tree order: going backwards, every node is complete
    // before it is added to its parent.
    const QList<int> order = DBTreeView->nodesInTreeOrder();
    for (auto it = order.crbegin(); it != order.crend(); ++it) {
        std::pair<int, int>& mine = countCache_[*it];
        const std::pair<int, int> o = own.value(DBTreeView->nodeKey(*it));
        mine.first += o.first;
        mine.second += o.second;
        const int parent = DBTreeView->parentNode(*it);
        if (parent >= 0) {
            std::pair<int, int>& up = countCache_[parent];
            up.first += mine.first;
            up.second += mine.second;
        }
    }
}

void TAbs_DF::ReadMXCounts(int node) {
    if (auto it = countCache_.constFind(node); it != countCache_.constEnd()) {
        NodeCount = it->first;
        NodeSelected = it->second;
        return;
    }
    pfClassItemsCount->paramByName("ID_CLASSIF")->setValue(DBTreeView->nodeKey(node));
    pfClassItemsCount->paramByName("USER_ID")->setValue(UserID);
    pfClassItemsCount->paramByName("KIND")->setValue(Kind);
    pfClassItemsCount->open();
    if (pfClassItemsCount->next()) {
        NodeCount = pfClassItemsCount->value(0).toInt();
        NodeSelected = pfClassItemsCount->value(1).toInt();
    } else {
        NodeCount = NodeSelected = 0;
    }
    pfClassItemsCount->close();
}

void TAbs_DF::UpdateSelectImages(int node) {
    int image = -1;
    if (NodeSelected != 0) image = NodeSelected == NodeCount ? 4 : 3;
    DBTreeView->setStateIndex(node, image);
    carrySelectImages(node);
}

void TAbs_DF::markNodeImages() {
    for (int n = 0; n < treeNodeCount(); ++n) DBTreeView->setImageIndex(n, 0);
}

void TAbs_DF::carrySelectImages(int node) {
    for (int p = DBTreeView->parentNode(node); p >= 0; p = DBTreeView->parentNode(p)) {
        bool all = true, some = false;
        for (int c : DBTreeView->childNodes(p)) {
            const int s = DBTreeView->stateIndex(c);
            all = all && s == 4;
            some = some || s == 3 || s == 4;
        }
        DBTreeView->setStateIndex(p, all ? 4 : some ? 3 : -1);
    }
}

void TAbs_DF::UpdateSelectText(int node) {
    if (!ShowNodeCounts || !DBTreeView->childNodes(node).isEmpty()) return;
    const int id = DBTreeView->nodeKey(node);
    QString name;
    const int pos = trDataSet->recNo();
    if (trDataSet->locate("ID_CLASSIF", id)) name = trDataSet->fieldByName("NAME_CLASSIF")->asString();
    if (pos >= 0) trDataSet->setRecNo(pos);
    DBTreeView->setNodeText(node, name + QStringLiteral(" (") + QString::number(NodeSelected) +
                                      QStringLiteral(" из ") + QString::number(NodeCount) +
                                      QStringLiteral(")"));
}

// The counts of every node come from one grouped statement (pfClassItemsCounts) added up the
// tree when the frame has one; otherwise from pfClassItemsCount, prepared once and executed per
// node.
void TAbs_DF::CalcMX(bool full) {
    MXCount = 0;
    MXSelected = 0;
    const int current = DBTreeView->currentNode();
    DBTreeView->setUpdatesEnabled(false);
    try {
        cacheNodeCounts();
        for (int n = treeNodeCount() - 1; n >= 0; --n) {
            ReadMXCounts(n);
            if (full) {
                UpdateSelectImages(n);
                UpdateSelectText(n);
            }
            if (DBTreeView->childNodes(n).isEmpty()) {
                MXCount += NodeCount;
                MXSelected += NodeSelected;
            }
        }
    } catch (...) {
        dropCountCache();
        DBTreeView->setUpdatesEnabled(true);
        throw;
    }
    dropCountCache();
    if (current >= 0 && DBTreeView->currentNode() != current) DBTreeView->setCurrentNode(current);
    DBTreeView->setUpdatesEnabled(true);
    SelectedMXBar->update();
}

// ---------------------------------------------------------------- moving records

void TAbs_DF::execWrite(TFIBQuery* q) {
    pfWriteTransaction->ensureStarted();
    try {
        q->exec();
        pfWriteTransaction->commit();
    } catch (...) {
        rollbackQuietly(pfWriteTransaction);
        tellSelectionLocked(std::current_exception());
    }
}

void TAbs_DF::transferMarked(ui::DBGrid* grid, db::DataSet* dataSet, TFIBQuery* statement) {
    if (!dataSet->active() || dataSet->isEmpty()) return;
    ControlsOff upperOff(pfDataSet), lowerOff(pfSelected);
    int classif = -1;
    auto transferOne = [&] {
        statement->paramByName("ID")->setValue(dataSet->fieldByName("ID")->value());
        statement->paramByName("USER_ID")->setValue(UserID);
        statement->paramByName("KIND")->setValue(Kind);
        if (db::Field* f = dataSet->findField("CLASSIF")) classif = f->asInteger();
        try {
            execWrite(statement);
        } catch (const EAbort&) {
            throw;
        } catch (...) {
            // The row stays where it was; the others go on.
            reportError(std::current_exception(), QStringLiteral("Не удалось перенести запись"));
        }
        dataSet->prior();
    };
    const QList<ui::DBGrid::Bookmark> marks = grid->markedBookmarks();
    if (!marks.isEmpty()) {
        for (ui::DBGrid::Bookmark b : marks) {
            if (!dataSet->bookmarkValid(b)) continue;
            dataSet->gotoBookmark(b);
            transferOne();
        }
    } else {
        transferOne();
    }
    grid->clearMarks();
    const int node = DBTreeView->findNode(classif);
    if (node >= 0) {
        ReadMXCounts(node);
        UpdateSelectImages(node);
        UpdateSelectText(node);
    }
    UpdateDataSet();
}

void TAbs_DF::TransferRecDown() {
    transferMarked(DBGridUnSelected, pfDataSet, pfSelectItem);
}

void TAbs_DF::TransferRecUp() {
    transferMarked(DBGridSelected, pfSelected, pfUnSelectItem);
}

void TAbs_DF::AddSelected() {
    WaitCursor wait;
    pfAddSelected->paramByName("ID_CLASSIF")->setValue(CurClassif);
    pfAddSelected->paramByName("USER_ID")->setValue(UserID);
    pfAddSelected->paramByName("KIND")->setValue(Kind);
    execWrite(pfAddSelected);
    pfAddSelected->close();
    reopenQuietly(pfDataSet);
}

void TAbs_DF::DeleteUnSelected() {
    WaitCursor wait;
    ControlsOff off(pfSelected);
    pfSelected->close();
    pfSelected->open();
    pfWriteTransaction->ensureStarted();
    try {
        pfUnSelectItem->paramByName("USER_ID")->setValue(UserID);
        pfUnSelectItem->paramByName("KIND")->setValue(Kind);
        const db::Field* id = pfSelected->fieldByName("ID");
        for (pfSelected->first(); !pfSelected->eof(); pfSelected->next()) {
            pfUnSelectItem->paramByName("ID")->setValue(id->value());
            pfUnSelectItem->exec();
        }
        pfWriteTransaction->commit();
    } catch (...) {
        rollbackQuietly(pfWriteTransaction);
        tellSelectionLocked(std::current_exception());
    }
    pfSelected->close();
    pfSelected->open();
}

// ---------------------------------------------------------------- tree

void TAbs_DF::DBTreeViewChange(int node) {
    if (!initialized_ || reopening_) return;
    CurClassif = node >= 0 ? DBTreeView->nodeKey(node) : -1;
    UpdateDataSet();
}

void TAbs_DF::DBTreeViewSelecting(int node) {
    if (node < 0) return;
    const int saved = CurClassif;
    CurClassif = DBTreeView->nodeKey(node);
    try {
        if (DBTreeView->stateIndex(node) > 0)
            DeleteUnSelected();
        else
            AddSelected();
    } catch (...) {
        CurClassif = saved;
        UpdateDataSet();
        throw;
    }
    CurClassif = saved;
    ReadMXCounts(node);
    UpdateSelectImages(node);
    UpdateSelectText(node);
    // The nodes below the one chosen or dropped changed with it.
    QList<int> below = DBTreeView->childNodes(node);
    try {
        if (!below.isEmpty()) cacheNodeCounts();
        while (!below.isEmpty()) {
            const int n = below.takeLast();
            below += DBTreeView->childNodes(n);
            ReadMXCounts(n);
            DBTreeView->setStateIndex(n, NodeSelected == 0 ? -1 : NodeSelected == NodeCount ? 4 : 3);
            UpdateSelectText(n);
        }
    } catch (...) {
        dropCountCache();
        throw;
    }
    dropCountCache();
    ReadMXCounts(node);
    UpdateDataSet();
    emit NodeChoiceChanged(node);
}

void TAbs_DF::DBTreeViewMouseDown(int node, Qt::MouseButton button) {
    if (button != Qt::RightButton || node < 0) return;
    DBTreeView->setCurrentNode(node);
    CalcMX(true);
}

// ---------------------------------------------------------------- grids

void TAbs_DF::applyServerOrder(db::DataSet* dataSet, const QList<db::SortKey>& keys) {
    QString base = baseSelect_.value(dataSet, dataSet->selectSql());
    QStringList parts;
    for (const db::SortKey& k : keys) {
        const db::Field* f = dataSet->findField(k.field);
        if (!f) continue;
        // By position in the select list: the field's name may be an alias the server cannot
        // order by, or a column that two joined tables share.
        int pos = 0;
        for (int i = 0; i < dataSet->fieldCount(); ++i)
            if (dataSet->field(i) == f) pos = i + 1;
        parts << QString::number(pos) + (k.ascending ? QString() : QStringLiteral(" DESC"));
    }
    if (!parts.isEmpty()) {
        // The statement's own order gives way to the chosen one.
        static const QRegularExpression orderTail(QStringLiteral("\\border\\s+by\\b[^()']*$"),
                                                  QRegularExpression::CaseInsensitiveOption);
        base.remove(orderTail);
        base = base.trimmed() + QStringLiteral("\norder by ") + parts.join(QStringLiteral(", "));
    }
    if (base == dataSet->selectSql()) return;
    dataSet->setSelectSql(base);
    if (dataSet->active()) reopenQuietly(dataSet);
}

void TAbs_DF::DBGridSortMarkingChanged(ui::DBGrid* grid) {
    auto* d = grid == DBGridUnSelected ? pfDataSet : pfSelected;
    applyServerOrder(d, grid->sortKeys());
}

void TAbs_DF::DBGridFind(ui::DBGrid* grid, QChar character) {
    ShowGridSearch(grid, character.isNull() ? QString() : QString(character));
}

void TAbs_DF::aSearchExecute(QObject* sender) {
    for (QObject* o = sender; o; o = o->parent()) {
        if (auto* g = qobject_cast<ui::DBGrid*>(o)) {
            if (g == DBGridUnSelected || g == DBGridSelected) DBGridFind(g, QChar());
            return;
        }
    }
}

bool TAbs_DF::gridKeyDown(ui::DBGrid* grid, QKeyEvent* e) {
    const Qt::KeyboardModifiers mods = e->modifiers();
    const bool ctrl = mods & Qt::ControlModifier;
    if (ctrl && (e->key() == Qt::Key_F || e->key() == Qt::Key_QuoteLeft || e->nativeVirtualKey() == 192)) {
        DBGridFind(grid, QChar());
        return true;
    }
    if ((mods & Qt::AltModifier) && !e->text().isEmpty() && e->text().at(0) > QLatin1Char('0')) {
        DBGridFind(grid, e->text().at(0));
        return true;
    }
    if ((mods & Qt::AltModifier) && e->key() > Qt::Key_0 && e->key() < Qt::Key_Escape) {
        DBGridFind(grid, QChar(e->key()).toLower());
        return true;
    }
    return false;
}

bool TAbs_DF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == DBTreeView->viewport() && event->type() == QEvent::MouseButtonPress) {
        auto* me = static_cast<QMouseEvent*>(event);
        const QPoint pos = me->position().toPoint();
        const int node = DBTreeView->nodeAt(pos);
        if (node >= 0) {
            if (me->button() == Qt::RightButton) {
                guard([&] { DBTreeViewMouseDown(node, Qt::RightButton); });
                return true;
            }
            const QRect r = DBTreeView->visualRect(DBTreeView->indexOfNode(node));
            const int hit = DBTreeView->stateIndex(node) < 0 ? kDecorationWidth : kStateImageWidth;
            if (me->button() == Qt::LeftButton && pos.x() >= r.left() && pos.x() < r.left() + hit) {
                guard([&] { DBTreeViewSelecting(node); });
                return true;
            }
        }
        return false;
    }
    auto* grid = qobject_cast<ui::DBGrid*>(watched);
    if (grid && (grid == DBGridUnSelected || grid == DBGridSelected)) {
        if (event->type() == QEvent::ShortcutOverride) {
            auto* ke = static_cast<QKeyEvent*>(event);
            if ((ke->modifiers() & Qt::ControlModifier) && ke->key() == Qt::Key_F) {
                event->accept();
                return true;
            }
        }
        if (event->type() == QEvent::KeyPress) {
            bool handled = false;
            guard([&] { handled = gridKeyDown(grid, static_cast<QKeyEvent*>(event)); });
            return handled;
        }
    }
    return TAbsEditFrame::eventFilter(watched, event);
}

// ---------------------------------------------------------------- status bar

void TAbs_DF::GetMXPanelTexts(QString& text, QString& extraText, QColor& textColor, QColor& extraColor,
                              QString& rightName) {
    text = QStringLiteral("Выбрано ") + QString::number(SelectedCount) + QStringLiteral(" из ") +
           QString::number(UnSelectedCount + SelectedCount) + QStringLiteral(" доступных");
    extraText.clear();
    textColor = Qt::black;
    extraColor = QColor(0x80, 0x80, 0x80);
    rightName = QStringLiteral("S_Main.SHOW_MX_COUNT");
}

QString TAbs_DF::MXPanelText() {
    QString text, extra, right;
    QColor c1, c2;
    GetMXPanelTexts(text, extra, c1, c2, right);
    if (!extra.isEmpty() && dmDataBaseFIB()->IsFuncRights(right)) text += QLatin1Char(' ') + extra;
    return text;
}

void TAbs_DF::SelectedMXBarDrawPanel(QPainter& painter, const QRect& rect) {
    QString text, extra, right;
    QColor textColor, extraColor;
    GetMXPanelTexts(text, extra, textColor, extraColor, right);
    painter.setPen(textColor);
    painter.drawText(rect, Qt::AlignVCenter | Qt::AlignLeft, text);
    if (!extra.isEmpty() && dmDataBaseFIB()->IsFuncRights(right)) {
        const int x = painter.fontMetrics().horizontalAdvance(text + QLatin1Char(' '));
        painter.setPen(extraColor);
        painter.drawText(rect.adjusted(x, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, extra);
    }
}

// ---------------------------------------------------------------- getting the choice out

void TAbs_DF::ClearInvalidSelection() {
    if (!pfClearInvalid->hasSql()) return;
    pfClearInvalid->setParam("USER_ID", UserID);
    pfClearInvalid->setParam("KIND", Kind);
    pfClearInvalidBeforeExecute();
    execWrite(pfClearInvalid);
    pfClearInvalid->close();
}

QString TAbs_DF::ItemsList() {
    ClearInvalidSelection();
    if (!pfSelectedList->hasSql()) return {};
    QStringList ids;
    ControlsOff off(pfSelected);
    pfSelectedList->setParam("USER_ID", UserID);
    pfSelectedList->setParam("KIND", Kind);
    pfSelectedList->open();
    while (pfSelectedList->next()) ids << pfSelectedList->value(QStringLiteral("ID")).toString();
    pfSelectedList->close();
    return ids.join(QLatin1Char(','));
}

bool TAbs_DF::IsEmpty() {
    ClearInvalidSelection();
    if (!pfIsEmpty->hasSql()) return true;
    pfIsEmpty->setParam("USER_ID", UserID);
    pfIsEmpty->setParam("KIND", Kind);
    pfIsEmpty->open();
    const bool empty = !pfIsEmpty->next() || pfIsEmpty->value(0).isNull();
    pfIsEmpty->close();
    return empty;
}

// ---------------------------------------------------------------- layout

void TAbs_DF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    const QList<int> h = cxSplitterTree->sizes();
    node->ItemByName("TreeSplitter")->SetAsInteger(h.value(0));
    node->ItemByName("TreeSplitter.State")
        ->SetAsString(QString::fromLatin1(cxSplitterTree->saveState().toBase64()));
    const QList<int> v = cxSplitterUnSelected->sizes();
    node->ItemByName("UnSelectedSplitter")->SetAsInteger(v.value(0));
    node->ItemByName("UnSelectedSplitter.State")
        ->SetAsString(QString::fromLatin1(cxSplitterUnSelected->saveState().toBase64()));
    const std::optional<int> key = DBTreeView->currentKey();
    node->ItemByName("CurNode")->SetAsInteger(key.value_or(-1));
    node->ItemByName("DBGridUnSelected")
        ->SetAsString(
            QString::fromUtf8(QJsonDocument(DBGridUnSelected->saveLayout()).toJson(QJsonDocument::Compact)));
    node->ItemByName("DBGridSelected")
        ->SetAsString(
            QString::fromUtf8(QJsonDocument(DBGridSelected->saveLayout()).toJson(QJsonDocument::Compact)));
}

void TAbs_DF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node) return;
    auto intOf = [node](const char* key) {
        return node->IsExists(key) ? node->ItemByName(key)->GetAsInteger() : 0;
    };
    auto stateOf = [node](const char* key) {
        return node->IsExists(key) ? QByteArray::fromBase64(node->ItemByName(key)->GetAsString().toLatin1())
                                   : QByteArray();
    };
    if (const QByteArray s = stateOf("TreeSplitter.State"); !s.isEmpty()) cxSplitterTree->restoreState(s);
    if (const int w = intOf("TreeSplitter"); w > 0) {
        const int total = qMax(cxSplitterTree->width(), w + 100);
        cxSplitterTree->setSizes({w, total - w});
    }
    if (const QByteArray s = stateOf("UnSelectedSplitter.State"); !s.isEmpty())
        cxSplitterUnSelected->restoreState(s);
    if (const int h = intOf("UnSelectedSplitter"); h > 0) {
        const int total = qMax(cxSplitterUnSelected->height(), h + 60);
        cxSplitterUnSelected->setSizes({h, total - h});
    }
    for (ui::DBGrid* g : {DBGridUnSelected, DBGridSelected}) {
        const QString name = g->objectName();
        if (!node->IsExists(name)) continue;
        const QJsonDocument doc = QJsonDocument::fromJson(node->ItemByName(name)->GetAsString().toUtf8());
        if (doc.isObject()) g->restoreLayout(doc.object());
    }
    const int cur = intOf("CurNode");
    if (cur > 0 && trDataSet->active() && DBTreeView->findNode(cur) >= 0) DBTreeView->setCurrentKey(cur);
}

} // namespace frames
