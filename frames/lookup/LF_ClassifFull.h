#pragma once
#include "frames/lookup/LF_Abs.h"
#include <QLabel>

namespace frames {

// A branch of a classifier whose type is chosen in the frame itself: the type combo lcSelect2
// above the branch combo; the branch list follows the chosen type. The dialog button opens the
// host's classifier tree form over the chosen type.
class TClassifFull_LF : public TAbs_LF {
    Q_OBJECT
public:
    explicit TClassifFull_LF(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    void Init() override;
    void FormClose() override;
    bool HasDialog() const override { return true; }
    void lcSelectDlgClick(QObject* sender) override;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    virtual void lcSelect2Change(QObject* sender);

    QLabel* Label1;
    ui::LookupCombo* lcSelect2;
    db::DataSource* DataSource2;
    db::DataSet* pFIBDataSet2;

    static constexpr const char* TreeFormName = "QucikClassifForm";

protected:
    // Binds the type combo to the list form's current record when the frame sits on an edit
    // dialog over a list form and that record has the combo's field.
    void bindTypeCombo();
    // The tree form's answer for the branch combo (bound: into the record, in edit state).
    void acceptBranch(int key);
};

// The full classifier frame over the additional classifiers (types above 1000) other than the
// host list form's own one. The type comes from the record when it has one; without a type the
// branch list is empty and the dialog button does nothing.
class TAClassifFull_LF : public TClassifFull_LF {
    Q_OBJECT
public:
    using TClassifFull_LF::TClassifFull_LF;

    void Init() override;
    void lcSelectDlgClick(QObject* sender) override;
    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
};

} // namespace frames
