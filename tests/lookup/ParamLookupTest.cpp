#include "frames/core/Registry.h"
#include "frames/lookup/LF_ActKind.h"
#include "frames/lookup/LF_ClientState.h"
#include "frames/lookup/LF_Clients.h"
#include "frames/lookup/LF_Firm.h"
#include "frames/lookup/LF_RefAdd.h"
#include "frames/lookup/LF_StoreType.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QTest>

using namespace frames;

namespace {

using test::BoundRecord;

class ParamLookup : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        savedShop_ = CUR_SHOPINDEX;
    }
    void TearDown() override {
        CUR_SHOPINDEX = savedShop_;
        DbTest::TearDown();
    }
    template <typename T = TAbs_LF> T* create(const QString& cls, QWidget* parent = nullptr) {
        return test::makeFrame<T>(cls, parent ? parent : &top);
    }
    static QVariantList column(TAbs_LF* f, const QString& name) {
        QVariantList l;
        for (f->pFIBDataSet1->first(); !f->pFIBDataSet1->eof(); f->pFIBDataSet1->next())
            l << f->pFIBDataSet1->fieldByName(name)->value();
        return l;
    }
    static QSet<int> ints(const QVariantList& l) {
        QSet<int> s;
        for (const QVariant& v : l) s << v.toInt();
        return s;
    }
    static bool lists(TAbs_LF* f, int key) { return column(f, f->lcSelect->lookupField()).contains(key); }

    QWidget top;
    int savedShop_ = 0;
};

} // namespace

TEST_F(ParamLookup, ShopListsReadTheCurrentShopUntilTheHostSetsOne) {
    CUR_SHOPINDEX = 1;
    auto* filial = create<TFilial_LF>("TFilial_LF");
    auto* place = create<TPlace_LF>("TPlace_LF");
    filial->Init();
    place->Init();
    EXPECT_EQ(ints(column(filial, "PARENT_ID")), QSet<int>{1});
    EXPECT_EQ(place->pFIBDataSet1->paramByName("shopindex")->value(), QVariant(1));

    CUR_SHOPINDEX = 2; // read again at every opening
    filial->pFIBDataSet1->close();
    filial->pFIBDataSet1->open();
    EXPECT_EQ(ints(column(filial, "PARENT_ID")), QSet<int>{2});
    filial->SetShopIndex(3); // the host's shop wins and reads the open list again
    EXPECT_EQ(ints(column(filial, "PARENT_ID")), QSet<int>{3});

    auto* cash = create<TCashNumber_LF>("TCashNumber_LF");
    cash->Init();
    EXPECT_EQ(column(cash, "ID"), (QVariantList{11, 12, 13})); // shop 2's desks of the cash kinds listed
}

TEST_F(ParamLookup, ChangingTheKindReadsTheListAgainAndDropsAFreeKeyItLacks) {
    exec("insert into SUPERPLACE_HEAD (ID, NAME, SPKIND, IS_USED) values (940001, 'Склады Севера', 3, 'T')");
    exec("insert into SUPERPLACE_HEAD (ID, NAME, SPKIND, IS_USED) values (940002, 'Группа', 5, 'T')");
    exec("insert into SUPERPLACE_HEAD (ID, NAME, SPKIND, IS_USED) values (940003, 'Закрытая', 5, 'F')");
    auto* f = create<TSuperPlace_LF>("TSuperPlace_LF");
    f->Init();
    EXPECT_TRUE(lists(f, 940001));
    f->lcSelect->setKeyValue(940001);
    f->SetKind(3);
    EXPECT_EQ(f->lcSelect->keyValue(), QVariant(940001));
    f->SetKind(5);
    EXPECT_EQ(column(f, "ID"), QVariantList{940002});
    EXPECT_TRUE(f->IsEmpty());

    BoundRecord dlg({"ID"}, {940001}); // a bound record keeps its value
    auto* bound = create<TSuperPlace_LF>("TSuperPlace_LF", dlg.dialog);
    bound->lcSelect->setDataField("ID");
    dlg.record->edit();
    bound->Init();
    bound->SetKind(5);
    EXPECT_EQ(dlg.record->fieldByName("ID")->asInteger(), 940001);
}

