#include "host/HostImpl.h"
#include "frames/core/Guard.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "host/CardChoiceForm.h"
#include "host/ClassifForm.h"
#include "host/CurHistoryForm.h"
#include "host/FindForm.h"
#include "host/GridTools.h"
#include "host/MassEdit.h"
#include "host/Usability.h"
#include "platform/db/Database.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "schema/DemoDatabase.h"
#include <QApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QLineEdit>
#include <QMessageBox>
#include <QRegularExpression>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QTableView>
#include <QTextStream>
#include <QUrl>
#include <cstdio>
#include <stdexcept>

namespace workbench {

namespace db = frames::db;

namespace {

// Configuration values the host gives when the profile's config.json does not override them.
QVariant defaultConfigValue(const QString& key) {
    static const QHash<QString, QVariant> defaults = {
        {QStringLiteral("WorkPeriodLenght"), 31},
        {QStringLiteral("MaxWorkPeriodLenght"), 366},
        {QStringLiteral("CRMEventWorkPeriodLenght"), 31},
        {QStringLiteral("CRMEventMaxWorkPeriodLenght"), 92},
        {QStringLiteral("FindEcho"), true},
        {QStringLiteral("PrecisionCurFormat"), QStringLiteral(",0.00")},
        {QStringLiteral("PrecisionRubFormat"), QStringLiteral(",0.00")},
        {QStringLiteral("PrecisionQuantityFormat"), QStringLiteral(",0.###")},
        {QStringLiteral("PrecisionVolumeFormat"), QStringLiteral(",0.###")},
    };
    return defaults.value(key);
}

// A folder name made of the user name's safe characters: letters, digits, "_" and "-" (no dots,
// no separators), so that a profile folder never leaves the profiles folder.
QString safeName(const QString& name) {
    QString out;
    for (const QChar c : name) out += (c.isLetterOrNumber() || c == '_' || c == '-') ? c : QChar('_');
    return out.isEmpty() ? QStringLiteral("default") : out;
}

std::vector<HostModule>& moduleTable() {
    static std::vector<HostModule> modules = {
        {QString::fromLatin1(ClassifForm::FormName), QStringLiteral("Классификатор"), 1001,
         [](HostImpl& host, frames::TRunParams& params, QWidget* parent) {
             ClassifForm form(host.RvDatabase(), host.pfReadTransaction(), params, parent);
             form.open();
             return form.exec();
         }},
        curHistoryModule(),
        cardChoiceModule(),
    };
    return modules;
}

} // namespace

const std::vector<HostModule>& hostModules() {
    return moduleTable();
}

const HostModule* findHostModule(const QString& name) {
    for (const HostModule& m : moduleTable())
        if (m.name.compare(name, Qt::CaseInsensitive) == 0) return &m;
    return nullptr;
}

void registerHostModule(HostModule module) {
    auto& table = moduleTable();
    for (HostModule& m : table)
        if (m.name.compare(module.name, Qt::CaseInsensitive) == 0) {
            m = std::move(module);
            return;
        }
    table.push_back(std::move(module));
}

HostImpl::HostImpl() : HostImpl(Settings{}) {}

HostImpl::HostImpl(Settings settings) : settings_(std::move(settings)) {
    if (settings_.profileRoot.isEmpty())
        settings_.profileRoot =
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/profiles");
    QDir().mkpath(ProfilePath()); // a safe name: always one folder inside the profiles folder
    loadConfig();
    if (settings_.windowPlacement && qApp)
        placement_ = std::make_unique<FormPlacement>(
            [this](const QString& name) -> frames::TConfigItem* {
                try {
                    if (frames::host() != this) return nullptr; // another session's host
                } catch (const std::logic_error&) {
                    return nullptr;
                }
                return FormLayout(name);
            },
            [this] { saveLayout(); });
}

HostImpl::~HostImpl() {
    placement_.reset();
    formObjects_.clear();
    closeDatabase();
}

QString HostImpl::userName() const {
    return settings_.userName.isEmpty() ? QStringLiteral("SYSDBA") : settings_.userName.toUpper();
}

bool HostImpl::validUserName(const QString& name) {
    static const QRegularExpression login(QStringLiteral("^[A-Za-z][A-Za-z0-9_$]{0,62}$"));
    return login.match(name).hasMatch();
}

// ---- database

void HostImpl::openDatabase(const QString& connectString) {
    closeDatabase();
    lost_ = false;
    if (!validUserName(userName()))
        throw db::Error::configuration(
            QStringLiteral("Недопустимое имя пользователя «%1»: имя входа состоит из латинских букв, "
                           "цифр и знака «_» и начинается с буквы")
                .arg(settings_.userName));
    db::Database::Options options;
    options.user = userName();
    options.password = settings_.password;
    auto database = std::make_unique<db::Database>();
    database->open(connectString, options);
    auto tr = std::make_unique<db::Transaction>(database.get(), db::TransactionOptions::read());
    tr->start();
    database->setDefaultTransaction(tr.get());
    database_ = std::move(database);
    readTransaction_ = std::move(tr);
    rights_.clear();
    try {
        readRunConstants();
    } catch (...) {
        closeDatabase();
        throw;
    }
    if (userId_ < 0) {
        closeDatabase();
        throw db::Error::configuration(
            QStringLiteral("Пользователь «%1» не зарегистрирован в базе данных").arg(userName()));
    }
    openImageDatabase(connectString);
    TraceText(QStringLiteral("Database opened: %1 (user %2, session %3)")
                  .arg(connectString, userName())
                  .arg(session_),
              1);
}

void HostImpl::openImageDatabase(const QString& connectString) {
    imageDatabase_.reset();
    const QString path = frames::schema::imageDatabasePath(connectString);
    // A local database without its image database simply has none: the image frames say so.
    if (!db::Database::isRemote(path) && !QFileInfo::exists(path)) {
        TraceText(QStringLiteral("No image database: %1").arg(path), 1);
        return;
    }
    db::Database::Options options;
    options.user = userName();
    options.password = settings_.password;
    auto images = std::make_unique<db::Database>();
    try {
        images->open(path, options);
    } catch (const db::Error& e) {
        TraceText(QStringLiteral("Image database not opened: %1: %2").arg(path, e.text()), 1);
        return;
    }
    imageDatabase_ = std::move(images);
    TraceText(QStringLiteral("Image database opened: %1").arg(path), 1);
}

bool HostImpl::reconnect() {
    if (!database_) return false;
    try {
        database_->reconnect();
        readTransaction_->start();
        if (imageDatabase_) imageDatabase_->reconnect();
        rights_.clear();
        readRunConstants();
    } catch (...) {
        const QString text = frames::errorText(std::current_exception());
        frames::traceError(std::current_exception());
        ErrorBox(QStringLiteral("Не удалось восстановить соединение с базой данных: %1").arg(text));
        return false;
    }
    lost_ = false;
    TraceText(QStringLiteral("Reconnected: %1 (user %2, session %3)")
                  .arg(database_->connectString(), userName())
                  .arg(session_),
              1);
    return true;
}

void HostImpl::ConnectionLost(const QString& text) {
    // The user is asked: the arrow, not the hourglass of the work that asks.
    const frames::WaitCursor::Pause arrow;
    // One loss, one message: later failures of the same loss only go to the trace log.
    if (lost_) {
        TraceText(QStringLiteral("connection lost (already reported): ") + text, 1);
        return;
    }
    lost_ = true;
    const QString question =
        QStringLiteral("%1\n\nПереподключиться к базе данных? Открытые формы продолжат работу.").arg(text);
    message(QStringLiteral("error"), text);
    if (!settings_.interactive) return;
    if (QMessageBox::question(QApplication::activeWindow(), QStringLiteral("Соединение потеряно"), question,
                              QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes)
        reconnect();
}

void HostImpl::closeDatabase() {
    if (imageDatabase_) {
        try {
            imageDatabase_->close();
        } catch (const db::Error&) {
        }
    }
    imageDatabase_.reset();
    if (readTransaction_) {
        try {
            if (readTransaction_->active()) readTransaction_->commit();
        } catch (const db::Error&) {
        }
    }
    readTransaction_.reset();
    if (database_) {
        try {
            database_->close();
        } catch (const db::Error&) {
        }
    }
    database_.reset();
}

void HostImpl::readRunConstants() {
    // The session attaches as its user: the server's own idea of the user decides.
    db::Query q(database_.get(), readTransaction_.get());
    q.setSql(QStringLiteral("select tyuser(current_user), current_connection from rdb$database"));
    q.open();
    if (q.next()) {
        userId_ = q.value(0).toInt();
        session_ = q.value(1).toInt();
    }
    q.close();
    frames::CUR_USER = userId_;
    frames::CUR_FILIALINDEX = 1;
    frames::CUR_SHOPINDEX = 1;
    frames::GLOBAL_PAR_SET_FOR = 0;
    frames::GLOBAL_PAR_CLASSIF_TYPE = 0;
    db::Query u(database_.get(), readTransaction_.get());
    u.setSql(QStringLiteral(
        "select FILIALINDEX, SHOPINDEX, SET_FOR, CLASSIF_TYPE from USERS where ID_USER = :id"));
    u.paramByName(QStringLiteral("id"))->setValue(userId_);
    u.open();
    if (u.next()) {
        for (auto [column, constant] : {std::pair{0, &frames::CUR_FILIALINDEX},
                                        {1, &frames::CUR_SHOPINDEX},
                                        {2, &frames::GLOBAL_PAR_SET_FOR},
                                        {3, &frames::GLOBAL_PAR_CLASSIF_TYPE}})
            if (!u.value(column).isNull()) *constant = u.value(column).toInt();
    }
    u.close();
}

bool HostImpl::IsFuncRights(const QString& functionName) const {
    if (!database_) return false;
    const auto it = rights_.constFind(functionName);
    if (it != rights_.constEnd()) return *it;
    // A failure is reported here and denies the right: callers ask inside their own logic.
    bool granted = false;
    const bool read = frames::guard([&] {
        db::Query q(database_.get(), readTransaction_.get());
        q.setSql(
            QStringLiteral("select count(*) from USER_RIGHTS where ID_USER = :id and FUNC_NAME = :func"));
        q.paramByName(QStringLiteral("id"))->setValue(userId_);
        q.paramByName(QStringLiteral("func"))->setValue(functionName);
        q.open();
        granted = q.next() && q.value(0).toInt() > 0;
        q.close();
    });
    if (read) rights_.insert(functionName, granted);
    return granted;
}

// ---- module runner

int HostImpl::RunModule(const QString& formName, frames::TRunParams& params) {
    const frames::WaitCursor::Pause arrow;
    // The workbench's own forms come before the reference lists.
    const HostModule* module = findHostModule(formName);
    const ReferenceFormDef* def = module ? nullptr : findReferenceForm(formName);
    if (!module && !def) {
        ErrorBox(QStringLiteral("Форма «%1» не зарегистрирована").arg(formName));
        return ReferenceForm::Cancelled;
    }
    params.FormFound = 1;
    if (!settings_.interactive) {
        TraceText(QStringLiteral("RunModule %1: not shown without a user, cancelled").arg(formName), 1);
        return ReferenceForm::Cancelled;
    }
    if (module) return module->run(*this, params, QApplication::activeWindow());
    ReferenceForm form(*def, database_.get(), readTransaction_.get(), params, QApplication::activeWindow());
    form.open();
    return form.exec();
}

QObject* HostImpl::RvGetForm(const QString& formName) {
    // One object per form, standing for it: its name, reference number and caption.
    auto formObject = [this](const QString& name, int refNumber, const QString& caption) {
        auto& slot = formObjects_[name];
        if (!slot) {
            slot = std::make_unique<QObject>();
            slot->setObjectName(name);
            slot->setProperty("RefNumber", refNumber);
            slot->setProperty("Caption", caption);
        }
        return slot.get();
    };
    if (const HostModule* module = findHostModule(formName))
        return formObject(module->name, module->refNumber, module->caption);
    if (const ReferenceFormDef* def = findReferenceForm(formName))
        return formObject(def->name, def->refNumber, def->caption);
    // The forms that mass-edit frames embed are real forms, made once and kept by the host.
    if (auto it = formObjects_.find(formName); it != formObjects_.end()) return it->second.get();
    if (auto layer = makeMassEditLayer(formName)) return (formObjects_[formName] = std::move(layer)).get();
    return nullptr;
}

QStringList HostImpl::FormList() const {
    QStringList names;
    for (const auto& m : hostModules()) names << m.name;
    for (const auto& d : referenceForms()) names << d.name;
    return names;
}

// ---- messages

void HostImpl::message(const QString& kind, const QString& text) {
    messages_ << kind + QStringLiteral(": ") + text;
    TraceText(kind + QStringLiteral(": ") + text, 1);
    if (!settings_.interactive)
        std::fprintf(stderr, "workbench %s: %s\n", qPrintable(kind), qPrintable(text));
}

void HostImpl::ErrorBox(const QString& text) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("error"), text);
    if (settings_.interactive)
        QMessageBox::critical(QApplication::activeWindow(), QStringLiteral("Ошибка"), text);
}

