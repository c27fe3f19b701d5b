#include "platform/widgets/ClassifTreeView.h"
#include "platform/db/Error.h"
#include "platform/db/MemTable.h"
#include <QPixmap>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace frames;

namespace {

// Classifier rows (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF) in the order given.
struct Branches {
    db::MemTable t;
    db::DataSource src{&t};
    explicit Branches(const QList<QVariantList>& rows) {
        t.addFieldDef("ID_CLASSIF", db::FieldType::Integer);
        t.addFieldDef("PARENT_CLASSIF", db::FieldType::Integer);
        t.addFieldDef("NAME_CLASSIF", db::FieldType::VarChar, 40);
        t.open();
        for (const auto& r : rows) t.appendRecord(r);
        t.first();
    }
};

QStringList texts(const ui::ClassifTreeView& v, const QList<int>& nodes) {
    QStringList out;
    for (int n : nodes) out << v.nodeText(n);
    return out;
}

// A real double click: a click, then the double-click event (QTest sends the latter alone).
void doubleClick(QWidget* w, QPoint pos) {
    QTest::mouseClick(w, Qt::LeftButton, {}, pos);
    QTest::mouseDClick(w, Qt::LeftButton, {}, pos);
    QTest::mouseRelease(w, Qt::LeftButton, {}, pos);
}

QIcon square(Qt::GlobalColor c) {
    QPixmap p(16, 16);
    p.fill(c);
    return QIcon(p);
}

} // namespace

// Rows come in any order; a missing, null or own parent and a parent cycle all end under the root;
// a repeated key keeps its first row; children keep the order of their rows.
TEST(ClassifTreeView, BuildsOneTreeFromRowsInAnyOrder) {
    Branches b({{11, 1, "Молоко"},
                {1, QVariant(), "Продукты"},
                {12, 1, "Хлеб"},
                {111, 11, "Кефир"},
                {2, 2, "Сам себе родитель"},
                {3, 999, "Сирота"},
                {11, 2, "Повтор ключа"},
                {QVariant(), 1, "Без ключа"},
                {20, 21, "Цикл А"},
                {21, 20, "Цикл Б"},
                {112, 11, "Масло"}});
    ui::ClassifTreeView v;
    v.build(b.t);
    ASSERT_EQ(v.nodeCount(), 9);

    EXPECT_EQ(texts(v, v.childNodes(-1)), QStringList({"Продукты", "Сам себе родитель", "Сирота", "Цикл А"}));
    EXPECT_EQ(v.nodeKey(v.parentNode(v.findNode(21))), 20);

    EXPECT_EQ(texts(v, v.nodesInTreeOrder()),
              QStringList({"Продукты", "Молоко", "Кефир", "Масло", "Хлеб", "Сам себе родитель", "Сирота",
                           "Цикл А", "Цикл Б"}));
    // The view shows the same tree.
    EXPECT_EQ(v.nodeOfIndex(v.model()->index(1, 0, v.indexOfNode(v.findNode(11)))), v.findNode(112));

    // A column that the rows lack is an error; the tree is left as it was.
    v.setTextField("NAME");
    EXPECT_THROW(v.build(b.t), db::Error);
    EXPECT_EQ(v.nodeCount(), 9);
}

TEST(ClassifTreeView, CurrentKeyOpensItsParentsAndSearchWrapsRound) {
    Branches b({{1, QVariant(), "Продукты"},
                {11, 1, "Молочные"},
                {111, 11, "Кефир"},
                {112, 11, "Молоко"},
                {2, QVariant(), "Хозтовары"},
                {21, 2, "Мыло"}});
    ui::ClassifTreeView v;
    v.build(b.t);
    QSignalSpy changed(&v, &ui::ClassifTreeView::currentNodeChanged);

    ASSERT_TRUE(v.setCurrentKey(112));
    EXPECT_EQ(v.currentKey(), 112);
    EXPECT_TRUE(v.isExpanded(v.indexOfNode(v.findNode(1))));
    EXPECT_FALSE(v.isExpanded(v.indexOfNode(v.findNode(2))));
    EXPECT_EQ(changed.size(), 1);
    EXPECT_FALSE(v.setCurrentKey(5));
    EXPECT_EQ(v.currentKey(), 112);

    // Without regard to case, in tree order, from the node after the given one, wrapping round.
    const int first = v.findText("МОЛ");
    EXPECT_EQ(v.nodeKey(first), 11);
    const int second = v.findText("мол", first);
    EXPECT_EQ(v.nodeKey(second), 112);
    EXPECT_EQ(v.findText("мол", second), first);
    EXPECT_EQ(v.nodeKey(v.findText("мыло", v.findNode(21))), 21); // the only match, found again
}

