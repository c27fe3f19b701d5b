#include "platform/widgets/ClassifTreeView.h"
#include "platform/widgets/ErrorReporter.h"
#include <QAbstractItemModel>
#include <QHash>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <vector>

namespace frames::ui {

// The nodes of the tree, read by the view through Qt's model interface. An index's internal id is
// its node handle.
class ClassifTreeModel : public QAbstractItemModel {
public:
    struct Node {
        int key = 0;
        int parent = -1;
        int row = 0; // position among its siblings
        QString text;
        int image = -1;
        int state = -1;
        std::vector<int> children;
    };

    std::vector<Node> nodes;
    std::vector<int> top;
    QHash<int, int> byKey;
    QList<QIcon> images, stateImages;

    using QAbstractItemModel::beginResetModel;
    using QAbstractItemModel::endResetModel;
    using QAbstractItemModel::QAbstractItemModel;

    bool valid(int node) const { return node >= 0 && node < int(nodes.size()); }

    QModelIndex indexOf(int node) const {
        return valid(node) ? createIndex(nodes[size_t(node)].row, 0, quintptr(node)) : QModelIndex();
    }
    static int nodeOf(const QModelIndex& i) { return i.isValid() ? int(i.internalId()) : -1; }

    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override {
        if (column != 0 || row < 0) return {};
        const std::vector<int>& list = parent.isValid() ? nodes[size_t(nodeOf(parent))].children : top;
        if (row >= int(list.size())) return {};
        return createIndex(row, 0, quintptr(list[size_t(row)]));
    }
    QModelIndex parent(const QModelIndex& child) const override {
        const int n = nodeOf(child);
        return valid(n) ? indexOf(nodes[size_t(n)].parent) : QModelIndex();
    }
    int rowCount(const QModelIndex& parent = {}) const override {
        if (!parent.isValid()) return int(top.size());
        if (parent.column() != 0) return 0;
        return int(nodes[size_t(nodeOf(parent))].children.size());
    }
    int columnCount(const QModelIndex& = {}) const override { return 1; }
    Qt::ItemFlags flags(const QModelIndex& i) const override {
        return i.isValid() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable : Qt::NoItemFlags;
    }

    QVariant data(const QModelIndex& i, int role) const override {
        const int n = nodeOf(i);
        if (!valid(n)) return {};
        const Node& node = nodes[size_t(n)];
        switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole:
            return node.text;
        case Qt::UserRole:
            return node.key;
        case Qt::DecorationRole:
            return decoration(node.state, node.image);
        default:
            return {};
        }
    }

    void nodeChanged(int node) {
        const QModelIndex i = indexOf(node);
        emit dataChanged(i, i);
    }

    void clearIcons() { composed_.clear(); }

private:
    static QIcon iconAt(const QList<QIcon>& list, int index) {
        return index >= 0 && index < list.size() ? list.at(index) : QIcon();
    }

    // The state image followed by the image, as one icon (made once per pair).
    QVariant decoration(int state, int image) const {
        const QIcon s = iconAt(stateImages, state), m = iconAt(images, image);
        if (s.isNull() && m.isNull()) return {};
        if (s.isNull()) return m;
        if (m.isNull()) return s;
        const quint64 pair = (quint64(quint32(state)) << 32) | quint32(image);
        auto it = composed_.constFind(pair);
        if (it != composed_.constEnd()) return *it;
        constexpr int size = 16;
        QPixmap both(2 * size + 2, size);
        both.fill(Qt::transparent);
        {
            QPainter p(&both);
            s.paint(&p, QRect(0, 0, size, size));
            m.paint(&p, QRect(size + 2, 0, size, size));
        }
        QIcon icon(both);
        composed_.insert(pair, icon);
        return icon;
    }

    mutable QHash<quint64, QIcon> composed_;
};

ClassifTreeView::ClassifTreeView(QWidget* parent) : QTreeView(parent), model_(new ClassifTreeModel(this)) {
    setModel(model_);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) { emit currentNodeChanged(nodeOfIndex(current)); });
}

ClassifTreeView::~ClassifTreeView() {
    for (auto& c : conns_) disconnect(c);
}

// ---- building

void ClassifTreeView::setDataSource(db::DataSource* source) {
    if (source_ == source) return;
    for (auto& c : conns_) disconnect(c);
    conns_.clear();
    source_ = source;
    if (source_) {
        auto rebuild = [this] { guarded([&] { rebuildFromSource(); }); };
        conns_ << connect(source_, &db::DataSource::dataSetChanged, this, rebuild);
        conns_ << connect(source_, &db::DataSource::dataSetReplaced, this, rebuild);
    }
    guarded([&] { rebuildFromSource(); });
}

