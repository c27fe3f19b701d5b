#pragma once
#include "frames/core/ConfigItem.h"
#include "frames/core/Host.h"
#include "frames/core/HostBoxes.h"
#include "host/ReferenceForms.h"
#include <QHash>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <functional>
#include <map>
#include <memory>
#include <vector>

class QTableView;
class QWidget;

namespace workbench {

class FormPlacement;
class HostImpl;

// A form of the workbench that the module runner shows by name besides the reference lists (the
// classifier tree form, for instance). run shows it modally over parent and returns its result:
// 1 confirmed, 2 cancelled.
struct HostModule {
    QString name;
    QString caption;
    int refNumber = 0;
    std::function<int(HostImpl& host, frames::TRunParams& params, QWidget* parent)> run;
};

// The host modules, consulted by the runner before the reference forms. registerHostModule adds
// one (or replaces the one of the same name).
const std::vector<HostModule>& hostModules();
const HostModule* findHostModule(const QString& name); // case-insensitive
void registerHostModule(HostModule module);

// The workbench's implementation of every host service: database module with its read
// transaction, module runner over the reference form table, message boxes, configuration,
// per-user profile (configuration overrides, ini file, trace log, layout tree).
class HostImpl : public frames::Host, public frames::HostBoxes {
public:
    struct Settings {
        // Folder that holds one profile folder per user; empty: the application data folder.
        QString profileRoot;
        // The user the session runs for and attaches as (embedded: by name; server: his login);
        // empty: SYSDBA, the administrator.
        QString userName;
        // The user's password on a server (unused by the embedded engine).
        QString password;
        // False in screenshot mode and in tests: message boxes and modal forms are not shown,
        // they are written to the trace log and answered with their defaults.
        bool interactive = true;
        // The host forms' places and sizes are kept in the layout tree and come back; off in
        // screenshot mode, whose pictures show every form as it first opens.
        bool windowPlacement = true;
    };

    HostImpl();
    explicit HostImpl(Settings settings);
    ~HostImpl() override;

    // Attaches to the database (a file path for the embedded engine or host/port:path) as the
    // session's user, starts the read transaction and reads the run constants. Throws db::Error,
    // also for a user name that is not a plain login or that the USERS table does not know.
    void openDatabase(const QString& connectString);
    void closeDatabase();
    // Attaches again after the connection was lost: the database and read transaction objects
    // stay the same, so open forms and frames go on with them. Reports a failure through the
    // error box; returns whether the session is connected again.
    bool reconnect();
    // True from a lost connection until a successful reconnect.
    bool connectionLost() const { return lost_; }
    // A login the session can attach as: letters, digits, "_" and "$", starting with a letter,
    // at most 63 characters.
    static bool validUserName(const QString& name);
    bool interactive() const { return settings_.interactive; }
    void setInteractive(bool on) { settings_.interactive = on; }
    // Name under which the session runs (profile folder name).
    QString userName() const;

    // ---- layout tree, persisted as layout.json in the profile folder
    frames::TConfigItem* LayoutRoot() { return &layout_; }
    // Reads layout.json; a missing file gives an empty tree. An unreadable one (not JSON, not a
    // layout tree, too deep, too large) is moved aside as layout.json.broken-<time>, the user is
    // told, and the tree starts empty. Returns true when the file was read.
    bool loadLayout();
    void saveLayout();
    QString layoutFile() const;
    // The node under LayoutRoot at that path of names ("List/Dialog"), where a form keeps its
    // place and size.
    frames::TConfigItem* FormLayout(const QString& formName);
    QString traceFile() const;
    QString configFile() const;
    QString iniFile() const;

    // Number of messages shown or logged (for the screenshot index and tests).
    const QStringList& loggedMessages() const { return messages_; }

    // ---- module runner
    int RunModule(const QString& formName, frames::TRunParams& params) override;
    QObject* RvGetForm(const QString& formName) override;
    QStringList FormList() const override;

