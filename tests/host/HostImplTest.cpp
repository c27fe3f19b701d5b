// The workbench's host services: profile files, configuration, run constants, rights, forms.
#include "host/HostImpl.h"
#include "frames/core/RunParams.h"
#include "platform/db/Query.h"
#include "tests/support/DbFixture.h"
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardItemModel>
#include <QTableView>
#include <QTemporaryDir>
#include <QTextStream>
#include <tuple>

namespace frames::test {
namespace {

using workbench::HostImpl;

HostImpl::Settings quietSettings(const QString& root, const QString& user = {}) {
    HostImpl::Settings s;
    s.profileRoot = root;
    s.userName = user;
    s.interactive = false;
    return s;
}

QString readAll(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(f.readAll());
}

void writeFile(const QString& path, const QByteArray& data) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(data);
}

TEST(HostImplProfile, LayoutSurvivesARestartAndBadFilesFallBack) {
    QTemporaryDir root;
    ASSERT_TRUE(root.isValid());
    {
        HostImpl h(quietSettings(root.path()));
        EXPECT_FALSE(h.loadLayout()); // no file yet
        TConfigItem* node = h.LayoutRoot()->ItemByName("Browser")->ItemByName("TAlgoritm_LF");
        node->ItemByName("lcSelect.KeyValue")->SetAsInteger(6);
        node->ItemByName("Caption")->SetAsString("Алгоритм «ящичный»");
        h.LayoutRoot()->ItemByName("Flag")->SetAsBoolean(true);
        h.saveLayout();
    }
    {
        HostImpl h(quietSettings(root.path()));
        ASSERT_TRUE(h.loadLayout());
        TConfigItem* b = h.LayoutRoot()->Find("Browser");
        ASSERT_NE(b, nullptr);
        TConfigItem* node = b->Find("TAlgoritm_LF");
        ASSERT_NE(node, nullptr);
        EXPECT_EQ(node->ItemByName("lcSelect.KeyValue")->GetAsInteger(), 6);
        EXPECT_EQ(node->ItemByName("Caption")->GetAsString(), "Алгоритм «ящичный»");
        EXPECT_TRUE(h.LayoutRoot()->ItemByName("Flag")->GetAsBoolean());

        // A damaged file: ignored, the tree starts empty, and the trace says why.
        writeFile(h.layoutFile(), "{\"items\": {\"Browser\": ");
        EXPECT_FALSE(h.loadLayout());
        EXPECT_EQ(h.LayoutRoot()->Count(), 0);
        EXPECT_TRUE(readAll(h.traceFile()).contains("layout.json is not valid JSON"));
        // JSON that is not an object is no layout either.
        writeFile(h.layoutFile(), "[1, 2]");
        EXPECT_FALSE(h.loadLayout());
        EXPECT_EQ(h.LayoutRoot()->Count(), 0);
    }
    // Profiles are per user.
    HostImpl other(quietSettings(root.path(), "ivanov"));
    EXPECT_NE(other.ProfilePath(), HostImpl(quietSettings(root.path())).ProfilePath());
    EXPECT_FALSE(other.loadLayout());
}

TEST(HostImplProfile, ConfigurationDefaultsOverridesAndIni) {
    QTemporaryDir root;
    HostImpl h(quietSettings(root.path()));
    EXPECT_EQ(h.GetIntValue("WorkPeriodLenght"), 31);
    EXPECT_EQ(h.GetIntValue("NoSuchKey"), 0);
    EXPECT_EQ(h.PrecisionQuantityFormat(), ",0.###");

    writeFile(h.configFile(),
              R"({"WorkPeriodLenght": 45, "FindEcho": false, "PrecisionQuantityFormat": ",0.000"})");
    writeFile(h.iniFile(), "[Common]\nMCRecursive=1\n");
    HostImpl again(quietSettings(root.path()));
    EXPECT_EQ(again.GetIntValue("WorkPeriodLenght"), 45);
    EXPECT_EQ(again.GetIntValue("MaxWorkPeriodLenght"), 366); // not overridden
    EXPECT_FALSE(again.GetBoolValue("FindEcho"));
    EXPECT_EQ(again.PrecisionQuantityFormat(), ",0.000");
    EXPECT_EQ(again.IniString("Common", "MCRecursive", "0"), "1");
    EXPECT_EQ(again.IniString("Common", "MCToolBar", "dflt"), "dflt");

    writeFile(h.configFile(), "garbage");
    HostImpl broken(quietSettings(root.path()));
    EXPECT_EQ(broken.GetIntValue("WorkPeriodLenght"), 31);
    EXPECT_TRUE(readAll(broken.traceFile()).contains("config.json"));
}

TEST(HostImplTools, FindRowAndAddresses) {
    QStandardItemModel m(4, 2);
    const char* cells[4][2] = {
        {"Молоко", "1 л"}, {"Кефир", "ЁМКОСТЬ"}, {"Сыр", "весовой"}, {"Ёмкость", "5 л"}};
    for (int r = 0; r < 4; ++r)
        for (int c = 0; c < 2; ++c) m.setItem(r, c, new QStandardItem(QString::fromUtf8(cells[r][c])));
    QTableView view;
    view.setModel(&m);
    EXPECT_EQ(HostImpl::findRow(&view, "ёмкость"), 1);    // any column, case-insensitive
    EXPECT_EQ(HostImpl::findRow(&view, "ёмкость", 1), 3); // from the row after the current
    EXPECT_EQ(HostImpl::findRow(&view, "ёмкость", 3), 1); // wraps
    view.setColumnHidden(1, true);
    EXPECT_EQ(HostImpl::findRow(&view, "ёмкость"), 3); // hidden columns do not count
    EXPECT_EQ(HostImpl::findRow(&view, "нет"), -1);
    EXPECT_EQ(HostImpl::findRow(&view, ""), -1);

    EXPECT_EQ(HostImpl::addressUrl("shop@torg.example"), "mailto:shop@torg.example");
    EXPECT_EQ(HostImpl::addressUrl(" torg.example/price "), "http://torg.example/price");
    EXPECT_EQ(HostImpl::addressUrl("https://torg.example"), "https://torg.example");
    EXPECT_EQ(HostImpl::addressUrl("mailto:a@b.c"), "mailto:a@b.c");
    EXPECT_EQ(HostImpl::addressUrl("  "), "");
}

class HostImplDb : public DbTest {
protected:
    void TearDown() override {
        setHost(host.get()); // the test host goes back in before it is torn down
        DbTest::TearDown();
    }
    QTemporaryDir root;
};

TEST_F(HostImplDb, RunConstantsRightsAndSession) {
    {
        HostImpl h(quietSettings(root.path()));
        setHost(&h);
        h.openDatabase(databasePath());
        EXPECT_EQ(CUR_USER, 1);
        EXPECT_EQ(CUR_FILIALINDEX, 101);
        EXPECT_EQ(CUR_SHOPINDEX, 1);
        EXPECT_GT(h.SessionNumber(), 0);
        EXPECT_TRUE(h.IsFuncRights("CRM.LOGIN"));
        EXPECT_TRUE(h.IsFuncRights("S_Main.SHOW_MX_COUNT"));
        EXPECT_FALSE(h.IsFuncRights("crm.login")); // right names are exact
        EXPECT_FALSE(h.IsFuncRights("NO.SUCH.RIGHT"));
        EXPECT_TRUE(h.pfReadTransaction()->active() && h.pfReadTransaction()->options().readOnly);
        EXPECT_TRUE(readAll(h.traceFile()).contains("Database opened"));
    }
    {
        HostImpl h(quietSettings(root.path(), "sidorov"));
        setHost(&h);
        h.openDatabase(databasePath());
        EXPECT_EQ(CUR_USER, 5);
        EXPECT_EQ(CUR_FILIALINDEX, 104);
        EXPECT_EQ(CUR_SHOPINDEX, 1);
        EXPECT_FALSE(h.IsFuncRights("CRM.LOGIN"));
    }
    // The classifier subset and type come from the user's row too, and a user who has none of
    // his own does not keep the one before.
    for (const auto& [user, setFor, classifType] :
         {std::tuple{"yakovleva", 4, 27}, {"petrova", 0, 1001}, {"ivanov", 0, 0}}) {
        HostImpl h(quietSettings(root.path(), user));
        setHost(&h);
        h.openDatabase(databasePath());
        EXPECT_EQ(GLOBAL_PAR_SET_FOR, setFor) << user;
        EXPECT_EQ(GLOBAL_PAR_CLASSIF_TYPE, classifType) << user;
    }
    HostImpl h(quietSettings(root.path()));
    EXPECT_THROW(h.openDatabase(root.filePath("missing/none.fdb")), db::Error);
}

// The session attaches as its user (the embedded engine takes the name as given), so that the
// database's own idea of the user (CURRENT_USER, CUR_USER) is his; names that are no login, or
// that the USERS table does not know, are refused before anything is read or written.
TEST_F(HostImplDb, TheSessionIsItsUserAndOddNamesAreRefused) {
    {
        HostImpl h(quietSettings(root.path(), "ElKiNa"));
        setHost(&h);
        h.openDatabase(databasePath());
        db::Query q(h.RvDatabase(), h.pfReadTransaction());
        q.setSql("select current_user, (select ID_USER from CUR_USER) from rdb$database");
        q.open();
        ASSERT_TRUE(q.next());
        EXPECT_EQ(q.value(0).toString().trimmed(), "ELKINA");
        EXPECT_EQ(q.value(1).toInt(), 3);
        q.close();
        EXPECT_EQ(CUR_USER, 3);
        EXPECT_EQ(CUR_FILIALINDEX, 201);
        EXPECT_TRUE(h.ProfilePath().endsWith("/ELKINA"));
    }
    const QStringList odd = {"nobody",  "..",
                             "../x",    "a/b",
                             "o'brien", "x\"y",
                             "a b",     "",
                             "x;drop",  QString(70, 'A'),
                             "Иванов",  QString("iv") + QChar(0) + "anov",
                             "-1",      "SYSDBA.."};
    for (const QString& name : odd) {
        if (name.isEmpty()) continue; // empty is the administrator, tested above
        HostImpl h(quietSettings(root.path(), name));
        try {
            h.openDatabase(databasePath());
            ADD_FAILURE() << "accepted user " << name.toStdString();
        } catch (const db::Error& e) {
            EXPECT_TRUE(e.userText().contains(name == "nobody" ? "не зарегистрирован" : "Недопустимое имя"))
                << e.userText().toStdString();
        }
        EXPECT_FALSE(h.RvDatabase());
        // Whatever the name, the profile folder is one plain folder inside the profiles folder.
        const QFileInfo profile(h.ProfilePath());
        EXPECT_EQ(QDir(profile.absolutePath()).canonicalPath(), QDir(root.path()).canonicalPath())
            << h.ProfilePath().toStdString();
        EXPECT_FALSE(profile.fileName().contains('.')) << h.ProfilePath().toStdString();
    }
}

TEST_F(HostImplDb, ModuleRunnerKnowsTheReferenceForms) {
    HostImpl h(quietSettings(root.path()));
    setHost(&h);
    h.openDatabase(databasePath());
    // One object per form, each with a reference number of its own.
    ASSERT_NE(h.RvGetForm("Algoritm"), nullptr);
    EXPECT_EQ(h.RvGetForm("Algoritm"), h.RvGetForm("Algoritm"));
    EXPECT_GT(h.RvGetForm("Algoritm")->property("RefNumber").toInt(), 0);
    EXPECT_NE(h.RvGetForm("Algoritm")->property("RefNumber"),
              h.RvGetForm("UsersForm")->property("RefNumber"));
    EXPECT_EQ(h.RvGetForm("NoSuchForm"), nullptr);

    TRunParams p;
    p.KeyValue = 3;
    EXPECT_EQ(h.RunModule("NoSuchForm", p), 2);
    EXPECT_EQ(p.KeyValue.toInt(), 3);
    ASSERT_FALSE(h.loggedMessages().isEmpty());
    EXPECT_TRUE(h.loggedMessages().last().contains("NoSuchForm"));
    // Without a user a known form is not shown: cancelled, the key is kept.
    EXPECT_EQ(h.RunModule("Algoritm", p), 2);
    EXPECT_EQ(p.KeyValue.toInt(), 3);
    EXPECT_FALSE(h.QuestionBox("Удалить?"));
}

} // namespace
} // namespace frames::test
