#include "ExampleHost.h"
#include <QApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QMessageBox>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>
#include <QVBoxLayout>
#include <cstdio>
#include <frames/core/RunParams.h>
#include <platform/db/DataSet.h>
#include <platform/db/DataSource.h>
#include <platform/db/Database.h>
#include <platform/db/Query.h>
#include <platform/db/Transaction.h>
#include <platform/widgets/DBGrid.h>

namespace example {

namespace db = frames::db;

namespace {

// The reference forms the frames of this host open by name: a list to choose one row from.
struct ReferenceForm {
    const char* name;
    const char* caption;
    const char* sql; // first column: the key; second: what the user reads
    int refNumber;
};
const ReferenceForm kForms[] = {
    {"CursTypeForm", "Валюты", "select ID_CUR_TYPE, NAME_CUR_TYPE from CUR_TYPE order by NAME_CUR_TYPE", 1},
    {"ColorForm", "Цвета", "select ID, NAME from COLOR where ID <> -1 order by NAME", 2},
    {"ClientForm", "Клиенты",
     "select ID_CLIENTS, NAME_CLIENTS from CLIENTS where ID_CLIENTS > -1 order by NAME_CLIENTS", 3},
};

const ReferenceForm* findForm(const QString& name) {
    for (const ReferenceForm& f : kForms)
        if (name.compare(QLatin1String(f.name), Qt::CaseInsensitive) == 0) return &f;
    return nullptr;
}

} // namespace

ExampleHost::ExampleHost(bool interactive) : interactive_(interactive) {
    profile_ = qEnvironmentVariable("FRAMES_EXAMPLE_PROFILE");
    if (profile_.isEmpty())
        profile_ =
            QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/profile");
    QDir().mkpath(profile_);
    QFile file(profile_ + QStringLiteral("/layout.json"));
    if (file.open(QIODevice::ReadOnly)) {
        QString error;
        if (!layout_.readJsonText(file.readAll(), &error)) {
            // The user's file is kept aside, never overwritten.
            file.close();
            const QString aside = file.fileName() + QStringLiteral(".broken-") +
                                  QDateTime::currentDateTime().toString("yyyyMMddHHmmss");
            file.rename(aside);
            layout_.ClearItems();
            message(QStringLiteral("warning"),
                    QStringLiteral("Файл настроек %1 не прочитан (%2) и сохранён как %3")
                        .arg(file.fileName(), error, aside));
        }
    }
    frames::setHost(this);
}

ExampleHost::~ExampleHost() {
    frames::setHost(nullptr);
    forms_.clear();
    if (read_ && read_->active()) read_->commit();
    read_.reset();
    if (database_) database_->close();
}

void ExampleHost::open(const QString& connectString) {
    auto database = std::make_unique<db::Database>();
    database->open(connectString);
    auto read = std::make_unique<db::Transaction>(database.get(), db::TransactionOptions::read());
    read->start();
    database->setDefaultTransaction(read.get());
    database_ = std::move(database);
    read_ = std::move(read);

    // The run constants come from the connected user's row.
    db::Query q(database_.get(), read_.get());
    q.setSql(QStringLiteral("select u.ID_USER, u.FILIALINDEX, u.SHOPINDEX, u.SET_FOR, u.CLASSIF_TYPE, "
                            "current_connection from USERS u where u.ID_USER = tyuser(current_user)"));
    q.open();
    if (q.next()) {
        frames::CUR_USER = q.value(0).toInt();
        frames::CUR_FILIALINDEX = q.value(1).toInt();
        frames::CUR_SHOPINDEX = q.value(2).toInt();
        frames::GLOBAL_PAR_SET_FOR = q.value(3).toInt();
        frames::GLOBAL_PAR_CLASSIF_TYPE = q.value(4).toInt();
        session_ = q.value(5).toInt();
    }
    q.close();
    TraceText(QStringLiteral("Database opened: %1 (user %2)").arg(connectString).arg(frames::CUR_USER), 1);
}

frames::TConfigItem* ExampleHost::layoutNode(const QString& form, const QString& frame) {
    return layout_.ItemByName(form)->ItemByName(frame);
}

void ExampleHost::saveLayout() const {
    QSaveFile file(profile_ + QStringLiteral("/layout.json"));
    if (file.open(QIODevice::WriteOnly)) {
        file.write(layout_.toJsonText());
        file.commit();
    }
}

// ---- module runner

int ExampleHost::RunModule(const QString& formName, frames::TRunParams& params) {
    const ReferenceForm* def = findForm(formName);
    if (!def) {
        ErrorBox(QStringLiteral("Форма «%1» не зарегистрирована").arg(formName));
        return 2;
    }
    params.FormFound = 1;
    if (!interactive_) return 2;

    QDialog dlg(QApplication::activeWindow());
    dlg.setWindowTitle(QString::fromUtf8(def->caption));
    dlg.resize(420, 480);
    db::DataSet rows(database_.get(), read_.get());
    rows.setSelectSql(QString::fromUtf8(def->sql));
    rows.open();
    db::DataSource source(&rows);
    auto* grid = new frames::ui::DBGrid(&dlg);
    grid->setDataSource(&source);
    const QString keyField = rows.field(0)->fieldName();
    grid->setColumns({rows.field(1)->fieldName()});
    if (!params.KeyValue.isNull()) rows.locate(keyField, params.KeyValue);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dlg);
    auto* layout = new QVBoxLayout(&dlg);
    layout->addWidget(grid);
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dlg, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dlg, &QDialog::reject);
    QObject::connect(grid, &frames::ui::DBGrid::activated, &dlg, &QDialog::accept);
    if (dlg.exec() != QDialog::Accepted || rows.isEmpty()) return 2;
    params.KeyValue = rows.fieldByName(keyField)->value();
    return 1;
}

