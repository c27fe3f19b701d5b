#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/edit/EF_DBEdit.h"
#include "frames/lookup/LF_Abs.h"
#include "frames/media/TY_Address.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Transaction.h"
#include "tests/support/DbFixture.h"
#include <QAction>
#include <QTest>

using namespace frames;

namespace {

class Address : public test::DbTest {
protected:
    std::unique_ptr<TfrAddress> make(QWidget* parent, int kind, int index, const char* cls = "TfrAddress") {
        std::unique_ptr<TfrAddress> f(qobject_cast<TfrAddress*>(Registry::instance().create(cls, parent)));
        EXPECT_NE(f, nullptr);
        f->ObjectKind = kind;
        f->ObjectIndex = index;
        f->Init();
        return f;
    }
    static TDBEdit_Frame* edit(TfrAddress* f, const char* name) { return f->findChild<TDBEdit_Frame*>(name); }
    // Typed by the user (Latin letters: the test helpers type no others).
    static void type(TfrAddress* f, const char* name, const QString& text) {
        QLineEdit* e = edit(f, name)->DBEdit;
        e->selectAll();
        QTest::keyClicks(e, text);
    }
    static TAbs_LF* lookup(TfrAddress* f, const char* name) { return f->findChild<TAbs_LF*>(name); }
    QWidget top;
};

} // namespace

// An address is shown as stored; an object without an address (and a frame never given its
// object) shows an empty one; the reduced twin shows only the country.
TEST_F(Address, ShowsTheStoredRowOrNothing) {
    auto f = make(&top, 1, 1);
    EXPECT_EQ(edit(f.get(), "defStreet")->DBEdit->text(), "Тверская");
    EXPECT_EQ(edit(f.get(), "defIndex")->DBEdit->text(), "125009");
    EXPECT_EQ(lookup(f.get(), "City_LF1")->lcSelect->displayText(), "Москва");
    EXPECT_EQ(lookup(f.get(), "lfStreetType")->lcSelect->displayText(), "ул");
    EXPECT_EQ(f->Country_LF1->lcSelect->keyValue().toInt(), 1);

    auto none = make(&top, -1, -1);
    EXPECT_TRUE(none->pfAddress->isEmpty());
    EXPECT_EQ(edit(none.get(), "defStreet")->DBEdit->text(), "");

    auto city = make(&top, 1, 2, "TfrAddress_City");
    EXPECT_EQ(city->findChildren<TAbsEditFrame*>().size(), 1);
    EXPECT_EQ(city->Country_LF1->lcSelect->keyValue().toInt(), 1);
    EXPECT_EQ(city->pfAddress->objectName(), "pfAddress_City");
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// Free-standing: the first change of an object without an address inserts its row with the
// object's key; a later change updates it and leaves the comment alone; clearing empties every
// edited column.
TEST_F(Address, InsertsOnceThenUpdates) {
    auto f = make(&top, 1, 3);
    ASSERT_TRUE(f->pfAddress->isEmpty());
    type(f.get(), "defStreet", "Lenina");
    f->Save();
    EXPECT_EQ(row("select KIND, OBJECT_INDEX, STREET from ADDRESS_KLADR where OBJECT_INDEX = 3"),
              (QVariantList{1, 3, "Lenina"}));

    exec("update ADDRESS_KLADR set COMMENT = 'Склад' where KIND = 1 and OBJECT_INDEX = 3");
    auto again = make(&top, 1, 3);
    type(again.get(), "defHouse", "7");
    again->Save();
    EXPECT_EQ(row("select STREET, HOUSE, COMMENT from ADDRESS_KLADR where KIND = 1 and OBJECT_INDEX = 3"),
              (QVariantList{"Lenina", "7", "Склад"}));

    again->ClearAllAction->trigger();
    again->Save();
    EXPECT_EQ(
        row("select STREET, HOUSE, COUNTRY, COMMENT from ADDRESS_KLADR where KIND = 1 and OBJECT_INDEX = 3"),
        (QVariantList{QVariant(), QVariant(), QVariant(), "Склад"}));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

// On the edit dialog of a client being edited, the address is in edit state at once and is
// written in the list's transaction: rolled back with it, nothing stays.
TEST_F(Address, EditsInsideTheOwnersTransaction) {
    TfmLayer1_FIB list;
    db::Transaction tr(host->RvDatabase(), db::TransactionOptions::writeNoWait());
    db::DataSet clients(&list);
    clients.setDatabase(host->RvDatabase());
    clients.setTransaction(host->pfReadTransaction());
    clients.setUpdateTransaction(&tr);
    clients.setSelectSql("select ID_CLIENTS, NAME_CLIENTS from CLIENTS where ID_CLIENTS = 1");
    clients.open();
    clients.edit();
    db::DataSource source(&clients);
    list.SetCurrentSource(&source);
    auto* dialog = new TfmAbsEditDlg(&list);
    auto f = make(dialog, 1, 1);
    EXPECT_TRUE(f->pfAddress->inEditMode());
    EXPECT_EQ(f->pfAddress->updateTransaction(), &tr);
    // Editing the record, the lookups offer their whole lists.
    EXPECT_GT(lookup(f.get(), "lfStreetType")->pFIBDataSet1->recordCount(), 1);
    type(f.get(), "defStreet", "Novaya");
    f->Save();
    EXPECT_EQ(scalar("select STREET from ADDRESS_KLADR where KIND = 1 and OBJECT_INDEX = 1"), "Тверская");
    tr.rollback();
    EXPECT_EQ(scalar("select STREET from ADDRESS_KLADR where KIND = 1 and OBJECT_INDEX = 1"), "Тверская");
}
