#pragma once
#include "frames/edit/EF_DateBase.h"

namespace frames {

// A free-standing date ("Дата") for filter panels and dialogs; Clear empties it.
class TDateEdit_Frame : public TSingleDate_Frame {
    Q_OBJECT
public:
    explicit TDateEdit_Frame(QWidget* parent = nullptr);

    void Clear() override;

    // The date shown (null when empty) and setting it without the date-changed event.
    QDate GetDate() const { return DateEdit->date(); }
    void SetDate(const QDate& d) { DateEdit->setDate(d); }

    virtual void DateEditClick(QObject* sender);
    virtual void DateEditEnter(QObject* sender);
    virtual void DateEditExit(QObject* sender);
    virtual void DateEditKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);
    virtual void DateEditKeyUp(QObject* sender, int& key, Qt::KeyboardModifiers shift);

    ui::DateEdit* DateEdit;
};

} // namespace frames
