#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/multi/LF_MultiAbs.h"
#include "frames/multi/LF_MultiColor.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QListView>
#include <QPixmap>
#include <QTest>

using namespace frames;

namespace {

class MultiLookup : public test::DbTest {
protected:
    template <typename T = TMultiAbs_LF> std::unique_ptr<T> open(const QString& cls) {
        std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(cls, &top));
        auto* m = qobject_cast<T*>(f.get());
        EXPECT_NE(m, nullptr) << cls.toStdString();
        f.release();
        std::unique_ptr<T> frame(m);
        frame->Init();
        return frame;
    }
    // What the drop-down offers, in its order.
    static QStringList offered(TMultiAbs_LF* f) {
        QStringList keys;
        const int column = f->pFIBDataSet1->fieldByName(f->lcSelect->lookupField())->index();
        for (int row = 0; row < f->pFIBDataSet1->recordCount(); ++row)
            keys << f->pFIBDataSet1->valueAt(row, column).toString();
        return keys;
    }
    static QStringList listKeys(TMultiAbs_LF* f) {
        QStringList keys;
        for (int i = 1; i < f->ItemsCount(); ++i) keys << f->ItemsItem(i);
        return keys;
    }
    static void press(TMultiAbs_LF* f, Qt::Key key) { QTest::keyClick(f->lcSelect->comboBox(), key); }
    // n extra rows in a reference table with columns ID and NAME (keys from, from + 1, ...).
    void addRows(const QString& table, int from, int n, const QString& extra = {},
                 const QString& extraValue = {}) {
        exec(
            QStringLiteral("insert into %1 (id, name%2) select %3 + k, 'Строка ' || (%3 + k)%4 from ("
                           "with recursive d(x) as (select 0 from rdb$database union all select x + 1 from d "
                           "where x < 9) select a.x * 1000 + b.x * 100 + c.x * 10 + e.x as k "
                           "from d a, d b, d c, d e) where k < %5")
                .arg(table, extra.isEmpty() ? QString() : ", " + extra)
                .arg(from)
                .arg(extraValue.isEmpty() ? QString() : ", " + extraValue)
                .arg(n));
    }

    QWidget top;
};

} // namespace

// Every multi-select class is registered, opens its list on the demo database without an error,
// and its statement prepares both without and with an exclusion clause.
TEST_F(MultiLookup, EveryClassOpensAndPreparesWithAndWithoutItsClause) {
    const QStringList classes = Registry::instance().classNames("multi");
    EXPECT_GE(classes.size(), 47);
    QStringList failures;
    for (const QString& cls : classes) {
        host->messages.clear();
        std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(cls, &top));
        auto* m = qobject_cast<TMultiAbs_LF*>(f.get());
        if (!m) {
            failures << cls + ": not a multi-select lookup";
            continue;
        }
        if (!guard([&] { m->Init(); }) || !host->errors().isEmpty()) {
            failures << cls + ": " + host->errors().join("; ") + "\n  " + m->pFIBDataSet1->selectSql();
            continue;
        }
        if (m->pFIBDataSet1->isEmpty()) failures << cls + ": the list is empty";
        if (m->ItemsCount() != 1 || m->ItemsItem(0) != "-1") failures << cls + ": not empty at the start";
        for (const QString& keys : {QString(), QStringLiteral("1, 2")}) {
            db::Query q(host->RvDatabase(), host->pfReadTransaction());
            try {
                q.setSql(m->SelectText(keys));
                q.prepare();
            } catch (const std::exception& e) {
                failures << cls + " [" + keys + "]: " + QString::fromUtf8(e.what());
            }
        }
    }
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();
}

