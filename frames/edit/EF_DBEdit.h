#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/widgets/DBEdit.h"

namespace frames {

// A data-bound line of text. On the host's edit dialog over a list form the editor edits the
// list's current record (field DBEdit.DataField); elsewhere it keeps its own text.
// UpperCase turns typed letters into capitals; ValidChars (a regular-expression character class
// such as "0-9") limits what can be typed. Both reject silently, never with a message.
class TDBEdit_Frame : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(bool UpperCase READ UpperCase WRITE SetUpperCase)
    Q_PROPERTY(QString ValidChars READ ValidChars WRITE SetValidChars)
public:
    explicit TDBEdit_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void Init() override;
    bool IsEmpty() override;
    // Empties the field (null), or the editor's own text when unbound.
    void Clear() override;

    // The record being edited: the list form's current record, or none.
    db::DataSource* RecordSource() const { return recordSource_; }
    bool UpperCase() const { return upperCase_; }
    void SetUpperCase(bool on);
    QString ValidChars() const { return validChars_; }
    void SetValidChars(const QString& chars);

    ui::DBEdit* DBEdit;

protected:
    // Attaches the editor to the record found in Init; descendants that show something else
    // keep the record and bind their editor elsewhere.
    virtual void BindEditor(db::DataSource* record);
    // Writes a value into the record's field (the record goes into edit state).
    void SetRecordValue(const QString& fieldName, const QVariant& value);

private:
    void updateValidator();
    db::DataSource* recordSource_ = nullptr;
    bool upperCase_ = false;
    QString validChars_;
};

} // namespace frames