    // ---- messages
    void ErrorBox(const QString& text) override;
    void ErrorBox(const QString& text, const QString& caption) override; // HostBoxes
    void ErrorBoxEx(const QString& text, int detail) override;
    void WarningBox(const QString& text) override;
    void WarningBox(const QString& text, const QString& caption) override;
    void InfoBox(const QString& text) override;
    bool QuestionBox(const QString& text) override;
    bool ConfirmBox(const QString& text, const QString& caption) override; // HostBoxes

    // ---- configuration
    int GetIntValue(const QString& key) const override;
    bool GetBoolValue(const QString& key) const override;
    QString GetStringValue(const QString& key) const override;
    QString PrecisionCurFormat() const override;
    QString PrecisionQuantityFormat() const override;
    QString PrecisionRubFormat() const override;
    QString PrecisionVolumeFormat() const override;
    QString ProfilePath() const override;
    QString IniString(const QString& section, const QString& key, const QString& def) const override;

    // ---- database module
    frames::db::Database* RvDatabase() const override { return database_.get(); }
    frames::db::Transaction* pfReadTransaction() const override { return readTransaction_.get(); }
    // The image database beside the main one (<name>_images.fdb), when there is one.
    frames::db::Database* ImageDatabase() const override { return imageDatabase_.get(); }
    bool IsFuncRights(const QString& functionName) const override;
    // Told once per loss; offers to reconnect (without a user: recorded, not asked).
    void ConnectionLost(const QString& text) override;
    int SessionNumber() const override { return session_; }

    // ---- trace log
    void TraceText(const QString& text, int level) override;

    // ---- desktop and tools
    void OpenAddress(const QString& address) override;
    void CustomizeGrid(frames::ui::DBGrid* grid) override;
    void FindInGrid(frames::ui::DBGrid* grid) override;
    QWidget* ShowFindForm(frames::ui::DBGrid* grid, const QString& text) override;

    // The address as the desktop opens it: mailto: for a mail address, http:// when no scheme.
    static QString addressUrl(const QString& address);
    // First row (from the row after start, wrapping) whose visible cells contain text without
    // regard to case; -1 when none.
    static int findRow(const QTableView* view, const QString& text, int start = -1);

private:
    void message(const QString& kind, const QString& text);
    void readRunConstants();
    void openImageDatabase(const QString& connectString);
    // Reads config.json; an unreadable one (not JSON, not an object, a value of the wrong kind)
    // is moved aside like layout.json and the defaults are used.
    void loadConfig();
    QVariant configValue(const QString& key) const;

    Settings settings_;
    std::unique_ptr<frames::db::Database> database_;
    std::unique_ptr<frames::db::Transaction> readTransaction_;
    std::unique_ptr<frames::db::Database> imageDatabase_;
    frames::TConfigItem layout_{QStringLiteral("Layout")};
    QJsonObject config_;
    QStringList messages_;
    mutable QHash<QString, bool> rights_;
    std::map<QString, std::unique_ptr<QObject>> formObjects_;
    int session_ = 0;
    bool lost_ = false;
    int userId_ = -1;

    // ---- unreadable profile files
    // The content of a profile file; false when it is missing, too large (moved aside) or cannot
    // be opened (left where it is).
    bool readProfileFile(const QString& path, QByteArray& text);
    // Renames an unreadable profile file to <path>.broken-<time>, writes the reason to the trace
    // log and tells the user with message (%1 the file, %2 the new name). Returns the new name,
    // empty when the file could not be moved (it is then left alone).
    QString setAside(const QString& path, const QString& reason, const QString& message);
    static constexpr qint64 kMaxProfileFileSize = 256 * 1024 * 1024;
    bool layoutKept_ = false; // an unreadable layout.json stayed in place: never written over
    // The forms' places, kept while this is the host installed.
    std::unique_ptr<FormPlacement> placement_;
};

} // namespace workbench
