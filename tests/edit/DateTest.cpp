#include "frames/core/HostForms.h"
#include "frames/core/TyapiDates.h"
#include "frames/edit/EF_DBDateEdit.h"
#include "frames/edit/EF_DBDateTimeEdit.h"
#include "frames/edit/EF_DBTimeEdit.h"
#include "frames/edit/EF_DateEdit.h"
#include "frames/edit/EF_Month.h"
#include "frames/edit/EF_SetDate.h"
#include "platform/db/DataSet.h"
#include "platform/db/Field.h"
#include "platform/db/MemTable.h"
#include "platform/widgets/MonthEdit.h"
#include "platform/widgets/TimeEdit.h"
#include "tests/edit/EditTestUtil.h"
#include "tests/support/DbFixture.h"
#include <QCalendarWidget>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

using namespace frames;
using namespace frames::edit_test;

namespace {

// A window with room for the widget under test and a line edit to move the focus to.
struct Window {
    QWidget top;
    QVBoxLayout* box = new QVBoxLayout(&top);
    QLineEdit* other = new QLineEdit(&top);
    Window() { box->addWidget(other); }
    void add(QWidget* w) { box->insertWidget(0, w); }
};

// Types into a date edit as a user: focus, erase, type digits (the mask adds the dots).
void typeDate(ui::DateEdit* e, const QString& digits) {
    e->setFocus();
    e->selectAll();
    QTest::keyClick(e, Qt::Key_Backspace);
    e->setCursorPosition(0);
    QTest::keyClicks(e, digits);
}

} // namespace

TEST(DateText, UserTextDayNumbersAndTheCheckHelpers) {
    test::TestHost host;
    host.today = QDate(2024, 3, 15);
    EXPECT_EQ(ui::parseDateTime(" 1.3.24 "), at(2024, 3, 1));
    EXPECT_EQ(ui::parseDateTime("01/03/99"), at(1999, 3, 1));
    EXPECT_EQ(ui::parseDateTime("2024-02-29"), at(2024, 2, 29));
    EXPECT_EQ(ui::parseDateTime("29022024"), at(2024, 2, 29));
    EXPECT_EQ(ui::parseDateTime("7.11."), at(2024, 11, 7)); // a half-typed mask: the host's year
    EXPECT_EQ(ui::parseDateTime("15.03.2024 10:30", true), at(2024, 3, 15, 10, 30));
    EXPECT_EQ(ui::parseDateTime("15.03.2024 10:30"), at(2024, 3, 15)); // time dropped
    for (const char* bad : {"", "  ", "abc", "29.02.2023", "31.04.2024", "15.13.2024", "15.03.202",
                            "15.03.2024 25:00", "15-", "..", "3002024", "30022024", "1.2.3.4"})
        EXPECT_TRUE(ui::parseDateTime(bad, true).isNull()) << bad;

    EXPECT_EQ(ui::toDayNumber(at(1900, 1, 1)), 2);
    EXPECT_EQ(ui::toDayNumber(at(2024, 3, 15, 12)), 45366.5);
    EXPECT_EQ(ui::toDayNumber({}), NullDate);
    EXPECT_TRUE(ui::fromDayNumber(NullDate).isNull());
    EXPECT_EQ(ui::fromDayNumber(45366.75), at(2024, 3, 15, 18));
    EXPECT_EQ(ui::fromDayNumber(-1.25), at(1899, 12, 29, 6)); // before day 0 the fraction runs forward
    EXPECT_EQ(ui::toDayNumber(at(1899, 12, 29, 6)), -1.25);

    EXPECT_TRUE(CheckDateSilent("29.02.2024"));
    EXPECT_FALSE(CheckDateSilent("30.02.2024"));
    EXPECT_TRUE(CheckDate("01.01.2000"));
    EXPECT_TRUE(host.messages.empty());
    EXPECT_FALSE(CheckDate("30.02.2024"));
    ASSERT_EQ(host.errors().size(), 1);
    EXPECT_TRUE(host.errors().first().contains("30.02.2024"));
}