void HostImpl::ErrorBox(const QString& text, const QString& caption) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("error"), text);
    if (settings_.interactive) QMessageBox::critical(QApplication::activeWindow(), caption, text);
}

void HostImpl::ErrorBoxEx(const QString& text, int detail) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("error"), QStringLiteral("%1 (%2)").arg(text).arg(detail));
    if (settings_.interactive) {
        QMessageBox box(QMessageBox::Critical, QStringLiteral("Ошибка"), text, QMessageBox::Ok,
                        QApplication::activeWindow());
        box.setInformativeText(QStringLiteral("Код: %1").arg(detail));
        box.exec();
    }
}

void HostImpl::WarningBox(const QString& text) {
    WarningBox(text, QStringLiteral("Предупреждение"));
}

void HostImpl::WarningBox(const QString& text, const QString& caption) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("warning"), text);
    if (settings_.interactive) QMessageBox::warning(QApplication::activeWindow(), caption, text);
}

void HostImpl::InfoBox(const QString& text) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("info"), text);
    if (settings_.interactive)
        QMessageBox::information(QApplication::activeWindow(), QStringLiteral("Сообщение"), text);
}

bool HostImpl::QuestionBox(const QString& text) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("question"), text);
    // Without a user the answer is No: nothing is done that was not asked for.
    if (!settings_.interactive) return false;
    return QMessageBox::question(QApplication::activeWindow(), QStringLiteral("Вопрос"), text,
                                 QMessageBox::Yes | QMessageBox::No, QMessageBox::Yes) == QMessageBox::Yes;
}

