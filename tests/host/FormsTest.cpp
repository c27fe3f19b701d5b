// The workbench's forms: the reference form of the module runner, the card list with its edit
// dialog, and the executable itself.
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "frames/multi/LF_MultiAbs.h"
#include "host/CardForms.h"
#include "host/FrameHostForms.h"
#include "host/HostImpl.h"
#include "host/MainWindow.h"
#include "host/ReferenceForms.h"
#include "platform/db/DataSet.h"
#include "platform/db/MemTable.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "tests/host/WorkbenchFixture.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace frames::test {
namespace {

using workbench::ReferenceForm;

class WorkbenchForms : public WorkbenchHostTest<> {
protected:
    const workbench::ReferenceFormDef& def(const QString& name) {
        const auto* d = workbench::findReferenceForm(name);
        EXPECT_NE(d, nullptr) << name.toStdString();
        return *d;
    }
};

TEST_F(WorkbenchForms, ReferenceFormsOfTheTableOpen) {
    for (const auto& d : workbench::referenceForms()) {
        TRunParams p;
        ReferenceForm form(d, wb->RvDatabase(), wb->pfReadTransaction(), p);
        ASSERT_NO_THROW(form.open()) << d.name.toStdString();
        EXPECT_GT(form.visibleRowCount(), 0) << d.name.toStdString();
        for (const auto& c : d.columns)
            EXPECT_GE(form.grid()->columnOfField(c.field), 0)
                << d.name.toStdString() << " " << c.field.toStdString();
    }
}

// Every form name a frame opens through the module runner (its FormName after construction, and
// the names that frames choose at run time) is known to the workbench.
TEST_F(WorkbenchForms, EveryFormNameOfTheFramesIsKnown) {
    QStringList names = {"Firm_Out",      "FirmSimple",      "RackStoreType",   "ShelfStoreType",
                         "CellStoreType", "PalletStoreType", "QucikClassifForm"};
    for (const QString& cls : Registry::instance().classNames()) {
        QWidget top;
        std::unique_ptr<TAbsEditFrame> f;
        ASSERT_NO_THROW(f.reset(Registry::instance().create(cls, &top))) << cls.toStdString();
        const QString name = f->property("FormName").toString();
        if (!name.isEmpty() && !names.contains(name)) names << name;
    }
    QStringList unknown;
    for (const QString& name : names)
        if (!wb->FormList().contains(name, Qt::CaseInsensitive)) unknown << name;
    EXPECT_TRUE(unknown.isEmpty()) << unknown.join(", ").toStdString();
}

TEST_F(WorkbenchForms, ReferenceFormPositionsFiltersAndReturnsTheKey) {
    TRunParams p;
    p.KeyFieldName = "ID_CARDTYPE";
    p.KeyValue = 5;
    ReferenceForm form(def("CardTypesForm"), wb->RvDatabase(), wb->pfReadTransaction(), p);
    form.open();
    form.show();
    EXPECT_EQ(form.currentKey().toInt(), 5); // positioned on the caller's key

    // The search keeps rows containing the text in any shown column, without regard to case,
    // and moves to the first of them when the current row goes.
    form.searchEdit()->insert("ТОВАРЫ");
    EXPECT_EQ(form.visibleRowCount(), 2);
    const int chosen = form.currentKey().toInt();
    EXPECT_TRUE(chosen == 1 || chosen == 2) << chosen;
    form.setSearchText("нет такого");
    EXPECT_EQ(form.visibleRowCount(), 0);
    EXPECT_FALSE(form.currentKey().isValid());
    EXPECT_FALSE(form.okButton()->isEnabled());
    form.confirm(); // nothing to choose: stays open
    EXPECT_TRUE(form.isVisible());
    form.setSearchText("");
    EXPECT_EQ(form.visibleRowCount(), 9);

    form.setSearchText("ювелир");
    QTest::mouseClick(form.okButton(), Qt::LeftButton);
    EXPECT_EQ(form.result(), ReferenceForm::Confirmed);
    EXPECT_EQ(p.KeyValue.toInt(), 6);
    EXPECT_EQ(p.KeyInt, 6);
}

TEST_F(WorkbenchForms, ReferenceFormCancelAndForeignKeyName) {
    TRunParams p;
    p.KeyFieldName = "ID"; // the lookup's key name: not a column of this list
    p.KeyValue = 3;
    ReferenceForm form(def("CursTypeForm"), wb->RvDatabase(), wb->pfReadTransaction(), p);
    form.open();
    form.show();
    EXPECT_EQ(form.keyField(), "ID_CUR_TYPE");
    EXPECT_EQ(form.currentKey().toInt(), 3);
    form.setSearchText("доллар"); // moves the current row: cancel still keeps the key
    QTest::mouseClick(form.cancelButton(), Qt::LeftButton);
    EXPECT_EQ(form.result(), ReferenceForm::Cancelled);
    EXPECT_EQ(p.KeyValue.toInt(), 3);
}

TEST_F(WorkbenchForms, RunModuleShowsTheFormModally) {
    wb->setInteractive(true);
    TRunParams p;
    p.KeyFieldName = "ID";
    p.KeyValue = 4;
    // The modal loop is driven from a timer: double-click stands for "take this row".
    QString seenTitle;
    QTimer::singleShot(0, [&] {
        auto* form = qobject_cast<ReferenceForm*>(QApplication::activeModalWidget());
        if (!form) return;
        seenTitle = form->windowTitle();
        form->setSearchText("округл");
        emit form->grid()->activated();
    });
    EXPECT_EQ(wb->RunModule("Algoritm", p), 1);
    EXPECT_EQ(seenTitle, "Алгоритмы расчёта цены");
    EXPECT_EQ(p.KeyValue.toInt(), 5);
    EXPECT_EQ(p.FormFound, 1);
}

TEST_F(WorkbenchForms, EditDialogBindsLookupsToTheCardAndSaves) {
    workbench::CardListForm list(wb.get());
    list.open();
    ASSERT_TRUE(list.dataSet()->locate("ARTICUL", QString("100-0010")));
    const int id = list.dataSet()->fieldByName("ID")->asInteger();
    {
        workbench::EditDialog dlg(wb.get(), &list);
        dlg.prepare();
        ASSERT_EQ(dlg.frames().size(), size_t(5));
        EXPECT_EQ(list.dataSet()->state(), db::DataSetState::Edit);
        // Each lookup edits the card's own column and shows the name it refers to.
        auto* algoritm = qobject_cast<TAbs_LF*>(dlg.frame("TAlgoritm_LF"));
        ASSERT_NE(algoritm, nullptr);
        EXPECT_EQ(algoritm->lcSelect->dataSource(), list.CurrentSource());
        EXPECT_EQ(algoritm->lcSelect->keyValue().toInt(), 6);
        EXPECT_EQ(algoritm->lcSelect->displayText(), "Ящичный расчёт по кратности");

        algoritm->lcSelect->setKeyValue(1);
        dlg.nameEdit()->setText("Пиво светлое 0,5 л (ящик 24 шт.)");
        dlg.accept();
        EXPECT_EQ(dlg.result(), QDialog::Accepted);
    }
    EXPECT_EQ(list.dataSet()->state(), db::DataSetState::Browse);
    EXPECT_EQ(scalar(QString("select ALGORITM from CARD where ID = %1").arg(id)).toInt(), 1);
    EXPECT_EQ(scalar(QString("select NAME from CARD where ID = %1").arg(id)).toString(),
              "Пиво светлое 0,5 л (ящик 24 шт.)");
    EXPECT_EQ(list.dataSet()->fieldByName("ALGORITM_NAME")->asString(), "Наценка от закупочной цены");

    // Cancel leaves the card as it was.
    {
        workbench::EditDialog dlg(wb.get(), &list);
        dlg.prepare();
        qobject_cast<TAbs_LF*>(dlg.frame("TAlgoritm_LF"))->lcSelect->setKeyValue(2);
        dlg.reject();
    }
    EXPECT_EQ(list.dataSet()->state(), db::DataSetState::Browse);
    EXPECT_EQ(scalar(QString("select ALGORITM from CARD where ID = %1").arg(id)).toInt(), 1);

    // The frames' layouts went into the tree and the file.
    EXPECT_TRUE(wb->LayoutRoot()->IsExists("EditDialog"));
    EXPECT_TRUE(QFile::exists(wb->layoutFile()));
}

TEST_F(WorkbenchForms, EditDialogReportsAFailedPostAndStaysInEdit) {
    workbench::CardListForm list(wb.get());
    list.open();
    const int id = list.dataSet()->fieldByName("ID")->asInteger();
    // Another connection has changed the row and not committed: the no-wait write fails at once.
    auto other = secondConnection();
    db::Transaction otherTr(other.get(), db::TransactionOptions::writeNoWait());
    db::Query q(other.get(), &otherTr);
    q.setSql("update CARD set PRICE = PRICE + 1 where ID = :id");
    q.paramByName("id")->setValue(id);
    q.exec();
    workbench::EditDialog dlg(wb.get(), &list);
    dlg.prepare();
    dlg.show();
    dlg.accept();
    EXPECT_TRUE(dlg.isVisible());
    ASSERT_FALSE(wb->loggedMessages().isEmpty());
    EXPECT_TRUE(wb->loggedMessages().last().contains("Карточка не сохранена"));
    EXPECT_TRUE(list.dataSet()->inEditMode());
    EXPECT_FALSE(list.writeTransaction()->active());
    otherTr.rollback();
    dlg.reject();
}

TEST_F(WorkbenchForms, FrameBrowserShowsFramesFreeStanding) {
    workbench::MainWindow window(wb.get(), &Registry::instance());
    const qsizetype messagesBefore = wb->loggedMessages().size();
    for (const QString& cls : Registry::instance().classNames("lookup")) {
        TAbsEditFrame* f = window.showFrame(cls);
        if (cls == "TAbs_LF") continue; // the base has no statement of its own
        auto* lf = qobject_cast<TAbs_LF*>(f);
        ASSERT_NE(lf, nullptr) << cls.toStdString();
        EXPECT_EQ(lf->lcSelect->dataSource(), nullptr) << cls.toStdString(); // nothing to bind to
        // Every list shows rows, given the parameters the workbench keeps for frames without a
        // setter; a few lists wait for a context by design (a chosen branch, a classifier type,
        // a card's article) and frames with lists of their own have no statement.
        static const QStringList waiting = {"TClassif_LF", "TAClassifFull_LF", "TComplectHeader_LF"};
        if (lf->pFIBDataSet1->selectSql().trimmed().isEmpty() || waiting.contains(cls)) continue;
        EXPECT_TRUE(lf->pFIBDataSet1->active()) << cls.toStdString();
        EXPECT_GT(lf->pFIBDataSet1->recordCount(), 0) << cls.toStdString();
    }
    EXPECT_EQ(wb->loggedMessages().mid(messagesBefore), QStringList()); // no error on the way
    EXPECT_EQ(window.showFrame("TNoSuch_LF"), nullptr);
    EXPECT_EQ(window.currentFrame(), nullptr);
    EXPECT_TRUE(wb->loggedMessages().last().contains("TNoSuch_LF"));
}

// Every lookup frame on the edit dialog of a generic list form: bound to the current record, it
// shows the name of the record's key; a confirmed edit writes the new key into the record.
TEST_F(WorkbenchForms, EveryLookupOnTheEditDialogOfARecordList) {
    QStringList failures;
    for (const QString& cls : Registry::instance().classNames("lookup")) {
        std::unique_ptr<workbench::RecordListForm> list;
        try {
            list.reset(workbench::RecordListForm::forLookup(wb.get(), cls));
        } catch (const std::exception& e) {
            failures << cls + ": " + e.what();
            continue;
        }
        db::AbstractDataSet* records = list->records();
        ASSERT_TRUE(records->active());
        records->first();
        const QString field = records->field(1)->fieldName();
        const QVariant key = records->field(1)->value();
        workbench::FrameEditDialog dlg(wb.get(), list.get());
        try {
            dlg.prepare();
        } catch (const std::exception& e) {
            failures << cls + " bound: " + e.what();
            continue;
        }
        ASSERT_EQ(dlg.frames().size(), 1u);
        auto* lf = qobject_cast<TAbs_LF*>(dlg.frames().front());
        ASSERT_NE(lf, nullptr) << cls.toStdString();
        EXPECT_EQ(lf->Owner(), &dlg);
        if (lf->lcSelect->dataSource() != list->CurrentSource()) failures << cls + ": not bound";
        if (!key.isNull() && lf->lcSelect->isVisibleTo(&dlg) && lf->lcSelect->displayText().isEmpty())
            failures << cls + ": key " + key.toString() + " shows no name";
        dlg.accept();
        EXPECT_FALSE(records->inEditMode()) << cls.toStdString();
        EXPECT_EQ(records->fieldByName(field)->value(), key) << cls.toStdString();
    }
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();
}

// Viewing a record leaves it in browse state: a lookup reads just the row the record points at,
// even the system row its list leaves out, and nothing can be changed. Edited, the record goes
// into edit state first and the lookup lists every row to choose from.
TEST_F(WorkbenchForms, AViewedRecordShowsItsKeyAndStaysUnchanged) {
    auto* records = new db::MemTable;
    records->addFieldDef("ALGORITM", db::FieldType::Integer);
    records->open();
    records->appendRecord({-1});
    workbench::RecordListForm list(wb.get(), records, QStringList{"TAlgoritm_LF"});
    {
        workbench::FrameEditDialog dlg(wb.get(), &list, true);
        dlg.prepare();
        auto* lf = qobject_cast<TAbs_LF*>(dlg.frames().front());
        ASSERT_NE(lf, nullptr);
        EXPECT_EQ(lf->lcSelect->displayText(), "<Не задан>");
        EXPECT_EQ(lf->pFIBDataSet1->recordCount(), 1);
        EXPECT_TRUE(lf->GetReadOnly());
        EXPECT_EQ(records->state(), db::DataSetState::Browse);
        dlg.accept();
        EXPECT_EQ(records->state(), db::DataSetState::Browse);
        EXPECT_EQ(records->fieldByName("ALGORITM")->asInteger(), -1);
    }
    {
        workbench::FrameEditDialog dlg(wb.get(), &list);
        dlg.prepare();
        auto* lf = qobject_cast<TAbs_LF*>(dlg.frames().front());
        EXPECT_TRUE(records->inEditMode());
        EXPECT_GT(lf->pFIBDataSet1->recordCount(), 1);
        EXPECT_FALSE(lf->GetReadOnly());
        dlg.reject();
    }
}

// A frame hears FormShow when its form appears: the legal entity frame then shows its "save"
// box where defaults are kept per branch.
TEST_F(WorkbenchForms, FramesAreToldWhenTheirFormShows) {
    workbench::HostImpl::Settings settings;
    settings.profileRoot = root.filePath("local");
    settings.interactive = false;
    {
        workbench::HostImpl first(settings);
        QFile config(first.configFile());
        ASSERT_TRUE(config.open(QIODevice::WriteOnly));
        config.write(R"({"FromNameLocal": true})");
    }
    workbench::HostImpl local(settings);
    local.openDatabase(databasePath());
    setHost(&local);
    std::unique_ptr<workbench::RecordListForm> list(
        workbench::RecordListForm::forLookup(&local, "TFromName_LF"));
    {
        workbench::FrameEditDialog dlg(&local, list.get());
        dlg.prepare();
        QWidget* box = dlg.frames().front()->findChild<QWidget*>("chbSave");
        ASSERT_NE(box, nullptr);
        EXPECT_FALSE(box->isVisibleTo(&dlg));
        dlg.show();
        EXPECT_TRUE(box->isVisibleTo(&dlg));
        dlg.reject();
    }
    list.reset();
    setHost(wb.get());
}

TEST_F(WorkbenchForms, ListLayoutSurvivesARestart) {
    {
        workbench::CardListForm list(wb.get());
        list.open();
        list.grid()->setColumnHidden(list.grid()->columnOfField("NAME_USER"), true);
        list.resize(700, 400);
        list.close();
    }
    auto again = restarted();
    workbench::CardListForm list(again.get());
    list.open();
    EXPECT_TRUE(list.grid()->isColumnHidden(list.grid()->columnOfField("NAME_USER")));
    EXPECT_FALSE(list.grid()->isColumnHidden(list.grid()->columnOfField("NAME")));
    EXPECT_EQ(list.width(), 700);
}

// A multi-select frame in the frame browser: the pane under it shows what the host reads, and
// the user's list comes back after the workbench restarts.
TEST_F(WorkbenchForms, MultiSelectListShowsItsItemsAndSurvivesARestart) {
    QStringList chosen;
    {
        workbench::MainWindow window(wb.get(), &Registry::instance());
        auto* f = qobject_cast<TMultiAbs_LF*>(window.showFrame("TMultiCountry_LF"));
        ASSERT_NE(f, nullptr);
        auto* pane = window.findChild<QLabel*>("lbItems");
        ASSERT_NE(pane, nullptr);
        f->lcSelect->setKeyValue(f->pFIBDataSet1->valueAt(1, 0));
        QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Insert);
        chosen << f->ItemsItem(1);
        QTRY_VERIFY(pane->text().contains("ItemsCount: 2"));
        EXPECT_TRUE(pane->text().contains("Get_sSQL: " + chosen[0] + " (1)")) << pane->text().toStdString();
        EXPECT_TRUE(pane->isVisibleTo(&window));
        window.showFrame("TCountry_LF"); // a frame without items: no pane
        EXPECT_FALSE(pane->isVisibleTo(&window));
        window.close();
    }
    auto again = restarted();
    workbench::MainWindow window(again.get(), &Registry::instance());
    auto* f = qobject_cast<TMultiAbs_LF*>(window.showFrame("TMultiCountry_LF"));
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->ItemsCount(), 2);
    EXPECT_EQ(f->ItemsItem(1), chosen.value(0));
    EXPECT_EQ(f->Get_sSQL(), chosen.value(0));
}

