#include "frames/lookup/LF_StorePalletOst.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include <QDateEdit>
#include <QEvent>
#include <QLabel>
#include <QLayout>
#include <QToolButton>

namespace frames {

namespace {
// The date edit's minimum stands for "no date".
const QDate NoDate(1900, 1, 1);
} // namespace

TStorePalletOst_LF::TStorePalletOst_LF(QWidget* parent) : TStorePallet_LF(parent) {
    edGoodDate = new QDateEdit(body());
    edGoodDate->setObjectName("edGoodDate");
    edGoodDate->setCalendarPopup(true);
    edGoodDate->setDisplayFormat("dd.MM.yyyy");
    edGoodDate->setMinimumDate(NoDate);
    edGoodDate->setSpecialValueText(" ");
    edGoodDate->setDate(NoDate);
    edGoodDate->installEventFilter(this);
    siOstatokByStore = new QToolButton(body());
    siOstatokByStore->setObjectName("siOstatokByStore");
    siOstatokByStore->setFocusPolicy(Qt::NoFocus);
    auto* lay = body()->layout();
    lay->removeWidget(lbStore);
    lay->addWidget(edGoodDate);
    lay->addWidget(siOstatokByStore);
    lay->addWidget(lbStore);
    connect(siOstatokByStore, &QToolButton::clicked, this,
            [this] { guard([&] { siOstatokByStoreClick(); }); });
    connect(edGoodDate, &QDateEdit::editingFinished, this, [this] { guard([&] { edGoodDateExit(); }); });
    connect(edGoodDate, &QDateEdit::dateChanged, this, [this] { UpdateInfo(); });
}

void TStorePalletOst_LF::AfterConstruction() {
    TStorePallet_LF::AfterConstruction();
    siOstatokByStore->setVisible(RvGetForm(StockReport) != nullptr);
}

void TStorePalletOst_LF::Init() {
    TStorePallet_LF::Init();
    UpdateInfo();
}

void TStorePalletOst_LF::SetReadOnly(bool value) {
    TStorePallet_LF::SetReadOnly(value);
    edGoodDate->setReadOnly(value);
}

QDate TStorePalletOst_LF::GoodDate() const {
    return edGoodDate->date() == NoDate ? QDate() : edGoodDate->date();
}

void TStorePalletOst_LF::SetGoodDate(const QDate& date) {
    edGoodDate->setDate(date.isValid() ? date : NoDate);
    UpdateInfo();
}

void TStorePalletOst_LF::SetStoreGD(int idStore, const QDate& goodDate) {
    QVariant pallet;
    if (pFIBDataSet1->active()) {
        const db::Field* store = pFIBDataSet1->findField("ID_STORE");
        const db::Field* id = pFIBDataSet1->findField(lcSelect->lookupField());
        // The list is ordered by name: the first pallet on the location wins.
        for (int row = 0, n = pFIBDataSet1->recordCount(); store && id && row < n && pallet.isNull(); ++row)
            if (pFIBDataSet1->valueAt(row, store->index()).toInt() == idStore)
                pallet = pFIBDataSet1->valueAt(row, id->index());
    }
    if (pallet.isValid() && !pallet.isNull())
        lcSelect->setKeyValue(pallet);
    else if (!IsEmpty()) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
    SetGoodDate(goodDate);
}

void TStorePalletOst_LF::UpdateStoreName() {
    UpdateInfo();
}

void TStorePalletOst_LF::UpdateInfo() {
    TStorePallet_LF::UpdateStoreName();
    const QDate date = GoodDate();
    if (date.isValid() && date < host()->Today()) {
        const QString expired = QStringLiteral("срок годности истёк");
        lbStore->setText(lbStore->text().isEmpty() ? expired : lbStore->text() + "; " + expired);
        lbStore->setStyleSheet("color: #C00000");
    } else {
        lbStore->setStyleSheet(QString());
    }
}

bool TStorePalletOst_LF::VerifyGoodDate() {
    const QDate date = GoodDate();
    if (!date.isValid() || date >= host()->Today()) return true;
    TyWarningBox(QStringLiteral("Срок годности истёк: %1.").arg(date.toString("dd.MM.yyyy")));
    return false;
}

void TStorePalletOst_LF::edGoodDateClick() {
    // An empty date opens the calendar on today rather than on the "no date" minimum.
    if (!GoodDate().isValid() && !edGoodDate->isReadOnly()) edGoodDate->setDate(host()->Today());
}

void TStorePalletOst_LF::edGoodDateExit() {
    UpdateInfo();
    VerifyGoodDate();
}

void TStorePalletOst_LF::lcSelectDlgClick(QObject* sender) {
    RunParams.EnsureParams().ByName("PLACEINDEX").Value = Place();
    RunParams.Params->ByName("ZONE_KIND").Value = ZoneKind();
    TStorePallet_LF::lcSelectDlgClick(sender);
    UpdateInfo();
}

void TStorePalletOst_LF::siOstatokByStoreClick() {
    if (IsEmpty()) return;
    TRunParams params;
    params.Mode = 1;
    params.KeyFieldName = "ID_STORE";
    params.KeyValue = StoreId();
    TVarParams& p = params.EnsureParams();
    p.ByName("ID_PALLET").Value = lcSelect->keyValue();
    p.ByName("PLACEINDEX").Value = Place();
    p.ByName("GOOD_DATE").Value = GoodDate();
    params.Transaction = TRunParams::NoTransaction();
    RunModule(StockReport, params);
}

bool TStorePalletOst_LF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == edGoodDate && event->type() == QEvent::MouseButtonPress) guard([&] { edGoodDateClick(); });
    return TStorePallet_LF::eventFilter(watched, event);
}

FRAMES_REGISTER(TStorePalletOst_LF, "lookup");

} // namespace frames
