#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_AddClassif.h"
#include "frames/lookup/LF_Classif.h"
#include "frames/lookup/LF_ClassifFull.h"
#include "tests/lookup/BoundRecord.h"
#include "tests/support/DbFixture.h"
#include <QComboBox>
#include <QTest>
#include <QToolButton>

using namespace frames;

namespace {

using test::makeFrame;

// Classifier lookups on an edit dialog over a list form whose current record carries a branch
// (ID_CLASSIF), a classifier type (ID_CLASSIF_TYPE) and an additional classifier (AddClassif).
class ClassifLookups : public test::DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        savedType = GLOBAL_PAR_CLASSIF_TYPE;
        savedSetFor = GLOBAL_PAR_SET_FOR;
        GLOBAL_PAR_CLASSIF_TYPE = 0; // the goods classifier
        GLOBAL_PAR_SET_FOR = 0;
        bound = std::make_unique<test::BoundRecord>(
            QStringList{"ID_CLASSIF", "ID_CLASSIF_TYPE", "AddClassif"}, QVariantList{});
        list = &bound->list;
        record = bound->record;
        source = bound->source;
        dialog = bound->dialog;
        goodsRoot =
            scalar("select ID_CLASSIF from CLASSIF where ID_CLASSIF_TYPE=0 and PARENT_CLASSIF=-1").toInt();
        goodsLeaf =
            scalar("select first 1 c.ID_CLASSIF from CLASSIF c where c.ID_CLASSIF_TYPE=0 and not exists "
                   "(select 1 from CLASSIF d where d.PARENT_CLASSIF=c.ID_CLASSIF) order by c.ID_CLASSIF")
                .toInt();
    }
    void TearDown() override {
        bound.reset();
        GLOBAL_PAR_CLASSIF_TYPE = savedType;
        GLOBAL_PAR_SET_FOR = savedSetFor;
        DbTest::TearDown();
    }
    QString branchName(int id) const {
        return scalar("select NAME_CLASSIF from CLASSIF where ID_CLASSIF=" + QString::number(id)).toString();
    }
    int branchCount(int type) const {
        return scalar("select count(*) from CLASSIF_VIEW where ID_CLASSIF_TYPE=" + QString::number(type) +
                      " and ID_CLASSIF>-1")
            .toInt();
    }
    // The tree form answers with result and, unless it cancels, the branch.
    void answer(int result, int branch) {
        host->scriptRun([=](const QString&, TRunParams& p) {
            if (result != 2) p.ResultInt = branch;
            return result;
        });
    }
    static bool dontAcceptRoot(const TRunParams& p) {
        const TVarParams::Param* dar = p.Params ? p.Params->Find("DONT_ACCEPT_ROOT") : nullptr;
        return dar && dar->Value.toBool();
    }

    int savedType = 0, savedSetFor = 0;
    std::unique_ptr<test::BoundRecord> bound;
    TfmLayer1_FIB* list = nullptr;
    db::MemTable* record = nullptr;
    db::DataSource* source = nullptr;
    TfmAbsEditDlg* dialog = nullptr;
    int goodsRoot = 0, goodsLeaf = 0;
};

} // namespace

