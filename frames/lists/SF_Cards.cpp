#include "frames/lists/SF_Cards.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include <QBoxLayout>
#include <QStyle>
#include <algorithm>

namespace frames {

TSFCards::TSFCards(QWidget* parent) : TAbsEditFrame(parent) {
    resize(360, 240);
    SetCaption(QStringLiteral("Товарные карточки"));
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);
    Kind = -1;
    UserId = CUR_USER;

    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");
    pfDataSet = new db::DataSet(dmDataBaseFIB()->RvDatabase(), dmDataBaseFIB()->pfReadTransaction(), this);
    pfDataSet->setObjectName("pfDataSet");
    pfDataSet->setUpdateTransaction(pfTransaction);
    pfDataSet->beforeOpen.connect([this](db::AbstractDataSet& d) { pfDataSetBeforeOpen(d); });
    ds = new db::DataSource(pfDataSet, this);
    ds->setObjectName("ds");

    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(column);
    pnTop = new QWidget(body());
    pnTop->setObjectName("pnTop");
    auto* top = new QHBoxLayout(pnTop);
    top->setContentsMargins(0, 0, 0, 0);
    aAdd = new QAction(style()->standardIcon(QStyle::SP_FileDialogNewFolder),
                       QStringLiteral("Добавить из справочника"), this);
    aAdd->setObjectName("aAdd");
    aAdd->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_I));
    aAdd->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    aDel = new QAction(style()->standardIcon(QStyle::SP_TrashIcon), QStringLiteral("Удалить"), this);
    aDel->setObjectName("aDel");
    aDel->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_D));
    aDel->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(aAdd);
    addAction(aDel);
    bbAdd = new QToolButton(pnTop);
    bbAdd->setObjectName("bbAdd");
    bbAdd->setDefaultAction(aAdd);
    bbDel = new QToolButton(pnTop);
    bbDel->setObjectName("bbDel");
    bbDel->setDefaultAction(aDel);
    top->addWidget(bbAdd);
    top->addWidget(bbDel);
    top->addStretch(1);
    column->addWidget(pnTop);

    dbGrid = new ui::DBGrid(body());
    dbGrid->setObjectName("dbGrid");
    dbGrid->setMultiSelect(true);
    dbGrid->setDataSource(ds);
    column->addWidget(dbGrid, 1);
    lbSelect->setBuddy(dbGrid);

    connect(aAdd, &QAction::triggered, this, [this] { guard([&] { aAddExecute(); }); });
    connect(aDel, &QAction::triggered, this, [this] { guard([&] { aDelExecute(); }); });
    connect(ds, &db::DataSource::dataSetChanged, this, &TSFCards::updateActions);
    connect(ds, &db::DataSource::recordChanged, this, &TSFCards::updateActions);
    updateActions();
}

TSFCards::~TSFCards() = default;

void TSFCards::Init() {
    TAbsEditFrame::Init();
    reopen();
}

void TSFCards::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    updateActions();
}

void TSFCards::FormClose() {
    pfDataSet->close();
    if (pfTransaction->active()) pfTransaction->rollback();
    TAbsEditFrame::FormClose();
}

void TSFCards::reopen() {
    pfDataSet->close();
    pfDataSet->open();
    updateActions();
}

void TSFCards::pfDataSetBeforeOpen(db::AbstractDataSet&) {
    pfDataSet->paramByName("kind")->setValue(Kind);
    pfDataSet->paramByName("user_id")->setValue(UserId);
}

void TSFCards::updateActions() {
    aAddUpdate();
    aDelUpdate();
}

void TSFCards::aAddUpdate() {
    aAdd->setEnabled(!GetReadOnly());
}

void TSFCards::aDelUpdate() {
    aDel->setEnabled(pfDataSet->active() && !pfDataSet->isEmpty() && !GetReadOnly());
}

QString TSFCards::GetArticul(const QString& code) {
    return code.trimmed();
}

void TSFCards::aAddExecute() {
    if (GetReadOnly()) Abort();
    TRunParams params;
    ResetParams(params);
    params.Flag = true; // several cards may be chosen
    params.EnsureParams().ByName(CardsParam).Value = QStringList();
    pfDataSet->disableControls();
    struct Finally {
        TSFCards* f;
        ~Finally() {
            f->pfDataSet->enableControls();
            f->updateActions();
        }
    } finally{this};
    if (RunModule("CardForm", params) == 2) return;
    const TVarParams::Param* cards = params.Params ? params.Params->Find(CardsParam) : nullptr;
    const QStringList lines = cards ? cards->Value.toStringList() : QStringList();
    if (lines.isEmpty()) return;
    for (const QString& line : lines) {
        const QString articul = GetArticul(line.section('=', 0, 0));
        if (articul.isEmpty()) continue;
        pfTransaction->ensureStarted();
        try {
            pfDataSet->append();
            pfDataSet->fieldByName("articul")->setAsString(articul);
            pfDataSet->post();
            pfTransaction->commit();
        } catch (...) {
            if (pfDataSet->inEditMode()) pfDataSet->cancel();
            if (pfTransaction->active()) pfTransaction->rollback();
            reopen();
            throw;
        }
    }
    reopen();
}

void TSFCards::aDelExecute() {
    if (GetReadOnly() || !pfDataSet->active() || pfDataSet->isEmpty()) Abort();
    pfTransaction->ensureStarted();
    pfDataSet->disableControls();
    try {
        if (dbGrid->markedCount() == 0) {
            pfDataSet->remove();
        } else {
            // Bookmarks of the marked rows, taken before the deletions move the others.
            QList<db::AbstractDataSet::Bookmark> marks = dbGrid->markedBookmarks();
            std::sort(marks.begin(), marks.end());
            for (auto b : marks) {
                if (!pfDataSet->bookmarkValid(b)) continue;
                pfDataSet->gotoBookmark(b);
                pfDataSet->remove();
            }
        }
        pfTransaction->commit();
    } catch (...) {
        if (pfTransaction->active()) pfTransaction->rollback();
        pfDataSet->enableControls();
        reopen();
        throw;
    }
    dbGrid->clearMarks();
    pfDataSet->enableControls();
    updateActions();
}

FRAMES_REGISTER(TSFCards, "lists");

} // namespace frames