// ---- the executable

QString workbenchExe() {
#ifdef WORKBENCH_EXE
    return QStringLiteral(WORKBENCH_EXE);
#else
    return QDir(QCoreApplication::applicationDirPath()).filePath("../host/workbench");
#endif
}

struct ProcessRun {
    int code = -1;
    QString out, err;
};

ProcessRun runWorkbench(const QStringList& args, const QString& home) {
    QProcess p;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("HOME", home);
    env.insert("XDG_DATA_HOME", home + "/data");
    env.insert("XDG_RUNTIME_DIR", home);
    p.setProcessEnvironment(env);
    p.start(workbenchExe(), args);
    ProcessRun r;
    if (!p.waitForFinished(120000)) {
        p.kill();
        return r;
    }
    r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
    r.out = QString::fromUtf8(p.readAllStandardOutput());
    r.err = QString::fromUtf8(p.readAllStandardError());
    return r;
}

TEST(WorkbenchExe, ListsFramesAndRefusesADatabaseItCannotOpen) {
    if (!QFile::exists(workbenchExe())) GTEST_SKIP() << "workbench not built";
    QTemporaryDir home;
    const ProcessRun list = runWorkbench({"--list"}, home.path());
    EXPECT_EQ(list.code, 0);
    const QStringList lines = list.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.contains("TAlgoritm_LF\tlookup\tАлгоритм скидки")) << list.out.toStdString();
    QStringList sorted = lines;
    sorted.sort();
    EXPECT_EQ(lines, sorted);
    EXPECT_EQ(lines.size(), Registry::instance().classNames().size());

    const QString bad = home.filePath("no/such/folder/x.fdb");
    const ProcessRun r = runWorkbench({"--database", bad}, home.path());
    EXPECT_EQ(r.code, 2);
    EXPECT_TRUE(r.err.contains("Не удалось открыть базу данных")) << r.err.toStdString();
    EXPECT_EQ(r.err.count('\n'), 1) << r.err.toStdString(); // one message, nothing else
    EXPECT_TRUE(r.out.isEmpty());
}

