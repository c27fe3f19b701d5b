#pragma once
#include "host/FrameHostForms.h"
#include "host/ReportDefinition.h"
#include <QList>
#include <QString>

class QWidget;

namespace workbench {

class HostImpl;

// The payment documents (table PAYMENT_DOC): the list form whose edit dialog shows every
// data-bound value editor, each on its column, and the columns the filter panel's frames filter.

// The editors of a document's edit dialog, in the order they are shown.
const QList<EditorSlot>& documentEditors();
// Whether the documents' edit dialog shows a frame of that class.
bool editsDocuments(const QString& className);

// The filters of the payment documents' filter panel, each on the column of PAYMENT_DOC it filters.
using DocumentFilter = ReportFilter;
const QList<DocumentFilter>& documentFilters();
const DocumentFilter* findDocumentFilter(const QString& className);

// The list form over the documents, open, with a write transaction of its own: a confirmed edit
// is posted and committed at once. Throws db::Error.
RecordListForm* makeDocumentList(HostImpl* host, QWidget* parent = nullptr);

} // namespace workbench
