#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/lookup/LF_Abs.h"
#include "tests/support/DbFixture.h"

using namespace frames;

class LookupCatalogue : public test::DbTest {};

// Every registered lookup frame opens its list free-standing and its one-row select when bound to
// a viewed goods card; a statement that does not prepare names the frame.
TEST_F(LookupCatalogue, EveryLookupInitialisesFreeStandingAndBound) {
    TfmLayer1_FIB list;
    db::DataSet cards(host->RvDatabase(), host->pfReadTransaction());
    cards.setSelectSql("select * from CARD where ID_USER is not null order by ID");
    cards.open();
    ASSERT_FALSE(cards.isEmpty());
    db::DataSource source(&cards);
    list.SetCurrentSource(&source);
    auto* dialog = new TfmAbsEditDlg(&list);

    const QStringList classes = Registry::instance().classNames("lookup");
    ASSERT_GE(classes.size(), 5);
    for (const QString& cls : classes) {
        SCOPED_TRACE(cls.toStdString());
        QWidget top;
        std::unique_ptr<TAbsEditFrame> free(Registry::instance().create(cls, &top));
        auto* lf = qobject_cast<TAbs_LF*>(free.get());
        ASSERT_NE(lf, nullptr);
        EXPECT_FALSE(lf->Caption().isEmpty());
        ASSERT_TRUE(guard([&] { lf->Init(); })) << host->errors().join("\n").toStdString();
        EXPECT_GT(lf->pFIBDataSet1->recordCount(), 0);
        EXPECT_TRUE(lf->IsEmpty());

        std::unique_ptr<TAbsEditFrame> bound(Registry::instance().create(cls, dialog));
        auto* blf = qobject_cast<TAbs_LF*>(bound.get());
        if (!cards.findField(blf->lcSelect->dataField())) continue; // not a column of the card
        ASSERT_TRUE(guard([&] { blf->Init(); })) << host->errors().join("\n").toStdString();
        EXPECT_EQ(blf->lcSelect->dataSource(), &source);
        if (!cards.fieldByName(blf->lcSelect->dataField())->isNull()) {
            EXPECT_FALSE(blf->lcSelect->displayText().isEmpty());
        }
    }
}
