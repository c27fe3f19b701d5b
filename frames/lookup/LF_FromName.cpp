#include "frames/lookup/LF_FromName.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include "platform/db/Query.h"
#include <QCheckBox>
#include <QLayout>

namespace frames {

namespace {

// A linked client counts only while it is still a system client.
const QString systemClient = QStringLiteral(
    " and exists(select 1 from clients where id_clients=link_to_client and client_type=0 and status=3)");

bool isEmptyKey(const QVariant& v) {
    return !v.isValid() || v.isNull() || (v.typeId() == QMetaType::QString && v.toString().isEmpty());
}

// First column of the statement's first row; null when there is no row. The statement goes to the
// trace log, so that support can see where a default came from.
QVariant firstValue(const QVariantList& pieces) {
    TraceText("FromName default: " + SqlText(pieces), 1);
    return QvSqlQueryRead(pieces)->value(0);
}

} // namespace

TFromName_LF::TFromName_LF(QWidget* parent) : TClients_LF(parent) {
    chbSave = new QCheckBox(body());
    chbSave->setObjectName("chbSave");
    chbSave->setVisible(false); // shown by FormShow when defaults are kept per branch
    body()->layout()->addWidget(chbSave);
}

void TFromName_LF::AfterConstruction() {
    DefClient = -1;
    Filial = -1;
    Place = -1;
    TClients_LF::AfterConstruction();
}

bool TFromName_LF::localDefaults() {
    return TYConfig()->GetBoolValue("FromNameLocal");
}

int TFromName_LF::currentKey() const {
    const QVariant key = lcSelect->keyValue();
    if (isEmptyKey(key)) return -1;
    bool ok = false;
    const int k = key.toInt(&ok);
    return ok ? k : -1;
}

void TFromName_LF::setListKey(int key) {
    // Before the list is open there is nothing to check against.
    const bool known =
        pFIBDataSet1->active() ? pFIBDataSet1->locate(lcSelect->lookupField(), key) : key != -1;
    if (known)
        lcSelect->setKeyValue(key);
    else
        lcSelect->clear();
}

void TFromName_LF::GetDefValue() {
    QVariant value;
    if (DefClient != -1) value = DefClient;
    if (isEmptyKey(value) && localDefaults())
        value =
            firstValue({"select LINK_TO_CLIENT from TH_CLASSIF_CLIENT where ID_TH_CLASSIF=", CUR_FILIALINDEX,
                        " and ID_USER=", CUR_USER, systemClient});
    if (isEmptyKey(value) && Place > -1 && Filial > -1)
        value = firstValue(
            {"select CLIENT from PLACE_FROM_NAME where PLACE=", Place,
             " and exists(select 1 from clients where id_clients=client and client_type=0 and status=3)"});
    if (isEmptyKey(value) && Filial > -1)
        value =
            firstValue({"select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=", Filial, systemClient});
    if (isEmptyKey(value))
        value = firstValue(
            {"select LINK_TO_CLIENT from TH_CLASSIF where ID_TH_CLASSIF=", CUR_FILIALINDEX, systemClient});
    setListKey(isEmptyKey(value) ? -1 : value.toInt());
}

void TFromName_LF::lcSelectDlgClick(QObject* sender) {
    const int before = currentKey();
    TClients_LF::lcSelectDlgClick(sender);
    // A client chosen in the client form that is not a system client is refused.
    const bool confirmed = LastKey.isValid() && !LastKey.isNull();
    const QVariant key = lcSelect->keyValue();
    if (confirmed && (isEmptyKey(key) || !pFIBDataSet1->locate(lcSelect->lookupField(), key))) {
        setListKey(before);
        TyWarningBox("Необходимо указывать клиента со статусом Системный");
    }
}

void TFromName_LF::FormShow() {
    TClients_LF::FormShow();
    // Beside the combo in the frame's row: the layout narrows the combo while the box shows.
    chbSave->setVisible(localDefaults());
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TFromName_LF::FormClose() {
    pFIBDataSet1->close();
    TClients_LF::FormClose();
}

void TFromName_LF::Save() {
    TClients_LF::Save();
    const int key = currentKey();
    if (chbSave->isChecked() && !isEmptyKey(lcSelect->keyValue()) && localDefaults())
        QvSqlExec({"update or insert into th_classif_client(id_th_classif,id_user,link_to_client)", "values(",
                   CUR_FILIALINDEX, ",", CUR_USER, ",", key, ")"});
}

FRAMES_REGISTER(TFromName_LF, "lookup");

} // namespace frames
