#pragma once
#include "platform/widgets/FieldLink.h"
#include <QAbstractSpinBox>
#include <QTime>
#include <functional>

namespace frames::ui {

// A time of day edit that can be empty, with up and down buttons. DisplayFormat is "HH:mm"
// (hours and minutes) or "HH:mm:ss". The arrows step the part under the cursor (hours, minutes,
// seconds) and run round midnight; an empty edit starts from 00:00.
//
// Bound to DataSource and DataField it shows and writes that field of the current record (a
// time field, or the time of day of a timestamp, whose date is kept); unbound it keeps the value.
// Typed text becomes the value on Enter or when the edit loses focus; a text that is not a time
// reverts, an erased text empties the value.
class TimeEdit : public QAbstractSpinBox {
    Q_OBJECT
    Q_PROPERTY(QString DataField READ dataField WRITE setDataField)
    Q_PROPERTY(bool ReadOnly READ isReadOnly WRITE setReadOnly)
    Q_PROPERTY(QString DisplayFormat READ displayFormat WRITE setDisplayFormat)
public:
    explicit TimeEdit(QWidget* parent = nullptr);

    db::DataSource* dataSource() const { return link_.dataSource(); }
    void setDataSource(db::DataSource* ds) { link_.setDataSource(ds); }
    QString dataField() const { return link_.dataField(); }
    void setDataField(const QString& f) { link_.setDataField(f); }
    db::Field* field() const { return link_.field(); }
    void updateFromField();

    QString displayFormat() const { return format_; }
    void setDisplayFormat(const QString& f);

    QTime time() const { return value_; } // invalid when empty
    bool isNull() const { return !value_.isValid(); }
    // Sets the value; bound, writes the field.
    void setTime(const QTime& t);
    void clearValue() { setTime(QTime()); }
    // A change made by the user: the value, then OnChange when it differs.
    void userSetTime(const QTime& t);
    bool commitText();

    void stepBy(int steps) override;
    // The text part, where the cursor says which part the arrows step.
    using QAbstractSpinBox::lineEdit;

    std::function<void(QObject* sender)> OnChange; // the user changed the value

protected:
    StepEnabled stepEnabled() const override;
    QValidator::State validate(QString& input, int& pos) const override;
    void fixup(QString&) const override {}
    void keyPressEvent(QKeyEvent* e) override;
    void focusOutEvent(QFocusEvent* e) override;

private:
    QTime normalized(const QTime& t) const;
    void showValue();

    QString format_ = QStringLiteral("HH:mm");
    QTime value_;
    int unit_ = 3600; // seconds per step of the part last stepped
    FieldLink link_{this, [this] { updateFromField(); }};
};

// Reads a typed time: "h:mm", "h:mm:ss", "h.mm", "hmm"/"hhmm"; invalid when it is not a time.
QTime parseTime(const QString& text);

} // namespace frames::ui
