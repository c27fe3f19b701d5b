#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/select/DF_PlaceSelect.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QElapsedTimer>
#include <QTest>

using namespace frames;

namespace {

class SelectDialog : public test::DbTest {
protected:
    template <typename T> std::unique_ptr<T> make(const QString& cls) {
        std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(cls, &top));
        auto* d = qobject_cast<T*>(f.get());
        EXPECT_NE(d, nullptr) << cls.toStdString();
        f.release();
        return std::unique_ptr<T>(d);
    }
    static QList<int> ids(db::DataSet* d) {
        QList<int> r;
        const int c = d->fieldByName("ID")->index();
        for (int row = 0; row < d->recordCount(); ++row) r << d->valueAt(row, c).toInt();
        return r;
    }
    int chosen(const QString& table, int kind, const QString& extra = {}) const {
        return scalar(QStringLiteral("select count(*) from %1 where id_user = %2 and kind = %3 %4")
                          .arg(table)
                          .arg(CUR_USER)
                          .arg(kind)
                          .arg(extra))
            .toInt();
    }
    int juridicalIn(int classif) const {
        return scalar(QStringLiteral("select count(*) from clients where classif = %1 and client_type = 0 "
                                     "and is_juridical = 'T'")
                          .arg(classif))
            .toInt();
    }
    QWidget top;
};

} // namespace

// Every statement of every dialog prepares on the demo database, and every dialog opens without
// an error. The trade-mark dialog has, as designed, no list and no clearing statement.
TEST_F(SelectDialog, EveryStatementPreparesAndEveryDialogOpens) {
    const QStringList classes = Registry::instance().classNames("select");
    for (const QString& cls : {QStringLiteral("TPlaceSelect_DF"), QStringLiteral("TSuperPlaceSelect_DF"),
                               QStringLiteral("TClientSelect_DF"), QStringLiteral("TTradeMark_DF")}) {
        SCOPED_TRACE(cls.toStdString());
        EXPECT_TRUE(classes.contains(cls));
        auto f = make<TAbs_DF>(cls);
        int prepared = 0;
        for (db::DataSet* d : {f->trDataSet, f->pfDataSet, f->pfSelected}) {
            EXPECT_NO_THROW(d->prepare()) << d->objectName().toStdString();
            ++prepared;
        }
        for (TFIBQuery* q : f->findChildren<TFIBQuery*>()) {
            if (!q->hasSql()) continue;
            EXPECT_NO_THROW(q->prepare()) << q->objectName().toStdString();
            ++prepared;
        }
        const bool tradeMark = cls == "TTradeMark_DF";
        EXPECT_EQ(f->pfSelectedList->hasSql(), !tradeMark);
        EXPECT_EQ(f->pfClearInvalid->hasSql(), cls == "TPlaceSelect_DF");
        EXPECT_EQ(prepared, cls == "TSuperPlaceSelect_DF" || tradeMark ? 9 : 10);
        if (cls == "TPlaceSelect_DF") f->SetKind(1);
        if (auto* sp = qobject_cast<TSuperPlaceSelect_DF*>(f.get())) sp->SetSpKind(1);
        EXPECT_TRUE(guard([&] { f->Init(); }));
        EXPECT_GT(f->DBTreeView->nodeCount(), 0);
        EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
    }
}

