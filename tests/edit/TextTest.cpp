#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/core/TyapiLayout.h"
#include "frames/edit/EF_CheckBoxEdit.h"
#include "frames/edit/EF_ComboBox.h"
#include "frames/edit/EF_EditComboBox.h"
#include "frames/edit/EF_EditEmail.h"
#include "frames/edit/EF_EditSite.h"
#include "frames/edit/EF_Memo.h"
#include "frames/edit/EF_MultiEdit.h"
#include "frames/edit/EF_MultiEditComboBox.h"
#include "frames/edit/EF_Partner.h"
#include "frames/edit/EF_PriceType.h"
#include "platform/db/Field.h"
#include "tests/edit/EditTestUtil.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QDialog>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <stdexcept>

using namespace frames;
using namespace frames::edit_test;

namespace {

// Types text the way a keyboard does, letter by letter (Cyrillic included).
void typeText(QWidget* w, const QString& text) {
    for (const QChar c : text) {
        const int key = c.toUpper().unicode();
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(c));
        QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(c));
        QApplication::sendEvent(w, &press);
        QApplication::sendEvent(w, &release);
    }
}

// A list form over a table with an edit dialog owned by it, as the host shows editor frames.
class TextOnEditDialog : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        list = std::make_unique<TfmLayer1_FIB>();
        dialog = new TfmAbsEditDlg(list.get());
        panel = new QWidget(dialog);
        new QVBoxLayout(panel);
    }
    void TearDown() override {
        list.reset();
        DbTest::TearDown();
    }
    void showList(const QString& sql) {
        rows = new db::DataSet(host->RvDatabase(), host->pfReadTransaction(), list.get());
        rows->setSelectSql(sql);
        rows->open();
        list->SetCurrentSource(new db::DataSource(rows, list.get()));
    }
    // Price lists with their type codes, one of them unknown and one null.
    void makePriceLists() {
        exec("create table PRICE_LIST (ID integer not null primary key, NAME varchar(40), PRICE_TYPE "
             "char(1))");
        const char* rowsSql[] = {"(1, 'Розница', 'N')", "(2, 'Опт', 'L')",    "(3, 'VIP', 'M')",
                                 "(4, 'Склад', 'S')",   "(5, 'Старый', 'X')", "(6, 'Новый', null)"};
        for (const char* r : rowsSql)
            exec(QString("insert into PRICE_LIST (ID, NAME, PRICE_TYPE) values ") + r);
        showList("select * from PRICE_LIST order by ID");
    }
    QString clientName(int id) const {
        return scalar("select NAME_CLIENTS from CLIENTS where ID_CLIENTS=" + QString::number(id)).toString();
    }

    std::unique_ptr<TfmLayer1_FIB> list;
    TfmAbsEditDlg* dialog = nullptr;
    QWidget* panel = nullptr;
    db::DataSet* rows = nullptr;
};

} // namespace

TEST(TextEdit, EmailCheckAndSiteAddress) {
    EXPECT_TRUE(TEditEmail_Frame::IsEmail("ivanov@torg.example"));
    EXPECT_TRUE(TEditEmail_Frame::IsEmail("a@bc.ru")); // five characters after "@", one a "."
    EXPECT_FALSE(TEditEmail_Frame::IsEmail("a@b.ru")); // four
    for (const char* bad : {"a@abcdef", "@mail.ru", "mail.ru", "a b@mail.ru", "иван@mail.ru", "a@b@mail.ru"})
        EXPECT_FALSE(TEditEmail_Frame::IsEmail(bad)) << bad;
    EXPECT_TRUE(TEditEmail_Frame::IsEmail("first.last+shop_1@mail-box.ru"));

    EXPECT_EQ(TEditSite_Frame::Address("www.shop.ru"), QString("http://www.shop.ru"));
    EXPECT_EQ(TEditSite_Frame::Address("https://shop.ru"), QString("https://shop.ru"));
    EXPECT_TRUE(TEditSite_Frame::IsSite("shop.ru/catalog"));
    for (const char* bad : {"shop", "shop .ru", ".ru"}) EXPECT_FALSE(TEditSite_Frame::IsSite(bad)) << bad;
}

