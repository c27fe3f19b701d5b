#include "platform/widgets/FieldLink.h"
#include "Tables.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include <gtest/gtest.h>

using namespace frames;
using namespace widgets_test;

namespace {

// A link on a plain owner that counts its re-reads and notes whether each ran during a write.
struct Probe {
    QObject owner;
    int reads = 0;
    QList<bool> duringWrite;
    ui::FieldLink link{&owner, [this] {
                           ++reads;
                           duringWrite << link.writing();
                       }};
};

} // namespace

TEST(FieldLink, FollowsRecordFieldAndStateChanges) {
    Tables tb;
    Probe p;
    p.link.setDataSource(&tb.goodsSrc);
    EXPECT_EQ(p.link.field(), nullptr); // no field named yet
    p.link.setDataField("  name ");
    EXPECT_EQ(p.reads, 2);
    EXPECT_EQ(p.link.fieldText(), "Shirt");

    int before = p.reads;
    tb.goods.next();
    EXPECT_GT(p.reads, before);
    EXPECT_EQ(p.link.fieldText(), "Hat");

    before = p.reads;
    tb.goods.edit();
    tb.goods.fieldByName("COLOR_ID")->setValue(1); // another field's edit counts by default
    EXPECT_GT(p.reads, before);

    p.link.setOwnFieldEditsOnly(true);
    before = p.reads;
    tb.goods.fieldByName("COLOR_ID")->setValue(2);
    EXPECT_EQ(p.reads, before);
    tb.goods.fieldByName("NAME")->setValue("Cap");
    EXPECT_GT(p.reads, before);
    EXPECT_EQ(p.link.fieldText(), "Cap");
    tb.goods.cancel();
    EXPECT_EQ(p.link.fieldText(), "Hat");

    // A closed dataset has no field; an empty one has the field but no row.
    tb.goods.close();
    EXPECT_EQ(p.link.field(), nullptr);
    EXPECT_EQ(p.link.fieldText(), "");
    tb.goods.open();
    tb.goods.emptyTable();
    ASSERT_NE(p.link.field(), nullptr);
    EXPECT_EQ(p.link.rowField(), nullptr);
    EXPECT_EQ(p.link.fieldText(), "");
}

TEST(FieldLink, RebindingDropsTheOldSourceAndEndsWithItsOwner) {
    Tables tb;
    auto p = std::make_unique<Probe>();
    p->link.setDataField("NAME");
    p->link.setDataSource(&tb.goodsSrc);
    p->link.setDataSource(&tb.colorsSrc);
    EXPECT_EQ(p->link.fieldText(), "Red");
    int before = p->reads;
    tb.goods.next();
    tb.goods.edit();
    tb.goods.cancel();
    EXPECT_EQ(p->reads, before); // nothing from the old source
    tb.colors.next();
    EXPECT_GT(p->reads, before);
    EXPECT_EQ(p->link.fieldText(), "Green");

    // A source that goes away leaves the link unbound.
    {
        db::DataSource shortLived(&tb.colors);
        p->link.setDataSource(&shortLived);
        EXPECT_EQ(p->link.fieldText(), "Green");
    }
    EXPECT_EQ(p->link.dataSource(), nullptr);

    // Once the owner and its link are gone the source's changes reach no one.
    p->link.setDataSource(&tb.goodsSrc);
    p.reset();
    tb.goods.first();
    tb.goods.edit();
    tb.goods.cancel();
}

TEST(FieldLink, WritesThroughAndReportsWhatTheFieldRefuses) {
    Tables tb;
    Probe p;
    p.link.setDataSource(&tb.goodsSrc);
    EXPECT_FALSE(p.link.write("x")); // no field: nothing written
    EXPECT_EQ(tb.goods.state(), db::DataSetState::Browse);

    p.link.setDataField("COLOR_ID");
    p.duringWrite.clear();
    EXPECT_TRUE(p.link.write(3));
    EXPECT_EQ(tb.goods.state(), db::DataSetState::Edit);
    EXPECT_EQ(tb.goods.fieldByName("COLOR_ID")->asInteger(), 3);
    ASSERT_FALSE(p.duringWrite.isEmpty()); // the echo of the write is seen as such
    EXPECT_TRUE(std::all_of(p.duringWrite.begin(), p.duringWrite.end(), [](bool w) { return w; }));

    EXPECT_TRUE(p.link.write(QString())); // empty text clears a number field
    EXPECT_TRUE(tb.goods.fieldByName("COLOR_ID")->isNull());

    QStringList reported;
    auto saved = ui::errorReporter;
    ui::errorReporter = [&](const QString& t) { reported << t; };
    p.duringWrite.clear();
    EXPECT_FALSE(p.link.write("not a number"));
    ui::errorReporter = saved;
    EXPECT_EQ(reported.size(), 1);
    ASSERT_FALSE(p.duringWrite.isEmpty()); // the control is re-read after the failure
    EXPECT_FALSE(p.duringWrite.last());

    p.link.setDataField("NAME");
    EXPECT_TRUE(p.link.write(QString())); // a text field takes the empty text
    EXPECT_FALSE(tb.goods.fieldByName("NAME")->isNull());
}
