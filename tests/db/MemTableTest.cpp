#include "platform/db/MemTable.h"
#include "DbTestUtil.h"
#include "platform/db/DataSource.h"
#include <QSignalSpy>
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

TEST_F(MemTables, StatesEventsAndSignals) {
    std::vector<std::string> log;
    t.beforePost.connect([&](AbstractDataSet&) { log.push_back("beforePost"); });
    t.afterPost.connect([&](AbstractDataSet&) { log.push_back("afterPost"); });
    t.onNewRecord.connect([&](AbstractDataSet& d) {
        log.push_back("onNewRecord");
        d.fieldByName("value")->setValue(9.99);
    });
    DataSource src(&t);
    QSignalSpy state(&src, &DataSource::stateChanged);
    QSignalSpy changed(&src, &DataSource::dataSetChanged);
    QSignalSpy field(&src, &DataSource::fieldChanged);

    t.first();
    t.insert();
    EXPECT_DOUBLE_EQ(t.fieldByName("value")->asDouble(), 9.99);
    t.fieldByName("id")->setValue(10);
    t.post();
    EXPECT_EQ(ids(), (std::vector<int>{10, 3, 1, 2}));
    EXPECT_EQ(t.recNo(), 0);
    EXPECT_EQ(log, (std::vector<std::string>{"onNewRecord", "beforePost", "afterPost"}));
    EXPECT_EQ(state.count(), 2);
    EXPECT_GE(changed.count(), 1);
    EXPECT_GE(field.count(), 2);

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

    // An aborting beforePost keeps the edit buffer; cancel restores the row.
    const int tok = t.beforePost.connect([](AbstractDataSet&) { throw Error::configuration("no"); });
    t.edit();
    t.fieldByName("name")->setValue(QString("typed"));
    EXPECT_THROW(t.post(), Error);
    EXPECT_EQ(t.state(), DataSetState::Edit);
    EXPECT_TRUE(t.modified());
    EXPECT_EQ(t.fieldByName("name")->asString(), "typed");
    EXPECT_THROW(t.next(), Error); // scrolling posts, which is refused
    EXPECT_EQ(t.recNo(), 0);
    t.beforePost.disconnect(tok);
    t.cancel();
    EXPECT_EQ(t.fieldByName("name")->asString(), "edited");

    // An aborting onNewRecord leaves the table browsing.
    t.onNewRecord.connect([](AbstractDataSet&) { throw Error::configuration("no"); });
    EXPECT_THROW(t.append(), Error);
    EXPECT_EQ(t.state(), DataSetState::Browse);

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

TEST_F(MemTables, SortingLocateAndBookmarks) {
    t.locate("id", 1);
    const auto bm = t.bookmark();
    t.setSortKeys({{"name", true}});
    EXPECT_EQ(ids(), (std::vector<int>{2, 3, 1})); // Белый, Красный, синий (case ignored)
    EXPECT_EQ(t.fieldByName("id")->asInteger(), 1);
    t.setSortKeys({{"value", false}});
    EXPECT_EQ(ids(), (std::vector<int>{3, 2, 1})); // null last when descending
    t.first();
    t.gotoBookmark(bm);
    EXPECT_EQ(t.fieldByName("id")->asInteger(), 1);
    t.appendRecord({0, QString("a"), 100, QVariant()}); // appended rows are not re-sorted
    EXPECT_EQ(ids(), (std::vector<int>{3, 2, 1, 0}));
    EXPECT_TRUE(t.locate("NAME;id", {QString::fromUtf8("КРАС"), 3}, {true, true}));
    EXPECT_EQ(t.recNo(), 0);
    EXPECT_FALSE(t.locate("day", QDate(2000, 1, 1)));
    EXPECT_EQ(t.recNo(), 0);
    EXPECT_TRUE(t.locate("day", QString("2024-01-01")));
    EXPECT_EQ(t.fieldByName("id")->asInteger(), 1);
    EXPECT_TRUE(t.bookmarkValid(bm));
    t.close();
    EXPECT_FALSE(t.bookmarkValid(bm));
}

} // namespace