TEST(DateEditControl, TypedTextTakenOnEnterOrExitBadTextRevertsSilently) {
    test::TestHost host;
    Window w;
    auto* e = new ui::DateEdit;
    e->setMasked(true);
    w.add(e);
    int changed = 0, editing = 0, exits = 0;
    e->OnEditValueChanged = [&](QObject*) { ++changed; };
    e->OnEditing = [&](QObject*) { ++editing; };
    e->OnExit = [&](QObject*) { ++exits; };
    activate(&w.top);

    typeDate(e, "15032024");
    EXPECT_TRUE(e->isNull()); // not taken while typing
    EXPECT_GT(editing, 0);
    w.other->setFocus();
    EXPECT_EQ(e->date(), QDate(2024, 3, 15));
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(exits, 1);

    // Not a date: back to the value, no message; focus in and out again changes nothing.
    typeDate(e, "31022024");
    QTest::keyClick(e, Qt::Key_Return);
    EXPECT_EQ(e->text(), "15.03.2024");
    w.other->setFocus();
    EXPECT_EQ(changed, 1);
    EXPECT_TRUE(host.messages.empty());

    // Enter takes the text at once; Escape drops what was typed.
    typeDate(e, "01042024");
    QTest::keyClick(e, Qt::Key_Enter);
    EXPECT_EQ(e->date(), QDate(2024, 4, 1));
    EXPECT_EQ(changed, 2);
    typeDate(e, "0205");
    QTest::keyClick(e, Qt::Key_Escape);
    EXPECT_EQ(e->text(), "01.04.2024");

    // Erasing the text empties the date; a read-only edit takes nothing.
    typeDate(e, "");
    w.other->setFocus();
    EXPECT_TRUE(e->isNull());
    e->setDate(QDate(2024, 5, 5));
    e->setReadOnly(true);
    typeDate(e, "06062024");
    w.other->setFocus();
    e->showPopup();
    EXPECT_FALSE(e->isPopupVisible());
    EXPECT_EQ(e->date(), QDate(2024, 5, 5));
    EXPECT_EQ(changed, 3);
}

TEST(DateEditControl, CalendarButtonsAndTimeKind) {
    test::TestHost host;
    host.today = QDate(2024, 3, 15);
    Window w;
    auto* e = new ui::DateEdit;
    w.add(e);
    int clicks = 0, changed = 0;
    e->OnClick = [&](QObject*) { ++clicks; };
    e->OnEditValueChanged = [&](QObject*) { ++changed; };
    activate(&w.top);

    e->showPopup();
    ASSERT_TRUE(e->isPopupVisible());
    EXPECT_EQ(e->calendar()->selectedDate(), host.today); // an empty edit opens on today
    e->calendar()->setSelectedDate(QDate(2024, 2, 29));
    e->acceptCalendar();
    EXPECT_FALSE(e->isPopupVisible());
    EXPECT_EQ(e->date(), QDate(2024, 2, 29));
    EXPECT_EQ(clicks, 1);
    e->showPopup();
    e->popup()->findChild<QPushButton*>("btnClear")->click();
    EXPECT_TRUE(e->isNull());
    e->showPopup();
    e->popup()->findChild<QPushButton*>("btnToday")->click();
    EXPECT_EQ(e->date(), host.today);
    EXPECT_EQ(changed, 3);

    // Date and time: the time is kept and shown; without SaveTime only the date stays.
    ui::DateTimeEdit dt;
    dt.setValue(at(2024, 3, 15, 14, 45));
    EXPECT_EQ(dt.text(), "15.03.2024 14:45");
    EXPECT_EQ(dt.dayNumber(), 45366 + (14 * 60 + 45) / 1440.0);
    e->setValue(at(2024, 3, 15, 14, 45));
    EXPECT_EQ(e->value(), at(2024, 3, 15));
}