void ClassifTreeView::rebuildFromSource() {
    db::AbstractDataSet* ds = source_ ? source_->dataSet() : nullptr;
    if (!ds || !ds->active()) {
        clearNodes();
        return;
    }
    // Keep what the user sees: the current node and the open branches, by key.
    const std::optional<int> current = currentKey();
    QList<int> expanded;
    for (int n = 0; n < nodeCount(); ++n)
        if (!model_->nodes[size_t(n)].children.empty() && isExpanded(indexOfNode(n))) expanded << nodeKey(n);
    build(*ds);
    for (int key : expanded)
        if (int n = findNode(key); n >= 0) setExpanded(indexOfNode(n), true);
    if (current) setCurrentKey(*current);
}

void ClassifTreeView::build(const db::AbstractDataSet& ds) {
    const int keyCol = ds.fieldByName(keyField_)->index();
    const int parentCol = ds.fieldByName(parentField_)->index();
    const int textCol = ds.fieldByName(textField_)->index();

    auto isNull = [](const QVariant& v) { return !v.isValid() || v.isNull(); };
    std::vector<ClassifTreeModel::Node> nodes;
    std::vector<std::optional<int>> parentKeys;
    QHash<int, int> byKey;
    const int rows = ds.recordCount();
    nodes.reserve(size_t(rows));
    parentKeys.reserve(size_t(rows));
    byKey.reserve(rows);
    for (int r = 0; r < rows; ++r) {
        const QVariant key = ds.valueAt(r, keyCol);
        if (isNull(key)) continue; // a branch without a key cannot be chosen
        const int k = key.toInt();
        if (byKey.contains(k)) continue;
        byKey.insert(k, int(nodes.size()));
        ClassifTreeModel::Node node;
        node.key = k;
        node.text = ds.valueAt(r, textCol).toString().trimmed();
        nodes.push_back(std::move(node));
        const QVariant parent = ds.valueAt(r, parentCol);
        parentKeys.push_back(isNull(parent) ? std::nullopt : std::optional<int>(parent.toInt()));
    }

    std::vector<int> top;
    for (int n = 0; n < int(nodes.size()); ++n) {
        const std::optional<int>& pk = parentKeys[size_t(n)];
        const int p = pk && *pk != nodes[size_t(n)].key ? byKey.value(*pk, -1) : -1;
        nodes[size_t(n)].parent = p;
        (p < 0 ? top : nodes[size_t(p)].children).push_back(n);
    }

    // Branches of a parent cycle are not reachable from the root: the first of each cycle (in row
    // order) is moved under the root, which makes the rest of it reachable.
    std::vector<char> reached(nodes.size(), 0);
    std::vector<int> stack;
    auto mark = [&](int from) {
        stack.push_back(from);
        while (!stack.empty()) {
            const int n = stack.back();
            stack.pop_back();
            if (reached[size_t(n)]) continue;
            reached[size_t(n)] = 1;
            for (int c : nodes[size_t(n)].children) stack.push_back(c);
        }
    };
    for (int n : top) mark(n);
    for (int n = 0; n < int(nodes.size()); ++n) {
        if (reached[size_t(n)]) continue;
        auto& siblings = nodes[size_t(nodes[size_t(n)].parent)].children;
        siblings.erase(std::find(siblings.begin(), siblings.end(), n));
        nodes[size_t(n)].parent = -1;
        top.push_back(n);
        mark(n);
    }

    for (int i = 0; i < int(top.size()); ++i) nodes[size_t(top[size_t(i)])].row = i;
    for (auto& node : nodes)
        for (int i = 0; i < int(node.children.size()); ++i) nodes[size_t(node.children[size_t(i)])].row = i;

    model_->beginResetModel();
    model_->nodes = std::move(nodes);
    model_->top = std::move(top);
    model_->byKey = std::move(byKey);
    model_->endResetModel();
}

void ClassifTreeView::clearNodes() {
    model_->beginResetModel();
    model_->nodes.clear();
    model_->top.clear();
    model_->byKey.clear();
    model_->endResetModel();
}

// ---- nodes

int ClassifTreeView::nodeCount() const {
    return int(model_->nodes.size());
}

int ClassifTreeView::findNode(int key) const {
    return model_->byKey.value(key, -1);
}

int ClassifTreeView::nodeKey(int node) const {
    return model_->valid(node) ? model_->nodes[size_t(node)].key : -1;
}

int ClassifTreeView::parentNode(int node) const {
    return model_->valid(node) ? model_->nodes[size_t(node)].parent : -1;
}

QList<int> ClassifTreeView::childNodes(int node) const {
    if (node < 0) return QList<int>(model_->top.begin(), model_->top.end());
    if (!model_->valid(node)) return {};
    const auto& c = model_->nodes[size_t(node)].children;
    return QList<int>(c.begin(), c.end());
}

