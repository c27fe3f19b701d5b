// The demo schema of the trade structure (clients, shop tree, classifiers, access, documents,
// stores, CRM, veterinary registry, rounding) against the statements the lookup frames hold.
#include "platform/db/Database.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "tests/lookup/Descriptions.h"
#include "tests/support/DbFixture.h"
#include <QDate>
#include <QRegularExpression>
#include <stdexcept>

using namespace frames;

namespace {

using Rows = QList<QVariantList>;
using Values = QMap<QString, QVariant>; // parameter name in lower case -> value

// The rows of a select; every parameter must have a value. names receives the column names.
Rows select(db::Database* database, const QString& sql, const Values& values = {},
            QStringList* names = nullptr) {
    db::Transaction tr(database, db::TransactionOptions::read());
    tr.start();
    db::Query q(database, &tr);
    q.setSql(sql);
    for (int i = 0; i < q.params().count(); ++i) {
        db::Param* p = q.params().at(i);
        const QString key = p->name().toLower();
        if (!values.contains(key)) throw std::runtime_error(("no value for parameter " + key).toStdString());
        p->setValue(values.value(key));
    }
    q.open();
    for (int c = 0; names && c < q.columnCount(); ++c) *names << q.columnName(c);
    Rows rows;
    while (q.next()) {
        QVariantList row;
        for (int c = 0; c < q.columnCount(); ++c) row << q.value(c);
        rows << row;
    }
    q.close();
    tr.commit();
    return rows;
}

QStringList column(const Rows& rows, int c = 0) {
    QStringList out;
    for (const QVariantList& r : rows) out << r.value(c).toString();
    return out;
}

using test::LookupDescription;

QString lookupSelect(const QString& cls) {
    for (const LookupDescription& l : test::lookupDescriptions())
        if (l.cls == cls) return l.select.value("pFIBDataSet1");
    return {};
}

// The context a host gives these frames: the administrator's shop 1 and branch 101, the first
// kinds, types and documents that have demo rows. Characteristics of contact persons have kinds
// of their own.
Values frameContext(const QString& cls = {}) {
    Values v{{"articul", "500-0001"},
             {"product", "3e9d4f51-8062-4d43-a134-000000000501"},
             {"dt", QDate::currentDate()}};
    const QString ints = "id_classif_type=0 set_for=0 classif_type1=1001 id_classif=4 status=15 shopindex=1 "
                         "filial=101 id=-2 client_index=1 likpaymodule=0 likorder=0 likproduction=0 "
                         "likcorrectgoodmove=0 doctype=1 dockind=1 basedockind=1 kind=1 placeindex=55 "
                         "zone_kind=2 firm=1 hrc_filial=1 producttype=1 opertype=1 vtovar=-1 vcountry=-1 "
                         "activity_kind=1 equipment_type=1 show_shortcuts=1 superfilial=1";
    for (const QString& kv : ints.split(' ')) v.insert(kv.section('=', 0, 0), kv.section('=', 1).toInt());
    if (cls == "TFirmStaffInfoRef_LF") v["kind"] = 11;
    return v;
}

// Statements that read the tables of this part of the schema.
bool readsStructureTables(const QString& sql) {
    static const QRegularExpression re(
        "\\b(from|join)\\s+(accounts|activity_kinds|bank|cardcompl_header|cash_list|classif|classif_view|"
        "classif_type|classif_type_view|clients|client_accounts|client_addchar|crm_manager|customer|dockind|"
        "doctype|doctype_link_kind|ext_doctype|operations|template|firm|firm_staff|tyref_add_firm_data|"
        "tyref_add_data|tyref_add_kind|hrc_filial|hrc_filial_department|mercury_\\w+|metro_customer_code|"
        "place_view_prg|th_classif|shops_view_prg|sections|sections_equipment|store_pallet|store_type|"
        "suf_cp_center|supercash_head|superfilial_head|superplace_head|superfilial_data|pricekind_view|"
        "round_list|rzscale)\\b",
        QRegularExpression::CaseInsensitiveOption);
    QString s = sql;
    s.remove(QRegularExpression("/\\*.*?\\*/", QRegularExpression::DotMatchesEverythingOption));
    return re.match(s).hasMatch();
}

class StructureSchema : public test::DbTest {
protected:
    db::Database* db() const { return host->RvDatabase(); }

    // An embedded attachment under another login: the access tables then answer for that user.
    std::unique_ptr<db::Database> connectAs(const QString& login) const {
        auto d = std::make_unique<db::Database>();
        db::Database::Options o;
        o.user = login;
        d->open(databasePath(), o);
        return d;
    }
};

} // namespace

