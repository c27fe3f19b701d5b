#include "platform/widgets/DBGrid.h"
#include "Tables.h"
#include "platform/db/Field.h"
#include "platform/widgets/DataSetModel.h"
#include <QHeaderView>
#include <QJsonArray>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

using namespace frames;
using namespace widgets_test;

namespace {

// Names A..F in a shuffled storage order, so that sorting moves them.
struct Grid {
    db::MemTable t;
    db::DataSource src{&t};
    ui::DBGrid grid;

    Grid() {
        t.addFieldDef("ID", db::FieldType::Integer);
        t.addFieldDef("NAME", db::FieldType::VarChar, 20);
        t.addFieldDef("QTY", db::FieldType::Integer);
        t.open();
        const QStringList names{"D", "B", "F", "A", "E", "C"};
        for (int i = 0; i < names.size(); ++i) t.appendRecord({i + 1, names[i], i % 2});
        t.first();
        grid.setDataSource(&src);
        grid.resize(400, 300);
        grid.show();
        QCoreApplication::processEvents();
    }
    QString nameAt(int row) const { return t.valueAt(row, 1).toString(); }
    QStringList markedNames() const {
        QStringList out;
        for (int r = 0; r < t.recordCount(); ++r)
            if (grid.isMarked(r)) out << nameAt(r);
        return out;
    }
    QPoint cell(int row, int col = 1) const {
        return grid.visualRect(grid.model()->index(row, col)).center();
    }
    QPoint header(int col) const {
        QHeaderView* h = grid.horizontalHeader();
        return QPoint(h->sectionViewportPosition(col) + h->sectionSize(col) / 2, h->height() / 2);
    }
};

} // namespace

TEST(DBGrid, CurrentRowFollowsTheCursorBothWays) {
    Grid g;
    EXPECT_EQ(g.grid.currentIndex().row(), 0);
    g.t.setRecNo(3);
    EXPECT_EQ(g.grid.currentIndex().row(), 3);
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, {}, g.cell(4));
    EXPECT_EQ(g.t.recNo(), 4);
    QTest::keyClick(&g.grid, Qt::Key_Up);
    EXPECT_EQ(g.t.recNo(), 3);

    QSignalSpy activated(&g.grid, &ui::DBGrid::activated);
    QTest::keyClick(&g.grid, Qt::Key_Return);
    QTest::mouseDClick(g.grid.viewport(), Qt::LeftButton, {}, g.cell(2));
    EXPECT_EQ(activated.count(), 2);
    EXPECT_EQ(g.t.recNo(), 2);
}

TEST(DBGrid, MarksByMouseAndKeysSurviveSorting) {
    Grid g;
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, Qt::ControlModifier, g.cell(1)); // B
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, Qt::ControlModifier, g.cell(3)); // A
    EXPECT_EQ(g.markedNames(), QStringList({"B", "A"}));
    EXPECT_EQ(g.t.recNo(), 3); // the clicked row becomes current
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, Qt::ControlModifier, g.cell(1)); // unmark B
    EXPECT_EQ(g.markedNames(), QStringList({"A"}));
    QTest::keyClick(&g.grid, Qt::Key_Down);
    QTest::keyClick(&g.grid, Qt::Key_Space); // F
    EXPECT_EQ(g.markedNames(), QStringList({"F", "A"}));

    // Sorting by name keeps the marks on the same records.
    QTest::mouseClick(g.grid.horizontalHeader()->viewport(), Qt::LeftButton, {}, g.header(1));
    ASSERT_EQ(g.nameAt(0), "A");
    EXPECT_EQ(g.markedNames(), QStringList({"A", "F"}));
    QList<qint64> bms = g.grid.markedBookmarks();
    std::sort(bms.begin(), bms.end());
    EXPECT_EQ(bms, QList<qint64>({2, 3})); // storage rows of F and A

    // Shift+click marks a range from the last Ctrl-clicked row; a plain click clears.
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, Qt::ControlModifier, g.cell(1)); // B
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, Qt::ShiftModifier, g.cell(3));
    EXPECT_EQ(g.markedNames(), QStringList({"A", "B", "C", "D", "F"}));
    QTest::mouseClick(g.grid.viewport(), Qt::LeftButton, {}, g.cell(2));
    EXPECT_EQ(g.grid.markedCount(), 0);
    QTest::keyClick(&g.grid, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(g.grid.markedCount(), 6);

    // A deleted record leaves the marks; without multi-select nothing can be marked.
    g.t.setRecNo(0);
    g.t.remove();
    EXPECT_EQ(g.grid.markedCount(), 5);
    g.grid.setMultiSelect(false);
    EXPECT_EQ(g.grid.markedCount(), 0);
    QTest::keyClick(&g.grid, Qt::Key_Space);
    EXPECT_EQ(g.grid.markedCount(), 0);
}

