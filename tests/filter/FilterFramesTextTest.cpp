#include "frames/core/ConfigItem.h"
#include "frames/core/Registry.h"
#include "frames/filter/FF_Edit.h"
#include "frames/filter/FF_Group.h"
#include "tests/support/TestHost.h"
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>
#include <memory>

using namespace frames;

namespace {

class TextFilters : public ::testing::Test {
protected:
    test::TestHost host;
    QWidget top;
    template <typename T> T* make(const QString& cls) {
        auto* f = qobject_cast<T*>(Registry::instance().create(cls, &top));
        EXPECT_NE(f, nullptr) << cls.toStdString();
        f->Init();
        return f;
    }
    // Types a pattern into the text filter's combo and takes it into the list with Enter.
    static void enterPattern(TEdit_FF* f, const QString& text) {
        QTest::keyClicks(f->MultiEditComboBox_EF->ComboBox, text);
        QTest::keyClick(f->MultiEditComboBox_EF->ComboBox, Qt::Key_Return);
    }
};

} // namespace

// The pattern condition: nothing while off; null-or-blank without patterns; stars become per-cent
// signs, quotes are doubled (so that no text leaves the literal), letters (Cyrillic too) go upper
// case; several patterns are joined by " or " without outer parentheses. Typing ticks the box;
// the host's clear leaves the patterns; the layout brings patterns and the tick back.
TEST_F(TextFilters, PatternConditionQuotesStarsBlanksAndCyrillic) {
    auto* f = make<TEdit_FF>("TEdit_FF");
    EXPECT_EQ(f->GroupBox->title().trimmed(), QString("Наименование"));
    EXPECT_EQ(f->SQL("NAME"), QString());
    f->cbSet->setChecked(true);
    EXPECT_EQ(f->SQL("NAME"), QString("(NAME is null) or (trim(NAME)='')"));

    f->cbSet->setChecked(false);
    enterPattern(f, "o'ne*");
    EXPECT_TRUE(f->cbSet->isChecked()) << "typing a pattern switches the filter on";
    EXPECT_EQ(f->SQL("NAME"), QString("upper(NAME) like 'O''NE%'"));

    f->AddText(QString::fromUtf8("*ёлка зелёная*"));
    f->AddText("x' or 1=1 --");
    EXPECT_EQ(f->ItemsCount(), 3);
    EXPECT_EQ(f->SQL("c.NAME"), QString::fromUtf8("upper(c.NAME) like 'O''NE%' or upper(c.NAME) like "
                                                  "'%ЁЛКА ЗЕЛЁНАЯ%' or upper(c.NAME) like 'X'' OR 1=1 --'"));

    f->Clear();
    EXPECT_EQ(f->ItemsCount(), 3);
    EXPECT_TRUE(f->cbSet->isChecked());

    // Taking a pattern out of the list ticks the box too.
    QListWidget* list = f->MultiEditComboBox_EF->ListBox;
    f->cbSet->setChecked(false);
    list->setCurrentRow(2);
    QTest::keyClick(list, Qt::Key_Delete);
    EXPECT_EQ(f->ItemsCount(), 2);
    EXPECT_TRUE(f->cbSet->isChecked());

    TConfigItem layout("TEdit_FF");
    f->SaveLayout(&layout);
    auto* again = make<TEdit_FF>("TEdit_FF");
    again->RestoreLayout(&layout);
    EXPECT_TRUE(again->cbSet->isChecked());
    EXPECT_EQ(again->SQL("NAME"), f->SQL("NAME"));
}

// Group letters: the text is correct when empty or letters A..Z and commas alternate, starting
// and ending with a letter (blanks and control characters between them do not count); the hyphen
// and the full stop that typing admits, pasted lower-case letters and other alphabets are not.
TEST_F(TextFilters, GroupLetterCorrectness) {
    const std::pair<const char*, bool> cases[] = {
        {"", true},      {"   ", true},   {"A", true},    {"A,B", true},  {" A , C ", true},
        {"A,\tB", true}, {"Z,A,M", true}, {"A,", false},  {"AB", false},  {",A", false},
        {"A,,B", false}, {"A-B", false},  {"A.B", false}, {"a", false},   {"A,b", false},
        {"Ж", false},    {",", false},    {"A B", false}, {"A;B", false}, {"A,B'", false},
    };
    for (const auto& [text, correct] : cases)
        EXPECT_EQ(TGroup_FF::IsCorrectText(QString::fromUtf8(text)), correct) << text;
}