TEST_F(StructureSchema, EveryLookupListShowsRowsInTheContextItsFrameGets) {
    const QList<LookupDescription> all = test::lookupDescriptions();
    QStringList failures;
    int checked = 0;
    for (const LookupDescription& l : all)
        for (auto it = l.select.begin(); it != l.select.end(); ++it) {
            if (!readsStructureTables(it.value())) continue;
            ++checked;
            try {
                if (select(db(), it.value(), frameContext(l.cls)).isEmpty())
                    failures << l.cls + "." + it.key() + ": no rows";
            } catch (const std::exception& e) {
                failures << l.cls + "." + it.key() + ": " + QString::fromUtf8(e.what());
            }
        }
    EXPECT_GE(checked, 45);
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();

    // A viewed record holding the list's first key finds its row through the one-row select.
    failures.clear();
    for (const LookupDescription& l : all) {
        const QString list = l.select.value("pFIBDataSet1"), refresh = l.refresh.value("pFIBDataSet1");
        if (refresh.isEmpty() || l.keyField.isEmpty() || !readsStructureTables(list)) continue;
        try {
            Values v = frameContext(l.cls);
            QStringList names;
            const QVariant key =
                select(db(), list, v, &names).value(0).value(names.indexOf(l.keyField.toUpper()));
            v[l.keyField.toLower()] = key;
            v["old_" + l.keyField.toLower()] = key;
            if (select(db(), refresh, v).isEmpty()) failures << l.cls + ": no row for key " + key.toString();
        } catch (const std::exception& e) {
            failures << l.cls + ": " + QString::fromUtf8(e.what());
        }
    }
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();

    // Size scales narrowed to a kind of goods and a country, and to a pair that has none.
    const QString scales = lookupSelect("TRzScale_LF");
    Values c = frameContext();
    c["vtovar"] = 1; // shoes
    c["vcountry"] = 5;
    EXPECT_EQ(column(select(db(), scales, c), 1), QStringList{"Размеры обуви (Европа)"});
    c["vcountry"] = 4;
    EXPECT_TRUE(select(db(), scales, c).isEmpty());
}

TEST_F(StructureSchema, AccessTablesShowTheAdministratorMoreThanAnotherUser) {
    // The users table and tyuser come without grants to other logins; a real installation gives
    // them to everybody, as the structure scripts do for their own objects.
    exec("grant select on USERS to public");
    exec("grant execute on function TYUSER to public");
    auto ivanov = connectAs("IVANOV");
    EXPECT_EQ(select(ivanov.get(), "select tyuser(current_user) from rdb$database").value(0).value(0).toInt(),
              2);

    const Values context = frameContext();
    auto both = [&](const QString& sql, int column_ = 0) {
        return std::make_pair(column(select(db(), sql, context), column_),
                              column(select(ivanov.get(), sql, context), column_));
    };

    // Branches of shop 1: the distribution centre is closed to Ivanov.
    auto [adminFilials, ivanovFilials] = both(lookupSelect("TFilial_LF"));
    EXPECT_EQ(adminFilials, (QStringList{"103", "102", "101", "104"}));
    EXPECT_EQ(ivanovFilials, (QStringList{"103", "102", "101"}));

    // Storage places of shop 1: no access to the centre's places, whatever their branch allows.
    auto [adminPlaces, ivanovPlaces] = both(lookupSelect("TPlace_LF"));
    EXPECT_EQ(adminPlaces.size(), 7);
    EXPECT_EQ(ivanovPlaces.size(), 5);
    EXPECT_FALSE(ivanovPlaces.contains("55"));
    const Rows perPlace = select(ivanov.get(), "select access, access_goodmove from place_view_prg(101) "
                                               "where id_clients = 50");
    ASSERT_EQ(perPlace.size(), 1);
    EXPECT_EQ(perPlace[0], (QVariantList{"V", "V"}));

    auto [adminShops, ivanovShops] = both("select name from SHOPS_VIEW_PRG order by name collate PXW_CYRL");
    EXPECT_EQ(adminShops, (QStringList{"интернет-магазин", "Москва и область", "Санкт-Петербург", "Урал"}));
    EXPECT_EQ(ivanovShops, QStringList{"Москва и область"});

    // Customer codes of branch 101: Ivanov may not choose the non-main codes.
    // (The administrator's full list and its order are checked through the frame in the lookup tests.)
    EXPECT_EQ(both(lookupSelect("TMetroCodes_LF")).second, (QStringList{"101000101", "100200300"}));

    auto [adminKinds, ivanovKinds] = both(lookupSelect("TActKind_LF"), 1);
    EXPECT_EQ(adminKinds.size(), 6);
    EXPECT_EQ(ivanovKinds, (QStringList{"Общественное питание", "Розничная торговля"}));

    auto [adminPrices, ivanovPrices] = both(lookupSelect("TPriceKind_LF"), 1);
    EXPECT_TRUE(adminPrices.contains("Закупочные цены"));
    EXPECT_FALSE(ivanovPrices.contains("Закупочные цены"));
    EXPECT_FALSE(adminPrices.contains("Групповой расчётный (Москва)")); // calculated lists stay out
    EXPECT_FALSE(adminPrices.contains("Старый розничный прайс"));       // switched off
}

