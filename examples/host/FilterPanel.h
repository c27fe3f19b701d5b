#pragma once
#include <frames/core/HostForms.h>

class QLabel;

namespace frames {
class TMultiAbs_LF;
class TPeriodExt_EF;
} // namespace frames

namespace example {

class PaymentList;

// The filter panel of the payment documents: a report period (TPeriodExt_EF) over the document
// date and a multi-select lookup of clients (TMultiClient_LF) over the document's client, both made
// by class name through the registry. "Применить" gives the list the condition they make.
class FilterPanel : public frames::TfmPersistentForm {
    Q_OBJECT
public:
    explicit FilterPanel(PaymentList* list);
    ~FilterPanel() override;

    // Init and RestoreLayout of both frames (the choice of the last session comes back). Throws.
    void prepare();
    // The SQL condition over the alias d of PAYMENT_DOC; empty when no filter is set.
    QString condition();
    // Checks the period, gives the list the condition and closes; false (and stays open) when
    // the period is not valid.
    bool apply();

    frames::TPeriodExt_EF* period() const { return period_; }
    frames::TMultiAbs_LF* clients() const { return clients_; }

    void NotifyChanged() override;
    void done(int result) override;

private:
    void closeFrames();

    PaymentList* list_;
    frames::TPeriodExt_EF* period_;
    frames::TMultiAbs_LF* clients_;
    QLabel* condition_;
    bool closed_ = false;
};

} // namespace example