// Typed letters go upper case and every character but letters, ",", "-" and "." is dropped;
// the box ticks; the condition quotes each letter and keeps the rest; a wrong or empty text and
// a box that is off give no condition.
TEST_F(TextFilters, GroupLettersTypedAndTheirCondition) {
    auto* f = make<TGroup_FF>("TGroup_FF");
    QComboBox* combo = f->EditComboBox_EF->ComboBox;
    f->cbSet->setChecked(true);
    EXPECT_EQ(f->SQL("GR"), QString()) << "empty";
    f->cbSet->setChecked(false);

    QTest::keyClicks(combo, "a1 ;");
    QKeyEvent cyrillic(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString::fromUtf8("Ж"));
    QApplication::sendEvent(combo, &cyrillic);
    QTest::keyClicks(combo, "b");
    EXPECT_EQ(f->EditComboBox_EF->Text(), QString("AB"));
    EXPECT_TRUE(f->cbSet->isChecked());
    EXPECT_FALSE(f->IsCorrect());
    EXPECT_EQ(f->SQL("GR"), QString());

    combo->setEditText(QString());
    QTest::keyClicks(combo, "a,c");
    EXPECT_EQ(f->EditComboBox_EF->Text(), QString("A,C"));
    EXPECT_TRUE(f->IsCorrect());
    EXPECT_EQ(f->SQL("g.GR"), QString("g.GR in ('A','C')"));
    EXPECT_EQ(f->KnownItemsList(), QString("A,C"));

    combo->setEditText(" A, B ");
    EXPECT_EQ(f->SQL("GR"), QString("GR in ( 'A', 'B' )"));
    combo->setEditText("a,b"); // pasted, not typed
    EXPECT_FALSE(f->IsCorrect());
    EXPECT_EQ(f->SQL("GR"), QString());
    f->cbSet->setChecked(false);
    combo->setEditText("A");
    EXPECT_EQ(f->SQL("GR"), QString());

    // The text and the tick come back with the layout; Clear empties both.
    f->cbSet->setChecked(true);
    TConfigItem layout("TGroup_FF");
    f->SaveLayout(&layout);
    auto* again = make<TGroup_FF>("TGroup_FF");
    again->RestoreLayout(&layout);
    EXPECT_EQ(again->SQL("GR"), QString("GR in ('A')"));
    again->Clear();
    EXPECT_FALSE(again->cbSet->isChecked());
    EXPECT_EQ(again->EditComboBox_EF->Text(), QString());
}

// Leaving the combo with a wrong text is refused: the host's error box says so once and the focus
// is back in the combo. A correct text leaves quietly, and so does the window losing the focus.
TEST_F(TextFilters, LeavingWithWrongGroupIsRefused) {
    auto* layout = new QVBoxLayout(&top);
    auto* f = make<TGroup_FF>("TGroup_FF");
    auto* other = new QLineEdit(&top);
    layout->addWidget(f);
    layout->addWidget(other);
    top.show();
    top.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&top));
    QComboBox* combo = f->EditComboBox_EF->ComboBox;

    combo->setFocus(Qt::TabFocusReason);
    combo->setEditText("A,");
    other->setFocus(Qt::TabFocusReason);
    ASSERT_EQ(host.errors(), QStringList{QString::fromUtf8("Группа задана не верна")});
    EXPECT_EQ(f->RefusedExits(), 1);
    EXPECT_TRUE(combo->hasFocus());

    host.messages.clear();
    combo->setEditText("A,B");
    other->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(host.errors().isEmpty());
    EXPECT_TRUE(other->hasFocus());

    // Called as the combo's exit handler, with the text wrong again.
    combo->setEditText("A-B");
    f->EditComboBox_EFComboBoxExit(combo);
    EXPECT_EQ(host.errors().size(), 1);
    EXPECT_EQ(f->RefusedExits(), 2);
}
