#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lists/BF_Manager.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QTest>

using namespace frames;

namespace {

class DualList : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        top = std::make_unique<QWidget>();
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }
    TManager_BF* make(int kind) {
        auto* f = qobject_cast<TManager_BF*>(Registry::instance().create("TManager_BF", top.get()));
        EXPECT_NE(f, nullptr);
        f->Kind = kind;
        f->Init();
        return f;
    }
    static QStringList names(db::AbstractDataSet* ds) {
        QStringList out;
        for (int r = 0; r < ds->recordCount(); ++r) out << ds->valueAt(r, 1).toString();
        return out;
    }
    static QList<int> keys(db::AbstractDataSet* ds) {
        QList<int> out;
        for (int r = 0; r < ds->recordCount(); ++r) out << ds->valueAt(r, 0).toInt();
        return out;
    }
    QList<int> stored(int kind) const {
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(QString("select MANAGER from FILTER_MANAGER where ID_USER=%1 and KIND=%2 order by MANAGER")
                     .arg(CUR_USER)
                     .arg(kind));
        q.open();
        QList<int> out;
        while (q.next()) out << q.value(0).toInt();
        return out;
    }
    static bool locateKey(db::AbstractDataSet* ds, int key) { return ds->locate("ID", key); }

    std::unique_ptr<QWidget> top;
};

} // namespace

// The lists come from the server for the user and kind; moved rows keep both lists sorted by
// name; "<Не определено>" (-1) is chosen like any user; saving the layout stores the choice
// (and only this kind's), which the next frame reads back; the item interface lists the keys.
TEST_F(DualList, ChoiceIsStoredPerKindAndReadBack) {
    exec(QString("insert into FILTER_MANAGER (ID_USER, KIND, MANAGER) values (%1, 3, 2)").arg(CUR_USER));
    TManager_BF* f = make(5);
    EXPECT_TRUE(f->mdSelected->isEmpty());
    const QList<int> all = keys(f->mdAvailabled);
    EXPECT_EQ(all.first(), -1);
    EXPECT_FALSE(all.contains(-10));
    QStringList sorted = names(f->mdAvailabled);
    EXPECT_EQ(sorted.first(), "<Не определено>");

    ASSERT_TRUE(locateKey(f->mdAvailabled, 7));
    f->sbSel->click();
    ASSERT_TRUE(locateKey(f->mdAvailabled, -1));
    f->sbSel->click();
    ASSERT_TRUE(locateKey(f->mdAvailabled, 2));
    f->sbSel->click();
    EXPECT_EQ(f->ItemsCount(), 3);
    EXPECT_EQ(keys(f->mdSelected), (QList<int>{-1, 2, 7})); // by name: "<Не определено>", Иванов, Яковлева
    EXPECT_EQ(f->mdAvailabled->recordCount(), all.size() - 3);
    const QString list = f->ItemsList();
    EXPECT_EQ(list.split(',').size(), 3);
    EXPECT_FALSE(list.contains(' '));
    EXPECT_EQ(f->ItemsItem(0), list.section(',', 0, 0));
    EXPECT_EQ(f->ItemsItem(3), QString());

    TConfigItem node;
    f->SaveLayout(&node);
    EXPECT_EQ(stored(5), (QList<int>{-1, 2, 7}));
    EXPECT_EQ(stored(3), QList<int>{2});

    TManager_BF* g = make(5);
    EXPECT_EQ(g->ItemsList(), "-1,2,7");
    EXPECT_EQ(list, "-1,2,7");
    EXPECT_FALSE(keys(g->mdAvailabled).contains(7));

    // A double click moves back; the move is stored with the layout.
    ASSERT_TRUE(locateKey(g->mdSelected, 2));
    emit g->dbgSelected->activated();
    g->SaveLayout(&node);
    EXPECT_EQ(stored(5), (QList<int>{-1, 7}));
}

