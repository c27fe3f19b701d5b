#pragma once
// Helpers shared by the lookup frame tests.
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"

#include <gtest/gtest.h>

namespace frames::test {

// A registered frame of class cls, created on parent.
template <typename T = TAbs_LF> T* makeFrame(const QString& cls, QWidget* parent) {
    auto* f = qobject_cast<T*>(Registry::instance().create(cls, parent));
    EXPECT_NE(f, nullptr) << cls.toStdString();
    return f;
}

// A list form whose current record is one in-memory row, and an edit dialog owned by it: frames
// created on the dialog bind to that record through the owner chain.
struct BoundRecord {
    // Fields of one type (size for text, scale for numbers); no values: the table starts without a row.
    BoundRecord(const QStringList& fields, const QVariantList& values,
                db::FieldType type = db::FieldType::Integer, int size = 0, int scale = 0) {
        record = new db::MemTable(&list);
        for (const QString& f : fields) record->addFieldDef(f, type, size, scale);
        record->open();
        if (!values.isEmpty()) record->appendRecord(values);
        source = new db::DataSource(record, &list);
        list.SetCurrentSource(source);
        dialog = new TfmAbsEditDlg(&list);
    }
    TfmLayer1_FIB list;
    db::MemTable* record = nullptr;
    db::DataSource* source = nullptr;
    TfmAbsEditDlg* dialog = nullptr;
};

} // namespace frames::test
