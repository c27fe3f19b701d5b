#pragma once
#include "frames/lookup/LF_Abs.h"
#include "frames/medit/ME_Value.h"

namespace frames {

// The new and the old value as references picked from lookup lists: two lookup frames over the
// select of the key CSQL (columns ID and NAME), whose parameters are named by the keys PAR_1,
// PAR_2, … (numbered without gaps) and take their values from GetParamValue. The lists never
// open reference forms. A value is sent as the chosen key; "-1" when "Пусто" is unchecked but
// nothing is chosen (no value chosen, as distinct from NULL). The statement must have
// :fieldname.
class TComboEdit_ME : public TTwoValue_ME {
    Q_OBJECT
public:
    explicit TComboEdit_ME(QWidget* parent = nullptr);

    void AfterConstruction() override;
    void SetParams(const QString& params) override;
    // Sets the parameters of the lookup list named by PAR_1, PAR_2, … (up to the first gap).
    virtual void GetDataSetParams(db::DataSet* dataSet);

    virtual void lfNewValuelcSelectChange(QObject* sender);
    virtual void lfOldValuelcSelectChange(QObject* sender);

    TAbs_LF* lfNewValue;
    TAbs_LF* lfOldValue;

protected:
    QString NewValueText() override { return keyText(lfNewValue); }
    QString OldValueText() override { return keyText(lfOldValue); }
    void ClearNewValue() override { lfNewValue->lcSelect->clear(); }
    void ClearOldValue() override { lfOldValue->lcSelect->clear(); }
    void SendNameAndKind() override;
    // Called for each lookup list before it opens with CSQL.
    virtual void PrepareList(db::DataSet* dataSet);
    // The chosen key as text, "-1" when the combo shows nothing.
    static QString keyText(TAbs_LF* lf);
};

} // namespace frames