TEST_F(ParamLookup, KindReachesTheViewedRecordsOneRowSelectAndTheReferenceForm) {
    BoundRecord dlg({"ID"}, {21}); // a staff value of kind 11
    auto* viewed = create<TRefAdd_LF>("TFirmStaffInfoRef_LF", dlg.dialog);
    viewed->lcSelect->setDataField("ID");
    viewed->Init();
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("Принимает решение"));
    viewed->SetKind(12);
    EXPECT_TRUE(viewed->pFIBDataSet1->isEmpty());

    auto* free = create<TRefAdd_LF>("TRefAdd_LF");
    free->SetKind(5);
    free->Init();
    host->scriptRunResult(1, column(free, "ID").value(0));
    free->lcSelect->OnDlgClick(free->lcSelect);
    EXPECT_EQ(host->runs.at(0).formName, QString("ReferenceAdd"));
    EXPECT_EQ(host->runs.at(0).params.Params->Find("KIND")->Value, QVariant(5));

    auto* docType = create("TDocType_LF"); // keeps its parameter to itself
    docType->Init();
    docType->lcSelect->OnDlgClick(docType->lcSelect);
    EXPECT_EQ(host->runs.at(1).params.Params, nullptr);
}

TEST_F(ParamLookup, ActivityKindListKeepsTheBoundRecordsKind) {
    // A kind user 1 has no access to.
    exec("insert into ACTIVITY_KINDS (ID, NAME) values (960001, 'Комиссионная торговля')");
    auto* free = create("TActKind_LF");
    free->Init();
    EXPECT_FALSE(lists(free, 960001));
    EXPECT_TRUE(lists(free, 1));

    BoundRecord editing({"ID"}, {960001});
    editing.record->edit();
    auto* edited = create("TActKind_LF", editing.dialog);
    edited->Init();
    EXPECT_TRUE(lists(edited, 960001));
    EXPECT_TRUE(lists(edited, 1));

    BoundRecord inserting({"ID"}, {960001});
    inserting.record->append();
    auto* inserted = create("TActKind_LF", inserting.dialog);
    inserted->Init();
    EXPECT_EQ(inserted->pFIBDataSet1->paramByName("ID")->value(), QVariant(TActKind_LF::InsertingKey));
    EXPECT_FALSE(lists(inserted, 960001));

    BoundRecord viewing({"ACTIVITY_KIND"}, {960001});
    auto* viewed = create("TActKind_LF", viewing.dialog);
    viewed->lcSelect->setDataField("ACTIVITY_KIND");
    viewed->Init();
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("Комиссионная торговля"));
}

TEST_F(ParamLookup, CompanyFormByTheCrmRightAlwaysRunsWithReference27) {
    EXPECT_EQ(create<TFirm_LF>("TFirm_LF")->FormName, QString("FirmSimple"));
    host->rights << "CRM.LOGIN";
    auto* crm = create<TFirm_LF>("TFirm_LF");
    EXPECT_EQ(crm->FormName, QString("Firm_Out"));
    crm->Init();
    host->scriptRunResult(1, 1, 5); // the form writes a number of its own back
    crm->lcSelect->OnDlgClick(crm->lcSelect);
    crm->lcSelect->OnDlgClick(crm->lcSelect);
    EXPECT_EQ(host->runs.at(0).params.ResultInt, 27);
    EXPECT_EQ(host->runs.at(1).params.ResultInt, 27);
    EXPECT_EQ(host->runs.at(1).formName, QString("Firm_Out"));
}

TEST_F(ParamLookup, StoreTypeKindSetsCaptionAndFormAtEachOpening) {
    exec("insert into STORE_TYPE (ID, NAME, KIND) values (970007, 'Напольное хранение', 7)");
    auto* f = create<TStoreType_LF>("TStoreType_LF");
    f->Init(); // kind 4 by default
    EXPECT_EQ(f->Caption(), QString("Тип паллеты"));
    f->SetKind(1);
    EXPECT_EQ(f->Caption(), QString("Тип стеллажа"));
    EXPECT_EQ(f->FormName, QString("RackStoreType"));
    EXPECT_FALSE(f->pFIBDataSet1->isEmpty());
    f->SetKind(7); // lists its rows, keeps the last known caption and form
    EXPECT_EQ(column(f, "ID"), QVariantList{970007});
    EXPECT_EQ(f->Caption(), QString("Тип стеллажа"));
    EXPECT_EQ(f->FormName, QString("RackStoreType"));
}

