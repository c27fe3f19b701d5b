#include "frames/core/Registry.h"
#include "frames/lookup/LF_FromName.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QCheckBox>

using namespace frames;

namespace {

const QString C1 =
    " and exists(select 1 from clients where id_clients=link_to_client and client_type=0 and status=3)";

// Every fall-back level has its own answer: the current branch 910011 trades as entity A
// (910001), branch 910012 as B (910002), storage place 910005 issues in the name of C (910003);
// D (910004) is an ordinary client.
class FromName : public test::DbTest {
protected:
    enum { A = 910001, B = 910002, C = 910003, D = 910004, Place = 910005, Current = 910011, Other = 910012 };

    void SetUp() override {
        DbTest::SetUp();
        saved_ = {CUR_USER, CUR_FILIALINDEX};
        for (const char* v :
             {"910001, 'ООО Альфа', 0, 3", "910002, 'ООО Бета', 0, 3", "910003, 'ИП Ведерников', 0, 3",
              "910004, 'ЗАО Поставщик', 0, 0", "910005, 'Склад', 1, 0"})
            exec(QString("insert into CLIENTS (ID_CLIENTS, NAME_CLIENTS, CLIENT_TYPE, STATUS) values (%1)")
                     .arg(v));
        for (const char* v : {"910011, -1, 'Садовая', 910001", "910012, -1, 'Заречная', 910002"})
            exec(
                QString("insert into TH_CLASSIF (ID_TH_CLASSIF, PARENT_ID, NAME, LINK_TO_CLIENT) values (%1)")
                    .arg(v));
        exec("insert into PLACE_FROM_NAME (PLACE, CLIENT) values (910005, 910003)");
        CUR_USER = 1;
        CUR_FILIALINDEX = Current;
    }
    void TearDown() override {
        CUR_USER = saved_.first;
        CUR_FILIALINDEX = saved_.second;
        DbTest::TearDown();
    }
    std::unique_ptr<TFromName_LF> create() {
        std::unique_ptr<TFromName_LF> f(
            qobject_cast<TFromName_LF*>(Registry::instance().create("TFromName_LF", &top)));
        f->Init();
        return f;
    }
    // The default found and the statements sent for it (from the trace log).
    int defaultOf(TFromName_LF& f, QStringList* sent = nullptr) {
        host->trace.clear();
        f.GetDefValue();
        if (sent) {
            sent->clear();
            for (const QString& line : host->trace)
                if (line.startsWith("1: FromName default: ")) *sent << line.mid(21);
        }
        return f.IsEmpty() ? -1 : f.lcSelect->keyValue().toInt();
    }
    void saveChoice(int client) {
        exec(QString("insert into TH_CLASSIF_CLIENT values (%1, 1, %2)").arg(Current).arg(client));
    }

    QWidget top;
    std::pair<int, int> saved_;
};

} // namespace

TEST_F(FromName, FallBackLevelsInTurn) {
    host->boolValues["FromNameLocal"] = true;
    saveChoice(B);
    auto f = create();
    EXPECT_EQ(f->DefClient, -1);
    f->Filial = Other;
    f->Place = Place;
    QStringList sent;

    f->DefClient = C; // the host's client: no statement at all
    EXPECT_EQ(defaultOf(*f, &sent), C);
    EXPECT_TRUE(sent.isEmpty());
    EXPECT_EQ(f->lcSelect->displayText(), QString("ИП Ведерников"));

    f->DefClient = -1; // the user's saved choice for the current branch
    EXPECT_EQ(defaultOf(*f, &sent), B);
    EXPECT_EQ(sent,
              QStringList{QString("select LINK_TO_CLIENT from TH_CLASSIF_CLIENT where ID_TH_CLASSIF=910011 "
                                  "and ID_USER=1") +
                          C1});

    exec("delete from TH_CLASSIF_CLIENT"); // the storage place's entity
    EXPECT_EQ(defaultOf(*f, &sent), C);
    EXPECT_EQ(sent.value(1),
              QString("select CLIENT from PLACE_FROM_NAME where PLACE=910005 and exists(select 1 from "
                      "clients where id_clients=client and client_type=0 and status=3)"));

    f->Place = -1; // the given branch's entity
    EXPECT_EQ(defaultOf(*f, &sent), B);
    EXPECT_EQ(sent.value(1), "select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=910012" + C1);

    f->Place = Place; // a place without a branch is not asked: the current branch's entity
    f->Filial = -1;
    EXPECT_EQ(defaultOf(*f, &sent), A);
    EXPECT_EQ(sent.size(), 2);
    EXPECT_EQ(sent.value(1), "select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=910011" + C1);

    // Linked clients that lost the system status give no default at any level.
    saveChoice(B);
    f->Filial = Other;
    exec("update CLIENTS set STATUS = 4 where ID_CLIENTS in (910001, 910002, 910003)");
    EXPECT_EQ(defaultOf(*f, &sent), -1);
    EXPECT_EQ(sent.size(), 4);
    EXPECT_TRUE(f->lcSelect->displayText().isEmpty());
}

TEST_F(FromName, SaveKeepsTheChoiceOnlyWithTheLocalSwitch) {
    auto rows = [&] {
        return scalar("select count(*) from TH_CLASSIF_CLIENT where ID_TH_CLASSIF=910011").toInt();
    };
    auto off = create(); // switch off: no box, nothing saved, no saved choice asked for
    off->FormShow();
    EXPECT_TRUE(off->chbSave->isHidden());
    off->lcSelect->setKeyValue(int(C));
    off->chbSave->setChecked(true);
    off->Save();
    EXPECT_EQ(rows(), 0);
    QStringList sent;
    EXPECT_EQ(defaultOf(*off, &sent), A);
    EXPECT_EQ(sent.size(), 1);

    host->boolValues["FromNameLocal"] = true;
    auto on = create();
    top.resize(451, 60);
    top.show();
    QApplication::processEvents();
    const int fullWidth = on->lcSelect->width();
    on->FormShow();
    QApplication::processEvents();
    EXPECT_TRUE(on->chbSave->isVisible());
    EXPECT_LT(on->lcSelect->width(), fullWidth);
    on->lcSelect->setKeyValue(int(C));
    on->Save(); // unchecked
    EXPECT_EQ(rows(), 0);
    on->chbSave->setChecked(true);
    on->Save();
    EXPECT_EQ(defaultOf(*create()), C); // found by the saved-choice level
    on->lcSelect->setKeyValue(int(B));
    on->Save();
    EXPECT_EQ(rows(), 1);
    EXPECT_EQ(defaultOf(*create()), B);
    on->lcSelect->clear();
    exec("delete from TH_CLASSIF_CLIENT");
    on->Save(); // nothing chosen
    EXPECT_EQ(rows(), 0);
}

TEST_F(FromName, AClientWithoutTheSystemStatusIsRefused) {
    auto f = create();
    f->lcSelect->setKeyValue(int(A));
    host->scriptRunResult(1, int(D));
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(host->runs.at(0).formName, QString("ClientForm"));
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), A);
    EXPECT_EQ(host->warnings(), QStringList{"Необходимо указывать клиента со статусом Системный"});

    f->lcSelect->clear(); // refused on an empty combo: stays empty
    host->scriptRunResult(1, int(D));
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(host->warnings().size(), 2);

    host->scriptRunResult(1, int(B)); // a system client is taken; a cancelled form warns of nothing
    f->lcSelect->OnDlgClick(f->lcSelect);
    host->scriptRunResult(2);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), B);
    EXPECT_EQ(host->warnings().size(), 2);
}
