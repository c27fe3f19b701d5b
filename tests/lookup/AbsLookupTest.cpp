#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/MemTable.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QAbstractItemView>
#include <QComboBox>
#include <QTest>
#include <QVBoxLayout>

using namespace frames;

namespace {

using test::makeFrame;

// A list form over the goods cards with an edit dialog owned by it: the real owner chain.
class LookupOnEditDialog : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        list = std::make_unique<TfmLayer1_FIB>();
        cards = new db::DataSet(host->RvDatabase(), host->pfReadTransaction(), list.get());
        cards->setSelectSql("select * from CARD order by ID");
        cards->open();
        cardsSource = new db::DataSource(cards, list.get());
        list->SetCurrentSource(cardsSource);
        dialog = new TfmAbsEditDlg(list.get());
        panel = new QWidget(dialog); // a plain panel between the dialog and the frame
        new QVBoxLayout(panel);
    }
    void TearDown() override {
        list.reset();
        DbTest::TearDown();
    }
    void gotoCard(const QString& where) {
        const int id = scalar("select first 1 id from CARD where " + where + " order by id").toInt();
        ASSERT_TRUE(cards->locate("ID", id));
    }
    int traceLines(const QString& prefix) const {
        int n = 0;
        for (auto& l : host->trace) n += l.startsWith(prefix);
        return n;
    }

    std::unique_ptr<TfmLayer1_FIB> list;
    db::DataSet* cards = nullptr;
    db::DataSource* cardsSource = nullptr;
    TfmAbsEditDlg* dialog = nullptr;
    QWidget* panel = nullptr;
};

} // namespace

TEST_F(LookupOnEditDialog, ViewedRecordReadsOneRowThroughRefreshSqlAndInsertReadsTheList) {
    gotoCard("ALGORITM = 6");
    TAbs_LF* viewed = makeFrame("TAlgoritm_LF", panel);
    ASSERT_EQ(viewed->Owner(), dialog);
    viewed->Init();
    EXPECT_EQ(viewed->lcSelect->dataSource(), cardsSource);
    EXPECT_EQ(viewed->pFIBDataSet1->recordCount(), 1);
    EXPECT_EQ(viewed->lcSelect->keyValue().toInt(), 6);
    // The stored name starts with a lower-case я and shows capitalised.
    EXPECT_EQ(viewed->lcSelect->displayText(), QString("Ящичный расчёт по кратности"));
    ASSERT_EQ(traceLines("1: Change Lookup SQL: select id,name from ALGORITM where id=:id"), 1);

    // A system row is excluded from the list but is still shown for a record that points at it.
    exec("update CARD set ALGORITM = -1 where id = (select min(id) from CARD)");
    cards->reopen();
    cards->first();
    TAbs_LF* system = makeFrame("TAlgoritm_LF", panel);
    system->Init();
    EXPECT_EQ(system->lcSelect->displayText(), QString("<Не задан>"));

    host->trace.clear();
    cards->append();
    TAbs_LF* inserting = makeFrame("TAlgoritm_LF", panel);
    inserting->Init();
    EXPECT_EQ(inserting->pFIBDataSet1->recordCount(),
              scalar("select count(*) from ALGORITM where id<>-1").toInt());
    EXPECT_EQ(traceLines("1: Change Lookup SQL"), 0);
    cards->cancel();
}

TEST_F(LookupOnEditDialog, BlankRefreshSqlAndFreeStandingFramesReadTheWholeList) {
    const int all = scalar("select count(*) from ALGORITM where id<>-1").toInt();
    TAbs_LF* blank = makeFrame("TAlgoritm_LF", panel);
    blank->pFIBDataSet1->setRefreshSql("  \n\t \n");
    blank->Init();
    EXPECT_EQ(blank->pFIBDataSet1->recordCount(), all);

    QWidget top;
    TAbs_LF* free = makeFrame("TAlgoritm_LF", &top);
    EXPECT_EQ(free->Owner(), nullptr);
    free->Init();
    EXPECT_EQ(free->lcSelect->dataSource(), nullptr);
    EXPECT_EQ(free->pFIBDataSet1->recordCount(), all);
    EXPECT_EQ(traceLines("1: Change Lookup SQL"), 0);
}

