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

QByteArray readBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& data) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    f.write(data);
}

TEST(HostImplProfile, LayoutSurvivesARestart) {
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
}

// The files in the profile folder that were moved aside as <name>.broken-<time>.
QStringList brokenFiles(const QString& profile, const QString& name) {
    return QDir(profile).entryList({name + ".broken-*"}, QDir::Files, QDir::Name);
}

// Every kind of unreadable layout.json is moved aside unchanged, the user is told once in
// Russian, the session starts with an empty layout, and saving writes a fresh file beside the
// kept one.
TEST(HostImplProfile, UnreadableLayoutIsMovedAsideAndTheUserIsTold) {
    QByteArray deep;
    for (int i = 0; i < TConfigItem::MaxDepth + 5; ++i) deep += "{\"items\": {\"n\": ";
    deep += "{}";
    for (int i = 0; i < TConfigItem::MaxDepth + 5; ++i) deep += "}}";
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"truncated", "{\"items\": {\"Browser\": {\"items\": {\"x\": {\"value\": 1"},
        {"garbage", QByteArray("\x00\xff\xfe garbage \x01", 13)},
        {"empty file", ""},
        {"not an object", "[1, 2]"},
        {"too deep", deep},
        {"deeper than JSON allows", QByteArray(5000, '[') + QByteArray(5000, ']')},
        {"items not an object", "{\"items\": [1, 2]}"},
        {"item not an object", "{\"items\": {\"Browser\": 5}}"},
        {"value an object", "{\"items\": {\"Browser\": {\"value\": {\"a\": 1}}}}"},
    };
    for (const auto& [what, content] : cases) {
        SCOPED_TRACE(what);
        QTemporaryDir root;
        HostImpl h(quietSettings(root.path()));
        writeFile(h.layoutFile(), content);
        h.LayoutRoot()->ItemByName("Stale")->SetAsInteger(1);
        EXPECT_FALSE(h.loadLayout());
        EXPECT_EQ(h.LayoutRoot()->Count(), 0);
        EXPECT_FALSE(QFile::exists(h.layoutFile()));
        const QStringList kept = brokenFiles(h.ProfilePath(), "layout.json");
        ASSERT_EQ(kept.size(), 1);
        EXPECT_EQ(readBytes(h.ProfilePath() + "/" + kept[0]), content);
        ASSERT_EQ(h.loggedMessages().size(), 1);
        EXPECT_TRUE(h.loggedMessages()[0].startsWith("warning: Не удалось прочитать файл раскладки окон"));
        EXPECT_TRUE(h.loggedMessages()[0].contains(kept[0]));
        EXPECT_TRUE(readAll(h.traceFile()).contains("layout.json is unreadable"));

        // The session goes on with a fresh layout; the kept file stays as it was.
        h.LayoutRoot()->ItemByName("New")->SetAsInteger(2);
        h.saveLayout();
        HostImpl again(quietSettings(root.path()));
        ASSERT_TRUE(again.loadLayout());
        EXPECT_EQ(again.LayoutRoot()->ItemByName("New")->GetAsInteger(), 2);
        EXPECT_TRUE(again.loggedMessages().isEmpty()); // told once, not at every start
        EXPECT_EQ(brokenFiles(h.ProfilePath(), "layout.json"), kept);
    }
}

TEST(HostImplProfile, UnreadableConfigurationIsMovedAsideAndDefaultsApply) {
    const std::vector<std::pair<const char*, QByteArray>> cases = {
        {"garbage", "garbage"},
        {"truncated", "{\"WorkPeriodLenght\": 4"},
        {"not an object", "\"text\""},
        {"number as text", "{\"WorkPeriodLenght\": \"45\"}"},
        {"switch as number", "{\"FindEcho\": 1}"},
        {"nested value", "{\"PrecisionCurFormat\": {\"a\": 1}}"},
        {"array value", "{\"SomeKey\": [1]}"},
    };
    for (const auto& [what, content] : cases) {
        SCOPED_TRACE(what);
        QTemporaryDir root;
        const QString profile = HostImpl(quietSettings(root.path())).ProfilePath();
        writeFile(profile + "/config.json", content);
        HostImpl h(quietSettings(root.path()));
        EXPECT_EQ(h.GetIntValue("WorkPeriodLenght"), 31);
        EXPECT_TRUE(h.GetBoolValue("FindEcho"));
        EXPECT_EQ(h.PrecisionCurFormat(), ",0.00");
        const QStringList kept = brokenFiles(profile, "config.json");
        ASSERT_EQ(kept.size(), 1);
        EXPECT_EQ(readBytes(profile + "/" + kept[0]), content);
        EXPECT_FALSE(QFile::exists(h.configFile()));
        ASSERT_EQ(h.loggedMessages().size(), 1);
        EXPECT_TRUE(h.loggedMessages()[0].startsWith("warning: Не удалось прочитать файл настроек"));
        EXPECT_TRUE(readAll(h.traceFile()).contains("config.json is unreadable"));
    }
    // Two broken files in the same second keep both.
    QTemporaryDir root;
    const QString profile = HostImpl(quietSettings(root.path())).ProfilePath();
    writeFile(profile + "/config.json", "first");
    HostImpl first(quietSettings(root.path()));
    writeFile(profile + "/config.json", "second");
    HostImpl second(quietSettings(root.path()));
    EXPECT_EQ(brokenFiles(profile, "config.json").size(), 2);
}

// A layout of 200,000 items is written and read back whole (the time it takes is measured by
// the layout benchmark, not here).
TEST(HostImplProfile, HugeLayoutLoads) {
    QTemporaryDir root;
    HostImpl h(quietSettings(root.path()));
    for (int form = 0; form < 200; ++form) {
        TConfigItem* node = h.LayoutRoot()->ItemByName(QString("Form%1").arg(form));
        for (int i = 0; i < 999; ++i)
            node->ItemByName(QString("Item%1").arg(i))->SetAsInteger(form * 1000 + i);
    }
    h.saveLayout();
    HostImpl again(quietSettings(root.path()));
    ASSERT_TRUE(again.loadLayout());
    ASSERT_EQ(again.LayoutRoot()->Count(), 200);
    EXPECT_EQ(again.LayoutRoot()->Item(199)->Count(), 999);
    EXPECT_EQ(again.LayoutRoot()->Find("form150")->Find("ITEM998")->GetAsInteger(), 150998);
    EXPECT_EQ(again.LayoutRoot()->Item(0)->Item(0)->Name(), "Item0"); // order kept
    EXPECT_EQ(again.LayoutRoot()->Item(0)->Item(998)->Name(), "Item998");
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