TEST_F(StructureSchema, RoundingRulesListAndRound) {
    const Rows all = select(db(), "select id, name from round_list(0, null)");
    const Rows standard = select(db(), "select id from round_list(1, null)");
    const Rows special = select(db(), "select id from round_list(2, null)");
    EXPECT_EQ(standard.size(), 19);
    EXPECT_EQ(all.size(), standard.size() + special.size());
    for (const QVariantList& r : special) EXPECT_GE(r[0].toInt(), 10);

    // Sorted by name under the Cyrillic collation: Ё with Е, lower case with upper case.
    const QStringList names = column(all, 1);
    EXPECT_LT(names.indexOf("До целых"), names.indexOf("Ёлочная цена: кратно 50 рублям"));
    EXPECT_LT(names.indexOf("Ёлочная цена: кратно 50 рублям"), names.indexOf("психологическая цена на ,90"));
    EXPECT_LT(names.indexOf("психологическая цена на ,90"), names.indexOf("Цена на ,99 (вверх)"));

    EXPECT_EQ(column(select(db(), "select name from round_list(-1, -2)")), QStringList{"До сотен"});
    EXPECT_EQ(column(select(db(), "select name from round_list(-1, 15)")), QStringList{"До 5 рублей вниз"});
    EXPECT_TRUE(select(db(), "select id from round_list(-1, 99)").isEmpty());
    EXPECT_TRUE(select(db(), "select id from round_list(-1, -10)").isEmpty());

    // A rule added by the reference form gets a special key and shows among the special ones.
    exec("insert into ROUND_ALG (NAME, STEP, DIRECTION) values ('До 20 копеек', 0.2, 0)");
    const Rows added = select(db(), "select id from round_list(2, null) where name = 'До 20 копеек'");
    ASSERT_EQ(added.size(), 1);
    EXPECT_GT(added[0][0].toInt(), 17);
    EXPECT_THROW(exec("insert into ROUND_ALG (ID, NAME, STEP) values (5, 'Не специальное', 1)"), db::Error);

    const std::pair<const char*, double> rounded[] = {
        {"123.45, 13", 123.99}, {"123.99, 13", 123.99}, {"1234.5, 14", 1239},  {"123.45, 15", 120},
        {"123.45, 11", 123.5},  {"123.45, -2", 100},    {"123.456, 2", 123.46}};
    for (auto [args, expected] : rounded)
        EXPECT_DOUBLE_EQ(scalar(QString("select round_value(%1) from rdb$database").arg(args)).toDouble(),
                         expected)
            << args;
    EXPECT_TRUE(scalar("select round_value(123.45, 99) from rdb$database").isNull());
}

TEST_F(StructureSchema, ShopTreeUsersAndLegalEntitiesFitTogether) {
    // Every user's branch is a child of his shop, and the shop is a top node.
    EXPECT_EQ(
        scalar(
            "select count(*) from USERS u where not exists(select 1 from TH_CLASSIF f "
            "join TH_CLASSIF s on s.ID_TH_CLASSIF = f.PARENT_ID "
            "where f.ID_TH_CLASSIF = u.FILIALINDEX and s.ID_TH_CLASSIF = u.SHOPINDEX and s.PARENT_ID = -1)")
            .toInt(),
        0);
    // Every storage place belongs to one branch; counterparties to none.
    EXPECT_EQ(scalar("select count(*) from CLIENTS c where c.CLIENT_TYPE = 1 and not exists("
                     "select 1 from TH_CLASSBYCLIENT b join TH_CLASSIF f on f.ID_TH_CLASSIF = b.TH_CLASSIF "
                     "where b.CLIENT_INDEX = c.ID_CLIENTS and f.PARENT_ID > -1)")
                  .toInt(),
              0);
    EXPECT_EQ(
        scalar("select count(*) from TH_CLASSBYCLIENT b join CLIENTS c on c.ID_CLIENTS = b.CLIENT_INDEX "
               "where c.CLIENT_TYPE <> 1")
            .toInt(),
        0);

    // The legal entities: at least three system clients; a branch linked to one that is no longer
    // system gives no default, the user's own choice for a branch does.
    EXPECT_GE(select(db(), lookupSelect("TFromName_LF")).size(), 3);
    const QString c1 =
        " and exists(select 1 from clients where id_clients=link_to_client and client_type=0 and status=3)";
    auto linked = [&](const QString& sql) { return select(db(), sql + c1).value(0).value(0); };
    EXPECT_FALSE(linked("select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=102").isValid());
    EXPECT_EQ(linked("select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=101"), QVariant(1));
    EXPECT_EQ(linked("select LINK_TO_CLIENT from TH_CLASSIF_CLIENT where ID_TH_CLASSIF=101 and ID_USER=1"),
              QVariant(4));
    EXPECT_FALSE(linked("select LINK_TO_CLIENT from TH_CLASSIF_CLIENT where ID_TH_CLASSIF=102 and ID_USER=2")
                     .isValid());

    // Client lists by status: every status has clients; 5 means suppliers and both.
    Values v = frameContext();
    const QString clients = lookupSelect("TClients_LF");
    for (int status : {0, 1, 2, 3, 4}) {
        v["status"] = status;
        EXPECT_FALSE(select(db(), clients, v).isEmpty()) << "status " << status;
    }
    v["status"] = 5;
    const int suppliers = select(db(), clients, v).size();
    v["status"] = 0;
    const int pureSuppliers = select(db(), clients, v).size();
    v["status"] = 2;
    EXPECT_EQ(suppliers, pureSuppliers + select(db(), clients, v).size());
}

