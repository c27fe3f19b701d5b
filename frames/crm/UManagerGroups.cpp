#include "frames/crm/UManagerGroups.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "frames/crm/CRMCommon.h"
#include "platform/db/Field.h"
#include "platform/db/Query.h"
#include <QBoxLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QSettings>
#include <QSplitter>
#include <QStyle>
#include <QToolButton>

namespace frames {

namespace {

// Statement texts, filled by Format.
const char* const sRights =
    "select pu.pmodrigth_value from pmodright_users pu join properties p on p.prop_id = "
    "pu.prop_id where id_user = %d and p.prop_class = 'MANAGER_GROUPS' ";
const char* const sRootNodes =
    "select -2000, cast('<все группы>' as varchar(40)), 0, 0 from rdb$database union select -1000, "
    "cast('<без "
    "групп>' as varchar(40)), 1, 0 from rdb$database union select c1.classif_id, c1.name, 2, (select "
    "count(*) from "
    "report_managers_classif c2 where c2.parent_id = c1.classif_id) from report_managers_classif c1 where "
    "(c1.parent_id not in (select classif_id from report_managers_classif))  or (c1.parent_id is null) order "
    "by 3, 2 ";
const char* const sNewId = "select gen_id(%s, %d) from rdb$database";
const char* const sNewGroup =
    "insert into report_managers_classif(classif_id, parent_id, name) values (%d, %s, 'Новая группа')";
const char* const sRename = "update report_managers_classif set name = %s where classif_id = %d";
const char* const sDeleteGroup = "delete from report_managers_classif where classif_id = %d";
const char* const sChildCount = "select count(*) from report_managers_classif where parent_id = %d";
const char* const sChildren =
    "select c1.classif_id, c1.name, 2, (select count(*) from report_managers_classif c2 where c2.parent_id = "
    "c1.classif_id) from report_managers_classif c1 where c1.parent_id = %dorder by 3, 2 ";
const char* const sNodeCounts =
    "select 'u', count(*) from users u left join report_manager m on u.id_user = m.manager_id and "
    "m.report_id = "
    "%0:d and m.owner_id = %1:d left join x_report_managers_classif x on x.manager_id = u.id_user where "
    "m.manager_id is null and u.id_user>-1 and (u.is_crm=1)and (1 in (select result from "
    "report_managers_group_contains(%2:d, x.classif_id, 1)) or %2:d = -2000 or (x.classif_id is null and "
    "%2:d = "
    "-1000))union select 's', count(*) from users u join report_manager m on u.id_user = m.manager_id and "
    "m.report_id = %0:d and m.owner_id = %1:d left join x_report_managers_classif x on x.manager_id = "
    "u.id_user "
    "where  (u.is_crm=1) and (1 in (select result from report_managers_group_contains(%2:d, x.classif_id, "
    "1)) or "
    "%2:d = -2000 or (x.classif_id is null and %2:d = -1000))";
const char* const sMoveGroup = "update report_managers_classif set parent_id = %d where classif_id = %d";
const char* const sPutManager =
    "insert into x_report_managers_classif (manager_id, classif_id) values (%d, %d)";
const char* const sChooseOne =
    "insert into report_manager(report_id, owner_id, manager_id) values (%d, %d, %d)";
const char* const sUnchooseOne =
    "delete from report_manager where report_id = %d and owner_id = %d and manager_id = %d";
const char* const sChooseGroup =
    "insert into report_manager(report_id, owner_id, manager_id) select %0:d, %1:d, u.id_user from users u "
    "left "
    "join report_manager m on u.id_user = m.manager_id and m.report_id = %0:d and m.owner_id = %1:d left "
    "join "
    "x_report_managers_classif x on x.manager_id = u.id_user where m.manager_id is null and u.id_user>-1 and "
    "(u.is_crm=1) and (1 in (select result from report_managers_group_contains(%2:d, x.classif_id, 1 "
    "/*recursive*/)) or %2:d = -2000 or (x.classif_id is null and %2:d = -1000))";
const char* const sUnchooseGroup = "delete from report_manager where report_id = %0:d and owner_id = %1:d "
                                   "and manager_id in (select u.id_user from "
                                   "users u join report_manager m on u.id_user = m.manager_id and "
                                   "m.report_id = %0:d and m.owner_id = %1:d left "
                                   "join x_report_managers_classif x on x.manager_id = u.id_user where "
                                   "(u.is_crm=1) and (1 in (select result from "
                                   "report_managers_group_contains(%2:d, x.classif_id, 1 /*recursive*/)) or "
                                   "%2:d = -2000 or (x.classif_id is null "
                                   "and %2:d = -1000)))";
const char* const sGroupsOfManager = "select classif_id from x_report_managers_classif where manager_id = %d";
const char* const sParentOfGroup =
    "select c1.classif_id from report_managers_classif c1 join report_managers_classif "
    "c2 on c2.parent_id = c1.classif_id and c2.classif_id = %d";

constexpr int kIdRole = Qt::UserRole;
constexpr int kStateRole = Qt::UserRole + 1;
constexpr int kNameRole = Qt::UserRole + 2;

} // namespace

QString TfrmManagerGroups::Format(const QString& fmt, const QVariantList& args) {
    // %d and %s take the next argument, %N:d / %N:s argument N (and go on from N + 1).
    static const QRegularExpression placeholder(QStringLiteral("%(?:(\\d+):)?([ds])"));
    QString out;
    qsizetype last = 0;
    int next = 0;
    for (auto it = placeholder.globalMatch(fmt); it.hasNext();) {
        const auto m = it.next();
        out += fmt.mid(last, m.capturedStart() - last);
        const int index = m.captured(1).isEmpty() ? next : m.captured(1).toInt();
        next = index + 1;
        const QVariant v = args.value(index);
        out += m.captured(2) == QLatin1String("d") ? QString::number(v.toLongLong()) : v.toString();
        last = m.capturedEnd();
    }
    return out + fmt.mid(last);
}

TfrmManagerGroups::TfrmManagerGroups(QWidget* parent) : TAbsEditFrame(parent) {
    resize(700, 420);
    lbSelect->hide();
    Transaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    Transaction->setObjectName("Transaction");

    auto act = [this](QAction*& a, const char* name, const QString& text) {
        a = new QAction(text, this);
        a->setObjectName(name);
        return a;
    };
    act(actAddRootGroup, "actAddRootGroup", "Создать группу");
    act(actAddSubGroup, "actAddSubGroup", "Создать подгруппу");
    act(actEditGroup, "actEditGroup", "Редактировать группу");
    act(actDropGroup, "actDropGroup", "Удалить группу");
    act(actRecursive, "actRecursive", "Отображать элементы подгрупп")->setCheckable(true);
    actRecursive->setChecked(true);
    act(actShowToolBar, "actShowToolBar", "Показывать панель инструментов")->setCheckable(true);
    act(actSelectManagers, "actSelectManagers", QString::fromUtf8("\u25b6"))
        ->setToolTip("Добавить в выбранных менеджеров");
    act(actUnSelectManagers, "actUnSelectManagers", QString::fromUtf8("\u25c0"))
        ->setToolTip("Удалить из выбранных менеджеров");

    auto* split = new QSplitter(Qt::Horizontal, body());
    body()->layout()->addWidget(split);
    auto* treeBox = new QGroupBox("Классификатор менеджеров", split);
    treeBox->setObjectName("gbTree");
    auto* tl = new QVBoxLayout(treeBox);
    tbarTree = new QToolBar(treeBox);
    tbarTree->setObjectName("tbarTree");
    for (QAction* a : {actAddRootGroup, actAddSubGroup, actEditGroup, actDropGroup}) tbarTree->addAction(a);
    tbarTree->setVisible(false);
    tl->addWidget(tbarTree);
    tvManagerGroups = new QTreeWidget(treeBox);
    tvManagerGroups->setObjectName("tvManagerGroups");
    tvManagerGroups->setHeaderHidden(true);
    tvManagerGroups->setToolTip("Клик правой кнопкой мыши добавляет/убирает ");
    tvManagerGroups->setContextMenuPolicy(Qt::ActionsContextMenu);
    tvManagerGroups->setEditTriggers(QAbstractItemView::EditKeyPressed);
    for (QAction* a :
         {actAddRootGroup, actAddSubGroup, actEditGroup, actDropGroup, actRecursive, actShowToolBar})
        tvManagerGroups->addAction(a);
    tvManagerGroups->viewport()->setAcceptDrops(true);
    tvManagerGroups->viewport()->installEventFilter(this);
    tl->addWidget(tvManagerGroups);

    auto* right = new QWidget(split);
    auto* rl = new QHBoxLayout(right);
    rl->setContentsMargins(0, 0, 0, 0);
    auto grid = [&](ui::DBGrid*& g, db::DataSet*& ds, const char* name, const char* dsName,
                    const QString& title, const QString& hint) {
        auto* box = new QGroupBox(title, right);
        auto* l = new QVBoxLayout(box);
        g = new ui::DBGrid(box);
        g->setObjectName(name);
        g->setToolTip(hint);
        g->setMultiSelect(true);
        g->setReadOnly(true);
        g->viewport()->setAcceptDrops(true);
        g->viewport()->installEventFilter(this);
        l->addWidget(g);
        ds = new db::DataSet(dmDataBaseFIB()->RvDatabase(), dmDataBaseFIB()->pfReadTransaction(), this);
        ds->setObjectName(dsName);
        g->setDataSource(new db::DataSource(ds, this));
        g->setColumns({"ID_USER", "NAME_USER"});
        g->setCaptions({{"ID_USER", "Код"}, {"NAME_USER", "Менеджер"}});
        // A short code, the name in the rest of the width.
        g->horizontalHeader()->setDefaultSectionSize(
            g->fontMetrics().horizontalAdvance(QStringLiteral("00000")) + 24);
        g->horizontalHeader()->setStretchLastSection(true);
        return box;
    };
    rl->addWidget(grid(dbgrdUnSelectedManagers, ibqryUnSelectedManagers, "dbgrdUnSelectedManagers",
                       "ibqryUnSelectedManagers", "Доступные менеджеры",
                       "Доступные для выбора менеджеры (невыбранные)"));
    auto* buttons = new QVBoxLayout;
    buttons->addStretch();
    for (QAction* a : {actSelectManagers, actUnSelectManagers}) {
        auto* b = new QToolButton(right);
        b->setDefaultAction(a);
        buttons->addWidget(b);
    }
    buttons->addStretch();
    rl->addLayout(buttons);
    rl->addWidget(grid(dbgrdSelectedManagers, ibqrySelectedManagers, "dbgrdSelectedManagers",
                       "ibqrySelectedManagers", "Выбранные менеджеры",
                       "Менеджеры, по которым будет формироваться отчет"));
    split->setStretchFactor(1, 2);

    for (db::DataSet* ds : {ibqryUnSelectedManagers, ibqrySelectedManagers})
        ds->beforeOpen.connect([this, ds](db::AbstractDataSet&) {
            QTreeWidgetItem* node = tvManagerGroups->currentItem();
            auto set = [ds](const char* n, const QVariant& v) {
                if (db::Param* p = ds->findParam(n)) p->setValue(v);
            };
            set("REPORT_ID", ReportId);
            set("OWNER_ID", CUR_USER);
            set("CLASSIF_ID", node ? NodeId(node) : kAllGroups);
            set("RECURS", actRecursive->isChecked() ? 1 : 0);
        });

    connect(actAddRootGroup, &QAction::triggered, this, [this] { guard([&] { AddGroup(true); }); });
    connect(actAddSubGroup, &QAction::triggered, this, [this] { guard([&] { AddGroup(false); }); });
    connect(actEditGroup, &QAction::triggered, this, [this] {
        if (QTreeWidgetItem* n = tvManagerGroups->currentItem(); n && tvManagerGroupsEditing(n))
            tvManagerGroups->editItem(n);
    });
    connect(actDropGroup, &QAction::triggered, this, [this] { guard([&] { actDropGroupExecute(); }); });
    connect(actRecursive, &QAction::triggered, this, [this] { guard([&] { OpenDataSets(); }); });
    connect(actShowToolBar, &QAction::toggled, tbarTree, &QToolBar::setVisible);
    connect(actSelectManagers, &QAction::triggered, this, [this] {
        guard([&] { DoSelection(dbgrdUnSelectedManagers, ibqryUnSelectedManagers, sChooseOne); });
    });
    connect(actUnSelectManagers, &QAction::triggered, this, [this] {
        guard([&] { DoSelection(dbgrdSelectedManagers, ibqrySelectedManagers, sUnchooseOne); });
    });
    connect(dbgrdUnSelectedManagers, &ui::DBGrid::activated, actSelectManagers, &QAction::trigger);
    connect(dbgrdSelectedManagers, &ui::DBGrid::activated, actUnSelectManagers, &QAction::trigger);
    for (ui::DBGrid* g : {dbgrdUnSelectedManagers, dbgrdSelectedManagers})
        connect(g, &ui::DBGrid::sortKeysChanged, this,
                [this, g] { guard([&] { dbgrdSortMarkingChanged(g); }); });
    connect(tvManagerGroups, &QTreeWidget::currentItemChanged, this, [this] {
        if (!building_) guard([&] { OpenDataSets(); });
        alManagersUpdate();
    });
    connect(tvManagerGroups, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem* n) {
        guard([&] { tvManagerGroupsExpanding(n); });
        updateImage(n);
        tvManagerGroups->viewport()->update();
    });
    connect(tvManagerGroups, &QTreeWidget::itemCollapsed, this, [this](QTreeWidgetItem* n) {
        updateImage(n);
        tvManagerGroups->viewport()->update();
    });
    connect(tvManagerGroups, &QTreeWidget::itemChanged, this, [this](QTreeWidgetItem* n, int) {
        if (building_ || n->text(0) == n->data(0, kNameRole).toString()) return;
        const QString text = n->text(0);
        guard([&] { tvManagerGroupsEdited(n, text); });
    });
    alManagersUpdate();
}

