#include "host/CrmForms.h"
#include "frames/core/WaitCursor.h"
#include "host/FrameHostForms.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/Transaction.h"
#include <memory>

namespace workbench {

namespace {

// A list over `select` (its rows re-read with `keyCondition` added), edited with those frames.
RecordListForm* makeList(HostImpl* host, QWidget* parent, const char* name, const QString& title,
                         const QString& select, const QString& keyCondition, const QString& update,
                         const QStringList& frames) {
    const ::frames::WaitCursor wait;
    auto* records = new frames::db::DataSet(host->RvDatabase(), host->pfReadTransaction());
    records->setObjectName(QStringLiteral("pFIBDataSet1"));
    records->setSelectSql(select + QStringLiteral(" order by 2"));
    records->setRefreshSql(select + QStringLiteral(" and ") + keyCondition);
    records->setUpdateSql(update);
    auto form = std::make_unique<RecordListForm>(host, records, frames, parent);
    form->setObjectName(QString::fromLatin1(name));
    form->setWindowTitle(title);
    form->editorColumns = int(frames.size());
    form->setWriteTransaction(new frames::db::Transaction(
        host->RvDatabase(), frames::db::TransactionOptions::writeNoWait(), form.get()));
    records->open();
    return form.release();
}

} // namespace

RecordListForm* makeFirmList(HostImpl* host, QWidget* parent) {
    // The marks are written by the frames themselves; the record only keeps its name.
    return makeList(host, parent, "FirmListForm", QStringLiteral("Компании CRM"),
                    QStringLiteral("select f.ID, f.NAME, f.ADDRESS from FIRM f where f.ID > 0"),
                    QStringLiteral("f.ID = :ID"),
                    QStringLiteral("update FIRM set NAME = :NAME where ID = :OLD_ID"),
                    {QStringLiteral("TFirmCharacter_Frame"), QStringLiteral("TFirmTerritory_Frame"),
                     QStringLiteral("TFirmBusinessSphere_Frame")});
}

RecordListForm* makeEventList(HostImpl* host, QWidget* parent) {
    return makeList(
        host, parent, "FirmEventListForm", QStringLiteral("События компаний"),
        QStringLiteral("select e.ID, e.EVENT_DATE, f.NAME as FIRM_NAME, e.NOTE, e.FIRM, e.MANAGER "
                       "from FIRM_EVENT e join FIRM f on f.ID = e.FIRM where e.ID > 0"),
        QStringLiteral("e.ID = :ID"), QStringLiteral("update FIRM_EVENT set NOTE = :NOTE where ID = :OLD_ID"),
        {QStringLiteral("TEventCharacter_Frame")});
}

} // namespace workbench