// Insert moves the combo's row into the list and steps on; the key list follows the query's
// order, the drop-down leaves the chosen rows out, and keys the table lost drop out of sSQL only.
TEST_F(MultiLookup, ChoosingBuildsTheKeyListInTheQueryOrder) {
    auto f = open("TMultiCountry_LF");
    const QStringList all = offered(f.get());
    ASSERT_GE(all.size(), 5);
    EXPECT_EQ(f->ItemsCount(), 1);
    EXPECT_EQ(f->ItemsItem(0), "-1");

    // The fourth row first, then the second: sSQL is in name order, the list in the order chosen.
    f->lcSelect->setKeyValue(all[3].toInt());
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(f->lcSelect->keyValue().toString(), all[4]); // the row after the chosen one
    f->lcSelect->setKeyValue(all[1].toInt());
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(f->lcSelect->keyValue().toString(), all[2]);
    EXPECT_EQ(listKeys(f.get()), QStringList({all[3], all[1]}));
    EXPECT_EQ(f->Get_sSQL(), all[1] + ", " + all[3]);
    EXPECT_EQ(f->ChosenCount(), 2);
    QStringList rest = all;
    rest.removeAll(all[1]);
    rest.removeAll(all[3]);
    EXPECT_EQ(offered(f.get()), rest);
    EXPECT_EQ(f->ItemsItem(0), all[2]);
    EXPECT_EQ(f->ItemsList(), QStringList({all[2], all[3], all[1]}).join(','));
    EXPECT_EQ(f->ItemsItem(3), QString());

    // The last row: the combo wraps to the first row still offered.
    f->lcSelect->setKeyValue(all.last().toInt());
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(f->lcSelect->keyValue().toString(), rest.first());

    // A chosen country deleted by someone else: kept in the list, left out of the key list.
    exec("insert into COUNTRY (ID_COUNTRY, NAME_COUNTRY) values (900, 'Ямайка')");
    f->Get_sSQL(); // a rebuild reads the list anew
    f->lcSelect->setKeyValue(900);
    press(f.get(), Qt::Key_Insert);
    EXPECT_TRUE(f->Get_sSQL().contains("900"));
    exec("delete from COUNTRY where ID_COUNTRY = 900");
    EXPECT_EQ(f->Get_sSQL(), QStringList({all[1], all[3], all.last()}).join(", "));
    EXPECT_EQ(f->ChosenCount(), 3);
    EXPECT_EQ(f->ItemsCount(), 5);
    EXPECT_EQ(f->ItemsItem(4), "900");
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Delete is consumed in the combo (it takes back the list's current row, or empties the combo
// when the list is empty) and left to the list in the list (which takes back its current row).
TEST_F(MultiLookup, DeleteTakesRowsBack) {
    auto f = open("TMultiCardGender_LF");
    const QStringList all = offered(f.get());
    ASSERT_GE(all.size(), 2);
    f->lcSelect->setKeyValue(all[0].toInt());
    int key = Qt::Key_Delete;
    f->lcSelectKeyDown(f->lcSelect, key, Qt::NoModifier);
    EXPECT_EQ(key, 0);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), -1);

    f->lcSelect->setKeyValue(all[0].toInt());
    press(f.get(), Qt::Key_Insert);
    f->lcSelect->setKeyValue(all[1].toInt());
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(offered(f.get()).size(), all.size() - 2);
    // The list's current row is the last one added: Delete in the combo takes it back.
    press(f.get(), Qt::Key_Delete);
    EXPECT_EQ(listKeys(f.get()), QStringList{all[0]});
    EXPECT_EQ(f->Get_sSQL(), all[0]);
    EXPECT_TRUE(offered(f.get()).contains(all[1]));

    key = Qt::Key_Delete;
    f->dbListKeyDown(f->dbList, key, Qt::NoModifier);
    EXPECT_EQ(key, int(Qt::Key_Delete));
    EXPECT_TRUE(listKeys(f.get()).isEmpty());
    EXPECT_EQ(f->Get_sSQL(), QString());
    EXPECT_EQ(offered(f.get()), all);

    // Through the list's own key events, and on an empty list nothing happens.
    f->lcSelect->setKeyValue(all[1].toInt());
    press(f.get(), Qt::Key_Insert);
    QTest::keyClick(f->dbList->view(), Qt::Key_Delete);
    EXPECT_TRUE(listKeys(f.get()).isEmpty());
    QTest::keyClick(f->dbList->view(), Qt::Key_Delete);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// The limit is on the count the last rebuild found: 1500 found keys take one more, 1501 do not.
// The colour list has no limit.
TEST_F(MultiLookup, FifteenHundredKeysTakeOneMoreAndNotTwo) {
    addRows("GENDER", 1000, 1510);
    addRows("COLOR", 1000, 1510, "COLOR", "255");
    auto f = open("TMultiCardGender_LF");
    for (int k = 1000; k < 1500 + 1000; ++k) f->mdList->appendRecord({k, QString::number(k)});
    EXPECT_EQ(f->Get_sSQL().count(',') + 1, 1500);
    f->lcSelect->setKeyValue(2500);
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(f->mdList->recordCount(), 1501);
    EXPECT_EQ(f->ChosenCount(), 1501);
    EXPECT_TRUE(host->messages.empty());
    f->lcSelect->setKeyValue(2501);
    press(f.get(), Qt::Key_Insert);
    EXPECT_EQ(f->mdList->recordCount(), 1501);
    ASSERT_EQ(host->messages.size(), 1u);
    EXPECT_EQ(
        host->messages[0].text,
        QStringLiteral("Слишком большое количество элементов в списке. \rНельзя добавить еще один элемент."));
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 2501);

    auto c = open<TMultiColor_LF>("TMultiColor_LF");
    for (int k = 1000; k < 1501 + 1000; ++k) c->mdList->appendRecord({k, QString::number(k), 255});
    c->Get_sSQL();
    c->lcSelect->setKeyValue(2500);
    press(c.get(), Qt::Key_Insert);
    EXPECT_EQ(c->mdList->recordCount(), 1502);
    EXPECT_EQ(host->messages.size(), 1u);
}