TfrmManagerGroups::~TfrmManagerGroups() = default;

int TfrmManagerGroups::NodeId(const QTreeWidgetItem* node) {
    return node ? node->data(0, kIdRole).toInt() : 0;
}

int TfrmManagerGroups::StateIndex(const QTreeWidgetItem* node) {
    const QVariant v = node ? node->data(0, kStateRole) : QVariant();
    return v.isValid() ? v.toInt() : -1;
}

void TfrmManagerGroups::ExecuteSQL(const QString& sql, const std::function<void(db::Query&, void*)>& callback,
                                   void* data) {
    crm::executeCommitted(Transaction, sql, callback, data);
}

void TfrmManagerGroups::FrameInit() {
    if (tvManagerGroups->topLevelItemCount() > 0) return;
    CheckRights();
    BuildRoot();
    Changed = false;
    alManagersUpdate();
}

void TfrmManagerGroups::CheckRights() {
    Rights = false;
    ExecuteSQL(Format(sRights, {CUR_USER}), [this](db::Query& q, void*) {
        if (q.next()) Rights = q.value(0).toString().trimmed() == QLatin1String("T");
    });
}

QTreeWidgetItem* TfrmManagerGroups::addNode(QTreeWidgetItem* parent, int id, const QString& name,
                                            bool hasChildren) {
    auto* n = parent ? new QTreeWidgetItem(parent) : new QTreeWidgetItem(tvManagerGroups);
    n->setText(0, name);
    n->setData(0, kIdRole, id);
    n->setData(0, kNameRole, name);
    n->setChildIndicatorPolicy(hasChildren ? QTreeWidgetItem::ShowIndicator
                                           : QTreeWidgetItem::DontShowIndicatorWhenChildless);
    if (id >= 0) n->setFlags(n->flags() | Qt::ItemIsEditable);
    n->setFlags(n->flags() & ~Qt::ItemIsUserCheckable);
    updateImage(n);
    return n;
}

