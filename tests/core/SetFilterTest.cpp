#include "frames/core/SetFilter_EF.h"
#include "tests/support/DbFixture.h"
#include "tests/support/TestHost.h"
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace frames;

namespace {

// A list-valued filter as the families build them: items from a list, a line edit whose edits
// tick the filter.
class TListProbe_EF : public TSetFilter_EF {
public:
    explicit TListProbe_EF(QWidget* parent = nullptr) : TSetFilter_EF(parent) {
        edit = new QLineEdit(content());
        contentLayout()->addWidget(edit);
        tickOn(edit, &QLineEdit::textEdited);
    }
    int ItemsCount() override { return int(items.size()); }
    QString ItemsItem(int i) override { return i >= 0 && i < items.size() ? items[i] : QString(); }
    void AddText(const QString& t) override {
        items << t;
        ContentChanged();
    }
    QStringList items;
    QLineEdit* edit;
};

} // namespace

TEST(SetFilter, ItemsListsAndConditionFollowTheItemsAndTheSwitch) {
    test::TestHost host;
    TListProbe_EF f;
    f.items = {"-1", "12", "7", "12", " ", "O'Ne"};
    EXPECT_EQ(f.ItemsList(), QString("-1,12,7,12, ,O'Ne"));
    EXPECT_EQ(f.KnownItemsList(), QString("12,7,O'Ne"));
    EXPECT_EQ(f.SQL("ID"), QString()); // off
    f.cbSet->setChecked(true);
    EXPECT_EQ(f.SQL("ID"), QString("ID in (12,7,'O''Ne')"));
    f.items = {"-1"};
    EXPECT_EQ(f.SQL("ID"), QString()); // on, but nothing to filter by
    f.items = {"A,B"};                 // a text with a comma stays one literal
    EXPECT_EQ(f.SQL("GRP"), QString("GRP in ('A,B')"));
}

TEST(SetFilter, ChangesInsideTickTheSwitchAndClearTurnsItOff) {
    test::TestHost host;
    TListProbe_EF f;
    int signalled = 0;
    QObject::connect(&f, &TSetFilter_EF::filterChanged, [&] { ++signalled; });
    EXPECT_FALSE(f.cbSet->isChecked());
    EXPECT_TRUE(f.IsEmpty());
    f.edit->setText("set by code"); // not the user's change
    EXPECT_FALSE(f.cbSet->isChecked());
    QTest::keyClicks(f.edit, "x");
    EXPECT_TRUE(f.cbSet->isChecked());
    EXPECT_FALSE(f.IsEmpty());
    EXPECT_GE(signalled, 1);

    f.Clear();
    EXPECT_FALSE(f.cbSet->isChecked());
    f.AddText("5");
    EXPECT_TRUE(f.cbSet->isChecked());
    f.SetReadOnly(true);
    EXPECT_FALSE(f.cbSet->isEnabled());
}

TEST(SetFilter, LayoutKeepsTheSwitchAndAnAbsentItemLeavesItAlone) {
    test::TestHost host;
    TConfigItem root("Filter");
    TSetFilter_EF f, g;
    f.cbSet->setChecked(true);
    f.SaveLayout(&root);
    TConfigItem copy("Filter");
    copy.fromJson(root.toJson()); // as the host stores and reads it
    g.RestoreLayout(&copy);
    EXPECT_TRUE(g.cbSet->isChecked());

    TConfigItem empty("Filter");
    g.RestoreLayout(&empty);
    EXPECT_TRUE(g.cbSet->isChecked());
    EXPECT_FALSE(empty.IsExists("cbSet.Checked"));
    g.cbSet->setChecked(false);
    g.SaveLayout(&copy);
    EXPECT_FALSE(copy.ItemByName("cbSet.Checked")->GetAsBoolean());
    g.RestoreLayout(nullptr);
    g.SaveLayout(nullptr);
}

namespace {
class SetFilterDb : public test::DbTest {};
} // namespace

// Only a key that is exactly an integer goes into the condition unquoted, written as that number;
// anything else is quoted, so that the database reads it as text. The NUL key "1\0 or 1=1" used
// to pass as the integer 1 followed by SQL.
TEST_F(SetFilterDb, OnlyRealIntegersGoIntoTheConditionUnquoted) {
    TListProbe_EF f;
    f.cbSet->setChecked(true);
    const QString nulKey = QString("1") + QChar(0) + " or 1=1";
    const std::vector<std::pair<QString, QString>> cases = {
        {"12", "12"},
        {"-7", "-7"},
        {"007", "7"},
        {"-0", "0"},
        {"9223372036854775807", "9223372036854775807"},
        {"-9223372036854775808", "-9223372036854775808"},
        {nulKey, "'" + nulKey + "'"},
        {"9223372036854775808", "'9223372036854775808'"}, // beyond 64 bits
        {"+5", "'+5'"},
        {"1 2", "'1 2'"},
        {"0x10", "'0x10'"},
        {"1e3", "'1e3'"},
        {"5.0", "'5.0'"},
        {QString::fromUtf8("١٢"), QString::fromUtf8("'١٢'")}, // digits, but not ASCII ones
        {"1)or(1=1", "'1)or(1=1'"},
        {"1 or 1=1", "'1 or 1=1'"},
        {"1' or '1'='1", "'1'' or ''1''=''1'"},
        {"--1", "'--1'"},
        {"-", "'-'"},
    };
    for (const auto& [key, literal] : cases) {
        f.items = {key};
        EXPECT_EQ(f.SQL("ID"), "ID in (" + literal + ")") << key.toUtf8().toHex().toStdString();
    }

    // On the database: the hostile keys select nothing; the real key next to them still counts.
    const QString count = "select count(*) from ALGORITM where ";
    f.items = {"1"};
    const int one = scalar(count + f.SQL("cast(ID as varchar(30))")).toInt();
    EXPECT_EQ(one, 1);
    EXPECT_GT(scalar("select count(*) from ALGORITM").toInt(), 2);
    for (const QString& key : {nulKey, QString("1 or 1=1"), QString("1' or '1'='1")}) {
        f.items = {key};
        EXPECT_EQ(scalar(count + f.SQL("cast(ID as varchar(30))")).toInt(), 0) << key.toStdString();
        f.items = {"1", key};
        EXPECT_EQ(scalar(count + f.SQL("cast(ID as varchar(30))")).toInt(), 1) << key.toStdString();
    }
}
