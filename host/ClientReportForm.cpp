#include "host/ClientReportForm.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "frames/select/DF_SuperPlaceSelect.h"
#include "host/HostImpl.h"
#include "host/HostedFrames.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/widgets/DBGrid.h"
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QVBoxLayout>

namespace workbench {

QString ClientReportForm::reportSql() {
    return QStringLiteral("select d.doc_date, d.doc_number, c.name_clients, d.amount, d.status\n"
                          "  from SEL_CLIENT sl\n"
                          "  inner join PAYMENT_DOC d on d.link_to_client = sl.client_index\n"
                          "  inner join CLIENTS c on c.id_clients = sl.client_index\n"
                          " where sl.id_user = :user_id and sl.kind = :kind\n"
                          " order by d.doc_date, d.doc_number");
}

ClientReportForm::ClientReportForm(HostImpl* host, QWidget* parent) : TfmPersistentForm(parent), host_(host) {
    setObjectName(QStringLiteral("ClientReportForm"));
    setWindowTitle(QStringLiteral("Платежи выбранных контрагентов"));
    resize(820, 640);
    auto* layout = new QVBoxLayout(this);
    auto* split = new QSplitter(Qt::Vertical, this);
    split->setObjectName(QStringLiteral("spReport"));
    layout->addWidget(split, 1);

    auto* top = new QWidget(split);
    top->setObjectName(QStringLiteral("pnDialog"));
    auto* topLayout = new QVBoxLayout(top);
    topLayout->setContentsMargins(0, 0, 0, 0);

    auto* bottom = new QWidget(split);
    auto* bottomLayout = new QVBoxLayout(bottom);
    bottomLayout->setContentsMargins(0, 0, 0, 0);
    auto* bar = new QHBoxLayout;
    auto* run = new QPushButton(QStringLiteral("Сформировать"), bottom);
    run->setObjectName(QStringLiteral("btRun"));
    setActionIcon(run, "system-run", QStyle::SP_MediaPlay);
    count_ = new QLabel(bottom);
    count_->setObjectName(QStringLiteral("lbCount"));
    bar->addWidget(run);
    bar->addWidget(count_, 1);
    bottomLayout->addLayout(bar);
    documents_ = new frames::db::DataSet(host_->RvDatabase(), host_->pfReadTransaction(), this);
    documents_->setObjectName(QStringLiteral("pfReport"));
    documents_->setSelectSql(reportSql());
    source_ = new frames::db::DataSource(documents_, this);
    grid_ = new frames::ui::DBGrid(bottom);
    grid_->setObjectName(QStringLiteral("grReport"));
    grid_->setDataSource(source_);
    grid_->setCaptions({{QStringLiteral("DOC_DATE"), QStringLiteral("Дата")},
                        {QStringLiteral("DOC_NUMBER"), QStringLiteral("Номер")},
                        {QStringLiteral("NAME_CLIENTS"), QStringLiteral("Контрагент")},
                        {QStringLiteral("AMOUNT"), QStringLiteral("Сумма")},
                        {QStringLiteral("STATUS"), QStringLiteral("Состояние")}});
    bottomLayout->addWidget(grid_, 1);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(run, &QPushButton::clicked, this, [this] { frames::guard([this] { runReport(); }); });

    hosted_ = new HostedFrames(this, [this](const QString& name) {
        return host_->LayoutRoot()->ItemByName(objectName())->ItemByName(name);
    });
    dialog_ = qobject_cast<frames::TClientSelect_DF*>(
        frames::Registry::instance().create(QStringLiteral("TClientSelect_DF"), top));
    dialog_->setObjectName(QStringLiteral("TClientSelect_DF"));
    topLayout->addWidget(dialog_);
}

ClientReportForm::~ClientReportForm() {
    closeFrames();
}

void ClientReportForm::prepare() {
    const frames::WaitCursor wait;
    dialog_->SetKind(kKind);
    hosted_->open(dialog_);
    runReport();
}

void ClientReportForm::runReport() {
    const frames::WaitCursor wait;
    documents_->close();
    documents_->paramByName(QStringLiteral("USER_ID"))->setValue(dialog_->UserID);
    documents_->paramByName(QStringLiteral("KIND"))->setValue(kKind);
    documents_->open();
    const int clients = dialog_->ItemsList().split(QLatin1Char(','), Qt::SkipEmptyParts).size();
    count_->setText(QStringLiteral("Документов: %1 (выбрано контрагентов: %2)")
                        .arg(documents_->recordCount())
                        .arg(clients));
}

void ClientReportForm::closeFrames() {
    if (closed_) return;
    closed_ = true;
    hosted_->close();
    frames::guard([this] { host_->saveLayout(); });
}

void ClientReportForm::done(int r) {
    closeFrames();
    TfmPersistentForm::done(r);
}

} // namespace workbench
