#include "platform/db/DataSet.h"
#include "DbTestUtil.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include <QSignalSpy>

using namespace frames::db;
using frames::db::test::ScratchDb;
using frames::db::test::thrown;

namespace {

class DataSets : public ScratchDb {
protected:
    void SetUp() override {
        ScratchDb::SetUp();
        exec("create table goods (id integer not null primary key, name varchar(40) collate PXW_CYRL,"
             " price numeric(12,2), qty integer check (qty >= 0))");
        const char* rows[] = {"(1, 'яблоко', 10.50, 5)", "(2, 'Яма', 3, 1)", "(3, 'абрикос', null, 0)",
                              "(4, 'Борщ', 7.25, 2)", "(5, null, 1, 1)"};
        for (const char* r : rows) exec(QString("insert into goods values ") + r);
        write = std::make_unique<Transaction>(db.get(), TransactionOptions::writeNoWait());
        ds = std::make_unique<DataSet>(db.get(), read.get());
        ds->setObjectName("dsGoods");
        ds->setUpdateTransaction(write.get());
        ds->setSelectSql("select id, name, price, qty from goods order by id");
        ds->setUpdateSql(
            "update goods set id = :id, name = :name, price = :price, qty = :qty where id = :old_id");
        ds->setInsertSql("insert into goods (id, name, price, qty) values (:id, :name, :price, :qty)");
        ds->setDeleteSql("delete from goods where id = :OLD_ID");
        ds->setRefreshSql("select name, price, qty from goods where id = :id");
    }
    void TearDown() override {
        ds.reset();
        write.reset();
        ScratchDb::TearDown();
    }
    // Reads committed state through a fresh transaction.
    QVariant dbValue(const QString& sql) {
        Transaction t(db.get(), TransactionOptions::read());
        Query q(db.get(), &t);
        q.setSql(sql);
        q.exec();
        return q.value(0);
    }
    std::vector<int> ids() {
        std::vector<int> r;
        for (int i = 0; i < ds->recordCount(); ++i) r.push_back(ds->valueAt(i, 0).toInt());
        return r;
    }

    std::unique_ptr<Transaction> write;
    std::unique_ptr<DataSet> ds;
};

TEST_F(DataSets, CursorEofBofAndRecNo) {
    ds->open();
    EXPECT_EQ(ds->recordCount(), 5);
    EXPECT_EQ(ds->recNo(), 0);
    EXPECT_TRUE(ds->bof());
    EXPECT_FALSE(ds->eof());
    int seen = 0;
    for (ds->first(); !ds->eof(); ds->next()) ++seen;
    EXPECT_EQ(seen, 5);
    EXPECT_EQ(ds->recNo(), 4); // stays on the last row
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 5);
    ds->prior();
    EXPECT_FALSE(ds->eof());
    EXPECT_EQ(ds->recNo(), 3);
    ds->first();
    ds->prior();
    EXPECT_TRUE(ds->bof());
    EXPECT_EQ(ds->recNo(), 0);
    ds->moveBy(3);
    EXPECT_EQ(ds->fieldByName("ID")->asInteger(), 4);
    ds->setRecNo(1);
    EXPECT_EQ(ds->fieldByName("name")->asString(), QString::fromUtf8("Яма"));
    ds->last();
    EXPECT_TRUE(ds->eof());
    EXPECT_TRUE(ds->fieldByName("name")->isNull());

    ds->close();
    EXPECT_EQ(ds->recordCount(), 0);
    ds->setSelectSql("select * from goods where id < 0");
    ds->open();
    EXPECT_TRUE(ds->isEmpty());
    EXPECT_TRUE(ds->eof());
    EXPECT_TRUE(ds->bof());
    EXPECT_EQ(ds->recNo(), -1);
    EXPECT_TRUE(ds->fieldByName("id")->isNull());
    ds->next();
    EXPECT_TRUE(ds->eof());
}

TEST_F(DataSets, CyrillicOrderAndLocate) {
    ds->setSelectSql("select id, name from goods where name is not null order by name");
    ds->open();
    // PXW_CYRL: alphabetical without regard to case (byte order would put upper case first)
    EXPECT_EQ(ids(), (std::vector<int>{3, 4, 1, 2}));
    EXPECT_TRUE(ds->locate("name", QString::fromUtf8("ЯБЛ"), {true, true}));
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 1);
    EXPECT_FALSE(ds->locate("name", QString::fromUtf8("ЯБЛ"), {false, true})); // case matters
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 1);                          // did not move
    EXPECT_FALSE(ds->locate("name", QString::fromUtf8("ябл"), {true, false})); // whole value
    ds->setSortKeys({{"name", false}});
    EXPECT_EQ(ids(), (std::vector<int>{2, 1, 4, 3})); // in memory, without regard to case
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 1); // current record kept
}