TEST(ClassifTreeView, BoundTreeFollowsItsDataSetAndKeepsWhatTheUserSaw) {
    Branches b({{1, QVariant(), "Клиенты"}, {11, 1, "Оптовые"}, {12, 1, "Розничные"}, {121, 12, "Сети"}});
    ui::ClassifTreeView v;
    v.setDataSource(&b.src);
    ASSERT_EQ(v.nodeCount(), 4);
    ASSERT_TRUE(v.setCurrentKey(121));

    // A row added and the dataset reopened: the tree is rebuilt, the same branch stays current
    // and the open branches stay open.
    b.t.appendRecord({122, 12, "Магазины у дома"});
    EXPECT_EQ(v.nodeCount(), 5);
    EXPECT_EQ(v.currentKey(), 121);
    EXPECT_TRUE(v.isExpanded(v.indexOfNode(v.findNode(12))));

    b.t.close();
    EXPECT_EQ(v.nodeCount(), 0);
}

TEST(ClassifTreeView, NodesCarryImageAndStateImageIndexes) {
    Branches b({{1, QVariant(), "Все"}, {11, 1, "Часть"}});
    ui::ClassifTreeView v;
    v.build(b.t);
    v.setImages({square(Qt::red), square(Qt::green)});
    v.setStateImages({QIcon(), QIcon(), QIcon(), square(Qt::gray), square(Qt::black)});
    const int part = v.findNode(11);
    auto decoration = [&](int n) { return v.model()->data(v.indexOfNode(n), Qt::DecorationRole); };
    EXPECT_FALSE(decoration(v.findNode(1)).isValid());

    // The state image is drawn before the image: one icon twice as wide.
    v.setStateIndex(part, 3);
    v.setImageIndex(part, 1);
    const QIcon both = decoration(part).value<QIcon>();
    EXPECT_GT(both.availableSizes().value(0).width(), 16);
    // An index outside the list shows nothing.
    v.setStateIndex(part, 7);
    v.setImageIndex(part, -1);
    EXPECT_FALSE(decoration(part).isValid());
}

TEST(ClassifTreeView, EnterChoosesAnyNodeAndDoubleClickOnlyALeaf) {
    Branches b({{1, QVariant(), "Ветвь"}, {11, 1, "Лист"}});
    ui::ClassifTreeView v;
    v.build(b.t);
    v.resize(300, 200);
    v.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&v));
    QSignalSpy chosen(&v, &ui::ClassifTreeView::nodeActivated);

    v.setCurrentKey(1);
    QTest::keyClick(&v, Qt::Key_Return);
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_EQ(chosen.at(0).at(0).toInt(), v.findNode(1));

    v.collapseAll();
    const QPoint branch = v.visualRect(v.indexOfNode(v.findNode(1))).center();
    doubleClick(v.viewport(), branch);
    EXPECT_EQ(chosen.size(), 1);
    EXPECT_TRUE(v.isExpanded(v.indexOfNode(v.findNode(1))));

    const QPoint leaf = v.visualRect(v.indexOfNode(v.findNode(11))).center();
    doubleClick(v.viewport(), leaf);
    ASSERT_EQ(chosen.size(), 2);
    EXPECT_EQ(chosen.at(1).at(0).toInt(), v.findNode(11));
}