TEST(TimeAndMonthControls, StepTypeAndBind) {
    test::TestHost host;
    host.today = QDate(2024, 1, 31);
    ui::TimeEdit te;
    int changes = 0;
    te.OnChange = [&](QObject*) { ++changes; };
    EXPECT_TRUE(te.isNull());
    te.lineEdit()->setCursorPosition(0);
    te.stepBy(1); // an empty edit starts from midnight
    EXPECT_EQ(te.time(), QTime(1, 0));
    te.setTime(QTime(23, 59));
    te.lineEdit()->setCursorPosition(4);
    te.stepBy(1);
    EXPECT_EQ(te.time(), QTime(0, 0)); // round midnight
    te.lineEdit()->setCursorPosition(1);
    te.stepBy(-1);
    EXPECT_EQ(te.time(), QTime(23, 0));
    EXPECT_EQ(te.text(), "23:00");
    EXPECT_EQ(changes, 3);
    te.lineEdit()->setText("930");
    te.commitText();
    te.lineEdit()->setText("9:77");
    EXPECT_FALSE(te.commitText());
    EXPECT_EQ(te.text(), "09:30");

    db::MemTable t;
    t.addFieldDef("T", db::FieldType::Time);
    t.addFieldDef("TS", db::FieldType::Timestamp);
    t.open();
    t.appendRecord({QTime(7, 15, 40), at(2021, 6, 1, 8, 30)});
    db::DataSource src(&t);
    ui::TimeEdit onTime, onStamp;
    onTime.setDataSource(&src);
    onTime.setDataField("T");
    onStamp.setDataSource(&src);
    onStamp.setDataField("TS");
    EXPECT_EQ(onTime.text(), "07:15");
    onStamp.userSetTime(QTime(17, 5));
    EXPECT_EQ(t.fieldByName("TS")->asDateTime(), at(2021, 6, 1, 17, 5)); // the date is kept
    t.cancel();

    // The month picker cuts the day to the month it steps to; typed months are read by name.
    ui::MonthEdit me;
    me.lineEdit()->setCursorPosition(0);
    me.stepBy(1);
    EXPECT_EQ(me.date(), QDate(2024, 2, 29));
    EXPECT_EQ(ui::MonthEdit::parseMonth("мар 2011"), QDate(2011, 3, 1));
    EXPECT_EQ(ui::MonthEdit::parseMonth("Октября 1999"), QDate(1999, 10, 1));
    EXPECT_EQ(ui::MonthEdit::parseMonth("03.2011"), QDate(2011, 3, 1));
    EXPECT_FALSE(ui::MonthEdit::parseMonth("13.2011").isValid());
    EXPECT_FALSE(ui::MonthEdit::parseMonth("ма 2011").isValid());
}

