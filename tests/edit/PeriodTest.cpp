#include "frames/core/Period.h"
#include "frames/core/TyapiDates.h"
#include "frames/edit/EF_CRMPeriodFix.h"
#include "frames/edit/EF_Period.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/edit/EF_PeriodFix.h"
#include "frames/edit/EF_SetPeriod.h"
#include "tests/edit/EditTestUtil.h"
#include "tests/support/TestHost.h"
#include <QApplication>
#include <QCalendarWidget>
#include <QTest>

using namespace frames;
using namespace frames::edit_test;

namespace {

// ---- the reference reckoning: days are walked and months stepped, independent of the frames

struct Span {
    QDate first, last;
};

QDate mondayOf(QDate d) {
    while (d.dayOfWeek() != 1) d = d.addDays(-1);
    return d;
}

QDate lastOfMonth(int y, int m) {
    return QDate(m == 12 ? y + 1 : y, m == 12 ? 1 : m + 1, 1).addDays(-1);
}

int quarterStartMonth(int m) {
    static const int starts[12] = {1, 1, 1, 4, 4, 4, 7, 7, 7, 10, 10, 10};
    return starts[m - 1];
}

Span expected(int type, const QDate& today, int workDays) {
    const int y = today.year(), m = today.month();
    switch (type) {
    case 1:
        return {today, today};
    case 2:
        return {today.addDays(-1), today.addDays(-1)};
    case 3:
        return {mondayOf(today), mondayOf(today).addDays(6)};
    case 4:
        return {mondayOf(today).addDays(-7), mondayOf(today).addDays(-1)};
    case 5:
        return {QDate(y, m, 1), lastOfMonth(y, m)};
    case 6: {
        const QDate last = QDate(y, m, 1).addDays(-1);
        return {QDate(last.year(), last.month(), 1), last};
    }
    case 7: {
        const int qs = quarterStartMonth(m);
        return {QDate(y, qs, 1), lastOfMonth(y, qs + 2)};
    }
    case 8: {
        const QDate last = QDate(y, quarterStartMonth(m), 1).addDays(-1);
        return {QDate(last.year(), quarterStartMonth(last.month()), 1), last};
    }
    case 9:
        return {QDate(y, 1, 1), QDate(y, 12, 31)};
    case 10:
        return {QDate(y - 1, 1, 1), QDate(y - 1, 12, 31)};
    case 11:
        return {today.addDays(1 - workDays), today};
    default:
        return {};
    }
}

const QList<QDate>& referenceDays() {
    static const QList<QDate> days{
        QDate(2024, 1, 31), QDate(2024, 4, 30), QDate(2023, 6, 30),  QDate(2024, 9, 30),  // month ends
        QDate(2024, 4, 1),  QDate(2024, 7, 1),  QDate(2024, 10, 1),                       // quarter starts
        QDate(2024, 2, 29), QDate(2024, 3, 17), QDate(2021, 1, 3),                        // 29 Feb, Sundays
        QDate(2024, 1, 1),  QDate(2023, 1, 1),  QDate(2024, 12, 31), QDate(2023, 12, 31), // year ends
        QDate(2024, 1, 15), QDate(2024, 5, 5),  QDate(2024, 3, 4)};
    return days;
}

class PeriodFrames : public ::testing::Test {
protected:
    test::TestHost host;
    QWidget top;
    TPeriodExt_EF* create(int maxLength = 0, const QString& cls = "TPeriodExt_EF") {
        auto* f = make<TPeriodExt_EF>(cls, &top);
        f->SetMaxPeriodLength(maxLength);
        return f;
    }
    static QStringList items(QComboBox* c) {
        QStringList l;
        for (int i = 0; i < c->count(); ++i) l << c->itemText(i);
        return l;
    }
    static void choose(QComboBox* c, const QString& text) {
        const int i = c->findText(text);
        ASSERT_GE(i, 0) << text.toStdString();
        c->setCurrentIndex(i);
        emit c->activated(i);
    }
};

} // namespace