bool HostImpl::ConfirmBox(const QString& text, const QString& caption) {
    const frames::WaitCursor::Pause arrow;
    message(QStringLiteral("question"), text);
    if (!settings_.interactive) return false;
    return QMessageBox::warning(QApplication::activeWindow(), caption, text,
                                QMessageBox::Ok | QMessageBox::Cancel, QMessageBox::Ok) == QMessageBox::Ok;
}

// ---- configuration

QString HostImpl::ProfilePath() const {
    return settings_.profileRoot + QLatin1Char('/') + safeName(userName());
}
QString HostImpl::layoutFile() const {
    return ProfilePath() + QStringLiteral("/layout.json");
}
QString HostImpl::traceFile() const {
    return ProfilePath() + QStringLiteral("/trace.log");
}
QString HostImpl::configFile() const {
    return ProfilePath() + QStringLiteral("/config.json");
}
QString HostImpl::iniFile() const {
    return ProfilePath() + QStringLiteral("/workbench.ini");
}

namespace {

// Why a configuration object cannot be used: a value that is no string, number or Boolean, or
// one of another kind than the host's default for its key; empty when it can.
QString configTypeError(const QJsonObject& config) {
    for (auto it = config.begin(); it != config.end(); ++it) {
        const QJsonValue v = it.value();
        if (!v.isString() && !v.isDouble() && !v.isBool())
            return QStringLiteral("\"%1\" is not a string, number or Boolean").arg(it.key());
        const QVariant def = defaultConfigValue(it.key());
        if (!def.isValid()) continue;
        const bool same = def.typeId() == QMetaType::Bool      ? v.isBool()
                          : def.typeId() == QMetaType::QString ? v.isString()
                                                               : v.isDouble();
        if (!same) return QStringLiteral("\"%1\" has a value of the wrong kind").arg(it.key());
    }
    return {};
}

} // namespace