// The branch of the viewed record is the only row read; a record without a branch reads none.
// The drop-down arrow runs the tree form and the combo's own list never opens; the dialog button
// is not offered.
TEST_F(ClassifLookups, ClassifShowsTheRecordsBranchAndItsDropDownOpensTheTreeForm) {
    record->appendRecord({goodsLeaf, 0, 0});
    auto* f = makeFrame<TClassif_LF>("TClassif_LF", dialog);
    f->Init();
    EXPECT_EQ(f->lcSelect->dataSource(), source);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), 1);
    EXPECT_EQ(f->lcSelect->displayText(), branchName(goodsLeaf));
    EXPECT_FALSE(f->lcSelect->showButton());

    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Down, Qt::AltModifier);
    f->lcSelect->dropDown();
    EXPECT_FALSE(f->lcSelect->isDroppedDown());
    ASSERT_EQ(host->runs.size(), 2u);
    const TRunParams& p = host->runs[0].params;
    EXPECT_EQ(host->runs[0].formName, "QucikClassifForm");
    EXPECT_EQ(p.ResultInt, 0); // the classifier type in force
    EXPECT_EQ(p.KeyInt, goodsLeaf);
    ASSERT_TRUE(p.Params);
    EXPECT_NE(p.Params->Find("DONT_ACCEPT_ROOT"), nullptr);
    EXPECT_FALSE(dontAcceptRoot(p));
    EXPECT_FALSE(f->RunParams.Params); // the parameters lived for the run only
    EXPECT_TRUE(f->Chosen);            // even though both runs were cancelled
    EXPECT_EQ(record->state(), db::DataSetState::Browse);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();

    // No branch: nothing is read, nothing shown, and the tree form is told there is no branch.
    record->emptyTable();
    record->appendRecord({QVariant(), 0, 0});
    auto* none = makeFrame<TClassif_LF>("TClassif_LF", dialog);
    none->ClassifType = 77;
    none->DontAcceptRoot = true;
    none->Init();
    EXPECT_EQ(none->ClassifType, 0);
    EXPECT_FALSE(none->Chosen);
    EXPECT_EQ(none->pFIBDataSet1->paramByName("ID_CLASSIF")->value().toInt(), -1);
    EXPECT_EQ(none->lcSelect->displayText(), "");
    EXPECT_TRUE(none->IsEmpty());
    none->DontAcceptRoot = true;
    none->lcSelect->dropDown();
    ASSERT_EQ(host->runs.size(), 3u);
    EXPECT_EQ(host->runs[2].params.KeyInt, -1);
    EXPECT_TRUE(dontAcceptRoot(host->runs[2].params));
}

