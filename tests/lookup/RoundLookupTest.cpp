#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Round.h"
#include "platform/db/Query.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QRadioButton>
#include <QSpinBox>
#include <QTest>

using namespace frames;

namespace {

class RoundLookup : public test::DbTest {
protected:
    TRound_LF* create(QWidget* parent) { return test::makeFrame<TRound_LF>("TRound_LF", parent); }
    // Keys of the special rules, in the list's order (by name).
    QList<int> specialRules() const {
        QList<int> ids;
        db::Query q(host->RvDatabase(), host->pfReadTransaction());
        q.setSql("select id from round_list(2, null)");
        q.open();
        while (q.next()) ids << q.value(0).toInt();
        return ids;
    }
    static bool shows(QWidget* w) { return !w->isHidden(); }
    // A viewed (or, with edit, an edited) record with its ROUND column, and the frame bound to it.
    TRound_LF* bound(test::BoundRecord& h, bool edit = false) {
        if (edit) h.record->edit();
        TRound_LF* f = create(h.dialog);
        f->lcSelect->setDataField("ROUND");
        f->Init();
        return f;
    }
};

} // namespace

TEST_F(RoundLookup, EncodingOfStandardSpecialAndEmptyValues) {
    const QList<int> special = specialRules();
    ASSERT_TRUE(special.contains(10) && special.contains(15)) << "demo rules 10 and 15 are needed";
    QWidget top;
    TRound_LF* f = create(&top);
    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };

    // A new frame holds no rule and shows none: neither kind is chosen, no number, no rule.
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(f->GetAsInteger(), TRound_LF::NoValue);
    EXPECT_FALSE(f->rbSt->isChecked() || f->rbSp->isChecked());
    EXPECT_FALSE(shows(f->stSelect) || shows(f->spSelect));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();

    f->SetAsInteger(-2);
    EXPECT_EQ(f->GetAsInteger(), -2);
    EXPECT_TRUE(f->rbSt->isChecked() && shows(f->stSelect) && !shows(f->spSelect));
    EXPECT_EQ(changes, 1);

    f->SetAsInteger(15);
    EXPECT_EQ(f->GetAsInteger(), 15);
    EXPECT_TRUE(f->rbSp->isChecked() && shows(f->spSelect) && !shows(f->stSelect));
    EXPECT_EQ(f->spSelect->keyValue().toInt(), 15);
    EXPECT_FALSE(f->spSelect->displayText().isEmpty());

    // Below -9 clears; a cleared frame stays empty although the standard kind shows a number.
    changes = 0;
    f->SetAsInteger(-100);
    EXPECT_TRUE(f->IsEmpty());
    EXPECT_EQ(f->GetAsInteger(), -10);
    EXPECT_EQ(changes, 1);
    f->SetAsInteger(-10);
    EXPECT_EQ(f->GetAsInteger(), -10);
    EXPECT_EQ(changes, 1); // nothing to clear: no change reported

    // The boundary between the kinds is 9.
    for (int v : {9, 10, -9}) {
        f->SetAsInteger(v);
        EXPECT_EQ(f->rbSt->isChecked(), v < 10) << v;
        EXPECT_EQ(f->GetAsInteger(), v);
    }
    EXPECT_EQ(f->stSelect->value(), -9);
}