void TfrmManagerGroups::updateImage(QTreeWidgetItem* n) {
    const bool branch = n->childCount() > 0 || n->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator;
    const int image = branch ? (n->isExpanded() ? 0 : 1) : 2;
    static const QStyle::StandardPixmap icons[] = {QStyle::SP_DirOpenIcon, QStyle::SP_DirClosedIcon,
                                                   QStyle::SP_FileIcon};
    const bool was = building_;
    building_ = true;
    n->setIcon(0, style()->standardIcon(icons[image]));
    building_ = was;
}

void TfrmManagerGroups::BuildRoot() {
    struct Row {
        int id;
        QString name;
        int children;
    };
    QList<Row> rows;
    ExecuteSQL(sRootNodes, [&rows](db::Query& q, void*) {
        while (q.next()) rows.push_back({q.value(0).toInt(), q.value(1).toString(), q.value(3).toInt()});
    });
    building_ = true;
    tvManagerGroups->clear();
    for (const Row& r : rows) addNode(nullptr, r.id, r.name, r.children >= 1);
    tvManagerGroups->setCurrentItem(tvManagerGroups->topLevelItem(0));
    building_ = false;
    for (int i = 0; i < tvManagerGroups->topLevelItemCount(); ++i)
        UpdateNodeState(tvManagerGroups->topLevelItem(i), false);
    OpenDataSets();
}

