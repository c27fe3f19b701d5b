#include "frames/crm/EF_MarkList.h"
#include "frames/core/Host.h"
#include "frames/core/HostForms.h"
#include "frames/core/Tyapi.h"
#include "platform/db/DataSource.h"
#include "platform/db/Field.h"
#include <QLayout>
#include <QSet>

namespace frames {

TMarkList_Frame::TMarkList_Frame(QWidget* parent, const char* listName) : TAbsEditFrame(parent) {
    resize(250, 160);
    List = new QListWidget(body());
    List->setObjectName(listName);
    body()->layout()->addWidget(List);
    lbSelect->setBuddy(List);

    pfLoad = new db::DataSet(this);
    pfLoad->setObjectName("pfLoad");
    pFIBDataSet2 = new db::DataSet(this);
    pFIBDataSet2->setObjectName("pFIBDataSet2");
    for (db::DataSet* ds : {pfLoad, pFIBDataSet2}) {
        ds->setDatabase(dmDataBaseFIB()->RvDatabase());
        ds->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    }
    pfLoad->beforeOpen.connect([this](db::AbstractDataSet& ds) { pfLoadBeforeOpen(ds); });
    pFIBDataSet2->beforeOpen.connect([this](db::AbstractDataSet& ds) { pFIBDataSet2BeforeOpen(ds); });
}

void TMarkList_Frame::SetParam(db::DataSet* ds, const QString& name, const QVariant& value) {
    if (db::Param* p = ds->findParam(name)) p->setValue(value);
}

void TMarkList_Frame::pfLoadBeforeOpen(db::AbstractDataSet&) {
    SetParam(pfLoad, "KIND", Kind);
}

void TMarkList_Frame::pFIBDataSet2BeforeOpen(db::AbstractDataSet&) {
    SetParam(pFIBDataSet2, KeyParam, ObjectKey);
    SetParam(pFIBDataSet2, "KIND", Kind);
}

void TMarkList_Frame::TakeRecordKeys(const db::AbstractDataSet& record) {
    if (db::Field* key = record.findField(RecordKeyField); key && !key->isNull())
        ObjectKey = key->value().toInt();
}

void TMarkList_Frame::Init() {
    TAbsEditFrame::Init();
    if (db::DataSource* record = editDialogBinding(this);
        record && record->dataSet() && record->dataSet()->active() && !RecordKeyField.isEmpty())
        TakeRecordKeys(*record->dataSet());
    List->clear();
    struct Closer {
        TMarkList_Frame* f;
        ~Closer() {
            f->pfLoad->close();
            f->pFIBDataSet2->close();
        }
    } closer{this};
    pfLoad->close();
    pFIBDataSet2->close();
    pfLoad->open();
    pFIBDataSet2->open();
    QSet<int> stored;
    for (pFIBDataSet2->first(); !pFIBDataSet2->eof(); pFIBDataSet2->next())
        stored.insert(pFIBDataSet2->fieldByName(ValueField)->value().toInt());
    for (pfLoad->first(); !pfLoad->eof(); pfLoad->next()) {
        auto* item = new QListWidgetItem(pfLoad->fieldByName("NAME")->value().toString(), List);
        const int id = pfLoad->fieldByName("ID")->value().toInt();
        item->setData(Qt::UserRole, id);
        item->setCheckState(stored.contains(id) ? Qt::Checked : Qt::Unchecked);
    }
    SetReadOnly(GetReadOnly());
}

QVariantList TMarkList_Frame::RowStatement(int id, bool checked) const {
    if (!UpdateProcedure.isEmpty())
        return {"execute procedure " + UpdateProcedure + "(",
                ObjectKey,
                ", ",
                Kind,
                ", ",
                id,
                ",",
                checked ? 1 : 0,
                ")"};
    if (checked)
        return {"update or insert into " + LinkTable + "(" + LinkKeyColumn + ", " + LinkValueColumn +
                    ") values(",
                ObjectKey, ", ", id, ")"};
    return {"delete from " + LinkTable + " where " + LinkKeyColumn + "=", ObjectKey,
            " and " + LinkValueColumn + "=", id};
}

void TMarkList_Frame::Save() {
    TAbsEditFrame::Save();
    for (int i = 0; i < List->count(); ++i) {
        const QListWidgetItem* item = List->item(i);
        QvSqlExec(RowStatement(item->data(Qt::UserRole).toInt(), item->checkState() == Qt::Checked));
    }
}

void TMarkList_Frame::Clear() {
    for (int i = 0; i < List->count(); ++i) List->item(i)->setCheckState(Qt::Unchecked);
}

void TMarkList_Frame::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    for (int i = 0; i < List->count(); ++i) {
        QListWidgetItem* item = List->item(i);
        item->setFlags(value ? item->flags() & ~Qt::ItemIsUserCheckable
                             : item->flags() | Qt::ItemIsUserCheckable);
    }
}

bool TMarkList_Frame::IsEmpty() {
    return TAbsEditFrame::IsEmpty() || CheckedIds().isEmpty();
}

QList<int> TMarkList_Frame::Ids() const {
    QList<int> ids;
    for (int i = 0; i < List->count(); ++i) ids << List->item(i)->data(Qt::UserRole).toInt();
    return ids;
}

QList<int> TMarkList_Frame::CheckedIds() const {
    QList<int> ids;
    for (int i = 0; i < List->count(); ++i)
        if (List->item(i)->checkState() == Qt::Checked) ids << List->item(i)->data(Qt::UserRole).toInt();
    return ids;
}

void TMarkList_Frame::SetChecked(int id, bool checked) {
    for (int i = 0; i < List->count(); ++i)
        if (List->item(i)->data(Qt::UserRole).toInt() == id)
            List->item(i)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
}

} // namespace frames
