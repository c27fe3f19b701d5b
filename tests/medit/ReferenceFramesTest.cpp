// Mass edit of references: keys picked from lookup lists or from the classifier form, checked in
// the documents' rows after the update.
#include "frames/medit/ME_CardClassif.h"
#include "frames/medit/ME_ClassifComboEdit.h"
#include "frames/medit/ME_ComboColorEdit.h"
#include "frames/medit/ME_ComboEdit.h"
#include "frames/medit/ME_ComboEditFilial.h"
#include "frames/medit/ME_Edit.h"
#include "frames/medit/ME_LayerFrame.h"
#include "frames/medit/ME_RefAdd_ComboEdit.h"
#include "platform/widgets/ColorSwatch.h"
#include "tests/medit/MEditTestUtil.h"
#include <QLabel>

namespace frames::test {
namespace {

int rows(TAbs_LF* lf) {
    db::DataSet* ds = lf->pFIBDataSet1;
    return ds->active() ? ds->recordCount() : -1;
}

TEST_F(MassEditTest, ComboSendsTheKeyMinusOneForNoChoiceAndNullForPusto) {
    auto f = frameFor<TComboEdit_ME>("CUR_TYPE");
    ASSERT_GT(rows(f->lfNewValue), 2);
    EXPECT_GT(rows(f->lfOldValue), 2);
    EXPECT_FALSE(f->lfNewValue->lcSelect->showButton()); // the lists open no reference form
    EXPECT_FALSE(f->lfNewValue->lcSelect->OnDlgClick);
    const auto before = column("CUR_TYPE");

    // A key chosen but "Пусто" checked again: NULL.
    f->lfNewValue->lcSelect->setKeyValue(2);
    EXPECT_FALSE(f->chbNewNull->isChecked());
    f->chbNewNull->click();
    EXPECT_TRUE(f->chbNewNull->isChecked());
    EXPECT_TRUE(f->lfNewValue->lcSelect->displayText().isEmpty());
    EXPECT_EQ(apply(f.get(), {4}), 1);
    EXPECT_TRUE(sentNull(f.get(), "new_value"));
    EXPECT_TRUE(column("CUR_TYPE").at(4).isNull());

    // "Пусто" unchecked and nothing chosen: "-1", the agreed key for "no value".
    f->chbNewNull->click();
    EXPECT_FALSE(f->chbNewNull->isChecked());
    EXPECT_EQ(apply(f.get(), {4}), 1);
    EXPECT_EQ(sent(f.get(), "new_value").toString(), "-1");
    EXPECT_EQ(column("CUR_TYPE").at(4).toInt(), -1);

    // A key chosen, restricted to records holding the old key chosen in the second list.
    f->lfNewValue->lcSelect->setKeyValue(3);
    f->lfOldValue->lcSelect->setKeyValue(1);
    EXPECT_TRUE(f->chbUseOldValue->isChecked());
    QList<int> rub, all;
    for (const auto& [id, v] : before) {
        all << id;
        if (v.toInt() == 1 && id != 4) rub << id;
    }
    all.removeAll(4);
    EXPECT_EQ(apply(f.get(), all), rub.size());
    EXPECT_EQ(sent(f.get(), "new_value").toString(), "3");
    EXPECT_EQ(sent(f.get(), "old_value").toString(), "1");
    auto after = column("CUR_TYPE");
    after.erase(4);
    auto was = before;
    was.erase(4);
    expectOnlyChanged(was, after, rub);
}

TEST_F(MassEditTest, ListParametersAreNumberedFromOneWithoutGaps) {
    const QString csql = "CSQL=select ID_TH_CLASSIF as ID, NAME from TH_CLASSIF where PARENT_ID = :SHOP "
                         "and ID_TH_CLASSIF > :LOWEST order by NAME";
    // Both named: the run constant and a key of the parameter string.
    auto f = frameWith<TComboEdit_ME>("TComboEdit_ME",
                                      {csql, "PAR_1=SHOP", "PAR_2=LOWEST", "SHOP=1", "LOWEST=-1"});
    const int all = rows(f->lfNewValue);
    EXPECT_GT(all, 1);
    // PAR_1 missing: PAR_2 is not read either, and the list has no rows.
    auto g = frameWith<TComboEdit_ME>("TComboEdit_ME", {csql, "PAR_2=SHOP", "SHOP=1", "LOWEST=-1"});
    EXPECT_EQ(rows(g->lfNewValue), 0);
    // A name nobody knows is NULL.
    auto h = frameWith<TComboEdit_ME>("TComboEdit_ME", {csql, "PAR_1=SHOP", "PAR_2=LOWEST", "SHOP=1"});
    EXPECT_EQ(rows(h->lfNewValue), 0);
    EXPECT_TRUE(h->GetParamValue("NOBODY").isNull());
    EXPECT_EQ(h->GetParamValue("CUR_SHOPINDEX").toInt(), CUR_SHOPINDEX);
    // Without CSQL the lists keep what they had (nothing here).
    auto e = frameWith<TComboEdit_ME>("TComboEdit_ME", {"CSQL=  "});
    EXPECT_EQ(rows(e->lfNewValue), -1);
}

TEST_F(MassEditTest, BranchFrameMarks666WhileNoNewBranchIsChosen) {
    auto f = frameFor<TComboEditFilial_ME>("ID_FILIAL");
    EXPECT_EQ(f->Tag(), 666);
    db::DataSet* ds = f->lfNewValue->pFIBDataSet1;
    ASSERT_GT(rows(f->lfNewValue), 0);
    ds->first();
    const int branch = ds->fieldByName("ID")->asInteger();
    f->lfNewValue->lcSelect->setKeyValue(branch);
    EXPECT_EQ(f->Tag(), 0);
    f->chbNewNull->click();
    EXPECT_EQ(f->Tag(), 666);
    f->lfNewValue->lcSelect->setKeyValue(branch);
    EXPECT_EQ(apply(f.get(), {9, 10}), 2);
    EXPECT_EQ(column("ID_FILIAL").at(10).toInt(), branch);
}

TEST_F(MassEditTest, AdditionalReferenceListsOneKindAndSendsIt) {
    auto f = frameFor<TRefAdd_ComboEdit_ME>("ID_SEASON");
    db::DataSet* ds = f->lfNewValue->pFIBDataSet1;
    ASSERT_GT(rows(f->lfNewValue), 0);
    EXPECT_EQ(ds->paramByName("KIND")->value().toInt(), 1);
    const int kindRows = scalar("select count(*) from TYREF_ADD_DATA where KIND = 1").toInt();
    EXPECT_EQ(rows(f->lfNewValue), kindRows);
    f->lfNewValue->lcSelect->setKeyValue(3);
    EXPECT_EQ(apply(f.get(), {1, 2}), 2);
    EXPECT_EQ(sent(f.get(), "KIND").toInt(), 1);
    EXPECT_EQ(f->pfUpdate->findParam("fieldname"), nullptr);
    EXPECT_EQ(column("ID_SEASON").at(2).toInt(), 3);
    // "-1" (no value chosen) is NULL for a reference without a row -1.
    f->chbNewNull->click();
    f->chbNewNull->click();
    EXPECT_EQ(apply(f.get(), {2}), 1);
    EXPECT_TRUE(column("ID_SEASON").at(2).isNull());

    // A kind that is not a number is an error before anything runs.
    auto bad = frameWith<TRefAdd_ComboEdit_ME>(
        "TRefAdd_ComboEdit_ME",
        {"SQL=" + workbench::massEditStatement(workbench::documentMassEdit(), "ID_SEASON").replace('\n', ' '),
         "REFADD_KIND=сезон"});
    EXPECT_THROW(apply(bad.get(), {2}), std::exception);
}

TEST_F(MassEditTest, ColourSwatchHasATealRingAWhiteRingAndTheColour) {
    auto f = frameFor<TComboColorEdit_ME>("ID_COLOR");
    ASSERT_EQ(f->Bitmap.size(), QSize(30, 12));
    db::DataSet* ds = f->lfNewValue->pFIBDataSet1;
    ds->first();
    const qint64 bgr = ds->fieldByName("COLOR")->asInt64();
    QImage image;
    int margin = 0;
    f->lfNewValuelcSelectGetImage(f->lfNewValue->lcSelect, false, image, margin);
    ASSERT_EQ(image.size(), QSize(30, 12));
    EXPECT_EQ(margin, 30);
    const QColor teal(0x00, 0x80, 0x80), white(255, 255, 255), fill = ui::colorFromBgr(bgr);
    int tealCount = 0, whiteCount = 0, fillCount = 0;
    for (int x = 0; x < 30; ++x)
        for (int y = 0; y < 12; ++y) {
            const QColor c = image.pixelColor(x, y);
            const bool outer = x == 0 || x == 29 || y == 0 || y == 11;
            const bool inner = !outer && (x == 1 || x == 28 || y == 1 || y == 10);
            const QColor expected = outer ? teal : inner ? white : fill;
            EXPECT_EQ(c.rgb(), expected.rgb()) << x << "," << y;
            tealCount += outer;
            whiteCount += inner;
            fillCount += !outer && !inner;
        }
    EXPECT_EQ(fillCount, 26 * 8);
    // The empty entry takes the window colour; a row without a colour gets no swatch.
    f->lfOldValuelcSelectGetImage(f->lfOldValue->lcSelect, true, image, margin);
    EXPECT_EQ(image.pixelColor(15, 6).rgb(), f->palette().color(QPalette::Base).rgb());
    auto nulls = frameWith<TComboColorEdit_ME>(
        "TComboColorEdit_ME", {"CSQL=select ID, NAME, cast(null as integer) as COLOR from COLOR"});
    QImage none;
    margin = 0;
    nulls->lfNewValuelcSelectGetImage(nulls->lfNewValue->lcSelect, false, none, margin);
    EXPECT_TRUE(none.isNull());
    EXPECT_EQ(margin, 0);
    // The lists draw it for their rows.
    EXPECT_FALSE(f->lfNewValue->lcSelect->OnGetImage(f->lfNewValue->lcSelect, 0).isNull());

    f->lfNewValue->lcSelect->setKeyValue(ds->fieldByName("ID")->value());
    EXPECT_EQ(apply(f.get(), {5}), 1);
    EXPECT_EQ(column("ID_COLOR").at(5), ds->fieldByName("ID")->value());
}

TEST_F(MassEditTest, ClassifierComboListsOneTypeAndTakesTheBranchFromTheForm) {
    auto f = frameFor<TClassifComboEdit_ME>("ID_CLASSIF");
    EXPECT_EQ(f->ClassifType(), 0);
    const int goods =
        scalar("select count(*) from CLASSIF where ID_CLASSIF_TYPE = 0 and ID_CLASSIF > -1").toInt();
    EXPECT_EQ(rows(f->lfNewValue), goods);
    EXPECT_TRUE(f->lfOldValue->lcSelect->showButton());

    // The form runs on the combo's branch and with the type; its choice becomes the value.
    host->scriptRun([](const QString&, TRunParams& p) {
        p.KeyValue = 5;
        p.KeyInt = 5;
        p.ResultInt = 5;
        return 1;
    });
    f->lfNewValue->lcSelect->OnDlgClick(f->lfNewValue->lcSelect);
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, "QucikClassifForm");
    EXPECT_EQ(host->runs[0].params.ResultInt, 0);
    EXPECT_EQ(host->runs[0].params.KeyInt, -1);
    EXPECT_EQ(f->lfNewValue->lcSelect->keyValue().toInt(), 5);
    EXPECT_FALSE(f->chbNewNull->isChecked());
    // Cancel keeps the value.
    host->scriptRunResult(2);
    f->lfNewValue->lcSelect->OnDlgClick(f->lfNewValue->lcSelect);
    EXPECT_EQ(host->runs[1].params.KeyInt, 5);
    EXPECT_EQ(f->lfNewValue->lcSelect->keyValue().toInt(), 5);
    EXPECT_EQ(apply(f.get(), {6, 7}), 2);
    EXPECT_EQ(column("ID_CLASSIF").at(7).toInt(), 5);

