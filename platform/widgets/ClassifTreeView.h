#pragma once
#include "platform/db/DataSource.h"
#include <QIcon>
#include <QList>
#include <QPointer>
#include <QTreeView>
#include <optional>

namespace frames::ui {

class ClassifTreeModel;

// A tree of classifier branches built from the key, parent and text columns of a dataset.
//
// The tree is built in one pass over the rows, in any order: a row whose parent is null, is the
// row itself or is not among the rows hangs under the (invisible) root, and so does every branch
// of a parent cycle. A key that occurs twice keeps its first row. Children keep the order of
// their rows.
//
// Nodes are addressed by a handle: 0 .. nodeCount()-1 in the order of the rows they were built
// from (-1 = no node). Each node carries an image index and a state image index into the two
// image lists (-1 = none); the state image is drawn before the image.
//
// Bound to a data source, the tree is rebuilt whenever the dataset is reopened or its rows change,
// keeping the current node and the expanded branches by key.
class ClassifTreeView : public QTreeView {
    Q_OBJECT
    Q_PROPERTY(QString KeyField READ keyField WRITE setKeyField)
    Q_PROPERTY(QString ParentField READ parentField WRITE setParentField)
    Q_PROPERTY(QString TextField READ textField WRITE setTextField)
public:
    explicit ClassifTreeView(QWidget* parent = nullptr);
    ~ClassifTreeView() override;

    QString keyField() const { return keyField_; }
    void setKeyField(const QString& f) { keyField_ = f; }
    QString parentField() const { return parentField_; }
    void setParentField(const QString& f) { parentField_ = f; }
    QString textField() const { return textField_; }
    void setTextField(const QString& f) { textField_ = f; }

    db::DataSource* dataSource() const { return source_; }
    void setDataSource(db::DataSource* source);

    // Rebuilds the tree from every row of the dataset without moving its cursor. Throws
    // db::Error when a column named above is missing.
    void build(const db::AbstractDataSet& ds);
    // Removes every node.
    void clearNodes();

    // ---- nodes
    int nodeCount() const;
    int findNode(int key) const; // -1 when no node has the key
    int nodeKey(int node) const;
    int parentNode(int node) const;        // -1 for a node under the root
    QList<int> childNodes(int node) const; // node -1: the nodes under the root
    bool isTopLevel(int node) const { return node >= 0 && parentNode(node) < 0; }
    int level(int node) const; // 0 under the root
    QString nodeText(int node) const;
    void setNodeText(int node, const QString& text);
    int imageIndex(int node) const;
    void setImageIndex(int node, int index);
    int stateIndex(int node) const;
    void setStateIndex(int node, int index);
    void setImages(const QList<QIcon>& images);
    void setStateImages(const QList<QIcon>& images);
    // Every node, parents before their children, siblings in order (the order shown).
    QList<int> nodesInTreeOrder() const;

    QModelIndex indexOfNode(int node) const;
    int nodeOfIndex(const QModelIndex& index) const;
    int nodeAt(const QPoint& viewportPos) const;

    // ---- current node
    int currentNode() const;
    std::optional<int> currentKey() const;
    // Makes the node of the key current, opening its parents and scrolling to it; false (and the
    // current node unchanged) when no node has the key.
    bool setCurrentKey(int key);
    void setCurrentNode(int node);
    // Opens the parents of the node of the key so that it can be seen; false when there is none.
    bool expandToKey(int key);
    void expandToNode(int node);

    // The first node after `after` in tree order (wrapping round, `after` itself last) whose text
    // contains text without regard to case; -1 when none or text is empty. after = -1: from the top.
    int findText(const QString& text, int after = -1) const;

signals:
    void currentNodeChanged(int node);
    // Enter on the current node, or a double click on a node without branches (a double click on a
    // branch opens or closes it).
    void nodeActivated(int node);

protected:
    void keyPressEvent(QKeyEvent* e) override;
    void mouseDoubleClickEvent(QMouseEvent* e) override;

private:
    void rebuildFromSource();

    ClassifTreeModel* model_;
    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QString keyField_ = QStringLiteral("ID_CLASSIF");
    QString parentField_ = QStringLiteral("PARENT_CLASSIF");
    QString textField_ = QStringLiteral("NAME_CLASSIF");
};

} // namespace frames::ui