TEST(TextEdit, LinksOpenOnCtrlEnterAndCtrlClickOnly) {
    test::TestHost host;
    QWidget top;
    auto* mail = make<TEditEmail_Frame>("TEditEmail_Frame", &top);
    mail->DBEdit->setText("shop@torg.example");
    mail->Init();
    EXPECT_TRUE(mail->DBEdit->font().underline());

    QTest::keyClick(mail->DBEdit, Qt::Key_Return);
    EXPECT_TRUE(host.openedAddresses.isEmpty());
    QTest::keyClick(mail->DBEdit, Qt::Key_Return, Qt::ControlModifier);
    QTest::mouseClick(mail->DBEdit, Qt::LeftButton);
    QTest::mouseClick(mail->DBEdit, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(host.openedAddresses, QStringList({"mailto:shop@torg.example", "mailto:shop@torg.example"}));

    // Leaving the editor restyles by the new text.
    host.openedAddresses.clear();
    mail->DBEdit->setText("shop@ru");
    emit mail->DBEdit->editingFinished();
    EXPECT_FALSE(mail->DBEdit->font().underline());
    QTest::keyClick(mail->DBEdit, Qt::Key_Enter, Qt::ControlModifier);
    EXPECT_TRUE(host.openedAddresses.isEmpty());

    auto* site = make<TEditSite_Frame>("TEditSite_Frame", &top);
    site->DBEdit->setText("www.torg.example");
    site->Init();
    QTest::keyClick(site->DBEdit, Qt::Key_Return, Qt::ControlModifier);
    site->DBEdit->setText("HTTP://Torg.Example");
    QTest::mouseClick(site->DBEdit, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(host.openedAddresses, QStringList({"http://www.torg.example", "HTTP://Torg.Example"}));
    EXPECT_TRUE(host.errors().isEmpty());
}

TEST_F(TextOnEditDialog, EmailBindsToTheListRecordAndClearEmptiesTheField) {
    showList("select * from USERS order by ID_USER");
    ASSERT_TRUE(rows->locate("ID_USER", 2));
    auto* mail = make<TEditEmail_Frame>("TEditEmail_Frame", panel);
    mail->Init();
    EXPECT_EQ(mail->DBEdit->text(), QString("ivanov@torg.example"));
    mail->Clear();
    EXPECT_TRUE(rows->fieldByName("EMAIL")->isNull());
    rows->cancel();

    ASSERT_TRUE(rows->locate("ID_USER", 5)); // no address
    auto* none = make<TEditEmail_Frame>("TEditEmail_Frame", panel);
    none->Init();
    EXPECT_FALSE(none->IsLink());
    EXPECT_TRUE(none->IsEmpty());
}

TEST_F(TextOnEditDialog, PriceTypeShowsAndWritesTheCodes) {
    makePriceLists();
    const QStringList shown = {"Нормальный",    "Посл. приход",  "Макс. приход",
                               "Себестоимость", "Себестоимость", "Себестоимость"};
    for (int id = 1; id <= 6; ++id) {
        ASSERT_TRUE(rows->locate("ID", id));
        auto* f = make<TPriceType_EF>("TPriceType_EF", panel);
        f->Init();
        EXPECT_EQ(f->ComboBox->currentText(), shown[id - 1]) << id;
        delete f;
    }
    ASSERT_TRUE(rows->locate("ID", 1));
    auto* f = make<TPriceType_EF>("TPriceType_EF", panel);
    f->Init();
    for (int i : {2, 1, 3, 0}) {
        f->ComboBox->setCurrentIndex(i);
        emit f->ComboBox->activated(i);
        EXPECT_EQ(rows->fieldByName("PRICE_TYPE")->asString(), QString("NLMS"[i])) << i;
    }
    EXPECT_TRUE(rows->inEditMode());
    rows->cancel();
    EXPECT_EQ(f->ComboBox->currentIndex(), 0); // back to the record's own "N"

    QWidget top;
    auto* free = make<TPriceType_EF>("TPriceType_EF", &top);
    free->Init();
    EXPECT_TRUE(free->IsEmpty());
    free->ComboBox->setCurrentIndex(1);
    emit free->ComboBox->activated(1);
    EXPECT_EQ(free->Code(), QString("L"));
    free->SetReadOnly(true);
    free->ComboBox->setCurrentIndex(2);
    emit free->ComboBox->activated(2);
    EXPECT_EQ(free->Code(), QString("L"));
}

TEST_F(TextOnEditDialog, PartnerSelectsAndClearsTheLinkedClientThroughTheClientForm) {
    // Shops are linked to the legal entity that trades there.
    showList("select * from TH_CLASSIF order by ID_TH_CLASSIF");
    host->registeredForms = {"CardsForm", "ClientForm"};
    ASSERT_TRUE(rows->locate("ID_TH_CLASSIF", 1));
    const int linked = rows->fieldByName("LINK_TO_CLIENT")->asInteger();
    auto* f = make<TPartner_EF>("TPartner_EF", panel);
    f->Init();
    EXPECT_EQ(f->DBEdit->text(), clientName(linked));
    EXPECT_EQ(f->pFIBDataSet1->paramByName("TYPE_CLASSIF")->value().toInt(), 1);

    // Cancelled, and confirmed without a key: nothing changes.
    host->scriptRunResult(2);
    host->scriptRunResult(1, QVariant());
    QTest::mouseClick(f->bbSelect, Qt::LeftButton);
    QTest::mouseClick(f->bbSelect, Qt::LeftButton);
    EXPECT_FALSE(rows->inEditMode());
    ASSERT_EQ(host->runs.size(), 2u);
    const TRunParams& asked = host->runs[0].params;
    EXPECT_EQ(host->runs[0].formName, QString("ClientForm"));
    EXPECT_EQ(asked.KeyFieldName, QString("ID_CLIENTS"));
    EXPECT_EQ(asked.KeyValue.toInt(), linked);
    // The current client's classifier node is the starting point.
    EXPECT_EQ(asked.KeyInt,
              scalar("select CLASSIF from CLIENTS where ID_CLIENTS=" + QString::number(linked)).toInt());
    EXPECT_EQ(asked.ResultInt, 2); // the client form's reference number

    host->scriptRunResult(1, 5);
    QTest::mouseClick(f->bbSelect, Qt::LeftButton);
    EXPECT_TRUE(rows->inEditMode());
    EXPECT_EQ(rows->fieldByName("LINK_TO_CLIENT")->asInteger(), 5);
    EXPECT_EQ(f->DBEdit->text(), clientName(5));

    QTest::mouseClick(f->bbClear, Qt::LeftButton);
    EXPECT_TRUE(rows->fieldByName("LINK_TO_CLIENT")->isNull());
    EXPECT_TRUE(f->IsEmpty());
    rows->cancel();

    // A read-only frame does not open the form.
    f->SetReadOnly(true);
    EXPECT_THROW(f->bbSelectClick(f->bbSelect), EAbort);
    EXPECT_EQ(host->runs.size(), 3u);

    // Free-standing, the frame keeps the link itself; only clients of its classifier type show.
    QWidget top;
    auto* free = make<TPartner_EF>("TPartner_EF", &top);
    free->Init();
    EXPECT_TRUE(free->IsEmpty());
    host->scriptRunResult(1, 2);
    QTest::mouseClick(free->bbSelect, Qt::LeftButton);
    EXPECT_EQ(free->LinkToClient().toInt(), 2);
    EXPECT_EQ(free->DBEdit->text(), clientName(2));
    free->ClassifType = 2;
    free->DataRefresh();
    EXPECT_EQ(free->DBEdit->text(), QString());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}

TEST(TextEdit, HistoryComboKeepsRecentTextsOnceWithinItsLimit) {
    ui::HistoryCombo combo;
    combo.setMaxHistory(3);
    for (const char* t : {"мука", "сахар", " мука ", "", "соль", "чай"}) combo.addToHistory(t);
    EXPECT_EQ(combo.history(), QStringList({"чай", "соль", "мука"}));
    combo.setEditText("кофе");
    QSignalSpy committed(&combo, &ui::HistoryCombo::textCommitted);
    QTest::keyClick(&combo, Qt::Key_Return);
    EXPECT_EQ(combo.history(), QStringList({"кофе", "чай", "соль"}));
    EXPECT_EQ(committed.count(), 1);
    combo.setMaxHistory(2);
    EXPECT_EQ(combo.history(), QStringList({"кофе", "чай"}));
}

TEST(TextEdit, ComboAndListLayoutsRoundTripThroughTheStoredTree) {
    test::TestHost host;
    QWidget top;
    TConfigItem saved("Form");
    {
        auto* f = make<TEditComboBox_EF>("TEditComboBox_EF", &top);
        f->ComboBox->setHistory({"A", "B"});
        f->ComboBox->setEditText("C,D");
        f->SaveLayout(&saved); // the current text joins the history
        auto* multi = make<TMultiEditComboBox_EF>("TMultiEditComboBox_EF", &top);
        multi->SetItems({"мол*", "сыр"});
        multi->SaveLayout(saved.ItemByName("Multi"));
        auto* edit = make<TMultiEdit_Frame>("TMultiEdit_Frame", &top);
        edit->SetItems({"1", "2", "3"});
        edit->SaveLayout(saved.ItemByName("Edit"));
        edit->SetItems({"7"}); // a shorter list leaves no stale records behind
        edit->SaveLayout(saved.ItemByName("Edit"));
    }
    TConfigItem stored("Form");
    stored.fromJson(saved.toJson());

    auto* f = make<TEditComboBox_EF>("TEditComboBox_EF", &top);
    int changes = 0;
    f->OnComboBoxChange = [&](QObject*) { ++changes; };
    f->RestoreLayout(&stored);
    EXPECT_EQ(f->ComboBox->history(), QStringList({"C,D", "A", "B"}));
    EXPECT_EQ(f->Text(), QString("C,D"));
    EXPECT_EQ(changes, 0); // restoring is not the user's change

    auto* multi = make<TMultiEditComboBox_EF>("TMultiEditComboBox_EF", &top);
    multi->RestoreLayout(stored.ItemByName("Multi"));
    EXPECT_EQ(multi->Items(), QStringList({"мол*", "сыр"}));
    auto* edit = make<TMultiEdit_Frame>("TMultiEdit_Frame", &top);
    edit->RestoreLayout(stored.ItemByName("Edit"));
    EXPECT_EQ(edit->Items(), QStringList({"7"}));
    EXPECT_EQ(stored.ItemByName("Edit")->ItemByName("ListBox.RecordCount")->GetAsInteger(), 1);
    EXPECT_FALSE(stored.ItemByName("Edit")->IsExists("ListBox.Record1"));

    // A fixed list takes only the chosen index back, and only one within its items.
    auto* fixed = make<TComboBox_Frame>("TComboBox_Frame", &top);
    fixed->SetItems({"один", "два", "три"});
    TConfigItem node("Fixed");
    fixed->ComboBox->setCurrentIndex(2);
    fixed->SaveLayout(&node);
    EXPECT_EQ(node.Count(), 0); // the frame only reads its layout
    SaveLayout(&node, fixed->ComboBox);
    node.ItemByName("ComboBox")->ItemByName("Item0")->SetAsString("чужой");
    fixed->ComboBox->setCurrentIndex(0);
    fixed->RestoreLayout(&node);
    EXPECT_EQ(fixed->ComboBox->currentIndex(), 2);
    EXPECT_EQ(fixed->Items().value(0), QString("один"));
    node.ItemByName("ComboBox")->ItemByName("ItemIndex")->SetAsInteger(7);
    fixed->RestoreLayout(&node);
    EXPECT_EQ(fixed->ComboBox->currentIndex(), -1);
    EXPECT_TRUE(fixed->IsEmpty());
}

TEST(TextEdit, MultiValueFramesCollectEnteredValuesOnce) {
    test::TestHost host;
    QWidget top;
    auto* f = make<TMultiEditComboBox_EF>("TMultiEditComboBox_EF", &top);
    QSignalSpy changed(f, &TValueList_Frame::Changed);
    for (const char* t : {"мол*", "сыр", "мол*", "  "}) {
        typeText(f->ComboBox, t);
        QTest::keyClick(f->ComboBox, Qt::Key_Return);
        EXPECT_EQ(f->ComboBox->currentText(), QString());
    }
    EXPECT_EQ(f->ItemsList(), QString("мол*,сыр"));
    EXPECT_EQ(f->ComboBox->history(), QStringList({"мол*", "сыр"})); // entered again: on top
    EXPECT_EQ(changed.count(), 2);

    f->ListBox->setCurrentRow(0);
    QTest::keyClick(f->ListBox, Qt::Key_Delete);
    EXPECT_EQ(f->Items(), QStringList({"сыр"}));
    EXPECT_EQ(changed.count(), 3);
    f->SetReadOnly(true);
    QTest::keyClick(f->ListBox, Qt::Key_Delete);
    typeText(f->ComboBox, "хлеб");
    QTest::keyClick(f->ComboBox, Qt::Key_Return);
    EXPECT_EQ(f->Items(), QStringList({"сыр"}));

    auto* e = make<TMultiEdit_Frame>("TMultiEdit_Frame", &top);
    for (const char* t : {"100-0001", "100-0002"}) {
        typeText(e->Edit, t);
        QTest::keyClick(e->Edit, Qt::Key_Return);
    }
    EXPECT_EQ(e->ItemsList(), QString("100-0001,100-0002"));
    EXPECT_TRUE(e->Edit->text().isEmpty());
}

// On a dialog with a default button, Enter in either multi-value frame adds the value and goes
// no further: the dialog stays open.
TEST(TextEdit, EnterInAMultiValueFrameDoesNotReachTheDialogsDefaultButton) {
    test::TestHost host;
    for (const char* cls : {"TMultiEdit_Frame", "TMultiEditComboBox_EF"}) {
        SCOPED_TRACE(cls);
        QDialog dialog;
        auto* box = new QVBoxLayout(&dialog);
        auto* f = make<TValueList_Frame>(cls, &dialog);
        auto* ok = new QPushButton("OK", &dialog);
        ok->setDefault(true);
        QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
        box->addWidget(f);
        box->addWidget(ok);
        dialog.show();
        QApplication::setActiveWindow(&dialog);
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        QWidget* editor = qobject_cast<TMultiEdit_Frame*>(f)
                              ? static_cast<QWidget*>(qobject_cast<TMultiEdit_Frame*>(f)->Edit)
                              : qobject_cast<TMultiEditComboBox_EF*>(f)->ComboBox;
        for (const char* t : {"100-0001", ""}) {
            editor->setFocus();
            typeText(editor, t);
            QTest::keyClick(editor, Qt::Key_Return);
            EXPECT_TRUE(dialog.isVisible());
            EXPECT_EQ(dialog.result(), 0);
        }
        EXPECT_EQ(f->ItemsList(), QString("100-0001"));
        // Enter elsewhere on the dialog still presses OK.
        ok->setFocus();
        QTest::keyClick(ok, Qt::Key_Return);
        EXPECT_EQ(dialog.result(), int(QDialog::Accepted));
    }
}

TEST(TextEdit, EditComboHooksFilterKeysAndReportAFailedExit) {
    test::TestHost host;
    QWidget top;
    auto* f = make<TEditComboBox_EF>("TEditComboBox_EF", &top);
    int changes = 0;
    f->OnComboBoxChange = [&](QObject*) { ++changes; };
    f->OnComboBoxKeyPress = [](QObject*, QChar& key) {
        if (key == 'x')
            key = QChar();
        else if (key.isLower())
            key = key.toUpper();
    };
    typeText(f->ComboBox, "axb,c");
    EXPECT_EQ(f->Text(), QString("AB,C"));
    EXPECT_EQ(changes, 4);

    f->OnComboBoxExit = [](QObject*) { throw std::runtime_error("Группа задана не верна"); };
    top.show();
    f->ComboBox->setFocus();
    QApplication::processEvents();
    QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(f->ComboBox, &out);
    EXPECT_EQ(host.errors(), QStringList({"Группа задана не верна"}));
}

TEST(TextEdit, ValidatedEditsRejectBadInputSilently) {
    test::TestHost host;
    QWidget top;
    auto* articul = make<TDBEdit_Frame>("TArticul_EF", &top);
    auto* payment = make<TDBEdit_Frame>("TPaymentKind_EF", &top);
    auto* index = make<TDBEdit_Frame>("TDocIndex_EF", &top);
    ASSERT_TRUE(articul && payment && index);
    typeText(articul->DBEdit, "ab 1-x");
    typeText(payment->DBEdit, "1a2;3");
    typeText(index->DBEdit, "пр-1/b*");
    EXPECT_EQ(articul->DBEdit->text(), QString("AB1-X"));
    EXPECT_EQ(payment->DBEdit->text(), QString("123"));
    EXPECT_EQ(index->DBEdit->text(), QString("ПР-1/B"));
    EXPECT_TRUE(host.messages.empty());
}

TEST_F(TextOnEditDialog, CheckBoxAndMemoFramesBindOnlyWhenTheirFormSaysSo) {
    showList("select * from USERS order by ID_USER");
    ASSERT_TRUE(rows->locate("ID_USER", 9)); // not active
    auto* flag = make<TCheckBoxEdit_Frame>("TIntCheckBoxEdit_Frame", panel);
    flag->CheckBox->setDataField("IS_ACTIVE");
    auto* own = make<TCheckBoxEdit_Frame>("TCheckBoxEdt_Frame", panel);
    own->CheckBox->setDataField("IS_ACTIVE");
    flag->Init();
    own->Init();
    QTest::mouseClick(flag->CheckBox, Qt::LeftButton);
    EXPECT_EQ(rows->fieldByName("IS_ACTIVE")->asInteger(), 1);
    flag->Clear();
    EXPECT_EQ(rows->fieldByName("IS_ACTIVE")->asInteger(), 0);
    QTest::mouseClick(own->CheckBox, Qt::LeftButton);
    EXPECT_TRUE(own->Checked());
    EXPECT_EQ(rows->fieldByName("IS_ACTIVE")->asInteger(), 0);
    rows->cancel();

    ASSERT_TRUE(rows->locate("ID_USER", 3));
    auto* memo = make<TMemo_Frame>("TMemoEdit_Frame", panel);
    memo->Memo->setDataField("POST");
    auto* note = make<TMemo_Frame>("TMemo_Frame", panel);
    note->Memo->setDataField("POST");
    memo->Init();
    note->Init();
    EXPECT_EQ(memo->Text(), QString("Товаровед"));
    EXPECT_TRUE(note->IsEmpty());
    memo->Clear();
    EXPECT_TRUE(rows->fieldByName("POST")->isNull());
    rows->cancel();
}

TEST_F(TextOnEditDialog, EveryFrameOfTheFamilyIsCreatedFromItsDescription) {
    const QStringList classes =
        QString("TEdit_Frame TDBEdit_Frame TComboBox_Frame TEditComboBox_EF TMultiEdit_Frame "
                "TMultiEditComboBox_EF TDBComboBox_Frame TMemo_Frame TMemoEdit_Frame TRichEdit_Frame "
                "TCheckBoxEdit_Frame TCheckBoxEdt_Frame TIntCheckBoxEdit_Frame TEditEmail_Frame "
                "TEditSite_Frame TPriceType_EF TPartner_EF TArticul_EF TPaymentKind_EF TDocIndex_EF")
            .split(' ');
    QWidget top;
    for (const QString& cls : classes) {
        std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(cls, &top));
        f->Init();
        f->SetReadOnly(true);
        TConfigItem node(cls);
        f->SaveLayout(&node);
        f->RestoreLayout(&node);
        if (!cls.contains("CheckBox")) { // a free check box always holds a value
            EXPECT_TRUE(f->IsEmpty()) << cls.toStdString();
        }
        EXPECT_NO_THROW(f->Clear()) << cls.toStdString();
    }
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("; ").toStdString();
}