// Marked rows move together and the marks go; the current row alone moves without marks; the
// node and its parent show the partial mark; the status bar counts; only legal entities appear.
TEST_F(SelectDialog, ClientTransfersWithMarksCountsAndImages) {
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(5);
    f->Init();
    EXPECT_EQ(f->TreeType, 1);
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(430));
    const int total = juridicalIn(430);
    ASSERT_GT(total, 100);
    ASSERT_GT(scalar("select count(*) from clients where classif = 430 and is_juridical = 'F'").toInt(), 0);
    EXPECT_EQ(f->pfDataSet->recordCount(), total);
    // Private persons never show.
    const QList<int> offered = ids(f->pfDataSet);
    EXPECT_EQ(
        scalar(QStringLiteral("select count(*) from clients where is_juridical = 'F' and id_clients in (%1)")
                   .arg([&] {
                       QStringList s;
                       for (int i : offered) s << QString::number(i);
                       return s.join(',');
                   }()))
            .toInt(),
        0);

    f->DBGridUnSelected->setMarked(0, true);
    f->DBGridUnSelected->setMarked(2, true);
    f->DBGridUnSelected->setMarked(4, true);
    QList<int> moved{offered[0], offered[2], offered[4]};
    std::sort(moved.begin(), moved.end());
    f->TransferRecDown();
    EXPECT_EQ(f->DBGridUnSelected->markedCount(), 0);
    EXPECT_EQ(chosen("SEL_CLIENT", 5), 3);
    QList<int> lower = ids(f->pfSelected);
    std::sort(lower.begin(), lower.end());
    EXPECT_EQ(lower, moved);
    EXPECT_EQ(f->pfDataSet->recordCount(), total - 3);
    const int node = f->NodeOfClassif(430);
    EXPECT_EQ(f->DBTreeView->stateIndex(node), 3);
    EXPECT_EQ(f->DBTreeView->stateIndex(f->NodeOfClassif(410)), 3);
    EXPECT_EQ(f->MXPanelText(), QStringLiteral("Выбрано 3 из %1 доступных").arg(total));

    // The current row alone, upwards.
    f->pfSelected->first();
    const int back = f->pfSelected->fieldByName("ID")->asInteger();
    f->TransferRecUp();
    EXPECT_EQ(chosen("SEL_CLIENT", 5), 2);
    EXPECT_FALSE(ids(f->pfSelected).contains(back));
    EXPECT_TRUE(ids(f->pfDataSet).contains(back));

    // Enter in the upper grid moves its current row.
    f->DBGridUnSelected->setFocus();
    f->pfDataSet->first();
    const int entered = f->pfDataSet->fieldByName("ID")->asInteger();
    QTest::keyClick(f->DBGridUnSelected, Qt::Key_Return);
    EXPECT_TRUE(ids(f->pfSelected).contains(entered));
    EXPECT_EQ(f->ItemsList().split(',').size(), 3);
    EXPECT_FALSE(f->IsEmpty());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// Clicking the state image of a partly chosen node drops all its choices, clicking again chooses
// every record under it (its branches too); the marks follow.
TEST_F(SelectDialog, WholeNodeChoiceAndDropOnPartlyChosenNode) {
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(6);
    f->Init();
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(430));
    f->TransferRecDown();
    const int n410 = f->NodeOfClassif(410), n430 = f->NodeOfClassif(430), n431 = f->NodeOfClassif(431);
    ASSERT_EQ(f->DBTreeView->stateIndex(n430), 3);

    f->DBTreeViewSelecting(n430);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), 0);
    EXPECT_EQ(f->DBTreeView->stateIndex(n430), -1);
    EXPECT_EQ(f->pfSelected->recordCount(), 0);

    f->DBTreeViewSelecting(n430);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), juridicalIn(430));
    EXPECT_EQ(f->DBTreeView->stateIndex(n430), 4);
    EXPECT_EQ(f->pfDataSet->recordCount(), 0);
    EXPECT_EQ(f->pfSelected->recordCount(), juridicalIn(430));

    // A whole branch: Moscow with its two sub-branches, partly chosen through 430: the first click
    // drops, the second chooses all.
    ASSERT_EQ(f->DBTreeView->stateIndex(n410), 3);
    f->DBTreeViewSelecting(n410);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), 0);
    EXPECT_EQ(f->DBTreeView->stateIndex(n410), -1);
    f->DBTreeViewSelecting(n410);
    const int all410 = juridicalIn(410) + juridicalIn(430) + juridicalIn(431);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), all410);
    EXPECT_EQ(f->DBTreeView->stateIndex(n410), 4);
    EXPECT_EQ(f->DBTreeView->stateIndex(n431), 4);
    f->CalcMX(true);
    EXPECT_EQ(f->DBTreeView->stateIndex(f->NodeOfClassif(400)), 3);
    f->DBTreeViewSelecting(n410);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), 0);
    EXPECT_EQ(f->DBTreeView->stateIndex(n431), -1);
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(f->ItemsList(), QString());

    // A click on a node's state image (the first image before its text) does the same.
    top.resize(800, 500);
    top.show();
    f->resize(800, 500);
    f->DBTreeView->expandToNode(n431);
    const QRect r = f->DBTreeView->visualRect(f->DBTreeView->indexOfNode(n431));
    ASSERT_FALSE(r.isEmpty());
    QTest::mouseClick(f->DBTreeView->viewport(), Qt::LeftButton, {}, QPoint(r.left() + 5, r.center().y()));
    EXPECT_EQ(chosen("SEL_CLIENT", 6), juridicalIn(431));
    EXPECT_EQ(f->DBTreeView->stateIndex(n431), 4);
    // A click on the text only makes the node current.
    const QRect again = f->DBTreeView->visualRect(f->DBTreeView->indexOfNode(n431));
    QTest::mouseClick(f->DBTreeView->viewport(), Qt::LeftButton, {},
                      QPoint(again.left() + 60, again.center().y()),
                      QApplication::doubleClickInterval() + 10);
    EXPECT_EQ(f->DBTreeView->currentKey().value_or(0), 431);
    EXPECT_EQ(chosen("SEL_CLIENT", 6), juridicalIn(431));
}

