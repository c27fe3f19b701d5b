#include "host/FindForm.h"
#include "host/CardForms.h"
#include "platform/db/DataSet.h"
#include "platform/db/MemTable.h"
#include "platform/widgets/DBGrid.h"
#include "tests/host/WorkbenchFixture.h"
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace frames;

namespace {
using FindFormTest = test::WorkbenchHostTest<>;
}

// The host's find form over any grid: the next row holding the text in a shown column, without
// regard to case (Cyrillic too), round from the last row to the first only when asked; a text
// that is nowhere leaves the grid where it was and says so.
TEST_F(FindFormTest, FindsNextWrapsAndIgnoresCase) {
    db::MemTable t;
    t.addFieldDef("ID", db::FieldType::Integer);
    t.addFieldDef("NAME", db::FieldType::VarChar, 60);
    t.open();
    const QStringList names = {"Ёлкино-Ритейл", "Альфа", "ёлочный базар", "Бета", "ЁЛКА"};
    for (int i = 0; i < names.size(); ++i) t.appendRecord({i + 1, names[i]});
    db::DataSource src(&t);
    ui::DBGrid grid;
    grid.setDataSource(&src);
    t.first();

    QWidget* w = wb->ShowFindForm(&grid, QStringLiteral("ё"));
    auto* form = qobject_cast<workbench::FindForm*>(w);
    ASSERT_NE(form, nullptr);
    EXPECT_FALSE(form->isModal());
    EXPECT_EQ(form->edit()->text(), QStringLiteral("ё"));
    form->edit()->setText(QStringLiteral("ЁЛ"));
    ASSERT_TRUE(form->findNext());
    EXPECT_EQ(t.recNo(), 2);
    ASSERT_TRUE(form->findNext());
    EXPECT_EQ(t.recNo(), 4);
    ASSERT_TRUE(form->findNext()); // round to the first row
    EXPECT_EQ(t.recNo(), 0);
    form->wrap()->setChecked(false);
    t.setRecNo(4);
    EXPECT_FALSE(form->findNext());
    EXPECT_EQ(t.recNo(), 4);
    form->edit()->setText(QStringLiteral("гамма"));
    EXPECT_FALSE(form->findNext());
    EXPECT_TRUE(form->status()->text().contains(QStringLiteral("не найден")));
    // Enter in the edit searches as well.
    form->wrap()->setChecked(true);
    form->show();
    form->edit()->setText(QStringLiteral("бет"));
    QTest::keyClick(form->edit(), Qt::Key_Return);
    EXPECT_EQ(t.recNo(), 3);
    delete form;
}

// The card list's "Найти…" and a frame asking the host to search its grid both bring the same
// find form over that grid.
TEST_F(FindFormTest, CardListAndFramesSearchThroughTheFindForm) {
    workbench::CardListForm list(wb.get());
    list.open();
    list.findChild<QPushButton*>(QStringLiteral("btFind"))->click();
    const QList<workbench::FindForm*> forms = list.findChildren<workbench::FindForm*>();
    ASSERT_EQ(forms.size(), 1);
    EXPECT_EQ(forms[0]->grid(), list.grid());
    forms[0]->edit()->setText(QStringLiteral("100-0010"));
    ASSERT_TRUE(forms[0]->findNext());
    EXPECT_EQ(list.dataSet()->fieldByName("ARTICUL")->asString(), QStringLiteral("100-0010"));

    wb->FindInGrid(list.grid());
    EXPECT_EQ(list.findChildren<workbench::FindForm*>().size(), 2);
}
