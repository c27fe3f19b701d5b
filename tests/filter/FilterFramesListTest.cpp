#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/filter/FF_Manager.h"
#include "frames/filter/FF_MultiCatalogue.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QJsonObject>
#include <QRegularExpression>
#include <QTest>

using namespace frames;

namespace {

class ListFilters : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        top = std::make_unique<QWidget>();
    }
    void TearDown() override {
        top.reset();
        DbTest::TearDown();
    }
    template <typename T = TMultiFilter_FF> T* make(const QString& cls, bool init = true) {
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, top.get()));
        EXPECT_NE(f, nullptr) << cls.toStdString();
        if (f && init) f->Init();
        return f;
    }
    // The key of row r of the lookup's list as the drop-down offers it.
    static QString offeredKey(TMultiFilter_FF* f, int r) {
        TMultiAbs_LF* l = f->Lookup();
        return l->pFIBDataSet1->valueAt(r, l->pFIBDataSet1->fieldByName(l->lcSelect->lookupField())->index())
            .toString();
    }
    // How many managers FILTER_MANAGER holds for the user and kind, and the least of them.
    QVariantList storedManagers(int kind) const {
        return row(QString("select count(*), min(MANAGER) from FILTER_MANAGER where ID_USER=%1 and KIND=%2")
                       .arg(CUR_USER)
                       .arg(kind));
    }
    // Moves the manager with that key into the chosen list (as a click on ">" does).
    static void choose(TManager_FF* f, int key) {
        ASSERT_TRUE(f->Manager_BF->mdAvailabled->locate("ID", key)) << key;
        QTest::mouseClick(f->Manager_BF->sbSel, Qt::LeftButton);
    }

    std::unique_ptr<QWidget> top;
};

} // namespace

// One filter per multi-select lookup: each is registered in the filter family with a Russian
// caption and group box title, holds the lookup named after its class, opens on the demo
// database, takes a key of its list and gives "field in (key)" once switched on.
TEST_F(ListFilters, EveryMultiSelectFilterOpensAndGivesItsKeys) {
    int count = 0;
    QStringList failures;
    const QRegularExpression cyrillic(QString::fromUtf8("[А-Яа-яЁё]"));
    const QStringList multi = Registry::instance().classNames("multi");
    QStringList wrapped;
    for (const QString& cls : Registry::instance().classNames("filter")) {
        const QString caption = FormLoader::description(cls).value("caption").toString();
        if (!caption.contains(cyrillic)) failures << cls + ": no Russian caption";
        std::unique_ptr<TAbsEditFrame> made;
        host->messages.clear();
        if (!guard([&] { made.reset(Registry::instance().create(cls, top.get())); })) {
            failures << cls + ": " + host->errors().join("; ");
            continue;
        }
        auto* f = qobject_cast<TMultiFilter_FF*>(made.get());
        if (!f) continue;
        ++count;
        const QString title = f->GroupBox->title().trimmed();
        if (!title.contains(cyrillic) && !title.contains(QRegularExpression("^(ABC|XYZ)")))
            failures << cls + ": group box title " + title;
        TMultiAbs_LF* l = f->Lookup();
        if (!l || l->objectName() != f->LookupClass().mid(1) ||
            l->parentWidget() != f->GroupBox->findChild<QWidget*>("content")) {
            failures << cls + ": no inline lookup named after its class";
            continue;
        }
        wrapped << f->LookupClass();
        if (!guard([&] { f->Init(); }) || !host->errors().isEmpty()) {
            failures << cls + ": " + host->errors().join("; ");
            continue;
        }
        if (l->pFIBDataSet1->isEmpty()) {
            failures << cls + ": empty list";
            continue;
        }
        const QString key = offeredKey(f, 0);
        f->AddText(key);
        if (f->cbSet->isChecked()) failures << cls + ": AddText switched the filter on";
        if (f->ItemsList() != "-1," + key) failures << cls + ": items " + f->ItemsList();
        if (f->SQL("F") != QString()) failures << cls + ": a condition while off";
        f->cbSet->setChecked(true);
        if (f->SQL("F") != "F in (" + key + ")") failures << cls + ": " + f->SQL("F");
        if (f->IsEmpty()) failures << cls + ": empty with a key";
    }
    EXPECT_EQ(count, 47);
    // Every multi-select lookup but the abstract one is wrapped, each by one filter.
    QStringList expected = multi;
    expected.removeAll("TMultiAbs_LF");
    wrapped.sort();
    expected.sort();
    EXPECT_EQ(wrapped, expected);
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();
}