TEST_F(PeriodFrames, EveryTypeOnTheReferenceDaysMatchesAnIndependentReckoning) {
    host.intValues["WorkPeriodLenght"] = 10;
    TPeriodExt_EF* f = create();
    f->Init();
    for (const QDate& day : referenceDays()) {
        host.today = day;
        for (int type = 1; type <= 11; ++type) {
            const Span want = expected(type, day, 10);
            QDate first, last;
            ASSERT_TRUE(PeriodDates(type, day, 10, first, last));
            EXPECT_EQ(first, want.first) << type << " on " << day.toString(Qt::ISODate).toStdString();
            EXPECT_EQ(last, want.last) << type << " on " << day.toString(Qt::ISODate).toStdString();
            // The same through the frame: the entry found by its text, the dates in the editors.
            f->SetPeriodType(type);
            EXPECT_EQ(f->GetPeriodType(), type);
            f->SetSelectedPeriod();
            EXPECT_EQ(f->GetBeginDate(), want.first) << type;
            EXPECT_EQ(f->GetEndDate(), want.last) << type;
        }
        // "<Заданный>" leaves typed dates alone.
        f->deFirstDate->setDate(QDate(2000, 1, 2));
        f->SetPeriodType(ptCustom);
        f->SetSelectedPeriod();
        EXPECT_EQ(f->GetBeginDate(), QDate(2000, 1, 2));
    }
    QDate first(2000, 1, 1), last = first;
    EXPECT_FALSE(PeriodDates(ptCustom, host.today, 10, first, last));
    EXPECT_FALSE(PeriodDates(ptWorkPeriod, host.today, 0, first, last));
    EXPECT_FALSE(PeriodDates(12, host.today, 10, first, last));
    EXPECT_EQ(first, QDate(2000, 1, 1));
}

TEST_F(PeriodFrames, TheListFollowsTheLengthLimitAndTheWorkingPeriod) {
    TPeriodExt_EF* all = create();
    all->Init();
    ASSERT_EQ(all->cbPeriod->count(), 11); // no working period configured
    EXPECT_EQ(all->cbPeriod->itemText(0), "<Заданный>");

    host.intValues["WorkPeriodLenght"] = 10;
    host.today = QDate(2024, 3, 15);
    TPeriodExt_EF* work = create();
    work->Init();
    ASSERT_EQ(work->cbPeriod->count(), 12);
    EXPECT_EQ(work->cbPeriod->itemText(11), "Рабочий период (10 дн.)");
    choose(work->cbPeriod, "Рабочий период (10 дн.)");
    EXPECT_EQ(work->GetPeriodType(), ptWorkPeriod);
    EXPECT_EQ(work->GetBeginDate(), QDate(2024, 3, 6));
    EXPECT_EQ(work->GetEndDate(), QDate(2024, 3, 15));

    // Thirty days: no quarters and no years; the types keep their numbers, found by text.
    TConfigItem node("p");
    node.ItemByName("cbPeriod.ItemIndex")->SetAsInteger(9);
    TPeriodExt_EF* month = create(30);
    month->RestoreLayout(&node);
    month->Init();
    EXPECT_EQ(items(month->cbPeriod),
              QStringList({"<Заданный>", "Сегодня", "Вчера", "Неделя", "Предыдущая неделя", "Текущий месяц",
                           "Предыдущий месяц", "Рабочий период (10 дн.)"}));
    EXPECT_EQ(month->cbPeriod->currentIndex(), 0); // stored index 9 is past the list
    EXPECT_EQ(month->StoredItemIndex(), 0);
    month->SetPeriodType(ptYear);
    EXPECT_EQ(month->cbPeriod->currentIndex(), 0);
    month->SetPeriodType(ptPrevMonth);
    EXPECT_EQ(month->cbPeriod->currentText(), "Предыдущий месяц");
    month->SetPeriodType(ptWorkPeriod);
    EXPECT_EQ(month->GetPeriodType(), ptWorkPeriod);
    // A second Init keeps the list and applies the stored index again.
    month->cbPeriod->setCurrentIndex(5);
    month->Init();
    EXPECT_EQ(month->cbPeriod->count(), 8);
    EXPECT_EQ(month->cbPeriod->currentIndex(), 0);

    const std::pair<int, int> limits[] = {{6, 3}, {7, 5}, {89, 7}, {90, 9}, {364, 9}, {365, 11}};
    host.intValues.remove("WorkPeriodLenght");
    for (auto [limit, count] : limits) {
        TPeriodExt_EF* f = create(limit);
        f->Init();
        EXPECT_EQ(f->cbPeriod->count(), count) << limit;
    }
}