// Empty means null or never assigned, not zero or empty text; Delete clears only without
// modifiers, on an editable frame that allows it.
TEST_F(LookupOnEditDialog, IsEmptyAndDeleteKey) {
    gotoCard("CARDKIND is null");
    TAbs_LF* bound = makeFrame("TCardKind_LF", panel);
    bound->Init();
    EXPECT_TRUE(bound->IsEmpty());

    QWidget top;
    TAbs_LF* f = makeFrame("TCardKind_LF", &top);
    f->Init();
    EXPECT_TRUE(f->IsEmpty()); // never assigned
    f->lcSelect->setKeyValue(QVariant(0));
    EXPECT_FALSE(f->IsEmpty());
    f->lcSelect->setKeyValue(QVariant(QString("")));
    EXPECT_FALSE(f->IsEmpty());
    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };
    f->lcSelect->setKeyValue(2);
    changes = 0;

    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete, Qt::ControlModifier);
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete, Qt::ShiftModifier);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 2);
    EXPECT_EQ(changes, 0);

    f->SetReadOnly(true);
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 2);

    f->SetReadOnly(false);
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete);
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(changes, 1); // the frame's own call; the combo did not handle the key again

    f->lcSelect->setKeyValue(3);
    f->lcSelect->setEscapeClear(false);
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete);
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 3);
}

TEST(LookupFieldText, OnlyALeadingLowerCaseYaIsCapitalised) {
    test::TestHost host; // the frame needs no database for its text event
    TAbs_LF frame;
    db::MemTable t;
    t.addFieldDef("NAME", db::FieldType::VarChar, 40);
    t.open();
    t.fieldByName("NAME")->getText = [&](const db::Field& f, QString& text, bool display) {
        frame.FieldGetText(f, text, display);
    };
    auto shown = [&](const QString& stored) {
        t.append();
        t.fieldByName("NAME")->setAsString(stored);
        t.post();
        return t.fieldByName("NAME")->displayText();
    };
    EXPECT_EQ(shown("яблоко"), QString("Яблоко"));
    EXPECT_EQ(shown("я"), QString("Я"));
    for (const char* kept : {"ёж", "Ящик", "моя яблоня", ""}) EXPECT_EQ(shown(kept), QString(kept));
}

TEST_F(LookupOnEditDialog, ConfirmedDialogWritesTheKeyIntoTheBoundRecord) {
    gotoCard("ALGORITM = 1");
    const auto cardId = cards->fieldByName("ID")->value();
    TAbs_LF* f = makeFrame("TAlgoritm_LF", panel);
    f->Init();
    int reopened = 0, edits = 0, changes = 0;
    f->pFIBDataSet1->afterOpen.connect([&](db::AbstractDataSet&) { ++reopened; });
    cards->beforeEdit.connect([&](db::AbstractDataSet&) { ++edits; });
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };

    host->scriptRunResult(1, 3);
    f->lcSelect->OnDlgClick(f->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    const auto& run = host->runs[0];
    EXPECT_EQ(run.formName, QString("Algoritm"));
    EXPECT_EQ(run.params.KeyFieldName, QString("ID"));
    EXPECT_EQ(run.params.KeyValue.toInt(), 1);
    EXPECT_EQ(run.params.Mode, 1);
    EXPECT_EQ(run.params.Transaction, cards->transaction());
    EXPECT_EQ(reopened, 1);
    EXPECT_EQ(edits, 1);
    EXPECT_EQ(cards->state(), db::DataSetState::Edit);
    EXPECT_EQ(cards->fieldByName("ALGORITM")->asInteger(), 3);
    EXPECT_EQ(cards->fieldByName("ID")->value(), cardId);
    EXPECT_EQ(f->LastKey.toInt(), 3);
    EXPECT_EQ(dialog->ChangeCount(), 1);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();

    // Cancelled: nothing changes, but the list is read again.
    host->scriptRunResult(2);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(reopened, 2);
    EXPECT_EQ(cards->fieldByName("ALGORITM")->asInteger(), 3);
    EXPECT_FALSE(f->LastKey.isValid());
    EXPECT_EQ(dialog->ChangeCount(), 1);
    EXPECT_EQ(changes, 1);
    // Choosing a row in the list notifies the owning dialog too.
    f->lcSelectClick(f->lcSelect);
    EXPECT_EQ(dialog->ChangeCount(), 2);
    cards->cancel();

    // A record already being inserted is not put into edit state.
    cards->append();
    edits = 0;
    host->scriptRunResult(1, 3);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(edits, 0);
    EXPECT_EQ(cards->state(), db::DataSetState::Insert);
    EXPECT_EQ(cards->fieldByName("ALGORITM")->asInteger(), 3);
    cards->cancel();
}