TEST(DateHelpers, AdjustSetNullLayoutAndMinMax) {
    test::TestHost host;
    ui::DateEdit first, last;
    auto set = [&](QDate a, QDate b) {
        first.setDate(a);
        last.setDate(b);
    };
    set(QDate(2024, 3, 20), QDate(2024, 3, 10));
    AdjustDates(&first, &last, &last); // the first date follows a changed last date
    EXPECT_EQ(first.date(), QDate(2024, 3, 10));
    set(QDate(2024, 3, 20), QDate());
    AdjustDates(&first, &last, &first); // an open end is left alone
    EXPECT_TRUE(last.isNull());

    first.setMasked(true);
    first.setDate(QDate(2024, 3, 20));
    int key = Qt::Key_Backspace;
    setNull(key, &first); // digits left: only one character was erased
    EXPECT_FALSE(first.isNull());
    first.setText("");
    setNull(key, &first);
    EXPECT_TRUE(first.isNull());
    EXPECT_EQ(key, 0);
    first.setDate(QDate(2024, 3, 20));
    first.setReadOnly(true);
    key = Qt::Key_Delete;
    setNull(key, &first);
    EXPECT_FALSE(first.isNull());
    first.setReadOnly(false);
    setNull(key, &first);
    EXPECT_TRUE(first.isNull());

    // Layout: a date, a date with time, no date, a day number, and text that is no date.
    TConfigItem root("root");
    ui::DateTimeEdit stamp;
    stamp.setValue(at(2024, 3, 15, 10, 20));
    last.setDate(QDate(2024, 2, 29));
    SaveLayoutDT(root.ItemByName("A"), &last);
    SaveLayoutDT(root.ItemByName("B"), &stamp);
    SaveLayoutDT(root.ItemByName("C"), &first);
    TConfigItem copy("copy");
    copy.fromJson(root.toJson());
    ui::DateEdit a, c;
    ui::DateTimeEdit b;
    c.setDate(QDate(2000, 1, 1));
    RestoreLayoutDT(copy.ItemByName("A"), &a);
    RestoreLayoutDT(copy.ItemByName("B"), &b);
    RestoreLayoutDT(copy.ItemByName("C"), &c);
    EXPECT_EQ(a.date(), QDate(2024, 2, 29));
    EXPECT_EQ(b.value(), at(2024, 3, 15, 10, 20));
    EXPECT_TRUE(c.isNull());
    copy.ItemByName("N")->SetAsFloat(45366);
    RestoreLayoutDT(copy.ItemByName("N"), &a);
    copy.ItemByName("X")->SetAsString("когда-нибудь");
    RestoreLayoutDT(copy.ItemByName("X"), &a); // ignored
    EXPECT_EQ(a.date(), QDate(2024, 3, 15));
    // Dates the database does not take are ignored as typed ones are; its last day is taken.
    for (const double day : {3000000.0, 2958466.0, -693594.0, 1e300}) {
        copy.ItemByName("Far")->SetAsFloat(day);
        RestoreLayoutDT(copy.ItemByName("Far"), &a);
        EXPECT_EQ(a.date(), QDate(2024, 3, 15)) << day;
    }
    copy.ItemByName("Far")->SetAsString("10000-01-01");
    RestoreLayoutDT(copy.ItemByName("Far"), &a);
    EXPECT_EQ(a.date(), QDate(2024, 3, 15));
    copy.ItemByName("Last")->SetAsFloat(2958465);
    RestoreLayoutDT(copy.ItemByName("Last"), &a);
    EXPECT_EQ(a.date(), QDate(9999, 12, 31));

    // A typed number that is not yet the value (it could still grow into the range) is brought in.
    QSpinBox spin;
    spin.setRange(7, 12);
    spin.setValue(9);
    spin.findChild<QLineEdit*>()->setText("1");
    CheckMinMax(&spin);
    EXPECT_EQ(spin.text(), "7");
}