// Picking a row in the combo, adding a key with Insert and taking one back each tick cbSet (also
// through the card type filter's own handlers); reading the list, restoring a layout and the
// host's AddText do not.
TEST_F(ListFilters, EachKindOfChangeTicksTheBox) {
    for (const QString cls : {"TCountry_FF", "TCardType_FF"}) {
        SCOPED_TRACE(cls.toStdString());
        TMultiFilter_FF* f = make(cls);
        TMultiAbs_LF* l = f->Lookup();
        EXPECT_FALSE(f->cbSet->isChecked());

        l->lcSelect->setKeyValue(offeredKey(f, 1).toInt());
        EXPECT_TRUE(f->cbSet->isChecked()) << "combo";
        f->cbSet->setChecked(false);

        QTest::keyClick(l->lcSelect->comboBox(), Qt::Key_Insert);
        EXPECT_EQ(l->mdList->recordCount(), 1);
        EXPECT_TRUE(f->cbSet->isChecked()) << "added";
        f->cbSet->setChecked(false);

        int key = Qt::Key_Delete;
        l->dbListKeyDown(l->dbList, key, Qt::NoModifier);
        EXPECT_EQ(l->mdList->recordCount(), 0);
        EXPECT_TRUE(f->cbSet->isChecked()) << "removed";

        f->cbSet->setChecked(false);
        f->AddText(offeredKey(f, 3)); // not the combo's own key, which a restore leaves out of the list
        TConfigItem layout("f");
        f->SaveLayout(&layout);
        TMultiFilter_FF* again = make(cls);
        again->RestoreLayout(&layout);
        EXPECT_FALSE(again->cbSet->isChecked());
        EXPECT_EQ(again->ItemsCount(), 2);
    }
}

