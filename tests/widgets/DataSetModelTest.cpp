#include "platform/widgets/DataSetModel.h"
#include "Tables.h"
#include "platform/db/Field.h"
#include <QSignalSpy>
#include <QTableView>
#include <QTest>
#include <gtest/gtest.h>

using namespace frames;
using namespace widgets_test;

namespace {

QString text(const ui::DataSetModel& m, int row, int col) {
    return m.data(m.index(row, col)).toString();
}

} // namespace

TEST(DataSetModel, ColumnsHeadersTextAndEditBuffer) {
    db::MemTable t;
    t.addFieldDef("ID", db::FieldType::Integer);
    t.addFieldDef("NAME", db::FieldType::VarChar, 40);
    t.addFieldDef("ACTIVE", db::FieldType::Char, 1);
    t.addFieldDef("PRICE", db::FieldType::Numeric, 0, 2);
    t.addFieldDef("DAY", db::FieldType::Date);
    t.open();
    t.appendRecord({1, "apple", "T", 1.5, QDate(2024, 3, 9)});
    t.appendRecord({2, "pear", "F", QVariant(), QVariant()});
    t.appendRecord({3, "plum", QVariant(), 10, QDate(2023, 12, 31)});
    t.first();
    db::DataSource src(&t);

    ui::DataSetModel m(&src);
    EXPECT_EQ(text(m, 0, 3), "1.50");
    EXPECT_EQ(text(m, 1, 3), ""); // null
    EXPECT_EQ(text(m, 0, 4), "09.03.2024");

    // Chosen columns: case-insensitive, unknown names dropped, order kept.
    m.setFieldNames({"name", "missing", "Id", "ACTIVE"});
    ASSERT_EQ(m.columnCount(), 3);
    m.setCaption("name", "Title");
    EXPECT_EQ(m.headerData(0, Qt::Horizontal).toString(), "Title");
    EXPECT_EQ(m.data(m.index(2, 1), Qt::EditRole).toInt(), 3);

    // Check column: no text, a check state read from "T"/"F"/null.
    m.setCheckFields({"active"});
    EXPECT_FALSE(m.data(m.index(0, 2)).isValid());
    EXPECT_EQ(m.data(m.index(0, 2), Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(m.data(m.index(2, 2), Qt::CheckStateRole).toInt(), Qt::Unchecked);

    // The text handler gets each row's own text even though the cursor stays on row 0.
    t.fieldByName("NAME")->getText = [](const db::Field&, QString& s, bool) {
        if (!s.isEmpty()) s[0] = s[0].toUpper();
    };
    EXPECT_EQ(text(m, 1, 0), "Pear");
    EXPECT_EQ(text(m, 2, 0), "Plum");

    // The edited row shows its edit buffer and is refreshed through dataChanged; cancel restores.
    QSignalSpy changed(&m, &QAbstractItemModel::dataChanged);
    QSignalSpy resets(&m, &QAbstractItemModel::modelReset);
    t.setRecNo(1);
    t.edit();
    t.fieldByName("NAME")->setValue("quince");
    EXPECT_EQ(text(m, 1, 0), "Quince");
    bool row1 = false;
    for (const auto& args : changed) row1 |= args[0].toModelIndex().row() == 1;
    EXPECT_TRUE(row1);
    t.cancel();
    EXPECT_EQ(text(m, 1, 0), "Pear");
    EXPECT_EQ(resets.count(), 0); // moving and editing never reset the model

    // Row count changes reset the model; so does closing.
    t.setRecNo(0);
    t.remove();
    EXPECT_EQ(m.rowCount(), 2);
    EXPECT_EQ(text(m, 0, 0), "Pear");
    t.close();
    EXPECT_EQ(m.rowCount(), 0);
}

TEST(DataSetModel, LeadingRowAndDecoration) {
    Tables tb;
    ui::DataSetModel m(&tb.colorsSrc);
    m.setFieldNames({"NAME"});
    m.setDecoration([](int row) { return QVariant(QColor(row < 0 ? Qt::white : Qt::black)); });
    m.setLeadingRow(true, "(none)");
    EXPECT_EQ(text(m, 0, 0), "(none)");
    EXPECT_EQ(m.data(m.index(0, 0), Qt::DecorationRole).value<QColor>(), QColor(Qt::white));
    EXPECT_EQ(m.data(m.index(3, 0), Qt::DecorationRole).value<QColor>(), QColor(Qt::black));
    EXPECT_EQ(m.dataSetRow(3), 2);
    // A change of the current row is reported at its model row, after the leading one.
    QSignalSpy changed(&m, &QAbstractItemModel::dataChanged);
    tb.colors.setRecNo(2);
    tb.colors.edit();
    tb.colors.fieldByName("NAME")->setValue("Navy");
    ASSERT_GE(changed.count(), 1);
    EXPECT_EQ(changed.last()[0].toModelIndex().row(), 3);
    EXPECT_EQ(text(m, 3, 0), "Navy");
}

TEST(DataSetModel, LargeTableResetsWithoutReadingRows) {
    db::MemTable t;
    fillNumbered(t, 200000);
    db::DataSource src(&t);
    ui::DataSetModel m(&src);
    EXPECT_EQ(m.rowCount(), 200000);
    EXPECT_EQ(m.dataCalls(), 0);

    QTableView view;
    view.resize(400, 300);
    view.setModel(&m);
    view.show();
    QCoreApplication::processEvents();
    const qint64 shown = m.dataCalls();
    t.last();                       // a cursor move touches only the rows concerned
    t.setSortKeys({{"ID", false}}); // reorders: a reset
    QCoreApplication::processEvents();
    EXPECT_EQ(m.rowCount(), 200000);
    EXPECT_LT(m.dataCalls(), 20000); // only visible rows are ever read
    EXPECT_GT(m.dataCalls(), shown);
    EXPECT_EQ(m.data(m.index(0, 1)).toString(), "Name 199999");
}