TEST_F(DataSets, LocateBookmarksAndSorting) {
    ds->open();
    EXPECT_TRUE(ds->locate("qty;price", {1, 3}));
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 2);
    EXPECT_TRUE(ds->locate("QTY;Price", {QString("1"), QString("1.00")})); // text converts by type
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 5);
    EXPECT_TRUE(ds->locate("price", QVariant())); // null matches null
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 3);
    EXPECT_FALSE(ds->locate("id", 42));
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 3);
    EXPECT_THROW(ds->locate("nope", 1), Error);

    const auto bm = ds->bookmark();
    ds->setSortKeys({{"price", true}});
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 3);
    EXPECT_EQ(ids(), (std::vector<int>{3, 5, 2, 4, 1})); // null first
    ds->setSortKeys({{"qty", false}, {"id", false}});
    EXPECT_EQ(ids(), (std::vector<int>{1, 4, 5, 2, 3}));
    ds->setSortKeys({{"qty", true}}); // stable: equal quantities keep storage order
    EXPECT_EQ(ids(), (std::vector<int>{3, 2, 5, 4, 1}));
    ds->first();
    ds->next();
    EXPECT_TRUE(ds->bookmarkValid(bm));
    ds->gotoBookmark(bm);
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 3);
    ds->setSortKeys({});
    EXPECT_EQ(ids(), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(ds->recNo(), 2);
    EXPECT_THROW(ds->setSortKeys({{"nope", true}}), Error);
    ds->remove();
    EXPECT_FALSE(ds->bookmarkValid(bm));
    EXPECT_THROW(ds->gotoBookmark(bm), Error);
}

TEST_F(DataSets, EditInsertDeleteRunTheirStatementsInTheUpdateTransaction) {
    ds->open();
    ds->setRecNo(1);
    ds->edit();
    EXPECT_EQ(ds->state(), DataSetState::Edit);
    ds->fieldByName("name")->setAsString(QString::fromUtf8("Яма глубокая"));
    ds->fieldByName("price")->setValue(QString("4.5"));
    EXPECT_EQ(ds->fieldByName("price")->asString(), "4.50"); // edit buffer
    ds->post();
    EXPECT_EQ(ds->state(), DataSetState::Browse);
    EXPECT_EQ(ds->fieldByName("name")->asString(), QString::fromUtf8("Яма глубокая"));
    EXPECT_DOUBLE_EQ(ds->fieldByName("price")->asDouble(), 4.5);
    EXPECT_TRUE(write->active()); // not committed by the dataset
    EXPECT_EQ(dbValue("select name from goods where id = 2").toString(), QString::fromUtf8("Яма"));

    ds->edit(); // the key itself changes: OLD_ID finds the row
    ds->fieldByName("id")->setAsInteger(20);
    ds->post();

    ds->append();
    EXPECT_EQ(ds->state(), DataSetState::Insert);
    EXPECT_TRUE(ds->fieldByName("id")->isNull());
    ds->fieldByName("id")->setValue(6);
    ds->fieldByName("name")->setValue(QString::fromUtf8("ёлка"));
    ds->fieldByName("qty")->setAsString("7");
    ds->post();
    EXPECT_EQ(ds->recordCount(), 6);
    EXPECT_EQ(ds->recNo(), 5);
    EXPECT_EQ(ds->fieldByName("qty")->asInteger(), 7);

    ds->first();
    ds->insert(); // before the current row
    ds->fieldByName("id")->setValue(0);
    ds->post();
    EXPECT_EQ(ids(), (std::vector<int>{0, 1, 20, 3, 4, 5, 6}));

    ds->locate("id", 3);
    ds->remove();
    EXPECT_EQ(ds->recordCount(), 6);
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 4);
    write->commit();
    EXPECT_EQ(dbValue("select count(*) from goods").toInt(), 6);
    EXPECT_EQ(dbValue("select name from goods where id = 20").toString(), QString::fromUtf8("Яма глубокая"));
    EXPECT_EQ(dbValue("select qty from goods where id = 6").toInt(), 7);
    EXPECT_EQ(dbValue("select count(*) from goods where id = 3").toInt(), 0);

    // RefreshSQL replaces the current row with what the database holds now.
    exec("update goods set qty = 99, name = 'x' where id = 4");
    read->commit();
    ds->locate("id", 4);
    ds->refreshRecord();
    EXPECT_EQ(ds->fieldByName("qty")->asInteger(), 99);
    EXPECT_EQ(ds->fieldByName("name")->asString(), "x");
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 4);
}