// Cancel (2) leaves everything as it was; every other result is an answer.
TEST_F(ClassifLookups, ClassifTakesAnyResultButCancel) {
    record->appendRecord({goodsLeaf, 0, 0});
    auto* f = makeFrame<TClassif_LF>("TClassif_LF", dialog);
    f->Init();
    int changes = 0;
    f->lcSelect->OnChange = [&](QObject*) { ++changes; };

    answer(2, goodsRoot);
    f->lcSelect->dropDown();
    EXPECT_EQ(record->state(), db::DataSetState::Browse);
    EXPECT_EQ(record->fieldByName("ID_CLASSIF")->asInteger(), goodsLeaf);
    EXPECT_EQ(changes, 0);

    for (int result : {1, 0, 3}) {
        const int branch = result == 1 ? goodsRoot : goodsLeaf;
        answer(result, branch);
        f->lcSelect->dropDown();
        EXPECT_EQ(record->state(), db::DataSetState::Edit) << result;
        EXPECT_EQ(record->fieldByName("ID_CLASSIF")->asInteger(), branch) << result;
        EXPECT_EQ(f->pFIBDataSet1->recordCount(), 1) << result;
        EXPECT_EQ(f->lcSelect->displayText(), branchName(branch)) << result;
    }
    EXPECT_EQ(changes, 3);

    // Free-standing: the chosen branch is read and becomes the combo's key.
    QWidget top;
    auto* free = makeFrame<TClassif_LF>("TClassif_LF", &top);
    free->Init();
    EXPECT_EQ(free->pFIBDataSet1->recordCount(), 0);
    answer(5, goodsLeaf);
    free->lcSelect->dropDown();
    EXPECT_EQ(free->lcSelect->keyValue().toInt(), goodsLeaf);
    EXPECT_EQ(free->lcSelect->displayText(), branchName(goodsLeaf));
    EXPECT_EQ(host->runs.back().params.KeyInt, -1);
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// A read-only frame opens no tree form, by the drop-down or by any dialog.
TEST_F(ClassifLookups, ReadOnlyFramesOpenNothing) {
    record->appendRecord({goodsLeaf, 0, 0});
    auto* classif = makeFrame<TClassif_LF>("TClassif_LF", dialog);
    auto* full = makeFrame<TClassifFull_LF>("TClassifFull_LF", dialog);
    auto* afull = makeFrame<TAClassifFull_LF>("TAClassifFull_LF", dialog);
    for (TAbs_LF* f : std::initializer_list<TAbs_LF*>{classif, full, afull}) {
        f->Init();
        f->SetReadOnly(true);
    }
    record->edit();
    record->fieldByName("ID_CLASSIF_TYPE")->setValue(1001);
    record->post();
    classif->lcSelect->dropDown();
    EXPECT_FALSE(guard([&] { classif->lcSelectDlgClick(classif->lcSelect); }));
    EXPECT_FALSE(guard([&] { full->lcSelectDlgClick(full->lcSelect); }));
    EXPECT_FALSE(guard([&] { afull->lcSelectDlgClick(afull->lcSelect); }));
    EXPECT_TRUE(host->runs.empty());
    EXPECT_TRUE(host->messages.empty());
    EXPECT_TRUE(full->lcSelect2->isReadOnly());
    EXPECT_EQ(record->state(), db::DataSetState::Browse);
}

// The type list is the subset in force; the branch list follows the chosen type; the tree form
// gets the type and the branch and its answer goes into the record.
TEST_F(ClassifLookups, ClassifFullListsTheBranchesOfTheChosenType) {
    const int clientsType =
        scalar("select min(ID_CLASSIF_TYPE) from CLASSIF_TYPE_VIEW where SET_FOR=1").toInt();
    record->appendRecord({goodsLeaf, clientsType, 0});
    auto* f = makeFrame<TClassifFull_LF>("TClassifFull_LF", dialog);
    f->Init();
    EXPECT_EQ(f->pFIBDataSet2->recordCount(),
              scalar("select count(*) from CLASSIF_TYPE_VIEW where SET_FOR=0").toInt());
    // The record has a type column, but the plain frame's type combo is not bound to it.
    EXPECT_EQ(f->lcSelect2->dataSource(), nullptr);
    EXPECT_EQ(f->lcSelect2->keyValue().toInt(), 0);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), branchCount(0));
    EXPECT_EQ(f->lcSelect->displayText(), branchName(goodsLeaf));

    const int otherType = scalar("select min(ID_CLASSIF_TYPE) from CLASSIF_TYPE_VIEW where SET_FOR=0 and "
                                 "ID_CLASSIF_TYPE<>0 and exists (select 1 from CLASSIF c where "
                                 "c.ID_CLASSIF_TYPE=CLASSIF_TYPE_VIEW.ID_CLASSIF_TYPE)")
                              .toInt();
    ASSERT_GT(otherType, 0);
    f->lcSelect2->setKeyValue(otherType);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), branchCount(otherType));
    EXPECT_EQ(f->lcSelect->displayText(), ""); // the record's branch is of the other type

    answer(2, goodsRoot);
    f->lcSelect->button()->click();
    ASSERT_EQ(host->runs.size(), 1u);
    EXPECT_EQ(host->runs[0].formName, "QucikClassifForm");
    EXPECT_EQ(host->runs[0].params.ResultInt, otherType);
    EXPECT_EQ(host->runs[0].params.KeyInt, goodsLeaf);
    EXPECT_EQ(record->state(), db::DataSetState::Browse);

    const int otherBranch =
        scalar("select min(ID_CLASSIF) from CLASSIF where ID_CLASSIF_TYPE=" + QString::number(otherType))
            .toInt();
    answer(0, otherBranch);
    f->lcSelect->button()->click();
    EXPECT_EQ(record->state(), db::DataSetState::Edit);
    EXPECT_EQ(record->fieldByName("ID_CLASSIF")->asInteger(), otherBranch);
    EXPECT_EQ(f->lcSelect->displayText(), branchName(otherBranch));
    record->cancel();
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// Additional classifiers only, the list form's own type left out; the type comes from the record,
// and without one nothing is listed and the dialog does nothing.
TEST_F(ClassifLookups, AClassifFullFollowsTheRecordsAdditionalType) {
    const int ownType =
        scalar("select min(ID_CLASSIF_TYPE) from CLASSIF_TYPE where ID_CLASSIF_TYPE>1000").toInt();
    const int addType =
        scalar("select min(t.ID_CLASSIF_TYPE) from CLASSIF_TYPE t where t.ID_CLASSIF_TYPE>" +
               QString::number(ownType) +
               " and exists (select 1 from CLASSIF c where c.ID_CLASSIF_TYPE=t.ID_CLASSIF_TYPE)")
            .toInt();
    ASSERT_GT(addType, ownType);
    list->SetRefNumber(ownType);
    record->appendRecord({QVariant(), QVariant(), 0});
    auto* f = makeFrame<TAClassifFull_LF>("TAClassifFull_LF", dialog);
    f->Init();
    EXPECT_EQ(f->pFIBDataSet2->paramByName("Classif_Type1")->value().toInt(), ownType);
    EXPECT_EQ(f->pFIBDataSet2->recordCount(),
              scalar("select count(*) from CLASSIF_TYPE where ID_CLASSIF_TYPE>1000").toInt() - 1);
    EXPECT_EQ(f->lcSelect2->dataSource(), source);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), 0);
    answer(1, goodsLeaf);
    f->lcSelect->button()->click();
    EXPECT_TRUE(host->runs.empty());
    EXPECT_EQ(record->state(), db::DataSetState::Browse);
    host->scripts.clear();

    // The user picks a type: it goes into the record and the branches follow it.
    f->lcSelect2->setKeyValue(addType);
    EXPECT_EQ(record->fieldByName("ID_CLASSIF_TYPE")->asInteger(), addType);
    EXPECT_EQ(f->pFIBDataSet1->recordCount(), branchCount(addType));
    const int branch =
        scalar("select max(ID_CLASSIF) from CLASSIF where ID_CLASSIF_TYPE=" + QString::number(addType))
            .toInt();
    f->RunParams.FormFound = 1;
    answer(1, branch);
    f->lcSelect->button()->click();
    ASSERT_EQ(host->runs.size(), 1u);
    const TRunParams& p = host->runs[0].params;
    EXPECT_EQ(p.FormFound, 0); // the block was reset before the run
    EXPECT_EQ(p.Mode, 1);
    EXPECT_EQ(p.ResultInt, addType);
    EXPECT_EQ(p.KeyInt, -1);
    EXPECT_EQ(record->fieldByName("ID_CLASSIF")->asInteger(), branch);
    EXPECT_EQ(f->lcSelect->displayText(), branchName(branch));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}

