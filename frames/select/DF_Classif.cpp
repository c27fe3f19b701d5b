#include "frames/select/DF_Classif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_AddClassif.h"
#include "frames/select/ClassifStateTree.h"
#include <QBoxLayout>

namespace frames {

TDFClassif::TDFClassif(QWidget* parent) : ClassifChoiceFrame(parent) {
    lfAddClassif = qobject_cast<TAddClassif_LF*>(Registry::instance().create("TAddClassif_LF", body()));
    lfAddClassif->setObjectName("lfAddClassif");
    lfAddClassif->setFixedHeight(40);
    lfAddClassif->SetCaption(QStringLiteral("Вид классификатора"));
    lfAddClassif->lcSelect->setEscapeClear(false);
    lfAddClassif->lcSelect->OnClick = nullptr;
    lfAddClassif->lcSelect->OnChange = [this](QObject* s) { guard([&] { lfAddClassiflcSelectChange(s); }); };
    lfAddClassif->hide();
    column()->insertWidget(0, lfAddClassif);
}

TDFClassif::~TDFClassif() = default;

void TDFClassif::Init() {
    ClassifChoiceFrame::Init();
    if (!lfAddClassif->pFIBDataSet1->active()) lfAddClassif->pFIBDataSet1->open();
    RefreshAClassif();
    // The type in force may already be the one shown: the tree is read in any case.
    if (!pfDataSet->active()) reopenTree();
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

void TDFClassif::SetClassifType(int type) {
    ClassifType = type;
    setLookupValue(type);
    if (pfDataSet->active()) reopenUnlessShowing(type);
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
    setTreeParam("kind", Kind);
    setTreeParam("classif_type", ClassifType);
    setTreeParam("user_id", UserID);
}

// ---- choosing

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