TEST_F(PeriodFrames, TypingADateMakesItCustomAndCheckDatesTellsWhichIsBad) {
    host.today = QDate(2024, 3, 15);
    TPeriodExt_EF* f = create();
    f->Init();
    activate(&top);
    choose(f->cbPeriod, "Текущий квартал");
    EXPECT_EQ(f->GetPeriodType(), ptQuarter);
    EXPECT_EQ(f->deFirstDate->date(), QDate(2024, 1, 1));
    EXPECT_EQ(f->deLastDate->date(), QDate(2024, 3, 31));

    f->deLastDate->setFocus();
    f->deLastDate->setCursorPosition(0);
    QTest::keyClicks(f->deLastDate, "20");
    EXPECT_EQ(f->GetPeriodType(), ptCustom);
    EXPECT_EQ(f->GetEndDate(), QDate(2024, 3, 20)); // the typed text is taken when read

    choose(f->cbPeriod, "Вчера");
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 14));
    f->deFirstDate->showPopup();
    f->deFirstDate->calendar()->setSelectedDate(QDate(2024, 3, 1));
    f->deFirstDate->acceptCalendar();
    EXPECT_EQ(f->GetPeriodType(), ptCustom);
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 1));

    // Delete (key-up) empties the editor it was pressed in.
    choose(f->cbPeriod, "Сегодня");
    f->deLastDate->setFocus();
    QTest::keyClick(f->deLastDate, Qt::Key_Delete);
    EXPECT_TRUE(f->deLastDate->isNull());
    EXPECT_FALSE(f->deFirstDate->isNull());
    EXPECT_EQ(f->GetEndDate(), DateZero());

    // Leaving the frame drops text left in an editor without focus, not what is being typed.
    f->deFirstDate->setFocus();
    f->deFirstDate->setCursorPosition(0);
    QTest::keyClicks(f->deFirstDate, "2");
    f->deLastDate->setText("1");
    f->FrameMouseLeave(f);
    EXPECT_EQ(f->deFirstDate->text(), "25.03.2024");
    EXPECT_EQ(f->deLastDate->editText(), "");
    f->FrameExit(f);
    EXPECT_EQ(f->deFirstDate->text(), "25.03.2024");

    // Text that is not a date leaves the last date standing; CheckDates tells which editor holds it.
    f->deFirstDate->setDate(QDate(2024, 3, 5));
    f->deLastDate->setDate(QDate(2024, 3, 10));
    f->deFirstDate->setText("32.03.2024");
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 5));
    EXPECT_EQ(f->CheckDates(true), 1);
    EXPECT_TRUE(host.messages.empty());
    f->deFirstDate->refresh();
    f->deLastDate->setText("10.13.2024");
    EXPECT_EQ(f->CheckDates(false), 2);
    EXPECT_EQ(host.errors().size(), 1);
    f->deLastDate->refresh();
    EXPECT_EQ(f->CheckDates(), 0);

    f->SetReadOnly(true);
    EXPECT_FALSE(f->cbPeriod->isEnabled());
    EXPECT_TRUE(f->deLastDate->isReadOnly());
}

