#include "frames/select/DF_HRCClassif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/select/ClassifStateTree.h"
#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace frames {

TDF_HRCClassif::TDF_HRCClassif(QWidget* parent) : TAbsEditFrame(parent) {
    resize(320, 374);
    lbSelect->hide();
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    TreeView = new ui::ClassifTreeView(body());
    TreeView->setObjectName("TreeView");
    classif_state::setupTree(TreeView, KeyField, ParentField, TextField);
    TreeView->viewport()->installEventFilter(this);
    TreeView->installEventFilter(this);
    body()->layout()->addWidget(TreeView);

    pfDataSet = new db::DataSet(this);
    pfDataSet->setObjectName("pfDataSet");
    pfDataSet->setDatabase(dmDataBaseFIB()->RvDatabase());
    pfDataSet->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    pfDataSet->beforeOpen.connect([this](db::AbstractDataSet& ds) { pfDataSetBeforeOpen(ds); });
    pfDataSet->afterOpen.connect([this](db::AbstractDataSet& ds) { pfDataSetAfterOpen(ds); });

    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");
    pfUpdate = new db::Query(dmDataBaseFIB()->RvDatabase(), pfTransaction, this);
    pfUpdate->setObjectName("pfUpdate");

    UserID = CUR_USER;
}

TDF_HRCClassif::~TDF_HRCClassif() = default;

void TDF_HRCClassif::Init() {
    TAbsEditFrame::Init();
    reopenTree();
}

void TDF_HRCClassif::DataRefresh() {
    reopenTree();
}

void TDF_HRCClassif::FormClose() {
    pfDataSet->close();
    classif_state::rollbackQuietly(pfTransaction);
    TAbsEditFrame::FormClose();
}

void TDF_HRCClassif::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node || !node->IsExists("CurNode")) return;
    TreeView->setCurrentKey(node->ItemByName("CurNode")->GetAsInteger());
}

void TDF_HRCClassif::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    if (const std::optional<int> key = TreeView->currentKey())
        node->ItemByName("CurNode")->SetAsInteger(*key);
}

void TDF_HRCClassif::reopenTree() {
    pfDataSet->close();
    pfDataSet->open();
}

void TDF_HRCClassif::pfDataSetBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = pfDataSet->findParam("kind")) p->setValue(Kind);
    if (db::Param* p = pfDataSet->findParam("classif_type")) p->setValue(ClassifType);
    if (db::Param* p = pfDataSet->findParam("user_id")) p->setValue(UserID);
    if (db::Param* p = pfDataSet->findParam("hrc_filial")) p->setValue(HrcFilial);
}

void TDF_HRCClassif::pfDataSetAfterOpen(db::AbstractDataSet&) {
    classif_state::rebuildKeepingPlace(TreeView, [this] { BuildTreeView(); });
}

void TDF_HRCClassif::BuildTreeView() {
    classif_state::build(TreeView, *pfDataSet);
}

void TDF_HRCClassif::ClearTreeView() {
    const bool updates = TreeView->updatesEnabled();
    TreeView->setUpdatesEnabled(false);
    TreeView->clearNodes();
    TreeView->setUpdatesEnabled(updates);
}

bool TDF_HRCClassif::IsEmptySelection() {
    const QList<int> top = TreeView->childNodes(-1);
    return top.isEmpty() || TreeView->stateIndex(top.first()) == classif_state::NoImage;
}

void TDF_HRCClassif::FillXSelectedList(QList<int>& list, int node, const QString& mode) {
    list << classif_state::collect(TreeView, node, mode == QLatin1String("GetUnSelected"));
}

bool TDF_HRCClassif::eventFilter(QObject* watched, QEvent* event) {
    if (watched == TreeView->viewport() && event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::RightButton) {
            const QPoint pos = e->position().toPoint();
            guard([&] { TreeViewMouseDown(e->button(), e->modifiers(), pos); });
            return true;
        }
    }
    if ((watched == TreeView || watched == TreeView->viewport()) && event->type() == QEvent::ContextMenu) {
        bool handled = false;
        guard([&] { TreeViewContextPopup(static_cast<QContextMenuEvent*>(event)->pos(), handled); });
        if (handled) {
            event->accept();
            return true;
        }
    }
    if (watched == TreeView && event->type() == QEvent::KeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        if (e->key() == Qt::Key_Space && e->modifiers() == Qt::NoModifier && TreeView->currentNode() >= 0) {
            const int node = TreeView->currentNode();
            guard([&] { ToggleNode(node); });
            return true;
        }
    }
    return TAbsEditFrame::eventFilter(watched, event);
}

void TDF_HRCClassif::TreeViewContextPopup(const QPoint&, bool& handled) {
    handled = true;
}

void TDF_HRCClassif::TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& pos) {
    if (button != Qt::RightButton) return;
    const int node = TreeView->nodeAt(pos);
    if (node < 0) return;
    ToggleNode(node);
}

void TDF_HRCClassif::ToggleNode(int node) {
    TraceText("TDF_HRCClassif.TreeViewMouseDown", 1);
    classif_state::TraceOnExit end{"TDF_HRCClassif.TreeViewMouseDown End"};
    const int key = TreeView->nodeKey(node);
    classif_state::toggle(TreeView, node);
    const bool choose = TreeView->stateIndex(node) == classif_state::AllChosen;
    QList<int> list;
    FillXSelectedList(list, node, choose ? "GetUnSelected" : "GetSelected");
    try {
        DoXSelect(list, choose ? InsertSQL : DeleteSQL);
    } catch (...) {
        guard([&] { reopenTree(); });
        TreeView->setCurrentKey(key);
        throw;
    }
    if (!list.isEmpty()) reopenTree();
    TreeView->setCurrentKey(key);
}

void TDF_HRCClassif::DoXSelect(const QList<int>& list, const QString& statement) {
    if (list.isEmpty()) return;
    pfTransaction->ensureStarted();
    try {
        pfUpdate->setSql(statement);
        pfUpdate->paramByName("kind")->setValue(Kind);
        pfUpdate->paramByName("user_id")->setValue(UserID);
        pfUpdate->paramByName("hrc_filial")->setValue(HrcFilial);
        pfUpdate->paramByName("type_classif")->setValue(ClassifType);
        for (int node : list) {
            pfUpdate->paramByName("id_classif")->setValue(TreeView->nodeKey(node));
            pfUpdate->exec();
        }
        pfTransaction->commit();
        TraceText(QStringLiteral("TDF_HRCClassif.DoXSelect After Commit (%1 ids)").arg(list.size()), 1);
    } catch (...) {
        classif_state::rollbackQuietly(pfTransaction);
        TraceText("TDF_HRCClassif.DoXSelect After RollBack", 1);
        throw;
    }
    emit SelectionChanged();
}

FRAMES_REGISTER(TDF_HRCClassif, "select");

} // namespace frames
