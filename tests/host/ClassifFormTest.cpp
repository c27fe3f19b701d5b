// The workbench's classifier tree form and its place in the module runner.
#include "host/ClassifForm.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include "frames/lookup/LF_Classif.h"
#include "host/HostImpl.h"
#include "platform/widgets/ClassifTreeView.h"
#include "tests/host/WorkbenchFixture.h"
#include "tests/support/DbFixture.h"
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace frames::test {
namespace {

using workbench::ClassifForm;

class ClassifTreeForm : public DbTest {
protected:
    void SetUp() override {
        DbTest::SetUp();
        root = scalar("select ID_CLASSIF from CLASSIF where ID_CLASSIF_TYPE=0 and PARENT_CLASSIF=-1").toInt();
        // A branch three levels down, and its parent.
        deep =
            scalar(
                "select first 1 c3.ID_CLASSIF from CLASSIF c1 join CLASSIF c2 on c2.PARENT_CLASSIF="
                "c1.ID_CLASSIF join CLASSIF c3 on c3.PARENT_CLASSIF=c2.ID_CLASSIF where c1.ID_CLASSIF_TYPE=0 "
                "and c1.PARENT_CLASSIF=-1 order by c3.ID_CLASSIF")
                .toInt();
        deepParent =
            scalar("select PARENT_CLASSIF from CLASSIF where ID_CLASSIF=" + QString::number(deep)).toInt();
    }
    TRunParams params(int type, int key, std::optional<bool> dontAcceptRoot = {}) {
        TRunParams p;
        p.ResultInt = type;
        p.KeyInt = key;
        if (dontAcceptRoot) p.EnsureParams().ByName("DONT_ACCEPT_ROOT").Value = *dontAcceptRoot;
        return p;
    }
    std::unique_ptr<ClassifForm> form(TRunParams& p) {
        auto f = std::make_unique<ClassifForm>(host->RvDatabase(), host->pfReadTransaction(), p);
        f->open();
        f->show();
        return f;
    }
    QString name(int id) const {
        return scalar("select NAME_CLASSIF from CLASSIF where ID_CLASSIF=" + QString::number(id)).toString();
    }
    int root = 0, deep = 0, deepParent = 0;
};

TEST_F(ClassifTreeForm, ShowsTheTypesTreeOpenOnTheCallersBranch) {
    ASSERT_GT(deep, 0);
    TRunParams p = params(0, deep);
    auto f = form(p);
    EXPECT_EQ(f->windowTitle(),
              "Классификатор: " +
                  scalar("select NAME_CLASSIF_TYPE from CLASSIF_TYPE where ID_CLASSIF_TYPE=0").toString());
    ui::ClassifTreeView* tree = f->tree();
    EXPECT_EQ(tree->nodeCount(),
              scalar("select count(*) from CLASSIF_VIEW where ID_CLASSIF_TYPE=0 and ID_CLASSIF>-1").toInt());
    // One root: the type's top branch.
    ASSERT_EQ(tree->childNodes(-1).size(), 1);
    EXPECT_EQ(tree->nodeKey(tree->childNodes(-1).first()), root);
    EXPECT_EQ(f->currentKey(), deep);
    EXPECT_TRUE(tree->isExpanded(tree->indexOfNode(tree->findNode(deepParent))));
    const int otherTypes = scalar("select first 1 ID_CLASSIF from CLASSIF where ID_CLASSIF_TYPE<>0 and "
                                  "ID_CLASSIF>-1")
                               .toInt();
    EXPECT_EQ(tree->findNode(otherTypes), -1);

    // Without a current branch (or with one of another tree) the form opens on the root.
    for (int key : {-1, otherTypes}) {
        TRunParams none = params(0, key);
        auto g = form(none);
        EXPECT_EQ(g->currentKey(), root) << key;
        EXPECT_TRUE(g->tree()->isExpanded(g->tree()->indexOfNode(g->tree()->findNode(root)))) << key;
    }

    // A type without branches shows an empty tree and nothing can be confirmed.
    TRunParams empty = params(-12345, -1);
    auto e = form(empty);
    EXPECT_EQ(e->tree()->nodeCount(), 0);
    EXPECT_FALSE(e->okButton()->isEnabled());
    e->confirm();
    EXPECT_EQ(e->result(), 0);
    EXPECT_TRUE(host->messages.empty());
}

TEST_F(ClassifTreeForm, SearchMovesThroughMatchesAndOkReturnsTheBranch) {
    TRunParams p = params(0, -1);
    auto f = form(p);
    const QString target = name(deep);
    const QString part = target.left(qMin(4, int(target.size()))).toUpper();
    for (const QChar c : part) // typed: QTest::keyClicks knows only Latin-1 letters
        QTest::sendKeyEvent(QTest::Click, f->searchEdit(), Qt::Key_unknown, QString(c), Qt::NoModifier);
    EXPECT_EQ(f->searchEdit()->text(), part);
    ASSERT_TRUE(f->currentKey().has_value());
    const int first = *f->currentKey();
    EXPECT_TRUE(name(first).contains(part, Qt::CaseInsensitive));
    EXPECT_TRUE(f->searchState()->text().isEmpty());
    // Enter in the search box goes on to the next match, and round to the first again.
    const int matches = scalar("select count(*) from CLASSIF where ID_CLASSIF_TYPE=0 and NAME_CLASSIF "
                               "containing " +
                               StrParam(part))
                            .toInt();
    for (int i = 0; i < matches; ++i) QTest::keyClick(f->searchEdit(), Qt::Key_Return);
    EXPECT_EQ(f->currentKey(), first);
    EXPECT_EQ(f->result(), 0); // Enter in the search box does not close the form

    f->setSearchText("нет такой ветви");
    EXPECT_EQ(f->currentKey(), first);
    EXPECT_EQ(f->searchState()->text(), "не найдено");

    ASSERT_TRUE(f->setCurrentKey(deep));
    QTest::mouseClick(f->okButton(), Qt::LeftButton);
    EXPECT_EQ(f->result(), ClassifForm::Confirmed);
    EXPECT_EQ(p.ResultInt, deep);
    EXPECT_EQ(p.KeyInt, deep);
    EXPECT_EQ(p.KeyValue.toInt(), deep);
}

TEST_F(ClassifTreeForm, TheRootIsRefusedOnlyWhenTheCallerSaysSo) {
    TRunParams strict = params(0, root, true);
    auto f = form(strict);
    QTest::mouseClick(f->okButton(), Qt::LeftButton);
    EXPECT_EQ(f->result(), 0);
    ASSERT_EQ(host->warnings().size(), 1);
    EXPECT_EQ(host->warnings().first(), "Корень классификатора выбрать нельзя: выберите ветвь");
    EXPECT_EQ(strict.ResultInt, 0);
    // Enter on a branch below the root answers.
    f->setCurrentKey(deepParent);
    f->tree()->setFocus();
    QTest::keyClick(f->tree(), Qt::Key_Return);
    EXPECT_EQ(f->result(), ClassifForm::Confirmed);
    EXPECT_EQ(strict.ResultInt, deepParent);

    // Without the parameter the root is an answer like any branch.
    TRunParams lenient = params(0, root);
    auto g = form(lenient);
    g->confirm();
    EXPECT_EQ(g->result(), ClassifForm::Confirmed);
    EXPECT_EQ(lenient.ResultInt, root);
    EXPECT_EQ(host->warnings().size(), 1);
}

TEST_F(ClassifTreeForm, CancelAndEscapeLeaveTheParametersAlone) {
    TRunParams p = params(0, deep);
    p.KeyValue = 17;
    auto f = form(p);
    f->setCurrentKey(root);
    QTest::mouseClick(f->cancelButton(), Qt::LeftButton);
    EXPECT_EQ(f->result(), ClassifForm::Cancelled);
    auto g = form(p);
    QTest::keyClick(g.get(), Qt::Key_Escape);
    EXPECT_EQ(g->result(), ClassifForm::Cancelled);
    EXPECT_EQ(p.ResultInt, 0);
    EXPECT_EQ(p.KeyInt, deep);
    EXPECT_EQ(p.KeyValue.toInt(), 17);
}

// The module runner shows the form under its name; without a user it cancels.
class ClassifFormRunner : public WorkbenchHostTest<ClassifTreeForm> {};

TEST_F(ClassifFormRunner, RunModuleShowsTheTreeFormByName) {
    ASSERT_NE(wb->RvGetForm("QucikClassifForm"), nullptr);
    TRunParams quiet = params(0, deep);
    EXPECT_EQ(wb->RunModule("QucikClassifForm", quiet), 2);
    EXPECT_EQ(quiet.FormFound, 1);
    EXPECT_EQ(quiet.ResultInt, 0);
    EXPECT_TRUE(wb->loggedMessages().isEmpty()); // a known form: no "not registered" error

    // With a user: a frame's drop-down opens the form, and the branch chosen there is shown.
    wb->setInteractive(true);
    QWidget top;
    auto* frame = qobject_cast<TClassif_LF*>(Registry::instance().create("TClassif_LF", &top));
    ASSERT_NE(frame, nullptr);
    frame->Init();
    QString seen;
    QTimer::singleShot(0, [&] {
        auto* f = qobject_cast<ClassifForm*>(QApplication::activeModalWidget());
        if (!f) return;
        seen = f->windowTitle();
        f->setCurrentKey(deep);
        f->confirm();
    });
    frame->lcSelect->dropDown();
    EXPECT_TRUE(seen.startsWith("Классификатор"));
    EXPECT_EQ(frame->lcSelect->keyValue().toInt(), deep);
    EXPECT_EQ(frame->lcSelect->displayText(), name(deep));
    EXPECT_TRUE(wb->loggedMessages().isEmpty()) << wb->loggedMessages().join("\n").toStdString();
}

} // namespace
} // namespace frames::test
