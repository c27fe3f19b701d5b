// The workbench's forms for the value editors: the payment documents with their edit dialog, the
// filter panel and the rate history form, against the demo database.
#include "frames/core/Registry.h"
#include "frames/core/SetFilter_EF.h"
#include "frames/edit/CE_Curs.h"
#include "frames/edit/EF_CalcEdit.h"
#include "frames/edit/EF_CheckBoxEdit.h"
#include "frames/edit/EF_DBComboBox.h"
#include "frames/edit/EF_DBDateEdit.h"
#include "frames/edit/EF_DBDateTimeEdit.h"
#include "frames/edit/EF_DBEdit.h"
#include "frames/edit/EF_DBTimeEdit.h"
#include "frames/edit/EF_Memo.h"
#include "frames/edit/EF_Month.h"
#include "frames/edit/EF_Partner.h"
#include "frames/edit/EF_Period.h"
#include "frames/edit/EF_PeriodExt.h"
#include "frames/edit/EF_PriceType.h"
#include "frames/edit/EF_RichEdit.h"
#include "frames/edit/EF_SetDate.h"
#include "frames/edit/EF_SetDouble.h"
#include "frames/edit/EF_SetPeriod.h"
#include "frames/lookup/LF_Abs.h"
#include "frames/media/EF_ReportChart.h"
#include "host/CurHistoryForm.h"
#include "host/DocumentForms.h"
#include "host/FilterPanel.h"
#include "host/HostImpl.h"
#include "host/MainWindow.h"
#include "platform/db/DataSet.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DBEdit.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DBTextEdits.h"
#include "platform/widgets/DateEdit.h"
#include "platform/widgets/LookupCombo.h"
#include "platform/widgets/MonthEdit.h"
#include "platform/widgets/TimeEdit.h"
#include "tests/host/WorkbenchFixture.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <memory>

