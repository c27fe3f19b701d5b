#include "DbTestUtil.h"
#include "platform/db/Query.h"

using namespace frames::db;
using frames::db::test::ScratchDb;

namespace {

TEST(SqlScriptSplit, TerminatorsCommentsAndQuotes) {
    const QString script = "-- heading comment; not a statement\n"
                           "create table a (x varchar(10) default ';');\n"
                           "/* block; comment */\n"
                           "insert into a values ('it''s; fine');  ;\n"
                           "SET TERM ^ ;\n"
                           "create procedure p returns (r integer) as\n"
                           "begin\n  r = 1; -- inner; comment\n  suspend;\nend^\n"
                           "set term ; ^\n"
                           "insert into \"A;B\" values (1);\n"
                           "select 1 from rdb$database";
    const QStringList s = SqlScript::split(script);
    ASSERT_EQ(s.size(), 5) << s.join("\n|\n").toStdString();
    EXPECT_EQ(s[0], "create table a (x varchar(10) default ';')");
    EXPECT_EQ(s[1], "insert into a values ('it''s; fine')");
    EXPECT_TRUE(s[2].startsWith("create procedure p"));
    EXPECT_TRUE(s[2].endsWith("suspend;\nend"));
    EXPECT_TRUE(s[2].contains("-- inner; comment"));
    EXPECT_EQ(s[3], "insert into \"A;B\" values (1)");
    EXPECT_EQ(s[4], "select 1 from rdb$database");
    EXPECT_TRUE(SqlScript::split("  ;; -- only\n/* comments */ ;").isEmpty());
}

class Script : public ScratchDb {};

TEST_F(Script, RunsStatementsInOrderAndNamesTheFailingOne) {
    db->executeScript("create table s (id integer, name varchar(20));\n"
                      "set term ^ ;\n"
                      "create trigger s_bi for s before insert as begin new.name = upper(new.name); end^\n"
                      "set term ; ^\n"
                      "commit;\n"
                      "insert into s values (1, 'abc');");
    Query q(db.get(), read.get());
    q.setSql("select name from s");
    q.exec();
    EXPECT_EQ(q.value(0).toString(), "ABC");

    const QString text =
        frames::db::test::thrown([&] {
            db->executeScript("insert into s values (2, 'x');\ninsert into nowhere values (1);\n"
                              "insert into s values (3, 'y');");
        }).text();
    EXPECT_TRUE(text.contains("NOWHERE") && text.contains("insert into nowhere values (1)"))
        << text.toStdString();
    EXPECT_TRUE(text.contains(" 2")) << text.toStdString(); // its ordinal
    read->commit();                                         // see the latest data
    q.setSql("select count(*) from s");
    q.exec();
    EXPECT_EQ(q.value(0).toInt(), 2); // the statement before the failure was committed
}

} // namespace
