#include "tests/support/TestHost.h"
#include "platform/widgets/DBGrid.h"
#include <QTemporaryDir>

namespace frames::test {

TestHost::TestHost(const QString& databasePath) {
    if (!databasePath.isEmpty()) {
        database = std::make_unique<db::Database>();
        database->open(databasePath);
        readTransaction = std::make_unique<db::Transaction>(database.get(), db::TransactionOptions::read());
        readTransaction->start();
        database->setDefaultTransaction(readTransaction.get());
    }
    setHost(this);
}

TestHost::~TestHost() {
    setHost(nullptr);
    readTransaction.reset();
    if (database) database->close();
}

void TestHost::scriptRunResult(int result, const QVariant& key, int resultInt) {
    scriptRun([=](const QString&, TRunParams& p) {
        if (result == 1) {
            p.KeyValue = key;
            p.ResultInt = resultInt;
        }
        return result;
    });
}

int TestHost::RunModule(const QString& formName, TRunParams& params) {
    runs.push_back({formName, params});
    if (scripts.empty()) return 2;
    Script s = std::move(scripts.front());
    scripts.pop_front();
    return s(formName, params);
}

QObject* TestHost::RvGetForm(const QString& formName) {
    const int i = registeredForms.indexOf(formName);
    if (i < 0) return nullptr;
    auto form = std::make_unique<QObject>();
    form->setObjectName(formName);
    form->setProperty("RefNumber", i + 1);
    forms_.push_back(std::move(form));
    return forms_.back().get();
}

bool TestHost::QuestionBox(const QString& text) {
    messages.push_back({"question", text, {}});
    if (answers.empty()) return true;
    const bool a = answers.front();
    answers.pop_front();
    return a;
}

QWidget* TestHost::ShowFindForm(ui::DBGrid* grid, const QString& text) {
    findForms << (grid ? grid->objectName() : QString()) + ":" + text;
    return nullptr;
}

QStringList TestHost::errors() const {
    QStringList l;
    for (auto& m : messages)
        if (m.kind.startsWith("error")) l << m.text;
    return l;
}

QStringList TestHost::warnings() const {
    QStringList l;
    for (auto& m : messages)
        if (m.kind == "warning") l << m.text;
    return l;
}

} // namespace frames::test
