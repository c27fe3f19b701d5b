#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/crm/EF_FirmCharacter.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "tests/support/DbFixture.h"
#include <QTest>

using namespace frames;

namespace {

class MarkList : public test::DbTest {
protected:
    template <typename T> std::unique_ptr<T> make(const char* cls, int key, int kind = 0) {
        std::unique_ptr<T> f(qobject_cast<T*>(Registry::instance().create(cls, &top)));
        EXPECT_NE(f, nullptr);
        f->ObjectKey = key;
        f->Kind = kind;
        return f;
    }
    // The marks stored in the database, sorted.
    QList<int> stored(const QString& sql) const {
        QList<int> ids;
        db::Transaction tr(host->database.get(), db::TransactionOptions::read());
        tr.start();
        db::Query q(host->database.get(), &tr);
        q.setSql(sql);
        q.open();
        while (q.next()) ids << q.value(0).toInt();
        q.close();
        tr.commit();
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    static QList<int> sorted(QList<int> l) {
        std::sort(l.begin(), l.end());
        return l;
    }
    QWidget top;
};

} // namespace

// Init lists every value of the kind (by name) and checks exactly the stored ones; an object with
// nothing stored is empty; the business spheres give their checked ids in list order.
TEST_F(MarkList, LoadChecksTheStoredRows) {
    auto firm = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 1);
    firm->Init();
    EXPECT_EQ(sorted(firm->Ids()), (QList<int>{-1, 1, 2, 3, 4, 5})); // kind 0 only
    EXPECT_EQ(sorted(firm->CheckedIds()), (QList<int>{1, 3, 4}));
    EXPECT_FALSE(firm->IsEmpty());
    EXPECT_EQ(firm->List->objectName(), "clbCharacter");

    auto none = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 2);
    none->Init();
    EXPECT_EQ(none->List->count(), 6);
    EXPECT_TRUE(none->IsEmpty());

    auto events = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 1, 1);
    events->Init();
    EXPECT_EQ(sorted(events->Ids()), (QList<int>{11, 12, 13, 14}));
    EXPECT_TRUE(events->IsEmpty());

    auto user = make<TUserFirmCharacter_Frame>("TUserFirmCharacter_Frame", 7);
    user->Init();
    EXPECT_EQ(sorted(user->CheckedIds()), (QList<int>{1, 4}));

    auto territory = make<TFirmTerritory_Frame>("TFirmTerritory_Frame", 3);
    territory->Init();
    EXPECT_EQ(sorted(territory->CheckedIds()), (QList<int>{1, 2}));

    auto sphere = make<TFirmBusinessSphere_Frame>("TFirmBusinessSphere_Frame", 3);
    sphere->Init();
    EXPECT_EQ(sphere->GetSelectedIds(), "2,1"); // "Оптовая ..." is listed before "Розничная ..."
    sphere->Clear();
    EXPECT_EQ(sphere->GetSelectedIds(), "");
    EXPECT_TRUE(sphere->IsEmpty());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Save writes the state of every row, changed or not: checked rows are stored, unchecked ones
