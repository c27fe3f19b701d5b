#include "DbTestUtil.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"

using namespace frames::db;
using frames::db::test::ScratchDb;

namespace {

class Types : public ScratchDb {};

TEST_F(Types, EveryTypeRoundTripsThroughParametersAndDataSet) {
    exec(
        "create table t (id integer not null primary key, s smallint, i integer, b bigint,"
        " n1 numeric(4,1), n2 numeric(9,2), n3 numeric(18,3), d1 decimal(15,2), f float, dp double precision,"
        " c char(5), vw varchar(20), vu varchar(20) character set utf8, cu char(3) character set utf8,"
        " dt date, tm time, ts timestamp, bo boolean, tb blob sub_type 1, bb blob sub_type 0,"
        " tbu blob sub_type 1 character set utf8, oc char(4) character set octets)");
    Transaction w(db.get(), TransactionOptions::writeNoWait());
    Query q(db.get(), &w);
    q.setSql("insert into t values (:id, :s, :i, :b, :n1, :n2, :n3, :d1, :f, :dp, :c, :vw, :vu, :cu,"
             " :dt, :tm, :ts, :bo, :tb, :bb, :tbu, :oc)");
    const QString cyr = QString::fromUtf8("яблоко Ёж");
    const QByteArray bin("\x00\x01\xff\x7f", 4);
    q.paramByName("id")->setValue(1);
    q.paramByName("s")->setValue(-123);
    q.paramByName("i")->setValue(2000000000);
    q.paramByName("b")->setValue(qlonglong(9000000000000000000LL));
    q.paramByName("n1")->setValue(12.3);
    q.paramByName("n2")->setValue(QStringLiteral("1234567.89"));
    q.paramByName("n3")->setValue(QStringLiteral("-123456789012345.678"));
    q.paramByName("d1")->setValue(12.3);
    q.paramByName("f")->setValue(1.5);
    q.paramByName("dp")->setValue(3.14159265358979);
    q.paramByName("c")->setValue(QString::fromUtf8("Ёлка"));
    q.paramByName("vw")->setValue(cyr);
    q.paramByName("vu")->setValue(QString::fromUtf8("€ и ё, № «5»"));
    q.paramByName("cu")->setValue(QString::fromUtf8("я"));
    q.paramByName("dt")->setValue(QDate(2024, 2, 29));
    q.paramByName("tm")->setValue(QTime(23, 59, 58, 123));
    q.paramByName("ts")->setValue(QDateTime(QDate(1999, 12, 31), QTime(12, 0, 1, 500)));
    q.paramByName("bo")->setValue(true);
    q.paramByName("tb")->setValue(cyr + QString(70000, QChar('x')));
    q.paramByName("bb")->setValue(bin);
    q.paramByName("tbu")->setValue(QString::fromUtf8("Ёжик № 5 «тест» €"));
    q.paramByName("oc")->setValue(bin);
    q.exec();
    EXPECT_EQ(q.rowsAffected(), 1);
    // a row of nulls
    q.params().at(0)->setValue(2);
    for (int i = 1; i < q.params().count(); ++i) q.params().at(i)->clear();
    q.exec();
    w.commit();

    DataSet ds(db.get(), read.get());
    ds.setSelectSql("select * from t order by id");
    ds.open();
    ASSERT_EQ(ds.recordCount(), 2);
    EXPECT_EQ(ds.fieldByName("S")->dataType(), FieldType::SmallInt);
    EXPECT_EQ(ds.fieldByName("I")->dataType(), FieldType::Integer);
    EXPECT_EQ(ds.fieldByName("B")->dataType(), FieldType::BigInt);
    EXPECT_EQ(ds.fieldByName("N1")->dataType(), FieldType::Numeric);
    EXPECT_EQ(ds.fieldByName("N3")->scale(), 3);
    EXPECT_EQ(ds.fieldByName("F")->dataType(), FieldType::Float);
    EXPECT_EQ(ds.fieldByName("DP")->dataType(), FieldType::Double);
    EXPECT_EQ(ds.fieldByName("C")->dataType(), FieldType::Char);
    EXPECT_EQ(ds.fieldByName("C")->size(), 5);
    EXPECT_EQ(ds.fieldByName("VW")->dataType(), FieldType::VarChar);
    EXPECT_EQ(ds.fieldByName("VW")->size(), 20);
    EXPECT_EQ(ds.fieldByName("TB")->dataType(), FieldType::TextBlob);
    EXPECT_EQ(ds.fieldByName("BB")->dataType(), FieldType::BinaryBlob);
    EXPECT_EQ(ds.fieldByName("OC")->dataType(), FieldType::Binary);
    EXPECT_EQ(ds.fieldByName("BO")->dataType(), FieldType::Boolean);

    EXPECT_EQ(ds.fieldByName("s")->asInteger(), -123);
    EXPECT_EQ(ds.fieldByName("i")->asInteger(), 2000000000);
    EXPECT_EQ(ds.fieldByName("b")->asInt64(), 9000000000000000000LL);
    EXPECT_DOUBLE_EQ(ds.fieldByName("n1")->asDouble(), 12.3);
    EXPECT_EQ(ds.fieldByName("n1")->asString(), "12.3");
    EXPECT_EQ(ds.fieldByName("n2")->asString(), "1234567.89");
    EXPECT_EQ(ds.fieldByName("n3")->asString(), "-123456789012345.678");
    EXPECT_EQ(ds.fieldByName("d1")->asString(), "12.30");
    EXPECT_FLOAT_EQ(float(ds.fieldByName("f")->asDouble()), 1.5f);
    EXPECT_DOUBLE_EQ(ds.fieldByName("dp")->asDouble(), 3.14159265358979);
    EXPECT_EQ(ds.fieldByName("c")->asString(), QString::fromUtf8("Ёлка")); // trailing blank trimmed
    EXPECT_EQ(ds.fieldByName("vw")->asString(), cyr);
    EXPECT_EQ(ds.fieldByName("vu")->asString(), QString::fromUtf8("€ и ё, № «5»"));
    EXPECT_EQ(ds.fieldByName("cu")->asString(), QString::fromUtf8("я"));
    EXPECT_EQ(ds.fieldByName("dt")->asDate(), QDate(2024, 2, 29));
    EXPECT_EQ(ds.fieldByName("dt")->asString(), "2024-02-29");
    EXPECT_EQ(ds.fieldByName("tm")->asTime(), QTime(23, 59, 58, 123));
    EXPECT_EQ(ds.fieldByName("ts")->asDateTime(), QDateTime(QDate(1999, 12, 31), QTime(12, 0, 1, 500)));
    EXPECT_TRUE(ds.fieldByName("bo")->asBoolean());
    EXPECT_EQ(ds.fieldByName("tb")->asString(), cyr + QString(70000, QChar('x')));
    EXPECT_EQ(ds.fieldByName("bb")->asBytes(), bin);
    EXPECT_EQ(ds.fieldByName("tbu")->asString(), QString::fromUtf8("Ёжик № 5 «тест» €"));
    EXPECT_EQ(ds.fieldByName("oc")->asBytes(), bin);

    ds.next();
    EXPECT_EQ(ds.fieldByName("id")->asInteger(), 2);
    for (int i = 1; i < ds.fieldCount(); ++i) {
        SCOPED_TRACE(ds.field(i)->fieldName().toStdString());
        EXPECT_TRUE(ds.field(i)->isNull());
        EXPECT_FALSE(ds.field(i)->value().isValid());
        EXPECT_EQ(ds.field(i)->asString(), "");
    }
    EXPECT_EQ(ds.fieldByName("i")->asInteger(), 0);
    EXPECT_FALSE(ds.fieldByName("dt")->asDate().isValid());

    // Text travels through the connection's character set (the databases'): a character it lacks
    // is refused with an error, never stored as a substitute.
    Query blob(db.get(), &w);
    blob.setSql("update t set tb = :tb where id = 2");
    blob.paramByName("tb")->setValue(QString::fromUtf8("中文"));
    try {
        blob.exec();
        ADD_FAILURE() << "the blob was stored";
    } catch (const Error& e) {
        EXPECT_TRUE(e.text().contains(QString::fromUtf8("«中»"))) << e.text().toStdString();
    }
    EXPECT_THROW(exec(QString::fromUtf8("update t set vw = '中' where id = 2")), Error);
    Query param(db.get(), &w);
    param.setSql("update t set vu = :vu where id = 2");
    param.paramByName("vu")->setValue(QString::fromUtf8("中文"));
    EXPECT_THROW(param.exec(), Error);
}

} // namespace