    // A type that is not a number leaves the type as it was.
    auto g = frameWith<TClassifComboEdit_ME>("TClassifComboEdit_ME", {"TYPE_CLASSIF=1"});
    g->SetParams("TYPE_CLASSIF=один");
    EXPECT_EQ(g->ClassifType(), 1);
}

TEST_F(MassEditTest, CardClassifierSendsPickedKeysAndEmptyTextForNone) {
    auto f = frameFor<TCardClassif_ME>("ID_CARD_CLASSIF");
    const auto before = column("ID_CARD_CLASSIF");
    host->scriptRun([](const QString&, TRunParams& p) {
        p.KeyValue = 4;
        p.KeyInt = 4;
        p.ResultInt = 4;
        return 1;
    });
    f->sbNewValue->click();
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].params.KeyFieldName, "NAME_CLASSIF");
    EXPECT_EQ(host->runs[0].params.Mode, 1);
    EXPECT_EQ(host->runs[0].params.KeyInt, -1);
    EXPECT_EQ(f->NewKey().toInt(), 4);
    EXPECT_EQ(f->mefNewValue->Text(),
              scalar("select NAME_CLASSIF from CLASSIF where ID_CLASSIF = 4").toString());
    // Cancelling keeps the key and the text.
    host->scriptRunResult(2);
    f->sbNewValue->click();
    EXPECT_EQ(host->runs[1].params.KeyInt, 4);
    EXPECT_EQ(f->NewKey().toInt(), 4);
    EXPECT_FALSE(f->mefNewValue->Text().isEmpty());

    // No old key picked: "" (not NULL); the restriction is off.
    EXPECT_EQ(apply(f.get(), {1, 5}), 2);
    EXPECT_EQ(sent(f.get(), "old_value").toString(), "");
    EXPECT_FALSE(sentNull(f.get(), "old_value"));
    EXPECT_EQ(sent(f.get(), "use_old_value").toString(), "F");
    EXPECT_EQ(column("ID_CARD_CLASSIF").at(5).toInt(), 4);

    // Picking an old key turns the restriction on: only records holding it change.
    host->scriptRun([&](const QString&, TRunParams& p) {
        p.KeyValue = 3;
        return 1;
    });
    f->sbOldValue->click();
    EXPECT_TRUE(f->chbUseOldValue->isChecked());
    const auto mid = column("ID_CARD_CLASSIF");
    QList<int> threes;
    for (const auto& [id, v] : mid)
        if (!v.isNull() && v.toInt() == 3) threes << id;
    ASSERT_FALSE(threes.isEmpty());
    EXPECT_EQ(apply(f.get(), {1, 2, 3, 4, 5}), threes.size());
    expectOnlyChanged(mid, column("ID_CARD_CLASSIF"), threes);
    Q_UNUSED(before);
}