// Each grid comes back to its row after a reopen; a moved record leaves its grid on the row before
// it. CalcMX sums the leaves.
TEST_F(SelectDialog, PositionsKeptAcrossReopenAndLeafTotals) {
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(7);
    f->Init();
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(431));
    f->pfDataSet->setRecNo(5);
    const int fifth = f->pfDataSet->fieldByName("ID")->asInteger();
    f->UpdateDataSet();
    EXPECT_EQ(f->pfDataSet->fieldByName("ID")->asInteger(), fifth);
    f->ReopenDataSet();
    EXPECT_EQ(f->pfDataSet->fieldByName("ID")->asInteger(), fifth);

    f->pfDataSet->setRecNo(4);
    const int fourth = f->pfDataSet->fieldByName("ID")->asInteger();
    f->pfDataSet->setRecNo(5);
    f->TransferRecDown();
    EXPECT_EQ(f->pfDataSet->fieldByName("ID")->asInteger(), fourth);
    EXPECT_EQ(ids(f->pfSelected), QList<int>{fifth});

    f->CalcMX(false);
    const int leaves =
        scalar("select count(*) from clients c join classif k on k.id_classif = c.classif "
               "where k.id_classif_type = 1 and c.client_type = 0 and c.is_juridical = 'T' "
               "and not exists (select 1 from classif ch where ch.parent_classif = k.id_classif)")
            .toInt();
    EXPECT_EQ(f->MXCount, leaves);
    EXPECT_EQ(f->MXSelected, 1);
}

// The server sorts by the marked columns; searching opens the host's find form with or without
// the typed character.
TEST_F(SelectDialog, ServerSortAndSearchKeys) {
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(8);
    f->Init();
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(430));
    f->DBGridUnSelected->setSortKeys({{"NAME_CLIENTS", false}});
    EXPECT_TRUE(f->pfDataSet->selectSql().endsWith("order by 2 DESC"))
        << f->pfDataSet->selectSql().toStdString();
    EXPECT_EQ(f->pfDataSet->selectSql().count("order by", Qt::CaseInsensitive), 1);
    const int c = f->pfDataSet->fieldByName("NAME_CLIENTS")->index();
    EXPECT_GE(f->pfDataSet->valueAt(0, c).toString().compare(
                  f->pfDataSet->valueAt(f->pfDataSet->recordCount() - 1, c).toString()),
              0);
    f->DBGridUnSelected->setSortKeys({});
    EXPECT_TRUE(f->pfDataSet->selectSql().endsWith("order by c.name_clients"));

    QTest::keyClick(f->DBGridUnSelected, Qt::Key_F, Qt::ControlModifier);
    host->boolValues["FindEcho"] = true;
    QTest::keyClick(f->DBGridSelected, Qt::Key_K, Qt::AltModifier);
    host->boolValues["FindEcho"] = false;
    QTest::keyClick(f->DBGridSelected, Qt::Key_K, Qt::AltModifier);
    ASSERT_EQ(host->findForms.size(), 3);
    EXPECT_EQ(host->findForms[0], "DBGridUnSelected:");
    EXPECT_EQ(host->findForms[1].toLower(), "dbgridselected:k");
    EXPECT_EQ(host->findForms[2], "DBGridSelected:");
}

