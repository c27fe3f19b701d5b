#include "DbTestUtil.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Statement.h"

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
    const QString blobText = cyr + QString(70000, QChar('x'));
    const QVariantList values = {1,
                                 -123,
                                 2000000000,
                                 qlonglong(9000000000000000000LL),
                                 12.3,
                                 QStringLiteral("1234567.89"),
                                 QStringLiteral("-123456789012345.678"),
                                 12.3,
                                 1.5,
                                 3.14159265358979,
                                 QString::fromUtf8("Ёлка"),
                                 cyr,
                                 QString::fromUtf8("€ и ё, № «5»"),
                                 QString::fromUtf8("я"),
                                 QDate(2024, 2, 29),
                                 QTime(23, 59, 58, 123),
                                 QDateTime(QDate(1999, 12, 31), QTime(12, 0, 1, 500)),
                                 true,
                                 blobText,
                                 bin,
                                 QString::fromUtf8("Ёжик № 5 «тест» €"),
                                 bin};
    ASSERT_EQ(q.params().count(), values.size());
    for (int i = 0; i < values.size(); ++i) q.params().at(i)->setValue(values[i]); // in column order
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
    const std::pair<const char*, FieldType> types[] = {
        {"S", FieldType::SmallInt},    {"I", FieldType::Integer},  {"B", FieldType::BigInt},
        {"N1", FieldType::Numeric},    {"F", FieldType::Float},    {"DP", FieldType::Double},
        {"C", FieldType::Char},        {"VW", FieldType::VarChar}, {"TB", FieldType::TextBlob},
        {"BB", FieldType::BinaryBlob}, {"OC", FieldType::Binary},  {"BO", FieldType::Boolean}};
    for (auto [name, type] : types) EXPECT_EQ(ds.fieldByName(name)->dataType(), type) << name;
    EXPECT_EQ(ds.fieldByName("N3")->scale(), 3);
    EXPECT_EQ(ds.fieldByName("C")->size(), 5);
    EXPECT_EQ(ds.fieldByName("VW")->size(), 20);

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
    EXPECT_EQ(ds.fieldByName("tm")->asTime(), QTime(23, 59, 58, 123));
    EXPECT_EQ(ds.fieldByName("ts")->asDateTime(), QDateTime(QDate(1999, 12, 31), QTime(12, 0, 1, 500)));
    EXPECT_TRUE(ds.fieldByName("bo")->asBoolean());
    EXPECT_EQ(ds.fieldByName("tb")->asString(), blobText);
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
    EXPECT_TRUE(test::thrown([&] { blob.exec(); }).text().contains(QString::fromUtf8("«中»")));
    EXPECT_THROW(exec(QString::fromUtf8("update t set vw = '中' where id = 2")), Error);
    Query param(db.get(), &w);
    param.setSql("update t set vu = :vu where id = 2");
    param.paramByName("vu")->setValue(QString::fromUtf8("中文"));
    EXPECT_THROW(param.exec(), Error);
}

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

// The server describes text in the connection's character set, with a column's collation in the
// high byte of the id; collated or not, the column is fetched as stored (one byte a letter, no
// conversion on the server) and decodes to the text written.
TEST_F(Types, CollatedTextComesAsStoredAndDecodes) {
    exec("create table coll (id integer, n varchar(150) collate PXW_CYRL, c char(6) collate PXW_CYRL,"
         " p varchar(150), u varchar(10) character set utf8 collate unicode_ci)");
    exec("insert into coll (id) values (1)");
    const QString name = QString::fromUtf8("Ёлкин Я. «Ёж и Ко» №5");
    const QStringList values = {name, QString::fromUtf8("Ёж"), name, QString::fromUtf8("€ ё")};
    const QStringList columns = {"n", "c", "p", "u"};
    Transaction w(db.get(), TransactionOptions::writeNoWait());
    Query q(db.get(), &w);
    for (int i = 0; i < columns.size(); ++i) {
        q.setSql("update coll set " + columns[i] + " = :v");
        q.paramByName("v")->setValue(values[i]);
        q.exec();
    }
    w.commit();

    Statement st(db.get(), read.get(), "select n, c, p, u from coll");
    const std::vector<unsigned> lengths = {150, 6, 150, 10};
    ASSERT_EQ(st.columns().size(), lengths.size());
    for (size_t i = 0; i < lengths.size(); ++i) {
        const Column& c = st.columns()[i];
        EXPECT_EQ(c.charSet, 52u) << c.name.toStdString();
        EXPECT_EQ(c.length, lengths[i]) << c.name.toStdString();
        EXPECT_EQ(c.size, int(lengths[i])) << c.name.toStdString();
    }

    DataSet ds(db.get(), read.get());
    ds.setSelectSql("select n, c, p, u from coll");
    ds.open();
    ASSERT_EQ(ds.recordCount(), 1);
    for (int i = 0; i < columns.size(); ++i)
        EXPECT_EQ(ds.fieldByName(columns[i])->asString(), values[i]) << columns[i].toStdString();
    EXPECT_EQ(ds.fieldByName("n")->size(), 150);
}

} // namespace
