#include "frames/lists/SF_Place.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include <QBoxLayout>
#include <QJsonDocument>
#include <QStyle>

namespace frames {

TSFPlace::TSFPlace(QWidget* parent) : TAbsEditFrame(parent) {
    resize(360, 220);
    FFirstShow = true;
    SetCaption(QStringLiteral("Места хранения"));
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");
    pfDataSet = new db::DataSet(dmDataBaseFIB()->RvDatabase(), pfTransaction, this);
    pfDataSet->setObjectName("pfDataSet");
    pfDataSet->setUpdateTransaction(pfTransaction);
    pfDataSet->beforeOpen.connect([this](db::AbstractDataSet& d) { pfDataSetBeforeOpen(d); });
    pfDataSet->afterOpen.connect([this](db::AbstractDataSet& d) { pfDataSetAfterOpen(d); });
    ds = new db::DataSource(pfDataSet, this);
    ds->setObjectName("ds");

    dbGrid = new ui::DBGrid(body());
    dbGrid->setObjectName("dbGrid");
    dbGrid->setMultiSelect(false);
    dbGrid->setDataSource(ds);
    body()->layout()->addWidget(dbGrid);
    lbSelect->setBuddy(dbGrid);

    aCustomize = new QAction(QStringLiteral("Настройка сетки"), this);
    aCustomize->setObjectName("aCustomize");
    aUp = new QAction(style()->standardIcon(QStyle::SP_ArrowUp), QStringLiteral("Повысить приоритет"), this);
    aUp->setObjectName("aUp");
    aDown =
        new QAction(style()->standardIcon(QStyle::SP_ArrowDown), QStringLiteral("Понизить приоритет"), this);
    aDown->setObjectName("aDown");
    dbGrid->setContextMenuPolicy(Qt::ActionsContextMenu);
    dbGrid->addAction(aCustomize);
    connect(aCustomize, &QAction::triggered, this, [this] { guard([&] { aCustomizeExecute(); }); });
    connect(aUp, &QAction::triggered, this, [this] { guard([&] { aUpExecute(); }); });
    connect(aDown, &QAction::triggered, this, [this] { guard([&] { aDownExecute(); }); });

    auto* buttons = new QVBoxLayout;
    buttons->setContentsMargins(0, 0, 0, 0);
    // The buttons show only the glyph and the hint: no caption.
    auto button = [this](QAction* a, const char* name) {
        auto* b = new QToolButton(body());
        b->setObjectName(name);
        b->setIcon(a->icon());
        b->setToolTip(a->text());
        b->setText(QString());
        connect(b, &QToolButton::clicked, a, &QAction::trigger);
        connect(a, &QAction::changed, b, [a, b] { b->setEnabled(a->isEnabled()); });
        return b;
    };
    bbUp = button(aUp, "bbUp");
    bbDown = button(aDown, "bbDown");
    buttons->addWidget(bbUp);
    buttons->addWidget(bbDown);
    buttons->addStretch(1);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(buttons);

    // A click on the "used" box switches the place.
    connect(dbGrid, &QAbstractItemView::clicked, this, [this](const QModelIndex& index) {
        if (index.column() == dbGrid->columnOfField("IS_USED")) guard([&] { ToggleUsed(); });
    });
    connect(ds, &db::DataSource::recordChanged, this, &TSFPlace::updateActions);
    connect(ds, &db::DataSource::dataSetChanged, this, &TSFPlace::updateActions);
    connect(ds, &db::DataSource::stateChanged, this, &TSFPlace::updateActions);
    updateActions();
}

TSFPlace::~TSFPlace() = default;

void TSFPlace::Init() {
    TAbsEditFrame::Init();
    pfTransaction->ensureStarted();
    pfDataSet->open();
}

void TSFPlace::FormClose() {
    pfDataSet->close();
    TAbsEditFrame::FormClose();
}

void TSFPlace::pfDataSetBeforeOpen(db::AbstractDataSet&) {
    pfDataSet->paramByName("kind")->setValue(Kind);
    pfDataSet->paramByName("shopindex")->setValue(CUR_SHOPINDEX);
}

void TSFPlace::pfDataSetAfterOpen(db::AbstractDataSet&) {
    // The rows are all read on opening.
    updateActions();
}

int TSFPlace::PlaceCount() {
    if (!FPlaces.isEmpty()) return int(FPlaces.size());
    if (!pfDataSet->active()) return 0;
    const int at = pfDataSet->recNo();
    pfDataSet->disableControls();
    db::Field* used = pfDataSet->fieldByName("IS_USED");
    db::Field* id = pfDataSet->fieldByName("ID");
    for (pfDataSet->first(); !pfDataSet->eof(); pfDataSet->next())
        if (used->asInteger() == 1) FPlaces << id->asInteger();
    if (at >= 0) pfDataSet->setRecNo(at);
    pfDataSet->enableControls();
    return int(FPlaces.size());
}

int TSFPlace::Places(int i) {
    if (i < 0 || i >= PlaceCount()) return -1;
    return FPlaces.at(i);
}

void TSFPlace::Commit() {
    if (pfDataSet->inEditMode()) pfDataSet->post();
    pfTransaction->commit();
    pfTransaction->start();
    pfDataSet->close();
    pfDataSet->open();
    FPlaces.clear();
}

void TSFPlace::Rollback() {
    if (pfDataSet->inEditMode()) pfDataSet->cancel();
    pfTransaction->rollback();
    pfTransaction->start();
    pfDataSet->close();
    pfDataSet->open();
    FPlaces.clear();
}

void TSFPlace::SaveLayout(TConfigItem* node) {
    if (!node) return;
    TConfigItem* mine = node->ItemByName(objectName());
    TAbsEditFrame::SaveLayout(mine);
    mine->ItemByName("dbGrid")->SetAsString(
        QString::fromUtf8(QJsonDocument(dbGrid->saveLayout()).toJson(QJsonDocument::Compact)));
}

void TSFPlace::RestoreLayout(TConfigItem* node) {
    if (!node || !node->IsExists(objectName())) return;
    TConfigItem* mine = node->ItemByName(objectName());
    TAbsEditFrame::RestoreLayout(mine);
    if (!mine->IsExists("dbGrid")) return;
    const QJsonDocument doc = QJsonDocument::fromJson(mine->ItemByName("dbGrid")->GetAsString().toUtf8());
    if (doc.isObject()) dbGrid->restoreLayout(doc.object());
}

void TSFPlace::aCustomizeExecute() {
    host()->CustomizeGrid(dbGrid);
}

void TSFPlace::updateActions() {
    aUpUpdate();
    aDownUpdate();
}

void TSFPlace::aUpUpdate() {
    // Record numbers count from 1 here: the first row cannot go up.
    aUp->setEnabled(pfDataSet->active() && !pfDataSet->isEmpty() && pfDataSet->recNo() + 1 > 1);
}

void TSFPlace::aDownUpdate() {
    aDown->setEnabled(pfDataSet->active() && !pfDataSet->isEmpty() &&
                      pfDataSet->recNo() + 1 < pfDataSet->recordCount());
}

void TSFPlace::aUpExecute() {
    move(-1);
}

void TSFPlace::aDownExecute() {
    move(+1);
}

void TSFPlace::move(int step) {
    if (!pfDataSet->active() || pfDataSet->isEmpty()) return;
    const int row = pfDataSet->recNo();
    if (row + step < 0 || row + step >= pfDataSet->recordCount()) return;
    const QVariant key = pfDataSet->fieldByName("ID")->value();
    pfDataSet->disableControls();
    struct Finally {
        TSFPlace* f;
        QVariant key;
        ~Finally() {
            // A row whose post failed (another session holds it) keeps its stored values: its
            // edit is dropped, the one already posted stays in the transaction for the user to
            // commit or roll back.
            try {
                if (f->pfDataSet->inEditMode()) f->pfDataSet->cancel();
                if (f->pfDataSet->active()) f->pfDataSet->locate("ID", key);
            } catch (...) {
            }
            f->pfDataSet->enableControls();
        }
    } finally{this, key};
    db::Field* priority = pfDataSet->fieldByName("PRIORITY");
    pfDataSet->edit();
    priority->setAsInteger(priority->asInteger() + step);
    pfDataSet->post();
    step < 0 ? pfDataSet->prior() : pfDataSet->next();
    pfDataSet->edit();
    priority->setAsInteger(priority->asInteger() - step);
    pfDataSet->post();
    pfDataSet->close();
    pfDataSet->open();
}

void TSFPlace::ToggleUsed() {
    if (!pfDataSet->active() || pfDataSet->isEmpty()) return;
    db::Field* used = pfDataSet->fieldByName("IS_USED");
    if (!pfDataSet->inEditMode()) pfDataSet->edit();
    used->setAsInteger(used->asInteger() == 1 ? 0 : 1);
    pfDataSet->post();
}

FRAMES_REGISTER(TSFPlace, "lists");

} // namespace frames