TEST_F(DataSets, InsertReturningFillsTheRowAndReopenKeepsPosition) {
    ds->setInsertSql(
        "insert into goods (id, name) values (coalesce(:id, 100), upper(:name)) returning id, name");
    ds->open();
    ds->append();
    ds->fieldByName("name")->setValue(QString::fromUtf8("дыня"));
    ds->post();
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 100);
    EXPECT_EQ(ds->fieldByName("name")->asString(), QString::fromUtf8("ДЫНЯ"));
    write->commit();
    read->commit();
    ds->locate("id", 4);
    ds->reopen(true);
    EXPECT_EQ(ds->recordCount(), 6);
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 4);
}

TEST_F(DataSets, FailedPostKeepsEverythingTheUserTyped) {
    exec("create table ref (g integer references goods(id))");
    exec("insert into ref values (2)");
    ds->open();
    ds->locate("id", 1);
    ds->edit();
    ds->fieldByName("name")->setValue(QString("new name"));
    ds->fieldByName("qty")->setValue(-5); // check constraint
    EXPECT_TRUE(thrown([&] { ds->post(); }).isConstraintViolation());
    EXPECT_EQ(ds->state(), DataSetState::Edit);
    EXPECT_EQ(ds->fieldByName("name")->asString(), "new name");
    EXPECT_EQ(ds->fieldByName("qty")->asInteger(), -5);
    ds->fieldByName("qty")->setValue(4);
    ds->post();
    EXPECT_EQ(ds->fieldByName("qty")->asInteger(), 4);

    ds->append();
    ds->fieldByName("id")->setValue(1); // duplicate key
    ds->fieldByName("name")->setValue(QString("dup"));
    EXPECT_THROW(ds->post(), Error);
    EXPECT_EQ(ds->state(), DataSetState::Insert);
    EXPECT_EQ(ds->fieldByName("name")->asString(), "dup");
    EXPECT_EQ(ds->recordCount(), 5);
    ds->cancel();
    EXPECT_EQ(ds->state(), DataSetState::Browse);
    EXPECT_EQ(ds->recordCount(), 5);

    // the delete statement fails: the row stays
    ds->locate("id", 2);
    EXPECT_THROW(ds->remove(), Error);
    EXPECT_EQ(ds->recordCount(), 5);
    EXPECT_EQ(ds->fieldByName("id")->asInteger(), 2);
}

TEST_F(DataSets, FieldConversionsAndDisplayText) {
    ds->open();
    ds->edit();
    Field* qty = ds->fieldByName("qty");
    qty->setAsString(" 12 ");
    EXPECT_EQ(qty->asInteger(), 12);
    qty->setAsString("");
    EXPECT_TRUE(qty->isNull());
    const Error e = thrown([&] { qty->setAsString("12x"); });
    EXPECT_EQ(e.kind(), Error::Kind::Configuration);
    EXPECT_TRUE(e.text().contains("12x") && e.text().contains("QTY")) << e.text().toStdString();
    EXPECT_THROW(ds->fieldByName("price")->setAsString("abc"), Error);
    // Only a whole integer text is an integer: not one followed by a NUL and SQL, not one beyond
    // the column's 32 bits (which used to wrap round).
    EXPECT_THROW(qty->setAsString(QString("1") + QChar(0) + " or 1=1"), Error);
    EXPECT_THROW(qty->setAsString("4294967297"), Error);
    qty->setAsString("-2147483648");
    EXPECT_EQ(qty->asInteger(), -2147483648LL);
    ds->fieldByName("price")->setAsString("1,25");
    EXPECT_DOUBLE_EQ(ds->fieldByName("price")->asDouble(), 1.25);
    ds->cancel();
    EXPECT_EQ(qty->asInteger(), 5);
    EXPECT_THROW(qty->setValue(1), Error); // browse state

    qty->getText = [](const Field& f, QString& text, bool display) {
        if (display) text = QString("%1 pcs").arg(f.asInteger());
    };
    EXPECT_EQ(qty->displayText(), "5 pcs");
    EXPECT_EQ(qty->asString(), "5");
    qty->tag = 3;
    ds->reopen(true);
    EXPECT_EQ(ds->fieldByName("qty"), qty); // fields survive a reopen with their settings
    EXPECT_EQ(qty->tag, 3);
    EXPECT_TRUE(qty->isNumeric());
}

