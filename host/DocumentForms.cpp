#include "host/DocumentForms.h"
#include "frames/core/Guard.h"
#include "frames/core/WaitCursor.h"
#include "host/HostImpl.h"
#include "host/MassEdit.h"
#include "host/TableStatements.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QJsonArray>
#include <QJsonDocument>
#include <QLabel>
#include <QPushButton>
#include <memory>
#include <stdexcept>

namespace workbench {

namespace db = frames::db;

namespace {

// Which frame edits which column of a document, and how it is pointed at it: "components" and
// "properties" form the description applied to the frame before Init; "value" names the
// property through which a frame that keeps its own value gets the column's; "key" the property
// that gets the document's key before Init (the pages of the document, kept in the image
// database and written by the frame itself); "name" tells two frames of one class apart; "required" marks a
// value the document cannot be saved without.
const char* const kEditors = R"([
  { "class": "TDBEdit_Frame", "column": "DOC_NUMBER", "required": true,
    "components": { "lbSelect": { "text": "Номер документа" }, "DBEdit": { "DataField": "DOC_NUMBER" } } },
  { "class": "TDBDateEdit_Frame", "column": "DOC_DATE", "required": true,
    "components": { "lbSelect": { "text": "Дата документа" }, "DBDateEdit1": { "DataField": "DOC_DATE" } } },
  { "class": "TDBTimeEdit_Frame", "column": "DOC_TIME",
    "components": { "DBTimeEdit": { "DataField": "DOC_TIME" } } },
  { "class": "TDBDateTimeEdit_Frame", "column": "CREATED",
    "components": { "lbSelect": { "text": "Создан" }, "DBDateTimeEdit": { "DataField": "CREATED" } } },
  { "class": "TNewMonth_EF", "column": "DOC_MONTH", "value": "DateTimePicker.Date",
    "components": { "lbSelect": { "text": "Отчётный месяц" } } },
  { "class": "TDBComboBox_Frame", "column": "STATUS",
    "components": { "lbSelect": { "text": "Состояние" },
                    "DBComboBox": { "DataField": "STATUS", "Items": ["Черновик", "Проведён", "Отменён"] } } },
  { "class": "TCalcEdit_Frame", "column": "AMOUNT",
    "components": { "lbSelect": { "text": "Сумма" }, "DBCalcEdit": { "DataField": "AMOUNT" } } },
  { "class": "TCalcEdit_Frame", "name": "TCalcEdit_Frame_QUANTITY", "column": "QUANTITY",
    "components": { "lbSelect": { "text": "Количество" }, "DBCalcEdit": { "DataField": "QUANTITY" } } },
  { "class": "TCursType_LF", "column": "CUR_TYPE", "required": true },
  { "class": "TCursFrame_CE", "column": "CURS", "properties": { "CurTypeField": "CUR_TYPE" } },
  { "class": "TPartner_EF", "column": "LINK_TO_CLIENT" },
  { "class": "TEditEmail_Frame", "column": "EMAIL" },
  { "class": "TEditSite_Frame", "column": "SITE" },
  { "class": "TArticul_EF", "column": "ARTICUL" },
  { "class": "TPaymentKind_EF", "column": "PAYMENT_KIND" },
  { "class": "TDocIndex_EF", "column": "DOC_INDEX" },
  { "class": "TPriceType_EF", "column": "PRICE_TYPE" },
  { "class": "TCheckBoxEdit_Frame", "column": "IS_CHECKED",
    "components": { "CheckBox": { "DataField": "IS_CHECKED", "text": "Проверен бухгалтерией" } } },
  { "class": "TIntCheckBoxEdit_Frame", "column": "IS_PAID",
    "components": { "CheckBox": { "DataField": "IS_PAID", "text": "Оплачен" } } },
  { "class": "TMemoEdit_Frame", "column": "NOTE",
    "components": { "Memo": { "DataField": "NOTE" } } },
  { "class": "TRichEdit_Frame", "column": "DESCRIPTION",
    "components": { "RichEdit": { "DataField": "DESCRIPTION" } } },
  { "class": "TfrImages", "column": "ID_PAYMENT_DOC", "key": "KeyValue",
    "properties": { "TableName": "PAYMENT_DOC_IMAGES", "KeyFieldName": "ID_PAYMENT_DOC" },
    "components": { "pfImageKind": { "SelectSQL": ["select ID, NAME from IMAGE_KINDS order by ID"] } } }
])";

QJsonArray parsed(const char* text, const char* what) {
    QJsonParseError err;
    const QJsonDocument doc = QJsonDocument::fromJson(QByteArray(text), &err);
    if (!doc.isArray()) throw std::logic_error(std::string(what) + ": " + err.errorString().toStdString());
    return doc.array();
}

QJsonObject descriptionOf(const QJsonObject& entry) {
    QJsonObject d;
    if (entry.contains(QStringLiteral("properties")))
        d.insert(QStringLiteral("properties"), entry.value(QStringLiteral("properties")));
    if (entry.contains(QStringLiteral("components")))
        d.insert(QStringLiteral("components"), entry.value(QStringLiteral("components")));
    return d;
}

