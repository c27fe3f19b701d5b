#include "platform/db/MemTable.h"
#include "DbTestUtil.h"
#include <gtest/gtest.h>

using namespace frames::db;

namespace {

class MemTables : public ::testing::Test {
protected:
    void SetUp() override {
        t.setObjectName("mtColours");
        t.addFieldDef("ID", FieldType::Integer);
        t.addFieldDef("NAME", FieldType::VarChar, 30);
        t.addFieldDef("VALUE", FieldType::Numeric, 0, 2);
        t.addFieldDef("DAY", FieldType::Date);
        t.open();
        t.appendRecord({3, QString::fromUtf8("Красный"), 1.5, QDate(2024, 1, 3)});
        t.appendRecord({1, QString::fromUtf8("синий"), QVariant(), QDate(2024, 1, 1)});
        t.appendRecord({2, QString::fromUtf8("Белый"), 0.25, QVariant()});
    }
    std::vector<int> ids() {
        std::vector<int> r;
        for (int i = 0; i < t.recordCount(); ++i) r.push_back(t.valueAt(i, 0).toInt());
        return r;
    }
    MemTable t;
};

TEST_F(MemTables, RowsFieldsAndConversions) {
    EXPECT_EQ(t.recNo(), 2); // appendRecord leaves the cursor on the new row
    t.first();
    EXPECT_EQ(t.fieldByName("name")->asString(), QString::fromUtf8("Красный"));
    EXPECT_EQ(t.fieldByName("value")->asString(), "1.50");
    EXPECT_EQ(t.fieldByName("day")->asString(), "2024-01-03");
    t.next();
    EXPECT_TRUE(t.fieldByName("value")->isNull());
    EXPECT_EQ(t.fieldByName("value")->asDouble(), 0.0);
    EXPECT_THROW(t.appendRecord({QString("x")}), Error); // text that is not an integer
    EXPECT_EQ(t.recordCount(), 3);
    EXPECT_EQ(t.state(), DataSetState::Browse);
    const QString text = frames::db::test::thrown([&] { t.fieldByName("colour"); }).text();
    EXPECT_TRUE(text.contains("mtColours") && text.contains("\"colour\"")) << text.toStdString();
    t.appendRecord({QString("4"), QString("x"), QString("2,5"), QString("05.02.2024")});
    EXPECT_EQ(t.fieldByName("id")->value().typeId(), QMetaType::Int);
    EXPECT_DOUBLE_EQ(t.fieldByName("value")->asDouble(), 2.5);
    EXPECT_EQ(t.fieldByName("day")->asDate(), QDate(2024, 2, 5));

    t.emptyTable();
    EXPECT_TRUE(t.active());
    EXPECT_TRUE(t.isEmpty());
    EXPECT_EQ(t.recNo(), -1);
    t.close();
    t.clearFieldDefs();
    t.addFieldDef("X", FieldType::Boolean);
    t.open();
    EXPECT_EQ(t.fieldNames(), QStringList{"X"});
    t.appendRecord({QString("true")});
    EXPECT_TRUE(t.fieldByName("x")->asBoolean());
}

// The state machine is shared with DataSet (see DataSetTest); what follows is what only the
// in-memory store does or what DataSet's tests do not reach: insert position, auto-post on scroll.
TEST_F(MemTables, StatesAndScrolling) {
    t.onNewRecord.connect([&](AbstractDataSet& d) { d.fieldByName("value")->setValue(9.99); });
    t.first();
    t.insert();
    EXPECT_DOUBLE_EQ(t.fieldByName("value")->asDouble(), 9.99);
    t.fieldByName("id")->setValue(10);
    t.post();
    EXPECT_EQ(ids(), (std::vector<int>{10, 3, 1, 2}));
    EXPECT_EQ(t.recNo(), 0);

    // Moving away from an unchanged insert drops it; from a changed edit posts it.
    t.append();
    t.first();
    EXPECT_EQ(t.recordCount(), 4);
    t.edit();
    t.fieldByName("name")->setValue(QString("edited"));
    t.next();
    EXPECT_EQ(t.state(), DataSetState::Browse);
    t.first();
    EXPECT_EQ(t.fieldByName("name")->asString(), "edited");

    // Scrolling posts; a refused post keeps the row and the edit.
    const int tok = t.beforePost.connect([](AbstractDataSet&) { throw Error::configuration("no"); });
    t.edit();
    t.fieldByName("name")->setValue(QString("typed"));
    EXPECT_THROW(t.next(), Error);
    EXPECT_EQ(t.recNo(), 0);
    EXPECT_EQ(t.fieldByName("name")->asString(), "typed");
    t.beforePost.disconnect(tok);
    t.cancel();
    EXPECT_EQ(t.fieldByName("name")->asString(), "edited");

    // Delete in insert state only cancels the insert.
    t.onNewRecord.clear();
    t.append();
    t.remove();
    EXPECT_EQ(t.recordCount(), 4);
    t.last();
    t.remove();
    EXPECT_EQ(t.recordCount(), 3);
    EXPECT_EQ(t.recNo(), 2);
    EXPECT_FALSE(t.eof());
}

TEST_F(MemTables, SortingAndLocate) {
    t.locate("id", 1);
    t.setSortKeys({{"value", false}});
    EXPECT_EQ(ids(), (std::vector<int>{3, 2, 1})); // null last when descending
    EXPECT_EQ(t.fieldByName("id")->asInteger(), 1);
    t.appendRecord({0, QString("a"), 100, QVariant()}); // appended rows are not re-sorted
    EXPECT_EQ(ids(), (std::vector<int>{3, 2, 1, 0}));
    EXPECT_TRUE(t.locate("NAME;id", {QString::fromUtf8("КРАС"), 3}, {true, true}));
    EXPECT_EQ(t.recNo(), 0);
    EXPECT_TRUE(t.locate("day", QString("2024-01-01")));
    EXPECT_EQ(t.fieldByName("id")->asInteger(), 1);
}

} // namespace

