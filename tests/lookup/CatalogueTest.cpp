#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/Query.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/lookup/Descriptions.h"
#include "tests/support/DbFixture.h"
#include <QRegularExpression>

using namespace frames;

namespace {

class LookupCatalogue : public test::DbTest {};

bool hasParameters(const QString& sql) {
    // Quoted text and comments hold no parameters.
    QString s = sql;
    s.remove(QRegularExpression("'[^']*'"));
    s.remove(QRegularExpression("/\\*.*?\\*/", QRegularExpression::DotMatchesEverythingOption));
    return s.contains(QRegularExpression("[:?][A-Za-z_]"));
}

// Classes whose reference list is legitimately empty until the host gives them a context (a
// document type, an article, a client ...). Everything else must show demo rows.
bool listNeedsContext(const TAbs_LF* lf) {
    return hasParameters(lf->pFIBDataSet1->selectSql()) || lf->pFIBDataSet1->selectSql().trimmed().isEmpty();
}

} // namespace

// Every statement of every lookup description prepares against the demo schema.
TEST_F(LookupCatalogue, EveryStatementPrepares) {
    int statements = 0;
    QStringList failures;
    auto prepare = [&](const QString& where, const QString& sql) {
        ++statements;
        db::Query q(host->RvDatabase(), host->pfReadTransaction());
        try {
            q.setSql(sql);
            q.prepare();
        } catch (const std::exception& e) {
            failures << where + ": " + QString::fromUtf8(e.what());
        }
    };
    for (const test::LookupDescription& d : test::lookupDescriptions()) {
        for (auto it = d.select.begin(); it != d.select.end(); ++it)
            prepare(d.cls + "." + it.key() + ".SelectSQL", it.value());
        for (auto it = d.refresh.begin(); it != d.refresh.end(); ++it)
            prepare(d.cls + "." + it.key() + ".RefreshSQL", it.value());
    }
    EXPECT_GE(statements, 130);
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n\n").toStdString();
}

// Every registered lookup frame opens its list free-standing, and bound to a viewed record that
// holds a key of that list it reads the row through its one-row select and shows its name. A frame
// that fails names itself.
TEST_F(LookupCatalogue, EveryLookupInitialisesFreeStandingAndBound) {
    const QStringList classes = Registry::instance().classNames("lookup");
    ASSERT_GE(classes.size(), 139);
    QStringList failures;
    for (const QString& cls : classes) {
        host->messages.clear();
        QWidget top;
        std::unique_ptr<TAbsEditFrame> free(Registry::instance().create(cls, &top));
        auto* lf = qobject_cast<TAbs_LF*>(free.get());
        if (!lf) {
            failures << cls + ": not a lookup frame";
            continue;
        }
        if (!guard([&] { lf->Init(); }) || !host->errors().isEmpty()) {
            failures << cls + " free-standing: " + host->errors().join("; ") + "\n  " +
                            lf->pFIBDataSet1->selectSql();
            continue;
        }
        const bool empty = !lf->pFIBDataSet1->active() || lf->pFIBDataSet1->isEmpty();
        if (empty && !listNeedsContext(lf)) failures << cls + ": the list is empty";
        const QString keyField = lf->lcSelect->lookupField();
        if (empty || keyField.isEmpty() || !lf->pFIBDataSet1->findField(keyField)) continue;

        // A list form over one record that points at the list's first row, and its edit dialog.
        lf->pFIBDataSet1->first();
        const db::Field* key = lf->pFIBDataSet1->fieldByName(keyField);
        const QString dataField = lf->lcSelect->dataField().isEmpty() ? keyField : lf->lcSelect->dataField();
        test::BoundRecord h({dataField}, {key->value()}, key->dataType(), key->size(), key->scale());
        std::unique_ptr<TAbsEditFrame> bound(Registry::instance().create(cls, h.dialog));
        auto* blf = qobject_cast<TAbs_LF*>(bound.get());
        blf->lcSelect->setDataField(dataField);
        if (!guard([&] { blf->Init(); }) || !host->errors().isEmpty()) {
            failures << cls + " bound: " + host->errors().join("; ") + "\n  " +
                            blf->pFIBDataSet1->selectSql();
            continue;
        }
        if (blf->lcSelect->dataSource() != h.source)
            failures << cls + ": not bound on the edit dialog";
        else if (!key->isNull() && blf->lcSelect->isVisible() == lf->lcSelect->isVisible() &&
                 blf->lcSelect->displayText().isEmpty() && !blf->lcSelect->lookupDisplay().isEmpty())
            failures << cls + ": the viewed record's key " + key->asString() + " shows no name";
    }
    EXPECT_TRUE(failures.isEmpty()) << failures.join("\n").toStdString();
}