TEST_F(ParamLookup, ClearEmptiesTheReferenceLookupsOnly) {
    for (const char* cls : {"TRefAddKind_LF", "TRefAdd_LF"}) { // the others inherit TRefAdd_LF's
        auto* free = create(cls);
        free->Init();
        free->lcSelect->setKeyValue(1);
        free->Clear();
        EXPECT_TRUE(free->IsEmpty()) << cls;
        BoundRecord dlg({"ID"}, {1});
        auto* bound = create(cls, dlg.dialog);
        bound->lcSelect->setDataField("ID");
        dlg.record->edit();
        bound->Init();
        bound->Clear();
        EXPECT_TRUE(dlg.record->fieldByName("ID")->isNull()) << cls;
    }
    EXPECT_THROW(create("TClients_LF")->Clear(), std::logic_error);
}

TEST_F(ParamLookup, GenderMinusOneCountsAsNoValue) {
    auto* f = create("TCardGender_LF");
    f->Init();
    EXPECT_TRUE(f->IsEmpty());
    f->lcSelect->setKeyValue(-1);
    EXPECT_TRUE(f->IsEmpty());
    f->lcSelect->setKeyValue(2);
    EXPECT_FALSE(f->IsEmpty());
    BoundRecord dlg({"GENDER"}, {-1});
    auto* viewed = create("TCardGender_LF", dlg.dialog);
    viewed->Init();
    EXPECT_TRUE(viewed->IsEmpty());
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("<Не задан>"));
}

TEST_F(ParamLookup, ClientStateListsTheClientTypesStatesAndDeleteSetsNoState) {
    exec("insert into CLIENT_STATE_KIND (ID, NAME, FORCLIENT) values (980001, 'Инвентаризация', 0)");
    exec("insert into CLIENT_STATE_KIND (ID, NAME, FORCLIENT) values (980002, 'Претензия', 1)");
    auto* f = create<TClientState_LF>("TClientState_LF");
    f->Init(); // a counterparty's states
    EXPECT_FALSE(lists(f, 980001));
    EXPECT_TRUE(lists(f, 980002));
    f->SetTypeCl(1); // a storage place's states
    EXPECT_TRUE(lists(f, 980001));
    EXPECT_FALSE(lists(f, 980002));

    f->lcSelect->setKeyValue(980001);
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(f->lcSelect->keyValue(), QVariant(980001));
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete);
    EXPECT_EQ(f->lcSelect->keyValue(), QVariant(TClientState_LF::NoState));
}

TEST_F(ParamLookup, ClientsByStatusAndTheClientFormsReferenceNumber) {
    auto statuses = [&](TAbs_LF* f) {
        QSet<int> s;
        for (const QVariant& id : column(f, "ID_CLIENTS"))
            s << scalar("select STATUS from CLIENTS where ID_CLIENTS=" + id.toString()).toInt();
        return s;
    };
    auto* f = create<TClients_LF>("TClients_LF");
    f->Init();
    EXPECT_GE(statuses(f).size(), 4); // all clients
    f->SetStatus(3);
    EXPECT_EQ(statuses(f), QSet<int>{3});
    auto* consignee = create<TClients_LF>("TConsignee_LF");
    consignee->SetStatus(5);
    consignee->Init();
    EXPECT_EQ(statuses(consignee), (QSet<int>{0, 2}));
    EXPECT_TRUE(consignee->lcSelect->dataField().isEmpty());

    host->registeredForms = {"CityForm", "ClientForm"};
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(host->runs.at(0).params.FormFound, 1);
    EXPECT_EQ(host->runs.at(0).params.ResultInt, 2);
}

TEST_F(ParamLookup, DocumentKindsOfUnlicensedModulesAreLeftOutAndAViewedKindShows) {
    exec("update or insert into DOCKIND (ID_DOCKIND, NAME_DOCKIND, SECTION_DOCKIND) values (7, 'ПКО', 4)");
    exec("update or insert into DOCKIND (ID_DOCKIND, NAME_DOCKIND, SECTION_DOCKIND) values (6, 'Заказ', 1)");
    auto* f = create<TDocKind_LF>("TDocKind_LF");
    f->Init();
    EXPECT_TRUE(lists(f, 7) && lists(f, 6));
    f->SetModules(false, true, true, true);
    EXPECT_TRUE(!lists(f, 7) && lists(f, 6));
    f->SetModules(true, false, true, true);
    EXPECT_TRUE(lists(f, 7) && !lists(f, 6));

    BoundRecord dlg({"ID_DOCKIND"}, {7}); // its one-row select names the key as the row was read
    auto* viewed = create("TDocKind_LF", dlg.dialog);
    viewed->Init();
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("ПКО"));
}