TEST(DBGrid, HeaderClicksSetSortKeys) {
    Grid g;
    QWidget* hv = g.grid.horizontalHeader()->viewport();
    QTest::mouseClick(hv, Qt::LeftButton, {}, g.header(1));
    QTest::mouseClick(hv, Qt::LeftButton, {}, g.header(1)); // a second click turns the order
    ASSERT_EQ(g.grid.sortKeys().size(), 1);
    EXPECT_EQ(g.nameAt(0), "F");

    // Ctrl+click adds a second key; a plain click on another column replaces both.
    QTest::mouseClick(hv, Qt::LeftButton, {}, g.header(2));                  // QTY asc
    QTest::mouseClick(hv, Qt::LeftButton, Qt::ControlModifier, g.header(1)); // then NAME asc
    QStringList order;
    for (int r = 0; r < g.t.recordCount(); ++r) order << g.nameAt(r);
    EXPECT_EQ(order, QStringList({"D", "E", "F", "A", "B", "C"})); // QTY 0: D F E; QTY 1: B A C
    QTest::mouseClick(hv, Qt::LeftButton, {}, g.header(0));
    ASSERT_EQ(g.grid.sortKeys().size(), 1);
    EXPECT_EQ(g.grid.sortKeys()[0].field, "ID");

    g.grid.setSortMarking(false);
    QTest::mouseClick(hv, Qt::LeftButton, {}, g.header(1));
    EXPECT_EQ(g.grid.sortKeys()[0].field, "ID");
}

TEST(DBGrid, LayoutRoundTripAndSurvivesResets) {
    Grid g;
    QHeaderView* h = g.grid.horizontalHeader();
    h->moveSection(h->visualIndex(2), 0); // QTY first
    h->resizeSection(1, 155);
    h->setSectionHidden(0, true);
    g.grid.setSortKeys({{"NAME", false}}); // a reset of the model: the layout stays
    EXPECT_EQ(h->sectionSize(1), 155);
    EXPECT_TRUE(h->isSectionHidden(0));
    const QJsonObject saved = g.grid.saveLayout();

    Grid other;
    other.grid.setColumnCaption("NAME", "Name");
    QJsonObject layout = saved;
    QJsonArray cols = layout["columns"].toArray();
    cols.prepend(QJsonObject{{"field", "GONE"}, {"width", 50}}); // unknown or broken entries are skipped
    cols.append(42);
    layout["columns"] = cols;
    other.grid.restoreLayout(layout);
    EXPECT_EQ(other.grid.saveLayout(), saved);
    EXPECT_EQ(other.nameAt(0), "F");
    EXPECT_EQ(other.grid.model()->headerData(1, Qt::Horizontal).toString(), "Name");

    // A layout restored before the dataset opens applies once columns exist.
    db::MemTable t;
    t.addFieldDef("ID", db::FieldType::Integer);
    t.addFieldDef("NAME", db::FieldType::VarChar, 20);
    t.addFieldDef("QTY", db::FieldType::Integer);
    db::DataSource src(&t);
    ui::DBGrid late;
    late.setDataSource(&src);
    late.restoreLayout(QJsonObject{{"columns", QJsonArray{QJsonObject{{"field", "QTY"}, {"width", 77}}}}});
    t.open();
    EXPECT_EQ(late.horizontalHeader()->logicalIndex(0), 2);
    EXPECT_EQ(late.horizontalHeader()->sectionSize(2), 77);
}