TEST_F(DataSets, EventsAbortingHandlersAndSignals) {
    std::vector<std::string> log;
    auto rec = [&log](const char* name) { return [&log, name](AbstractDataSet&) { log.push_back(name); }; };
    using Ev = Event<AbstractDataSet&> AbstractDataSet::*;
    const std::pair<Ev, const char*> events[] = {
        {&AbstractDataSet::beforeOpen, "beforeOpen"},     {&AbstractDataSet::afterOpen, "afterOpen"},
        {&AbstractDataSet::beforeEdit, "beforeEdit"},     {&AbstractDataSet::afterEdit, "afterEdit"},
        {&AbstractDataSet::beforePost, "beforePost"},     {&AbstractDataSet::afterPost, "afterPost"},
        {&AbstractDataSet::beforeInsert, "beforeInsert"}, {&AbstractDataSet::afterInsert, "afterInsert"},
        {&AbstractDataSet::beforeCancel, "beforeCancel"}, {&AbstractDataSet::afterCancel, "afterCancel"},
        {&AbstractDataSet::beforeDelete, "beforeDelete"}, {&AbstractDataSet::afterDelete, "afterDelete"},
        {&AbstractDataSet::beforeScroll, "beforeScroll"}, {&AbstractDataSet::afterScroll, "afterScroll"},
        {&AbstractDataSet::beforeClose, "beforeClose"},   {&AbstractDataSet::afterClose, "afterClose"}};
    for (auto [ev, name] : events) (ds.get()->*ev).connect(rec(name));
    ds->onNewRecord.connect([&log](AbstractDataSet& d) {
        log.push_back("onNewRecord");
        d.fieldByName("qty")->setValue(1); // a default
    });

    ds->open();
    ds->next();
    ds->edit();
    ds->fieldByName("qty")->setValue(8);
    ds->post();
    ds->append();
    EXPECT_EQ(ds->fieldByName("qty")->asInteger(), 1);
    EXPECT_FALSE(ds->modified()); // defaults alone do not count as a change
    ds->cancel();
    ds->remove();
    ds->close();
    const std::vector<std::string> expected{
        "beforeOpen",  "afterOpen",    "beforeScroll", "afterScroll", "beforeEdit",  "afterEdit",
        "beforePost",  "afterPost",    "beforeInsert", "onNewRecord", "afterInsert", "beforeCancel",
        "afterCancel", "beforeDelete", "afterDelete",  "beforeClose", "afterClose"};
    EXPECT_EQ(log, expected);

    // A throwing handler aborts: the state does not change.
    ds->open();
    const int token = ds->beforePost.connect([](AbstractDataSet&) { throw Error::configuration("not now"); });
    ds->edit();
    ds->fieldByName("name")->setValue(QString("kept"));
    EXPECT_THROW(ds->post(), Error);
    EXPECT_EQ(ds->state(), DataSetState::Edit);
    EXPECT_EQ(ds->fieldByName("name")->asString(), "kept");
    ds->beforePost.disconnect(token);
    ds->cancel();
    ds->beforeEdit.connect([](AbstractDataSet&) { throw Error::configuration("read only"); });
    EXPECT_THROW(ds->edit(), Error);
    EXPECT_EQ(ds->state(), DataSetState::Browse);
    ds->beforeScroll.connect([](AbstractDataSet& d) {
        if (d.recNo() == 1) throw Error::configuration("stay");
    });
    ds->setRecNo(1);
    EXPECT_THROW(ds->next(), Error);
    EXPECT_EQ(ds->recNo(), 1);
    ds->beforeDelete.connect([](AbstractDataSet&) { throw Error::configuration("keep"); });
    EXPECT_THROW(ds->remove(), Error);
    EXPECT_EQ(ds->recordCount(), 5); // the earlier delete is not committed
    ds->beforeScroll.clear();

    // Signals reach a data source; disabled controls get one dataSetChanged at the end.
    DataSource src(ds.get());
    QSignalSpy moved(&src, &DataSource::recordChanged);
    QSignalSpy field(&src, &DataSource::fieldChanged);
    QSignalSpy state(&src, &DataSource::stateChanged);
    QSignalSpy all(&src, &DataSource::dataSetChanged);
    ds->first();
    EXPECT_EQ(moved.count(), 1);
    ds->beforeEdit.clear();
    ds->edit();
    ds->fieldByName("price")->setValue(2);
    EXPECT_EQ(state.count(), 1);
    ASSERT_EQ(field.count(), 1);
    EXPECT_EQ(field.at(0).at(0).toInt(), 2);
    ds->post();
    EXPECT_EQ(state.count(), 2);
    EXPECT_EQ(moved.count(), 2);
    moved.clear();
    all.clear();
    ds->disableControls();
    ds->disableControls();
    ds->next();
    ds->setSortKeys({{"name", true}});
    ds->enableControls();
    EXPECT_EQ(all.count(), 0);
    ds->enableControls();
    EXPECT_EQ(moved.count(), 0);
    EXPECT_EQ(all.count(), 1);
    src.setEnabled(false);
    ds->next();
    EXPECT_EQ(moved.count(), 0);
    src.setEnabled(true);
    EXPECT_EQ(all.count(), 2);
}

} // namespace
