#pragma once
#include <QStringList>
#include <frames/core/ConfigItem.h>
#include <frames/core/Host.h>
#include <memory>

namespace example {

// The services this host gives the frames, as few as a host can give: one database with its read
// transaction, the run constants of the connected user, a module runner with three reference
// forms, message boxes, configuration defaults, a layout tree kept in one file, a trace log.
class ExampleHost : public frames::Host {
public:
    // interactive: message boxes and reference forms are shown; otherwise messages are printed
    // and recorded, and reference forms answer "cancelled".
    explicit ExampleHost(bool interactive);
    ~ExampleHost() override;

    // Attaches to a database file (embedded engine) or host/port:path, starts the read
    // transaction and reads the run constants. Throws frames::db::Error.
    void open(const QString& connectString);

    // The layout node of a frame on a form, kept across runs in the profile's layout.json.
    frames::TConfigItem* layoutNode(const QString& form, const QString& frame);
    void saveLayout() const;

    // Every message the frames or the forms gave ("error: ...", "warning: ...").
    const QStringList& messages() const { return messages_; }
    bool interactive() const { return interactive_; }

    // ---- module runner
    int RunModule(const QString& formName, frames::TRunParams& params) override;
    QObject* RvGetForm(const QString& formName) override;
    QStringList FormList() const override;
    // ---- messages
    void ErrorBox(const QString& text) override;
    void ErrorBoxEx(const QString& text, int detail) override;
    void WarningBox(const QString& text) override;
    void InfoBox(const QString& text) override;
    bool QuestionBox(const QString& text) override;
    // ---- configuration
    int GetIntValue(const QString& key) const override;
    bool GetBoolValue(const QString& key) const override;
    QString GetStringValue(const QString& key) const override;
    QString PrecisionCurFormat() const override { return QStringLiteral(",0.00"); }
    QString PrecisionQuantityFormat() const override { return QStringLiteral(",0.###"); }
    QString PrecisionRubFormat() const override { return QStringLiteral(",0.00"); }
    QString PrecisionVolumeFormat() const override { return QStringLiteral(",0.###"); }
    QString ProfilePath() const override { return profile_; }
    QString IniString(const QString& section, const QString& key, const QString& def) const override;
    // ---- database module
    frames::db::Database* RvDatabase() const override { return database_.get(); }
    frames::db::Transaction* pfReadTransaction() const override { return read_.get(); }
    frames::db::Database* ImageDatabase() const override { return nullptr; }
    bool IsFuncRights(const QString& functionName) const override;
    int SessionNumber() const override { return session_; }
    // ---- trace log
    void TraceText(const QString& text, int level) override;
    // ---- desktop and tools
    void OpenAddress(const QString& address) override;
    void CustomizeGrid(frames::ui::DBGrid*) override {}
    void FindInGrid(frames::ui::DBGrid*) override {}

private:
    void message(const QString& kind, const QString& text);

    bool interactive_;
    QString profile_;
    std::unique_ptr<frames::db::Database> database_;
    std::unique_ptr<frames::db::Transaction> read_;
    frames::TConfigItem layout_{QStringLiteral("Layout")};
    std::vector<std::unique_ptr<QObject>> forms_;
    QStringList messages_;
    int session_ = 0;
};

} // namespace example
