#include "frames/lists/LCBF_Abs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "platform/db/Transaction.h"
#include <QAction>
#include <QBoxLayout>
#include <QRegularExpression>

namespace frames {

namespace {

// One guard for every check-list frame of the process: it keeps "Использовать" and the items
// from setting each other off.
bool g_checkGuard = false;

struct CheckGuard {
    CheckGuard() { g_checkGuard = true; }
    ~CheckGuard() { g_checkGuard = false; }
};

// Table and column names go into the statements as they stand: only plain names are taken.
QString sqlName(const QString& name, const char* what) {
    static const QRegularExpression plain(QStringLiteral("^[A-Za-z][A-Za-z0-9_$]*$"));
    if (!plain.match(name).hasMatch())
        throw std::runtime_error(QStringLiteral("%1: недопустимое имя «%2»").arg(what, name).toStdString());
    return name;
}

} // namespace

TAbs_LCBF::TAbs_LCBF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(250, 200);
    auto* column = new QVBoxLayout;
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    static_cast<QBoxLayout*>(body()->layout())->addLayout(column);
    static_cast<QBoxLayout*>(layout())->setStretchFactor(body(), 1000);

    clbSelect = new QListWidget(body());
    clbSelect->setObjectName("clbSelect");
    column->addWidget(clbSelect, 1);
    lbSelect->setBuddy(clbSelect);
    cbUse = new QCheckBox(QStringLiteral("Использовать"), body());
    cbUse->setObjectName("cbUse");
    column->addWidget(cbUse);

    pfItems = new db::DataSet(this);
    pfItems->setObjectName("pfItems");
    pfItems->setDatabase(dmDataBaseFIB()->RvDatabase());
    pfItems->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    pfItems->setSelectSql(QStringLiteral("select id, name, ch from TABLE"));
    pfItems->beforeOpen.connect([this](db::AbstractDataSet& ds) { pfItemsBeforeOpen(ds); });

    connect(clbSelect, &QListWidget::itemChanged, this, [this] {
        if (!g_checkGuard) guard([&] { clbSelectClickCheck(clbSelect); });
    });
    connect(cbUse, &QCheckBox::clicked, this, [this] {
        // A click never leaves the box greyed: from "some" it goes to "all".
        if (cbUse->checkState() == Qt::PartiallyChecked) cbUse->setCheckState(Qt::Checked);
        cbUse->setTristate(false);
        guard([&] { cbUseClick(cbUse); });
    });

    // The host's check-list menu.
    clbSelect->setContextMenuPolicy(Qt::ActionsContextMenu);
    auto addAction = [this](const QString& text, const char* name, std::function<void()> f) {
        auto* a = new QAction(text, clbSelect);
        a->setObjectName(name);
        clbSelect->addAction(a);
        connect(a, &QAction::triggered, this, [f = std::move(f)] { guard(f); });
    };
    addAction(QStringLiteral("Отметить все"), "aCheckAll", [this] { CheckAll(Qt::Checked); });
    addAction(QStringLiteral("Снять все отметки"), "aUncheckAll", [this] { CheckAll(Qt::Unchecked); });
    addAction(QStringLiteral("Инвертировать отметки"), "aInvert", [this] { InvertAll(); });
}

TAbs_LCBF::~TAbs_LCBF() = default;

void TAbs_LCBF::Init() {
    TAbsEditFrame::Init();
    FillItems();
}

void TAbs_LCBF::FillItems() {
    TraceText(pfItems->selectSql(), 1);
    CheckGuard quiet;
    clbSelect->clear();
    pfItems->close();
    // The bare base names no table: it has nothing to list.
    if (TableName.isEmpty()) return;
    pfItems->open();
    db::Field* id = pfItems->fieldByName("id");
    db::Field* name = pfItems->fieldByName("name");
    db::Field* ch = pfItems->fieldByName("ch");
    for (pfItems->first(); !pfItems->eof(); pfItems->next()) {
        auto* item = new QListWidgetItem(name->asString().trimmed(), clbSelect);
        item->setData(Qt::UserRole, id->asInteger());
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
        item->setCheckState(ch->isNull() ? Qt::Unchecked : Qt::Checked);
    }
    if (clbSelect->count() > 0) clbSelect->setCurrentRow(0);
    pfItems->close();
}

