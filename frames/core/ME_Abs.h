#pragma once
#include "frames/core/AbsEditFrame.h"
#include "frames/core/HostForms.h"
#include "frames/core/RunParams.h"
#include <QStringList>
#include <QVariant>

namespace frames {
namespace db {
class Query;
class Transaction;
} // namespace db

// The host base of the mass-edit frames. A mass-edit dialog creates the frame, hands it a
// parameter string (name=value lines) with SetParams, shows it and on confirmation calls
// ApplyChanges, which runs the update statement pfUpdate in pfTransaction; the dialog commits or
// rolls back pfTransaction. The statement is the caller's whole text (key "SQL"); it finds the
// marked records itself through the parameter "session". A frame fills the statement's
// parameters from its editors in pfUpdateBeforeExecute, just before it runs.
//
// Keys of the parameter string that the base reads: FIELDNAME (the column being edited). Any
// other key is the descendants' (Values).
class TAbsMEditFrame : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TAbsMEditFrame(QWidget* parent = nullptr);
    ~TAbsMEditFrame() override;

    // Fills the parameter list from the string, takes the field name from it and puts the
    // statement (key SQL) into pfUpdate.
    virtual void SetParams(const QString& params);
    // A named value of the calling context for the parameters of a frame's own lists: a key of
    // the parameter string, else a run constant (CUR_USER, CUR_FILIALINDEX, CUR_SHOPINDEX,
    // GLOBAL_PAR_SET_FOR, GLOBAL_PAR_CLASSIF_TYPE) or SESSION; null for a name nobody knows.
    virtual QVariant GetParamValue(const QString& name);
    // Runs pfUpdate in pfTransaction (started when it is not): pfUpdateBeforeExecute, the
    // statement, pfUpdateAfterExecute. Returns false when the frame declined to run it. Throws
    // the data layer's error; the caller rolls back.
    virtual bool ApplyChanges();
    // Records changed by the last ApplyChanges.
    int RowsAffected() const { return rowsAffected_; }

    // The event of pfUpdate before it runs: descendants call the inherited one first, then fill
    // the parameters.
    virtual void pfUpdateBeforeExecute(QObject* sender);
    virtual void pfUpdateAfterExecute(QObject* sender);

    // The parameter list: Values[key] of its name=value lines ("" when absent).
    QString Values(const QString& key) const;
    const QStringList& ParamList() const { return paramList_; }
    const QString& FieldName() const { return fieldName_; }

    // The session number under which the caller stored the marked keys.
    static int SessionNumber();
    // The database boolean text of a parameter value: "T" or "F".
    static QString BoolText(bool value);

    db::Query* pfUpdate;
    db::Transaction* pfTransaction;

protected:
    // Drops a parameter from the parameter list (the "MultiEdit" parameters the dialog handed
    // over), so that a later update does not see it.
    void DelParam(const QString& name);
    // Sets parameter name when the statement has it.
    void setIfPresent(const QString& name, const QVariant& value);
    // Sets parameter name (the statement must have it): null for an invalid QVariant.
    void setParam(const QString& name, const QVariant& value);

private:
    QStringList paramList_;
    QString fieldName_;
    int rowsAffected_ = 0;
};

// A host form that a mass-edit frame embeds whole (TLayerFrame_ME): the frame hands it the run
// parameters (TakeParams, then InitLayer), lets it open its data (OpenData), and before the
// update runs asks it to get ready (PrepareChanges) and to fill the update's own parameters.
class TfmAbsLayer_ME : public TfmPersistentForm {
    Q_OBJECT
public:
    explicit TfmAbsLayer_ME(QWidget* parent = nullptr) : TfmPersistentForm(parent) {}
    virtual void TakeParams(TRunParams& params) { Q_UNUSED(params); }
    virtual void InitLayer(TRunParams& params) { Q_UNUSED(params); }
    virtual void OpenData() {}
    virtual void PrepareChanges() {}
    virtual void FillUpdateParams(db::Query* update) { Q_UNUSED(update); }
    // The control the form hides while it is embedded (its own buttons), or nullptr.
    virtual QWidget* LayerHiddenControl() const { return nullptr; }
    // Set while the form is embedded in a frame.
    bool Embedded = false;
};

// An embedded form that checks its own input before the update may run.
class TfmAbsGrid_ME : public TfmAbsLayer_ME {
    Q_OBJECT
public:
    explicit TfmAbsGrid_ME(QWidget* parent = nullptr) : TfmAbsLayer_ME(parent) {}
    // False stops the update (the form told the user why).
    virtual bool CheckChanges() { return true; }
};

} // namespace frames