void HostImpl::loadConfig() {
    config_ = {};
    QByteArray text;
    if (!readProfileFile(configFile(), text)) return;
    QJsonParseError err{};
    const QJsonDocument doc = QJsonDocument::fromJson(text, &err);
    QString why;
    if (doc.isNull())
        why = QStringLiteral("not valid JSON at offset %1: %2").arg(err.offset).arg(err.errorString());
    else if (!doc.isObject())
        why = QStringLiteral("the top level is not an object");
    else
        why = configTypeError(doc.object());
    if (!why.isEmpty()) {
        setAside(configFile(), why,
                 QStringLiteral("Не удалось прочитать файл настроек %1: он повреждён. Файл сохранён как %2, "
                                "действуют настройки по умолчанию."));
        return;
    }
    config_ = doc.object();
}

QVariant HostImpl::configValue(const QString& key) const {
    const auto it = config_.constFind(key);
    if (it != config_.constEnd()) return it->toVariant();
    return defaultConfigValue(key);
}

int HostImpl::GetIntValue(const QString& key) const {
    return configValue(key).toInt();
}
bool HostImpl::GetBoolValue(const QString& key) const {
    return configValue(key).toBool();
}
QString HostImpl::GetStringValue(const QString& key) const {
    return configValue(key).toString();
}
QString HostImpl::PrecisionCurFormat() const {
    return GetStringValue(QStringLiteral("PrecisionCurFormat"));
}
QString HostImpl::PrecisionQuantityFormat() const {
    return GetStringValue(QStringLiteral("PrecisionQuantityFormat"));
}
QString HostImpl::PrecisionRubFormat() const {
    return GetStringValue(QStringLiteral("PrecisionRubFormat"));
}
QString HostImpl::PrecisionVolumeFormat() const {
    return GetStringValue(QStringLiteral("PrecisionVolumeFormat"));
}

