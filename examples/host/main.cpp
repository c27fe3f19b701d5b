// An example host of the frames: a list of payment documents, their edit dialog drawn in the
// designer with lookups and editors on it, and a filter panel with a period and a multi-select
// lookup of clients.
//   frames_example_host --database FILE [--check]
// --check runs without a user: it edits the first document and filters the list through the
// frames, as a user would, checks what the database holds after each step, prints what it did and
// exits with 0 when everything held (1 otherwise).
#include "ExampleHost.h"
#include "FilterPanel.h"
#include "PaymentDialog.h"
#include "PaymentList.h"
#include <QApplication>
#include <QCommandLineParser>
#include <QKeyEvent>
#include <QSet>
#include <cstdio>
#include <frames/core/Registry.h>
#include <frames/edit/EF_PeriodExt.h>
#include <frames/multi/LF_MultiAbs.h>
#include <platform/db/DataSet.h>
#include <platform/db/Error.h>
#include <platform/db/Query.h>
#include <platform/widgets/DateEdit.h>
#include <platform/widgets/LookupCombo.h>

namespace {

using namespace example;

int failures = 0;

void check(bool ok, const QString& what) {
    std::printf("%s %s\n", ok ? "ok  " : "FAIL", qPrintable(what));
    if (!ok) ++failures;
}

QVariant scalar(ExampleHost& host, const QString& sql) {
    frames::db::Query q(host.RvDatabase(), host.pfReadTransaction());
    q.setSql(sql);
    q.open();
    const QVariant v = q.next() ? q.value(0) : QVariant();
    q.close();
    return v;
}

void pressKey(QWidget* w, int key) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QApplication::sendEvent(w, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QApplication::sendEvent(w, &release);
}

int runCheck(ExampleHost& host) {
    PaymentList list(&host);
    frames::db::DataSet* docs = list.records();
    const int all = docs->recordCount();
    check(all > 0 && all == scalar(host, "select count(*) from PAYMENT_DOC").toInt(),
          QStringLiteral("the list shows every document (%1)").arg(all));

    // ---- the edit dialog over the first document
    docs->first();
    const int id = docs->fieldByName("ID_PAYMENT_DOC")->value().toInt();
    const double amount = docs->fieldByName("AMOUNT")->value().toDouble();
    const QString number = docs->fieldByName("DOC_NUMBER")->value().toString();
    const QString currency =
        scalar(host, QStringLiteral("select c.NAME_CUR_TYPE from PAYMENT_DOC d join CUR_TYPE c "
                                    "on c.ID_CUR_TYPE = d.CUR_TYPE where d.ID_PAYMENT_DOC = %1")
                         .arg(id))
            .toString();
    const int color = scalar(host, "select min(ID) from COLOR where ID > 0").toInt();
    {
        PaymentDialog dialog(&list);
        dialog.prepare();
        check(dialog.ui.DBEdit_Frame->DBEdit->text() == number,
              QStringLiteral("the number editor shows the document's number «%1»").arg(number));
        check(dialog.ui.CalcEdit_Frame->Caption() == QStringLiteral("Сумма"),
              QStringLiteral("the amount editor has the caption the designer form gives it"));
        check(dialog.ui.CursType_LF->lcSelect->displayText() == currency,
              QStringLiteral("the currency lookup shows «%1»").arg(currency));
        check(qobject_cast<frames::TAbsEditFrame*>(dialog.ui.Color_LF)->Owner() == &dialog,
              QStringLiteral("the frames of the designer form are owned by the edit dialog"));
        dialog.ui.CalcEdit_Frame->SetValue(amount + 10);
        dialog.ui.Color_LF->lcSelect->setKeyValue(color);
        dialog.accept();
        check(dialog.result() == QDialog::Accepted, QStringLiteral("the dialog saved the document"));
    }
    check(
        qAbs(scalar(host, QStringLiteral("select AMOUNT from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id))
                 .toDouble() -
             (amount + 10)) < 0.005,
        QStringLiteral("the database holds the new amount %1").arg(amount + 10, 0, 'f', 2));
    check(scalar(host, QStringLiteral("select ID_COLOR from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id))
                  .toInt() == color,
          QStringLiteral("the database holds the chosen colour %1").arg(color));

    // ---- the filter panel: February 2024 and the client of most documents in it that the client
    // lookup lists
    QString condition;
    int client = -1;
    {
        FilterPanel panel(&list);
        panel.prepare();
        panel.period()->deFirstDate->setDate(QDate(2024, 2, 1));
        panel.period()->deLastDate->setDate(QDate(2024, 2, 29));
        frames::TMultiAbs_LF* clients = panel.clients();
        QSet<int> listed;
        frames::db::DataSet* rows = clients->pFIBDataSet1;
        const int keyColumn = rows->fieldByName(clients->lcSelect->lookupField())->index();
        for (int row = 0; row < rows->recordCount(); ++row) listed << rows->valueAt(row, keyColumn).toInt();
        frames::db::Query q(host.RvDatabase(), host.pfReadTransaction());
        q.setSql(
            "select LINK_TO_CLIENT from PAYMENT_DOC where DOC_DATE between '2024-02-01' and '2024-02-29' "
            "and LINK_TO_CLIENT is not null group by LINK_TO_CLIENT order by count(*) desc, LINK_TO_CLIENT");
        q.open();
        while (client < 0 && q.next())
            if (listed.contains(q.value(0).toInt())) client = q.value(0).toInt();
        q.close();
        check(client >= 0,
              QStringLiteral("the client lookup lists a client with documents in February 2024 (%1)")
                  .arg(client));
        clients->lcSelect->setKeyValue(client);
        pressKey(clients->lcSelect->comboBox(), Qt::Key_Insert); // the user takes the client in
        check(clients->ItemsCount() == 2 && clients->ItemsItem(1) == QString::number(client),
              QStringLiteral("the client lookup holds client %1").arg(client));
        clients->lcSelect->setKeyValue(QVariant());
        condition = panel.condition();
        check(panel.apply(), QStringLiteral("the filter applies: %1").arg(condition));
    }
    const int expected =
        scalar(host,
               QStringLiteral("select count(*) from PAYMENT_DOC where DOC_DATE between '2024-02-01' and "
                              "'2024-02-29' and LINK_TO_CLIENT = %1")
                   .arg(client))
            .toInt();
    check(expected > 0 && docs->recordCount() == expected,
          QStringLiteral("the list shows the %1 documents of the filter (%2)")
              .arg(expected)
              .arg(docs->recordCount()));

    // The choice is kept for the next session.
    {
        FilterPanel panel(&list);
        panel.prepare();
        check(panel.condition() == condition, QStringLiteral("the filter panel restores its choice"));
        panel.reject();
    }
    check(host.messages().isEmpty(),
          QStringLiteral("no message to the user: %1").arg(host.messages().join("; ")));
    return failures == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    app.setApplicationName(QStringLiteral("frames-example-host"));
    QCommandLineParser parser;
    parser.addHelpOption();
    const QCommandLineOption database(QStringLiteral("database"),
                                      QStringLiteral("Database file or host/port:path."),
                                      QStringLiteral("path"));
    const QCommandLineOption checkRun(QStringLiteral("check"),
                                      QStringLiteral("Run the scripted check and exit."));
    parser.addOption(database);
    parser.addOption(checkRun);
    parser.process(app);
    if (!parser.isSet(database)) {
        std::fprintf(stderr, "frames_example_host: --database is required\n");
        return 2;
    }

    ExampleHost host(!parser.isSet(checkRun));
    std::printf("frames: %d frame classes registered\n",
                int(frames::Registry::instance().classNames().size()));
    try {
        host.open(parser.value(database));
    } catch (const frames::db::Error& e) {
        std::fprintf(stderr, "frames_example_host: the database cannot be opened: %s\n",
                     qPrintable(e.userText()));
        return 2;
    }
    if (parser.isSet(checkRun)) return runCheck(host);

    PaymentList list(&host);
    list.show();
    return app.exec();
}
