#include "frames/core/HostForms.h"
#include "frames/edit/CE_Curs.h"
#include "frames/edit/EF_CalcEdit.h"
#include "frames/edit/EF_CalcEdt.h"
#include "frames/edit/EF_SetDouble.h"
#include "platform/db/DataSet.h"
#include "platform/db/Field.h"
#include "tests/edit/EditTestUtil.h"
#include "tests/support/DbFixture.h"
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>

using namespace frames;
using namespace frames::edit_test;

namespace {

const QString nbsp = QString(QChar(0x00A0));

// Types into a line edit as a user: focus, select everything, type.
void retype(QLineEdit* e, const QString& text) {
    e->setFocus();
    e->selectAll();
    QTest::keyClick(e, Qt::Key_Backspace);
    QTest::keyClicks(e, text);
}

} // namespace

TEST(NumberText, ReadsWhatItShowsAndFormatsTheRussianWay) {
    double v = 0;
    EXPECT_TRUE(ui::strToFloat("1" + nbsp + "234,5", v));
    EXPECT_DOUBLE_EQ(v, 1234.5);
    for (const char* bad : {"", " ", "abc", "1,2,3", "1.2,3", "inf", "nan", "0x10", "--1", "12a"})
        EXPECT_FALSE(ui::strToFloat(bad, v)) << bad;

    EXPECT_EQ(ui::formatFloat(",0.00", -1234567.891), "-1" + nbsp + "234" + nbsp + "567,89");
    EXPECT_EQ(ui::formatFloat(",0.###", 1234.5), "1" + nbsp + "234,5");
    EXPECT_EQ(ui::formatFloat(",0.##", 0.004), "0");
    EXPECT_EQ(ui::formatFloat("0.00 'руб.';(0.00);'нет'", -3), "(3,00)");
    EXPECT_EQ(ui::formatFloat("0.00 'руб.';(0.00);'нет'", 0.001), "нет");
    EXPECT_EQ(ui::formatFloat("0.00 'руб.';(0.00);'нет'", 7), "7,00 руб.");
    // Whatever a format shows reads back as the value it shows.
    for (double x : {1234567.89, -0.5, 999999999.0}) {
        ASSERT_TRUE(ui::strToFloat(ui::formatFloat(",0.00", x), v));
        EXPECT_DOUBLE_EQ(v, x);
    }
    // A number being typed: a leading (or trailing) separator is still a number.
    EXPECT_TRUE(ui::strToFloat(",5", v));
    EXPECT_DOUBLE_EQ(v, 0.5);

    // The machine form (SQL): a point, no exponent, no binary noise.
    EXPECT_EQ(ui::floatToStr(1e-05), "0.00001");
    EXPECT_EQ(ui::floatToStr(999999999), "999999999");
    EXPECT_EQ(ui::floatToStr(0.1 + 0.2), "0.3");
    EXPECT_EQ(ui::editTextOf(-2.5), "-2,5");
}

