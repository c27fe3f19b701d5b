#include "frames/edit/EF_Partner.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>

namespace frames {

namespace {
const char* const kLinkField = "LINK_TO_CLIENT";
}

TPartner_EF::TPartner_EF(QWidget* parent) : TDBEdit_Frame(parent) {
    resize(451, 41);
    DBEdit->setReadOnly(true); // the name is chosen, not typed
    bbSelect = new QPushButton(body());
    bbSelect->setObjectName("bbSelect");
    bbClear = new QPushButton(body());
    bbClear->setObjectName("bbClear");
    body()->layout()->addWidget(bbSelect);
    body()->layout()->addWidget(bbClear);

    pFIBDataSet1 = new db::DataSet(this);
    pFIBDataSet1->setObjectName("pFIBDataSet1");
    pFIBDataSet1->setDatabase(dmDataBaseFIB()->RvDatabase());
    pFIBDataSet1->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    DataSource1 = new db::DataSource(pFIBDataSet1, this);
    DataSource1->setObjectName("DataSource1");
    DBEdit->setDataSource(DataSource1);

    connect(bbSelect, &QPushButton::clicked, this, [this] { guard([&] { bbSelectClick(bbSelect); }); });
    connect(bbClear, &QPushButton::clicked, this, [this] { guard([&] { bbClearClick(bbClear); }); });
    pFIBDataSet1->beforeOpen.connect([this](db::AbstractDataSet& ds) { pFIBDataSet1BeforeOpen(ds); });
}

void TPartner_EF::AfterConstruction() {
    TDBEdit_Frame::AfterConstruction();
    ClientFormName = "ClientForm";
    // The client form says which classifier its clients are filed under.
    if (QObject* form = RvGetForm(ClientFormName)) {
        bool ok = false;
        const int type = form->property("ClassifType").toInt(&ok);
        if (ok) ClassifType = type;
    }
}

void TPartner_EF::SetReadOnly(bool value) {
    TDBEdit_Frame::SetReadOnly(value);
    DBEdit->setReadOnly(true);
    bbSelect->setEnabled(!value);
    bbClear->setEnabled(!value);
}

void TPartner_EF::BindEditor(db::DataSource*) {
    // The editor shows the client's name from the frame's own dataset; the record only holds
    // the link.
}

void TPartner_EF::Init() {
    TDBEdit_Frame::Init();
    reopen();
}

void TPartner_EF::DataRefresh() {
    TDBEdit_Frame::DataRefresh();
    reopen();
}

QVariant TPartner_EF::LinkToClient() const {
    if (db::DataSource* record = RecordSource(); record && record->dataSet() && record->dataSet()->active())
        return record->dataSet()->fieldByName(kLinkField)->value();
    return ownLink_;
}

bool TPartner_EF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    const QVariant link = LinkToClient();
    return !link.isValid() || link.isNull();
}

void TPartner_EF::Clear() {
    setLink(QVariant());
    reopen();
}

void TPartner_EF::setLink(const QVariant& key) {
    if (RecordSource())
        SetRecordValue(kLinkField, key);
    else
        ownLink_ = key;
}

void TPartner_EF::reopen() {
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TPartner_EF::pFIBDataSet1BeforeOpen(db::AbstractDataSet&) {
    pFIBDataSet1->paramByName("TYPE_CLASSIF")->setValue(ClassifType);
    const QVariant link = LinkToClient();
    if (!link.isValid() || link.isNull())
        pFIBDataSet1->paramByName("link_to_client")->setValue(QVariant());
    else
        pFIBDataSet1->paramByName("link_to_client")->setValue(link);
}

void TPartner_EF::bbSelectClick(QObject*) {
    if (GetReadOnly()) Abort();
    ResetParams(RunParams);
    RunParams.KeyFieldName = "ID_CLIENTS";
    // The client form opens on the current client, in the classifier node it is filed under.
    RunParams.KeyValue = LinkToClient();
    if (pFIBDataSet1->active() && !pFIBDataSet1->isEmpty()) {
        const QVariant classif = pFIBDataSet1->fieldByName("CLASSIF")->value();
        RunParams.EnsureParams().ByName("CLASSIF").Value = classif;
        if (classif.isValid() && !classif.isNull()) RunParams.KeyInt = classif.toInt();
    }
    if (QObject* form = RvGetForm(ClientFormName)) {
        RunParams.FormFound = 1;
        RunParams.ResultInt = form->property("RefNumber").toInt();
    }
    const int result = RunModule(ClientFormName, RunParams);
    const QVariant key = RunParams.KeyValue;
    if (result != 1 || !key.isValid() || key.isNull() || key.toString().trimmed().isEmpty()) return;
    setLink(key);
    reopen();
}

void TPartner_EF::bbClearClick(QObject*) {
    if (GetReadOnly()) Abort();
    setLink(QVariant());
    reopen();
}

FRAMES_REGISTER(TPartner_EF, "edit");

} // namespace frames
