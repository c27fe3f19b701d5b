#pragma once
#include "frames/core/Host.h"
#include "platform/db/Database.h"
#include "platform/db/Transaction.h"
#include <QHash>
#include <QStringList>
#include <deque>
#include <functional>
#include <memory>

namespace frames::test {

// A host for tests: real database and read transaction, scripted module runner, recorded
// messages with scripted answers, configuration values, rights and captured trace lines.
class TestHost : public Host {
public:
    explicit TestHost(const QString& databasePath = {});
    ~TestHost() override;

    // ---- scripting
    struct Run {
        QString formName;
        TRunParams params; // as the frame handed them over
    };
    // The next RunModule call returns result; confirm writes key (and resultInt) back.
    using Script = std::function<int(const QString& formName, TRunParams& params)>;
    void scriptRun(Script s) { scripts.push_back(std::move(s)); }
    void scriptRunResult(int result, const QVariant& key = {}, int resultInt = 0);
    std::vector<Run> runs;
    std::deque<Script> scripts;
    QStringList registeredForms; // RvGetForm finds these (RefNumber = index + 1)

    struct Message {
        QString kind; // "error", "errorEx", "warning", "info", "question"
        QString text;
        QString caption; // empty: the host's default
    };
    std::vector<Message> messages;
    std::deque<bool> answers; // answers of QuestionBox, default true
    QStringList errors() const;
    QStringList warnings() const;

    QHash<QString, int> intValues;
    QHash<QString, bool> boolValues;
    QHash<QString, QString> stringValues;
    QHash<QString, QString> ini; // "Section/Key"
    QStringList rights;
    QStringList trace;
    QStringList openedAddresses;
    QDate today = QDate(2024, 3, 15);
    QDateTime now = QDateTime(QDate(2024, 3, 15), QTime(10, 30));
    QString profilePath;

    // ---- Host
    int RunModule(const QString& formName, TRunParams& params) override;
    QObject* RvGetForm(const QString& formName) override;
    QStringList FormList() const override { return registeredForms; }
    void ErrorBox(const QString& text) override { messages.push_back({"error", text, {}}); }
    void ErrorBoxEx(const QString& text, int detail) override {
        messages.push_back({"errorEx", text + " (" + QString::number(detail) + ")", {}});
    }
    void WarningBox(const QString& text) override { messages.push_back({"warning", text, {}}); }
    void WarningBox(const QString& text, const QString& caption) override {
        messages.push_back({"warning", text, caption});
    }
    void InfoBox(const QString& text) override { messages.push_back({"info", text, {}}); }
    bool QuestionBox(const QString& text) override;
    int GetIntValue(const QString& key) const override { return intValues.value(key, 0); }
    bool GetBoolValue(const QString& key) const override { return boolValues.value(key, false); }
    QString GetStringValue(const QString& key) const override { return stringValues.value(key); }
    QString PrecisionCurFormat() const override { return ",0.00"; }
    QString PrecisionQuantityFormat() const override { return ",0.###"; }
    QString PrecisionRubFormat() const override { return ",0.00"; }
    QString PrecisionVolumeFormat() const override { return ",0.###"; }
    QString ProfilePath() const override { return profilePath; }
    QString IniString(const QString& section, const QString& key, const QString& def) const override {
        return ini.value(section + "/" + key, def);
    }
    db::Database* RvDatabase() const override { return database.get(); }
    db::Transaction* pfReadTransaction() const override { return readTransaction.get(); }
    db::Database* ImageDatabase() const override { return database.get(); }
    bool IsFuncRights(const QString& name) const override { return rights.contains(name); }
    int SessionNumber() const override { return 1; }
    void TraceText(const QString& text, int level) override { trace << QString::number(level) + ": " + text; }
    void OpenAddress(const QString& address) override { openedAddresses << address; }
    void CustomizeGrid(ui::DBGrid*) override {}
    void FindInGrid(ui::DBGrid*) override {}
    // Recorded as "<grid object name>:<text>".
    QWidget* ShowFindForm(ui::DBGrid* grid, const QString& text) override;
    QStringList findForms;
    QDate Today() const override { return today; }
    QDateTime Now() const override { return now; }

    std::unique_ptr<db::Database> database;
    std::unique_ptr<db::Transaction> readTransaction;

private:
    std::vector<std::unique_ptr<QObject>> forms_;
};

} // namespace frames::test
