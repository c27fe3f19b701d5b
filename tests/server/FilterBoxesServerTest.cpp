// The filter boxes that keep their choice on the server, used by two users at once on the private
// Firebird server of the test run: each keeps his own summary rows and permission matrix, and a
// matrix row that another session holds fails the store at once, says so and loses nothing.
#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/filter/FF_CardPermission.h"
#include "frames/filter/FF_Classif.h"
#include "frames/filter/FF_Client.h"
#include "frames/select/DF_Classif.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "host/HostImpl.h"
#include "platform/db/MemTable.h"
#include "platform/db/Query.h"
#include "platform/widgets/DBGrid.h"
#include "tests/server/HostSessions.h"
#include "tests/support/ServerFixture.h"
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

using namespace frames;
using namespace frames::test;
using workbench::HostImpl;

namespace {

class FilterBoxesOnServer : public ServerTest {
protected:
    void TearDown() override {
        tops_.clear();
        setHost(nullptr);
        hosts_.clear();
        ServerTest::TearDown();
    }
    struct Session {
        HostImpl* host;
        int user;
        void act() const {
            setHost(host);
            CUR_USER = user;
        }
    };
    Session session(const QString& login) { return {hosts_.open(login, connectString()), CUR_USER}; }
    template <typename T> T* frame(const Session& s, const QString& cls) {
        s.act();
        tops_.push_back(std::make_unique<QWidget>());
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, tops_.back().get()));
        EXPECT_NE(f, nullptr);
        return f;
    }
    QList<int> ints(const QString& sql) const {
        auto d = connectAs(QStringLiteral("SYSDBA"));
        db::Transaction tr(d.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(d.get(), &tr);
        q.setSql(sql);
        q.open();
        QList<int> out;
        while (q.next())
            for (int i = 0; i < q.columnCount(); ++i) out << q.value(i).toInt();
        return out;
    }
    static int cell(TCardPermission_FF* f, int pattern, const QString& field) {
        db::MemTable* m = f->mdDataSet;
        for (int r = 0; r < m->recordCount(); ++r)
            if (m->valueAt(r, m->fieldByName("ID")->index()).toInt() == pattern) {
                const QVariant v = m->valueAt(r, m->fieldByName(field)->index());
                return v.isNull() ? 0 : v.toInt();
            }
        return -1;
    }
    static void toggle(TCardPermission_FF* f, int pattern, const QString& field) {
        db::MemTable* m = f->mdDataSet;
        for (int r = 0; r < m->recordCount(); ++r)
            if (m->valueAt(r, m->fieldByName("ID")->index()).toInt() == pattern)
                f->DBGrid->setCurrentIndex(f->DBGrid->model()->index(r, f->DBGrid->columnOfField(field)));
        f->DBGridKeyDown(32);
    }
    static QString told(HostImpl* h) { return h->loggedMessages().join('\n'); }

    std::vector<std::unique_ptr<QWidget>> tops_;
    HostSessions<> hosts_;
};

} // namespace