TEST_F(StructureSchema, ClassifierTreesStayWithinTheirType) {
    // A branch's parent is in the same tree; roots hang under -1.
    EXPECT_EQ(scalar("select count(*) from CLASSIF c join CLASSIF p on p.ID_CLASSIF = c.PARENT_CLASSIF "
                     "where c.PARENT_CLASSIF <> -1 and p.ID_CLASSIF_TYPE <> c.ID_CLASSIF_TYPE")
                  .toInt(),
              0);
    // A branch added under a parent takes the parent's type.
    exec("insert into CLASSIF (PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) values (3, 'Йогурты', 1)");
    EXPECT_EQ(scalar("select ID_CLASSIF_TYPE from CLASSIF where NAME_CLASSIF = 'Йогурты'").toInt(), 0);

    // The goods tree is four levels deep; the lists of types offer the main and the additional ones.
    EXPECT_EQ(
        scalar("with recursive t (id, lvl) as (select ID_CLASSIF, 1 from CLASSIF where PARENT_CLASSIF = -1 "
               "and ID_CLASSIF_TYPE = 0 union all select c.ID_CLASSIF, t.lvl + 1 from CLASSIF c join t on "
               "c.PARENT_CLASSIF = t.id) select max(lvl) from t")
            .toInt(),
        4);
    EXPECT_EQ(column(select(db(), lookupSelect("TAddClassif_LF"), {}), 0),
              (QStringList{"1001", "1004", "1003", "0", "1002"}));
    const Rows types = select(db(), "SELECT ID_CLASSIF_TYPE FROM CLASSIF_TYPE_VIEW WHERE SET_FOR = 0");
    EXPECT_TRUE(column(types).contains("0"));
    EXPECT_FALSE(column(types).contains("-1"));
}

TEST_F(StructureSchema, DisplayNamesOfCustomersAndBusinessEntities) {
    auto name = [&](const QString& sql) { return select(db(), sql).value(0).value(0).toString(); };
    EXPECT_EQ(name("select name from vw_customer('T', 1)"), "Смирнова Татьяна Ивановна");
    EXPECT_EQ(name("select name from vw_customer('F', 1)"), "Смирнова Т. И.");
    EXPECT_EQ(name("select name from vw_customer('F', 3)"), "Кузьмин А."); // no patronymic
    EXPECT_TRUE(select(db(), "select name from vw_customer('T', 999)").isEmpty());

    const QString byGuid =
        "select name from MERCURY_GET_BUSINESS_NAME('0b6a1c2e-5d3f-4a10-9e01-00000000000%1')";
    EXPECT_EQ(name(byGuid.arg(1)), "ООО «Торговый дом Центр»");
    EXPECT_EQ(name(byGuid.arg(3)), "ИП Ёжиков Павел Андреевич");
    EXPECT_EQ(name(byGuid.arg(5)), "Смирнов Иван Кузьмич");
    EXPECT_TRUE(select(db(), byGuid.arg(9)).isEmpty());

    // The characteristics' list and the one-row selects of their own tables agree on keys.
    EXPECT_EQ(scalar("select count(*) from tyref_add_firm_data d where d.kind = 1 and not exists("
                     "select 1 from FIRM_INFO_REF_DATA r where r.id = d.id and r.kind = d.kind)")
                  .toInt(),
              0);
    EXPECT_EQ(scalar("select count(*) from tyref_add_firm_data d where d.kind = 11 and not exists("
                     "select 1 from FIRM_STAFF_INFO_REF_DATA r where r.id = d.id and r.kind = d.kind)")
                  .toInt(),
              0);
}