// At most 1500 rows are chosen: one more is refused with the message, and "all" is refused whole
// when both lists together hold more; moving back is never limited.
TEST_F(DualList, NoMoreThan1500Chosen) {
    TManager_BF* f = make(5);
    f->mdAvailabled->close();
    f->mdAvailabled->open();
    f->mdSelected->close();
    f->mdSelected->open();
    for (int i = 0; i < 1500; ++i)
        f->mdSelected->appendRecord({10000 + i, QString("Выбранный %1").arg(i, 4, 10, QChar('0'))});
    f->mdAvailabled->appendRecord({1, QString("Ещё один")});

    f->sbSel->click();
    ASSERT_EQ(host->errors(), QStringList{"Нельзя выбрать более 1500 записей"});
    EXPECT_EQ(f->mdSelected->recordCount(), 1500);
    EXPECT_EQ(f->mdAvailabled->recordCount(), 1);

    f->mdSelected->first();
    f->sbUnsel->click();
    EXPECT_EQ(f->mdSelected->recordCount(), 1499);
    EXPECT_EQ(f->mdAvailabled->recordCount(), 2);
    // 1499 + 2 > 1500: all of it is refused, although only two are available.
    f->sbAllSel->click();
    EXPECT_EQ(host->errors().size(), 2);
    EXPECT_EQ(f->mdSelected->recordCount(), 1499);

    f->sbAllUnSel->click();
    EXPECT_EQ(f->mdSelected->recordCount(), 0);
    EXPECT_EQ(f->mdAvailabled->recordCount(), 1501);
    f->mdSelected->appendRecord({1, QString("x")});
    f->mdAvailabled->first();
    f->mdAvailabled->remove();
    while (f->mdAvailabled->recordCount() > 1499) {
        f->mdAvailabled->first();
        f->mdAvailabled->remove();
    }
    f->sbAllSel->click(); // 1499 + 1 = 1500: allowed
    EXPECT_EQ(host->errors().size(), 2);
    EXPECT_EQ(f->mdSelected->recordCount(), 1500);
}

// Dismissed users are offered only while the toggle is down; switching it stores the choice
// first; moving a dismissed user back while they are hidden makes him disappear from the list;
// the toggle survives the layout.
TEST_F(DualList, DismissedUsersFollowTheToggle) {
    const int dismissed = 9;
    ASSERT_EQ(scalar("select IS_UVOLEN from USERS where ID_USER=9").toString(), "T");
    TManager_BF* f = make(6);
    EXPECT_TRUE(f->sbShowUvolen->isChecked());
    EXPECT_TRUE(keys(f->mdAvailabled).contains(dismissed));
    ASSERT_TRUE(locateKey(f->mdAvailabled, dismissed));
    f->sbSel->click();

    f->sbShowUvolen->click(); // up: hide the dismissed
    EXPECT_FALSE(f->sbShowUvolen->isChecked());
    EXPECT_EQ(stored(6), QList<int>{dismissed}); // stored before the lists were read again
    EXPECT_TRUE(keys(f->mdSelected).contains(dismissed));
    EXPECT_FALSE(keys(f->mdAvailabled).contains(dismissed));

    ASSERT_TRUE(locateKey(f->mdSelected, dismissed));
    f->sbUnsel->click();
    EXPECT_FALSE(keys(f->mdAvailabled).contains(dismissed));
    EXPECT_TRUE(stored(6).isEmpty());

    TConfigItem node;
    f->SaveLayout(&node);
    EXPECT_FALSE(node.ItemByName("sbShowUvolen.Down")->GetAsBoolean());
    TManager_BF* g = make(6);
    EXPECT_TRUE(keys(g->mdAvailabled).contains(dismissed)); // down by default
    g->RestoreLayout(&node);
    EXPECT_FALSE(g->sbShowUvolen->isChecked());
    EXPECT_FALSE(keys(g->mdAvailabled).contains(dismissed));
}

// Ctrl+F searches the grid in use; the typed character goes into the find form only when the
// configuration asks for it ("FindEcho").
TEST_F(DualList, SearchOpensOverTheGridInUse) {
    TManager_BF* f = make(7);
    f->DBGridFind(f->dbgAvailabled, "M");
    host->boolValues["FindEcho"] = true;
    f->DBGridFind(f->dbgSelected, "M");
    f->aSearchExecute(); // the available list, which holds rows
    ASSERT_EQ(host->findForms.size(), 3);
    EXPECT_EQ(host->findForms[0], f->dbgAvailabled->objectName() + ":");
    EXPECT_EQ(host->findForms[1], f->dbgSelected->objectName() + ":M");
    EXPECT_EQ(host->findForms[2], f->dbgAvailabled->objectName() + ":");
}
