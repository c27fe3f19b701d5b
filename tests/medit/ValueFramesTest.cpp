// Mass edit of typed values: text, multi-line text, numbers, dates and yes/no, each checked in the
// documents' rows after the update.
#include "frames/medit/ME_CalcEdit.h"
#include "frames/medit/ME_CheckBoxEdit.h"
#include "frames/medit/ME_DateEdit.h"
#include "frames/medit/ME_Edit.h"
#include "frames/medit/ME_MemoEdit.h"
#include "tests/medit/MEditTestUtil.h"
#include <QFocusEvent>
#include <QLineEdit>
#include <QLocale>

namespace frames::test {
namespace {

// Types text as a user does, key by key (Cyrillic included).
void typeInto(QWidget* w, const QString& text) {
    for (QChar c : text) QTest::sendKeyEvent(QTest::Click, w, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

TEST_F(MassEditTest, TextFrameSendsNullsUntouchedAndTheSwitchesFollowTheUser) {
    auto f = frameFor<TEdit_ME>("STATUS");
    const auto before = column("STATUS");

    // Untouched: NULL for both values, no restriction; every marked record is emptied.
    EXPECT_EQ(apply(f.get(), {1, 2}), 2);
    EXPECT_TRUE(sentNull(f.get(), "new_value"));
    EXPECT_TRUE(sentNull(f.get(), "old_value"));
    EXPECT_EQ(sent(f.get(), "use_old_value").toString(), "F");
    auto after = column("STATUS");
    expectOnlyChanged(before, after, {1, 2});
    EXPECT_TRUE(after.at(1).isNull());
    EXPECT_EQ(marksLeft(), 0);

    // Typing an old value turns on "Использовать"; only records that hold it change.
    typeInto(f->efOldValue->ComboBox->lineEdit(), "Черновик");
    EXPECT_FALSE(f->chbOldNull->isChecked());
    EXPECT_TRUE(f->chbUseOldValue->isChecked());
    typeInto(f->efNewValue->ComboBox->lineEdit(), "Отменён");
    EXPECT_FALSE(f->chbNewNull->isChecked());
    const auto mid = column("STATUS");
    QList<int> drafts, all;
    for (const auto& [id, v] : mid) {
        all << id;
        if (v.toString() == "Черновик") drafts << id;
    }
    ASSERT_FALSE(drafts.isEmpty());
    ASSERT_LT(drafts.size(), all.size());
    EXPECT_EQ(apply(f.get(), all), drafts.size());
    EXPECT_EQ(sent(f.get(), "use_old_value").toString(), "T");
    after = column("STATUS");
    expectOnlyChanged(mid, after, drafts);
    EXPECT_EQ(after.at(drafts.first()).toString(), "Отменён");
    // What was sent joined the histories.
    EXPECT_TRUE(f->efNewValue->ComboBox->history().contains("Отменён"));
    EXPECT_TRUE(f->efOldValue->ComboBox->history().contains("Черновик"));

    // Unticking "Использовать" by hand is respected: every marked record changes.
    f->chbUseOldValue->click();
    EXPECT_FALSE(f->chbUseOldValue->isChecked());
    EXPECT_EQ(apply(f.get(), {1, 3}), 2);
    EXPECT_EQ(column("STATUS").at(3).toString(), "Отменён");

    // "Пусто" clears the editor and stays checked (clearing does not uncheck it again).
    f->chbNewNull->click();
    EXPECT_TRUE(f->chbNewNull->isChecked());
    EXPECT_TRUE(f->efNewValue->Text().isEmpty());
    f->chbOldNull->click();
    EXPECT_TRUE(f->chbOldNull->isChecked());
    EXPECT_TRUE(f->efOldValue->Text().isEmpty());
}

TEST_F(MassEditTest, TextIsCutTo255AndAStatementWithoutKindRuns) {
    auto f = frameFor<TEdit_ME>("ARTICUL");
    // Pasting 300 characters leaves the first 255, in both editors.
    const QString long300 = QString(300, QChar('x'));
    for (TEditComboBox_EF* ed : {f->efNewValue, f->efOldValue}) {
        ed->ComboBox->lineEdit()->setText(QString());
        ed->ComboBox->lineEdit()->insert(long300);
        emit ed->ComboBox->lineEdit()->textEdited(ed->ComboBox->lineEdit()->text());
        EXPECT_EQ(ed->Text(), long300.left(255));
    }

    // A statement with :kind gets REFADD_KIND; one without it runs although the key is absent.
    auto k = frameWith<TEdit_ME>(
        "TEdit_ME",
        {"FIELDNAME=ARTICUL", "REFADD_KIND=7",
         "SQL=update PAYMENT_DOC d set d.ARTICUL = cast(:kind as varchar(5)) || '-' || "
         "cast(:new_value as varchar(20)) where d.ID_PAYMENT_DOC in (select RECORD_ID from "
         "MEDIT_MARKS where SESSION_ID = :session) and cast(:fieldname as varchar(31)) = 'ARTICUL' "
         "and cast(:old_value as varchar(1)) is null and cast(:use_old_value as char(1)) = 'F'"});
    typeInto(k->efNewValue->ComboBox->lineEdit(), "A1");
    EXPECT_EQ(apply(k.get(), {2}), 1);
    EXPECT_EQ(column("ARTICUL").at(2).toString(), "7-A1");

    auto plain = frameWith<TEdit_ME>(
        "TEdit_ME",
        {"SQL=update PAYMENT_DOC d set d.ARTICUL = cast(:new_value as varchar(20)) where "
         "d.ID_PAYMENT_DOC in (select RECORD_ID from MEDIT_MARKS where SESSION_ID = :session) "
         "and (cast(:use_old_value as char(1)) = 'F' or d.ARTICUL = cast(:old_value as varchar(30)))"});
    typeInto(plain->efNewValue->ComboBox->lineEdit(), "B2");
    EXPECT_EQ(apply(plain.get(), {3}), 1);
    EXPECT_EQ(column("ARTICUL").at(3).toString(), "B2");
}

TEST_F(MassEditTest, TextHistoryIsKeptInTheLayoutWithNoEntryPreselected) {
    TConfigItem root;
    {
        auto f = frameFor<TEdit_ME>("STATUS");
        typeInto(f->efNewValue->ComboBox->lineEdit(), "Проведён");
        apply(f.get(), {1});
        f->SaveLayout(&root);
    }
    auto g = frameFor<TEdit_ME>("STATUS");
    g->RestoreLayout(&root);
    EXPECT_TRUE(g->efNewValue->ComboBox->history().contains("Проведён"));
    EXPECT_EQ(g->efNewValue->ComboBox->currentIndex(), -1);
    EXPECT_TRUE(g->efNewValue->Text().isEmpty());
    EXPECT_TRUE(g->chbNewNull->isChecked());
}

TEST_F(MassEditTest, MemoAsksBeforeCuttingTheNewValueAndMatchesTheOldOne) {
    auto f = frameFor<TMemoEdit_ME>("NOTE");
    f->show();
    QApplication::setActiveWindow(f.get());
    ASSERT_TRUE(QTest::qWaitForWindowActive(f.get()));
    const QString long256 = QString(256, QChar('n'));
    f->mefNewValue->Memo->setFocus();
    f->mefNewValue->Memo->setPlainText(long256);
    EXPECT_FALSE(f->chbNewNull->isChecked());

    // No: all 256 stay and the memo has the focus again.
    host->answers = {false};
    f->chbUseOldValue->setFocus();
    QApplication::processEvents();
    ASSERT_EQ(host->messages.size(), 1u);
    EXPECT_EQ(host->messages.back().text, "Длина редактируемого поля превышает допустимую (255 символов). "
                                          "Обрезать значение до допустимых размеров?");
    EXPECT_EQ(f->mefNewValue->Text().size(), 256);
    EXPECT_TRUE(f->mefNewValue->Memo->hasFocus());
    // Yes: 255 are left.
    host->answers = {true};
    f->chbUseOldValue->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(f->mefNewValue->Text(), long256.left(255));
    // The old value's memo is never checked.
    f->mefOldValue->Memo->setFocus();
    f->mefOldValue->Memo->setPlainText(long256);
    f->chbUseOldValue->setFocus();
    QApplication::processEvents();
    EXPECT_EQ(host->messages.size(), 2u);

    // "Пусто" empties the memo, whose change handler unchecks the box: it is checked again.
    f->chbOldNull->click();
    EXPECT_TRUE(f->mefOldValue->Text().isEmpty());
    EXPECT_TRUE(f->chbOldNull->isChecked());

    // The update writes the memo into the marked records that still hold the old note.
    const auto before = column("NOTE");
    f->mefNewValue->Memo->setPlainText("Сверено с банком.");
    f->mefOldValue->Memo->setPlainText(before.at(1).toString());
    EXPECT_TRUE(f->chbUseOldValue->isChecked());
    EXPECT_EQ(apply(f.get(), {1, 2}), 1);
    EXPECT_EQ(sent(f.get(), "fieldname").toString(), "NOTE");
    const auto after = column("NOTE");
    expectOnlyChanged(before, after, {1});
    EXPECT_EQ(after.at(1).toString(), "Сверено с банком.");
}

// A host whose four number formats differ, so that each precision kind shows which one it took.
class FormatsHost : public TestHost {
public:
    using TestHost::TestHost;
    QString PrecisionCurFormat() const override { return ",0.00 cur"; }
    QString PrecisionQuantityFormat() const override { return ",0.### qty"; }
    QString PrecisionRubFormat() const override { return ",0.00 rub"; }
    QString PrecisionVolumeFormat() const override { return ",0.### vol"; }
};

TEST_F(MassEditTest, NumbersFollowTheirPrecisionAndTravelWithTheUsersSeparator) {
    {
        FormatsHost formats(databasePath());
        const std::pair<const char*, const char*> kinds[] = {
            {"PrecKind=Rub", ",0.00 rub"},     {"PrecKind=Cur", ",0.00 cur"},    {"PrecKind=Int", "0"},
            {"PrecKind=Volume", ",0.### vol"}, {"PrecKind=Штуки", ",0.### qty"}, {"", ",0.### qty"}};
        for (const auto& [kind, format] : kinds) {
            auto c = frameWith<TCalcEdit_ME>("TCalcEdit_ME", {kind});
            EXPECT_EQ(c->cefNewValue->DisplayFormat(), format) << kind;
            EXPECT_EQ(c->cefOldValue->DisplayFormat(), format) << kind;
        }
    }
    setHost(host.get()); // the formats host uninstalled itself
    auto f = frameFor<TCalcEdit_ME>("AMOUNT"); // PrecKind=Cur

    // A Russian user's comma reaches the statement as it is; the statement reads it.
    const QLocale saved;
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    const auto before = column("AMOUNT");
    f->cefNewValue->SetValue(1234.5);
    EXPECT_FALSE(f->chbNewNull->isChecked());
    f->cefOldValue->SetValue(125000);
    EXPECT_FALSE(f->chbOldNull->isChecked());
    EXPECT_TRUE(f->chbUseOldValue->isChecked());
    const int changed = apply(f.get(), {1, 2, 3});
    QLocale::setDefault(saved);
    EXPECT_EQ(sent(f.get(), "new_value").toString(), "1234,5");
    EXPECT_EQ(changed, 1);
    const auto after = column("AMOUNT");
    expectOnlyChanged(before, after, {1});
    EXPECT_DOUBLE_EQ(after.at(1).toDouble(), 1234.5);
}

TEST_F(MassEditTest, DatesAreSentAsTextEmptiedByPustoAndAlwaysSentForTheDocumentDate) {
    // The document date cannot be empty: no "Пусто" boxes, a date is always sent.
    auto d = frameFor<TDateEdit_ME>("DOC_DATE");
    EXPECT_FALSE(d->chbNewNull->isChecked());
    EXPECT_TRUE(d->chbNewNull->isHidden());
    EXPECT_TRUE(d->chbOldNull->isHidden());
    // No date given: the check stops the update before it runs.
    const auto dates = column("DOC_DATE");
    try {
        apply(d.get(), {1});
        ADD_FAILURE() << "an empty date was sent";
    } catch (const std::exception& e) {
        EXPECT_EQ(QString::fromStdString(e.what()), "Неверный формат даты ''");
    }
    EXPECT_EQ(column("DOC_DATE"), dates);
    EXPECT_EQ(marksLeft(), 0);
    d->defNewValue->DateEdit->userSetValue(QDateTime(QDate(2024, 4, 1), QTime(0, 0)));
    d->defOldValue->DateEdit->userSetValue(QDateTime(dates.at(2).toDate(), QTime(0, 0)));
    EXPECT_TRUE(d->chbUseOldValue->isChecked());
    EXPECT_EQ(apply(d.get(), {1, 2, 3}), 1);
    EXPECT_EQ(sent(d.get(), "new_value").toString(), "01.04.2024");
    expectOnlyChanged(dates, column("DOC_DATE"), {2});
    EXPECT_EQ(column("DOC_DATE").at(2).toDate(), QDate(2024, 4, 1));

    // Another date column: a chosen date unchecks "Пусто"; checking it empties the date and NULL
    // is written.
    auto m = frameFor<TDateEdit_ME>("DOC_MONTH");
    EXPECT_TRUE(m->chbNewNull->isChecked());
    m->defNewValue->DateEdit->userSetValue(QDateTime(QDate(2024, 5, 1), QTime(0, 0)));
    EXPECT_FALSE(m->chbNewNull->isChecked());
    EXPECT_EQ(apply(m.get(), {4}), 1);
    EXPECT_EQ(column("DOC_MONTH").at(4).toDate(), QDate(2024, 5, 1));
    m->chbNewNull->click();
    EXPECT_TRUE(m->chbNewNull->isChecked());
    EXPECT_TRUE(m->defNewValue->DateEdit->isNull());
    EXPECT_EQ(apply(m.get(), {4}), 1);
    EXPECT_TRUE(column("DOC_MONTH").at(4).isNull());
}

TEST_F(MassEditTest, CheckBoxWritesItsValueToEveryMarkedRecord) {
    auto paid = frameFor<TCheckBoxEdit_ME>("IS_PAID");
    EXPECT_TRUE(paid->chbNewValue->isChecked());
    const auto before = column("IS_PAID");
    paid->chbNewValue->click();
    EXPECT_EQ(apply(paid.get(), {1, 2, 4}), 3);
    EXPECT_EQ(sent(paid.get(), "new_value").toString(), "F");
    const auto after = column("IS_PAID");
    for (int id : {1, 2, 4}) EXPECT_EQ(after.at(id).toInt(), 0);
    for (const auto& [id, v] : before) {
        if (id != 1 && id != 2 && id != 4) {
            EXPECT_EQ(after.at(id), v);
        }
    }

    auto checked = frameFor<TCheckBoxEdit_ME>("IS_CHECKED");
    EXPECT_EQ(apply(checked.get(), {4, 5}), 2);
    EXPECT_EQ(column("IS_CHECKED").at(4).toString(), "T");
}

} // namespace
} // namespace frames::test