namespace frames::test {
namespace {

using workbench::CurHistoryForm;
using workbench::FilterPanelForm;
using workbench::FrameEditDialog;
using workbench::RecordListForm;

class EditorForms : public WorkbenchHostTest<> {
protected:
    // The document of that number made current in the list.
    std::unique_ptr<RecordListForm> documents(const QString& number) {
        std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
        EXPECT_TRUE(list->records()->locate("DOC_NUMBER", number)) << number.toStdString();
        return list;
    }
    template <typename T> T* frame(FrameEditDialog& dlg, const QString& name) {
        auto* f = qobject_cast<T*>(dlg.frame(name));
        EXPECT_NE(f, nullptr) << name.toStdString();
        return f;
    }
    // The filter frame of that class on the panel; the test stops when there is none.
    template <typename T> T* filter(FilterPanelForm& panel, const QString& name) {
        auto* f = qobject_cast<T*>(panel.frame(name));
        if (!f) throw std::runtime_error("no filter " + name.toStdString());
        return f;
    }
    QVariant column(int id, const QString& name) const {
        return scalar("select " + name + " from PAYMENT_DOC where ID_PAYMENT_DOC = " + QString::number(id));
    }
    int count(const QString& where) const {
        return scalar("select count(*) from PAYMENT_DOC where " + where).toInt();
    }
    bool logged(const QString& text) const {
        for (const QString& m : wb->loggedMessages())
            if (m.contains(text)) return true;
        return false;
    }
};

// Every value editor of the package has a place in the workbench: on the documents' edit dialog,
// on the filter panel, or it keeps its own value and is shown free-standing only.
TEST_F(EditorForms, EveryValueEditorHasItsPlace) {
    const QStringList ownValue = {"TEdit_Frame",      "TComboBox_Frame",       "TEditComboBox_EF",
                                  "TMultiEdit_Frame", "TMultiEditComboBox_EF", "TCalcEdt_Frame",
                                  "TDateEdit_Frame",  "TMemo_Frame",           "TCheckBoxEdt_Frame"};
    QStringList homeless;
    for (const QString& cls : Registry::instance().classNames("edit")) {
        QWidget top;
        std::unique_ptr<TAbsEditFrame> f(Registry::instance().create(cls, &top));
        const bool isFilter = qobject_cast<TSetFilter_EF*>(f.get()) != nullptr;
        if (isFilter && !workbench::findDocumentFilter(cls)) homeless << cls + " (filter)";
        if (!isFilter && !workbench::editsDocuments(cls) && !workbench::findDocumentFilter(cls) &&
            !ownValue.contains(cls))
            homeless << cls;
    }
    EXPECT_TRUE(homeless.isEmpty()) << homeless.join(", ").toStdString();
}

// Each editor on the dialog shows its column of the list's current record, and what the user
// changes in it is committed to that column.
TEST_F(EditorForms, EditorsShowEveryColumnAndTheirChangesReachTheDatabase) {
    auto list = documents("ПП-000110");
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    {
        FrameEditDialog dlg(wb.get(), list.get());
        dlg.prepare();
        dlg.show();
        ASSERT_EQ(dlg.frames().size(), size_t(workbench::documentEditors().size()));
        for (TAbsEditFrame* f : dlg.frames()) EXPECT_EQ(f->Owner(), &dlg) << f->objectName().toStdString();

        auto* number = frame<TDBEdit_Frame>(dlg, "TDBEdit_Frame")->DBEdit;
        EXPECT_EQ(number->dataSource(), list->CurrentSource());
        EXPECT_EQ(number->text(), "ПП-000110");
        number->end(false);
        QTest::keyClicks(number, "/1");
        auto* date = frame<TDBDateEdit_Frame>(dlg, "TDBDateEdit_Frame")->DBDateEdit1;
        EXPECT_EQ(date->date(), QDate(2024, 3, 15));
        date->setDate(QDate(2024, 2, 20));
        auto* time = frame<TDBTimeEdit_Frame>(dlg, "TDBTimeEdit_Frame")->DBTimeEdit;
        EXPECT_EQ(time->time(), QTime(10, 30));
        time->setTime(QTime(18, 5));
        EXPECT_EQ(frame<TDBDateTimeEdit_Frame>(dlg, "TDBDateTimeEdit_Frame")->DBDateTimeEdit->value(),
                  QDateTime(QDate(2024, 3, 15), QTime(10, 32)));
        auto* month = frame<TNewMonth_EF>(dlg, "TNewMonth_EF");
        EXPECT_EQ(month->GetDate(), QDate(2024, 3, 1));
        month->SetDate(QDate(2024, 4, 1)); // booked a month later
        auto* amount = frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame");
        EXPECT_DOUBLE_EQ(amount->GetValue(), 2240.75);
        EXPECT_EQ(amount->DisplayFormat(), wb->PrecisionCurFormat()); // an amount in the currency
        amount->SetValue(20500.5);
        auto* quantity = frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame_QUANTITY");
        EXPECT_DOUBLE_EQ(quantity->GetValue(), 18);
        EXPECT_EQ(quantity->DisplayFormat(), wb->PrecisionQuantityFormat());
        quantity->SetValue(2.125);
        auto* status = frame<TDBComboBox_Frame>(dlg, "TDBComboBox_Frame")->DBComboBox;
        EXPECT_EQ(status->currentText(), "Проведён");
        status->setCurrentIndex(status->findText("Черновик"));
        emit status->activated(status->currentIndex());
        auto* price = frame<TPriceType_EF>(dlg, "TPriceType_EF")->ComboBox;
        EXPECT_EQ(price->currentText(), "Макс. приход");
        price->setCurrentIndex(3);
        emit price->activated(3);
        auto* paid = frame<TCheckBoxEdit_Frame>(dlg, "TIntCheckBoxEdit_Frame");
        EXPECT_TRUE(paid->Checked());
        paid->CheckBox->click();
        auto* memo = frame<TMemo_Frame>(dlg, "TMemoEdit_Frame");
        EXPECT_EQ(memo->Text(), "Коньяк, доплата по счёту 88.");
        memo->Memo->setPlainText("Оплачено частично.");
        auto* email = frame<TDBEdit_Frame>(dlg, "TEditEmail_Frame")->DBEdit;
        EXPECT_EQ(email->text(), "office@import-alko.ru");
        email->selectAll();
        QTest::keyClicks(email, "shop@example.ru");

        EXPECT_EQ(frame<TAbs_LF>(dlg, "TCursType_LF")->lcSelect->displayText(), "Доллар США");
        auto* rate = frame<TCursFrame_CE>(dlg, "TCursFrame_CE");
        EXPECT_DOUBLE_EQ(rate->GetValue(), column(id, "CURS").toDouble());
        EXPECT_TRUE(rate->SelCurHistoryAction->isEnabled()); // a currency, and the record is edited
        EXPECT_EQ(frame<TPartner_EF>(dlg, "TPartner_EF")->DBEdit->text(), "ООО «Импорт-Алко»");
        EXPECT_EQ(frame<TDBEdit_Frame>(dlg, "TEditSite_Frame")->DBEdit->text(), "www.import-alko.ru");
        EXPECT_EQ(frame<TDBEdit_Frame>(dlg, "TArticul_EF")->DBEdit->text(), "100-0012");
        EXPECT_EQ(frame<TDBEdit_Frame>(dlg, "TPaymentKind_EF")->DBEdit->text(), "2");
        EXPECT_EQ(frame<TDBEdit_Frame>(dlg, "TDocIndex_EF")->DBEdit->text(), "ВЭД/10");
        EXPECT_TRUE(frame<TCheckBoxEdit_Frame>(dlg, "TCheckBoxEdit_Frame")->Checked());
        EXPECT_EQ(frame<TRichEdit_Frame>(dlg, "TRichEdit_Frame")->RichEdit->toPlainText(),
                  "Доплата по счёту 88");
        dlg.accept();
        EXPECT_EQ(dlg.result(), QDialog::Accepted);
    }
    EXPECT_FALSE(list->records()->inEditMode());
    EXPECT_FALSE(list->writeTransaction()->active()); // committed
    // Read in a transaction of its own: the changes were committed; untouched columns kept.
    EXPECT_EQ(column(id, "DOC_NUMBER").toString(), "ПП-000110/1");
    EXPECT_EQ(column(id, "DOC_DATE").toDate(), QDate(2024, 2, 20));
    EXPECT_EQ(column(id, "DOC_TIME").toTime(), QTime(18, 5));
    EXPECT_EQ(column(id, "DOC_MONTH").toDate(), QDate(2024, 4, 1));
    EXPECT_DOUBLE_EQ(column(id, "AMOUNT").toDouble(), 20500.5);
    EXPECT_DOUBLE_EQ(column(id, "QUANTITY").toDouble(), 2.125);
    EXPECT_EQ(column(id, "STATUS").toString(), "Черновик");
    EXPECT_EQ(column(id, "PRICE_TYPE").toString(), "S");
    EXPECT_EQ(column(id, "IS_PAID").toInt(), 0);
    EXPECT_EQ(column(id, "NOTE").toString(), "Оплачено частично.");
    EXPECT_EQ(column(id, "EMAIL").toString(), "shop@example.ru");
    EXPECT_EQ(column(id, "IS_CHECKED").toString(), "T");
    EXPECT_EQ(column(id, "LINK_TO_CLIENT").toInt(), 10);
    // The list shows the row as read again, its computed amount in roubles too.
    EXPECT_EQ(list->records()->fieldByName("DOC_NUMBER")->asString(), "ПП-000110/1");
    EXPECT_NEAR(list->records()->fieldByName("AMOUNT_RUB")->asDouble(),
                20500.5 * column(id, "CURS").toDouble(), 0.01);
}

TEST_F(EditorForms, AFailedSaveIsReportedAndKeepsTheDialog) {
    auto list = documents("ПП-000101");
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    dlg.show();
    auto* amount = frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame");
    amount->SetValue(-10); // the table takes no negative amounts
    dlg.accept();
    EXPECT_TRUE(logged("Запись не сохранена")) << wb->loggedMessages().join("\n").toStdString();
    EXPECT_TRUE(dlg.isVisible());
    EXPECT_EQ(dlg.result(), 0);
    EXPECT_TRUE(list->records()->inEditMode());       // the user can correct the value
    EXPECT_FALSE(list->writeTransaction()->active()); // rolled back
    EXPECT_DOUBLE_EQ(column(id, "AMOUNT").toDouble(), 125000);
    dlg.reject();
    EXPECT_FALSE(list->records()->inEditMode());
}

TEST_F(EditorForms, ANewDocumentIsNumberedAndInserted) {
    std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
    const int before = count("1=1");
    list->records()->append();
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    EXPECT_GT(id, 16);
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    EXPECT_EQ(frame<TDBEdit_Frame>(dlg, "TDBEdit_Frame")->DBEdit->text(),
              QString("ПП-%1").arg(id, 6, 10, QChar('0')));
    EXPECT_EQ(frame<TDBComboBox_Frame>(dlg, "TDBComboBox_Frame")->DBComboBox->currentText(), "Черновик");
    // A new document's amounts start at the 0 they show, and the record holds that 0.
    auto* quantity = frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame_QUANTITY");
    EXPECT_EQ(quantity->DBCalcEdit->displayText(), "0");
    EXPECT_FALSE(list->records()->fieldByName("QUANTITY")->isNull());
    EXPECT_EQ(list->records()->fieldByName("QUANTITY")->asDouble(), 0.0);
    frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame")->SetValue(500);
    dlg.accept();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(count("1=1"), before + 1);
    EXPECT_DOUBLE_EQ(column(id, "AMOUNT").toDouble(), 500);
    EXPECT_FALSE(column(id, "QUANTITY").isNull());
    EXPECT_EQ(column(id, "QUANTITY").toDouble(), 0.0);
    EXPECT_EQ(column(id, "CUR_TYPE").toInt(), 1);
}

// An existing document is shown as it is stored: an empty amount stays empty and untouched, a
// rate keeps its four decimals.
TEST_F(EditorForms, TheDialogShowsWhatIsStored) {
    exec("update PAYMENT_DOC set QUANTITY = null where DOC_NUMBER = 'ПП-000102'");
    auto list = documents("ПП-000102");
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    dlg.show();
    auto* quantity = frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame_QUANTITY");
    EXPECT_EQ(quantity->DBCalcEdit->displayText(), "");
    EXPECT_TRUE(list->records()->fieldByName("QUANTITY")->isNull());
    auto* rate = frame<TCursFrame_CE>(dlg, "TCursFrame_CE");
    EXPECT_EQ(rate->DBCalcEdit->displayText(), "92,0268");
    dlg.accept();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_TRUE(column(id, "QUANTITY").isNull());
    EXPECT_DOUBLE_EQ(column(id, "CURS").toDouble(), 92.0268);
}

// A document without its number is not saved: the dialog asks for it and keeps what was typed.
TEST_F(EditorForms, ARequiredValueIsAskedForBeforeSaving) {
    auto list = documents("ПП-000101");
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    dlg.show();
    frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame")->SetValue(777);
    auto* number = frame<TDBEdit_Frame>(dlg, "TDBEdit_Frame")->DBEdit;
    number->selectAll();
    QTest::keyClick(number, Qt::Key_Delete);
    dlg.accept();
    EXPECT_TRUE(logged("Заполните поле «Номер документа»")) << wb->loggedMessages().join("\n").toStdString();
    EXPECT_TRUE(dlg.isVisible());
    EXPECT_TRUE(list->records()->inEditMode());
    EXPECT_DOUBLE_EQ(frame<TCalcEdit_Frame>(dlg, "TCalcEdit_Frame")->GetValue(), 777);
    EXPECT_EQ(column(id, "DOC_NUMBER").toString(), "ПП-000101");
    QTest::keyClicks(number, "PP-101-A");
    dlg.accept();
    EXPECT_EQ(dlg.result(), QDialog::Accepted);
    EXPECT_EQ(column(id, "DOC_NUMBER").toString(), "PP-101-A");
    EXPECT_DOUBLE_EQ(column(id, "AMOUNT").toDouble(), 777);
}

// The rate editor on the dialog opens the real rate history form through the module runner and
// writes the chosen rate into the document.
TEST_F(EditorForms, RateEditorTakesTheRateChosenInTheHistoryForm) {
    auto list = documents("ПП-000103"); // euros, 12 February 2024
    const int id = list->records()->fieldByName("ID_PAYMENT_DOC")->asInteger();
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    auto* rate = frame<TCursFrame_CE>(dlg, "TCursFrame_CE");
    rate->CursDate = QDateTime(QDate(2024, 2, 12), QTime(0, 0));
    wb->setInteractive(true);
    QDate shownOn;
    int shownCurrency = 0;
    QTimer::singleShot(0, [&] {
        auto* form = qobject_cast<CurHistoryForm*>(QApplication::activeModalWidget());
        if (!form) return;
        shownCurrency = form->currency();
        shownOn = form->currentDate();
        form->dataSet()->next(); // the rate of the working day before
        emit form->grid()->activated();
    });
    rate->SelCurHistoryAction->trigger();
    wb->setInteractive(false);
    EXPECT_EQ(shownCurrency, 3);
    EXPECT_EQ(shownOn, QDate(2024, 2, 12));
    const double chosen =
        scalar("select CURS from CUR_HISTORY where ID_CUR_TYPE = 3 and CURS_DATE = '2024-02-09'").toDouble();
    EXPECT_DOUBLE_EQ(list->records()->fieldByName("CURS")->asDouble(), chosen);
    dlg.accept();
    EXPECT_DOUBLE_EQ(column(id, "CURS").toDouble(), chosen);
}

TEST_F(EditorForms, RateHistoryFormPositionsOnTheDateAndReturnsTheChosenRate) {
    // The rate of a day as the form returns it (with the user's decimal comma).
    auto rateOn = [&](int cur, const QString& day) {
        return CurHistoryForm::rateText(scalar("select CURS from CUR_HISTORY where ID_CUR_TYPE = " +
                                               QString::number(cur) + " and CURS_DATE = '" + day + "'")
                                            .toDouble());
    };
    auto open = [&](TRunParams& p, const char* currency, const char* date) {
        p.EnsureParams().ByName("CurType").Value = currency;
        if (*date) p.EnsureParams().ByName("Date").Value = date;
        auto form = std::make_unique<CurHistoryForm>(wb->RvDatabase(), wb->pfReadTransaction(), p);
        form->open();
        form->show();
        return form;
    };
    // A Saturday: the rate in force is Friday's.
    TRunParams saturday;
    auto form = open(saturday, "2", "16.03.2024");
    EXPECT_EQ(form->currencyCombo()->currentText(), "Доллар США");
    EXPECT_EQ(form->currentDate(), QDate(2024, 3, 15));
    EXPECT_EQ(CurHistoryForm::rateText(form->currentRate().toDouble()), rateOn(2, "2024-03-15"));
    form->dataSet()->next();
    QTest::mouseClick(form->okButton(), Qt::LeftButton);
    EXPECT_EQ(form->result(), 1);
    EXPECT_EQ(saturday.Params->Find("CurType")->Value.toString(), "2");
    EXPECT_EQ(saturday.Params->Find("Curs")->Value.toString(), rateOn(2, "2024-03-14"));
    EXPECT_EQ(saturday.Params->Find("Date")->Value.toString(), "14.03.2024");
    EXPECT_TRUE(saturday.Params->Find("Curs")->Value.toString().contains(','));

    // No date: the latest rate; another currency chosen in the form is returned with its rate.
    TRunParams latest;
    form = open(latest, "2", "");
    EXPECT_EQ(form->currentDate(), QDate(2024, 4, 30));
    form->setCurrency(6);
    form->confirm();
    EXPECT_EQ(latest.Params->Find("CurType")->Value.toString(), "6");
    EXPECT_EQ(latest.Params->Find("Curs")->Value.toString(), rateOn(6, "2024-04-30"));

    // Before the whole history: the earliest rate. The rouble has none: nothing to choose.
    TRunParams early;
    form = open(early, "3", "01.12.2023");
    EXPECT_EQ(form->currentDate(), QDate(2024, 1, 9));
    form->setCurrency(1);
    EXPECT_FALSE(form->currentRate().isValid());
    EXPECT_FALSE(form->okButton()->isEnabled());
    form->confirm();
    EXPECT_TRUE(form->isVisible());
    EXPECT_EQ(early.Params->Find("Curs"), nullptr);
}

TEST_F(EditorForms, FilterPanelConditionsCountWhatAnIndependentQueryCounts) {
    FilterPanelForm panel(wb.get());
    panel.prepare();
    panel.show();
    ASSERT_EQ(panel.filters().size(), size_t(workbench::documentFilters().size()));
    for (const auto& f : panel.filters()) {
        EXPECT_EQ(f.frame->Owner(), &panel) << f.def->className.toStdString();
        f.frame->Clear();
    }
    panel.updateResults();
    EXPECT_EQ(panel.whereClause(), "");
    EXPECT_EQ(panel.runQuery(), count("1=1"));

    // Document dates in March.
    auto* dates = filter<TSetDate_EF>(panel, "TSetDate_EF");
    dates->deFromDate->userSetValue(QDateTime(QDate(2024, 3, 1), QTime(0, 0)));
    dates->deToDate->userSetValue(QDateTime(QDate(2024, 3, 31), QTime(0, 0)));
    EXPECT_TRUE(dates->Checked()); // the change switched it on
    QApplication::processEvents();
    // The pane follows the change by itself.
    const QTableWidget* pane = panel.resultsTable();
    EXPECT_EQ(pane->item(0, 2)->text(), dates->SQL("DOC_DATE"));
    EXPECT_EQ(pane->item(0, 3)->text(), "ItemsCount = 0; ItemsList = «»");
    EXPECT_TRUE(panel.queryText()->toPlainText().contains(dates->SQL("DOC_DATE")));
    const int march = count("DOC_DATE between '2024-03-01' and '2024-03-31'");
    EXPECT_EQ(panel.runQuery(), march);
    EXPECT_TRUE(panel.countLabel()->text().contains(QString::number(march)));
    // The chart under the result: payments by client of the same documents.
    double charted = 0;
    for (const auto& slice : panel.chart()->PieSlices()) charted += slice.second;
    EXPECT_NEAR(charted,
                scalar("select sum(s) from (select sum(AMOUNT) s from PAYMENT_DOC where DOC_DATE between "
                       "'2024-03-01' and '2024-03-31' group by LINK_TO_CLIENT) where s > 0")
                    .toDouble(),
                0.005);
    EXPECT_GT(charted, 0);

    // Amounts from 1000 to 100000, then outside them (the upper below the lower).
    auto* sums = filter<TSetDouble_EF>(panel, "TSetDouble_EF");
    sums->ceFromSumma->SetAsFloat(1000);
    sums->ceToSumma->SetAsFloat(100000);
    sums->SetChecked(true);
    EXPECT_EQ(panel.runQuery(),
              count("DOC_DATE between '2024-03-01' and '2024-03-31' and AMOUNT between 1000 and 100000"));
    sums->ceFromSumma->SetAsFloat(100000);
    sums->ceToSumma->SetAsFloat(1000);
    EXPECT_EQ(
        panel.runQuery(),
        count("DOC_DATE between '2024-03-01' and '2024-03-31' and (AMOUNT >= 100000 or AMOUNT <= 1000)"));
    sums->SetChecked(false);
    dates->SetChecked(false);

    // A day of creation: a time of day on that day counts, a document without one does not.
    auto* created = filter<TSetPeriod_EF>(panel, "TSetPeriod_EF");
    created->deFromDate->setDate(QDate(2024, 3, 15));
    created->deToDate->setDate(QDate(2024, 3, 15));
    created->SetChecked(true);
    EXPECT_EQ(panel.runQuery(), count("cast(CREATED as date) = '2024-03-15'"));
    created->SetChecked(false);

    // A period frame's dates, and one with only its first bound.
    auto* period = filter<TPeriodExt_EF>(panel, "TPeriodExt_EF");
    period->deFirstDate->setDate(QDate(2024, 2, 1));
    period->deLastDate->setDate(QDate(2024, 2, 29));
    panel.updateResults();
    EXPECT_EQ(pane->item(3, 3)->text(), "c 01.02.2024 по 29.02.2024");
    EXPECT_EQ(panel.runQuery(), count("DOC_DATE between '2024-02-01' and '2024-02-29'"));
    period->Clear();
    auto* from = filter<TPeriod_EF>(panel, "TPeriod_EF");
    from->chbFirstDate->setChecked(true);
    from->deFirstDate->setDate(QDate(2024, 4, 1));
    panel.updateResults();
    EXPECT_EQ(panel.condition(panel.filters()[4]), "DOC_DATE >= '2024-04-01'");
    EXPECT_EQ(panel.runQuery(), count("DOC_DATE >= '2024-04-01'"));

    // A filter switched on without a date is not correct: the user is told, nothing runs.
    dates->Clear();
    dates->SetChecked(true);
    EXPECT_EQ(panel.runQuery(), -1);
    EXPECT_TRUE(logged("задан неверно"));
    panel.reject();
}

// Whatever a user types or a layout holds, the panel's statement runs: amounts beyond what the
// editors keep are cut to their limit as they are typed, amounts with many decimals and dates up
// to the last day the database takes give conditions that it accepts.
TEST_F(EditorForms, FilterPanelStatementRunsForExtremeAmountsAndDates) {
    auto runs = [](FilterPanelForm& panel) {
        int n = -2;
        EXPECT_NO_THROW(n = panel.runQuery()) << panel.countSql().toStdString();
        return n;
    };
    // Layout values no editor would take: amounts of 1e30, a day number in the year 10113.
    TConfigItem* node = wb->LayoutRoot()->ItemByName("FilterPanel");
    node->ItemByName("TSetDouble_EF")->ItemByName("FromSumma")->SetAsFloat(-1e30);
    node->ItemByName("TSetDouble_EF")->ItemByName("ToSumma")->SetAsFloat(1e30);
    node->ItemByName("TSetDouble_EF")->ItemByName("cbSet.Checked")->SetAsBoolean(true);
    node->ItemByName("TSetDate_EF")->ItemByName("FromDate")->SetAsFloat(3000000);
    node->ItemByName("TSetDate_EF")->ItemByName("ToDate")->SetAsString("2024-03-31");
    node->ItemByName("TSetDate_EF")->ItemByName("cbSet.Checked")->SetAsBoolean(true);
    FilterPanelForm panel(wb.get());
    panel.prepare();
    auto* sums = filter<TSetDouble_EF>(panel, "TSetDouble_EF");
    auto* dates = filter<TSetDate_EF>(panel, "TSetDate_EF");
    for (const auto& f : panel.filters())
        if (f.frame != sums && f.frame != dates) f.frame->Clear();
    EXPECT_DOUBLE_EQ(sums->ceFromSumma->GetValue(), -999999999);
    EXPECT_DOUBLE_EQ(sums->ceToSumma->GetValue(), 999999999);
    EXPECT_TRUE(dates->deFromDate->isNull());
    EXPECT_EQ(runs(panel), count("AMOUNT is not null and DOC_DATE <= '2024-03-31'"));
    dates->SetChecked(false);

    // Typed amounts of 18 and 25 digits, without leaving the editor; 18 decimals.
    panel.show();
    QApplication::setActiveWindow(&panel);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&panel));
    auto type = [](TCalcEdt_Frame* f, const char* text) {
        QLineEdit* e = f->CalcEdit->lineEdit();
        e->setFocus();
        e->selectAll();
        QTest::keyClicks(e, text);
    };
    type(sums->ceFromSumma, "0");
    type(sums->ceToSumma, "123456789012345678");
    EXPECT_DOUBLE_EQ(sums->ceToSumma->GetValue(), 999999999);
    EXPECT_EQ(runs(panel), count("AMOUNT between 0 and 999999999"));
    type(sums->ceToSumma, "1234567890123456789012345");
    EXPECT_EQ(runs(panel), count("AMOUNT between 0 and 999999999"));
    type(sums->ceFromSumma, "-123456789012345678");
    EXPECT_DOUBLE_EQ(sums->ceFromSumma->GetValue(), -999999999);
    type(sums->ceFromSumma, "0,000000000000000001");
    EXPECT_EQ(runs(panel), count("AMOUNT > 0 and AMOUNT <= 999999999"));
    type(sums->ceToSumma, "0,00000000000000000000001"); // below the first: outside the two
    EXPECT_EQ(runs(panel), count("AMOUNT is not null"));
    type(sums->ceFromSumma, "123456789,123456");
    type(sums->ceToSumma, "0,5");
    EXPECT_EQ(runs(panel), count("AMOUNT >= 123456789.123456 or AMOUNT <= 0.5"));
    sums->SetChecked(false);