TEST_F(FilterBoxesOnServer, TwoUsersKeepTheirOwnSummaryRowsAndMatrices) {
    if (!fbserver::available()) GTEST_SKIP() << "no server in this run";
    const Session ivanov = session(QStringLiteral("IVANOV"));
    const Session petrova = session(QStringLiteral("PETROVA"));
    ASSERT_NE(ivanov.user, petrova.user);

    // Both choose clients in the client box of kind 5 and close it; Ivanov also saves an
    // (empty) classifier box of kind 5.
    auto chooseClients = [&](const Session& s, QList<int> rows) {
        auto* f = frame<TClient_FF>(s, "TClient_FF");
        f->SetKind(5);
        f->Init();
        f->RestoreLayout(nullptr);
        EXPECT_FALSE(f->cbSet->isChecked());
        EXPECT_TRUE(f->ClientSelect_DF->DBTreeView->setCurrentKey(430));
        for (int r : rows) f->ClientSelect_DF->DBGridUnSelected->setMarked(r, true);
        f->ClientSelect_DF->TransferRecDown();
        TConfigItem node("TClient_FF");
        f->SaveLayout(&node);
    };
    chooseClients(ivanov, {0, 2});
    chooseClients(petrova, {1, 2, 3});
    ivanov.act();
    auto* classif = frame<TClassif_FF>(ivanov, "TClassif_FF");
    classif->SetKind(5);
    classif->Init();
    TConfigItem node("TClassif_FF");
    classif->SaveLayout(&node);

    EXPECT_EQ(ints("select id_user, itemcount from sel_client_filter where kind=5 order by id_user"),
              (QList<int>{ivanov.user, 2, petrova.user, 3}));
    EXPECT_EQ(ints("select id_user from sel_classif_filter where kind=5"), (QList<int>{ivanov.user}));

    // Petrova's boxes of kind 5 come up: the client one on, the classifier one off.
    auto* herClassif = frame<TClassif_FF>(petrova, "TClassif_FF");
    herClassif->SetKind(5);
    herClassif->Init();
    node.ItemByName("cbSet.Checked")->SetAsBoolean(true);
    herClassif->RestoreLayout(&node);
    EXPECT_FALSE(herClassif->cbSet->isChecked());
    auto* herClients = frame<TClient_FF>(petrova, "TClient_FF");
    herClients->SetKind(5);
    herClients->Init();
    herClients->RestoreLayout(nullptr);
    EXPECT_TRUE(herClients->cbSet->isChecked());
    EXPECT_EQ(herClients->ClientSelect_DF->ItemsList().split(',').size(), 3);

    // Matrices: each user's toggles go to his own rows.
    auto* mine = frame<TCardPermission_FF>(ivanov, "TCardPermission_FF");
    auto* hers = frame<TCardPermission_FF>(petrova, "TCardPermission_FF");
    ivanov.act();
    EXPECT_EQ(cell(mine, 3, "P_9"), 1); // Ivanov's demo matrix
    toggle(mine, 1, "P_7");
    EXPECT_TRUE(mine->ApplyChange());
    petrova.act();
    EXPECT_EQ(cell(hers, 3, "P_9"), 0);
    toggle(hers, 2, "P_8");
    EXPECT_TRUE(hers->ApplyChange());
    EXPECT_EQ(ints(QStringLiteral("select superplace, permission_pattern from CARDPERMISSION_FILTER where "
                                  "id_user=%1 and is_set=1 order by 1, 2")
                       .arg(ivanov.user)),
              (QList<int>{7, 1, 9, 3}));
    EXPECT_EQ(ints(QStringLiteral("select superplace, permission_pattern from CARDPERMISSION_FILTER where "
                                  "id_user=%1 and is_set=1 order by 1, 2")
                       .arg(petrova.user)),
              (QList<int>{8, 2}));
    EXPECT_TRUE(told(ivanov.host).isEmpty()) << told(ivanov.host).toStdString();
    EXPECT_TRUE(told(petrova.host).isEmpty()) << told(petrova.host).toStdString();
}

TEST_F(FilterBoxesOnServer, ALockedMatrixRowFailsTheStoreAtOnceAndKeepsTheToggles) {
    if (!fbserver::available()) GTEST_SKIP() << "no server in this run";
    const Session ivanov = session(QStringLiteral("IVANOV"));
    auto* f = frame<TCardPermission_FF>(ivanov, "TCardPermission_FF");
    ivanov.act();
    toggle(f, 1, "P_7");
    toggle(f, 3, "P_9"); // his demo cell, set: now cleared
    toggle(f, 6, "P_8");
    ASSERT_EQ(cell(f, 1, "P_7"), 1);
    ASSERT_EQ(cell(f, 3, "P_9"), 0);

    // Another session of his holds one of his matrix rows.
    auto other = connectAs(QStringLiteral("IVANOV"));
    db::Transaction holder(other.get(), db::TransactionOptions::writeNoWait());
    holder.start();
    db::Query hold(other.get(), &holder);
    hold.setSql(
        QStringLiteral("update CARDPERMISSION_FILTER set is_set = 1 where id_user = %1 and superplace = 9 "
                       "and permission_pattern = 3")
            .arg(ivanov.user));
    hold.exec();

    QElapsedTimer t;
    t.start();
    EXPECT_FALSE(f->ApplyChange());
    EXPECT_LT(t.elapsed(), 5000);
    const QString said = told(ivanov.host);
    EXPECT_TRUE(said.contains(QStringLiteral("Не удалось сохранить фильтр по разрешениям карточек")))
        << said.toStdString();
    EXPECT_TRUE(said.contains(QStringLiteral("друг"))) << said.toStdString(); // another user or session
    // Nothing was stored, not even the cells before the locked one; the grid keeps the toggles.
    EXPECT_EQ(
        ints(QStringLiteral("select count(*) from CARDPERMISSION_FILTER where id_user=%1").arg(ivanov.user)),
        (QList<int>{1}));
    EXPECT_EQ(cell(f, 1, "P_7"), 1);
    EXPECT_EQ(cell(f, 3, "P_9"), 0);
    EXPECT_EQ(cell(f, 6, "P_8"), 1);
    EXPECT_TRUE(f->Modified());

    // Once the other session is done, storing again succeeds with what the grid shows.
    holder.rollback();
    EXPECT_TRUE(f->ApplyChange());
    EXPECT_EQ(ints(QStringLiteral("select superplace, permission_pattern from CARDPERMISSION_FILTER where "
                                  "id_user=%1 and is_set=1 order by 1, 2")
                       .arg(ivanov.user)),
              (QList<int>{7, 1, 8, 6}));
}
