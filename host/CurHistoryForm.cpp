#include "host/CurHistoryForm.h"
#include "frames/core/Guard.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DBGrid.h"
#include <QComboBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

CurHistoryForm::CurHistoryForm(db::Database* database, db::Transaction* tr, frames::TRunParams& params,
                               QWidget* parent)
    : TfmPersistentForm(parent), db_(database), tr_(tr), params_(params) {
    setObjectName(QString::fromLatin1(FormName));
    setWindowTitle(QStringLiteral("Курсы валют"));
    resize(420, 460);

    cbCurrency_ = new QComboBox(this);
    cbCurrency_->setObjectName(QStringLiteral("cbCurrency"));
    rates_ = new db::DataSet(database, tr, this);
    rates_->setObjectName(QStringLiteral("dsCurHistory"));
    rates_->setSelectSql(QStringLiteral("select h.CURS_DATE, h.CURS from CUR_HISTORY h\n"
                                        "where h.ID_CUR_TYPE = :ID_CUR_TYPE\n"
                                        "order by h.CURS_DATE desc"));
    source_ = new db::DataSource(rates_, this);
    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grCurHistory"));
    grid_->setMultiSelect(false);
    grid_->setReadOnly(true);
    grid_->setDataSource(source_);
    lbState_ = new QLabel(this);
    lbState_->setObjectName(QStringLiteral("lbState"));

    auto* buttons = new QDialogButtonBox(this);
    ok_ = buttons->addButton(QStringLiteral("Выбрать"), QDialogButtonBox::AcceptRole);
    ok_->setObjectName(QStringLiteral("btOk"));
    ok_->setDefault(true);
    QPushButton* cancel = buttons->addButton(QStringLiteral("Отмена"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("btCancel"));

    auto* top = new QHBoxLayout;
    auto* lbCurrency = new QLabel(QStringLiteral("Валюта"), this);
    lbCurrency->setBuddy(cbCurrency_);
    top->addWidget(lbCurrency);
    top->addWidget(cbCurrency_, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(grid_, 1);
    layout->addWidget(lbState_);
    layout->addWidget(buttons);

    connect(buttons, &QDialogButtonBox::accepted, this, [this] { frames::guard([this] { confirm(); }); });
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(grid_, &ui::DBGrid::activated, this, [this] { frames::guard([this] { confirm(); }); });
    connect(source_, &db::DataSource::recordChanged, this, [this] { updateState(); });
    connect(cbCurrency_, &QComboBox::activated, this, [this](int) {
        frames::guard([this] {
            readRates();
            position();
        });
    });
}

CurHistoryForm::~CurHistoryForm() {
    // The grid goes before the rates it shows.
    delete grid_;
}

QString CurHistoryForm::rateText(double rate) {
    return ui::formatFloat(QStringLiteral("0.0000"), rate);
}

void CurHistoryForm::open() {
    const frames::WaitCursor wait;
    const frames::TVarParams::Param* cur =
        params_.Params ? params_.Params->Find(QStringLiteral("CurType")) : nullptr;
    const frames::TVarParams::Param* day =
        params_.Params ? params_.Params->Find(QStringLiteral("Date")) : nullptr;
    bool ok = false;
    const int wanted = cur ? cur->Value.toString().trimmed().toInt(&ok) : 0;
    if (day) date_ = QDate::fromString(day->Value.toString().trimmed(), QStringLiteral("dd.MM.yyyy"));

    // Every real currency, the national one too (it has no rates).
    cbCurrency_->clear();
    db::Query q(db_, tr_);
    q.setSql(QStringLiteral("select ID_CUR_TYPE, NAME_CUR_TYPE from CUR_TYPE where ID_CUR_TYPE > 0 "
                            "order by ID_CUR_TYPE"));
    q.open();
    while (q.next()) cbCurrency_->addItem(q.value(1).toString(), q.value(0));
    q.close();
    int index = ok ? cbCurrency_->findData(wanted) : -1;
    if (index < 0 && ok) {
        // A currency the list does not hold is still shown, by its number.
        cbCurrency_->addItem(QStringLiteral("Валюта %1").arg(wanted), wanted);
        index = cbCurrency_->count() - 1;
    }
    cbCurrency_->setCurrentIndex(qMax(0, index));
    readRates();
    position();
    grid_->setFocus();
}

int CurHistoryForm::currency() const {
    return cbCurrency_->currentData().toInt();
}

void CurHistoryForm::setCurrency(int id) {
    const int index = cbCurrency_->findData(id);
    if (index < 0) return;
    cbCurrency_->setCurrentIndex(index);
    readRates();
    position();
}

void CurHistoryForm::readRates() {
    rates_->close();
    rates_->paramByName(QStringLiteral("ID_CUR_TYPE"))->setValue(currency());
    rates_->open();
    grid_->setColumns({QStringLiteral("CURS_DATE"), QStringLiteral("CURS")});
    grid_->setCaptions({{QStringLiteral("CURS_DATE"), QStringLiteral("Дата")},
                        {QStringLiteral("CURS"), QStringLiteral("Курс")}});
    grid_->setColumnWidth(0, 110);
    grid_->setColumnWidth(1, 120);
}

void CurHistoryForm::position() {
    // Latest first: the first row not after the date is the rate in force on it; a date before
    // the whole history gets the earliest rate.
    rates_->first();
    if (date_.isValid()) {
        const db::Field* day = rates_->fieldByName(QStringLiteral("CURS_DATE"));
        while (!rates_->eof() && day->asDate() > date_) rates_->next();
        if (rates_->eof()) rates_->last();
    }
    updateState();
}

QDate CurHistoryForm::currentDate() const {
    if (!rates_->active() || rates_->isEmpty()) return {};
    return rates_->fieldByName(QStringLiteral("CURS_DATE"))->asDate();
}

QVariant CurHistoryForm::currentRate() const {
    if (!rates_->active() || rates_->isEmpty()) return {};
    return rates_->fieldByName(QStringLiteral("CURS"))->asDouble();
}

void CurHistoryForm::updateState() {
    const QVariant rate = currentRate();
    ok_->setEnabled(rate.isValid());
    if (!rate.isValid())
        lbState_->setText(QStringLiteral("Курсов этой валюты нет"));
    else
        lbState_->setText(
            QStringLiteral("Курс на %1: %2")
                .arg(currentDate().toString(QStringLiteral("dd.MM.yyyy")), rateText(rate.toDouble())));
}

void CurHistoryForm::confirm() {
    const QVariant rate = currentRate();
    if (!rate.isValid()) return;
    frames::TVarParams& out = params_.EnsureParams();
    out.ByName(QStringLiteral("CurType")).Value = QString::number(currency());
    out.ByName(QStringLiteral("Curs")).Value = rateText(rate.toDouble());
    out.ByName(QStringLiteral("Date")).Value = currentDate().toString(QStringLiteral("dd.MM.yyyy"));
    params_.KeyValue = rate;
    done(1);
}

HostModule curHistoryModule() {
    return {QString::fromLatin1(CurHistoryForm::FormName), QStringLiteral("Курсы валют"), 1002,
            [](HostImpl& host, frames::TRunParams& params, QWidget* parent) {
                CurHistoryForm form(host.RvDatabase(), host.pfReadTransaction(), params, parent);
                form.open();
                const int result = form.exec();
                return result == 1 ? 1 : 2;
            }};
}

} // namespace workbench