TEST(WorkbenchExe, RefusesAnUnknownUserWithCodeTwo) {
    if (!QFile::exists(workbenchExe())) GTEST_SKIP() << "workbench not built";
    QTemporaryDir home;
    const QString db = home.filePath("copy.fdb");
    ASSERT_TRUE(QFile::copy(demoDatabasePath(), db));
    QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
    for (const QString& user : {QStringLiteral("nobody"), QStringLiteral("..")}) {
        const ProcessRun run = runWorkbench(
            {"--database", db, "--user", user, "--screenshots", home.filePath("s")}, home.path());
        EXPECT_EQ(run.code, 2) << run.err.toStdString();
        EXPECT_TRUE(run.err.contains(user == "nobody" ? "не зарегистрирован" : "Недопустимое имя"))
            << run.err.toStdString();
        EXPECT_FALSE(QFile::exists(home.filePath("s/index.html")));
    }
}

TEST(WorkbenchExe, WritesScreenshotsWithoutADisplay) {
    if (!QFile::exists(workbenchExe())) GTEST_SKIP() << "workbench not built";
    QTemporaryDir home;
    const QString db = home.filePath("copy.fdb");
    ASSERT_TRUE(QFile::copy(demoDatabasePath(), db));
    QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
    const QString shots = home.filePath("shots");
    const ProcessRun r = runWorkbench({"--database", db, "--screenshots", shots}, home.path());
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.contains(shots)) << r.out.toStdString();
    EXPECT_TRUE(QFile::exists(shots + "/EditDialog.png"));
    EXPECT_TRUE(QFile::exists(shots + "/TAlgoritm_LF.png"));
    EXPECT_TRUE(QFile::exists(shots + "/SalesReport.png"));
    QFile index(shots + "/index.html");
    ASSERT_TRUE(index.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(index.readAll());
    EXPECT_TRUE(html.contains("EditDialog.png"));
    EXPECT_TRUE(html.contains("TUser_LF.png"));
    // Every window of the gallery: no button without text and icon, every form of its own keeps
    // its place.
    QStringList problems;
    static const QRegularExpression problem("<div class=\"problem\">([^<]*)</div>");
    for (auto it = problem.globalMatch(html); it.hasNext();) problems << it.next().captured(1);
    EXPECT_TRUE(problems.isEmpty()) << problems.join("\n").toStdString();
}

TEST(WorkbenchExe, AScreenshotFolderThatCannotBeMadeFails) {
    if (!QFile::exists(workbenchExe())) GTEST_SKIP() << "workbench not built";
    QTemporaryDir home;
    const QString db = home.filePath("copy.fdb");
    ASSERT_TRUE(QFile::copy(demoDatabasePath(), db));
    QFile::setPermissions(db, QFile::ReadOwner | QFile::WriteOwner);
    QFile file(home.filePath("plain-file"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    const ProcessRun r =
        runWorkbench({"--database", db, "--screenshots", file.fileName() + "/shots"}, home.path());
    EXPECT_NE(r.code, 0);
    EXPECT_TRUE(r.err.contains("Не удалось создать папку для снимков")) << r.err.toStdString();
    EXPECT_FALSE(r.out.contains("written")) << r.out.toStdString();
}

} // namespace
} // namespace frames::test
