#pragma once
// Multi-select lookup frames with a few lines of their own beside their form description.
#include "frames/multi/LF_MultiAbs.h"

namespace frames {

// Suppliers: clients of the classifier type of the registered client form.
class TMultiSupplier_LF : public TMultiAbs_LF {
    Q_OBJECT
public:
    explicit TMultiSupplier_LF(QWidget* parent = nullptr);
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    void lcSelectDlgClick(QObject* sender) override;

private:
    int typeClassif_; // the TYPE_CLASSIF the list was read with
};

// Clients of the working branch, through CLIENT_VIEW.
class TMultiClient_LF : public TMultiAbs_LF {
    Q_OBJECT
public:
    using TMultiAbs_LF::TMultiAbs_LF;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
};

// The branches of the working shop that the working user may see: the statement is put together
// when the frame is made, for the user and shop of that moment.
class TMultiFilial_LF : public TMultiAbs_LF {
    Q_OBJECT
public:
    explicit TMultiFilial_LF(QWidget* parent = nullptr);
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;

private:
    int shopIndex_;
};

} // namespace frames
