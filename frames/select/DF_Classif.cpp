#include "frames/select/DF_Classif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lookup/LF_AddClassif.h"
#include "frames/select/ClassifStateTree.h"
#include <QBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>

namespace frames {

TDFClassif::TDFClassif(QWidget* parent) : TAbsEditFrame(parent) {
    resize(320, 374);
    lbSelect->hide();
    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(column);
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    lfAddClassif = qobject_cast<TAddClassif_LF*>(Registry::instance().create("TAddClassif_LF", body()));
    lfAddClassif->setObjectName("lfAddClassif");
    lfAddClassif->setFixedHeight(40);
    lfAddClassif->SetCaption(QStringLiteral("Вид классификатора"));
    lfAddClassif->lcSelect->setEscapeClear(false);
    lfAddClassif->lcSelect->OnClick = nullptr;
    lfAddClassif->lcSelect->OnChange = [this](QObject* s) { guard([&] { lfAddClassiflcSelectChange(s); }); };
    lfAddClassif->hide();
    column->addWidget(lfAddClassif);

    TreeView = new ui::ClassifTreeView(body());
    TreeView->setObjectName("TreeView");
    classif_state::setupTree(TreeView, KeyField, ParentField, TextField);
    TreeView->viewport()->installEventFilter(this);
    TreeView->installEventFilter(this);
    column->addWidget(TreeView, 1);

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

TDFClassif::~TDFClassif() = default;

void TDFClassif::Init() {
    TAbsEditFrame::Init();
    if (!lfAddClassif->pFIBDataSet1->active()) lfAddClassif->pFIBDataSet1->open();
    RefreshAClassif();
    // The type in force may already be the one shown: the tree is read in any case.
    if (!pfDataSet->active()) reopenTree();
}

void TDFClassif::DataRefresh() {
    reopenTree();
}

void TDFClassif::FormClose() {
    pfDataSet->close();
    if (pfTransaction->active()) pfTransaction->rollback();
    TAbsEditFrame::FormClose();
}

void TDFClassif::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node || !node->IsExists("CurNode")) return;
    TreeView->setCurrentKey(node->ItemByName("CurNode")->GetAsInteger());
}

void TDFClassif::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (!node) return;
    if (const std::optional<int> key = TreeView->currentKey())
        node->ItemByName("CurNode")->SetAsInteger(*key);
}

// ---- classifier type

void TDFClassif::setLookupValue(int value) {
    auto handler = std::move(lfAddClassif->lcSelect->OnChange);
    lfAddClassif->lcSelect->OnChange = nullptr;
    lfAddClassif->lcSelect->setKeyValue(value);
    lfAddClassif->lcSelect->OnChange = std::move(handler);
}

void TDFClassif::reopenUnlessShowing(int classifType) {
    const db::Param* p = pfDataSet->findParam("classif_type");
    if (pfDataSet->active() && p && !p->isNull() && p->asInteger() == classifType) return;
    reopenTree();
}

void TDFClassif::reopenTree() {
    pfDataSet->close();
    pfDataSet->open();
}

void TDFClassif::SetUseAClassif(bool use) {
    UseAClassif = use;
    if (use) {
        lfAddClassif->pFIBDataSet1->open();
        lfAddClassif->show();
        setLookupValue(0);
    } else {
        lfAddClassif->pFIBDataSet1->close();
        lfAddClassif->hide();
    }
    ClassifType = 0;
    reopenUnlessShowing(0);
}

void TDFClassif::RefreshAClassif() {
    if (!UseAClassif) return;
    if (!lfAddClassif->pFIBDataSet1->active()) lfAddClassif->pFIBDataSet1->open();
    lfAddClassif->show();
    setLookupValue(ClassifType);
    reopenUnlessShowing(ClassifType);
}

void TDFClassif::lfAddClassiflcSelectChange(QObject* sender) {
    lfAddClassif->lcSelectChange(sender);
    const QVariant v = lfAddClassif->lcSelect->keyValue();
    if (!v.isValid() || v.isNull()) return;
    ClassifType = v.toInt();
    reopenTree();
}

// ---- the tree

void TDFClassif::pfDataSetBeforeOpen(db::AbstractDataSet&) {
    // A description may give a tree query without some of them.
    if (db::Param* p = pfDataSet->findParam("kind")) p->setValue(Kind);
    if (db::Param* p = pfDataSet->findParam("classif_type")) p->setValue(ClassifType);
    if (db::Param* p = pfDataSet->findParam("user_id")) p->setValue(UserID);
}