TEST(CalcEdit, CalculatorKeysEqualsWritesAndEscapeStaysInThePopup) {
    QDialog dlg;
    int rejected = 0;
    QObject::connect(&dlg, &QDialog::rejected, [&] { ++rejected; });
    auto* lay = new QVBoxLayout(&dlg);
    auto* f = make<TCalcEdt_Frame>("TCalcEdt_Frame", &dlg);
    lay->addWidget(f);
    activate(&dlg);
    ui::CalcEdit* e = f->CalcEdit;

    e->button()->click();
    ASSERT_TRUE(e->isDroppedDown());
    ui::CalcPopup* p = e->popup();
    QTest::keyClicks(p, "12+3*2");
    EXPECT_EQ(p->displayText(), "2");
    QTest::keyClick(p, Qt::Key_Backspace); // "2" -> "0"
    QTest::keyClick(p, Qt::Key_4);
    QTest::keyClick(p, Qt::Key_Return); // (12 + 3) * 4
    EXPECT_FALSE(e->isDroppedDown());
    EXPECT_DOUBLE_EQ(f->GetValue(), 60);
    EXPECT_EQ(e->editText(), "60");

    // Buttons work as keys do; division by zero shows an error and writes nothing ("=" still
    // closes the calculator).
    e->dropDown();
    EXPECT_EQ(p->displayText(), "60");
    p->buttonOf(ui::CalcButton::Divide)->click();
    p->buttonOf(ui::CalcButton::Digit0)->click();
    p->buttonOf(ui::CalcButton::Equals)->click();
    EXPECT_TRUE(p->hasError());
    EXPECT_FALSE(e->isDroppedDown());
    EXPECT_DOUBLE_EQ(f->GetValue(), 60);
    e->dropDown();
    EXPECT_FALSE(p->hasError());

    // Escape closes the calculator and goes no further: the dialog stays open.
    QTest::keyClick(p, Qt::Key_Escape);
    EXPECT_FALSE(e->isDroppedDown());
    EXPECT_TRUE(dlg.isVisible());
    EXPECT_EQ(rejected, 0);
    EXPECT_DOUBLE_EQ(f->GetValue(), 60);

    // Escape in the edit first drops the typing; only a second one reaches the dialog.
    e->lineEdit()->setFocus();
    QTest::keyClicks(e->lineEdit(), "5");
    EXPECT_EQ(e->editText(), "605");
    QTest::keyClick(e->lineEdit(), Qt::Key_Escape);
    EXPECT_EQ(e->editText(), "60");
    EXPECT_EQ(rejected, 0);
    QTest::keyClick(e->lineEdit(), Qt::Key_Escape);
    EXPECT_EQ(rejected, 1);

    // A read-only editor has no calculator.
    f->SetReadOnly(true);
    e->dropDown();
    EXPECT_FALSE(e->isDroppedDown());

    // A bare edit without QuickClose keeps the calculator open after "=".
    ui::CalcEdit bare;
    bare.dropDown();
    QTest::keyClicks(bare.popup(), "2*21=");
    EXPECT_TRUE(bare.isDroppedDown());
    EXPECT_DOUBLE_EQ(bare.value(), 42);
    bare.closeUp();
}

TEST(CalcEdtFrame, RangeBoundsMarkersAndConversions) {
    QWidget top;
    auto* f = make<TCalcEdt_Frame>("TCalcEdt_Frame", &top);
    EXPECT_TRUE(f->IsEmpty()); // 0 counts as no value

    // The magnitude limit.
    f->SetText("2000000000");
    f->CheckMinMax();
    EXPECT_DOUBLE_EQ(f->GetValue(), 999999999);
    EXPECT_TRUE(f->CheckSilent("999999999"));
    EXPECT_FALSE(f->CheckSilent("1000000000"));
    EXPECT_FALSE(f->CheckSilent("12a"));

    // Typed text counts before it is taken; text that is not a number does not.
    f->CalcEdit->setEditValue(7.0);
    f->CalcEdit->lineEdit()->setText("8");
    emit f->CalcEdit->lineEdit()->textEdited("8");
    EXPECT_DOUBLE_EQ(f->CalcEdit->value(), 7);
    EXPECT_DOUBLE_EQ(f->GetValue(), 8);
    f->CalcEdit->lineEdit()->setText("8x");
    emit f->CalcEdit->lineEdit()->textEdited("8x");
    EXPECT_DOUBLE_EQ(f->GetValue(), 8);
    f->CalcEdit->commit(); // the unreadable text is put back
    EXPECT_EQ(f->EditText(), "8");

    // Bounds: marker 0.0001 resets to 0 on both sides, other bounds clamp, equal stays.
    f->SetMinValue(TCalcEdt_Frame::Min_c());
    for (auto [in, out] : {std::pair{-5.0, 0.0}, {0.00001, 0.0}, {3.0, 3.0}, {0.0001, 0.0001}}) {
        f->SetAsFloat(in);
        f->CheckMinMax();
        EXPECT_DOUBLE_EQ(f->GetValue(), out) << in;
    }
    f->SetMinValue(0);
    f->SetMaxValue(TCalcEdt_Frame::Max_c());
    f->SetAsFloat(5); // edit-value-changed runs the bounds at once
    EXPECT_DOUBLE_EQ(f->GetValue(), 0);
    f->SetMaxValue(100);
    f->SetAsFloat(150);
    EXPECT_DOUBLE_EQ(f->GetValue(), 100);
    f->CalcEdit->setEditText("");
    f->CheckMinMax(); // an empty text is 0
    EXPECT_DOUBLE_EQ(f->GetValue(), 0);
    EXPECT_EQ(f->EditText(), "0");

    f->SetMaxValue(0);
    f->SetMinValue(5);
    f->Clear(); // to the lower bound, not to 0
    EXPECT_DOUBLE_EQ(f->GetValue(), 5);
    EXPECT_FALSE(f->IsEmpty());

    // The two errors that reach the caller.
    EXPECT_THROW(f->SetEditText("abc"), std::invalid_argument);
    EXPECT_DOUBLE_EQ(f->GetValue(), 5);
    f->SetMinValue(0);
    f->SetAsFloat(-41.6);
    EXPECT_EQ(f->AsInteger(), -42);
    // The free-standing editor never holds more than the limit; the data-bound one can.
    auto* wide = make<TCalcEdit_Frame>("TCalcEdit_Frame", &top);
    wide->SetAsFloat(3e9);
    EXPECT_THROW(wide->AsInteger(), std::out_of_range);
}

