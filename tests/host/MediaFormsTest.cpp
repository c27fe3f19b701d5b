// The workbench's homes of the image and address frames: the pages on the payment document's
// edit dialog (from the image database beside the main one) and the address on the client's card.
#include "frames/edit/EF_DBEdit.h"
#include "frames/media/TY_Address.h"
#include "frames/media/TY_Images.h"
#include "host/ClientForms.h"
#include "host/DocumentForms.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBEdit.h"
#include "tests/host/WorkbenchFixture.h"
#include "tests/support/ImagesHost.h"
#include <QAction>
#include <QGroupBox>
#include <QTest>

namespace frames::test {
namespace {

using workbench::FrameEditDialog;
using workbench::RecordListForm;

class MediaForms : public WorkbenchHostTest<> {
protected:
    // The workbench opened again, now with the demo image database beside the test's database.
    void withImages() {
        copyDemoImageDatabase(databasePath());
        wb->openDatabase(databasePath());
        ASSERT_NE(wb->ImageDatabase(), nullptr);
    }
    QVariant imageValue(const QString& sql) const { return firstRow(wb->ImageDatabase(), sql).value(0); }
    std::unique_ptr<RecordListForm> documents(int id) {
        std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
        EXPECT_TRUE(list->records()->locate("ID_PAYMENT_DOC", id));
        return list;
    }
    std::unique_ptr<RecordListForm> clients(int id) {
        std::unique_ptr<RecordListForm> list(workbench::makeClientList(wb.get()));
        EXPECT_TRUE(list->records()->locate("ID_CLIENTS", id));
        return list;
    }
    static TDBEdit_Frame* edit(TfrAddress* f, const char* name) { return f->findChild<TDBEdit_Frame*>(name); }
    static void type(QLineEdit* e, const QString& text) {
        e->selectAll();
        QTest::keyClicks(e, text);
    }
    QVariantList address(int client) const {
        return row("select STREET, HOUSE from ADDRESS_KLADR where KIND = 1 and OBJECT_INDEX = " +
                   QString::number(client));
    }
};

// The document's dialog shows that document's pages; a page added there is the document's, in
// the image database, at once; another document shows its own.
TEST_F(MediaForms, DocumentDialogShowsAndKeepsTheDocumentsPages) {
    withImages();
    {
        auto list = documents(1);
        FrameEditDialog dlg(wb.get(), list.get());
        dlg.prepare();
        auto* pages = qobject_cast<TfrImages*>(dlg.frame("TfrImages"));
        ASSERT_NE(pages, nullptr);
        EXPECT_EQ(pages->KeyValue, 1);
        EXPECT_EQ(pages->PageCount, 3);
        EXPECT_EQ(pages->gbImage->title(), " Страница 1 из 3 ");
        pages->aAddPage->trigger();
        EXPECT_EQ(pages->PageCount, 4);
        dlg.reject(); // the pages are not part of the document's row: kept all the same
    }
    EXPECT_EQ(
        imageValue("select count(*) from PAYMENT_DOC_IMAGES where ID_PAYMENT_DOC = 1 and IMAGE_KIND = 1")
            .toInt(),
        4);
    auto list = documents(4);
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    auto* pages = qobject_cast<TfrImages*>(dlg.frame("TfrImages"));
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->KeyValue, 4);
    EXPECT_EQ(pages->PageCount, 0);
    EXPECT_TRUE(pages->aAddPage->isEnabled());
    EXPECT_TRUE(dlg.save()); // the document saves as before
    for (const QString& m : wb->loggedMessages()) ADD_FAILURE() << m.toStdString();
}

// Without an image database the dialog still opens; the pages say there is none and offer
// nothing.
TEST_F(MediaForms, DocumentDialogWithoutImageDatabase) {
    EXPECT_EQ(wb->ImageDatabase(), nullptr);
    auto list = documents(1);
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    auto* pages = qobject_cast<TfrImages*>(dlg.frame("TfrImages"));
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(pages->gbImage->title(), " <База изображений не подключена> ");
    EXPECT_FALSE(pages->aAddPage->isEnabled());
    EXPECT_TRUE(wb->loggedMessages().isEmpty()) << wb->loggedMessages().join("; ").toStdString();
}

// The client's card edits his address with his row: an address that exists is updated, a client
// without one gets his row (kind 1, his key) when the card is confirmed; cancelling writes
// nothing.
TEST_F(MediaForms, ClientCardEditsTheClientsAddress) {
    {
        auto list = clients(1);
        FrameEditDialog dlg(wb.get(), list.get());
        dlg.prepare();
        auto* addr = qobject_cast<TfrAddress*>(dlg.frame("TfrAddress"));
        ASSERT_NE(addr, nullptr);
        EXPECT_EQ(addr->ObjectKind, 1);
        EXPECT_EQ(addr->ObjectIndex, 1);
        EXPECT_EQ(edit(addr, "defStreet")->DBEdit->text(), "Тверская");
        type(edit(addr, "defHouse")->DBEdit, "14");
        dlg.accept();
        EXPECT_FALSE(dlg.isVisible());
    }
    EXPECT_EQ(address(1), (QVariantList{"Тверская", "14"}));

    const int bare =
        scalar("select min(c.ID_CLIENTS) from CLIENTS c where c.ID_CLIENTS > 0 and not exists "
               "(select 1 from ADDRESS_KLADR a where a.KIND = 1 and a.OBJECT_INDEX = c.ID_CLIENTS)")
            .toInt();
    ASSERT_GT(bare, 0);
    {
        auto list = clients(bare);
        FrameEditDialog dlg(wb.get(), list.get());
        dlg.prepare();
        auto* addr = qobject_cast<TfrAddress*>(dlg.frame("TfrAddress"));
        type(edit(addr, "defStreet")->DBEdit, "Lenina");
        dlg.reject();
    }
    EXPECT_TRUE(address(bare).isEmpty());
    {
        auto list = clients(bare);
        FrameEditDialog dlg(wb.get(), list.get());
        dlg.prepare();
        auto* addr = qobject_cast<TfrAddress*>(dlg.frame("TfrAddress"));
        EXPECT_EQ(addr->ObjectIndex, bare);
        type(edit(addr, "defStreet")->DBEdit, "Lenina");
        type(edit(addr, "defHouse")->DBEdit, "7");
        auto* name = qobject_cast<TDBEdit_Frame*>(dlg.frame("TDBEdit_Frame_TEL_CLIENTS"))->DBEdit;
        type(name, "+7 900 000-00-00");
        dlg.accept();
    }
    EXPECT_EQ(address(bare), (QVariantList{"Lenina", "7"}));
    EXPECT_EQ(
        scalar("select TEL_CLIENTS from CLIENTS where ID_CLIENTS = " + QString::number(bare)).toString(),
        "+7 900 000-00-00");
    for (const QString& m : wb->loggedMessages()) ADD_FAILURE() << m.toStdString();
}

} // namespace
} // namespace frames::test
