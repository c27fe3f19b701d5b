// Several users, locks and lost connections on the private Firebird server of the test run.
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/edit/EF_CalcEdit.h"
#include "frames/lookup/LF_ParamLookup.h"
#include "frames/medit/ME_Edit.h"
#include "host/DocumentForms.h"
#include "host/FrameHostForms.h"
#include "host/HostImpl.h"
#include "host/MassEdit.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "tests/server/HostSessions.h"
#include "tests/support/ServerFixture.h"
#include <QElapsedTimer>
#include <QProcess>
#include <deque>

namespace frames::test {
namespace {

using workbench::FrameEditDialog;
using workbench::HostImpl;
using workbench::RecordListForm;

// The workbench's host with scripted answers to its questions (without a user it answers No).
class AnsweringHost : public HostImpl {
public:
    using HostImpl::HostImpl;
    bool QuestionBox(const QString& text) override {
        HostImpl::QuestionBox(text);
        if (answers.empty()) return false;
        const bool a = answers.front();
        answers.pop_front();
        return a;
    }
    bool said(const QString& part) const {
        for (const QString& m : loggedMessages())
            if (m.contains(part)) return true;
        return false;
    }
    std::deque<bool> answers;
};

class OnServer : public ServerTest {
protected:
    void TearDown() override {
        setHost(nullptr);
        hosts_.clear();
        ServerTest::TearDown();
    }
    // A session of the workbench on the server as that user, installed as the frames' host.
    AnsweringHost* session(const QString& login) { return hosts_.open(login, connectString()); }
    double amount(int id) {
        return scalar(QStringLiteral("select AMOUNT from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id))
            .toDouble();
    }
    // The document list of a session, on the document of that number.
    std::unique_ptr<RecordListForm> documents(HostImpl* h,
                                              const QString& number = QStringLiteral("ПП-000101")) {
        setHost(h);
        std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(h));
        EXPECT_TRUE(list->records()->locate(QStringLiteral("DOC_NUMBER"), number));
        return list;
    }
    // Opens the edit dialog of the list's current document, types an amount and presses OK.
    static void typeAmountAndSave(HostImpl* h, FrameEditDialog& dlg, double value) {
        setHost(h);
        auto* calc = qobject_cast<TCalcEdit_Frame*>(dlg.frame(QStringLiteral("TCalcEdit_Frame")));
        ASSERT_NE(calc, nullptr);
        calc->SetValue(value);
        dlg.accept();
    }

    HostSessions<AnsweringHost> hosts_;
};

QSet<int> branchesOf(HostImpl* h) {
    setHost(h);
    QWidget top;
    std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(QStringLiteral("TFilial_LF"), &top));
    auto* lf = qobject_cast<TFilial_LF*>(f.get());
    if (!lf) return {};
    lf->Init();
    QSet<int> ids;
    db::DataSet* ds = lf->pFIBDataSet1;
    for (ds->first(); !ds->eof(); ds->next())
        ids << ds->fieldByName(QStringLiteral("ID_TH_CLASSIF"))->asInteger();
    lf->FormClose();
    return ids;
}

TEST_F(OnServer, EachUserAttachesAsHimselfAndSeesHisOwnBranches) {
    AnsweringHost* ivanov = session(QStringLiteral("ivanov"));
    EXPECT_EQ(CUR_USER, 2);
    EXPECT_EQ(CUR_SHOPINDEX, 1);
    const QSet<int> his = branchesOf(ivanov);
    AnsweringHost* petrova = session(QStringLiteral("PETROVA"));
    EXPECT_EQ(CUR_USER, 4);
    const QSet<int> hers = branchesOf(petrova);
    EXPECT_EQ(his, (QSet<int>{101, 102, 103})); // 104 is closed to him ('N')
    EXPECT_EQ(hers, (QSet<int>{101, 102, 103, 104}));

    // The server knows who is connected: USER and CUR_USER answer for the session's user.
    for (auto [h, login, id] : {std::tuple{ivanov, "IVANOV", 2}, std::tuple{petrova, "PETROVA", 4}}) {
        db::Query q(h->RvDatabase(), h->pfReadTransaction());
        q.setSql(QStringLiteral("select current_user, (select ID_USER from CUR_USER) from rdb$database"));
        q.open();
        ASSERT_TRUE(q.next());
        EXPECT_EQ(q.value(0).toString().trimmed(), QString::fromLatin1(login));
        EXPECT_EQ(q.value(1).toInt(), id);
        q.close();
    }

    // A wrong password or a login the server does not know is refused.
    HostImpl::Settings s;
    s.profileRoot = hosts_.profileRoot();
    s.interactive = false;
    s.userName = QStringLiteral("IVANOV");
    s.password = QStringLiteral("wrong");
    HostImpl wrong(s);
    EXPECT_THROW(wrong.openDatabase(connectString()), db::Error);
    s.userName = QStringLiteral("NOBODY");
    HostImpl unknown(s);
    EXPECT_THROW(unknown.openDatabase(connectString()), db::Error);
}

TEST_F(OnServer, ASaveOverAnotherUsersChangeIsToldAndTheUserChooses) {
    AnsweringHost* a = session(QStringLiteral("IVANOV"));
    AnsweringHost* b = session(QStringLiteral("PETROVA"));
    auto listA = documents(a);
    auto listB = documents(b);
    const int id = listA->records()->fieldByName(QStringLiteral("ID_PAYMENT_DOC"))->asInteger();

    // Both open the document; one saves, then the other, who read it before that save: he is
    // told, with the amount as it is now, and chooses. First B drops his change after A saved,
    // then A writes his over B's.
    struct Round {
        AnsweringHost* first;
        RecordListForm* firstList;
        AnsweringHost* late;
        RecordListForm* lateList;
        double was, saved, typed;
        bool writeOver;
    };
    for (const Round& r : {Round{a, listA.get(), b, listB.get(), 125000, 111, 222, false},
                           Round{b, listB.get(), a, listA.get(), 111, 333, 444, true}}) {
        setHost(r.first);
        FrameEditDialog first(r.first, r.firstList);
        first.prepare();
        setHost(r.late);
        FrameEditDialog late(r.late, r.lateList);
        late.prepare();
        typeAmountAndSave(r.first, first, r.saved);
        EXPECT_EQ(first.result(), QDialog::Accepted);
        EXPECT_DOUBLE_EQ(amount(id), r.saved);
        r.late->answers = {r.writeOver};
        typeAmountAndSave(r.late, late, r.typed);
        EXPECT_TRUE(r.late->said(QStringLiteral("Запись изменена другим пользователем")));
        EXPECT_TRUE(r.late->said(QStringLiteral("AMOUNT: было «%1», сейчас «%2»").arg(r.was).arg(r.saved)))
            << r.late->loggedMessages().join("\n").toStdString();
        EXPECT_EQ(late.dropped(), !r.writeOver);
        EXPECT_EQ(late.result(), r.writeOver ? QDialog::Accepted : QDialog::Rejected);
        const double stored = r.writeOver ? r.typed : r.saved;
        EXPECT_DOUBLE_EQ(amount(id), stored);
        // Whichever he chose, his list shows what is stored.
        EXPECT_DOUBLE_EQ(r.lateList->records()->fieldByName(QStringLiteral("AMOUNT"))->asDouble(), stored);
    }
}

TEST_F(OnServer, ALockedDocumentFailsAtOnceAndKeepsWhatWasTyped) {
    AnsweringHost* a = session(QStringLiteral("IVANOV"));
    auto list = documents(a);
    const int id = list->records()->fieldByName(QStringLiteral("ID_PAYMENT_DOC"))->asInteger();
    FrameEditDialog dlg(a, list.get());
    dlg.prepare();

    // Another user holds the row in an open transaction.
    auto other = connectAs(QStringLiteral("PETROVA"));
    db::Transaction holder(other.get(), db::TransactionOptions::writeNoWait());
    holder.start();
    db::Query lock(other.get(), &holder);
    lock.setSql(
        QStringLiteral("update PAYMENT_DOC set NOTE = 'Правит Петрова' where ID_PAYMENT_DOC = %1").arg(id));
    lock.exec();

    QElapsedTimer t;
    t.start();
    typeAmountAndSave(a, dlg, 555);
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_TRUE(a->said(QStringLiteral("Запись не сохранена: Запись редактируется другим пользователем")))
        << a->loggedMessages().join("\n").toStdString();
    EXPECT_FALSE(a->said(QStringLiteral("update PAYMENT_DOC"))); // the statement is not shown
    EXPECT_NE(dlg.result(), QDialog::Accepted);
    EXPECT_TRUE(list->records()->inEditMode());
    EXPECT_DOUBLE_EQ(list->records()->fieldByName(QStringLiteral("AMOUNT"))->asDouble(), 555);
    EXPECT_DOUBLE_EQ(amount(id), 125000);

    // The other user commits his note: the same OK is told the document changed, and writing
    // over it writes what was typed and keeps the other user's note (a second OK never brings
    // back what the other user changed).
    holder.commit();
    setHost(a);
    a->answers = {true};
    dlg.accept();
    EXPECT_TRUE(a->said(QStringLiteral("NOTE: было"))) << a->loggedMessages().join("\n").toStdString();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(amount(id), 555);
    EXPECT_EQ(
        scalar(QStringLiteral("select NOTE from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id)).toString(),
        QStringLiteral("Правит Петрова"));
}

TEST_F(OnServer, AServerRestartUnderAnOpenFormIsToldOnceAndReconnectingGoesOn) {
    AnsweringHost* h = session(QStringLiteral("SYSDBA"));
    auto list = documents(h);
    const int id = list->records()->fieldByName(QStringLiteral("ID_PAYMENT_DOC"))->asInteger();
    const int rows = list->records()->recordCount();
    QWidget top;
    std::unique_ptr<TAbsEditFrame> frame(Registry::instance().create(QStringLiteral("TFilial_LF"), &top));
    auto* filial = qobject_cast<TFilial_LF*>(frame.get());
    ASSERT_NE(filial, nullptr);
    filial->Init();
    const int branches = filial->pFIBDataSet1->recordCount();
    db::Database* database = h->RvDatabase();

    ASSERT_TRUE(fbserver::stop());
    // Every action fails: one message about the lost connection, no statement in it. Calls that
    // used to throw to their caller report like the rest and answer "no".
    int edited = QDialog::Accepted;
    EXPECT_NO_THROW(edited = list->editCurrent());
    EXPECT_EQ(edited, QDialog::Rejected);
    bool granted = true;
    EXPECT_NO_THROW(granted = h->IsFuncRights(QStringLiteral("S_Main.NOT_ASKED_YET")));
    EXPECT_FALSE(granted);
    EXPECT_FALSE(guard([&] { list->refresh(); }));
    EXPECT_FALSE(guard([&] { filial->pFIBDataSet1->close(), filial->pFIBDataSet1->open(); }));
    EXPECT_TRUE(h->connectionLost());
    int told = 0;
    for (const QString& m : h->loggedMessages())
        told += m.contains(QStringLiteral("Соединение с сервером базы данных потеряно"));
    EXPECT_EQ(told, 1) << h->loggedMessages().join("\n").toStdString();
    EXPECT_FALSE(h->said(QStringLiteral("Statement")));
    // The failed reopens left the datasets whole: their fields are still there.
    EXPECT_NE(list->records()->findField(QStringLiteral("AMOUNT")), nullptr);
    EXPECT_NE(filial->pFIBDataSet1->findField(QStringLiteral("NAME")), nullptr);
    EXPECT_FALSE(h->reconnect()); // the server is still down
    EXPECT_TRUE(h->said(QStringLiteral("Не удалось восстановить соединение")));

    ASSERT_TRUE(fbserver::start());
    ASSERT_TRUE(h->reconnect());
    EXPECT_FALSE(h->connectionLost());
    EXPECT_EQ(h->RvDatabase(), database); // the same object: frames keep working with it
    EXPECT_TRUE(guard([&] { list->refresh(); }));
    EXPECT_EQ(list->records()->recordCount(), rows);
    EXPECT_TRUE(guard([&] { filial->pFIBDataSet1->close(), filial->pFIBDataSet1->open(); }));
    EXPECT_EQ(filial->pFIBDataSet1->recordCount(), branches);
    ASSERT_TRUE(list->records()->locate(QStringLiteral("ID_PAYMENT_DOC"), id));
    FrameEditDialog dlg(h, list.get());
    dlg.prepare();
    typeAmountAndSave(h, dlg, 777);
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_DOUBLE_EQ(amount(id), 777);
    filial->FormClose();
}

TEST_F(OnServer, AFrozenServerAndASilentPortEndWithinTheConnectTimeout) {
    EXPECT_LE(db::Database::Options{}.connectTimeout, 10);
    db::Database::Options o;
    o.connectTimeout = 2; // the default is longer; the wait is the same code
    o.user = QStringLiteral("SYSDBA");
    o.password = fbserver::password(o.user);

    auto attempt = [&](const QString& connect) {
        db::Database d;
        QElapsedTimer t;
        t.start();
        QString text;
        bool lost = false;
        try {
            d.open(connect, o);
        } catch (const db::Error& e) {
            text = e.userText();
            lost = e.isConnectionLost();
        }
        return std::tuple{t.elapsed(), text, lost};
    };

    fbserver::freeze();
    const auto [frozenMs, frozenText, frozenLost] = attempt(connectString());
    fbserver::thaw();
    EXPECT_LT(frozenMs, 6000);
    EXPECT_TRUE(frozenLost) << frozenText.toStdString();
    EXPECT_TRUE(frozenText.contains("не ответил за 2 с")) << frozenText.toStdString();

    // A port that takes connections and never answers.
    SilentPort silent;
    ASSERT_GT(silent.port(), 0);
    const auto [silentMs, silentText, silentLost] =
        attempt(QStringLiteral("127.0.0.1/%1:%2").arg(silent.port()).arg(databaseFile()));
    EXPECT_LT(silentMs, 6000);
    EXPECT_TRUE(silentLost) << silentText.toStdString();
    EXPECT_TRUE(silentText.contains("не ответил за 2 с")) << silentText.toStdString();
    std::printf("connect timeout 2 s: frozen server %lld ms, silent port %lld ms\n",
                static_cast<long long>(frozenMs), static_cast<long long>(silentMs));

    // The thawed server serves again.
    EXPECT_NO_THROW(connectAs(QStringLiteral("SYSDBA")));
}

// A server that stops answering under an open connection: the statement waiting for it ends
// within the answer limit as a lost connection, and the connection is made again once the server
// answers.
TEST_F(OnServer, AServerFrozenUnderAnOpenConnectionEndsWithinTheAnswerLimit) {
    db::Database::Options o;
    o.user = QStringLiteral("SYSDBA");
    o.password = fbserver::password(o.user);
    o.answerTimeout = 2; // the default is longer; the wait is the same code
    db::Database d;
    d.open(connectString(), o);
    db::Transaction tr(&d, db::TransactionOptions::read());
    auto count = [&] {
        db::Query q(&d, &tr);
        q.setSql(QStringLiteral("select count(*) from CLIENTS"));
        q.open();
        const int n = q.next() ? q.value(0).toInt() : -1;
        q.close();
        return n;
    };
    ASSERT_GT(count(), 0);

    fbserver::freeze();
    QElapsedTimer t;
    t.start();
    bool lost = false;
    try {
        count();
    } catch (const db::Error& e) {
        lost = e.isConnectionLost();
    }
    const qint64 ms = t.elapsed();
    fbserver::thaw();
    EXPECT_TRUE(lost);
    EXPECT_LT(ms, 6000);
    std::printf("answer limit 2 s: frozen server under an open connection gave up after %lld ms\n",
                static_cast<long long>(ms));

    d.reconnect();
    EXPECT_GT(count(), 0);
}

// The workbench as a user starts it: the login refused, a frozen server and a port that never
// answers given up within the default connect timeout; each a one-line message in words and
// exit code 2.
TEST_F(OnServer, TheWorkbenchRefusesAWrongLoginAndGivesUpOnASilentServer) {
    QTemporaryDir home;
    auto run = [&](const QString& database, const QStringList& args, const QString& password) {
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("QT_QPA_PLATFORM", "offscreen");
        env.insert("HOME", home.path());
        env.insert("XDG_DATA_HOME", home.filePath("data"));
        env.insert("XDG_RUNTIME_DIR", home.path());
        env.insert("WORKBENCH_PASSWORD", password);
        p.setProcessEnvironment(env);
        QElapsedTimer t;
        t.start();
        p.start(QStringLiteral(WORKBENCH_EXE),
                QStringList{"--database", database, "--screenshots", home.filePath("shots")} + args);
        const bool ended = p.waitForFinished(60000);
        if (!ended) p.kill();
        return std::tuple{ended ? p.exitCode() : -1, QString::fromUtf8(p.readAllStandardError()),
                          t.elapsed()};
    };

    // The password comes from the environment; a wrong one is refused by the server.
    const auto [loginCode, loginErr, loginMs] = run(connectString(), {"--user", "ivanov"}, "wrong");
    EXPECT_EQ(loginCode, 2) << loginErr.toStdString();
    EXPECT_TRUE(loginErr.contains("не принял вход пользователя IVANOV")) << loginErr.toStdString();
    EXPECT_FALSE(QFile::exists(home.filePath("shots/index.html")));

    fbserver::freeze();
    const auto [frozenCode, frozenErr, frozenMs] = run(connectString(), {"--user", "petrova"}, "petrova");
    fbserver::thaw();
    SilentPort silent;
    ASSERT_GT(silent.port(), 0);
    const auto [silentCode, silentErr, silentMs] =
        run(QStringLiteral("127.0.0.1/%1:%2").arg(silent.port()).arg(databaseFile()), {}, "masterkey");
    for (const auto& [code, err, ms] :
         {std::tuple{frozenCode, frozenErr, frozenMs}, std::tuple{silentCode, silentErr, silentMs}}) {
        EXPECT_EQ(code, 2) << err.toStdString();
        EXPECT_TRUE(err.contains("не ответил за 10 с")) << err.toStdString();
        EXPECT_EQ(err.count('\n'), 1) << err.toStdString();
        EXPECT_LT(ms, 15000);
    }
    std::printf("workbench start, connect timeout 10 s: frozen server %lld ms, silent port %lld ms\n",
                static_cast<long long>(frozenMs), static_cast<long long>(silentMs));
}

// A mass edit over marked documents, one of which another user holds in an open edit: the update
// fails at once, says so in Russian, changes no document and leaves no marks; once the other user
// is done the same edit goes through and the list shows it.
TEST_F(OnServer, AMassEditOverALockedDocumentFailsAtOnceAndChangesNothing) {
    AnsweringHost* a = session(QStringLiteral("IVANOV"));
    auto list = documents(a);
    frames::ui::DBGrid* grid = list->grid();
    for (int row = 0; row < 3; ++row) grid->setMarked(row, true);
    workbench::MassEditDialog dlg(a, list.get(), workbench::documentMassEdit());
    ASSERT_EQ(dlg.keys().size(), 3);
    dlg.chooseColumn(QStringLiteral("STATUS"));
    auto* f = qobject_cast<TEdit_ME*>(dlg.frame());
    ASSERT_NE(f, nullptr);
    f->efNewValue->ComboBox->setEditText(QStringLiteral("Отменён"));
    f->efNewValueComboBoxChange(nullptr);
    const QString keys = QStringList([&] {
                             QStringList l;
                             for (int k : dlg.keys()) l << QString::number(k);
                             return l;
                         }())
                             .join(',');
    auto statuses = [&] {
        return scalar(QStringLiteral("select list(STATUS, '|') from (select STATUS from PAYMENT_DOC where "
                                     "ID_PAYMENT_DOC in (%1) order by ID_PAYMENT_DOC)")
                          .arg(keys))
            .toString();
    };
    const QString before = statuses();

    // Another user edits the second marked document and has not committed.
    auto other = connectAs(QStringLiteral("PETROVA"));
    db::Transaction holder(other.get(), db::TransactionOptions::writeNoWait());
    holder.start();
    db::Query lock(other.get(), &holder);
    lock.setSql(QStringLiteral("update PAYMENT_DOC set NOTE = 'Правит Петрова' where ID_PAYMENT_DOC = %1")
                    .arg(dlg.keys().at(1)));
    lock.exec();

    QElapsedTimer t;
    t.start();
    setHost(a);
    EXPECT_EQ(dlg.apply(), -1);
    EXPECT_LT(t.elapsed(), 3000);
    EXPECT_TRUE(a->said(
        QStringLiteral("Групповое изменение не выполнено: Запись редактируется другим пользователем")))
        << a->loggedMessages().join("\n").toStdString();
    EXPECT_FALSE(a->said(QStringLiteral("update"))); // the statement goes to the trace log only
    QFile trace(a->traceFile());
    ASSERT_TRUE(trace.open(QIODevice::ReadOnly));
    EXPECT_TRUE(QString::fromUtf8(trace.readAll()).contains(QStringLiteral("MEDIT_MARKS")));
    EXPECT_EQ(statuses(), before);
    EXPECT_EQ(scalar(QStringLiteral("select count(*) from MEDIT_MARKS")).toInt(), 0);

    // The other user is done: the same edit goes through and the list shows it.
    holder.commit();
    setHost(a);
    EXPECT_EQ(dlg.apply(), 3);
    EXPECT_TRUE(a->said(QStringLiteral("Изменено записей: 3 из 3.")));
    EXPECT_EQ(statuses(), QStringLiteral("Отменён|Отменён|Отменён"));
    ASSERT_TRUE(list->records()->locate(QStringLiteral("ID_PAYMENT_DOC"), dlg.keys().at(1)));
    EXPECT_EQ(list->records()->fieldByName(QStringLiteral("STATUS"))->asString(), QStringLiteral("Отменён"));
    EXPECT_EQ(scalar(QStringLiteral("select count(*) from MEDIT_MARKS")).toInt(), 0);
}

} // namespace
} // namespace frames::test
