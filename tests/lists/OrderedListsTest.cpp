#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/lists/SF_Cards.h"
#include "frames/lists/SF_Place.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QTest>

using namespace frames;

namespace {

class OrderedLists : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        top = std::make_unique<QWidget>();
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }
    template <typename T> T* make(const QString& cls, int kind, bool init = true) {
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, top.get()));
        EXPECT_NE(f, nullptr);
        f->Kind = kind;
        if (init) f->Init();
        return f;
    }
    // The rows of a dataset as "key:priority:used" or "articul".
    static QStringList places(db::AbstractDataSet* ds) {
        QStringList out;
        for (int r = 0; r < ds->recordCount(); ++r)
            out << QString("%1:%2:%3")
                       .arg(ds->valueAt(r, ds->fieldByName("ID")->index()).toInt())
                       .arg(ds->valueAt(r, ds->fieldByName("PRIORITY")->index()).toInt())
                       .arg(ds->valueAt(r, ds->fieldByName("IS_USED")->index()).toInt());
        return out;
    }
    static QStringList articles(db::AbstractDataSet* ds) {
        QStringList out;
        for (int r = 0; r < ds->recordCount(); ++r)
            out << ds->valueAt(r, ds->fieldByName("ARTICUL")->index()).toString().trimmed();
        return out;
    }
    // What another session reads of the user's places of kind -1.
    QString committed() const {
        QStringList out;
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(QString("select PLACE_INDEX, PRIORITY, IS_USED from SEL_PLACE where ID_USER=%1 and KIND=-1 "
                         "order by PRIORITY, PLACE_INDEX")
                     .arg(CUR_USER));
        q.open();
        while (q.next())
            out << QString("%1:%2:%3")
                       .arg(q.value(0).toInt())
                       .arg(q.value(1).toInt())
                       .arg(q.value(2).toInt());
        return out.join(' ');
    }

    std::unique_ptr<QWidget> top;
};

} // namespace

// The shop's places in priority order; the arrows are offered where a move is possible; moving the
// third place up swaps it with the second and keeps it current; the moves and the "used" switch
// stay in the frame's transaction until Commit, Rollback drops them; the used places are read once
// and kept until then.
TEST_F(OrderedLists, PlacePriorityMovesAndUsedSwitchWithCommitAndRollback) {
    const QString demo = "50:1:1 52:2:1 55:3:0 51:4:1";
    ASSERT_EQ(committed(), demo);
    auto* closed = make<TSFPlace>("TSFPlace", -1, false);
    EXPECT_EQ(closed->PlaceCount(), 0); // not open: nothing counted, nothing kept
    EXPECT_TRUE(closed->FPlaces.isEmpty());

    auto* f = make<TSFPlace>("TSFPlace", -1);
    db::DataSet* ds = f->pfDataSet;
    EXPECT_EQ(places(ds).join(' '), demo);
    EXPECT_EQ(f->bbUp->text(), QString());
    EXPECT_FALSE(f->aUp->isEnabled());
    EXPECT_TRUE(f->aDown->isEnabled());
    ds->last();
    EXPECT_TRUE(f->aUp->isEnabled());
    EXPECT_FALSE(f->aDown->isEnabled());

    EXPECT_EQ(f->PlaceCount(), 3);
    EXPECT_EQ(f->Places(0), 50);
    EXPECT_EQ(f->Places(2), 51);
    EXPECT_EQ(f->Places(3), -1);
    EXPECT_EQ(f->Places(-1), -1);

    ds->setRecNo(2); // place 55, priority 3
    f->aUp->trigger();
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
    EXPECT_EQ(places(ds).join(' '), "50:1:1 55:2:0 52:3:1 51:4:1");
    EXPECT_EQ(ds->recNo(), 1);
    EXPECT_EQ(ds->fieldByName("ID")->asInteger(), 55);
    f->ToggleUsed();
    EXPECT_EQ(ds->fieldByName("IS_USED")->asInteger(), 1);
    EXPECT_EQ(f->PlaceCount(), 3); // the switch is seen after a commit or rollback
    EXPECT_EQ(committed(), demo);  // nothing is permanent yet

    f->Rollback();
    EXPECT_EQ(places(ds).join(' '), demo);
    EXPECT_EQ(committed(), demo);
    EXPECT_TRUE(f->pfTransaction->active());

    ds->setRecNo(1); // place 52 down
    f->aDown->trigger();
    EXPECT_EQ(places(ds).join(' '), "50:1:1 55:2:0 52:3:1 51:4:1");
    EXPECT_EQ(ds->fieldByName("ID")->asInteger(), 52);
    ds->setRecNo(1);
    f->ToggleUsed();
    f->Commit();
    EXPECT_EQ(committed(), "50:1:1 55:2:1 52:3:1 51:4:1");
    EXPECT_EQ(f->PlaceCount(), 4);
    EXPECT_EQ(f->Places(1), 55);
    EXPECT_TRUE(f->pfTransaction->active());

    // One place alone: no move is offered.
    exec(QString("insert into SEL_PLACE (ID_USER, KIND, PLACE_INDEX) values (%1, 44, 53)").arg(CUR_USER));
    auto* one = make<TSFPlace>("TSFPlace", 44);
    ASSERT_EQ(one->pfDataSet->recordCount(), 1);
    EXPECT_EQ(one->pfDataSet->fieldByName("PRIORITY")->asInteger(), 1);
    EXPECT_FALSE(one->aUp->isEnabled());
    EXPECT_FALSE(one->aDown->isEnabled());
}