void TfrmManagerGroups::tvManagerGroupsExpanding(QTreeWidgetItem* node) {
    int count = 0;
    ExecuteSQL(Format(sChildCount, {NodeId(node)}), [&count](db::Query& q, void*) {
        if (q.next()) count = q.value(0).toInt();
    });
    if (count == node->childCount()) return; // children reloaded only when their number changed
    struct Row {
        int id;
        QString name;
        int children;
    };
    QList<Row> rows;
    ExecuteSQL(Format(sChildren, {NodeId(node)}), [&rows](db::Query& q, void*) {
        while (q.next()) rows.push_back({q.value(0).toInt(), q.value(1).toString(), q.value(3).toInt()});
    });
    building_ = true;
    qDeleteAll(node->takeChildren());
    for (const Row& r : rows) addNode(node, r.id, r.name, r.children > 0);
    building_ = false;
    for (int i = 0; i < node->childCount(); ++i) UpdateNodeState(node->child(i), false);
}

void TfrmManagerGroups::setState(QTreeWidgetItem* node, int state) {
    const bool was = building_;
    building_ = true;
    node->setData(0, kStateRole, state);
    if (state == 3)
        node->setCheckState(0, Qt::Checked);
    else if (state == 4)
        node->setCheckState(0, Qt::PartiallyChecked);
    else
        node->setData(0, Qt::CheckStateRole, QVariant());
    building_ = was;
}

