#include "host/ClientForms.h"
#include "frames/core/WaitCursor.h"
#include "host/HostImpl.h"
#include "host/TableStatements.h"
#include "platform/db/DataSet.h"
#include "platform/db/Transaction.h"
#include <QJsonObject>
#include <QLabel>
#include <memory>

namespace workbench {

namespace db = frames::db;

namespace {

// The address kind of a client in address_kladr.
constexpr int ClientAddressKind = 1;

const char* const kSelect =
    "select c.ID_CLIENTS, c.NAME_CLIENTS, c.FULLNAME_CLIENTS, c.INN_CLIENTS, c.KPP_CLIENTS, c.TEL_CLIENTS,\n"
    "       c.EMAIL_CLIENTS, c.COMMENT_CLIENTS\n"
    "from CLIENTS c\n";

// The columns the card writes back (only while the client's row is still as it was read).
const QStringList kEditable = {"NAME_CLIENTS", "FULLNAME_CLIENTS", "INN_CLIENTS",    "KPP_CLIENTS",
                               "TEL_CLIENTS",  "EMAIL_CLIENTS",    "COMMENT_CLIENTS"};

EditorSlot textEditor(const char* column, const QString& caption, bool required = false) {
    const QJsonObject description{
        {QStringLiteral("components"),
         QJsonObject{
             {QStringLiteral("lbSelect"), QJsonObject{{QStringLiteral("text"), caption}}},
             {QStringLiteral("DBEdit"), QJsonObject{{QStringLiteral("DataField"), QLatin1String(column)}}}}}};
    return EditorSlot{QStringLiteral("TDBEdit_Frame"),
                      QLatin1String(column),
                      description,
                      {},
                      QStringLiteral("TDBEdit_Frame_") + QLatin1String(column),
                      required};
}

} // namespace

const QList<EditorSlot>& clientEditors() {
    static const QList<EditorSlot> editors = [] {
        QList<EditorSlot> out{
            textEditor("NAME_CLIENTS", QStringLiteral("Наименование"), true),
            textEditor("FULLNAME_CLIENTS", QStringLiteral("Полное наименование")),
            textEditor("INN_CLIENTS", QStringLiteral("ИНН")),
            textEditor("KPP_CLIENTS", QStringLiteral("КПП")),
            textEditor("TEL_CLIENTS", QStringLiteral("Телефон")),
            textEditor("EMAIL_CLIENTS", QStringLiteral("Электронная почта")),
        };
        // The address: the client's key goes to the frame before Init, which reads his row of
        // address_kladr (or makes one on the first change).
        out << EditorSlot{QStringLiteral("TfrAddress"),
                          QStringLiteral("ID_CLIENTS"),
                          QJsonObject{{QStringLiteral("properties"),
                                       QJsonObject{{QStringLiteral("ObjectKind"), ClientAddressKind}}}},
                          {},
                          {},
                          false,
                          QStringLiteral("ObjectIndex")};
        return out;
    }();
    return editors;
}

RecordListForm* makeClientList(HostImpl* host, QWidget* parent) {
    const frames::WaitCursor wait;
    auto* clients = new db::DataSet(host->RvDatabase(), host->pfReadTransaction());
    clients->setObjectName(QStringLiteral("pFIBDataSet1"));
    clients->setSelectSql(QString::fromUtf8(kSelect) +
                          QStringLiteral("where c.ID_CLIENTS > -1 order by c.NAME_CLIENTS"));
    clients->setRefreshSql(QString::fromUtf8(kSelect) + QStringLiteral("where c.ID_CLIENTS = :ID_CLIENTS"));
    clients->setUpdateSql(
        checkedUpdateSql(QStringLiteral("CLIENTS"), QStringLiteral("ID_CLIENTS"), kEditable));
    clients->setInsertSql(insertSql(QStringLiteral("CLIENTS"), QStringLiteral("ID_CLIENTS"), kEditable));

    auto owned = std::make_unique<RecordListForm>(host, clients, clientEditors(), parent);
    RecordListForm* form = owned.get();
    form->setObjectName(QStringLiteral("ClientListForm"));
    form->setWindowTitle(QStringLiteral("Клиенты"));
    form->resize(900, 520);
    if (auto* hint = form->findChild<QLabel*>(QStringLiteral("lbHint")))
        hint->setText(
            QStringLiteral("Двойной щелчок или «Изменить…» открывает карточку клиента с его адресом."));
    auto* writeTr = new db::Transaction(host->RvDatabase(), db::TransactionOptions::writeNoWait(), form);
    form->setWriteTransaction(writeTr);
    clients->onNewRecord.connect([writeTr](db::AbstractDataSet& ds) {
        // The new client's key at once: his address is stored under it.
        ds.fieldByName(QStringLiteral("ID_CLIENTS"))
            ->setValue(nextKey(writeTr, QStringLiteral("GEN_CLIENTS_ID")));
    });
    clients->open();

    setGridColumns(form->grid(), {
                                     {"NAME_CLIENTS", QStringLiteral("Клиент"), 260},
                                     {"INN_CLIENTS", QStringLiteral("ИНН"), 110},
                                     {"TEL_CLIENTS", QStringLiteral("Телефон"), 130},
                                     {"EMAIL_CLIENTS", QStringLiteral("Почта"), 180},
                                     {"ID_CLIENTS", QStringLiteral("Код"), 60},
                                 });
    return owned.release();
}

} // namespace workbench
