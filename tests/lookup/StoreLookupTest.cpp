#include "frames/core/Registry.h"
#include "frames/lookup/LF_ComplectHeader.h"
#include "frames/lookup/LF_MetroCodes.h"
#include "frames/lookup/LF_ShopEquipment.h"
#include "frames/lookup/LF_StorePalletOst.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QScopedValueRollback>
#include <QToolButton>

using namespace frames;

namespace {

using test::makeFrame;

class StoreLookup : public test::DbTest {
protected:
    // The list's keys (as text), in order.
    static QStringList keys(TAbs_LF* f) {
        QStringList l;
        const int fi = f->pFIBDataSet1->fieldByName(f->lcSelect->lookupField())->index();
        for (int r = 0; r < f->pFIBDataSet1->recordCount(); ++r)
            l << f->pFIBDataSet1->valueAt(r, fi).toString();
        return l;
    }
};

} // namespace

TEST_F(StoreLookup, CustomerCodesFollowTheBranchAndDefaultToItsFirstCode) {
    QScopedValueRollback filial(CUR_FILIALINDEX, 101);
    QWidget top;
    auto* f = makeFrame<TMetroCodes_LF>("TMetroCodes_LF", &top);
    f->Init();
    // The branch's main code first, then the company's main code, then the others by code.
    EXPECT_EQ(keys(f), QStringList({"101000101", "100200300", "100200399", "101000102"}));
    EXPECT_EQ(f->lcSelect->keyValue().toString(), QString("101000101"));

    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };
    f->lcSelect->setKeyValue("100200300");
    changes = 0;
    f->SetFilial(201); // the company's code is offered in every branch: kept
    EXPECT_EQ(keys(f).first(), QString("201000301"));
    EXPECT_EQ(f->lcSelect->keyValue().toString(), QString("100200300"));
    EXPECT_EQ(changes, 0);
    f->lcSelect->setKeyValue("201000302");
    changes = 0;
    f->SetFilial(102); // not offered there: the branch's first code
    EXPECT_EQ(f->lcSelect->keyValue().toString(), QString("102000201"));
    EXPECT_EQ(changes, 1);

    // Bound: the record's code stays as it is.
    test::BoundRecord h({"CODE"}, {"999"}, db::FieldType::VarChar, 20);
    auto* bound = makeFrame<TMetroCodes_LF>("TMetroCodes_LF", h.dialog);
    bound->Init();
    bound->SetFilial(201);
    EXPECT_EQ(h.record->fieldByName("CODE")->asString(), QString("999"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(StoreLookup, ComplectsOfACardAndTheOneInForce) {
    QWidget top;
    auto* f = makeFrame<TComplectHeader_LF>("TComplectHeader_LF", &top);
    f->Init();
    EXPECT_TRUE(f->pFIBDataSet1->isEmpty()); // no card yet

    // Without a card the sets form has nothing to show.
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_TRUE(host->runs.empty());
    EXPECT_EQ(host->warnings().size(), 1);

    f->SetArticul("500-0002");
    EXPECT_EQ(keys(f), QStringList({"3", "4", "5"})); // by date
    EXPECT_TRUE(f->IsEmpty());
    // The set in force on 15.03.2024 is the one of 01.03.2024.
    f->SetNewArticul("500-0002");
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 5);
    host->today = QDate(2023, 12, 1);
    f->SetNewArticul("500-0002");
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    host->today = QDate(2023, 1, 1); // before every set: the earliest
    f->SetNewArticul("500-0002");
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 3);
    // Another card: a set of the old card is let go.
    f->SetArticul("500-0001");
    EXPECT_TRUE(f->IsEmpty());

    f->SetCardName("Салат «Оливье»");
    f->lcSelect->setKeyValue(2);
    host->scriptRunResult(1, 1);
    f->lcSelect->OnDlgClick(f->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, QString("ComplectHeader"));
    EXPECT_EQ(host->runs[0].params.KeyValue.toInt(), 2);
    EXPECT_EQ(host->runs[0].params.Params->Find("ARTICUL")->Value.toString(), QString("500-0001"));
    EXPECT_EQ(host->runs[0].params.Params->Find("CARD_NAME")->Value.toString(), QString("Салат «Оливье»"));
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 1);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(StoreLookup, EquipmentOfOneTypeWithOrWithoutShortcuts) {
    QWidget top;
    auto* f = makeFrame<TShopEquipment_LF>("TShopEquipment_LF", &top);
    f->Init();
    // The first type by name that has equipment.
    EXPECT_EQ(f->ShopEquipmentType(),
              scalar("select first 1 t.id from SHOP_EQUIPMENT_TYPE t where exists(select 1 "
                     "from SECTIONS_EQUIPMENT se where se.type = t.id) order by t.name")
                  .toInt());
    EXPECT_GT(f->pFIBDataSet1->recordCount(), 1);

    f->SetShopEquipmentType(1);
    EXPECT_EQ(keys(f), QStringList({"", "3"})); // "<Не задано>" and the shelf; its shortcut is left out
    f->SetShowShortcuts(true);
    EXPECT_EQ(keys(f), QStringList({"", "3", "6"}));
    f->lcSelect->setKeyValue(6);
    EXPECT_TRUE(f->lcSelect->displayText().endsWith("::Алкоголь::Стеллаж пристенный А (ярлык)"))
        << f->lcSelect->displayText().toStdString();
    f->SetShowShortcuts(false);
    EXPECT_TRUE(f->IsEmpty());

    // The kind settles the type while no type was named; a named type stays.
    auto* byKind = makeFrame<TShopEquipment_LF>("TShopEquipment_LF", &top);
    byKind->SetKind(2);
    byKind->Init();
    EXPECT_EQ(byKind->ShopEquipmentType(), 4); // "Витрина холодильная" before "Ларь морозильный"
    EXPECT_EQ(keys(byKind).size(), 5);

    // The dialog button chooses another type.
    f->lcSelect->setKeyValue(3);
    host->scriptRunResult(1, 4);
    f->lcSelect->OnDlgClick(f->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, QString("ShopEquipmentTypeForm"));
    EXPECT_EQ(host->runs[0].params.KeyValue.toInt(), 1);
    EXPECT_EQ(f->ShopEquipmentType(), 4);
    EXPECT_EQ(keys(f), QStringList({"", "1", "2", "5", "8"}));
    EXPECT_TRUE(f->IsEmpty());

    // Equipment added meanwhile shows when the list drops down.
    exec("insert into SECTIONS_EQUIPMENT (ID, NAME, SECTION, TYPE, KIND) values (50, 'Витрина новая', 1, 4, "
         "2)");
    host->readTransaction->commit();
    host->readTransaction->start();
    bool show = true;
    f->lcSelectDropDown(f->lcSelect, show);
    EXPECT_TRUE(keys(f).contains("50"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(StoreLookup, PalletsOfAPlaceAndZoneKindWithTheirLocation) {
    QWidget top;
    auto* f = makeFrame<TStorePallet_LF>("TStorePallet_LF", &top);
    f->Init();
    EXPECT_FALSE(f->pFIBDataSet1->isEmpty()); // the default place has pallets in storage

    f->SetPlace(55);
    EXPECT_EQ(keys(f), QStringList({"1", "2", "3"}));
    EXPECT_TRUE(f->lbStore->text().isEmpty());
    f->lcSelect->setKeyValue(2);
    EXPECT_EQ(f->lbStore->text(), QString("Место: Ячейка A-01-2"));
    EXPECT_EQ(f->StoreId().toInt(), 3);
    f->SetZoneKind(1); // receiving: other pallets, the chosen one is let go
    EXPECT_EQ(keys(f), QStringList({"4", "5"}));
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_TRUE(f->lbStore->text().isEmpty());

    // A viewed record shows its pallet and location through the one-row select.
    test::BoundRecord h({"ID"}, {1});
    auto* bound = makeFrame<TStorePallet_LF>("TStorePallet_LF", h.dialog);
    bound->lcSelect->setDataField("ID");
    bound->SetPlace(55);
    bound->Init();
    EXPECT_EQ(bound->pFIBDataSet1->recordCount(), 1);
    EXPECT_EQ(bound->lcSelect->displayText(), QString("П-000101"));
    EXPECT_EQ(bound->lbStore->text(), QString("Место: Ячейка A-01-1"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(StoreLookup, StockPalletWithGoodsDateAndStockReport) {
    QWidget top;
    auto* f = makeFrame<TStorePalletOst_LF>("TStorePalletOst_LF", &top);
    EXPECT_TRUE(f->siOstatokByStore->isHidden()); // the host has no stock report
    f->SetPlace(55);
    f->SetZoneKind(1);
    f->Init();
    EXPECT_FALSE(f->GoodDate().isValid());
    EXPECT_TRUE(f->VerifyGoodDate());

    // The location's first pallet by name, and the goods' date.
    f->SetStoreGD(6, QDate(2024, 4, 1));
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 4);
    EXPECT_EQ(f->GoodDate(), QDate(2024, 4, 1));
    EXPECT_EQ(f->lbStore->text(), QString("Место: Ворота приёмки № 1"));
    EXPECT_TRUE(f->VerifyGoodDate());
    // A date already past (today is 15.03.2024) is told beside the pallet and warned about.
    f->SetGoodDate(QDate(2024, 3, 1));
    EXPECT_TRUE(f->lbStore->text().endsWith("срок годности истёк")) << f->lbStore->text().toStdString();
    EXPECT_FALSE(f->VerifyGoodDate());
    ASSERT_EQ(host->warnings().size(), 1);
    EXPECT_EQ(host->warnings()[0], QString("Срок годности истёк: 01.03.2024."));
    // A location without a pallet chooses none.
    f->SetStoreGD(2, QDate());
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_FALSE(f->GoodDate().isValid());

    // With the host's stock report the button opens it for the pallet's location.
    host->registeredForms << "OstatokByStore";
    auto* g = makeFrame<TStorePalletOst_LF>("TStorePalletOst_LF", &top);
    EXPECT_FALSE(g->siOstatokByStore->isHidden());
    g->SetPlace(55);
    g->Init();
    g->SetStoreGD(3, QDate(2025, 1, 31));
    g->siOstatokByStore->click();
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, QString("OstatokByStore"));
    EXPECT_EQ(host->runs[0].params.KeyValue.toInt(), 3);
    EXPECT_EQ(host->runs[0].params.Params->Find("ID_PALLET")->Value.toInt(), 2);
    EXPECT_EQ(host->runs[0].params.Params->Find("GOOD_DATE")->Value.toDate(), QDate(2025, 1, 31));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}
