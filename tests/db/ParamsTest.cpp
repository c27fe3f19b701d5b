#include "DbTestUtil.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"

using namespace frames::db;
using frames::db::test::ScratchDb;
using frames::db::test::thrown;

namespace {

TEST(ScannedSql, NamesPrefixesCaseAndRepeats) {
    const auto s =
        ScannedSql::scan("select * from t where a = :Id and b = ?NAME and c = :id or d = ?name_2$x");
    EXPECT_EQ(s.positionalSql, "select * from t where a = ? and b = ? and c = ? or d = ?");
    EXPECT_EQ(s.names, (QStringList{"Id", "NAME", "name_2$x"}));
    EXPECT_EQ(s.positions, (std::vector<int>{0, 1, 0, 2}));

    // Bare question marks are positional parameters of their own.
    const auto b = ScannedSql::scan("insert into t values (?, :a, ?)");
    EXPECT_EQ(b.positions, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(b.names[1], "a");
    EXPECT_NE(b.names[0], b.names[2]);
}

TEST(ScannedSql, QuotesCommentsAndLookalikesAreNotParameters) {
    const QString sql = "select iif(x, ':', ':no') || ':' || 'it''s :no' as \"A:no\", rdb$db_key, x::y"
                        " -- :comment ?c\n"
                        "from rdb$database /* :block ?b */ where a = :yes and b = ?";
    const auto s = ScannedSql::scan(sql);
    EXPECT_EQ(s.names.value(0), "yes");
    EXPECT_EQ(s.positions, (std::vector<int>{0, 1}));
    // everything but the two markers is left as written
    QString expected = sql;
    expected.replace(":yes", "?");
    EXPECT_EQ(s.positionalSql, expected);
    // ": " and a trailing ":" are not parameters either
    EXPECT_TRUE(ScannedSql::scan("select a : b, c:").names.isEmpty());
    // unterminated quote: no crash, nothing found after it
    EXPECT_TRUE(ScannedSql::scan("select ':x").names.isEmpty());
}

TEST(ParamsList, RebuildKeepsValuesOfNamesThatStay) {
    Params p;
    p.rebuild({"A", "B"});
    p.find("a")->setValue(1);
    p.find("B")->setValue(2);
    Param* a = p.find("A");
    p.rebuild({"C", "a"});
    EXPECT_EQ(p.count(), 2);
    EXPECT_EQ(p.find("A"), a);
    EXPECT_EQ(p.find("A")->value().toInt(), 1);
    EXPECT_TRUE(p.find("c")->isNull());
    EXPECT_EQ(p.find("B"), nullptr);
}

class Parameters : public ScratchDb {
protected:
    void SetUp() override {
        ScratchDb::SetUp();
        exec("create table p (id integer, name varchar(30), amount numeric(12,2), d date)");
        exec("insert into p values (1, 'one', 10.5, '2024-01-01')");
        exec("insert into p values (2, 'two', 20, '2024-02-01')");
        exec("insert into p values (3, 'three', null, null)");
    }
};

TEST_F(Parameters, BothPrefixesCaseInsensitiveRepeatedAndConverted) {
    Query q(db.get(), read.get());
    q.setSql("select count(*) from p where (id = :ID or id = ?id2) and id >= :id and 'x:y' <> ?Id2");
    ASSERT_EQ(q.params().count(), 2);
    q.paramByName("id")->setValue(QStringLiteral("2")); // text into an integer parameter
    q.paramByName("ID2")->setValue(3);
    q.exec();
    EXPECT_EQ(q.value(0).toInt(), 2);

    q.paramByName("Id")->setValue(3);
    q.exec();
    EXPECT_EQ(q.value(0).toInt(), 1);
}

TEST_F(Parameters, NullParameterAndQueryCursor) {
    Query q(db.get(), read.get());
    q.setSql("select id, name, amount from p where amount is not distinct from :a order by id");
    q.paramByName("a")->clear();
    q.open();
    ASSERT_TRUE(q.next());
    EXPECT_EQ(q.value("ID").toInt(), 3);
    EXPECT_FALSE(q.value("amount").isValid());
    EXPECT_FALSE(q.next());
    EXPECT_FALSE(q.isOpen());

    q.paramByName("a")->setValue(10.5);
    q.open();
    ASSERT_TRUE(q.next());
    EXPECT_EQ(q.value("name").toString(), "one");
    EXPECT_EQ(q.columnName(2), "AMOUNT");
    EXPECT_THROW(q.value("nope"), Error);
    q.close();
}

TEST_F(Parameters, StatementIsReusedWhileTextIsUnchanged) {
    Query q(db.get(), read.get());
    q.setSql("select name from p where id = :id");
    const auto before = Query::prepareCount();
    for (int id = 1; id <= 3; ++id) {
        q.paramByName("id")->setValue(id);
        q.exec();
    }
    EXPECT_EQ(q.value(0).toString(), "three");
    q.setSql("select name from p where id = :id"); // same text
    q.exec();
    EXPECT_EQ(Query::prepareCount() - before, 1u);
    q.setSql("select name from p where id = :id + 0");
    q.paramByName("id")->setValue(1); // kept value survives, new statement
    q.exec();
    EXPECT_EQ(Query::prepareCount() - before, 2u);
    EXPECT_EQ(q.value(0).toString(), "one");

    DataSet ds(db.get(), read.get());
    ds.setSelectSql("select * from p where id >= ?id");
    ds.paramByName("ID")->setValue(2);
    ds.open();
    EXPECT_EQ(ds.recordCount(), 2);
    ds.close();
    ds.paramByName("id")->setValue(3);
    ds.open();
    EXPECT_EQ(ds.recordCount(), 1);
    EXPECT_EQ(ds.fieldByName("name")->asString(), "three");
    EXPECT_EQ(Query::prepareCount() - before, 3u);
}

TEST_F(Parameters, MissingNamesAndBadStatementsNameTheStatement) {
    Query q(db.get(), read.get());
    q.setSql("select name from p where id = :id");
    EXPECT_EQ(q.findParam("nope"), nullptr);
    Error e = thrown([&] { q.paramByName("nope"); });
    EXPECT_EQ(e.kind(), Error::Kind::Configuration);
    EXPECT_TRUE(e.text().contains("\"nope\"") && e.text().contains("select name from p where id = :id"))
        << e.text().toStdString();

    DataSet ds(db.get(), read.get());
    ds.setObjectName("dsP");
    ds.setSelectSql("select id from p");
    EXPECT_THROW(ds.paramByName("x"), Error);
    ds.open();
    e = thrown([&] { ds.fieldByName("NAME"); });
    EXPECT_EQ(e.kind(), Error::Kind::Configuration);
    EXPECT_TRUE(e.text().contains("\"NAME\"") && e.text().contains("dsP") &&
                e.text().contains("select id from p"))
        << e.text().toStdString();

    Query bad(db.get(), read.get());
    bad.setSql("select no_such_column from p");
    e = thrown([&] { bad.exec(); });
    EXPECT_TRUE(e.text().contains("NO_SUCH_COLUMN") && e.text().contains("select no_such_column from p"))
        << e.text().toStdString();
    EXPECT_EQ(e.sqlCode(), -206);
    EXPECT_FALSE(e.gdsCodes().empty());
}

} // namespace