TEST(DateFrames, DateChangeFiresOncePerRealChangeAndTellsTheOwner) {
    test::TestHost host;
    host.today = QDate(2024, 3, 15);
    TfmPersistentForm form;
    auto* box = new QVBoxLayout(&form);
    auto* f = make<TDateEdit_Frame>("TDateEdit_Frame", &form);
    auto* other = new QLineEdit(&form);
    box->addWidget(f);
    box->addWidget(other);
    QList<QObject*> senders;
    f->OnDateChanged = [&](QObject* s) { senders << s; };
    f->Init();
    activate(&form);

    typeDate(f->DateEdit, "10032024");
    EXPECT_TRUE(senders.isEmpty()); // not per keystroke
    other->setFocus();
    ASSERT_EQ(senders.size(), 1);
    EXPECT_EQ(senders[0], f->DateEdit);
    f->DateEdit->setFocus();
    EXPECT_EQ(f->DateEdit->selectedText(), "10.03.2024"); // entering selects the date
    other->setFocus();
    EXPECT_EQ(senders.size(), 1); // left again without a change

    // Enter fires at once; the same date typed again does not fire.
    typeDate(f->DateEdit, "11032024");
    QTest::keyClick(f->DateEdit, Qt::Key_Return);
    EXPECT_EQ(senders.size(), 2);
    typeDate(f->DateEdit, "11032024");
    other->setFocus();
    EXPECT_EQ(senders.size(), 2);

    // A calendar choice is a click: the date fires and the persistent owner hears of it.
    const int before = form.ChangeCount();
    f->DateEdit->showPopup();
    f->DateEdit->calendar()->setSelectedDate(QDate(2024, 3, 1));
    f->DateEdit->acceptCalendar();
    EXPECT_EQ(senders.size(), 3);
    EXPECT_EQ(form.ChangeCount(), before + 1);

    // Delete (key-up) empties the date; an empty date does not fire.
    f->DateEdit->setFocus();
    QTest::keyClick(f->DateEdit, Qt::Key_Delete);
    EXPECT_TRUE(f->DateEdit->isNull());
    EXPECT_TRUE(f->IsEmpty());
    other->setFocus();
    EXPECT_EQ(senders.size(), 3);

    // Day 0 reads as empty; Clear empties, and the date shown before counts as a change again.
    f->SetDate(DateZero());
    EXPECT_TRUE(f->IsEmpty());
    f->SetDate(QDate(2024, 3, 1));
    f->Clear();
    EXPECT_TRUE(f->IsEmpty());
    f->SetDate(QDate(2024, 3, 1));
    f->DateChange();
    EXPECT_EQ(senders.size(), 4);
}

// A masked date emptied by Delete, or clicked right of its mask, takes what is typed next: the
// caret goes where typing fills the date, in every frame with a date editor.
TEST(DateFrames, TypingFillsAnEmptiedMaskAfterDeleteOrAClickBesideIt) {
    test::TestHost host;
    host.today = QDate(2024, 3, 15);
    for (const char* cls : {"TDateEdit_Frame", "TDBDateEdit_Frame", "TSetDate_EF", "TPeriodExt_EF"}) {
        SCOPED_TRACE(cls);
        Window w;
        w.top.resize(500, 200);
        auto* f = make<TAbsEditFrame>(cls, &w.top);
        w.add(f);
        f->Init();
        auto* e = f->findChild<ui::DateEdit*>();
        ASSERT_NE(e, nullptr);
        activate(&w.top);
        // Beside the mask, left of the calendar button.
        const QPoint beside(e->width() - 30, e->height() / 2);
        ASSERT_GT(beside.x(), e->fontMetrics().horizontalAdvance("__.__.____") + 10);

        e->setDate(QDate(2024, 3, 15));
        e->setFocus();
        QTest::keyClick(e, Qt::Key_Delete);
        EXPECT_TRUE(e->isNull());
        QTest::keyClicks(e, "01022024");
        QTest::keyClick(e, Qt::Key_Return);
        EXPECT_EQ(e->date(), QDate(2024, 2, 1));

        e->clearValue();
        w.other->setFocus();
        QTest::mouseClick(e, Qt::LeftButton, {}, beside);
        QTest::keyClicks(e, "03042024");
        QTest::keyClick(e, Qt::Key_Return);
        EXPECT_EQ(e->date(), QDate(2024, 4, 3));

        // A half-typed date goes on where it stopped.
        e->clearValue();
        QTest::keyClicks(e, "05");
        QTest::mouseClick(e, Qt::LeftButton, {}, beside);
        QTest::keyClicks(e, "062024");
        QTest::keyClick(e, Qt::Key_Return);
        EXPECT_EQ(e->date(), QDate(2024, 6, 5));
        EXPECT_TRUE(host.messages.empty());
    }
}

class DatesOnEditDialog : public test::DbTest {};