namespace {

// Distinct display formats per kind, so that the choice by Tag shows.
class FormatHost : public test::TestHost {
public:
    using TestHost::TestHost;
    QString PrecisionCurFormat() const override { return ",0.0000"; }
    QString PrecisionRubFormat() const override { return ",0.00"; }
    QString PrecisionQuantityFormat() const override { return ",0.###"; }
};

// A list form over goods cards with an edit dialog owned by it, and a second window to move the
// focus to.
class NumericOnEditDialog : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        host.reset();
        host = std::make_unique<FormatHost>(databasePath());
        list = std::make_unique<TfmLayer1_FIB>();
        cards = new db::DataSet(host->RvDatabase(), host->pfReadTransaction(), list.get());
        cards->setSelectSql("select ID, NAME, PRICE, CARDKIND, CUR_TYPE, "
                            "cast(PRICE / 100 as double precision) as CURS from CARD order by ID");
        cards->open();
        cards->fieldByName("PRICE")->tag = 1;
        list->SetCurrentSource(new db::DataSource(cards, list.get()));
        dialog = new TfmAbsEditDlg(list.get());
        auto* lay = new QVBoxLayout(dialog);
        other = new QLineEdit(dialog);
        lay->addWidget(other);
    }
    void TearDown() override {
        list.reset();
        DbTest::TearDown();
    }
    template <typename T> T* frame(const QString& cls, const QString& field = {}) {
        T* f = make<T>(cls, dialog);
        dialog->layout()->addWidget(f);
        if (!field.isEmpty()) f->DBCalcEdit->setDataField(field);
        return f;
    }
    void gotoCard(const QString& articul) {
        ASSERT_TRUE(cards->locate("ID", scalar("select ID from CARD where ARTICUL = '" + articul + "'")));
    }
    // Leaves the editor: the focus goes to another control of the dialog.
    void leave() { other->setFocus(); }

    std::unique_ptr<TfmLayer1_FIB> list;
    db::DataSet* cards = nullptr;
    TfmAbsEditDlg* dialog = nullptr;
    QLineEdit* other = nullptr;
};

} // namespace

TEST_F(NumericOnEditDialog, InitBindsAndTakesTheFormatByTheFieldsTag) {
    gotoCard("200-0007"); // 24500.00
    cards->fieldByName("CURS")->tag = 2;
    auto* rub = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "PRICE");
    auto* cur = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "CURS");
    auto* qty = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "ID");
    for (auto* f : {rub, cur, qty}) f->Init();
    EXPECT_EQ(qty->DisplayFormat(), ",0.###");
    EXPECT_EQ(rub->DBCalcEdit->lineEdit()->text(), "24" + nbsp + "500,00");
    EXPECT_EQ(cur->DBCalcEdit->lineEdit()->text(), "245,0000");
    EXPECT_EQ(cards->state(), db::DataSetState::Browse);

    // A new record: the empty editor shows 0, counts as empty, and the record holds that 0.
    cards->append();
    auto* fresh = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "PRICE");
    fresh->Init();
    EXPECT_EQ(fresh->EditText(), "0");
    EXPECT_TRUE(fresh->IsEmpty());
    EXPECT_FALSE(fresh->IsNull());
    EXPECT_EQ(cards->fieldByName("PRICE")->asDouble(), 0.0);
    cards->cancel();

    // Off the dialog chain nothing is bound and the format stays as it was.
    QWidget plain;
    auto* loose = make<TCalcEdit_Frame>("TCalcEdit_Frame", &plain);
    loose->Init();
    EXPECT_EQ(loose->DataSource(), nullptr);
    EXPECT_EQ(loose->DisplayFormat(), "");
}