// A host form a mass-edit frame embeds: it fills the new value itself and may refuse.
class NoteLayer : public TfmAbsGrid_ME {
public:
    NoteLayer() {
        hiddenButton = new QLabel("Кнопки формы", this);
        setGeometry(10, 20, 300, 200);
    }
    void TakeParams(TRunParams&) override { calls << "params"; }
    void InitLayer(TRunParams&) override { calls << "init"; }
    void OpenData() override { calls << "open"; }
    void PrepareChanges() override { calls << "prepare"; }
    bool CheckChanges() override { return allow; }
    void FillUpdateParams(db::Query* q) override { q->paramByName("new_value")->setValue(note); }
    QWidget* LayerHiddenControl() const override { return hiddenButton; }
    QStringList calls;
    bool allow = true;
    QString note = "Из формы";
    QLabel* hiddenButton;
};

class LayerHost : public TestHost {
public:
    using TestHost::TestHost;
    QObject* RvGetForm(const QString& name) override {
        return name == "NoteLayer" ? &layer : TestHost::RvGetForm(name);
    }
    NoteLayer layer;
};

TEST_F(MassEditTest, LayerFrameEmbedsTheHostFormAndLetsItRefuse) {
    LayerHost h(databasePath());
    const QString sql = "SQL=update PAYMENT_DOC d set d.ARTICUL = cast(:new_value as varchar(30)) where "
                        "d.ID_PAYMENT_DOC in (select RECORD_ID from MEDIT_MARKS where SESSION_ID = :session)";
    {
        auto f = frameWith<TLayerFrame_ME>("TLayerFrame_ME", {sql, "ClassID=NoteLayer", "delother=1"});
        EXPECT_EQ(f->Form(), &h.layer);
        EXPECT_EQ(h.layer.parentWidget(), f->pnLayer);
        EXPECT_TRUE(h.layer.Embedded);
        EXPECT_TRUE(h.layer.hiddenButton->isHidden());
        EXPECT_EQ(h.layer.calls, QStringList({"params", "init", "open"}));
        EXPECT_EQ(f->FormBounds(), QRect(10, 20, 300, 200));

        h.layer.allow = false;
        EXPECT_EQ(apply(f.get(), {1}), -1);
        EXPECT_EQ(h.layer.calls.last(), "prepare");
        EXPECT_EQ(f->Values("DelOther"), "1"); // nothing ran: the one-off parameter stays
        EXPECT_NE(column("ARTICUL").at(1).toString(), "Из формы");
        h.layer.allow = true;
        EXPECT_EQ(apply(f.get(), {1}), 1);
        EXPECT_EQ(column("ARTICUL").at(1).toString(), "Из формы");
        EXPECT_EQ(f->Values("DelOther"), "");
        EXPECT_EQ(f->Values("ClassID"), "NoteLayer");
        f->FormClose();
        EXPECT_EQ(h.layer.parentWidget(), nullptr);
        EXPECT_FALSE(h.layer.Embedded);
        EXPECT_EQ(h.layer.geometry(), QRect(10, 20, 300, 200));
    }
    // An unknown class id leaves the panel empty: a plain update.
    auto plain = frameWith<TLayerFrame_ME>("TLayerFrame_ME", {sql, "ClassID=Nothing"});
    EXPECT_EQ(plain->Form(), nullptr);
    EXPECT_EQ(apply(plain.get(), {2}), 1);
    EXPECT_TRUE(column("ARTICUL").at(2).isNull());
    EXPECT_THROW(plain->CreateFormId(1, plain->pnLayer, "NoteLayer"), std::out_of_range);
    setHost(host.get());
}

