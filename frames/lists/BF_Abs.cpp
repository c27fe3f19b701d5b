#include "frames/lists/BF_Abs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include <QBoxLayout>
#include <QEvent>
#include <QLineEdit>
#include <QRegularExpression>
#include <algorithm>

namespace frames {

namespace {

db::MemTable* makeList(QObject* parent, const char* name) {
    auto* t = new db::MemTable(parent);
    t->setObjectName(name);
    t->addFieldDef("ID", db::FieldType::Integer);
    t->addFieldDef("NAME", db::FieldType::VarChar, 80);
    t->open();
    t->setSortKeys({db::SortKey{"NAME", true}});
    return t;
}

} // namespace

TAbs_BF::TAbs_BF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(460, 220);
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");
    pfAvailabled = new db::DataSet(dmDataBaseFIB()->RvDatabase(), pfTransaction, this);
    pfAvailabled->setObjectName("pfAvailabled");
    pfSelected = new db::DataSet(dmDataBaseFIB()->RvDatabase(), pfTransaction, this);
    pfSelected->setObjectName("pfSelected");
    pfAvailabled->beforeOpen.connect([this](db::AbstractDataSet& d) { pfAvailabledBeforeOpen(d); });
    pfSelected->beforeOpen.connect([this](db::AbstractDataSet& d) { pfSelectedBeforeOpen(d); });

    mdAvailabled = makeList(this, "mdAvailabled");
    mdSelected = makeList(this, "mdSelected");
    dsAvailabled = new db::DataSource(mdAvailabled, this);
    dsAvailabled->setObjectName("dsAvailabled");
    dsSelected = new db::DataSource(mdSelected, this);
    dsSelected->setObjectName("dsSelected");

    auto grid = [this](const char* name, db::DataSource* src, const QString& caption) {
        auto* g = new ui::DBGrid(body());
        g->setObjectName(name);
        g->setColumns({"NAME"});
        g->setColumnCaption("NAME", caption);
        g->setMultiSelect(false);
        g->setSortMarking(false);
        g->setDataSource(src);
        g->installEventFilter(this);
        return g;
    };
    dbgAvailabled = grid("dbgAvailabled", dsAvailabled, QStringLiteral("Доступные"));
    dbgSelected = grid("dbgSelected", dsSelected, QStringLiteral("Выбранные"));
    lbSelect->setBuddy(dbgAvailabled);

    buttons_ = new QWidget(body());
    auto* column = new QVBoxLayout(buttons_);
    column->setContentsMargins(0, 0, 0, 0);
    auto button = [this, column](const char* name, const QString& glyph, const QString& hint,
                                 void (TAbs_BF::*handler)()) {
        auto* b = new QToolButton(buttons_);
        b->setObjectName(name);
        b->setText(glyph);
        b->setToolTip(hint);
        column->addWidget(b);
        connect(b, &QToolButton::clicked, this, [this, handler] { guard([&] { (this->*handler)(); }); });
        return b;
    };
    column->addStretch(1);
    sbAllSel =
        button("sbAllSel", QStringLiteral(">>"), QStringLiteral("Выбрать все"), &TAbs_BF::sbAllSelClick);
    sbSel = button("sbSel", QStringLiteral(">"), QStringLiteral("Выбрать"), &TAbs_BF::sbSelClick);
    sbUnsel = button("sbUnsel", QStringLiteral("<"), QStringLiteral("Вернуть"), &TAbs_BF::sbUnselClick);
    sbAllUnSel =
        button("sbAllUnSel", QStringLiteral("<<"), QStringLiteral("Вернуть все"), &TAbs_BF::sbAllUnSelClick);
    column->addStretch(1);

    auto* row = static_cast<QBoxLayout*>(body()->layout());
    row->addWidget(dbgAvailabled, 1);
    row->addWidget(buttons_);
    row->addWidget(dbgSelected, 1);
    setTabOrder(dbgAvailabled, dbgSelected);

    connect(dbgAvailabled, &ui::DBGrid::activated, this, [this] { guard([&] { sbSelClick(); }); });
    connect(dbgSelected, &ui::DBGrid::activated, this, [this] { guard([&] { sbUnselClick(); }); });

    aSearch = new QAction(QStringLiteral("Поиск"), this);
    aSearch->setObjectName("aSearch");
    aSearch->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_F));
    aSearch->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    addAction(aSearch);
    connect(aSearch, &QAction::triggered, this, [this] { guard([&] { aSearchExecute(); }); });
    ActiveGrid = dbgAvailabled;
}

TAbs_BF::~TAbs_BF() = default;

void TAbs_BF::Init() {
    TAbsEditFrame::Init();
    FillItems();
    ActiveGrid = dbgAvailabled;
}

void TAbs_BF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    SaveItems();
}

void TAbs_BF::FormClose() {
    if (pfTransaction->active()) pfTransaction->rollback();
    TAbsEditFrame::FormClose();
}

void TAbs_BF::copyRows(db::DataSet* from, db::MemTable* to) {
    to->close();
    to->open();
    // The bare base has no statements: its lists stay empty.
    if (from->selectSql().trimmed().isEmpty()) return;
    from->open();
    to->disableControls();
    db::Field* id = from->fieldByName("ID");
    db::Field* name = from->fieldByName("NAME");
    for (from->first(); !from->eof(); from->next()) to->appendRecord({id->asInteger(), name->asString()});
    from->close();
    to->setSortKeys(to->sortKeys());
    to->first();
    to->enableControls();
}