QList<int> TAbs_LCBF::CheckedIds() const {
    QList<int> ids;
    for (int i = 0; i < clbSelect->count(); ++i)
        if (clbSelect->item(i)->checkState() == Qt::Checked)
            ids << clbSelect->item(i)->data(Qt::UserRole).toInt();
    return ids;
}

bool TAbs_LCBF::SaveItems() {
    db::Transaction tr(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait());
    try {
        const QString table = sqlName(TableName, "TableName");
        const QString key = sqlName(KeyColumn, "KeyColumn");
        tr.start();
        QvSqlExec(&tr, false, {"delete from " + table + " where id_user=", CUR_USER, " and kind=", Kind});
        const QString head =
            "insert into " + table + "(id_user, kind, " + key + (UseIsUsed ? ", is_used" : "") + ") values(";
        for (int id : CheckedIds())
            QvSqlExec(&tr, false,
                      {head, CUR_USER, ",", Kind, ",", id,
                       UseIsUsed ? QStringLiteral(", 1)") : QStringLiteral(")")});
        tr.commit();
        return true;
    } catch (...) {
        const std::exception_ptr e = std::current_exception();
        traceError(e);
        if (tr.active()) {
            try {
                tr.rollback();
            } catch (...) {
            }
        }
        TyErrorBox(QStringLiteral("Не удалось сохранить выбор\n") + errorText(e));
        return false;
    }
}

void TAbs_LCBF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    SaveItems();
    if (node) node->ItemByName("cbUse.Checked")->SetAsBoolean(cbUse->checkState() == Qt::Checked);
}

void TAbs_LCBF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (!node || !node->IsExists("cbUse.Checked")) return;
    // As a click would: only a change of the box sets every item, so a list whose box was left
    // clear (or grey) shows the rows read from the server.
    const Qt::CheckState to = node->ItemByName("cbUse.Checked")->GetAsBoolean() ? Qt::Checked : Qt::Unchecked;
    if (cbUse->checkState() == to) return;
    cbUse->setTristate(false);
    cbUse->setCheckState(to);
    cbUseClick(cbUse);
}

bool TAbs_LCBF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return CheckedIds().isEmpty();
}

void TAbs_LCBF::pfItemsBeforeOpen(db::AbstractDataSet&) {
    if (db::Param* p = pfItems->findParam("KIND")) p->setValue(Kind);
    if (db::Param* p = pfItems->findParam("ID_USER")) p->setValue(CUR_USER);
}

void TAbs_LCBF::cbUseClick(QObject*) {
    if (g_checkGuard) return;
    CheckGuard quiet;
    const Qt::CheckState to = cbUse->checkState() == Qt::Checked ? Qt::Checked : Qt::Unchecked;
    for (int i = 0; i < clbSelect->count(); ++i) clbSelect->item(i)->setCheckState(to);
}

void TAbs_LCBF::clbSelectClickCheck(QObject*) {
    if (g_checkGuard) return;
    CheckGuard quiet;
    cbUse->setCheckState(Qt::PartiallyChecked);
}

void TAbs_LCBF::CheckAll(Qt::CheckState state) {
    {
        CheckGuard quiet;
        for (int i = 0; i < clbSelect->count(); ++i) clbSelect->item(i)->setCheckState(state);
    }
    showUseState();
}

void TAbs_LCBF::InvertAll() {
    {
        CheckGuard quiet;
        for (int i = 0; i < clbSelect->count(); ++i) {
            QListWidgetItem* item = clbSelect->item(i);
            item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
        }
    }
    showUseState();
}

void TAbs_LCBF::showUseState() {
    const int checked = int(CheckedIds().size());
    CheckGuard quiet;
    if (checked > 0 && checked == clbSelect->count()) {
        cbUse->setTristate(false);
        cbUse->setCheckState(Qt::Checked);
    } else if (checked == 0) {
        cbUse->setTristate(false);
        cbUse->setCheckState(Qt::Unchecked);
    } else {
        cbUse->setCheckState(Qt::PartiallyChecked);
    }
}

FRAMES_REGISTER(TAbs_LCBF, "lists");

} // namespace frames
