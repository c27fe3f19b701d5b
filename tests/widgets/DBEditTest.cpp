#include "platform/widgets/DBEdit.h"
#include "Tables.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include <QTest>
#include <gtest/gtest.h>

using namespace frames;
using namespace widgets_test;

TEST(DBEdit, ShowsFollowsAndWritesTheField) {
    Tables tb;
    ui::DBEdit name, color;
    name.setDataSource(&tb.goodsSrc);
    name.setProperty("DataField", "NAME");
    color.setDataSource(&tb.goodsSrc);
    color.setDataField("COLOR_ID");
    EXPECT_EQ(name.maxLength(), 40);
    tb.goods.next();
    EXPECT_EQ(name.text(), "Hat");

    // Typing puts the record into edit state and writes through.
    EXPECT_EQ(name.cursorPosition(), 0); // out of focus the start of the text shows
    name.setFocus();
    name.end(false);
    QTest::keyClicks(&name, "s");
    EXPECT_EQ(tb.goods.state(), db::DataSetState::Edit);
    EXPECT_EQ(tb.goods.fieldByName("NAME")->asString(), "Hats");
    tb.goods.post();

    // A number field: an unfinished text is kept quietly, reported when editing ends.
    QStringList reported;
    auto saved = ui::errorReporter;
    ui::errorReporter = [&](const QString& t) { reported << t; };
    color.selectAll();
    QTest::keyClicks(&color, "x");
    EXPECT_TRUE(reported.isEmpty());
    emit color.editingFinished();
    EXPECT_EQ(reported.size(), 1);
    color.setText("");
    emit color.textEdited("");
    EXPECT_TRUE(tb.goods.fieldByName("COLOR_ID")->isNull());
    ui::errorReporter = saved;
    tb.goods.cancel();
    EXPECT_EQ(color.text(), "3");

    // Read-only: the field is left alone.
    name.setProperty("ReadOnly", true);
    QTest::keyClicks(&name, "zz");
    EXPECT_EQ(tb.goods.state(), db::DataSetState::Browse);
    EXPECT_EQ(name.text(), "Hats");
}

TEST(DBCheckBox, ValuesByTypeAndExplicitStrings) {
    db::MemTable t;
    t.addFieldDef("FLAG", db::FieldType::Char, 1);
    t.addFieldDef("ON", db::FieldType::Boolean);
    t.addFieldDef("NUM", db::FieldType::Integer);
    t.addFieldDef("YN", db::FieldType::VarChar, 3);
    t.open();
    t.appendRecord({"T", false, 1, "N"});
    t.appendRecord({QVariant(), true, 0, "Y"});
    t.first();
    db::DataSource src(&t);
    ui::DBCheckBox flag, on, num, yn;
    for (auto [box, name] : {std::pair{&flag, "FLAG"}, {&on, "ON"}, {&num, "NUM"}, {&yn, "YN"}}) {
        box->setDataSource(&src);
        box->setProperty("DataField", name);
    }
    yn.setProperty("ValueChecked", "Y");
    yn.setProperty("ValueUnchecked", "N");
    t.next();
    EXPECT_FALSE(flag.isChecked()); // null
    EXPECT_TRUE(on.isChecked());
    EXPECT_FALSE(num.isChecked());
    EXPECT_TRUE(yn.isChecked());

    for (auto* box : {&flag, &on, &num, &yn}) box->click();
    EXPECT_EQ(t.state(), db::DataSetState::Edit);
    EXPECT_EQ(t.fieldByName("FLAG")->asString(), "T");
    EXPECT_FALSE(t.fieldByName("ON")->asBoolean());
    EXPECT_EQ(t.fieldByName("NUM")->value().toInt(), 1);
    EXPECT_EQ(t.fieldByName("YN")->asString(), "N");
    t.post();

    yn.setReadOnly(true);
    yn.click();
    EXPECT_EQ(t.state(), db::DataSetState::Browse);
}