TEST_F(LookupOnEditDialog, FreeStandingDialogSetsTheKeyAndFiresTheChangeHandlerOnce) {
    QWidget top;
    TAbs_LF* f = makeFrame("TCardType_LF", &top);
    f->Init();
    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };
    host->scriptRunResult(1, 2);
    f->lcSelect->OnDlgClick(f->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].params.Transaction, TRunParams::NoTransaction());
    EXPECT_FALSE(host->runs[0].params.KeyValue.isValid());
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 2);
    EXPECT_EQ(changes, 1);
    EXPECT_TRUE(f->lcSelect->OnChange != nullptr); // the handler was put back

    // Read-only: the button ends silently, no form and no message.
    f->SetReadOnly(true);
    f->lcSelect->OnDlgClick(f->lcSelect);
    EXPECT_EQ(host->runs.size(), 1u);
    EXPECT_TRUE(host->messages.empty());
}

TEST_F(LookupOnEditDialog, MissingParameterIsReportedWithTheStatement) {
    TAbs_LF* f = makeFrame("TAlgoritm_LF", panel);
    f->pFIBDataSet1->setRefreshSql("select id,name from ALGORITM where id=:key_id");
    EXPECT_FALSE(guard([&] { f->Init(); }));
    ASSERT_EQ(host->errors().size(), 1);
    EXPECT_TRUE(host->errors()[0].contains("ID")) << host->errors()[0].toStdString();
    EXPECT_TRUE(host->errors()[0].contains("where id=:key_id")) << host->errors()[0].toStdString();

    TAbs_LF* g = makeFrame("TAlgoritm_LF", panel);
    g->lcSelect->setDataField("NO_SUCH_COLUMN");
    EXPECT_FALSE(guard([&] { g->Init(); }));
    ASSERT_EQ(host->errors().size(), 2);
    EXPECT_TRUE(host->errors()[1].contains("NO_SUCH_COLUMN")) << host->errors()[1].toStdString();
}

TEST_F(LookupOnEditDialog, FormCloseShutsAnOpenListWithoutTakingTheHighlightedRow) {
    QWidget top;
    TAbs_LF* f = makeFrame("TCardType_LF", &top);
    f->Init();
    top.show();
    f->lcSelect->setKeyValue(2);
    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };
    f->lcSelect->dropDown();
    ASSERT_TRUE(f->lcSelect->isDroppedDown());
    QComboBox* combo = f->lcSelect->comboBox();
    const int other = combo->currentIndex() == 0 ? 1 : 0;
    combo->view()->setCurrentIndex(combo->model()->index(other, 0));
    f->FormClose();
    EXPECT_FALSE(f->lcSelect->isDroppedDown());
    EXPECT_EQ(f->lcSelect->keyValue().toInt(), 2);
    EXPECT_EQ(changes, 0);
}
