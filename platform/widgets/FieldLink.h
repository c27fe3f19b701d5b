#pragma once
#include "platform/db/DataSource.h"
#include <QPointer>
#include <QScopedValueRollback>
#include <functional>

namespace frames::ui {

// The binding of a data-aware control: a data source, the name of a field of its dataset, and a
// callback that re-reads the control. The callback runs when the binding changes and whenever
// the source reports a change (record moved or changed, a field edited, rows reloaded, state
// changed, dataset replaced). The control owns its link; the link's connections end with it.
class FieldLink {
public:
    // owner is the control: the connections also end when it is destroyed.
    FieldLink(QObject* owner, std::function<void()> onChange);
    ~FieldLink();
    FieldLink(const FieldLink&) = delete;
    FieldLink& operator=(const FieldLink&) = delete;

    db::DataSource* dataSource() const { return source_; }
    // Follows ds instead of the previous source (null: none), then re-reads.
    void setDataSource(db::DataSource* ds);
    QString dataField() const { return dataField_; }
    void setDataField(const QString& name); // trimmed; then re-reads
    db::Field* field() const;               // null while unbound or the dataset is closed
    db::Field* rowField() const;            // the field while its dataset stands on a row or inserts one
    // The field's display text on the current row ("" without a row or when it cannot be shown).
    QString fieldText() const;

    // Only edits of the bound field itself re-read the control, not those of other fields.
    void setOwnFieldEditsOnly(bool on) { ownFieldOnly_ = on; }

    // Set while the control writes into the field, so that it can ignore the echo of its own write.
    bool writing() const { return writing_; }
    [[nodiscard]] QScopedValueRollback<bool> writingScope() {
        return QScopedValueRollback<bool>(writing_, true);
    }
    // Writes v into the field (the dataset goes into edit state; an invalid, null or, outside text
    // fields, empty value clears it). A failure goes to the error reporter and the control is
    // re-read. False when nothing was written.
    bool write(const QVariant& v);

private:
    void changed(int column);

    QObject* owner_;
    std::function<void()> onChange_;
    QPointer<db::DataSource> source_;
    QList<QMetaObject::Connection> conns_;
    QString dataField_;
    bool ownFieldOnly_ = false, writing_ = false;
};

} // namespace frames::ui