TEST_F(MassEditTest, AFailureInTheMiddleChangesNothing) {
    // Taking 20000 off every amount breaks the check on the smaller ones, after the larger ones
    // were already written in the same statement.
    auto f = frameWith<TEdit_ME>(
        "TEdit_ME", {"SQL=update PAYMENT_DOC d set d.AMOUNT = d.AMOUNT - 20000 where d.ID_PAYMENT_DOC in "
                     "(select RECORD_ID from MEDIT_MARKS where SESSION_ID = :session) and :new_value is null "
                     "and :old_value is null and :use_old_value = 'F'"});
    const auto before = column("AMOUNT");
    QList<int> all;
    int small = 0, large = 0;
    for (const auto& [id, v] : before) {
        all << id;
        (v.toDouble() < 20000 ? small : large)++;
    }
    ASSERT_GT(small, 0);
    ASSERT_GT(large, 0);
    EXPECT_THROW(apply(f.get(), all), db::Error);
    EXPECT_EQ(column("AMOUNT"), before);
    EXPECT_EQ(marksLeft(), 0);
    EXPECT_FALSE(f->pfTransaction->active());

    // The host's statement refuses a column other than the frame's, and names no column it does
    // not know.
    EXPECT_THROW(workbench::massEditStatement(workbench::documentMassEdit(), "AMOUNT; drop table X"),
                 std::invalid_argument);
    auto wrong = frameFor<TEdit_ME>("STATUS");
    wrong->SetParams(workbench::massEditParams(workbench::documentMassEdit(), "STATUS")
                         .replace("FIELDNAME=STATUS", "FIELDNAME=ARTICUL"));
    EXPECT_EQ(apply(wrong.get(), {1, 2}), 0);
}

} // namespace
} // namespace frames::test