TEST_F(DatesOnEditDialog, BoundOnTheEditDialogOfAListForm) {
    // A list form over the goods cards with an edit dialog owned by it: the real owner chain.
    TfmLayer1_FIB list;
    auto* cards = new db::DataSet(host->RvDatabase(), host->pfReadTransaction(), &list);
    cards->setSelectSql("select c.ID, c.NAME, c.CREATED, cast(c.CREATED as timestamp) + 0.5 as STAMP, "
                        "cast('10:30:00' as time) as TM from CARD c order by c.ID");
    cards->open();
    list.SetCurrentSource(new db::DataSource(cards, &list));
    auto* panel = new QWidget(new TfmAbsEditDlg(&list));
    const QDate created = cards->fieldByName("CREATED")->asDate();
    ASSERT_TRUE(created.isValid());

    auto* date = make<TDBDateEdit_Frame>("TDBDateEdit_Frame", panel);
    date->SetDataField("CREATED");
    auto* stamp = make<TDBDateTimeEdit_Frame>("TDBDateTimeEdit_Frame", panel);
    stamp->SetDataField("STAMP");
    auto* time = make<TDBTimeEdit_Frame>("TDBTimeEdit_Frame", panel);
    time->SetDataField("TM");
    for (TAbsEditFrame* f : {static_cast<TAbsEditFrame*>(date), static_cast<TAbsEditFrame*>(stamp),
                             static_cast<TAbsEditFrame*>(time)})
        f->Init();
    EXPECT_EQ(date->DBDateEdit1->date(), created); // time and date-time: the workbench's dialog test

    // A date chosen by the user goes into the record; a new record shows empty frames.
    date->DBDateEdit1->userSetValue(at(2023, 12, 31));
    EXPECT_EQ(cards->state(), db::DataSetState::Edit);
    EXPECT_EQ(cards->fieldByName("CREATED")->asDate(), QDate(2023, 12, 31));
    cards->cancel();
    cards->append();
    EXPECT_TRUE(date->IsEmpty());
    EXPECT_TRUE(stamp->IsEmpty());
    EXPECT_TRUE(time->IsEmpty());
    cards->cancel();
}

TEST(NewMonth, CarriesTheYearAcrossDecemberAndJanuary) {
    test::TestHost host;
    host.today = QDate(2010, 12, 15);
    QWidget top;
    auto* f = make<TNewMonth_EF>("TNewMonth_EF", &top);
    f->Init();
    ui::MonthEdit* p = f->DateTimePicker;
    EXPECT_EQ(p->text(), "Декабрь 2010");
    p->lineEdit()->setCursorPosition(0);
    QTest::keyClick(p, Qt::Key_Up);
    EXPECT_EQ(p->text(), "Январь 2011");
    QTest::keyClick(p, Qt::Key_Down);
    EXPECT_EQ(p->text(), "Декабрь 2010");
    QTest::keyClick(p, Qt::Key_Down);
    EXPECT_EQ(p->text(), "Ноябрь 2010"); // within a year nothing is carried

    // A typed month with its year is taken as typed, even from December.
    f->SetDate(QDate(2011, 12, 1));
    p->lineEdit()->setText("Январь 2011");
    p->commitText();
    EXPECT_EQ(p->date(), QDate(2011, 1, 1));

    f->SetReadOnly(true);
    QTest::keyClick(p, Qt::Key_Up);
    EXPECT_EQ(p->date(), QDate(2011, 1, 1));
    f->Clear();
    EXPECT_EQ(p->date(), host.today);
}

namespace {

class SetDateFilter : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        frame = make<TSetDate_EF>("TSetDate_EF", &top);
        frame->Init();
    }
    QWidget top;
    TSetDate_EF* frame = nullptr;
};

} // namespace