// removed, also rows another user changed since the list was read; other kinds and objects are
// left alone; a fresh Init shows what was saved.
TEST_F(MarkList, SaveWritesEveryRowsState) {
    auto firm = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 1);
    firm->Init();
    exec("delete from FIRM_CHARACTER_VALUE where firm = 1 and character_value = 3");
    exec("insert into FIRM_CHARACTER_VALUE (firm, kind, character_value) values (1, 0, 5)");
    exec("insert into FIRM_CHARACTER_VALUE (firm, kind, character_value) values (1, 1, 12)");
    firm->Save(); // nothing changed on the screen: the screen's state is stored
    EXPECT_EQ(stored("select character_value from FIRM_CHARACTER_VALUE where firm = 1 and kind = 0"),
              (QList<int>{1, 3, 4}));
    EXPECT_EQ(stored("select character_value from FIRM_CHARACTER_VALUE where firm = 1 and kind = 1"),
              (QList<int>{12}));

    firm->SetChecked(3, false);
    firm->SetChecked(2, true);
    firm->Save();
    EXPECT_EQ(stored("select character_value from FIRM_CHARACTER_VALUE where firm = 1 and kind = 0"),
              (QList<int>{1, 2, 4}));
    EXPECT_EQ(stored("select character_value from FIRM_CHARACTER_VALUE where firm = 3"), (QList<int>{1, 2}));
    auto again = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 1);
    again->Init();
    EXPECT_EQ(sorted(again->CheckedIds()), (QList<int>{1, 2, 4}));

    auto user = make<TUserFirmCharacter_Frame>("TUserFirmCharacter_Frame", 4);
    user->Init();
    user->Clear();
    user->SetChecked(5, true);
    user->Save();
    EXPECT_EQ(stored("select character_value from USER_FIRM_CHARACTER where manager = 4"), (QList<int>{5}));
    EXPECT_EQ(stored("select character_value from USER_FIRM_CHARACTER where manager = 7"),
              (QList<int>{1, 4}));

    auto territory = make<TFirmTerritory_Frame>("TFirmTerritory_Frame", 3);
    territory->Init();
    territory->SetChecked(1, false);
    territory->SetChecked(6, true);
    territory->Save();
    territory->Save(); // a second save finds the rows stored and changes nothing
    EXPECT_EQ(stored("select territory from FIRM_TERRITORY where firm = 3"), (QList<int>{2, 6}));
    EXPECT_EQ(stored("select territory from FIRM_TERRITORY where firm = 1"), (QList<int>{1}));

    auto sphere = make<TFirmBusinessSphere_Frame>("TFirmBusinessSphere_Frame", 2);
    sphere->Init();
    sphere->SetChecked(3, false);
    sphere->SetChecked(5, true);
    sphere->Save();
    EXPECT_EQ(stored("select business_sphere from FIRM_BUSINESS_SPHERE where firm = 2"), (QList<int>{5}));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// An event shows its own stored characteristics; with the prefill flag it starts from the
// company's characteristics that the manager works with, and saving stores those for the event.
TEST_F(MarkList, EventCharacteristicsAndPrefill) {
    auto stored1 = make<TEventCharacter_Frame>("TEventCharacter_Frame", 1);
    stored1->Init();
    EXPECT_EQ(sorted(stored1->CheckedIds()), (QList<int>{1}));

    exec("insert into FIRM_EVENT (id, firm, manager) values (10, 1, 7)");
    auto fresh = make<TEventCharacter_Frame>("TEventCharacter_Frame", 10);
    fresh->Firm = 1;
    fresh->Manager = 7;
    fresh->Prefill = true;
    fresh->Init();
    // company 1 has {1, 3, 4}; manager 7 works with {1, 4}
    EXPECT_EQ(sorted(fresh->CheckedIds()), (QList<int>{1, 4}));
    fresh->Save();
    EXPECT_EQ(stored("select character_value from EVENT_FIRM_CHARACTER where firm_event = 10"),
              (QList<int>{1, 4}));

    fresh->Manager = 4; // works with {1, 2}
    fresh->Init();
    EXPECT_EQ(sorted(fresh->CheckedIds()), (QList<int>{1}));
    fresh->Prefill = false;
    fresh->Init();
    EXPECT_EQ(sorted(fresh->CheckedIds()), (QList<int>{1, 4}));

    // Saving kind 0 of event 1 leaves its kind-1 characteristic alone.
    stored1->Clear();
    stored1->Save();
    EXPECT_EQ(stored("select character_value from EVENT_FIRM_CHARACTER where firm_event = 1"),
              (QList<int>{12}));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Read-only lists cannot be ticked by the user; a save that the database refuses reaches the
// user through the host, with the rows before the failing one already written.
TEST_F(MarkList, ReadOnlyAndRefusedSave) {
    auto firm = make<TFirmCharacter_Frame>("TFirmCharacter_Frame", 2);
    firm->Init();
    firm->SetReadOnly(true);
    firm->show();
    QListWidgetItem* item = firm->List->item(1);
    const QRect r = firm->List->visualItemRect(item);
    QTest::mouseClick(firm->List->viewport(), Qt::LeftButton, {}, QPoint(r.left() + 8, r.center().y()));
    EXPECT_TRUE(firm->IsEmpty());
    firm->SetReadOnly(false);
    QTest::mouseClick(firm->List->viewport(), Qt::LeftButton, {}, QPoint(r.left() + 8, r.center().y()));
    EXPECT_EQ(firm->CheckedIds(),
              (QList<int>{item->data(Qt::UserRole).toInt()})); // the same click ticks it now

    auto gone = make<TFirmTerritory_Frame>("TFirmTerritory_Frame", 999); // no such company
    gone->Init();
    gone->SetChecked(5, true);
    EXPECT_FALSE(guard([&] { gone->Save(); }));
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_TRUE(stored("select territory from FIRM_TERRITORY where firm = 999").isEmpty());
}