TEST_F(NumericOnEditDialog, TypingRevertsWhatTheFieldCannotTakeAndBoundsApplyOnExit) {
    gotoCard("100-0001");
    auto* price = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "PRICE");
    auto* kind = frame<TCalcEdit_Frame>("TCalcEdit_Frame", "CARDKIND");
    price->Init();
    kind->Init();
    activate(dialog);
    QLineEdit* pe = price->DBCalcEdit->lineEdit();
    QLineEdit* ke = kind->DBCalcEdit->lineEdit();

    retype(pe, "12a,5");
    EXPECT_EQ(price->EditText(), "12,5");
    retype(ke, "-3,5");
    EXPECT_EQ(kind->EditText(), "-35"); // an integer field takes no comma
    retype(ke, "4");
    leave();
    EXPECT_EQ(cards->state(), db::DataSetState::Edit);
    EXPECT_DOUBLE_EQ(cards->fieldByName("PRICE")->asDouble(), 12.5);
    EXPECT_EQ(cards->fieldByName("CARDKIND")->asInteger(), 4);
    EXPECT_EQ(pe->text(), "12,50"); // shown by the format of amounts in roubles (Tag 1)

    // Upper bound: above it clamps, equal stays.
    price->SetMaxValue(100);
    retype(pe, "150");
    leave();
    EXPECT_DOUBLE_EQ(price->GetValue(), 100);
    EXPECT_DOUBLE_EQ(cards->fieldByName("PRICE")->asDouble(), 100);

    // Marker lower bound: below it resets to 0.
    price->SetMaxValue(0);
    price->SetMinValue(TCalcEdit_Frame::Min_c());
    for (auto [typed, out] : {std::pair{"-5", 0.0}, {"0,000001", 0.0}, {"3", 3.0}}) {
        retype(pe, typed);
        leave();
        EXPECT_DOUBLE_EQ(price->GetValue(), out) << typed;
        EXPECT_DOUBLE_EQ(cards->fieldByName("PRICE")->asDouble(), out) << typed;
    }
    // An emptied editor becomes 0, then the lower bound.
    price->SetMaxValue(0);
    price->SetMinValue(5);
    retype(pe, "");
    EXPECT_DOUBLE_EQ(price->GetValue(), 5);
    price->SetAsFloat(9);
    price->Clear();
    EXPECT_DOUBLE_EQ(cards->fieldByName("PRICE")->asDouble(), 5);

    // Read-only: typing changes nothing.
    price->SetReadOnly(true);
    pe->setFocus();
    QTest::keyClicks(pe, "7");
    EXPECT_EQ(price->EditText(), "5");
    cards->cancel();
}

TEST_F(NumericOnEditDialog, RateFramePicksFromHistoryCutsLongTextAndIsNeverClamped) {
    gotoCard("100-0011"); // euro, 899.00
    auto* rate = frame<TCursFrame_CE>("TCursFrame_CE");
    rate->Init();
    EXPECT_FALSE(rate->SelCurHistoryAction->isEnabled()); // no currency field named

    rate->CurTypeField = "CUR_TYPE";
    rate->SelCurHistoryActionUpdate();
    EXPECT_FALSE(rate->SelCurHistoryAction->isEnabled()); // browsing
    cards->edit();
    EXPECT_TRUE(rate->SelCurHistoryAction->isEnabled());
    rate->SetReadOnly(true);
    EXPECT_FALSE(rate->SelCurHistoryAction->isEnabled());
    rate->SetReadOnly(false);
    cards->fieldByName("CUR_TYPE")->clear();
    EXPECT_FALSE(rate->SelCurHistoryAction->isEnabled());
    cards->cancel();

    // A confirmed choice writes currency and rate into the record (put into edit state).
    rate->CursDate = at(2024, 3, 15);
    QString sentType, sentDate;
    host->scriptRun([&](const QString&, TRunParams& p) {
        sentType = p.Params->Find("CurType")->Value.toString();
        sentDate = p.Params->Find("Date")->Value.toString();
        p.Params->ByName("CurType").Value = "2";
        p.Params->ByName("Curs").Value = "92,4512";
        return 1;
    });
    cards->edit();
    rate->SelCurHistoryAction->trigger();
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, "CurHistoryForm");
    EXPECT_EQ(sentType, "3");
    EXPECT_EQ(sentDate, "15.03.2024");
    EXPECT_EQ(cards->fieldByName("CUR_TYPE")->asInteger(), 2);
    EXPECT_DOUBLE_EQ(cards->fieldByName("CURS")->asDouble(), 92.4512);

    // Cancelled: nothing changes, and no date is sent when none is set.
    rate->CursDate = QDateTime();
    host->scriptRunResult(2);
    rate->SelCurHistoryAction->trigger();
    ASSERT_EQ(host->runs.size(), 2u);
    EXPECT_EQ(host->runs[1].params.Params->Find("Date"), nullptr);
    EXPECT_DOUBLE_EQ(cards->fieldByName("CURS")->asDouble(), 92.4512);

    // Typing: more than 9 characters are cut to 9; exactly 9 stay; no bounds on exit.
    activate(dialog);
    QLineEdit* e = rate->DBCalcEdit->lineEdit();
    retype(e, "1,23456789");
    EXPECT_EQ(rate->EditText(), "1,2345678");
    retype(e, "123456789");
    EXPECT_EQ(rate->EditText(), "123456789");
    rate->SetMaxValue(100);
    retype(e, "150");
    leave();
    EXPECT_DOUBLE_EQ(cards->fieldByName("CURS")->asDouble(), 150);
    cards->cancel();
}