TEST_F(RoundLookup, SwitchingKindsKeepsTheLastRuleOfEachKind) {
    const QList<int> special = specialRules();
    ASSERT_GE(special.size(), 2);
    QWidget top;
    TRound_LF* f = create(&top);
    f->SetAsInteger(3);

    // To special: the rule the combo last showed; back to standard: the spin's number.
    f->rbSp->click();
    EXPECT_EQ(f->GetAsInteger(), special.first());
    EXPECT_TRUE(shows(f->spSelect));
    f->rbSt->click();
    EXPECT_EQ(f->GetAsInteger(), 3);

    // Choosing a rule in the combo makes it the value; the spin edits the standard value.
    f->rbSp->click();
    QComboBox* combo = f->spSelect->comboBox();
    const int row = combo->findText(
        f->pFIBDataSet2->valueAt(1, f->pFIBDataSet2->fieldByName("NAME")->index()).toString());
    ASSERT_GE(row, 0);
    combo->setCurrentIndex(row);
    emit combo->activated(row);
    EXPECT_EQ(f->GetAsInteger(), special.at(1));
    f->rbSt->click();
    EXPECT_EQ(f->GetAsInteger(), 3);
    f->stSelect->setValue(-4);
    EXPECT_EQ(f->GetAsInteger(), -4);
    f->stSelect->setValue(50); // the spin keeps to -9..9
    EXPECT_EQ(f->GetAsInteger(), 9);
    f->rbSp->click();
    EXPECT_EQ(f->GetAsInteger(), special.at(1)); // the special rule chosen last

    // Delete clears neither kind.
    QTest::keyClick(f->spSelect->comboBox(), Qt::Key_Delete);
    EXPECT_EQ(f->GetAsInteger(), special.at(1));
    f->rbSt->click();
    QTest::keyClick(f->stSelect, Qt::Key_Delete);
    EXPECT_EQ(f->GetAsInteger(), 9);
    EXPECT_EQ(f->stSelect->value(), 9);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(RoundLookup, ViewedRecordIsReadOnlyFromInitAndRefusesNewValues) {
    const QList<int> special = specialRules();
    ASSERT_FALSE(special.isEmpty());
    {
        test::BoundRecord h({"ROUND"}, {special.first()});
        TRound_LF* f = bound(h);
        EXPECT_TRUE(f->GetReadOnly());
        EXPECT_FALSE(f->rbSt->isEnabled() || f->rbSp->isEnabled());
        EXPECT_TRUE(f->stSelect->isReadOnly());
        EXPECT_TRUE(f->rbSp->isChecked());
        EXPECT_EQ(f->GetAsInteger(), special.first());
        try {
            f->SetAsInteger(2);
            ADD_FAILURE() << "no error on a read-only frame";
        } catch (const std::exception& e) {
            EXPECT_EQ(QString::fromUtf8(e.what()),
                      QString("Round_LF: Нельзя изменить значение, компонент в режиме просмотра."));
        }
        EXPECT_EQ(f->GetAsInteger(), special.first());
        EXPECT_EQ(h.record->state(), db::DataSetState::Browse);
        // Through a handler the error reaches the host's error box.
        EXPECT_FALSE(guard([&] { f->SetAsInteger(2); }));
        ASSERT_EQ(host->errors().size(), 1);
    }
    {
        // No value: the special kind, with no rule shown, and the record is left alone.
        test::BoundRecord h({"ROUND"}, {QVariant()});
        TRound_LF* f = bound(h);
        EXPECT_TRUE(f->GetReadOnly());
        EXPECT_TRUE(f->rbSp->isChecked());
        EXPECT_EQ(f->GetAsInteger(), -10);
        EXPECT_TRUE(h.record->fieldByName("ROUND")->isNull());
        EXPECT_EQ(h.record->state(), db::DataSetState::Browse);
    }
    {
        // A record being edited: the frame writes the rule into it.
        test::BoundRecord h({"ROUND"}, {4});
        TRound_LF* f = bound(h, true);
        EXPECT_FALSE(f->GetReadOnly());
        EXPECT_TRUE(f->rbSt->isChecked());
        EXPECT_EQ(f->stSelect->value(), 4);
        f->SetAsInteger(special.last());
        EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), special.last());
        f->rbSt->click();
        EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), 4);
        f->SetAsInteger(-50);
        EXPECT_TRUE(h.record->fieldByName("ROUND")->isNull());
    }
}

// What the frame shows is what the record holds: opening a record never changes its rule, a rule
// the lists do not know is kept and named as unknown, and a new record stores the rule it shows.
TEST_F(RoundLookup, TheScreenAndTheRecordAgree) {
    const QList<int> special = specialRules();
    ASSERT_FALSE(special.contains(25));
    for (bool edit : {false, true}) {
        test::BoundRecord h({"ROUND"}, {25});
        TRound_LF* f = bound(h, edit);
        EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), 25) << edit;
        EXPECT_EQ(f->GetAsInteger(), 25);
        EXPECT_TRUE(f->rbSp->isChecked() && shows(f->spSelect));
        EXPECT_EQ(f->spSelect->comboBox()->currentIndex(), -1);
        EXPECT_EQ(f->spSelect->comboBox()->placeholderText(), "Неизвестное правило (25)");
        if (edit) {
            f->SetAsInteger(-3);
            f->SetAsInteger(25);
            EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), 25);
            // The user's own switch of the kind gives the record that kind's value.
            f->rbSt->click();
            EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), f->stSelect->value());
            EXPECT_TRUE(f->spSelect->comboBox()->placeholderText().isEmpty());
        }
    }
    {
        // An edited record without a rule keeps none, and shows none.
        test::BoundRecord h({"ROUND"}, {QVariant()});
        TRound_LF* f = bound(h, true);
        EXPECT_TRUE(h.record->fieldByName("ROUND")->isNull());
        EXPECT_FALSE(f->rbSt->isChecked() || f->rbSp->isChecked());
        EXPECT_FALSE(shows(f->stSelect) || shows(f->spSelect));
        f->rbSp->click();
        EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), special.first());
    }
    {
        // A new record takes the standard rule it shows.
        test::BoundRecord h({"ROUND"}, {});
        h.record->append();
        TRound_LF* f = create(h.dialog);
        f->lcSelect->setDataField("ROUND");
        f->Init();
        EXPECT_TRUE(f->rbSt->isChecked() && shows(f->stSelect));
        EXPECT_EQ(f->stSelect->value(), -2);
        EXPECT_EQ(h.record->fieldByName("ROUND")->asInteger(), -2);
    }
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

TEST_F(RoundLookup, DialogButtonRunsTheRulesFormAndShowsTheChosenRule) {
    const QList<int> special = specialRules();
    ASSERT_GE(special.size(), 2);
    QWidget top;
    TRound_LF* f = create(&top);
    f->SetAsInteger(special.first());
    host->scriptRunResult(1, special.last());
    f->spSelect->OnDlgClick(f->spSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, QString("RoundAlg"));
    EXPECT_EQ(host->runs[0].params.KeyValue.toInt(), special.first());
    EXPECT_EQ(f->GetAsInteger(), special.last());
    EXPECT_EQ(f->spSelect->keyValue().toInt(), special.last());

    // The form may hand back a standard rule: the frame then shows the standard kind.
    host->scriptRunResult(1, 2);
    f->spSelect->OnDlgClick(f->spSelect);
    EXPECT_EQ(f->GetAsInteger(), 2);
    EXPECT_TRUE(f->rbSt->isChecked());
    EXPECT_EQ(f->stSelect->value(), 2);
}