int ClassifTreeView::level(int node) const {
    if (!model_->valid(node)) return -1;
    int l = 0;
    for (int p = parentNode(node); p >= 0; p = parentNode(p)) ++l;
    return l;
}

QString ClassifTreeView::nodeText(int node) const {
    return model_->valid(node) ? model_->nodes[size_t(node)].text : QString();
}

void ClassifTreeView::setNodeText(int node, const QString& text) {
    if (!model_->valid(node)) return;
    model_->nodes[size_t(node)].text = text;
    model_->nodeChanged(node);
}

int ClassifTreeView::imageIndex(int node) const {
    return model_->valid(node) ? model_->nodes[size_t(node)].image : -1;
}

void ClassifTreeView::setImageIndex(int node, int index) {
    if (!model_->valid(node) || model_->nodes[size_t(node)].image == index) return;
    model_->nodes[size_t(node)].image = index;
    model_->nodeChanged(node);
}

int ClassifTreeView::stateIndex(int node) const {
    return model_->valid(node) ? model_->nodes[size_t(node)].state : -1;
}

void ClassifTreeView::setStateIndex(int node, int index) {
    if (!model_->valid(node) || model_->nodes[size_t(node)].state == index) return;
    model_->nodes[size_t(node)].state = index;
    model_->nodeChanged(node);
}

void ClassifTreeView::setImages(const QList<QIcon>& images) {
    model_->images = images;
    model_->clearIcons();
    viewport()->update();
}

void ClassifTreeView::setStateImages(const QList<QIcon>& images) {
    model_->stateImages = images;
    model_->clearIcons();
    viewport()->update();
}

QList<int> ClassifTreeView::nodesInTreeOrder() const {
    QList<int> order;
    order.reserve(nodeCount());
    std::vector<int> stack(model_->top.rbegin(), model_->top.rend());
    while (!stack.empty()) {
        const int n = stack.back();
        stack.pop_back();
        order << n;
        const auto& c = model_->nodes[size_t(n)].children;
        stack.insert(stack.end(), c.rbegin(), c.rend());
    }
    return order;
}

QModelIndex ClassifTreeView::indexOfNode(int node) const {
    return model_->indexOf(node);
}

int ClassifTreeView::nodeOfIndex(const QModelIndex& index) const {
    return index.model() == model_ ? ClassifTreeModel::nodeOf(index) : -1;
}

int ClassifTreeView::nodeAt(const QPoint& viewportPos) const {
    return nodeOfIndex(indexAt(viewportPos));
}

// ---- current node

int ClassifTreeView::currentNode() const {
    return nodeOfIndex(currentIndex());
}

std::optional<int> ClassifTreeView::currentKey() const {
    const int n = currentNode();
    return n < 0 ? std::nullopt : std::optional<int>(nodeKey(n));
}

void ClassifTreeView::expandToNode(int node) {
    for (int p = parentNode(node); p >= 0; p = parentNode(p)) expand(indexOfNode(p));
}

bool ClassifTreeView::expandToKey(int key) {
    const int n = findNode(key);
    if (n < 0) return false;
    expandToNode(n);
    return true;
}

void ClassifTreeView::setCurrentNode(int node) {
    if (!model_->valid(node)) return;
    expandToNode(node);
    const QModelIndex i = indexOfNode(node);
    selectionModel()->setCurrentIndex(i, QItemSelectionModel::ClearAndSelect);
    scrollTo(i);
}

bool ClassifTreeView::setCurrentKey(int key) {
    const int n = findNode(key);
    if (n < 0) return false;
    setCurrentNode(n);
    return true;
}

int ClassifTreeView::findText(const QString& text, int after) const {
    const QString needle = text.trimmed();
    if (needle.isEmpty()) return -1;
    const QList<int> order = nodesInTreeOrder();
    const int start = after < 0 ? -1 : int(order.indexOf(after));
    for (int i = 1; i <= order.size(); ++i) {
        const int n = order.at((start + i + order.size()) % order.size());
        if (nodeText(n).contains(needle, Qt::CaseInsensitive)) return n;
    }
    return -1;
}

// ---- input

void ClassifTreeView::keyPressEvent(QKeyEvent* e) {
    if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) && e->modifiers() == Qt::NoModifier) {
        if (currentNode() >= 0) {
            emit nodeActivated(currentNode());
            e->accept();
            return;
        }
    }
    QTreeView::keyPressEvent(e);
}

void ClassifTreeView::mouseDoubleClickEvent(QMouseEvent* e) {
    // A double click opens or closes a branch; on a node without branches it chooses the node.
    const int n = nodeAt(e->position().toPoint());
    QTreeView::mouseDoubleClickEvent(e);
    if (n >= 0 && e->button() == Qt::LeftButton && model_->nodes[size_t(n)].children.empty())
        emit nodeActivated(n);
}

} // namespace frames::ui
