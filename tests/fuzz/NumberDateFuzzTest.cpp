// Fuzzing the number and date readers: text to number in the calculator edit, typed dates in the
// date edits and CheckDate.
#include "frames/core/TyapiDates.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DateEdit.h"
#include "tests/fuzz/Fuzz.h"
#include "tests/support/TestHost.h"
#include <QLineEdit>
#include <QTest>
#include <cmath>
#include <cstdlib>

using namespace frames::ui;

namespace frames::test {
namespace {

// A double with a random number of significant digits and a magnitude between 1e-12 and 1e14.
double randomNumber(Rng& rng) {
    switch (rng.below(10)) {
    case 0:
        return rng.pick(std::vector<double>{0.0, -0.0, 1e-300, -5e-324, 0.1 + 0.2, 999999999999999.0, -1e14,
                                            123456789.123456, 0.005, -0.005});
    case 1:
        return double(rng.between(-100000, 100000));
    default: {
        const double mantissa = (rng.unit() * 2 - 1) * std::pow(10.0, rng.between(0, 6));
        return std::round(mantissa * 1e6) / 1e6 * std::pow(10.0, rng.between(-12, 8));
    }
    }
}

// How close a number read back from text of 15 significant digits must be to the original.
bool near15(double read, double original) {
    return std::fabs(read - original) <= std::max(1e-14 * std::fabs(original), 1e-30);
}

TEST(FuzzNumbers, TextOfEveryNumberReadsBackAsThatNumber) {
    Rng rng(1234);
    const int inputs = 20000;
    for (int n = 0; n < inputs; ++n) {
        const double v = randomNumber(rng);
        double back = 0;
        const QString machine = floatToStr(v), edit = editTextOf(v);
        ASSERT_TRUE(strToFloat(machine, back)) << machine.toStdString();
        ASSERT_TRUE(near15(back, v)) << v << " -> " << machine.toStdString() << " -> " << back;
        ASSERT_FALSE(machine.contains('e') || machine.contains('E')) << machine.toStdString();
        ASSERT_TRUE(strToFloat(edit, back)) << edit.toStdString();
        ASSERT_TRUE(near15(back, v)) << v << " -> " << edit.toStdString() << " -> " << back;
        if (std::fabs(v) < 1e12) {
            // The grouped display text reads back as the number rounded to two decimals.
            const QString shownText = formatFloat(",0.00", v);
            ASSERT_TRUE(strToFloat(shownText, back)) << shownText.toStdString();
            ASSERT_EQ(back, QString::number(v, 'f', 2).toDouble()) << v << " -> " << shownText.toStdString();
        }
    }
    RecordProperty("inputs", inputs);
}

// Any text: a text taken as a number gives a finite value, the same as the C library reads from
// its digits, and a text with a letter other than an exponent is never a number.
TEST(FuzzNumbers, AnyTextIsANumberOnlyWhenItsDigitsSaySo) {
    Rng rng(99);
    const QString alphabet =
        QString::fromUtf8("0123456789,.-+eE  \u00A0\u202F\t") + QString::fromUtf8("xЖ٣") + QChar(0);
    const std::vector<QString> seeds = {"1 234,50", "-0,5", "1e3", "12,", ",5", "1.5e-3", "-1 000 000"};
    const int inputs = 30000;
    int accepted = 0;
    for (int n = 0; n < inputs; ++n) {
        const QString text =
            rng.chance(50) ? rng.text(alphabet, 0, 14) : mutate(rng, rng.pick(seeds), alphabet);
        double v = 0;
        if (!strToFloat(text, v)) continue;
        ++accepted;
        ASSERT_TRUE(std::isfinite(v)) << shown(text);
        QString digits;
        for (QChar c : text) {
            ASSERT_TRUE(c.isSpace() || c == QChar(0x00A0) || c == QChar(0x202F) ||
                        QString("0123456789,.-+eE").contains(c))
                << "accepted: " << shown(text);
            if (!c.isSpace() && c != QChar(0x00A0) && c != QChar(0x202F)) digits += c == ',' ? QChar('.') : c;
        }
        const double c = std::strtod(digits.toLatin1().constData(), nullptr);
        ASSERT_EQ(v, c) << shown(text);
        double again = 0;
        ASSERT_TRUE(strToFloat(floatToStr(v), again));
        ASSERT_TRUE(near15(again, v)) << shown(text);
    }
    RecordProperty("inputs", inputs);
    RecordProperty("accepted", accepted);
}

// Types a text key by key; letters outside ASCII go as key events that carry only their text.
void typeText(QWidget* w, const QString& text) {
    for (QChar c : text) {
        if (c.unicode() < 0x80)
            QTest::keyClick(w, char(c.unicode()));
        else
            QTest::sendKeyEvent(QTest::Click, w, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }
}

// The calculator edit as a user types into it: after Enter the value is the number typed, null
// for an erased text, and otherwise the old value with its text put back.
TEST(FuzzNumbers, TypedTextBecomesTheValueOrIsPutBack) {
    Rng rng(555);
    const QString alphabet = QString::fromUtf8("0123456789,.-+e xЖ");
    CalcEdit edit;
    edit.show();
    const int inputs = 600;
    for (int n = 0; n < inputs; ++n) {
        edit.setEditValue(7.25);
        edit.lineEdit()->setFocus();
        edit.lineEdit()->selectAll();
        const QString typed = rng.text(alphabet, 0, 10);
        QTest::keyClick(edit.lineEdit(), Qt::Key_Delete);
        typeText(edit.lineEdit(), typed);
        QTest::keyClick(edit.lineEdit(), Qt::Key_Return);
        double v = 0;
        if (typed.trimmed().isEmpty())
            ASSERT_TRUE(edit.isNull()) << shown(typed);
        else if (strToFloat(typed, v))
            ASSERT_EQ(edit.value(), v) << shown(typed);
        else {
            ASSERT_EQ(edit.value(), 7.25) << shown(typed);
            ASSERT_EQ(edit.editText(), editTextOf(7.25)) << shown(typed);
        }
    }
    RecordProperty("inputs", inputs);
}

// ---- dates

TEST(FuzzDates, EveryWrittenFormOfADateReadsBackAsThatDate) {
    Rng rng(31);
    TestHost host; // the clock's year for "d.m"
    const int inputs = 20000;
    for (int n = 0; n < inputs; ++n) {
        const QDate d = QDate(1000, 1, 1).addDays(rng.below(3287181)); // up to 31.12.9999
        const QTime t(rng.below(24), rng.below(60), rng.chance(50) ? rng.below(60) : 0);
        QDate expected = d;
        QString text;
        switch (rng.below(7)) {
        case 0:
            text = d.toString("dd.MM.yyyy");
            break;
        case 1:
            text = d.toString(rng.pick(std::vector<QString>{"d.M.yyyy", "d/M/yyyy", "d-M-yyyy"}));
            break;
        case 2:
            text = d.toString("yyyy-MM-dd");
            break;
        case 3:
            text = d.toString("ddMMyyyy");
            break;
        case 4:
        case 5: { // two-digit years: 50..99 are the 1900s, 00..49 the 2000s
            text = d.toString(n % 2 ? "dd.MM.yy" : "ddMMyy");
            const int yy = d.year() % 100;
            expected = QDate(yy < 50 ? 2000 + yy : 1900 + yy, d.month(), d.day());
            break;
        }
        default:
            text = d.toString("d.M");
            expected = QDate(clockToday().year(), d.month(), d.day());
        }
        const bool withTime = rng.chance(50);
        if (withTime) text += ' ' + t.toString(t.second() ? "h:mm:ss" : "h:mm");
        if (rng.chance(20)) text = "  " + text + " ";
        const QDateTime got = parseDateTime(text, true);
        if (!expected.isValid()) { // 29.02 of a year that has none after the century mapping
            ASSERT_TRUE(got.isNull()) << shown(text);
            continue;
        }
        ASSERT_EQ(got.date(), expected) << shown(text);
        ASSERT_EQ(got.time(), withTime ? t : QTime(0, 0)) << shown(text);
        ASSERT_TRUE(CheckDateSilent(text)) << shown(text);
        ASSERT_EQ(parseDateTime(text, false).time(), QTime(0, 0)) << shown(text);
    }
    EXPECT_TRUE(host.messages.empty());
    RecordProperty("inputs", inputs);
}

// Day and month numbers of any size: a date only when the calendar has that day.
TEST(FuzzDates, DayAndMonthNumbersAreCheckedAgainstTheCalendar) {
    Rng rng(32);
    TestHost host;
    const int inputs = 20000;
    for (int n = 0; n < inputs; ++n) {
        const int d = rng.below(40), m = rng.below(15), y = rng.between(1, 9999);
        const QString text = QStringLiteral("%1.%2.%3").arg(d).arg(m).arg(y, 4, 10, QChar('0'));
        const bool valid = QDate(y, m, d).isValid();
        ASSERT_EQ(CheckDateSilent(text), valid) << shown(text);
        const size_t before = host.messages.size();
        ASSERT_EQ(CheckDate(text), valid) << shown(text);
        // CheckDate tells the user exactly once about a text that is no date.
        ASSERT_EQ(host.messages.size(), before + (valid ? 0 : 1)) << shown(text);
    }
    RecordProperty("inputs", inputs);
}

// Any text: it ends, and what it gives is a real date whose own text reads back the same.
TEST(FuzzDates, AnyTextIsADateOnlyWhenItsTextReadsBack) {
    Rng rng(33);
    TestHost host;
    const QString alphabet = QString::fromUtf8("0123456789./-: T\t٣x") + QChar(0);
    const std::vector<QString> seeds = {"15.03.2024",     "1.2.24",     "2024-03-15",      "150324",
                                        "15032024 10:30", "29.02.2023", "15.03.2024 25:00"};
    const int inputs = 30000;
    for (int n = 0; n < inputs; ++n) {
        const QString text =
            rng.chance(40) ? rng.text(alphabet, 0, 16) : mutate(rng, rng.pick(seeds), alphabet);
        const QDateTime got = parseDateTime(text, true);
        ASSERT_EQ(CheckDateSilent(text), !got.isNull()) << shown(text);
        if (got.isNull()) continue;
        ASSERT_TRUE(got.date().isValid()) << shown(text);
        ASSERT_TRUE(got.time().isValid()) << shown(text);
        ASSERT_GE(got.date().year(), 1) << shown(text);
        ASSERT_LE(got.date().year(), 9999) << shown(text);
        const QString again = got.toString("dd.MM.yyyy hh:mm:ss");
        ASSERT_EQ(parseDateTime(again, true), got) << shown(text) << " -> " << again.toStdString();
    }
    RecordProperty("inputs", inputs);
}

} // namespace
} // namespace frames::test