QString HostImpl::IniString(const QString& section, const QString& key, const QString& def) const {
    QSettings ini(iniFile(), QSettings::IniFormat);
    return ini.value(section + QLatin1Char('/') + key, def).toString();
}

// ---- layout

bool HostImpl::loadLayout() {
    layout_.ClearItems();
    QByteArray text;
    if (!readProfileFile(layoutFile(), text)) return false;
    QString why;
    if (layout_.readJsonText(text, &why)) return true;
    setAside(
        layoutFile(), why,
        QStringLiteral("Не удалось прочитать файл раскладки окон %1: он повреждён. Файл сохранён как %2, "
                       "окна открываются с раскладкой по умолчанию."));
    return false;
}

void HostImpl::saveLayout() {
    if (layoutKept_) {
        TraceText(QStringLiteral("layout.json is not written: the unreadable file is kept"), 1);
        return;
    }
    QDir().mkpath(ProfilePath());
    QSaveFile f(layoutFile());
    if (!f.open(QIODevice::WriteOnly)) {
        TraceText(QStringLiteral("layout.json cannot be written: %1").arg(f.errorString()), 1);
        return;
    }
    f.write(layout_.toJsonText());
    if (!f.commit()) TraceText(QStringLiteral("layout.json cannot be written: %1").arg(f.errorString()), 1);
}

frames::TConfigItem* HostImpl::FormLayout(const QString& formName) {
    frames::TConfigItem* node = &layout_;
    for (const QString& name : formName.split(QLatin1Char('/'), Qt::SkipEmptyParts))
        node = node->ItemByName(name);
    return node == &layout_ ? nullptr : node;
}

// ---- unreadable profile files

