#pragma once
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>

namespace workbench {

// A filter of a report's filter panel: its frame class and how the frame's state becomes a
// condition of the report's statement (see reports.json).
struct ReportFilter {
    QString className;
    // The column a filter box's SQL is asked for, or the column a period frame's dates limit.
    QString column;
    // Where the box's SQL goes ("%SQL%"); empty: the SQL is the condition.
    QString sqlTemplate;
    // A condition over the user's choice kept on the server (%USER%, %KIND%), taken when the box
    // is ticked; empty for the others.
    QString selection;
    // The table of the box's summary row (its presence says the box is on; the box writes it when
    // it saves its layout): the panel drops the row of a box left off.
    QString summary;
    // Why the report cannot use the filter; empty for a filter that takes part.
    QString none;
    // The frame's Kind (-1: the frame has none set by the panel).
    int kind = -1;
    // The frame spans the whole width of the panel.
    bool wide = false;
    // The box keeps its choice in the frame until ApplyChange stores it on the server: the panel
    // stores it before it runs the report.
    bool apply = false;
    // Applied to the frame before Init: its caption, its Kind.
    QJsonObject description;

    bool affectsReport() const { return none.isEmpty(); }
};

// A report of the filter panel: the rows its filters work on and the statements over them.
struct ReportDefinition {
    QString name; // the panel's objectName and its node in the layout tree
    QString title;
    QString from;
    QString totalsSql;
    QStringList totalTitles;
    QString rowsSql; // empty: no grid of rows
    struct Column {
        QString field;
        QString caption;
        int width;
    };
    QList<Column> rowColumns;
    QString chartSql; // empty: no chart
    QString chartTitle;
    // The first and last date the period frame shows when the user opens the report for the
    // first time (a select of two dates); empty: the frame's own default.
    QString firstPeriodSql;
    QList<ReportFilter> filters;

    const ReportFilter* findFilter(const QString& className) const;
    // A statement of the report with the rows and the conditions put in.
    QString statement(const QString& sqlTemplate, const QString& where) const;
};

// The reports of reports.json by name; throws std::logic_error for a name it does not hold.
const ReportDefinition& reportDefinition(const QString& name);
// The payment documents' panel and the sales report.
const ReportDefinition& paymentReport();
const ReportDefinition& salesReport();

} // namespace workbench