// Another session of the same user holding one of the rows: the move fails at once with a clear
// message instead of waiting; the user's own earlier change is still there to commit.
TEST_F(OrderedLists, PlaceMoveMeetingAnotherSessionFailsAtOnceAndKeepsEarlierEdits) {
    auto* f = make<TSFPlace>("TSFPlace", -1);
    db::DataSet* ds = f->pfDataSet;
    ds->setRecNo(3); // place 51: switch it off
    f->ToggleUsed();

    auto other = secondConnection();
    db::Transaction tr(other.get(), db::TransactionOptions::writeNoWait());
    tr.start();
    db::Query q(other.get(), &tr);
    q.setSql(QString("update SEL_PLACE set IS_USED = IS_USED where ID_USER=%1 and KIND=-1 and PLACE_INDEX=52")
                 .arg(CUR_USER));
    q.exec();

    ds->setRecNo(2); // place 55 up: meets 52
    f->aUp->trigger();
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_EQ(ds->fieldByName("ID")->asInteger(), 55); // back on the place the user moved
    EXPECT_FALSE(ds->inEditMode());
    EXPECT_EQ(ds->fieldByName("PRIORITY")->asInteger(), 2); // its half of the move, not yet committed
    EXPECT_TRUE(f->pfTransaction->active());
    ASSERT_TRUE(ds->locate("ID", 51));
    EXPECT_EQ(ds->fieldByName("IS_USED")->asInteger(), 0); // the earlier switch is still there
    tr.rollback();

    f->Rollback(); // the user decides: drop the failed move's half ...
    ds->setRecNo(3);
    f->ToggleUsed(); // ... and switch again, then commit
    f->Commit();
    EXPECT_EQ(committed(), "50:1:1 52:2:1 55:3:0 51:4:0");

    // The grid layout lives under the frame's own node.
    TConfigItem root;
    f->SaveLayout(&root);
    EXPECT_TRUE(root.IsExists(f->objectName()));
    EXPECT_TRUE(root.ItemByName(f->objectName())->IsExists("dbGrid"));
}

// The card list: cards come from the card form (several, one committed insert each, an article
// already listed stays one row); a cancelled form changes and reloads nothing; marked rows are
// deleted together; the actions follow the read-only state and the list's emptiness.
TEST_F(OrderedLists, CardListAddsFromTheCardFormAndDeletesMarkedRows) {
    auto* f = make<TSFCards>("TSFCards", -1);
    db::DataSet* ds = f->pfDataSet;
    EXPECT_EQ(articles(ds), (QStringList{"100-0001", "100-0004"}));
    EXPECT_TRUE(f->aAdd->isEnabled());
    EXPECT_TRUE(f->aDel->isEnabled());

    host->scriptRun([](const QString&, TRunParams& p) {
        p.EnsureParams().ByName("Cards").Value = QStringList{
            "100-0002=Кефир 2,5% 930 г", "100-0001=Молоко пастеризованное 3,2% 1 л", "100-0005=Гречка"};
        return 1;
    });
    f->aAdd->trigger();
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, "CardForm");
    EXPECT_TRUE(host->runs[0].params.Flag);
    EXPECT_EQ(articles(ds), (QStringList{"100-0001", "100-0002", "100-0004", "100-0005"}));
    EXPECT_EQ(scalar(QString("select count(*) from SEL_CARDSCLA where ID_USER=%1 and KIND=-1").arg(CUR_USER))
                  .toInt(),
              4);
    EXPECT_FALSE(f->pfTransaction->active());

    // Cancelled: no change and no reload (a row added meanwhile elsewhere is not shown yet).
    exec(QString("insert into SEL_CARDSCLA (ID_USER, KIND, ARTICUL) values (%1, -1, '100-0003')")
             .arg(CUR_USER));
    host->scriptRunResult(2);
    f->aAdd->trigger();
    EXPECT_EQ(articles(ds).size(), 4);

    f->Init();
    ASSERT_EQ(articles(ds), (QStringList{"100-0001", "100-0002", "100-0003", "100-0004", "100-0005"}));
    f->dbGrid->setMarked(0, true);
    f->dbGrid->setMarked(2, true);
    f->dbGrid->setMarked(4, true);
    f->aDel->trigger();
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
    EXPECT_EQ(articles(ds), (QStringList{"100-0002", "100-0004"}));
    EXPECT_EQ(scalar(QString("select count(*) from SEL_CARDSCLA where ID_USER=%1 and KIND=-1").arg(CUR_USER))
                  .toInt(),
              2);

    // Without marks the current row goes.
    ds->first();
    f->aDel->trigger();
    EXPECT_EQ(articles(ds), QStringList{"100-0004"});
    f->aDel->trigger();
    EXPECT_TRUE(articles(ds).isEmpty());
    EXPECT_FALSE(f->aDel->isEnabled());

    f->SetReadOnly(true);
    EXPECT_FALSE(f->aAdd->isEnabled());
    f->SetReadOnly(false);
    EXPECT_TRUE(f->aAdd->isEnabled());
}