void TfrmManagerGroups::setStateDeep(QTreeWidgetItem* node, int state) {
    for (int i = 0; i < node->childCount(); ++i) {
        setState(node->child(i), state);
        setStateDeep(node->child(i), state);
    }
}

void TfrmManagerGroups::UpdateNodeState(QTreeWidgetItem* node, bool propagate) {
    if (!node) return;
    struct Counts {
        int u = 0, s = 0;
    } c;
    ExecuteSQL(Format(sNodeCounts, {ReportId, CUR_USER, NodeId(node)}), [&c](db::Query& q, void*) {
        while (q.next()) (q.value(0).toString() == QLatin1String("s") ? c.s : c.u) = q.value(1).toInt();
    });
    const int state = c.s == 0 ? -1 : (c.u == 0 ? 3 : 4);
    const int old = StateIndex(node);
    setState(node, state);
    if (propagate && state != old && node->parent()) UpdateNodeState(node->parent(), true);
}

QTreeWidgetItem* TfrmManagerGroups::FindNode(int groupId) {
    int parent = 0;
    bool hasParent = false;
    ExecuteSQL(Format(sParentOfGroup, {groupId}), [&](db::Query& q, void*) {
        if (q.next()) {
            hasParent = true;
            parent = q.value(0).toInt();
        }
    });
    if (hasParent) {
        QTreeWidgetItem* p = FindNode(parent);
        if (!p) return nullptr;
        for (int i = 0; i < p->childCount(); ++i)
            if (NodeId(p->child(i)) == groupId) return p->child(i);
        return p; // the nearest loaded ancestor stands in for an unexpanded branch
    }
    for (int i = 0; i < tvManagerGroups->topLevelItemCount(); ++i)
        if (NodeId(tvManagerGroups->topLevelItem(i)) == groupId) return tvManagerGroups->topLevelItem(i);
    return nullptr;
}

