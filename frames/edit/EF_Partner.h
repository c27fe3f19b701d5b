#pragma once
#include "frames/core/RunParams.h"
#include "frames/edit/EF_DBEdit.h"
#include "platform/db/DataSet.h"
#include <QPushButton>

namespace frames {

// The client a record is linked to (field LINK_TO_CLIENT), shown by name. bbSelect picks the
// client in the host's client form, bbClear removes the link. On the host's edit dialog over a
// list form the link is the list's current record's field; elsewhere the frame keeps it.
class TPartner_EF : public TDBEdit_Frame {
    Q_OBJECT
    Q_PROPERTY(QString ClientFormName MEMBER ClientFormName)
public:
    explicit TPartner_EF(QWidget* parent = nullptr);
    void AfterConstruction() override;
    void SetReadOnly(bool value) override;
    void Init() override;
    void DataRefresh() override;
    bool IsEmpty() override;
    void Clear() override;

    // The linked client's key (null when none).
    QVariant LinkToClient() const;

    virtual void bbSelectClick(QObject* sender);
    virtual void bbClearClick(QObject* sender);
    virtual void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet);

    QPushButton* bbSelect;
    QPushButton* bbClear;
    db::DataSet* pFIBDataSet1;
    db::DataSource* DataSource1;

    QString ClientFormName;
    int ClassifType = 1; // classifier type of the client form
    TRunParams RunParams;

protected:
    void BindEditor(db::DataSource* record) override;

private:
    void setLink(const QVariant& key);
    void reopen();
    QVariant ownLink_;
};

} // namespace frames
