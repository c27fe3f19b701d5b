#include "frames/core/Registry.h"
#include "tests/designer/Snapshot.h"
#include "tests/support/DbFixture.h"
#include "ui_FramesForm.h"
#include <QWidget>
#include <gtest/gtest.h>
#include <memory>

namespace {

QString className(const QObject* o) {
    return QString::fromLatin1(o->metaObject()->className()).section(QStringLiteral("::"), -1);
}

} // namespace

// A form drawn in the designer and compiled through uic: its frames are the ones the registry
// makes, with their descriptions applied and AfterConstruction run, before and after Init.
class UicForm : public frames::test::DbTest {};

TEST_F(UicForm, FramesMadeByGeneratedCodeAreTheRegistrysFrames) {
    QWidget form;
    Ui::FramesForm ui;
    ui.setupUi(&form);
    QWidget other;

    const std::vector<frames::TAbsEditFrame*> made = {ui.Bank_LF, ui.CalcEdit_Frame, ui.PeriodExt_EF,
                                                      ui.MultiClient_LF};
    for (frames::TAbsEditFrame* f : made) {
        const QString cls = className(f);
        SCOPED_TRACE(cls.toStdString());
        EXPECT_EQ(f->parentWidget(), &form);
        EXPECT_EQ(f->Owner(), nullptr); // a plain widget form owns no frame
        std::unique_ptr<frames::TAbsEditFrame> reference(frames::Registry::instance().create(cls, &other));
        // What the form itself sets, a host sets after create.
        reference->SetCaption(f->Caption());
        EXPECT_EQ(f->objectName(), reference->objectName());
        EXPECT_EQ(frames::test::snapshot(f), frames::test::snapshot(reference.get()));
        f->Init();
        reference->Init();
        EXPECT_EQ(frames::test::snapshot(f), frames::test::snapshot(reference.get()));
        f->FormClose();
        reference->FormClose();
    }
    // What the description gives: the caption, the reference form, the list read in Init.
    EXPECT_EQ(ui.Bank_LF->Caption(), QStringLiteral("Банк"));
    EXPECT_EQ(ui.CalcEdit_Frame->Caption(), QStringLiteral("Сумма платежа"));
    EXPECT_EQ(ui.Bank_LF->property("FormName").toString(), QStringLiteral("BankForm"));
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join('\n').toStdString();

    // The same class constructed without being finished is a different frame: the comparison sees
    // a missing description.
    frames::TBank_LF bare(&other);
    bare.setObjectName(ui.Bank_LF->objectName());
    std::unique_ptr<frames::TAbsEditFrame> reference(frames::Registry::instance().create("TBank_LF", &other));
    EXPECT_NE(frames::test::snapshot(&bare), frames::test::snapshot(reference.get()));
}
