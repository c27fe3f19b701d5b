#pragma once
#include "frames/medit/ME_ComboEdit.h"

namespace frames {

// A branch of one classifier type (key TYPE_CLASSIF): both lists get the parameter TYPE_CLASSIF
// when they open, and their dialog buttons open the classifier form "QucikClassifForm" on the
// combo's branch. A branch chosen there (any answer but Cancel) becomes the combo's value; the
// list is read again in any case, since the form may have changed the tree.
class TClassifComboEdit_ME : public TComboEdit_ME {
    Q_OBJECT
public:
    explicit TClassifComboEdit_ME(QWidget* parent = nullptr);

    void AfterConstruction() override;
    void SetParams(const QString& params) override;

    virtual void DlgClick(QObject* sender);
    virtual void DataSetBeforeOpen(db::AbstractDataSet& dataSet);

    int ClassifType() const { return classifType_; }

private:
    int classifType_ = 0;
};

} // namespace frames
