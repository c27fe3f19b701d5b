#include "frames/select/ClassifChoiceFrame.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/RunParams.h"
#include "frames/select/ClassifStateTree.h"
#include <QBoxLayout>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace frames {

ClassifChoiceFrame::ClassifChoiceFrame(QWidget* parent) : TAbsEditFrame(parent) {
    resize(320, 374);
    lbSelect->hide();
    column_ = new QVBoxLayout;
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(2);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(column_);
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    TreeView = new ui::ClassifTreeView(body());
    TreeView->setObjectName("TreeView");
    classif_state::setupTree(TreeView, KeyField, ParentField, TextField);
    TreeView->viewport()->installEventFilter(this);
    TreeView->installEventFilter(this);
    column_->addWidget(TreeView, 1);

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

ClassifChoiceFrame::~ClassifChoiceFrame() = default;

void ClassifChoiceFrame::DataRefresh() {
    reopenTree();
}

void ClassifChoiceFrame::FormClose() {
    pfDataSet->close();
    classif_state::rollbackQuietly(pfTransaction);
    TAbsEditFrame::FormClose();
}

void ClassifChoiceFrame::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node || !node->IsExists("CurNode")) return;
    TreeView->setCurrentKey(node->ItemByName("CurNode")->GetAsInteger());
}

void ClassifChoiceFrame::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    if (const std::optional<int> key = TreeView->currentKey())
        node->ItemByName("CurNode")->SetAsInteger(*key);
}

void ClassifChoiceFrame::reopenTree() {
    pfDataSet->close();
    pfDataSet->open();
}

void ClassifChoiceFrame::setTreeParam(const QString& name, const QVariant& value) {
    // A description may give a tree query without some of the parameters.
    if (db::Param* p = pfDataSet->findParam(name)) p->setValue(value);
}

void ClassifChoiceFrame::pfDataSetAfterOpen(db::AbstractDataSet&) {
    classif_state::rebuildKeepingPlace(TreeView, [this] { BuildTreeView(); });
}

void ClassifChoiceFrame::BuildTreeView() {
    classif_state::build(TreeView, *pfDataSet);
}

void ClassifChoiceFrame::ClearTreeView() {
    const bool updates = TreeView->updatesEnabled();
    TreeView->setUpdatesEnabled(false);
    TreeView->clearNodes();
    TreeView->setUpdatesEnabled(updates);
}

bool ClassifChoiceFrame::IsEmptySelection() {
    const QList<int> top = TreeView->childNodes(-1);
    return top.isEmpty() || TreeView->stateIndex(top.first()) == classif_state::NoImage;
}

void ClassifChoiceFrame::FillXSelectedList(QList<int>& list, int node, const QString& mode) {
    list << classif_state::collect(TreeView, node, mode == QLatin1String("GetUnSelected"));
}

bool ClassifChoiceFrame::eventFilter(QObject* watched, QEvent* event) {
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
    // Space on the current node does what the right button does on it.
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

void ClassifChoiceFrame::TreeViewContextPopup(const QPoint&, bool&) {}

void ClassifChoiceFrame::TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& pos) {
    if (button != Qt::RightButton) return;
    const int node = TreeView->nodeAt(pos);
    if (node < 0) return;
    ToggleNode(node);
}

} // namespace frames
