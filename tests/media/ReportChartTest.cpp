#include "frames/core/Registry.h"
#include "frames/media/EF_ReportChart.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTest>

using namespace frames;

namespace {

class ReportChart : public test::DbTest {
protected:
    std::unique_ptr<TReportChart_EF> make() {
        std::unique_ptr<TReportChart_EF> f(
            qobject_cast<TReportChart_EF*>(Registry::instance().create("TReportChart_EF", &top)));
        EXPECT_NE(f, nullptr);
        f->Init();
        return f;
    }
    // n rows with the values given, named "Фирма 1" ...
    void fill(const QList<double>& values) {
        rows.close();
        rows.clearFieldDefs();
        rows.addFieldDef("FIRM_NAME", db::FieldType::VarChar, 60);
        rows.addFieldDef("PAY_RUB", db::FieldType::Double);
        rows.open();
        for (int i = 0; i < values.size(); ++i)
            rows.appendRecord({QStringLiteral("Фирма %1").arg(i + 1), values[i]});
    }
    QWidget top;
    db::MemTable rows;
    db::DataSource source{&rows};
};

} // namespace

// Bars: the first N positions, never stretched past the last row; the limit follows the editor as
// the user types and the rows as they change.
TEST_F(ReportChart, BarsShowTheFirstNAndNeverPastTheLast) {
    QList<double> values;
    for (int i = 0; i < 25; ++i) values << 100 + i;
    fill(values);
    auto f = make();
    f->SetDataSource(&source);
    EXPECT_TRUE(f->pnRound->isVisibleTo(f.get()));
    EXPECT_FALSE(f->pnBrick->isVisibleTo(f.get()));
    f->cbChartType->setCurrentIndex(1);
    EXPECT_FALSE(f->pnRound->isVisibleTo(f.get()));
    EXPECT_TRUE(f->pnBrick->isVisibleTo(f.get()));
    EXPECT_EQ(f->VisibleBars(), 10);
    EXPECT_DOUBLE_EQ(f->BottomMax(), 10.5);
    EXPECT_DOUBLE_EQ(f->AutoMax, 25);

    f->ceNumVal->SetValue(40);
    EXPECT_DOUBLE_EQ(f->BottomMax(), 25.5);
    EXPECT_EQ(f->VisibleBars(), 25);

    // Typed: the limit follows each change; entering the editor remembers the count.
    top.show();
    QApplication::setActiveWindow(&top);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&top));
    QLineEdit* edit = f->ceNumVal->CalcEdit->lineEdit();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, "3");
    EXPECT_EQ(f->VisibleBars(), 3);
    EXPECT_DOUBLE_EQ(f->OldNum, 40);

    // Fewer rows than the limit: all of them, and no further.
    fill({5, 7});
    EXPECT_EQ(f->VisibleBars(), 2);
    EXPECT_DOUBLE_EQ(f->BottomMax(), 2.5);
}

// Pie: shares from the largest, every share below P percent drawn within "Остальное"; changing P
// regroups at once.
TEST_F(ReportChart, SmallSharesGoTogetherBelowTheThreshold) {
    // Of 100: 50, 30, 10, 5 (exactly 5 %: stays), 3, 2.
    fill({3, 50, 10, 2, 30, 5});
    auto f = make();
    f->SetDataSource(&source);
    using Slices = QList<QPair<QString, double>>;
    EXPECT_EQ(f->PieSlices(),
              (Slices{{"Фирма 2", 50}, {"Фирма 5", 30}, {"Фирма 3", 10}, {"Фирма 6", 5}, {"Остальное", 5}}));
    f->ceProcVal->SetValue(20);
    EXPECT_EQ(f->PieSlices(), (Slices{{"Фирма 2", 50}, {"Фирма 5", 30}, {"Остальное", 20}}));
    f->ceProcVal->SetValue(0);
    EXPECT_EQ(f->PieSlices().size(), 6);
    EXPECT_TRUE(host->messages.empty());
}

// A report's rows from the database: the chart reads the owner's dataset and redraws when it is
// opened again.
TEST_F(ReportChart, FollowsTheOwnersDataSet) {
    db::DataSet payments;
    payments.setDatabase(host->RvDatabase());
    payments.setTransaction(host->pfReadTransaction());
    payments.setSelectSql(
        "select first 12 NAME_CLIENTS as FIRM_NAME, cast(ID_CLIENTS * 10 as double precision) "
        "as PAY_RUB from CLIENTS where ID_CLIENTS > 0 order by ID_CLIENTS");
    payments.open();
    db::DataSource ds(&payments);
    auto f = make();
    f->SetDataSource(&ds);
    f->cbChartType->setCurrentIndex(1);
    EXPECT_EQ(f->VisibleBars(), 10);
    double total = 0;
    for (const auto& s : f->PieSlices()) total += s.second;
    EXPECT_DOUBLE_EQ(total,
                     scalar("select sum(ID_CLIENTS * 10) from (select first 12 ID_CLIENTS from CLIENTS "
                            "where ID_CLIENTS > 0 order by ID_CLIENTS)")
                         .toDouble());
    payments.setSelectSql(
        "select NAME_CLIENTS as FIRM_NAME, cast(1 as double precision) as PAY_RUB from CLIENTS "
        "where ID_CLIENTS between 1 and 3");
    payments.close();
    payments.open();
    EXPECT_EQ(f->VisibleBars(), 3);
}