void TfrmManagerGroups::UpdateNodeState(int managerId, bool propagate) {
    int group = kNoGroup;
    ExecuteSQL(Format(sGroupsOfManager, {managerId}), [&group](db::Query& q, void*) {
        if (q.next()) group = q.value(0).toInt();
    });
    if (group == kNoGroup) return;
    if (QTreeWidgetItem* n = FindNode(group)) UpdateNodeState(n, propagate);
}

void TfrmManagerGroups::tvManagerGroupsMouseDown(Qt::MouseButton button, const QPoint& pos) {
    if (button != Qt::RightButton) return;
    QTreeWidgetItem* node = tvManagerGroups->itemAt(pos);
    if (!node) return;
    const int st = StateIndex(node);
    ExecuteSQL(
        Format(st == 3 || st == 4 ? sUnchooseGroup : sChooseGroup, {ReportId, CUR_USER, NodeId(node)}));
    Changed = true;
    OpenDataSets();
    QTreeWidgetItem* all = tvManagerGroups->topLevelItem(0);
    UpdateNodeState(all, false);
    if (node == all) {
        for (int i = 1; i < tvManagerGroups->topLevelItemCount(); ++i) {
            setState(tvManagerGroups->topLevelItem(i), StateIndex(all));
            setStateDeep(tvManagerGroups->topLevelItem(i), StateIndex(all));
        }
    } else {
        UpdateNodeState(node, true);
        setStateDeep(node, StateIndex(node));
    }
    tvManagerGroups->viewport()->update();
}

void TfrmManagerGroups::OpenDataSets() {
    ibqrySelectedManagers->close();
    ibqryUnSelectedManagers->close();
    ibqrySelectedManagers->open();
    ibqryUnSelectedManagers->open();
    alManagersUpdate();
}

void TfrmManagerGroups::DoSelection(ui::DBGrid* grid, db::DataSet* dataSet, const QString& sqlTemplate) {
    if (dataSet->isEmpty()) {
        Changed = true;
        return;
    }
    const QList<int> ids = crm::markedKeys(grid, dataSet, "ID_USER");
    for (int id : ids) {
        ExecuteSQL(Format(sqlTemplate, {ReportId, CUR_USER, id}));
        UpdateNodeState(id, true);
    }
    OpenDataSets();
    UpdateNodeState(tvManagerGroups->topLevelItem(0), false);
    UpdateNodeState(tvManagerGroups->topLevelItem(1), false);
    Changed = true;
}

void TfrmManagerGroups::AddGroup(bool root) {
    if (!Rights) Abort();
    int id = 0;
    ExecuteSQL(Format(sNewId, {"GEN_REPORT_MANAGERS_CLASSIF_ID", 1}), [&id](db::Query& q, void*) {
        if (q.next()) id = q.value(0).toInt();
    });
    QTreeWidgetItem* parent = root ? nullptr : tvManagerGroups->currentItem();
    if (!root && (!parent || NodeId(parent) < 0)) Abort();
    ExecuteSQL(Format(sNewGroup, {id, parent ? QString::number(NodeId(parent)) : QStringLiteral("null")}));
    building_ = true;
    // Opening a closed parent reads its children again, the new group among them; an open one
    // is not read again, and the new group is added by hand.
    if (parent) parent->setExpanded(true);
    QTreeWidgetItem* n = nullptr;
    const int count = parent ? parent->childCount() : tvManagerGroups->topLevelItemCount();
    for (int i = 0; i < count && !n; ++i) {
        QTreeWidgetItem* c = parent ? parent->child(i) : tvManagerGroups->topLevelItem(i);
        if (NodeId(c) == id) n = c;
    }
    if (!n) n = addNode(parent, id, "Новая группа", false);
    if (parent) updateImage(parent);
    building_ = false;
    tvManagerGroups->setCurrentItem(n);
    setState(n, -1);
    tvManagerGroups->editItem(n);
}

bool TfrmManagerGroups::tvManagerGroupsEditing(QTreeWidgetItem* node) const {
    return Rights && NodeId(node) >= 0;
}