TEST_F(PeriodFrames, CheckPeriodLengthKeepsTheLastDateAndWarnsUnlessSilent) {
    host.today = QDate(2024, 4, 10);
    TPeriodExt_EF* f = create(31);
    f->Init();
    f->deFirstDate->setDate(QDate(2024, 1, 1));
    f->deLastDate->setDate(QDate(2024, 3, 31));
    f->CheckPeriodLength(false);
    ASSERT_EQ(host.warnings().size(), 1);
    EXPECT_EQ(host.warnings().first(), "Задан слишком большой период. Автоматически\n"
                                       "будет установлен период максимальной длины.");
    EXPECT_EQ(host.messages.back().caption, "Превышение длины периода");
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 1));
    EXPECT_EQ(f->GetEndDate(), QDate(2024, 3, 31));
    f->CheckPeriodLength(false); // 31 days now: nothing to say
    EXPECT_EQ(host.warnings().size(), 1);

    // A last date after today counts from today; silent says nothing.
    f->deFirstDate->setDate(QDate(2024, 1, 1));
    f->deLastDate->setDate(QDate(2024, 12, 31));
    f->CheckPeriodLength(true);
    EXPECT_EQ(host.warnings().size(), 1);
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 11));
    EXPECT_EQ(f->GetEndDate(), QDate(2024, 12, 31));
    // A period wholly in the future is left alone; an empty first date is filled.
    f->deFirstDate->setDate(QDate(2024, 5, 1));
    f->CheckPeriodLength(false);
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 5, 1));
    f->deFirstDate->clearValue();
    f->deLastDate->setDate(QDate(2024, 4, 1));
    f->CheckPeriodLength(true);
    EXPECT_EQ(f->GetBeginDate(), QDate(2024, 3, 2));

    f->SetMaxPeriodLength(0); // no limit
    f->deFirstDate->setDate(QDate(2000, 1, 1));
    f->CheckPeriodLength(false);
    EXPECT_EQ(f->GetBeginDate(), QDate(2000, 1, 1));
    EXPECT_EQ(host.warnings().size(), 1);
}

TEST_F(PeriodFrames, ExchangeWithTheHostPeriodAndTheLayout) {
    host.today = QDate(2024, 5, 5);
    TPeriodExt_EF* f = create();
    f->Init();
    TConfigItem store("period");
    TPeriod period(&store);
    choose(f->cbPeriod, "Предыдущий квартал");
    f->Save(&period);
    EXPECT_EQ(period.PeriodType(), ptPrevQuarter);
    EXPECT_EQ(period.FirstDate(), QDate(2024, 1, 1));
    EXPECT_EQ(period.LastDate(), QDate(2024, 3, 31));

    // A named type is computed afresh on the day it is set; a custom one keeps its dates.
    host.today = QDate(2024, 8, 20);
    TPeriod loaded(&store);
    ASSERT_TRUE(loaded.Load());
    TPeriodExt_EF* g = create();
    g->Init();
    g->SetPeriod(&loaded);
    EXPECT_EQ(g->GetPeriodType(), ptPrevQuarter);
    EXPECT_EQ(g->GetBeginDate(), QDate(2024, 4, 1));
    EXPECT_EQ(g->GetEndDate(), QDate(2024, 6, 30));
    loaded.SetPeriodType(ptCustom);
    g->SetPeriod(&loaded);
    EXPECT_EQ(g->GetPeriodType(), ptCustom);
    EXPECT_EQ(g->GetBeginDate(), QDate(2024, 1, 1));

    // Layout: the dates (a typed text taken first) and the index, applied by the next Init.
    g->deLastDate->setText("01.07.2024");
    TConfigItem node("layout");
    g->SaveLayout(&node);
    TPeriodExt_EF* h = create();
    h->RestoreLayout(&node);
    h->Init();
    EXPECT_EQ(h->GetBeginDate(), QDate(2024, 1, 1));
    EXPECT_EQ(h->GetEndDate(), QDate(2024, 7, 1));
    node.ItemByName("cbPeriod.ItemIndex")->SetAsInteger(5);
    TPeriodExt_EF* named = create();
    named->RestoreLayout(&node);
    named->Init();
    EXPECT_EQ(named->GetPeriodType(), ptMonth);
    EXPECT_EQ(named->GetBeginDate(), QDate(2024, 8, 1));
    named->Clear();
    EXPECT_TRUE(named->IsEmpty());
    EXPECT_EQ(named->GetPeriodType(), ptCustom);
}