TEST_F(SetDateFilter, EditsSwitchTheFilterOnAndTheDatesStayInOrder) {
    EXPECT_FALSE(frame->cbSet->isChecked());
    frame->deFromDate->userSetValue(at(2024, 3, 10));
    EXPECT_TRUE(frame->cbSet->isChecked());
    frame->deToDate->userSetValue(at(2024, 3, 20));

    // A last date before the first is pulled up to the first (its change passes the first edit).
    frame->deToDate->userSetValue(at(2024, 3, 5));
    EXPECT_EQ(frame->GetFromDate(), QDate(2024, 3, 10));
    EXPECT_EQ(frame->GetToDate(), QDate(2024, 3, 10));
    // A first date after the last pushes the last along.
    frame->deFromDate->userSetValue(at(2024, 3, 25));
    EXPECT_EQ(frame->GetToDate(), QDate(2024, 3, 25));
    // Leaving the last edit passes the last edit: the first date follows it.
    frame->deFromDate->setDate(QDate(2024, 3, 28));
    frame->deToDate->setDate(QDate(2024, 3, 26));
    frame->deToDateExit(frame->deToDate);
    EXPECT_EQ(frame->GetFromDate(), QDate(2024, 3, 26));

    // The condition selects what the plain comparison selects, one open end at a time.
    const QString field = "CREATED";
    auto count = [&](const QString& where) {
        return scalar("select count(*) from CARD where " + where).toInt();
    };
    const QDate lo = scalar("select min(CREATED) from CARD").toDate();
    const QDate hi = scalar("select max(CREATED) from CARD").toDate();
    ASSERT_TRUE(lo.isValid() && hi.isValid());
    frame->deFromDate->setDate(lo);
    frame->deToDate->clearValue();
    EXPECT_EQ(frame->SQL(field), "CREATED >= '" + lo.toString("yyyy-MM-dd") + "'");
    EXPECT_EQ(count(frame->SQL(field)), count("CREATED is not null"));
    frame->deFromDate->clearValue();
    frame->deToDate->setDate(hi);
    EXPECT_EQ(count(frame->SQL(field)), count("CREATED <= '" + hi.toString("yyyy-MM-dd") + "'"));
    EXPECT_EQ(count("cast(CREATED as timestamp) + 0.75 >= '" + lo.toString("yyyy-MM-dd") + "' and " +
                    frame->SQL("(cast(CREATED as timestamp) + 0.75)")),
              count("CREATED <= '" + hi.toString("yyyy-MM-dd") + "'")); // times on the last day count
    EXPECT_TRUE(frame->IsCorrect());
    frame->deToDate->clearValue();
    EXPECT_TRUE(frame->IsEmpty());
    EXPECT_FALSE(frame->IsCorrect());
    EXPECT_EQ(frame->SQL(field), "");
    frame->deFromDate->setDate(lo);
    frame->cbSet->setChecked(false);
    EXPECT_EQ(frame->SQL(field), "");
    EXPECT_TRUE(frame->IsCorrect());
}

TEST_F(SetDateFilter, LayoutRestoresDatesWithoutSwitchingTheFilterOn) {
    frame->deFromDate->setDate(QDate(2024, 1, 1));
    frame->deToDate->setDate(QDate(2024, 2, 29));
    frame->cbSet->setChecked(false);
    TConfigItem node("SetDate");
    frame->SaveLayout(&node);
    EXPECT_EQ(node.ItemByName("ToDate")->GetAsString(), "2024-02-29");

    auto* again = make<TSetDate_EF>("TSetDate_EF", &top);
    again->RestoreLayout(&node);
    again->Init();
    EXPECT_EQ(again->GetFromDate(), QDate(2024, 1, 1));
    EXPECT_EQ(again->GetToDate(), QDate(2024, 2, 29));
    EXPECT_FALSE(again->cbSet->isChecked());
    node.ItemByName("cbSet.Checked")->SetAsBoolean(true);
    node.Remove("ToDate");
    auto* third = make<TSetDate_EF>("TSetDate_EF", &top);
    third->RestoreLayout(&node);
    EXPECT_TRUE(third->cbSet->isChecked());
    EXPECT_TRUE(third->deToDate->isNull());
}