void TfrmManagerGroups::tvManagerGroupsEdited(QTreeWidgetItem* node, const QString& text) {
    const QString name = text.trimmed();
    const QString old = node->data(0, kNameRole).toString();
    building_ = true;
    node->setText(0, name);
    building_ = false;
    if (!tvManagerGroupsEditing(node) || name.isEmpty()) {
        building_ = true;
        node->setText(0, old); // nothing else may be renamed; an empty name keeps the old one
        building_ = false;
        return;
    }
    try {
        ExecuteSQL(Format(sRename, {StrParam(name), NodeId(node)}));
    } catch (...) {
        building_ = true;
        node->setText(0, old);
        building_ = false;
        throw;
    }
    node->setData(0, kNameRole, name);
}

void TfrmManagerGroups::actDropGroupExecute() {
    QTreeWidgetItem* n = tvManagerGroups->currentItem();
    if (!Rights || !n || NodeId(n) < 0 || n->childCount() > 0 ||
        n->childIndicatorPolicy() == QTreeWidgetItem::ShowIndicator)
        Abort();
    if (!dmDataBaseFIB()->QuestionBox("Удалить группу?")) return;
    ExecuteSQL(Format(sDeleteGroup, {NodeId(n)}));
    QTreeWidgetItem* parent = n->parent();
    delete n;
    if (parent) {
        if (parent->childCount() == 0)
            parent->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
        updateImage(parent);
        UpdateNodeState(parent, true);
    }
    UpdateNodeState(tvManagerGroups->topLevelItem(1), false);
}

void TfrmManagerGroups::alManagersUpdate() {
    QTreeWidgetItem* n = tvManagerGroups->currentItem();
    const bool group = n && NodeId(n) >= 0;
    actAddRootGroup->setEnabled(Rights);
    actAddSubGroup->setEnabled(Rights && group);
    actEditGroup->setEnabled(Rights && group);
    actDropGroup->setEnabled(Rights && group && n->childCount() == 0 &&
                             n->childIndicatorPolicy() != QTreeWidgetItem::ShowIndicator);
    actSelectManagers->setEnabled(ibqryUnSelectedManagers->active() && !ibqryUnSelectedManagers->isEmpty());
    actUnSelectManagers->setEnabled(ibqrySelectedManagers->active() && !ibqrySelectedManagers->isEmpty());
}

bool TfrmManagerGroups::isInside(const QTreeWidgetItem* node, const QTreeWidgetItem* ancestor) const {
    for (const QTreeWidgetItem* p = node; p; p = p->parent())
        if (p == ancestor) return true;
    return false;
}

bool TfrmManagerGroups::TreeDragOver(QObject* source, QTreeWidgetItem* target) const {
    if (!Rights) return false;
    if (ui::DBGrid* g = crm::gridOf(source); g == dbgrdSelectedManagers || g == dbgrdUnSelectedManagers) {
        const db::DataSet* ds = g == dbgrdSelectedManagers ? ibqrySelectedManagers : ibqryUnSelectedManagers;
        return target && NodeId(target) != kAllGroups && ds->active() && !ds->isEmpty();
    }
    if (source != tvManagerGroups && source != tvManagerGroups->viewport()) return false;
    QTreeWidgetItem* dragged = tvManagerGroups->currentItem();
    if (!dragged || NodeId(dragged) < 0) return false;
    if (!target) return true;
    return NodeId(target) >= 0 && !isInside(target, dragged);
}