TEST_F(PeriodFrames, FixedLengthFramesTakeTheirLimitsFromTheConfiguration) {
    host.today = QDate(2024, 3, 15);
    host.intValues["MaxWorkPeriodLenght"] = 31;
    host.intValues["WorkPeriodLenght"] = 7;
    host.intValues["CRMEventMaxWorkPeriodLenght"] = 90;
    host.intValues["CRMEventWorkPeriodLenght"] = 14;
    auto* fix = create(0, "TPeriodFix_EF");
    fix->Init();
    EXPECT_EQ(fix->MaxPeriodLength(), 31);
    EXPECT_EQ(fix->cbPeriod->currentText(), "Рабочий период (7 дн.)"); // a new frame shows it
    EXPECT_EQ(fix->GetBeginDate(), QDate(2024, 3, 9));
    EXPECT_EQ(fix->cbPeriod->findText("Текущий квартал"), -1);
    // A date typed by hand that makes the period too long is brought back, with the warning.
    fix->deFirstDate->userSetValue(at(2023, 12, 1));
    EXPECT_EQ(fix->GetBeginDate(), QDate(2024, 2, 14));
    EXPECT_EQ(host.warnings().size(), 1);

    auto* crm = create(0, "TCRMPeriodFix_EF");
    crm->Init();
    EXPECT_EQ(crm->MaxPeriodLength(), 90);
    EXPECT_EQ(crm->cbPeriod->currentText(), "Рабочий период (14 дн.)");
    EXPECT_GE(crm->cbPeriod->findText("Текущий квартал"), 0);
    // Without a maximum the working period is the cap; a stored choice wins over the default.
    host.intValues.remove("MaxWorkPeriodLenght");
    TConfigItem node("fix");
    node.ItemByName("cbPeriod.ItemIndex")->SetAsInteger(1);
    auto* stored = create(0, "TPeriodFix_EF");
    stored->RestoreLayout(&node);
    stored->Init();
    EXPECT_EQ(stored->MaxPeriodLength(), 7);
    EXPECT_EQ(stored->GetPeriodType(), ptToday);
    choose(stored->cbPeriod, "Рабочий период (7 дн.)");
    EXPECT_EQ(stored->GetBeginDate(), QDate(2024, 3, 9));
    EXPECT_EQ(host.warnings().size(), 1);
}

