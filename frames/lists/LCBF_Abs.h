#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include <QCheckBox>
#include <QListWidget>

namespace frames {

// The rows of a reference table as a list of check boxes, with "Использовать" checking or
// clearing them all. The checked rows are kept per user and kind in the selection table
// TableName (columns id_user, kind, KeyColumn and, with UseIsUsed, is_used), written again
// whenever the host saves the layout. pfItems returns id, name and ch (not null: checked).
class TAbs_LCBF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(QString TableName MEMBER TableName)
    Q_PROPERTY(QString KeyColumn MEMBER KeyColumn)
    Q_PROPERTY(int Kind MEMBER Kind)
    Q_PROPERTY(bool UseIsUsed MEMBER UseIsUsed)
public:
    explicit TAbs_LCBF(QWidget* parent = nullptr);
    ~TAbs_LCBF() override;

    void Init() override;
    void SaveLayout(TConfigItem* node) override;
    // "cbUse.Checked" sets the box; when that changes it, every item follows it.
    void RestoreLayout(TConfigItem* node) override;
    bool IsEmpty() override;

    virtual void FillItems();
    // Rewrites the user's rows of this kind in one transaction of its own; a failure is told to
    // the user ("Не удалось сохранить выбор") and nothing is committed. False when it failed.
    virtual bool SaveItems();

    // Handlers.
    virtual void pfItemsBeforeOpen(db::AbstractDataSet& ds);
    virtual void cbUseClick(QObject* sender);
    virtual void clbSelectClickCheck(QObject* sender);

    // The keys of the checked items, in list order.
    QList<int> CheckedIds() const;
    // The host's check-list menu: check all, clear all, invert.
    void CheckAll(Qt::CheckState state);
    void InvertAll();

    QListWidget* clbSelect;
    QCheckBox* cbUse;
    db::DataSet* pfItems;

    QString TableName;
    QString KeyColumn;
    int Kind = 0;
    bool UseIsUsed = true;

private:
    // After the menu changed the items: "Использовать" shows all, none or some.
    void showUseState();
};

} // namespace frames