void TDFClassif::pfDataSetAfterOpen(db::AbstractDataSet&) {
    classif_state::rebuildKeepingPlace(TreeView, [this] { BuildTreeView(); });
}

void TDFClassif::BuildTreeView() {
    classif_state::build(TreeView, *pfDataSet);
}

void TDFClassif::ClearTreeView() {
    const bool updates = TreeView->updatesEnabled();
    TreeView->setUpdatesEnabled(false);
    TreeView->clearNodes();
    TreeView->setUpdatesEnabled(updates);
}

bool TDFClassif::IsEmptySelection() {
    const QList<int> top = TreeView->childNodes(-1);
    return top.isEmpty() || TreeView->stateIndex(top.first()) == classif_state::NoImage;
}

void TDFClassif::FillXSelectedList(QList<int>& list, int node, const QString& mode) {
    list << classif_state::collect(TreeView, node, mode == QLatin1String("GetUnSelected"));
}

// ---- choosing

bool TDFClassif::eventFilter(QObject* watched, QEvent* event) {
    if (watched == TreeView->viewport() && event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::RightButton) {
            const QPoint pos = e->position().toPoint();
            guard([&] { TreeViewMouseDown(e->button(), e->modifiers(), pos); });
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

void TDFClassif::TreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers, const QPoint& pos) {
    if (button != Qt::RightButton) return;
    const int node = TreeView->nodeAt(pos);
    if (node < 0) return;
    ToggleNode(node);
}

void TDFClassif::ToggleNode(int node) {
    TraceText("TDFClassif.TreeViewMouseDown", 1);
    classif_state::TraceOnExit end{"TDFClassif.TreeViewMouseDown End"};
    const int key = TreeView->nodeKey(node);
    classif_state::toggle(TreeView, node);
    try {
        if (TreeView->stateIndex(node) == classif_state::AllChosen) {
            TraceText("TDFClassif Before DoXSelect", 1);
            DoXSelect(key, InsertSQL);
            TraceText("TDFClassif After DoXSelect", 1);
        } else {
            QList<int> list;
            FillXSelectedList(list, node, "GetSelected");
            DoXUnSelect(list, DeleteHead);
        }
    } catch (...) {
        // The tree shows again what the server keeps (the former marks, or the batches that
        // were committed before the failure).
        guard([&] { reopenTree(); });
        TreeView->setCurrentKey(key);
        throw;
    }
    reopenTree();
    TreeView->setCurrentKey(key);
}

void TDFClassif::DoXSelect(int id, const QString& statement) {
    pfTransaction->ensureStarted();
    try {
        pfUpdate->setSql(statement);
        pfUpdate->paramByName("kind")->setValue(Kind);
        pfUpdate->paramByName("user_id")->setValue(UserID);
        pfUpdate->paramByName("type_classif")->setValue(ClassifType);
        pfUpdate->paramByName("id_classif")->setValue(id);
        TraceText("TDFClassif.DoXSelect Before Exec", 1);
        pfUpdate->exec();
        TraceText("TDFClassif.DoXSelect After Exec", 1);
        pfTransaction->commit();
        TraceText("TDFClassif.DoXSelect After Commit", 1);
    } catch (...) {
        classif_state::rollbackQuietly(pfTransaction);
        TraceText("TDFClassif.DoXSelect After RollBack", 1);
        throw;
    }
    emit SelectionChanged();
}

void TDFClassif::DoXUnSelect(const QList<int>& list, const QString& head) {
    for (int from = 0; from < list.size(); from += BatchSize) {
        QStringList ids;
        for (int i = from; i < qMin(from + BatchSize, int(list.size())); ++i)
            ids << QString::number(TreeView->nodeKey(list.at(i)));
        pfUpdate->setSql(head + ids.join(',') + "))");
        pfUpdate->paramByName("kind")->setValue(Kind);
        pfUpdate->paramByName("user_id")->setValue(UserID);
        pfTransaction->ensureStarted();
        try {
            TraceText(QStringLiteral("TDFClassif.DoXUnSelect Exec %1 ids").arg(ids.size()), 1);
            pfUpdate->exec();
            pfTransaction->commit();
        } catch (...) {
            classif_state::rollbackQuietly(pfTransaction);
            TraceText("TDFClassif.DoXUnSelect After RollBack", 1);
            throw;
        }
        emit SelectionChanged();
    }
}

FRAMES_REGISTER(TDFClassif, "select");

} // namespace frames