namespace {

TEST_F(Types, EmptyTextIsNotNullAndLargeResultsStayIntact) {
    exec("create table big (id integer, c char(10), v varchar(600), o char(3) character set octets)");
    exec("insert into big values (0, '', '', x'000000')");
    exec("execute block as declare i integer = 1; begin while (i <= 3000) do begin"
         " insert into big values (:i, 'ж' || :i, lpad('', 500, 'щ') || :i, null); i = i + 1; end end");
    DataSet ds(db.get(), read.get());
    ds.setSelectSql("select * from big order by id");
    ds.open();
    ASSERT_EQ(ds.recordCount(), 3001);
    EXPECT_FALSE(ds.fieldByName("c")->isNull());
    EXPECT_EQ(ds.fieldByName("c")->asString(), "");
    EXPECT_FALSE(ds.fieldByName("v")->isNull());
    EXPECT_EQ(ds.fieldByName("v")->asString(), "");
    EXPECT_EQ(ds.fieldByName("o")->asBytes(), QByteArray(3, '\0'));
    for (int row : {1, 1500, 2999, 3000}) {
        ds.setRecNo(row);
        EXPECT_EQ(ds.fieldByName("id")->asInteger(), row);
        EXPECT_EQ(ds.fieldByName("c")->asString(), QString::fromUtf8("ж") + QString::number(row));
        EXPECT_EQ(ds.fieldByName("v")->asString(), QString(500, QChar(0x0449)) + QString::number(row));
        EXPECT_TRUE(ds.fieldByName("o")->isNull());
    }
}

} // namespace