// A saved layout comes back: the combo's key, and the list without the combo's own key and
// without keys the table lost, silently.
TEST_F(MultiLookup, LayoutComesBackWithoutTheCombosKeyAndVanishedKeys) {
    TConfigItem layout("frame");
    QStringList all;
    {
        auto f = open("TMultiTradeMark_LF");
        all = offered(f.get());
        ASSERT_GE(all.size(), 4);
        for (int i : {2, 0, 3}) {
            f->lcSelect->setKeyValue(all[i].toInt());
            press(f.get(), Qt::Key_Insert);
        }
        f->lcSelect->setKeyValue(all[1].toInt());
        f->SaveLayout(&layout);
    }
    EXPECT_EQ(layout.ItemByName("lcSelect.KeyValue")->GetAsInteger(), all[1].toInt());
    EXPECT_EQ(layout.ItemByName("mdList.RecordCount")->GetAsInteger(), 3);
    {
        auto f = open("TMultiTradeMark_LF");
        f->RestoreLayout(&layout);
        EXPECT_EQ(listKeys(f.get()), QStringList({all[2], all[0], all[3]}));
        EXPECT_EQ(f->lcSelect->keyValue().toString(), all[1]);
        EXPECT_EQ(f->Get_sSQL(), QStringList({all[0], all[2], all[3]}).join(", "));
        EXPECT_EQ(f->dbList->itemText(0), f->mdList->valueAt(0, 1).toString());
    }
    // The combo holds a key that is also saved in the list, and a saved key no longer exists.
    layout.ItemByName("lcSelect.KeyValue")->SetAsInteger(all[0].toInt());
    layout.ItemByName("mdList.Record2")->SetAsInteger(987654);
    {
        auto f = open("TMultiTradeMark_LF");
        f->RestoreLayout(&layout);
        EXPECT_EQ(listKeys(f.get()), QStringList{all[2]});
        EXPECT_FALSE(offered(f.get()).contains(all[2]));
        EXPECT_TRUE(offered(f.get()).contains(all[0]));
    }
    EXPECT_TRUE(host->messages.empty());
}

