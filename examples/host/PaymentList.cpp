#include "PaymentList.h"
#include "ExampleHost.h"
#include "FilterPanel.h"
#include "PaymentDialog.h"
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <frames/core/Guard.h>
#include <platform/db/DataSet.h>
#include <platform/db/DataSource.h>
#include <platform/db/Transaction.h>
#include <platform/widgets/DBGrid.h>

namespace example {

namespace db = frames::db;

PaymentList::PaymentList(ExampleHost* host, QWidget* parent) : TfmLayer1_FIB(parent), host_(host) {
    setObjectName(QStringLiteral("PaymentList"));
    setWindowTitle(QStringLiteral("Платёжные документы"));
    resize(820, 420);

    records_ = new db::DataSet(host->RvDatabase(), host->pfReadTransaction());
    records_->setParent(this);
    records_->setSelectSql(selectSql({}));
    records_->setRefreshSql(selectSql(QStringLiteral("d.ID_PAYMENT_DOC = :ID_PAYMENT_DOC")));
    // Written only while the document is still as it was read.
    records_->setUpdateSql(QStringLiteral(
        "update PAYMENT_DOC set DOC_NUMBER = :DOC_NUMBER, DOC_DATE = :DOC_DATE, AMOUNT = :AMOUNT,\n"
        "  CUR_TYPE = :CUR_TYPE, ID_COLOR = :ID_COLOR\n"
        "where ID_PAYMENT_DOC = :old_ID_PAYMENT_DOC and DOC_NUMBER = :old_DOC_NUMBER\n"
        "  and DOC_DATE = :old_DOC_DATE and AMOUNT is not distinct from :old_AMOUNT\n"
        "  and CUR_TYPE is not distinct from :old_CUR_TYPE and ID_COLOR is not distinct from :old_ID_COLOR"));
    write_ = new db::Transaction(host->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    records_->setUpdateTransaction(write_);
    source_ = new db::DataSource(records_, this);
    SetCurrentSource(source_);

    grid_ = new frames::ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grDocuments"));
    grid_->setDataSource(source_);

    auto* btEdit = new QPushButton(QStringLiteral("Изменить…"), this);
    auto* btFilter = new QPushButton(QStringLiteral("Фильтр…"), this);
    auto* btClose = new QPushButton(QStringLiteral("Закрыть"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(btEdit);
    buttons->addWidget(btFilter);
    buttons->addStretch(1);
    buttons->addWidget(btClose);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons);

    // No exception leaves a handler: frames::guard sends it to the host's error box.
    connect(btEdit, &QPushButton::clicked, this, [this] { frames::guard([this] { editCurrent(); }); });
    connect(grid_, &frames::ui::DBGrid::activated, this,
            [this] { frames::guard([this] { editCurrent(); }); });
    connect(btFilter, &QPushButton::clicked, this, [this] { frames::guard([this] { showFilters(); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);

    records_->open();
    grid_->setColumns({"DOC_NUMBER", "DOC_DATE", "NAME_CLIENTS", "AMOUNT", "CUR_NAME", "COLOR_NAME"});
    grid_->setCaptions({{"DOC_NUMBER", QStringLiteral("Номер")},
                        {"DOC_DATE", QStringLiteral("Дата")},
                        {"NAME_CLIENTS", QStringLiteral("Клиент")},
                        {"AMOUNT", QStringLiteral("Сумма")},
                        {"CUR_NAME", QStringLiteral("Валюта")},
                        {"COLOR_NAME", QStringLiteral("Цвет")}});
}

PaymentList::~PaymentList() {
    delete grid_; // before the records it shows
    if (write_->active()) frames::guard([this] { write_->rollback(); });
}

QString PaymentList::selectSql(const QString& where) const {
    QString sql = QStringLiteral("select d.ID_PAYMENT_DOC, d.DOC_NUMBER, d.DOC_DATE, d.AMOUNT, d.CUR_TYPE, "
                                 "cu.SHORT_NAME as CUR_NAME,\n"
                                 "  d.ID_COLOR, co.NAME as COLOR_NAME, d.LINK_TO_CLIENT, c.NAME_CLIENTS\n"
                                 "from PAYMENT_DOC d\n"
                                 "  left join CUR_TYPE cu on cu.ID_CUR_TYPE = d.CUR_TYPE\n"
                                 "  left join COLOR co on co.ID = d.ID_COLOR\n"
                                 "  left join CLIENTS c on c.ID_CLIENTS = d.LINK_TO_CLIENT\n");
    if (!where.isEmpty()) sql += QStringLiteral("where ") + where + QLatin1Char('\n');
    return sql + QStringLiteral("order by d.DOC_DATE, d.DOC_NUMBER");
}

void PaymentList::setCondition(const QString& condition) {
    condition_ = condition;
    records_->close();
    records_->setSelectSql(selectSql(condition));
    records_->open();
}

int PaymentList::editCurrent() {
    if (!records_->active() || records_->isEmpty()) return QDialog::Rejected;
    PaymentDialog dialog(this);
    dialog.prepare();
    return dialog.exec();
}

int PaymentList::showFilters() {
    FilterPanel panel(this);
    panel.prepare();
    return panel.exec();
}

} // namespace example