// Emptying the additional classifier stores type 0 ("none"), never null.
TEST_F(ClassifLookups, ClearingTheAdditionalClassifierStoresZero) {
    const int addType =
        scalar("select min(ID_CLASSIF_TYPE) from CLASSIF_TYPE where ID_CLASSIF_TYPE>1000").toInt();
    record->appendRecord({goodsLeaf, 0, addType});
    auto* f = makeFrame<TAddClassif_LF>("TAddClassif_LF", dialog);
    f->Init();
    EXPECT_EQ(
        f->lcSelect->displayText(),
        scalar("select NAME_CLASSIF_TYPE from CLASSIF_TYPE where ID_CLASSIF_TYPE=" + QString::number(addType))
            .toString());
    QTest::keyClick(f->lcSelect->comboBox(), Qt::Key_Delete);
    EXPECT_FALSE(record->fieldByName("AddClassif")->isNull());
    EXPECT_EQ(record->fieldByName("AddClassif")->asInteger(), 0);
    EXPECT_EQ(f->lcSelect->displayText(),
              scalar("select NAME_CLASSIF_TYPE from CLASSIF_TYPE where ID_CLASSIF_TYPE=0").toString());
    EXPECT_FALSE(f->IsEmpty());

    QWidget top;
    auto* free = makeFrame<TAddClassif_LF>("TAddClassif_LF", &top);
    free->Init();
    free->lcSelect->setKeyValue(addType);
    free->lcSelect->setKeyValue(QVariant());
    EXPECT_EQ(free->lcSelect->keyValue(), QVariant(0));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join("\n").toStdString();
}
