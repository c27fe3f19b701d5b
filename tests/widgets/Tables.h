#pragma once
// Small in-memory tables shared by the widget tests.
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include <QApplication>
#include <memory>

namespace widgets_test {

using namespace frames;

// A reference list (ID, NAME, COLOR) and a record table pointing into it (ID, NAME, COLOR_ID).
struct Tables {
    db::MemTable colors, goods;
    db::DataSource colorsSrc{&colors}, goodsSrc{&goods};

    Tables() {
        colors.addFieldDef("ID", db::FieldType::Integer);
        colors.addFieldDef("NAME", db::FieldType::VarChar, 40);
        colors.addFieldDef("COLOR", db::FieldType::Integer);
        colors.open();
        colors.appendRecord({1, "Red", 0xFF0000});
        colors.appendRecord({2, "Green", 0x00FF00});
        colors.appendRecord({3, "Blue", 0x0000FF});
        colors.first();

        goods.addFieldDef("ID", db::FieldType::Integer);
        goods.addFieldDef("NAME", db::FieldType::VarChar, 40);
        goods.addFieldDef("COLOR_ID", db::FieldType::Integer);
        goods.open();
        goods.appendRecord({10, "Shirt", 2});
        goods.appendRecord({11, "Hat", 3});
        goods.appendRecord({12, "Scarf", QVariant()});
        goods.appendRecord({13, "Boots", 99}); // a key the list does not hold
        goods.first();
    }
};

// n rows (ID = i, NAME = "Name <i>"), filled with controls disabled.
inline void fillNumbered(db::MemTable& t, int n) {
    t.addFieldDef("ID", db::FieldType::Integer);
    t.addFieldDef("NAME", db::FieldType::VarChar, 40);
    t.open();
    t.disableControls();
    for (int i = 0; i < n; ++i) t.appendRecord({i, QString("Name %1").arg(i)});
    t.first();
    t.enableControls();
}

} // namespace widgets_test
