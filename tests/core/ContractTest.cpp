#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/Error.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QJsonDocument>
#include <QVBoxLayout>

using namespace frames;

namespace {

// Records which override ran at which step of creation.
class TProbe_EF : public TAbsEditFrame {
public:
    using TAbsEditFrame::TAbsEditFrame;
    void AfterConstruction() override { captionAtAfterConstruction = Caption(); }
    QString captionAtAfterConstruction = "not called";
};

} // namespace

TEST(Contract, RegistryCreatesInTwoStepsAfterApplyingTheDescriptionChain) {
    test::TestHost host;
    Registry::instance().add({"TProbe_EF", "test", [](QWidget* p) { return new TProbe_EF(p); }});
    std::unique_ptr<TAbsEditFrame> probe(Registry::instance().create("TProbe_EF"));
    EXPECT_EQ(static_cast<TProbe_EF*>(probe.get())->captionAtAfterConstruction, QString(""));

    std::unique_ptr<TAbsEditFrame> f(Registry::instance().create("TCardType_LF"));
    auto* lf = qobject_cast<TAbs_LF*>(f.get());
    ASSERT_NE(lf, nullptr);
    EXPECT_EQ(lf->lcSelect->lookupField(), QString("ID_CARDTYPE"));
    EXPECT_EQ(lf->lcSelect->dropDownCount(), 8); // from the inherited description
    EXPECT_EQ(lf->RunParams.Mode, 1);            // AfterConstruction ran after the description
    EXPECT_TRUE(lf->lcSelect->showButton());

    std::unique_ptr<TAbsEditFrame> noForm(Registry::instance().create("TCardKind_LF"));
    EXPECT_FALSE(qobject_cast<TAbs_LF*>(noForm.get())->lcSelect->showButton());

    EXPECT_THROW(Registry::instance().create("TNoSuchFrame_LF"), std::runtime_error);
    EXPECT_THROW(f->Clear(), std::logic_error); // lookups leave Clear unimplemented
}

TEST(Contract, DescriptionNamingAnUnknownComponentOrPropertyFailsLoudly) {
    test::TestHost host;
    TAbs_LF frame;
    auto apply = [&](const char* json) {
        try {
            FormLoader::applyDescription(&frame, QJsonDocument::fromJson(json).object(), "TBroken_LF");
        } catch (const std::runtime_error& e) {
            return QString::fromUtf8(e.what());
        }
        return QString();
    };
    EXPECT_TRUE(apply(R"({"components": {"lcSelct": {"DataField": "X"}}})").contains("lcSelct"));
    const QString badProp = apply(R"({"components": {"lcSelect": {"DataFeld": "X"}}})");
    EXPECT_TRUE(badProp.contains("DataFeld") && badProp.contains("TBroken_LF")) << badProp.toStdString();
    EXPECT_TRUE(apply(R"({"properties": {"NoSuch": 1}})").contains("NoSuch"));
    EXPECT_EQ(apply(R"({"components": {"pFIBDataSet1": {"SelectSQL": ["a", "b"]}}})"), QString());
    EXPECT_EQ(frame.pFIBDataSet1->selectSql(), QString("a\nb")); // a list of lines is one text
}

TEST(Contract, OwnerIsTheNearestFrameOrHostFormThroughPlainPanels) {
    test::TestHost host;
    TfmLayer1_FIB list;
    auto* dlg = new TfmAbsEditDlg(&list);
    auto* panel = new QWidget(dlg);
    auto* box = new QWidget(panel);
    auto* outer = new TAbsEditFrame(box);
    auto* innerPanel = new QWidget(outer);
    auto* inner = new TAbsEditFrame(innerPanel);
    EXPECT_EQ(outer->Owner(), dlg);
    EXPECT_EQ(inner->Owner(), outer);

    db::DataSource source;
    list.SetCurrentSource(&source);
    EXPECT_EQ(editDialogBinding(outer), &source);
    EXPECT_EQ(editDialogBinding(inner), nullptr); // owner is a frame, not the dialog

    TfmPersistentForm plain;
    auto* dlg2 = new TfmAbsEditDlg(&plain);
    auto* f2 = new TAbsEditFrame(dlg2);
    EXPECT_EQ(editDialogBinding(f2), nullptr); // dialog not owned by a list form
}

