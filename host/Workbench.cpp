#include "host/Workbench.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/edit/EF_SetDate.h"
#include "frames/edit/EF_SetDouble.h"
#include "host/CardChoiceForm.h"
#include "host/CardForms.h"
#include "host/ClientForms.h"
#include "host/ClientReportForm.h"
#include "host/CrmForms.h"
#include "host/CrmReportForm.h"
#include "host/CurHistoryForm.h"
#include "host/DocumentForms.h"
#include "host/FilterPanel.h"
#include "host/FindForm.h"
#include "host/FrameHostForms.h"
#include "host/GridTools.h"
#include "host/HostImpl.h"
#include "host/HostedFrames.h"
#include "host/MainWindow.h"
#include "host/MassEdit.h"
#include "host/ReferenceForms.h"
#include "host/ReportDefinition.h"
#include "host/ReportSettingsForm.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/Database.h"
#include "platform/db/Error.h"
#include "platform/widgets/DBGrid.h"
#include "schema/DemoDatabase.h"
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QInputDialog>
#include <QLibrary>
#include <QLibraryInfo>
#include <QLocale>
#include <QMainWindow>
#include <QMessageBox>
#include <QPixmap>
#include <QStandardPaths>
#include <QTextStream>
#include <QTranslator>
#include <QVBoxLayout>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <vector>