// A key filter hides rows without dropping them: the cursor stays on its row when it is still
// shown, sorting applies to what is shown, a deleted row never comes back, and removing the
// filter shows every live row again.
TEST(MemTableFilter, HidesRowsKeepsTheCursorAndNeverRevivesADeletedRow) {
    MemTable t;
    t.addFieldDef("ID", FieldType::Integer);
    t.open();
    for (int id : {5, 1, 4, 2, 3}) t.appendRecord({id});
    auto ids = [&] {
        std::vector<int> r;
        for (int i = 0; i < t.recordCount(); ++i) r.push_back(t.valueAt(i, 0).toInt());
        return r;
    };
    t.setRecNo(2); // 4
    t.setKeyFilter("ID", [](const QVariant& v) { return v.toInt() % 2 == 0; });
    EXPECT_EQ(ids(), (std::vector<int>{4, 2}));
    EXPECT_EQ(t.fieldByName("ID")->asInteger(), 4);
    EXPECT_EQ(t.storedCount(), 5);
    t.setSortKeys({{"ID", true}});
    EXPECT_EQ(ids(), (std::vector<int>{2, 4}));
    EXPECT_EQ(t.fieldByName("ID")->asInteger(), 4);
    t.remove(); // 4
    t.setKeyFilter("ID", {});
    EXPECT_EQ(ids(), (std::vector<int>{1, 2, 3, 5}));
    // A filter that hides the current row leaves the cursor inside the view.
    t.last();
    t.setKeyFilter("ID", [](const QVariant& v) { return v.toInt() < 3; });
    EXPECT_EQ(ids(), (std::vector<int>{1, 2}));
    EXPECT_GE(t.recNo(), 0);
    EXPECT_LT(t.recNo(), 2);
    EXPECT_THROW(t.setKeyFilter("NOPE", [](const QVariant&) { return true; }), Error);
}