QObject* ExampleHost::RvGetForm(const QString& formName) {
    const ReferenceForm* def = findForm(formName);
    if (!def) return nullptr;
    auto form = std::make_unique<QObject>();
    form->setObjectName(QString::fromLatin1(def->name));
    form->setProperty("RefNumber", def->refNumber);
    form->setProperty("Caption", QString::fromUtf8(def->caption));
    forms_.push_back(std::move(form));
    return forms_.back().get();
}

QStringList ExampleHost::FormList() const {
    QStringList names;
    for (const ReferenceForm& f : kForms) names << QString::fromLatin1(f.name);
    return names;
}

// ---- messages

void ExampleHost::message(const QString& kind, const QString& text) {
    messages_ << kind + QStringLiteral(": ") + text;
    TraceText(kind + QStringLiteral(": ") + text, 1);
    if (!interactive_) std::fprintf(stderr, "%s: %s\n", qPrintable(kind), qPrintable(text));
}

void ExampleHost::ErrorBox(const QString& text) {
    message(QStringLiteral("error"), text);
    if (interactive_) QMessageBox::critical(QApplication::activeWindow(), QStringLiteral("Ошибка"), text);
}

void ExampleHost::ErrorBoxEx(const QString& text, int detail) {
    ErrorBox(QStringLiteral("%1 (код %2)").arg(text).arg(detail));
}

void ExampleHost::WarningBox(const QString& text) {
    message(QStringLiteral("warning"), text);
    if (interactive_)
        QMessageBox::warning(QApplication::activeWindow(), QStringLiteral("Предупреждение"), text);
}

void ExampleHost::InfoBox(const QString& text) {
    message(QStringLiteral("info"), text);
    if (interactive_)
        QMessageBox::information(QApplication::activeWindow(), QStringLiteral("Сообщение"), text);
}

bool ExampleHost::QuestionBox(const QString& text) {
    message(QStringLiteral("question"), text);
    if (!interactive_) return false; // nothing is done that nobody asked for
    return QMessageBox::question(QApplication::activeWindow(), QStringLiteral("Вопрос"), text) ==
           QMessageBox::Yes;
}

// ---- configuration: the defaults every host gives

int ExampleHost::GetIntValue(const QString& key) const {
    static const QHash<QString, int> values{{QStringLiteral("WorkPeriodLenght"), 31},
                                            {QStringLiteral("MaxWorkPeriodLenght"), 366},
                                            {QStringLiteral("CRMEventWorkPeriodLenght"), 31},
                                            {QStringLiteral("CRMEventMaxWorkPeriodLenght"), 92}};
    return values.value(key, 0);
}

bool ExampleHost::GetBoolValue(const QString& key) const {
    return key == QLatin1String("FindEcho");
}

QString ExampleHost::GetStringValue(const QString&) const {
    return {};
}

QString ExampleHost::IniString(const QString& section, const QString& key, const QString& def) const {
    const QSettings ini(profile_ + QStringLiteral("/host.ini"), QSettings::IniFormat);
    return ini.value(section + QLatin1Char('/') + key, def).toString();
}

// ---- database module

bool ExampleHost::IsFuncRights(const QString& functionName) const {
    if (!database_) return false;
    db::Query q(database_.get(), read_.get());
    q.setSql(QStringLiteral("select count(*) from USER_RIGHTS where ID_USER = :id and FUNC_NAME = :func"));
    q.paramByName(QStringLiteral("id"))->setValue(frames::CUR_USER);
    q.paramByName(QStringLiteral("func"))->setValue(functionName);
    q.open();
    const bool granted = q.next() && q.value(0).toInt() > 0;
    q.close();
    return granted;
}

// ---- trace log and desktop

void ExampleHost::TraceText(const QString& text, int level) {
    QFile log(profile_ + QStringLiteral("/trace.log"));
    if (log.open(QIODevice::Append | QIODevice::Text))
        log.write(QStringLiteral("%1 [%2] %3\n")
                      .arg(QDateTime::currentDateTime().toString(Qt::ISODate))
                      .arg(level)
                      .arg(text)
                      .toUtf8());
}

void ExampleHost::OpenAddress(const QString& address) {
    const QUrl url = address.contains(QLatin1Char('@')) && !address.contains(QLatin1Char(':'))
                         ? QUrl(QStringLiteral("mailto:") + address)
                         : QUrl::fromUserInput(address);
    QDesktopServices::openUrl(url);
}

} // namespace example