    // Dates up to 31.12.9999 and from 01.01.0001, typed or set, on a date and a timestamp column.
    dates->deFromDate->setDate(QDate(2024, 3, 1));
    dates->deToDate->setDate(QDate(9999, 12, 31));
    dates->SetChecked(true);
    EXPECT_EQ(runs(panel), count("DOC_DATE >= '2024-03-01'"));
    dates->deFromDate->clearValue();
    EXPECT_EQ(runs(panel), count("1=1"));
    dates->deFromDate->setDate(QDate(1, 1, 1));
    dates->deToDate->setDate(QDate(2024, 3, 31));
    EXPECT_EQ(runs(panel), count("DOC_DATE <= '2024-03-31'"));
    dates->SetChecked(false);
    auto* created = filter<TSetPeriod_EF>(panel, "TSetPeriod_EF");
    created->deFromDate->setDate(QDate(2024, 3, 15));
    created->deToDate->setFocus();
    created->deToDate->selectAll();
    QTest::keyClicks(created->deToDate, "31129999");
    QTest::keyClick(created->deToDate, Qt::Key_Return);
    EXPECT_EQ(created->deToDate->date(), QDate(9999, 12, 31));
    created->SetChecked(true);
    EXPECT_EQ(runs(panel), count("CREATED >= '2024-03-15'"));
    created->SetChecked(false);
    auto* period = filter<TPeriodExt_EF>(panel, "TPeriodExt_EF");
    period->deFirstDate->setDate(QDate(2024, 3, 1));
    period->deLastDate->setDate(QDate(9999, 12, 31));
    EXPECT_EQ(runs(panel), count("DOC_DATE >= '2024-03-01'"));
    panel.reject();
}

