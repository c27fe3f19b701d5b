#pragma once
#include "frames/crm/EF_MarkList.h"

namespace frames {

// The characteristics of one kind that a company has (ObjectKey: the company).
class TFirmCharacter_Frame : public TMarkList_Frame {
    Q_OBJECT
public:
    explicit TFirmCharacter_Frame(QWidget* parent = nullptr) : TMarkList_Frame(parent, "clbCharacter") {}
};

// The characteristics of one kind that a manager works with (ObjectKey: the manager).
class TUserFirmCharacter_Frame : public TFirmCharacter_Frame {
    Q_OBJECT
public:
    using TFirmCharacter_Frame::TFirmCharacter_Frame;
};

// The characteristics of a company's event (ObjectKey: the event). With Prefill set, Init checks
// instead the company's characteristics that the manager works with: a new event starts with
// them, and Save stores them for the event.
class TEventCharacter_Frame : public TFirmCharacter_Frame {
    Q_OBJECT
    Q_PROPERTY(int Firm MEMBER Firm)
    Q_PROPERTY(int Manager MEMBER Manager)
    Q_PROPERTY(bool Prefill MEMBER Prefill)
    Q_PROPERTY(QStringList PrefillSQL MEMBER PrefillSQL)
    Q_PROPERTY(QStringList EventSQL MEMBER EventSQL)
public:
    using TFirmCharacter_Frame::TFirmCharacter_Frame;
    void Init() override;
    void pFIBDataSet2BeforeOpen(db::AbstractDataSet& dataSet) override;
    // Bound to an event record: its key, company (FIRM) and manager (MANAGER).
    void TakeRecordKeys(const db::AbstractDataSet& record) override;

    int Firm = -1;
    int Manager = -1;
    bool Prefill = false;
    QStringList PrefillSQL, EventSQL; // the stored-values selects with and without Prefill
};

// The sales territories of a company.
class TFirmTerritory_Frame : public TMarkList_Frame {
    Q_OBJECT
public:
    explicit TFirmTerritory_Frame(QWidget* parent = nullptr) : TMarkList_Frame(parent, "clbTerritory") {}
};

// The business spheres of a company.
class TFirmBusinessSphere_Frame : public TMarkList_Frame {
    Q_OBJECT
public:
    explicit TFirmBusinessSphere_Frame(QWidget* parent = nullptr)
        : TMarkList_Frame(parent, "clbBusinessSphere") {}
    // The ids of the checked rows in list order, joined by ",".
    QString GetSelectedIds() const;
};

} // namespace frames