TEST_F(NumericOnEditDialog, AmountFilterRendersConditionsThatTheDatabaseRuns) {
    QWidget panel;
    auto* f = make<TSetDouble_EF>("TSetDouble_EF", &panel);
    f->Init();
    EXPECT_EQ(f->SQL("PRICE", true), "");
    EXPECT_FALSE(f->ZeroInRange());

    auto count = [&](const QString& cond) {
        return scalar("select count(*) from CARD where " + cond).toInt();
    };
    const int priced = count("PRICE is not null"), unpriced = count("PRICE is null");
    const int cheap = count("PRICE <= 100"), dear = count("PRICE >= 1000");

    // Typing an amount switches the filter on.
    activate(&panel);
    retype(f->ceFromSumma->CalcEdit->lineEdit(), "1000");
    EXPECT_TRUE(f->cbSet->isChecked());
    retype(f->ceToSumma->CalcEdit->lineEdit(), "100");
    EXPECT_EQ(f->SQL("PRICE"), "(PRICE>=1000 or PRICE<=100)");
    EXPECT_EQ(count(f->SQL("PRICE")), cheap + dear);
    EXPECT_TRUE(f->ZeroInRange());

    f->ceFromSumma->SetValue(-1);
    f->ceToSumma->SetValue(100.5);
    EXPECT_EQ(f->SQL("PRICE", true), "(PRICE between -1 and 100.5 or PRICE is null)");
    EXPECT_EQ(count(f->SQL("PRICE", true)), cheap + unpriced);
    // An equal pair is "between" in SQL, but a wrapped range for ZeroInRange.
    f->ceFromSumma->SetValue(1);
    f->ceToSumma->SetValue(1);
    EXPECT_TRUE(f->ZeroInRange());
    EXPECT_EQ(f->SQL("PRICE", true), "(PRICE between 1 and 1 or PRICE is null)");
    f->ceFromSumma->SetValue(-3);
    f->ceToSumma->SetValue(-1);
    EXPECT_FALSE(f->ZeroInRange());
    EXPECT_EQ(count(f->SQL("PRICE", true)), 0);

    // Leaving an editor applies its limit.
    retype(f->ceToSumma->CalcEdit->lineEdit(), "2000000000");
    f->ceFromSumma->CalcEdit->lineEdit()->setFocus();
    EXPECT_DOUBLE_EQ(f->ceToSumma->GetValue(), 999999999);
    EXPECT_EQ(count(f->SQL("PRICE")), priced);

    // Layout round trip.
    TConfigItem node("SetDouble");
    f->SaveLayout(&node);
    auto* again = make<TSetDouble_EF>("TSetDouble_EF", &panel);
    again->RestoreLayout(&node);
    EXPECT_TRUE(again->cbSet->isChecked());
    EXPECT_DOUBLE_EQ(again->ceFromSumma->GetValue(), -3);
    EXPECT_DOUBLE_EQ(again->ceToSumma->GetValue(), 999999999);

    f->Clear();
    EXPECT_FALSE(f->cbSet->isChecked());
    EXPECT_DOUBLE_EQ(f->ceToSumma->GetValue(), 0);
}
