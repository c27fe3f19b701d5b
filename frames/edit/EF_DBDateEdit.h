#pragma once
#include "frames/edit/EF_DateBase.h"

namespace frames {

// A date bound to a field of the record that the host's edit dialog edits: on an edit dialog
// owned by a list form, Init binds DBDateEdit1 to the list form's current-record data source;
// elsewhere the editor keeps the data source it was given, or none.
class TDBDateEdit_Frame : public TSingleDate_Frame {
    Q_OBJECT
public:
    explicit TDBDateEdit_Frame(QWidget* parent = nullptr);

    void Init() override;

    virtual void DBDateEdit1Click(QObject* sender);
    virtual void DBDateEdit1Enter(QObject* sender);
    virtual void DBDateEdit1Exit(QObject* sender);
    virtual void DBDateEdit1KeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    virtual void DBDateEdit1KeyUp(QObject* sender, int& key, Qt::KeyboardModifiers shift);

    ui::DateEdit* DBDateEdit1;
};

} // namespace frames