// The branch list is put together for the user who works: a branch his access row forbids is
// not offered. The client list takes its parameters before every open; a frame's kind reaches
// its query.
TEST_F(MultiLookup, ListsFollowTheUserAndTheirParameters) {
    const int savedUser = CUR_USER, savedShop = CUR_SHOPINDEX;
    CUR_USER = 2; // access 'N' to branch 104 of shop 1
    CUR_SHOPINDEX = 1;
    auto filial = open("TMultiFilial_LF");
    CUR_USER = savedUser;
    CUR_SHOPINDEX = savedShop;
    // Shop 1's branches by name, without 104; 103 is read-only for him and still offered.
    EXPECT_EQ(offered(filial.get()), QStringList({"103", "102", "101"}));
    EXPECT_TRUE(filial->pFIBDataSet1->selectSql().contains("uf.id_user=2 "));

    auto clients = open("TMultiClient_LF");
    const QVariant expected =
        scalar("select count(*) from CLIENTS c join CLASSIF k on k.ID_CLASSIF = c.CLASSIF "
               "where c.CLIENT_TYPE = 0 and c.ID_CLIENTS > -1 and k.TYPE_CLASSIF = 1");
    EXPECT_EQ(clients->pFIBDataSet1->recordCount(), expected.toInt());
    EXPECT_GT(expected.toInt(), 0);

    auto events = open("TMultiEventCharacter_LF");
    auto firms = open("TMultiFirmCharacter_LF");
    EXPECT_TRUE(offered(events.get()).contains("12"));
    EXPECT_FALSE(offered(firms.get()).contains("12"));
    firms->SetKind(1);
    EXPECT_TRUE(offered(firms.get()).contains("12"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// The dialog button starts the reference form at the row's classifier, with the frame's
// classifier type and, where the frame passes it, its kind.
TEST_F(MultiLookup, TheDialogGetsTheClassifierTypeStartAndKind) {
    auto f = open("TMultiCountry_LF");
    f->lcSelect->setKeyValue(offered(f.get()).first().toInt());
    const int classif = f->pFIBDataSet1->fieldByName("CLASSIF")->asInteger();
    host->scriptRunResult(2);
    f->lcSelectDlgClick(f->lcSelect);
    ASSERT_FALSE(host->runs.empty());
    EXPECT_EQ(host->runs.back().params.KeyInt, classif);
    EXPECT_EQ(host->runs.back().params.ResultInt, 4);

    auto place = open("TMultiPlace_LF");
    place->SetKind(3);
    host->scriptRunResult(2);
    place->lcSelectDlgClick(place->lcSelect);
    ASSERT_TRUE(host->runs.back().params.Params);
    EXPECT_EQ(host->runs.back().params.Params->Find("KIND")->Value.toInt(), 3);
    EXPECT_FALSE(place->RunParams.Params); // the list is freed after the run

    // The client form hands back another classifier type: the supplier list follows it.
    auto suppliers = open("TMultiSupplier_LF");
    auto count = [&](int type) {
        return scalar(
                   QStringLiteral("select count(*) from CLIENTS c join CLASSIF k on k.ID_CLASSIF = c.CLASSIF "
                                  "where c.CLIENT_TYPE = 0 and c.ID_CLIENTS <> -1 and k.TYPE_CLASSIF = %1")
                       .arg(type))
            .toInt();
    };
    EXPECT_EQ(suppliers->pFIBDataSet1->recordCount(), count(1));
    host->scriptRun([](const QString&, TRunParams& p) {
        EXPECT_EQ(p.ResultInt, 1);
        p.ResultInt = 2;
        return 2;
    });
    suppliers->lcSelectDlgClick(suppliers->lcSelect);
    EXPECT_EQ(suppliers->ClassifType, 2);
    EXPECT_EQ(suppliers->pFIBDataSet1->recordCount(), count(2));
    EXPECT_NE(count(1), count(2));
}

// Each chosen colour shows its swatch: the colour inside a two-pixel frame, white for a row
// without a colour.
TEST_F(MultiLookup, ColoursShowTheirSwatch) {
    auto f = open<TMultiColor_LF>("TMultiColor_LF");
    EXPECT_EQ(f->dbColorList->objectName(), "dbColorList");
    const QStringList all = offered(f.get());
    EXPECT_FALSE(all.contains("-1"));
    f->lcSelect->setKeyValue(all[0].toInt());
    press(f.get(), Qt::Key_Insert);
    const qint64 bgr = scalar("select COLOR from COLOR where ID = " + all[0]).toLongLong();
    EXPECT_EQ(f->mdList->fieldByName("Color")->value().toLongLong(), bgr);
    const QPixmap swatch = qvariant_cast<QPixmap>(f->dbColorListGetImage(f->dbColorList, 0));
    ASSERT_EQ(swatch.size(), QSize(30, 12));
    const QImage img = swatch.toImage();
    const QColor inside = img.pixelColor(15, 6);
    EXPECT_EQ(inside.red(), int(bgr & 0xFF));
    EXPECT_EQ(inside.blue(), int((bgr >> 16) & 0xFF));
    f->mdList->appendRecord({12345, "Без цвета", QVariant()});
    EXPECT_EQ(qvariant_cast<QPixmap>(f->dbColorListGetImage(f->dbColorList, 1)).toImage().pixelColor(15, 6),
              QColor(Qt::white));
    EXPECT_TRUE(f->SelectText("7").endsWith(" and not (id in (7)) order by name"));
    EXPECT_TRUE(f->SelectText("").endsWith("  order by name"));
}
