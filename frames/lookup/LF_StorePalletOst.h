#pragma once
#include "frames/lookup/LF_StorePallet.h"
#include <QDate>

class QDateEdit;
class QToolButton;

namespace frames {

// The pallet a stock balance lies on, with the goods' best-before date (edGoodDate, empty when
// the goods keep). lbStore tells the pallet's location and warns when the date has passed.
// siOstatokByStore opens the host's stock report "OstatokByStore" for the pallet's location; the
// button is shown only when the host has that report.
class TStorePalletOst_LF : public TStorePallet_LF {
    Q_OBJECT
public:
    explicit TStorePalletOst_LF(QWidget* parent = nullptr);

    static constexpr const char* StockReport = "OstatokByStore";

    void AfterConstruction() override;
    void Init() override;
    void SetReadOnly(bool value) override;
    void UpdateStoreName() override;
    void lcSelectDlgClick(QObject* sender) override;

    // Chooses the pallet standing on the location idStore (the first by name when several do;
    // none when none does) and shows the goods' date.
    void SetStoreGD(int idStore, const QDate& goodDate);
    QDate GoodDate() const;
    void SetGoodDate(const QDate& date);
    // Shows the location and the state of the date.
    void UpdateInfo();
    // False, after a warning, when the goods' date has already passed; an empty date passes.
    bool VerifyGoodDate();

    void edGoodDateClick();
    void edGoodDateExit();
    void siOstatokByStoreClick();

    QDateEdit* edGoodDate;
    QToolButton* siOstatokByStore;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace frames
