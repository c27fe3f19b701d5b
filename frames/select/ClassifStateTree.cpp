#include "frames/select/ClassifStateTree.h"
#include "frames/core/Host.h"
#include "platform/db/AbstractDataSet.h"
#include "platform/db/Field.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include <QPainter>
#include <QPixmap>
#include <vector>

namespace frames::classif_state {

namespace {

QIcon checkBox(bool all) {
    constexpr int size = 16;
    QPixmap px(size, size);
    px.fill(Qt::transparent);
    QPainter p(&px);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x40, 0x40, 0x40), 1));
    p.setBrush(Qt::white);
    p.drawRect(QRectF(1.5, 1.5, size - 3, size - 3));
    if (all) {
        p.setPen(QPen(QColor(0x10, 0x70, 0x10), 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF mark[] = {{4, 8.5}, {7, 11.5}, {12.5, 4.5}};
        p.drawPolyline(mark, 3);
    } else {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x60, 0x90, 0x60));
        p.drawRect(QRectF(4.5, 4.5, size - 9, size - 9));
    }
    return QIcon(px);
}

} // namespace

QList<QIcon> stateImages() {
    static const QList<QIcon> images = {QIcon(), QIcon(), QIcon(), checkBox(false), checkBox(true)};
    return images;
}

int stateImageOf(int allCounter, int selCounter, int notCounter) {
    if (allCounter == 0) return NoImage;
    if (allCounter == selCounter) return AllChosen;
    if (allCounter == notCounter) return NoImage;
    return PartlyChosen;
}

void build(ui::ClassifTreeView* tree, const db::AbstractDataSet& ds) {
    const bool updates = tree->updatesEnabled();
    tree->setUpdatesEnabled(false);
    tree->build(ds);
    const int keyCol = ds.fieldByName(tree->keyField())->index();
    const int allCol = ds.fieldByName("ALL_COUNTER")->index();
    const int selCol = ds.fieldByName("SEL_COUNTER")->index();
    const int notCol = ds.fieldByName("NOT_COUNTER")->index();
    for (int r = 0; r < ds.recordCount(); ++r) {
        const int node = tree->findNode(ds.valueAt(r, keyCol).toInt());
        if (node < 0) continue;
        tree->setStateIndex(node, stateImageOf(ds.valueAt(r, allCol).toInt(), ds.valueAt(r, selCol).toInt(),
                                               ds.valueAt(r, notCol).toInt()));
    }
    const QList<int> top = tree->childNodes(-1);
    if (!top.isEmpty()) tree->expand(tree->indexOfNode(top.first()));
    tree->setUpdatesEnabled(updates);
}

QList<int> collect(const ui::ClassifTreeView* tree, int node, bool wantAll) {
    QList<int> out;
    if (node < 0 || node >= tree->nodeCount()) return out;
    std::vector<int> stack{node};
    while (!stack.empty()) {
        const int n = stack.back();
        stack.pop_back();
        if ((tree->stateIndex(n) == AllChosen) == wantAll) out << n;
        const QList<int> children = tree->childNodes(n);
        for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back(*it);
    }
    return out;
}

void toggle(ui::ClassifTreeView* tree, int node) {
    if (node < 0 || node >= tree->nodeCount()) return;
    const int to = tree->stateIndex(node) == AllChosen ? NoImage : AllChosen;
    std::vector<int> stack{node};
    while (!stack.empty()) {
        const int n = stack.back();
        stack.pop_back();
        tree->setStateIndex(n, to);
        for (int c : tree->childNodes(n)) stack.push_back(c);
    }
}

void rebuildKeepingPlace(ui::ClassifTreeView* tree, const std::function<void()>& rebuild) {
    const bool hadNodes = tree->nodeCount() > 0;
    const int position = hadNodes ? int(tree->nodesInTreeOrder().indexOf(tree->currentNode())) : -1;
    QList<int> expanded;
    for (int n = 0; n < tree->nodeCount(); ++n)
        if (tree->isExpanded(tree->indexOfNode(n))) expanded << tree->nodeKey(n);
    rebuild();
    for (int key : expanded)
        if (int n = tree->findNode(key); n >= 0) tree->expand(tree->indexOfNode(n));
    if (hadNodes && position >= 0) {
        const QList<int> order = tree->nodesInTreeOrder();
        if (position < order.size()) tree->setCurrentNode(order.at(position));
    }
}

void rollbackQuietly(db::Transaction* tr) {
    if (!tr->active()) return;
    try {
        tr->rollback();
    } catch (...) {
    }
}

void setupTree(ui::ClassifTreeView* tree, const QString& keyField, const QString& parentField,
               const QString& textField) {
    tree->setKeyField(keyField);
    tree->setParentField(parentField);
    tree->setTextField(textField);
    tree->setRootIsDecorated(true);
    tree->setStateImages(stateImages());
}

TraceOnExit::~TraceOnExit() {
    try {
        TraceText(text, 1);
    } catch (...) {
    }
}

} // namespace frames::classif_state