// The place dialog: the kind decides the access needed; an unknown kind fails and keeps the
// former one; the total of all places shows only with the right; a branch dialog shows its
// branch; choices outside the user's places are cleared.
TEST_F(SelectDialog, PlaceKindsAccessTotalsAndClearing) {
    exec("update USERS_CLIENTS set goodmove = 'N' where id_user = 1 and id_clients = 51");
    auto f = make<TPlaceSelect_DF>("TPlaceSelect_DF");
    f->SetKind(1);
    f->Init();
    EXPECT_EQ(f->TreeType, CUR_SHOPINDEX);
    const int n101 = f->NodeOfClassif(101);
    ASSERT_GE(n101, 0);
    EXPECT_EQ(f->DBTreeView->nodeText(n101), QStringLiteral("Магазин на Тверской (1 из 2)"));
    EXPECT_EQ(f->DBTreeView->stateIndex(n101), 3);

    try {
        f->SetKind(99);
        ADD_FAILURE() << "no error for an unknown kind";
    } catch (const std::exception& e) {
        EXPECT_EQ(QString::fromStdString(e.what()), QStringLiteral("Неизвестный вид выбора"));
    }
    EXPECT_EQ(f->Kind, 1);

    // Goods movement: place 51 is closed to it.
    f->SetKind(2);
    EXPECT_EQ(f->AccessGoodMove, 1);
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(101));
    EXPECT_EQ(ids(f->pfDataSet), QList<int>{50});
    // Ordering schedule: only the places that order by it.
    f->SetKind(3);
    f->DBTreeView->setCurrentKey(1);
    QList<int> both = ids(f->pfDataSet) + ids(f->pfSelected);
    std::sort(both.begin(), both.end());
    EXPECT_EQ(both, (QList<int>{50, 52, 55}));

    EXPECT_EQ(f->PlaceTotal, 16);
    EXPECT_FALSE(f->MXPanelText().contains("всего"));
    host->rights << "S_Main.SHOW_MX_COUNT";
    EXPECT_TRUE(f->MXPanelText().endsWith(QStringLiteral("(всего 16)"))) << f->MXPanelText().toStdString();

    // A place of another shop chosen earlier is cleared before the list is read.
    f->SetKind(1);
    exec("insert into SEL_PLACE (id_user, kind, place_index) values (1, 1, 57)");
    EXPECT_EQ(f->ItemsList(), "50,52");
    EXPECT_EQ(chosen("SEL_PLACE", 1, "and place_index = 57"), 0);

    f->SetIsFilial(true);
    EXPECT_EQ(f->TreeType, CUR_FILIALINDEX);
    EXPECT_EQ(f->DBTreeView->nodeCount(), 1);
    EXPECT_EQ(f->DBTreeView->nodeKey(0), 101);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// The group dialog offers "Торговый дом" over the shops; choosing it chooses the used groups of