bool HostImpl::readProfileFile(const QString& path, QByteArray& text) {
    QFile f(path);
    if (!f.exists()) return false;
    if (f.size() > kMaxProfileFileSize) {
        setAside(path, QStringLiteral("%1 bytes, more than a profile file can be").arg(f.size()),
                 QStringLiteral("Файл %1 слишком велик и не прочитан. Файл сохранён как %2, "
                                "действуют настройки по умолчанию."));
        return false;
    }
    if (!f.open(QIODevice::ReadOnly)) {
        // Nothing is known about its content: keep it where it is and do not write over it.
        if (path == layoutFile()) layoutKept_ = true;
        TraceText(QStringLiteral("%1 cannot be read: %2").arg(path, f.errorString()), 1);
        WarningBox(QStringLiteral("Не удалось открыть файл %1 (%2). Действуют настройки по умолчанию, файл "
                                  "оставлен как есть.")
                       .arg(QDir::toNativeSeparators(path), f.errorString()));
        return false;
    }
    text = f.readAll();
    return true;
}

QString HostImpl::setAside(const QString& path, const QString& reason, const QString& message) {
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss"));
    QString aside = path + QStringLiteral(".broken-") + stamp;
    for (int n = 2; QFile::exists(aside); ++n)
        aside = path + QStringLiteral(".broken-%1-%2").arg(stamp).arg(n);
    TraceText(QStringLiteral("%1 is unreadable (%2)").arg(path, reason), 1);
    if (!QFile::rename(path, aside)) {
        // It cannot be moved: it stays, and the layout is not written over it.
        if (path == layoutFile()) layoutKept_ = true;
        TraceText(QStringLiteral("%1 cannot be moved aside; it is left as it is").arg(path), 1);
        WarningBox(QStringLiteral("Не удалось прочитать файл %1: он повреждён. Файл оставлен как есть, "
                                  "действуют настройки по умолчанию.")
                       .arg(QDir::toNativeSeparators(path)));
        return {};
    }
    TraceText(QStringLiteral("%1 moved aside to %2").arg(path, aside), 1);
    WarningBox(message.arg(QDir::toNativeSeparators(path), QDir::toNativeSeparators(aside)));
    return aside;
}

// ---- trace

void HostImpl::TraceText(const QString& text, int level) {
    QDir().mkpath(ProfilePath());
    QFile f(traceFile());
    if (!f.open(QIODevice::Append | QIODevice::Text)) return;
    QTextStream out(&f);
    out << QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh:mm:ss.zzz")) << " [" << level
        << "] " << text << '\n';
}

// ---- desktop and tools

QString HostImpl::addressUrl(const QString& address) {
    const QString a = address.trimmed();
    if (a.isEmpty()) return {};
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    if (scheme.match(a).hasMatch()) return a;
    if (a.contains(QLatin1Char('@'))) return QStringLiteral("mailto:") + a;
    return QStringLiteral("http://") + a;
}

void HostImpl::OpenAddress(const QString& address) {
    const QString url = addressUrl(address);
    if (url.isEmpty()) return;
    TraceText(QStringLiteral("Open address: %1").arg(url), 1);
    if (!settings_.interactive) return;
    if (!QDesktopServices::openUrl(QUrl(url)))
        WarningBox(QStringLiteral("Не удалось открыть адрес %1").arg(url));
}

void HostImpl::CustomizeGrid(frames::ui::DBGrid* grid) {
    const frames::WaitCursor::Pause arrow;
    if (!grid) return;
    if (!settings_.interactive) {
        TraceText(QStringLiteral("CustomizeGrid: not shown without a user"), 1);
        return;
    }
    GridColumnsDialog dlg(grid, QApplication::activeWindow());
    if (dlg.exec() == QDialog::Accepted) dlg.apply();
}

void HostImpl::FindInGrid(frames::ui::DBGrid* grid) {
    // Every search over a grid is the one find form: it waits beside the grid for "Найти далее".
    ShowFindForm(grid, QString());
}

QWidget* HostImpl::ShowFindForm(frames::ui::DBGrid* grid, const QString& text) {
    if (!grid) return nullptr;
    auto* form = new FindForm(grid->window());
    form->setDBGrid(grid);
    form->edit()->setText(text);
    // Without a user the form is made but not shown (screenshots, tests drive it themselves).
    if (settings_.interactive) {
        form->show();
        form->raise();
        form->activateWindow();
        form->edit()->setFocus();
        form->edit()->end(false);
    }
    return form;
}

int HostImpl::findRow(const QTableView* view, const QString& text, int start) {
    return FindForm::findRow(view, text, start, true);
}

} // namespace workbench