// The panel keeps the frames' settings in the layout tree between openings.
TEST_F(EditorForms, FilterPanelKeepsItsSettings) {
    {
        FilterPanelForm panel(wb.get());
        panel.prepare();
        auto* sums = filter<TSetDouble_EF>(panel, "TSetDouble_EF");
        sums->ceFromSumma->SetAsFloat(250);
        sums->ceToSumma->SetAsFloat(750);
        sums->SetChecked(true);
        panel.reject();
    }
    FilterPanelForm again(wb.get());
    again.prepare();
    auto* sums = filter<TSetDouble_EF>(again, "TSetDouble_EF");
    EXPECT_TRUE(sums->Checked());
    EXPECT_EQ(again.condition(again.filters()[2]), "AMOUNT between 250 and 750");
}

// The frame browser's "На форме редактирования…" opens the form that hosts the frame shown: the
// documents for a value editor (its frame first in the dialog), the filter panel for a filter.
TEST_F(EditorForms, FrameBrowserOpensTheHostFormOfAValueEditor) {
    workbench::MainWindow window(wb.get(), &Registry::instance());
    auto* bound = window.findChild<QPushButton*>("btBound");
    ASSERT_NE(bound, nullptr);

    ASSERT_NE(window.showFrame("TCursFrame_CE"), nullptr);
    EXPECT_FALSE(bound->isHidden());
    bound->click();
    auto* docs = window.findChild<RecordListForm*>("DocumentListForm");
    ASSERT_NE(docs, nullptr);
    EXPECT_EQ(docs->focusEditor, "TCursFrame_CE");

    ASSERT_NE(window.showFrame("TSetDouble_EF"), nullptr);
    EXPECT_FALSE(bound->isHidden());
    bound->click();
    auto* panel = window.findChild<FilterPanelForm*>("FilterPanel");
    ASSERT_NE(panel, nullptr);
    EXPECT_NE(panel->frame("TSetDouble_EF"), nullptr);

    // A frame that keeps its own value has no host form to open.
    ASSERT_NE(window.showFrame("TCalcEdt_Frame"), nullptr);
    EXPECT_TRUE(bound->isHidden());
    window.close();
}

} // namespace
} // namespace frames::test
