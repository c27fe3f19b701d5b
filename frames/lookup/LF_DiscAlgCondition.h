#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QIcon>
#include <QSet>

namespace frames {

// A condition of a discount algorithm. The list shows every condition; those not in use
// (IS_USE false) carry a "not in use" mark and cannot be chosen: choosing one brings a warning
// and the previous condition back.
class TDiscAlgCondition_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TDiscAlgCondition_LF(QWidget* parent = nullptr);

    void Init() override;
    void pFIBDataSet1AfterOpen(db::AbstractDataSet& dataSet) override;
    virtual void lcSelectChange(QObject* sender);
    virtual QIcon lcSelectGetImage(QObject* sender, int row);

    // Whether the list holds the condition and marks it as not in use.
    bool IsUnused(const QVariant& key) const;

private:
    QSet<QString> unused_; // keys (as text) of the conditions not in use
    QVariant accepted_;    // the last condition that was let through
    bool restoring_ = false;
};

} // namespace frames