// The layout keeps the tick, the combo's key and the chosen keys; a restored filter gives the
// same condition, and that condition selects exactly the chosen rows of the table. Clear empties
// the list except in the filters whose Clear is meant to keep it.
TEST_F(ListFilters, LayoutRoundTripConditionAndClear) {
    auto* f = make<TCountry_FF>("TCountry_FF");
    const QString a = offeredKey(f, 0), b = offeredKey(f, 3);
    f->AddText(b);
    f->AddText(a);
    f->AddText(a);           // already chosen
    f->AddText("не ключ");   // not a key
    f->AddText("987654321"); // not in the table
    f->cbSet->setChecked(true);
    const QString sql = f->SQL("c.id_country");
    EXPECT_EQ(f->Lookup()->iChosenCount, 2);
    EXPECT_EQ(scalar("select count(*) from country c where " + sql).toInt(), 2);

    TConfigItem layout("TCountry_FF");
    f->SaveLayout(&layout);
    auto* again = make<TCountry_FF>("TCountry_FF");
    again->RestoreLayout(&layout);
    EXPECT_TRUE(again->cbSet->isChecked());
    EXPECT_EQ(again->ItemsList(), f->ItemsList());
    EXPECT_EQ(again->SQL("c.id_country"), sql);

    again->Clear();
    EXPECT_FALSE(again->cbSet->isChecked());
    EXPECT_EQ(again->ItemsList(), QString("-1"));
    EXPECT_TRUE(again->IsEmpty());

    // Keys added before the list is read wait for Init.
    auto* early = make<TCountry_FF>("TCountry_FF", false);
    early->AddText(a);
    early->Init();
    EXPECT_EQ(early->ItemsList(), "-1," + a);

    for (const QString cls : {"TRefAdd_FF", "TEventCharacter_FF", "TExtCardParam_FF", "TFirmCharacter_FF"}) {
        TMultiFilter_FF* kept = make(cls);
        const QString key = offeredKey(kept, 0);
        kept->AddText(key);
        kept->cbSet->setChecked(true);
        kept->Clear();
        EXPECT_EQ(kept->ItemsList(), "-1," + key) << cls.toStdString();
        EXPECT_TRUE(kept->cbSet->isChecked()) << cls.toStdString();
    }

    // The place filter's lookup is of kind 1, handed to the place form as KIND.
    auto* place = make<TPlace_FF>("TPlace_FF");
    EXPECT_EQ(place->Lookup()->GetKind(), 1);
    host->scriptRunResult(0);
    place->Lookup()->lcSelectDlgClick(place->Lookup()->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    ASSERT_TRUE(host->runs[0].params.Params);
    EXPECT_EQ(host->runs[0].params.Params->ByName("KIND").Value.toInt(), 1);
}

// Each panel's managers are its own: the kind, set as the frame's property, goes to the chooser;
// saving the layout writes the choice for that kind to FILTER_MANAGER, and a filter of another
// kind neither sees nor overwrites it. Moving managers ticks the box, reading them does not.
TEST_F(ListFilters, ManagerFiltersKeepTheirKindsApart) {
    auto* one = make<TManager_FF>("TManager_FF", false);
    one->setProperty("Kind", 41);
    EXPECT_EQ(one->Manager_BF->Kind, 41);
    one->Init();
    auto* two = make<TManager_FF>("TManager_FF", false);
    two->SetKind(42);
    two->Init();
    EXPECT_FALSE(one->cbSet->isChecked());
    EXPECT_EQ(one->ItemsCount(), 0);

    const int manager =
        scalar("select min(id_user) from users where id_user > 0 and is_uvolen = 'F'").toInt();
    choose(one, manager);
    EXPECT_TRUE(one->cbSet->isChecked());
    EXPECT_EQ(one->KnownItemsList(), QString::number(manager));
    TConfigItem layout("TManager_FF");
    one->SaveLayout(&layout);
    two->SaveLayout(nullptr);
    EXPECT_EQ(storedManagers(41).value(0).toInt(), 1);
    EXPECT_EQ(storedManagers(41).value(1).toInt(), manager);
    EXPECT_EQ(storedManagers(42).value(0).toInt(), 0);

    auto* back = make<TManager_FF>("TManager_FF", false);
    back->SetKind(41);
    back->Init();
    back->RestoreLayout(&layout);
    EXPECT_TRUE(back->cbSet->isChecked());
    EXPECT_EQ(back->ItemsList(), QString::number(manager));
    back->cbSet->setChecked(false);
    QTest::mouseClick(back->Manager_BF->sbAllUnSel, Qt::LeftButton);
    EXPECT_TRUE(back->cbSet->isChecked()) << "returning managers ticks the managers filter";

    // Switching the kind of a filter that has read its lists stores the former kind's choice and
    // reads the new kind's.
    two->SetKind(41);
    EXPECT_EQ(two->ItemsList(), QString::number(manager));
    EXPECT_FALSE(two->cbSet->isChecked());
}

// The card managers filter ticks on selecting (button, all, double click) but not on returning,
// and restores the chooser before its own tick.
TEST_F(ListFilters, CardManagerFilterTicksOnSelectingOnly) {
    auto* f = make<TCardManager_FF>("TCardManager_FF", false);
    f->SetKind(43);
    f->Init();
    const int manager =
        scalar("select min(id_user) from users where id_user > 0 and is_uvolen = 'F'").toInt();
    choose(f, manager);
    EXPECT_TRUE(f->cbSet->isChecked());
    f->cbSet->setChecked(false);
    QTest::mouseClick(f->Manager_BF->sbAllUnSel, Qt::LeftButton);
    EXPECT_FALSE(f->cbSet->isChecked());
    QTest::mouseClick(f->Manager_BF->sbAllSel, Qt::LeftButton);
    EXPECT_TRUE(f->cbSet->isChecked());
    QTest::mouseClick(f->Manager_BF->sbAllUnSel, Qt::LeftButton);
    f->cbSet->setChecked(false);
    emit f->Manager_BF->dbgAvailabled->activated();
    EXPECT_TRUE(f->cbSet->isChecked());
    EXPECT_EQ(f->ItemsCount(), 1);

    TConfigItem layout("TCardManager_FF");
    f->SaveLayout(&layout);
    EXPECT_EQ(storedManagers(43).value(0).toInt(), 1);
    auto* back = make<TCardManager_FF>("TCardManager_FF", false);
    back->SetKind(43);
    back->Init();
    back->RestoreLayout(&layout);
    EXPECT_TRUE(back->cbSet->isChecked());
    EXPECT_EQ(back->ItemsList(), f->ItemsList());
}