void TAbs_BF::FillItems() {
    pfTransaction->ensureStarted();
    try {
        copyRows(pfAvailabled, mdAvailabled);
        copyRows(pfSelected, mdSelected);
    } catch (...) {
        if (pfTransaction->active()) pfTransaction->rollback();
        throw;
    }
    // The read needs no commit.
    pfTransaction->rollback();
}

void TAbs_BF::SaveItems() {
    if (!mdSelected->active()) return;
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z][A-Za-z0-9_$]*$"));
    if (!plain.match(TableName).hasMatch())
        throw std::runtime_error(
            QStringLiteral("TableName: недопустимое имя «%1»").arg(TableName).toStdString());
    pfTransaction->ensureStarted();
    try {
        QvSqlExec(pfTransaction, false,
                  {"delete from " + TableName + " where ID_USER=", CUR_USER, " and Kind=", Kind});
        for (int r = 0; r < mdSelected->recordCount(); ++r)
            QvSqlExec(pfTransaction, false,
                      {"insert into " + TableName + " (ID_USER,Kind,MANAGER) values (", CUR_USER, ",", Kind,
                       ",", mdSelected->valueAt(r, 0).toInt(), ")"});
        pfTransaction->commit();
    } catch (...) {
        if (pfTransaction->active()) pfTransaction->rollback();
        throw;
    }
}

int TAbs_BF::ItemsCount() const {
    return mdSelected->active() ? mdSelected->recordCount() : 0;
}

QString TAbs_BF::ItemsItem(int index) const {
    if (index < 0 || index >= ItemsCount()) return QString();
    return QString::number(mdSelected->valueAt(index, 0).toInt());
}

QString TAbs_BF::ItemsList() const {
    QStringList keys;
    for (int i = 0; i < ItemsCount(); ++i) keys << ItemsItem(i);
    return keys.join(',');
}

void TAbs_BF::moveRow(db::MemTable* from, db::MemTable* to) {
    to->appendRecord({from->fieldByName("ID")->value(), from->fieldByName("NAME")->value()});
    to->setSortKeys(to->sortKeys()); // the new row takes its place by name and stays current
    from->remove();
}

void TAbs_BF::DoSel() {
    if (mdAvailabled->isEmpty()) return;
    if (mdSelected->recordCount() >= MaxSelected) {
        TyErrorBox(QStringLiteral("Нельзя выбрать более 1500 записей"));
        return;
    }
    moveRow(mdAvailabled, mdSelected);
}

void TAbs_BF::DoUnSel() {
    if (mdSelected->isEmpty()) return;
    moveRow(mdSelected, mdAvailabled);
}

void TAbs_BF::sbSelClick() {
    DoSel();
}

void TAbs_BF::sbUnselClick() {
    DoUnSel();
}

void TAbs_BF::sbAllSelClick() {
    if (mdAvailabled->recordCount() + mdSelected->recordCount() > MaxSelected) {
        TyErrorBox(QStringLiteral("Нельзя выбрать более 1500 записей"));
        return;
    }
    mdAvailabled->disableControls();
    mdSelected->disableControls();
    while (!mdAvailabled->isEmpty()) {
        mdAvailabled->first();
        DoSel();
    }
    mdSelected->enableControls();
    mdAvailabled->enableControls();
}

void TAbs_BF::sbAllUnSelClick() {
    mdAvailabled->disableControls();
    mdSelected->disableControls();
    while (!mdSelected->isEmpty()) {
        mdSelected->first();
        DoUnSel();
    }
    mdSelected->enableControls();
    mdAvailabled->enableControls();
}

void TAbs_BF::aSearchExecute() {
    if (ActiveGrid && ActiveGrid->dataSet() && ActiveGrid->dataSet()->active() &&
        !ActiveGrid->dataSet()->isEmpty())
        DBGridFind(ActiveGrid, QString());
}

void TAbs_BF::DBGridFind(ui::DBGrid* grid, const QString& character) {
    QWidget* form = ShowGridSearch(grid, character);
    // A form wider than the grid is narrowed to it, its search edit by as much.
    if (form && form->width() > grid->width()) {
        const int excess = form->width() - grid->width() + 10;
        if (auto* edit = form->findChild<QLineEdit*>())
            edit->setFixedWidth(std::max(40, edit->width() - excess));
        form->resize(std::max(80, form->width() - excess), form->height());
    }
}

void TAbs_BF::pfAvailabledBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = pfAvailabled->findParam("Kind")) p->setValue(Kind);
}

void TAbs_BF::pfSelectedBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = pfSelected->findParam("Kind")) p->setValue(Kind);
}

bool TAbs_BF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == dbgSelected && event->type() == QEvent::FocusIn) ActiveGrid = dbgSelected;
    if (watched == dbgSelected && event->type() == QEvent::FocusOut) ActiveGrid = dbgAvailabled;
    return TAbsEditFrame::eventFilter(watched, event);
}

FRAMES_REGISTER(TAbs_BF, "lists");

} // namespace frames