namespace workbench {

bool parseOptions(const QStringList& arguments, Options& options, QString& message) {
    QCommandLineParser p;
    p.setApplicationDescription(QStringLiteral("Workbench: the host of the Frames package."));
    p.addHelpOption();
    const QCommandLineOption database(
        QStringLiteral("database"),
        QStringLiteral(
            "Database file (embedded engine) or host/port:path of a server. Default: the demo database."),
        QStringLiteral("path"));
    const QCommandLineOption list(QStringLiteral("list"),
                                  QStringLiteral("Print every registered frame class and exit."));
    const QCommandLineOption shots(
        QStringLiteral("screenshots"),
        QStringLiteral("Write a screenshot of every frame and an index page to dir, then exit."),
        QStringLiteral("dir"));
    const QCommandLineOption user(QStringLiteral("user"), QStringLiteral("The user the session runs for."),
                                  QStringLiteral("name"));
    const QCommandLineOption password(
        QStringLiteral("password"),
        QStringLiteral("The user's password on a server (else the WORKBENCH_PASSWORD environment variable, "
                       "else the workbench asks)."),
        QStringLiteral("password"));
    p.addOptions({database, list, shots, user, password});
    if (!p.parse(arguments)) {
        message = p.errorText();
        return false;
    }
    if (p.isSet(QStringLiteral("help"))) {
        std::printf("%s", qPrintable(p.helpText()));
        message.clear();
        return false;
    }
    if (!p.positionalArguments().isEmpty()) {
        message = QStringLiteral("unexpected argument: %1").arg(p.positionalArguments().front());
        return false;
    }
    options.database = p.value(database);
    options.list = p.isSet(list);
    options.screenshotsDir = p.value(shots);
    options.user = p.value(user);
    options.password = p.value(password);
    return true;
}

QString defaultDatabasePath() {
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/demo.fdb");
}

frames::Registry* loadRegistry(QString* source) {
    const QDir exeDir(QCoreApplication::applicationDirPath());
    const QStringList candidates = {exeDir.filePath(QStringLiteral("libframes.so")),
                                    exeDir.filePath(QStringLiteral("../frames/libframes.so")),
                                    exeDir.filePath(QStringLiteral("../lib/libframes.so"))};
    for (const QString& path : candidates) {
        if (!QFileInfo::exists(path)) continue;
        QLibrary lib(QFileInfo(path).canonicalFilePath());
        // The library stays loaded for the life of the process: frames live in it.
        lib.setLoadHints(QLibrary::ExportExternalSymbolsHint);
        using Entry = frames::Registry* (*)();
        if (auto entry = reinterpret_cast<Entry>(lib.resolve("frames_registry"))) {
            if (source) *source = lib.fileName();
            return entry();
        }
    }
    if (source) *source = QStringLiteral("linked");
    return frames_registry();
}

bool installQtTranslations() {
    static QTranslator* installed = nullptr;
    if (installed) return true;
    auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
    // "qt" is the catalogue that pulls in qtbase and the other modules installed.
    if (!translator->load(QLocale(QLocale::Russian, QLocale::Russia), QStringLiteral("qt"),
                          QStringLiteral("_"), QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        return false;
    QCoreApplication::installTranslator(translator.get());
    installed = translator.release();
    return true;
}

QStringList frameListing(const frames::Registry& registry) {
    QStringList lines;
    for (const QString& cls : registry.classNames()) {
        const frames::FrameClass* c = registry.find(cls);
        lines << cls + QLatin1Char('\t') + (c ? c->family : QString()) + QLatin1Char('\t') +
                     frames::FormLoader::caption(cls);
    }
    return lines;
}

namespace {

QString html(const QString& s) {
    return s.toHtmlEscaped();
}

void settle() {
    for (int i = 0; i < 3; ++i) QApplication::processEvents();
}

struct Shot {
    QString name;
    QString group;
    QString file;  // empty when no picture
    QString error; // empty when fine
    // What a person would stumble on in the window: the index lists it under the picture.
    QStringList problems = {};
};

bool savePicture(QWidget* w, const QString& dir, const QString& name, Shot& shot) {
    settle();
    for (const QString& b : blankButtons(w))
        shot.problems << QStringLiteral("кнопка без текста и значка: ") + b;
    // A window of its own comes back where the user left it only as a host form.
    if (w->isWindow() && w->objectName() != QLatin1String("pnFrame") &&
        !qobject_cast<frames::TfmPersistentForm*>(w) && !qobject_cast<QMainWindow*>(w))
        shot.problems << QStringLiteral("окно не запоминает размер и место: ") +
                             QString::fromLatin1(w->metaObject()->className());
    const QPixmap px = w->grab();
    const QString file = name + QStringLiteral(".png");
    if (px.isNull() || !px.save(QDir(dir).filePath(file))) {
        shot.error = QStringLiteral("picture not written");
        return false;
    }
    shot.file = file;
    return true;
}

bool writeIndex(const QString& dir, const std::vector<Shot>& shots, const QString& database) {
    QFile f(QDir(dir).filePath(QStringLiteral("index.html")));
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
    QTextStream out(&f);
    out << "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>Frames workbench "
           "screenshots</title>\n"
           "<style>body{font-family:sans-serif}td{vertical-align:top;padding:6px;border-bottom:1px solid "
           "#ccc}"
           ".err{color:#b00}.problem{color:#a50}</style></head><body>\n"
        << "<h1>Frames workbench</h1><p>Database: " << html(database) << "</p>\n<table>\n"
        << "<tr><th>Name</th><th>Group</th><th>Picture</th></tr>\n";
    for (const Shot& s : shots) {
        out << "<tr><td>" << html(s.name) << "</td><td>" << html(s.group) << "</td><td>";
        if (!s.file.isEmpty()) out << "<img src=\"" << html(s.file) << "\" alt=\"" << html(s.name) << "\">";
        if (!s.error.isEmpty()) out << "<div class=\"err\">" << html(s.error) << "</div>";
        for (const QString& p : s.problems) out << "<div class=\"problem\">" << html(p) << "</div>";
        out << "</td></tr>\n";
    }
    out << "</table></body></html>\n";
    out.flush();
    return f.error() == QFileDevice::NoError;
}

} // namespace

int writeScreenshots(HostImpl& host, const frames::Registry& registry, const QString& dir) {
    if (!QDir().mkpath(dir) || !QFileInfo(dir).isWritable())
        throw std::runtime_error(QStringLiteral("Не удалось создать папку для снимков %1")
                                     .arg(QDir::toNativeSeparators(dir))
                                     .toStdString());
    std::vector<Shot> shots;
    int written = 0;

    // The main window as it opens: the frame browser with one frame shown, and once more with
    // the search narrowing the list.
    {
        Shot shot{QStringLiteral("MainWindow"), QStringLiteral("host forms"), {}, {}};
        Shot searchShot{QStringLiteral("MainWindow (поиск «банк»)"), QStringLiteral("host forms"), {}, {}};
        try {
            MainWindow window(&host, &registry);
            window.resize(1100, 700);
            window.showFrame(QStringLiteral("TBank_LF"));
            window.show();
            if (savePicture(&window, dir, QStringLiteral("MainWindow"), shot)) ++written;
            window.filterFrames(QStringLiteral("банк"));
            if (savePicture(&window, dir, QStringLiteral("MainWindow_search"), searchShot)) ++written;
            window.hide();
        } catch (...) {
            (shot.file.isEmpty() ? shot : searchShot).error = frames::errorText(std::current_exception());
        }
        shots.push_back(shot);
        shots.push_back(searchShot);
    }

    // Every frame free-standing, as the frame browser shows it.
    for (const QString& cls : registry.classNames()) {
        const QString caption = frames::FormLoader::caption(cls);
        Shot shot{caption.isEmpty() ? cls : caption + QStringLiteral(" — ") + cls,
                  frames::Registry::familyCaption(registry.find(cls)->family),
                  {},
                  {}};
        QWidget panel;
        panel.setObjectName(QStringLiteral("pnFrame"));
        auto* layout = new QVBoxLayout(&panel);
        HostedFrames hosted(&panel, [&host](const QString& name) {
            return host.LayoutRoot()->ItemByName(QStringLiteral("Browser"))->ItemByName(name);
        });
        try {
            frames::TAbsEditFrame* f = registry.create(cls, &panel);
            f->setObjectName(cls);
            layout->addWidget(f);
            applyFrameParams(f); // as the frame browser gives them
            hosted.open(f);
            panel.resize(qMax(480, panel.sizeHint().width()), panel.sizeHint().height());
            panel.show();
            if (savePicture(&panel, dir, cls, shot)) ++written;
            // The screenshots leave the user's layout as it was: the frames are not asked to save it.
            f->FormClose();
        } catch (...) {
            shot.error = frames::errorText(std::current_exception());
            if (!shot.file.isEmpty() || panel.isVisible()) {
                if (savePicture(&panel, dir, cls, shot)) ++written;
                shot.error = frames::errorText(std::current_exception());
            }
        }
        shots.push_back(shot);
    }

    // Every lookup frame on the edit dialog of a list form, bound to a record that points at a
    // row of its list: the frame shows that row's name.
    for (const QString& cls : registry.classNames(QStringLiteral("lookup"))) {
        Shot shot{cls + QStringLiteral(" (на форме редактирования)"), QStringLiteral("lookup bound"), {}, {}};
        try {
            std::unique_ptr<RecordListForm> list(RecordListForm::forLookup(&host, cls));
            FrameEditDialog dlg(&host, list.get());
            dlg.prepare();
            dlg.show();
            if (savePicture(&dlg, dir, cls + QStringLiteral("_bound"), shot)) ++written;
            dlg.reject();
        } catch (...) {
            shot.error = frames::errorText(std::current_exception());
        }
        shots.push_back(shot);
    }

    // The card list and the edit dialog over it with its bound lookups.
    {
        Shot listShot{QStringLiteral("CardListForm"), QStringLiteral("host forms"), {}, {}};
        Shot dlgShot{QStringLiteral("EditDialog"), QStringLiteral("host forms"), {}, {}};
        try {
            CardListForm list(&host);
            list.open();
            // A card that refers to every reference table.
            if (!list.dataSet()->locate(QStringLiteral("ARTICUL"), QStringLiteral("100-0010")))
                list.dataSet()->first();
            list.show();
            if (savePicture(&list, dir, listShot.name, listShot)) ++written;
            EditDialog dlg(&host, &list);
            dlg.prepare();
            dlg.show();
            if (savePicture(&dlg, dir, dlgShot.name, dlgShot)) ++written;
            dlg.reject();
        } catch (...) {
            (listShot.file.isEmpty() ? listShot : dlgShot).error =
                frames::errorText(std::current_exception());
        }
        shots.push_back(listShot);
        shots.push_back(dlgShot);
    }

    // The payment documents, the edit dialog of one with every value editor on its column, the
    // rate history the rate editor opens, and the filter panel with a few conditions set.
    {
        Shot listShot{QStringLiteral("DocumentListForm"), QStringLiteral("host forms"), {}, {}};
        Shot dlgShot{QStringLiteral("DocumentEditDialog"), QStringLiteral("host forms"), {}, {}};
        Shot massEditShot{QStringLiteral("MassEditDialog"), QStringLiteral("host forms"), {}, {}};
        try {
            std::unique_ptr<RecordListForm> list(makeDocumentList(&host));
            // A document in dollars that fills every column.
            if (!list->records()->locate(QStringLiteral("DOC_NUMBER"), QStringLiteral("ПП-000110")))
                list->records()->first();
            list->show();
            if (savePicture(list.get(), dir, listShot.name, listShot)) ++written;
            FrameEditDialog dlg(&host, list.get());
            dlg.prepare();
            dlg.show();
            if (savePicture(&dlg, dir, dlgShot.name, dlgShot)) ++written;
            dlg.reject();
            // The mass-edit dialog over three marked documents, on their colour.
            for (int row = 0; row < 3; ++row) list->grid()->setMarked(row, true);
            MassEditDialog massEdit(&host, list.get(), documentMassEdit());
            massEdit.chooseColumn(QStringLiteral("ID_COLOR"));
            massEdit.show();
            if (savePicture(&massEdit, dir, massEditShot.name, massEditShot)) ++written;
        } catch (...) {
            (listShot.file.isEmpty()  ? listShot
             : dlgShot.file.isEmpty() ? dlgShot
                                      : massEditShot)
                .error = frames::errorText(std::current_exception());
        }
        shots.push_back(listShot);
        shots.push_back(dlgShot);
        shots.push_back(massEditShot);
    }
    {
        Shot shot{QString::fromLatin1(CurHistoryForm::FormName), QStringLiteral("host forms"), {}, {}};
        try {
            frames::TRunParams params;
            params.EnsureParams().ByName(QStringLiteral("CurType")).Value = QStringLiteral("2");
            params.EnsureParams().ByName(QStringLiteral("Date")).Value = QStringLiteral("15.03.2024");
            CurHistoryForm form(host.RvDatabase(), host.pfReadTransaction(), params);
            form.open();
            form.show();
            if (savePicture(&form, dir, shot.name, shot)) ++written;
        } catch (...) {
            shot.error = frames::errorText(std::current_exception());
        }
        shots.push_back(shot);
    }
    // The two reports of the filter panel, each under a layout node of its own (the conditions set
    // here are not the user's), run over a period of the demo data.
    const auto shootReport = [&](const QString& name, const ReportDefinition& report, QDate first, QDate last,
                                 const std::function<void(FilterPanelForm&)>& setUp) {
        Shot shot{name, QStringLiteral("host forms"), {}, {}};
        try {
            FilterPanelForm panel(&host, report);
            panel.setObjectName(name + QStringLiteral("Screenshot"));
            panel.prepare();
            setUp(panel);
            if (auto* period =
                    qobject_cast<frames::TPeriodExt_EF*>(panel.frame(QStringLiteral("TPeriodExt_EF")))) {
                period->deFirstDate->setDate(first);
                period->deLastDate->setDate(last);
            }
            panel.updateResults();
            panel.runQuery();
            panel.show();
            if (savePicture(&panel, dir, shot.name, shot)) ++written;
            panel.reject();
        } catch (...) {
            shot.error = frames::errorText(std::current_exception());
        }
        shots.push_back(shot);
    };
    shootReport(QStringLiteral("FilterPanel"), paymentReport(), QDate(2024, 2, 1), QDate(2024, 4, 30),
                [](FilterPanelForm& panel) {
                    for (const auto& f : panel.filters()) frames::guard([&] { f.frame->Clear(); });
                    if (auto* dates =
                            qobject_cast<frames::TSetDate_EF*>(panel.frame(QStringLiteral("TSetDate_EF")))) {
                        dates->deFromDate->setDate(QDate(2024, 3, 1));
                        dates->deToDate->setDate(QDate(2024, 3, 31));
                        dates->SetChecked(true);
                    }
                    if (auto* sums = qobject_cast<frames::TSetDouble_EF*>(
                            panel.frame(QStringLiteral("TSetDouble_EF")))) {
                        sums->ceFromSumma->SetAsFloat(1000);
                        sums->ceToSumma->SetAsFloat(100000);
                        sums->SetChecked(true);
                    }
                });
    shootReport(QStringLiteral("SalesReport"), salesReport(), QDate(2024, 3, 1), QDate(2024, 3, 31),
                [](FilterPanelForm& panel) { panel.resize(1400, 1000); });

    // The other forms, each as it opens: the clients and a client's card, the report over the
    // client selection, the report settings, the CRM report and lists, the card chooser, the find
    // form over a list and the grid columns dialog. They are hidden, not closed, afterwards: a
    // closing form would store its settings.
    {
        std::vector<std::unique_ptr<QWidget>> keep; // a dialog after the list it edits
        const auto own = [&keep](auto* w) {
            keep.emplace_back(w);
            return w;
        };
        const auto shootForm = [&](const QString& name, const std::function<QWidget*()>& make) {
            Shot shot{name, QStringLiteral("host forms"), {}, {}};
            try {
                QWidget* w = make();
                w->show();
                if (savePicture(w, dir, name, shot)) ++written;
                if (auto* dlg = qobject_cast<FrameEditDialog*>(w))
                    dlg->reject(); // the record leaves edit state
                else
                    w->hide();
            } catch (...) {
                shot.error = frames::errorText(std::current_exception());
            }
            shots.push_back(shot);
        };
        RecordListForm* clients = nullptr;
        const auto clientList = [&]() -> RecordListForm* {
            if (!clients) clients = own(makeClientList(&host));
            return clients;
        };
        shootForm(QStringLiteral("ClientListForm"), [&] { return clientList(); });
        shootForm(QStringLiteral("ClientCard"), [&] {
            auto* dlg = own(new FrameEditDialog(&host, clientList()));
            dlg->prepare();
            return dlg;
        });
        shootForm(QStringLiteral("ClientReportForm"), [&] {
            auto* form = own(new ClientReportForm(&host));
            form->prepare();
            return form;
        });
        shootForm(QStringLiteral("ReportSettingsForm"), [&] {
            auto* form = own(new ReportSettingsForm(&host));
            form->prepare();
            return form;
        });
        shootForm(QStringLiteral("CrmReportForm"), [&] {
            auto* form = own(new CrmReportForm(1));
            form->prepare();
            return form;
        });
        shootForm(QStringLiteral("CrmFirmListForm"), [&] { return own(makeFirmList(&host)); });
        shootForm(QStringLiteral("CrmEventListForm"), [&] { return own(makeEventList(&host)); });
        frames::TRunParams cardParams;
        shootForm(QString::fromLatin1(CardChoiceForm::FormName), [&] {
            auto* form = own(new CardChoiceForm(host.RvDatabase(), host.pfReadTransaction(), cardParams));
            form->open();
            return form;
        });
        shootForm(QStringLiteral("FindForm"), [&] {
            auto* form = own(new FindForm(clientList()));
            form->setDBGrid(clientList()->grid());
            form->edit()->setText(QStringLiteral("Импорт"));
            form->findNext();
            return form;
        });
        shootForm(QStringLiteral("GridColumnsDialog"),
                  [&] { return own(new GridColumnsDialog(clientList()->grid(), clientList())); });
        while (!keep.empty()) keep.pop_back();
    }

    // The reference forms of the module runner.
    for (const ReferenceFormDef& def : referenceForms()) {
        Shot shot{QStringLiteral("ReferenceForm ") + def.name, QStringLiteral("reference forms"), {}, {}};
        try {
            frames::TRunParams params;
            ReferenceForm form(def, host.RvDatabase(), host.pfReadTransaction(), params);
            form.open();
            form.show();
            if (savePicture(&form, dir, QStringLiteral("ReferenceForm_") + def.name, shot)) ++written;
        } catch (...) {
            shot.error = frames::errorText(std::current_exception());
        }
        shots.push_back(shot);
    }

    if (!writeIndex(dir, shots, host.RvDatabase() ? host.RvDatabase()->connectString() : QString()))
        throw std::runtime_error(
            QStringLiteral("Не удалось записать %1")
                .arg(QDir::toNativeSeparators(QDir(dir).filePath(QStringLiteral("index.html"))))
                .toStdString());
    return written;
}

namespace {

bool haveDisplay() {
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

int failDatabase(const QString& path, const QString& text) {
    // One line: the server's lines joined, without the repeated "Database: path" context.
    QStringList parts;
    for (QString line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        line = line.trimmed();
        if (line.startsWith(QLatin1Char('-'))) line.remove(0, 1);
        if (line.isEmpty() || line.startsWith(QStringLiteral("Database: "))) continue;
        parts << line;
    }
    const QString message =
        QStringLiteral("Не удалось открыть базу данных %1: %2").arg(path, parts.join(QStringLiteral("; ")));
    std::fprintf(stderr, "workbench: %s\n", qPrintable(message));
    if (haveDisplay()) QMessageBox::critical(nullptr, QStringLiteral("Рабочее место"), message);
    return 2;
}

} // namespace

namespace {

QtMessageHandler previousHandler = nullptr;

// The offscreen platform complains about every window it cannot size like a desktop would:
// those lines say nothing to the user of the screenshots.
void messageFilter(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (text.contains(QLatin1String("propagateSizeHints"))) return;
    if (previousHandler) previousHandler(type, context, text);
}

} // namespace

int run(int argc, char** argv) {
#ifdef Q_OS_LINUX
    // Without a display the workbench still runs: offscreen, writing screenshots.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && qEnvironmentVariableIsEmpty("DISPLAY") &&
        qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
#endif
    previousHandler = qInstallMessageHandler(messageFilter);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("workbench"));
    QApplication::setOrganizationName(QStringLiteral("Frames"));
    if (!installQtTranslations())
        std::fprintf(stderr, "workbench: Qt's Russian translations are not installed; standard buttons "
                             "stay in English\n");

    Options options;
    QString message;
    if (!parseOptions(app.arguments(), options, message)) {
        if (message.isEmpty()) return 0;
        std::fprintf(stderr, "workbench: %s\n", qPrintable(message));
        return 1;
    }

    if (options.list) {
        frames::Registry* registry = loadRegistry();
        for (const QString& line : frameListing(*registry)) std::printf("%s\n", qPrintable(line));
        return 0;
    }

    const bool screenshots = !options.screenshotsDir.isEmpty() || !haveDisplay();
    HostImpl::Settings settings;
    settings.userName = options.user;
    settings.password =
        options.password.isEmpty() ? qEnvironmentVariable("WORKBENCH_PASSWORD") : options.password;
    settings.interactive = !screenshots;
    settings.windowPlacement = !screenshots;
    if (settings.password.isEmpty() && frames::db::Database::isRemote(options.database) && !screenshots) {
        // A server checks who logs in: ask the user for his password.
        bool ok = false;
        settings.password = QInputDialog::getText(
            nullptr, QStringLiteral("Вход"),
            QStringLiteral("Пароль пользователя %1 на сервере %2:")
                .arg(options.user.isEmpty() ? QStringLiteral("SYSDBA") : options.user.toUpper(),
                     options.database.left(options.database.indexOf(QLatin1Char(':')))),
            QLineEdit::Password, QString(), &ok);
        if (!ok) return 1;
    }
    HostImpl host(settings);
    frames::setHost(&host);
    struct Uninstall {
        ~Uninstall() { frames::setHost(nullptr); }
    } uninstall;

    QString path = options.database;
    // The demo database is never replaced while this session uses it.
    std::unique_ptr<frames::schema::DemoDatabaseLock> demoClaim, imagesClaim;
    try {
        if (path.isEmpty()) {
            path = defaultDatabasePath();
            demoClaim = std::make_unique<frames::schema::DemoDatabaseLock>(path);
            QString previous;
            if (frames::schema::ensureDemoDatabase(path, &previous, demoClaim.get()))
                std::printf("Demo database created at %s\n", qPrintable(QDir::toNativeSeparators(path)));
            if (!previous.isEmpty())
                std::printf("The previous demo database, made from older scripts, is kept as %s\n",
                            qPrintable(QDir::toNativeSeparators(previous)));
            // Its image database beside it, with the demo documents' pages.
            const QString images = frames::schema::imageDatabasePath(path);
            imagesClaim = std::make_unique<frames::schema::DemoDatabaseLock>(images);
            if (frames::schema::ensureDemoDatabase(images, &previous, imagesClaim.get(), 120000,
                                                   frames::schema::imageScripts()))
                std::printf("Demo image database created at %s\n",
                            qPrintable(QDir::toNativeSeparators(images)));
        }
        host.openDatabase(path);
    } catch (const frames::db::Error& e) {
        // The words for the user first (a refused login, a server that does not answer).
        return failDatabase(path, e.userText() == e.message() ? e.text() : e.userText() + '\n' + e.message());
    } catch (const std::exception& e) {
        return failDatabase(path, QString::fromUtf8(e.what()));
    }
    host.loadLayout();

    QString source;
    frames::Registry* registry = loadRegistry(&source);
    host.TraceText(
        QStringLiteral("Frames registry: %1 (%2 classes)").arg(source).arg(registry->classNames().size()), 1);

    if (screenshots) {
        const QString dir = QFileInfo(options.screenshotsDir.isEmpty() ? QStringLiteral("workbench-shots")
                                                                       : options.screenshotsDir)
                                .absoluteFilePath();
        int n = 0;
        try {
            n = writeScreenshots(host, *registry, dir);
        } catch (const std::exception& e) {
            std::fprintf(stderr, "workbench: %s\n", e.what());
            return 1;
        }
        std::printf("Screenshots (%d) and index.html written to %s\n", n,
                    qPrintable(QDir::toNativeSeparators(dir)));
        std::printf("Open %s\n",
                    qPrintable(QDir::toNativeSeparators(QDir(dir).filePath(QStringLiteral("index.html")))));
        return 0;
    }

    MainWindow window(&host, registry);
    window.show();
    const int rc = app.exec();
    host.saveLayout();
    return rc;
}

} // namespace workbench
