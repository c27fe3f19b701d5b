#include "frames/select/DF_HRCClassif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/select/ClassifStateTree.h"

namespace frames {

TDF_HRCClassif::TDF_HRCClassif(QWidget* parent) : ClassifChoiceFrame(parent) {}

TDF_HRCClassif::~TDF_HRCClassif() = default;

void TDF_HRCClassif::Init() {
    ClassifChoiceFrame::Init();
    reopenTree();
}

void TDF_HRCClassif::pfDataSetBeforeOpen(db::AbstractDataSet&) {
    setTreeParam("kind", Kind);
    setTreeParam("classif_type", ClassifType);
    setTreeParam("user_id", UserID);
    setTreeParam("hrc_filial", HrcFilial);
}

void TDF_HRCClassif::TreeViewContextPopup(const QPoint&, bool& handled) {
    handled = true;
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