TEST(Contract, LayoutTreeSurvivesJsonAndReadsOnlyWhatExists) {
    TConfigItem root("Layout");
    TConfigItem* node = root.ItemByName("Frame1");
    node->ItemByName("cbSet.Checked")->SetAsBoolean(true);
    node->ItemByName("Rate")->SetAsFloat(12.5);
    node->ItemByName("lcSelect.KeyValue")->SetAsString("Кириллица");

    TConfigItem back;
    back.fromJson(QJsonDocument::fromJson(QJsonDocument(root.toJson()).toJson()).object());
    TConfigItem* b = back.Find("frame1"); // names compare without case
    ASSERT_NE(b, nullptr);
    EXPECT_TRUE(b->ItemByName("cbSet.Checked")->GetAsBoolean());
    EXPECT_DOUBLE_EQ(b->ItemByName("Rate")->GetAsFloat(), 12.5);
    EXPECT_EQ(b->ItemByName("lcSelect.KeyValue")->GetAsString(), QString("Кириллица"));
    EXPECT_FALSE(b->IsExists("ToDate"));
    EXPECT_FALSE(b->ItemByName("ToDate")->HasValue()); // created on demand, empty

    // Children keep the order they were made in; a removed one is gone from the lookup too.
    root.ItemByName("Alpha");
    root.ItemByName("ёлка");
    EXPECT_EQ(root.Find("ЁЛКА"), root.Item(2));
    root.Remove("frame1");
    EXPECT_FALSE(root.IsExists("Frame1"));
    EXPECT_EQ(root.Count(), 2);
    EXPECT_EQ(root.Item(0)->Name(), "Alpha");
    TConfigItem* again = root.ItemByName("FRAME1");
    EXPECT_EQ(again, root.Item(2));
    EXPECT_EQ(QString::fromUtf8(root.toJsonText(false)),
              QString::fromUtf8(R"({"items":{"Alpha":{},"ёлка":{},"FRAME1":{}}})"));
}

TEST(Contract, GuardSwallowsTheSilentAbortAndReportsEverythingElse) {
    test::TestHost host;
    EXPECT_FALSE(guard([] { Abort(); }));
    EXPECT_TRUE(host.messages.empty());
    EXPECT_FALSE(guard([] { throw db::Error(db::Error::Kind::LockConflict, "lock conflict on no wait"); }));
    EXPECT_FALSE(guard([] { throw std::runtime_error("broken"); }));
    EXPECT_TRUE(guard([] {}));
    // The user is told in words, not in the server's.
    ASSERT_EQ(host.errors(), (QStringList{db::Error::lockConflictText(), "broken"}));
}

TEST(Contract, StatementsQuoteWhatTheyInsert) {
    EXPECT_EQ(StrParam("O'Brien"), QString("'O''Brien'"));
    EXPECT_EQ(SqlText({"select * from CLIENTS where NAME = ", StrParam("x' or '1'='1"), " and ID > ", 5}),
              QString("select * from CLIENTS where NAME = 'x'' or ''1''=''1' and ID > 5"));
    EXPECT_EQ(SqlLiteral(QDate(2024, 2, 29)), QString("'2024-02-29'"));
}

class TyapiTest : public test::DbTest {};

TEST_F(TyapiTest, ExecCommitsAtOnceAndRollsBackOnError) {
    QvSqlExec({"insert into ALGORITM (ID, NAME) values (", 900, ", ", StrParam("Д'Артаньян"), ")"});
    // Seen from another connection: committed.
    auto other = secondConnection();
    db::Transaction tr(other.get(), db::TransactionOptions::read());
    tr.start();
    db::Query q(other.get(), &tr);
    q.setSql("select NAME from ALGORITM where ID = 900");
    q.open();
    ASSERT_TRUE(q.next());
    EXPECT_EQ(q.value(0).toString(), QString("Д'Артаньян"));
    q.close();
    tr.commit();

    EXPECT_THROW(QvSqlExec({"insert into ALGORITM (ID, NAME) values (", 900, ", 'dup')"}), db::Error);
    EXPECT_EQ(QvSqlValue({"select count(*) from ALGORITM where ID = ", 900}).toInt(), 1);
}