// the kind in every shop.
TEST_F(SelectDialog, GroupDialogAllShopsNode) {
    auto f = make<TSuperPlaceSelect_DF>("TSuperPlaceSelect_DF");
    f->SetSpKind(1);
    f->SetKind(4);
    f->Init();
    const int all = f->NodeOfClassif(-1);
    ASSERT_GE(all, 0);
    EXPECT_EQ(f->DBTreeView->nodeText(all), QStringLiteral("Торговый дом"));
    EXPECT_TRUE(f->DBTreeView->isTopLevel(all));
    EXPECT_EQ(f->DBTreeView->parentNode(f->NodeOfClassif(1)), all);
    f->DBTreeViewSelecting(all);
    const int used =
        scalar("select count(*) from SUPERPLACE_HEAD where spkind = 1 and is_used = 'T'").toInt();
    EXPECT_EQ(chosen("SEL_SUPERPLACE", 4), used);
    EXPECT_EQ(f->DBTreeView->stateIndex(all), 4);
    QStringList keys = f->ItemsList().split(',');
    EXPECT_EQ(keys.size(), used);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// The layout keeps the splitters, the node and the grids; a locked row fails at once with the
// data layer's message and the other rows still move.
TEST_F(SelectDialog, LayoutAndLockConflictOnTransfer) {
    TConfigItem layout("DF");
    {
        auto f = make<TClientSelect_DF>("TClientSelect_DF");
        f->SetKind(9);
        f->Init();
        ASSERT_TRUE(f->DBTreeView->setCurrentKey(431));
        f->SaveLayout(&layout);
        EXPECT_EQ(layout.ItemByName("CurNode")->GetAsInteger(), 431);
    }
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(9);
    f->Init();
    f->RestoreLayout(&layout);
    EXPECT_EQ(f->DBTreeView->currentKey().value_or(0), 431);
    EXPECT_EQ(f->CurClassif, 431);

    // Another connection holds an uncommitted choice of the second row.
    const int first = ids(f->pfDataSet).at(0), second = ids(f->pfDataSet).at(1);
    auto other = secondConnection();
    db::Transaction tr(other.get(), db::TransactionOptions::writeNoWait());
    db::Query q(other.get(), &tr);
    q.setSql(
        QStringLiteral("insert into SEL_CLIENT (id_user, kind, client_index) values (1, 9, %1)").arg(second));
    q.exec();
    f->DBGridUnSelected->setMarked(0, true);
    f->DBGridUnSelected->setMarked(1, true);
    QElapsedTimer t;
    t.start();
    f->TransferRecDown();
    EXPECT_LT(t.elapsed(), 5000);
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_TRUE(host->errors().at(0).contains(QStringLiteral("другой сеанс")))
        << host->errors().at(0).toStdString();
    EXPECT_TRUE(ids(f->pfSelected).contains(first));
    EXPECT_FALSE(f->pfWriteTransaction->active());
    tr.rollback();
}

// The grouped count pass gives every node the counts that the per-node statement gives.
TEST_F(SelectDialog, GroupedCountsMatchThePerNodeStatement) {
    auto f = make<TClientSelect_DF>("TClientSelect_DF");
    f->SetKind(10);
    f->Init();
    ASSERT_TRUE(f->pfClassItemsCounts->hasSql());
    ASSERT_TRUE(f->DBTreeView->setCurrentKey(430));
    f->DBGridUnSelected->setMarked(1, true);
    f->DBGridUnSelected->setMarked(3, true);
    f->TransferRecDown();
    f->DBTreeViewSelecting(f->NodeOfClassif(412));
    exec("insert into SEL_CLIENT (id_user, kind, client_index) select 1, 10, id_clients from clients "
         "where classif = 103 and client_type = 0 and is_juridical = 'T' rows 1");
    auto snapshot = [&] {
        QStringList s;
        for (int n = 0; n < f->DBTreeView->nodeCount(); ++n) {
            f->ReadMXCounts(n);
            s << QStringLiteral("%1:%2/%3:%4")
                     .arg(f->DBTreeView->nodeKey(n))
                     .arg(f->NodeSelected)
                     .arg(f->NodeCount)
                     .arg(f->DBTreeView->stateIndex(n));
        }
        return s << QStringLiteral("MX %1/%2").arg(f->MXSelected).arg(f->MXCount);
    };
    f->CalcMX(true);
    const QStringList grouped = snapshot();
    f->pfClassItemsCounts->setSqlLines({});
    f->CalcMX(true);
    EXPECT_EQ(snapshot(), grouped);
    EXPECT_TRUE(grouped.contains(QStringLiteral("412:%1/%1:4").arg(juridicalIn(412))));
    EXPECT_TRUE(grouped.contains(QStringLiteral("430:2/%1:3").arg(juridicalIn(430))));
}