const char* const kSelect =
    "select d.ID_PAYMENT_DOC, d.DOC_NUMBER, d.DOC_DATE, d.DOC_TIME, d.CREATED, d.DOC_MONTH, d.STATUS,\n"
    "       d.AMOUNT, d.QUANTITY, d.CUR_TYPE, d.CURS, cast(d.AMOUNT * d.CURS as numeric(18,2)) as "
    "AMOUNT_RUB,\n"
    "       d.EMAIL, d.SITE, d.NOTE, d.DESCRIPTION, d.ARTICUL, d.PAYMENT_KIND, d.DOC_INDEX, d.PRICE_TYPE,\n"
    "       d.LINK_TO_CLIENT, d.IS_CHECKED, d.IS_PAID, cu.SHORT_NAME as CUR_NAME, c.NAME_CLIENTS,\n"
    "       d.ID_COLOR, d.ID_FILIAL, d.ID_CLASSIF, d.ID_SEASON, d.ID_CARD_CLASSIF, co.NAME as COLOR_NAME,\n"
    "       f.NAME as FILIAL_NAME, cl.NAME_CLASSIF as CLASSIF_NAME, se.NAME as SEASON_NAME,\n"
    "       cc.NAME_CLASSIF as CARD_CLASSIF_NAME\n"
    "from PAYMENT_DOC d\n"
    "  left join CUR_TYPE cu on cu.ID_CUR_TYPE = d.CUR_TYPE\n"
    "  left join CLIENTS c on c.ID_CLIENTS = d.LINK_TO_CLIENT\n"
    "  left join COLOR co on co.ID = d.ID_COLOR\n"
    "  left join TH_CLASSIF f on f.ID_TH_CLASSIF = d.ID_FILIAL\n"
    "  left join CLASSIF cl on cl.ID_CLASSIF = d.ID_CLASSIF\n"
    "  left join TYREF_ADD_DATA se on se.ID = d.ID_SEASON\n"
    "  left join CLASSIF cc on cc.ID_CLASSIF = d.ID_CARD_CLASSIF\n";

// The columns a document's edit writes back (only while the document is still as it was read).
const QStringList kEditable = {
    "DOC_NUMBER", "DOC_DATE",     "DOC_TIME",  "CREATED",    "DOC_MONTH",      "STATUS",     "AMOUNT",
    "QUANTITY",   "CUR_TYPE",     "CURS",      "EMAIL",      "SITE",           "NOTE",       "DESCRIPTION",
    "ARTICUL",    "PAYMENT_KIND", "DOC_INDEX", "PRICE_TYPE", "LINK_TO_CLIENT", "IS_CHECKED", "IS_PAID"};

} // namespace

const QList<EditorSlot>& documentEditors() {
    static const QList<EditorSlot> editors = [] {
        QList<EditorSlot> out;
        for (const QJsonValue& v : parsed(kEditors, "document editors")) {
            const QJsonObject e = v.toObject();
            out.append(EditorSlot{
                e.value(QStringLiteral("class")).toString(), e.value(QStringLiteral("column")).toString(),
                descriptionOf(e), e.value(QStringLiteral("value")).toString(),
                e.value(QStringLiteral("name")).toString(), e.value(QStringLiteral("required")).toBool(),
                e.value(QStringLiteral("key")).toString()});
        }
        return out;
    }();
    return editors;
}

bool editsDocuments(const QString& className) {
    for (const EditorSlot& s : documentEditors())
        if (s.className == className) return true;
    return false;
}

const QList<DocumentFilter>& documentFilters() {
    return paymentReport().filters;
}

const DocumentFilter* findDocumentFilter(const QString& className) {
    return paymentReport().findFilter(className);
}