void TfrmManagerGroups::TreeDragDrop(QObject* source, QTreeWidgetItem* target) {
    if (!TreeDragOver(source, target)) return;
    QTreeWidgetItem* remembered = nullptr;
    if (ui::DBGrid* g = crm::gridOf(source)) {
        db::DataSet* ds = g == dbgrdSelectedManagers ? ibqrySelectedManagers : ibqryUnSelectedManagers;
        const QList<int> ids = crm::markedKeys(g, ds, "ID_USER");
        for (int id : ids) {
            UpdateNodeState(id, true); // the group he leaves
            ExecuteSQL(Format(sPutManager, {id, NodeId(target)}));
            UpdateNodeState(id, true);
        }
        ds->close();
        ds->open();
        g->clearMarks();
        remembered = tvManagerGroups->currentItem();
    } else {
        QTreeWidgetItem* dragged = tvManagerGroups->currentItem();
        ExecuteSQL(Format(sMoveGroup, {target ? NodeId(target) : -1, NodeId(dragged)}));
        remembered = dragged->parent();
        building_ = true;
        QTreeWidgetItem* taken =
            remembered ? remembered->takeChild(remembered->indexOfChild(dragged))
                       : tvManagerGroups->takeTopLevelItem(tvManagerGroups->indexOfTopLevelItem(dragged));
        if (target) {
            target->addChild(taken);
            target->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
            updateImage(target);
        } else {
            tvManagerGroups->addTopLevelItem(taken);
        }
        if (remembered) updateImage(remembered);
        tvManagerGroups->setCurrentItem(taken);
        building_ = false;
    }
    UpdateNodeState(tvManagerGroups->topLevelItem(0), false);
    UpdateNodeState(tvManagerGroups->topLevelItem(1), false);
    if (target && NodeId(target) >= 0) UpdateNodeState(target, true);
    if (target && NodeId(target) > 0 && remembered) UpdateNodeState(remembered, true);
    OpenDataSets();
}

bool TfrmManagerGroups::GridDragOver(ui::DBGrid* target, QObject* source) const {
    ui::DBGrid* from = crm::gridOf(source);
    if (target == dbgrdSelectedManagers)
        return from == dbgrdUnSelectedManagers && !ibqryUnSelectedManagers->isEmpty();
    if (target == dbgrdUnSelectedManagers)
        return from == dbgrdSelectedManagers && !ibqrySelectedManagers->isEmpty();
    return false;
}

void TfrmManagerGroups::GridDragDrop(ui::DBGrid* target, QObject* source) {
    if (!GridDragOver(target, source)) return;
    alManagersUpdate();
    QAction* a = target == dbgrdSelectedManagers ? actSelectManagers : actUnSelectManagers;
    if (a->isEnabled()) a->trigger();
}

void TfrmManagerGroups::dbgrdSortMarkingChanged(ui::DBGrid* grid) {
    crm::orderOnServer(grid, grid == dbgrdSelectedManagers ? ibqrySelectedManagers : ibqryUnSelectedManagers,
                       baseSelect_[grid], "u.");
}

void TfrmManagerGroups::ReadOptions(QSettings& ini) {
    actRecursive->setChecked(ini.value("Common/MCRecursive", true).toBool());
    actShowToolBar->setChecked(ini.value("Common/MCToolBar", false).toBool());
}

void TfrmManagerGroups::SaveOptions(QSettings& ini) {
    ini.setValue("Common/MCRecursive", actRecursive->isChecked());
}

void TfrmManagerGroups::SetFocus() {
    tvManagerGroups->setFocus();
}

bool TfrmManagerGroups::eventFilter(QObject* o, QEvent* e) {
    const bool tree = o == tvManagerGroups->viewport();
    ui::DBGrid* grid = crm::gridOf(o);
    if (!tree && !grid) return TAbsEditFrame::eventFilter(o, e);
    if (tree && e->type() == QEvent::MouseButtonPress &&
        static_cast<QMouseEvent*>(e)->button() == Qt::RightButton) {
        const QPoint pos = static_cast<QMouseEvent*>(e)->position().toPoint();
        guard([&] { tvManagerGroupsMouseDown(Qt::RightButton, pos); });
        return true;
    }
    const bool mayDrag = !tree || (tvManagerGroups->currentItem() &&
                                   !tvManagerGroups->isPersistentEditorOpen(tvManagerGroups->currentItem()));
    if (mayDrag && crm::handleDragStart(tree ? static_cast<QObject*>(tvManagerGroups) : grid, e, dragStart_))
        return true;
    if (crm::handleDrop(
            e,
            [this, tree, grid](QObject* source, const QPoint& pos) {
                return tree ? TreeDragOver(source, tvManagerGroups->itemAt(pos)) : GridDragOver(grid, source);
            },
            [this, tree, grid](QObject* source, const QPoint& pos) {
                if (tree)
                    TreeDragDrop(source, tvManagerGroups->itemAt(pos));
                else
                    GridDragDrop(grid, source);
            }))
        return true;
    return TAbsEditFrame::eventFilter(o, e);
}

FRAMES_REGISTER(TfrmManagerGroups, "crm");

} // namespace frames