// Host forms run Init first and RestoreLayout after it: the saved choice comes back all the same,
// and is saved again as it was.
TEST_F(PeriodFrames, ASavedChoiceComesBackInTheHostsOrder) {
    host.today = QDate(2024, 8, 20);
    host.intValues["WorkPeriodLenght"] = 7;
    struct Case {
        const char* cls;
        const char* chosen;
        QDate first, last;
    };
    for (const Case& c : {Case{"TPeriodExt_EF", "Текущий месяц", {2024, 8, 1}, {2024, 8, 31}},
                          Case{"TPeriodFix_EF", "Неделя", {2024, 8, 19}, {2024, 8, 25}},
                          Case{"TPeriodExt_EF", "<Заданный>", {2023, 2, 1}, {2023, 2, 10}}}) {
        TConfigItem node("layout");
        {
            TPeriodExt_EF* before = create(0, c.cls);
            before->Init();
            choose(before->cbPeriod, c.chosen);
            if (QString(c.chosen) == "<Заданный>") {
                before->deFirstDate->setDate(c.first);
                before->deLastDate->setDate(c.last);
            }
            before->SaveLayout(&node);
        }
        TPeriodExt_EF* after = create(0, c.cls);
        after->Init();
        after->RestoreLayout(&node);
        EXPECT_EQ(after->cbPeriod->currentText(), c.chosen) << c.cls;
        EXPECT_EQ(after->GetBeginDate(), c.first) << c.cls << " " << c.chosen;
        EXPECT_EQ(after->GetEndDate(), c.last) << c.cls << " " << c.chosen;
        TConfigItem again("again");
        after->SaveLayout(&again);
        EXPECT_EQ(again.ItemByName("cbPeriod.ItemIndex")->GetAsInteger(),
                  node.ItemByName("cbPeriod.ItemIndex")->GetAsInteger())
            << c.cls;
    }
}

TEST_F(PeriodFrames, SetPeriodFilterAndPeriodWithOptionalBounds) {
    host.today = QDate(2024, 5, 5);
    auto* sp = make<TSetPeriod_EF>("TSetPeriod_EF", &top);
    sp->Init();
    EXPECT_EQ(items(sp->cbPeriod), QStringList({"<Заданный>", "Месяц", "Квартал", "Год", "Предыдущий месяц",
                                                "Предыдущий квартал", "Предыдущий год"}));
    EXPECT_FALSE(sp->cbSet->isChecked());
    choose(sp->cbPeriod, "Квартал");
    EXPECT_TRUE(sp->cbSet->isChecked());
    EXPECT_EQ(sp->GetFromDate(), QDate(2024, 4, 1));
    EXPECT_EQ(sp->GetToDate(), QDate(2024, 6, 30));
    sp->deToDate->userSetValue(at(2024, 5, 31));
    EXPECT_EQ(sp->GetPeriodType(), ptCustom);
    choose(sp->cbPeriod, "Предыдущий год");
    sp->cbSet->setChecked(false);
    TConfigItem node("sp");
    sp->SaveLayout(&node);
    host.today = QDate(2026, 1, 10);
    auto* again = make<TSetPeriod_EF>("TSetPeriod_EF", &top);
    again->RestoreLayout(&node);
    EXPECT_EQ(again->GetFromDate(), QDate(2025, 1, 1)); // recomputed for the day it is restored
    EXPECT_FALSE(again->cbSet->isChecked());
    again->SetPeriodType(ptToday); // not in this list
    EXPECT_EQ(again->GetPeriodType(), ptCustom);

    auto* p = make<TPeriod_EF>("TPeriod_EF", &top);
    p->Init();
    EXPECT_EQ(p->GetBeginDate(), QDate(2026, 1, 1)); // a new frame: the month up to today
    EXPECT_EQ(p->GetEndDate(), QDate(2026, 1, 10));
    p->chbFirstDate->setChecked(false);
    EXPECT_FALSE(p->GetBeginDate().isValid());
    p->deFirstDate->userSetValue(at(2026, 1, 20)); // ticks its bound
    EXPECT_TRUE(p->chbFirstDate->isChecked());
    EXPECT_EQ(p->GetEndDate(), QDate(2026, 1, 20)); // kept in order
    TConfigItem pn("p");
    p->chbLastDate->setChecked(false);
    p->SaveLayout(&pn);
    auto* q = make<TPeriod_EF>("TPeriod_EF", &top);
    q->RestoreLayout(&pn);
    EXPECT_EQ(q->GetBeginDate(), QDate(2026, 1, 20));
    EXPECT_FALSE(q->GetEndDate().isValid());
    TPeriod period;
    q->Save(&period);
    EXPECT_FALSE(period.LastDate().isValid());
}