RecordListForm* makeDocumentList(HostImpl* host, QWidget* parent) {
    const frames::WaitCursor wait;
    auto* docs = new db::DataSet(host->RvDatabase(), host->pfReadTransaction());
    docs->setObjectName(QStringLiteral("pFIBDataSet1"));
    docs->setSelectSql(QString::fromUtf8(kSelect) + QStringLiteral("order by d.DOC_DATE, d.DOC_NUMBER"));
    docs->setRefreshSql(QString::fromUtf8(kSelect) +
                        QStringLiteral("where d.ID_PAYMENT_DOC = :ID_PAYMENT_DOC"));
    docs->setUpdateSql(
        checkedUpdateSql(QStringLiteral("PAYMENT_DOC"), QStringLiteral("ID_PAYMENT_DOC"), kEditable));
    docs->setInsertSql(insertSql(QStringLiteral("PAYMENT_DOC"), QStringLiteral("ID_PAYMENT_DOC"), kEditable));
    // The number editors take their display format from the kind of the amount (Tag): amounts
    // in the document's currency 2, amounts in roubles 1, quantities 0. A rate is no amount: its
    // editor keeps its own four decimals.
    docs->afterOpen.connect([](db::AbstractDataSet& ds) {
        ds.fieldByName(QStringLiteral("AMOUNT"))->tag = 2;
        ds.fieldByName(QStringLiteral("AMOUNT_RUB"))->tag = 1;
    });

    auto owned = std::make_unique<RecordListForm>(host, docs, documentEditors(), parent);
    RecordListForm* form = owned.get();
    form->setObjectName(QStringLiteral("DocumentListForm"));
    form->setWindowTitle(QStringLiteral("Платёжные документы"));
    form->editorColumns = 2;
    form->resize(1100, 520);
    if (auto* hint = form->findChild<QLabel*>(QStringLiteral("lbHint")))
        hint->setText(QStringLiteral("Двойной щелчок или «Изменить…» открывает документ на форме "
                                     "редактирования: каждый редактор на ней привязан к своей колонке."));
    auto* writeTr = new db::Transaction(host->RvDatabase(), db::TransactionOptions::writeNoWait(), form);
    form->setWriteTransaction(writeTr);

    docs->onNewRecord.connect([host, writeTr](db::AbstractDataSet& ds) {
        const int id = nextKey(writeTr, QStringLiteral("GEN_PAYMENT_DOC_ID"));
        const QDateTime now = host->Now();
        ds.fieldByName(QStringLiteral("ID_PAYMENT_DOC"))->setValue(id);
        ds.fieldByName(QStringLiteral("DOC_NUMBER"))
            ->setValue(QStringLiteral("ПП-%1").arg(id, 6, 10, QLatin1Char('0')));
        ds.fieldByName(QStringLiteral("DOC_DATE"))->setValue(now.date());
        ds.fieldByName(QStringLiteral("DOC_TIME"))->setValue(QTime(now.time().hour(), now.time().minute()));
        ds.fieldByName(QStringLiteral("CREATED"))->setValue(now);
        ds.fieldByName(QStringLiteral("DOC_MONTH"))
            ->setValue(QDate(now.date().year(), now.date().month(), 1));
        ds.fieldByName(QStringLiteral("STATUS"))->setValue(QStringLiteral("Черновик"));
        ds.fieldByName(QStringLiteral("CUR_TYPE"))->setValue(1);
        ds.fieldByName(QStringLiteral("CURS"))->setValue(1.0);
        ds.fieldByName(QStringLiteral("IS_CHECKED"))->setValue(QStringLiteral("F"));
        ds.fieldByName(QStringLiteral("IS_PAID"))->setValue(0);
    });

    docs->open();
    frames::ui::DBGrid* grid = form->grid();
    // Marked documents (Ctrl+click, Shift+click, Ctrl+A) get one column set at once.
    grid->setMultiSelect(true);
    auto* btMassEdit = new QPushButton(QStringLiteral("Групповое изменение…"), form);
    btMassEdit->setObjectName(QStringLiteral("btMassEdit"));
    setActionIcon(btMassEdit, "edit-select-all", QStyle::SP_DialogApplyButton);
    form->addButton(btMassEdit);
    QObject::connect(btMassEdit, &QPushButton::clicked, form, [host, form] {
        frames::guard([&] {
            MassEditDialog dlg(host, form, documentMassEdit());
            dlg.exec();
        });
    });
    setGridColumns(grid, {
                             {"DOC_NUMBER", QStringLiteral("Номер"), 90},
                             {"DOC_DATE", QStringLiteral("Дата"), 80},
                             {"DOC_TIME", QStringLiteral("Время"), 70},
                             {"STATUS", QStringLiteral("Состояние"), 80},
                             {"NAME_CLIENTS", QStringLiteral("Клиент"), 220},
                             {"AMOUNT", QStringLiteral("Сумма"), 100},
                             {"CUR_NAME", QStringLiteral("Валюта"), 60},
                             {"CURS", QStringLiteral("Курс"), 70},
                             {"AMOUNT_RUB", QStringLiteral("Сумма, руб."), 110},
                             {"QUANTITY", QStringLiteral("Кол-во"), 70},
                             {"PAYMENT_KIND", QStringLiteral("Вид оплаты"), 80},
                             {"DOC_MONTH", QStringLiteral("Месяц"), 80},
                             {"IS_CHECKED", QStringLiteral("Проверен"), 70},
                             {"IS_PAID", QStringLiteral("Оплачен"), 70},
                             {"FILIAL_NAME", QStringLiteral("Филиал"), 140},
                             {"COLOR_NAME", QStringLiteral("Цвет"), 90},
                             {"SEASON_NAME", QStringLiteral("Сезон"), 110},
                             {"CLASSIF_NAME", QStringLiteral("Группа"), 140},
                             {"CARD_CLASSIF_NAME", QStringLiteral("Товарная группа"), 140},
                         });
    return owned.release();
}

} // namespace workbench
