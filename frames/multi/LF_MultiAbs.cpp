#include "frames/multi/LF_MultiAbs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QLayout>
#include <limits>

namespace frames {

namespace {

const QString Marker = QStringLiteral("###");

bool holdsValue(const QVariant& v) {
    return v.isValid() && !v.isNull() && !v.toString().isEmpty();
}

qint64 keyOf(const QVariant& v) {
    bool ok = false;
    const qint64 k = v.toLongLong(&ok);
    return ok ? k : std::numeric_limits<qint64>::min();
}

} // namespace

TMultiAbs_LF::TMultiAbs_LF(QWidget* parent) : TAbs_LF(parent) {
    resize(266, 76);
    lcSelect->setToolTip(QStringLiteral("Для добавления используйте Insert"));

    mdList = new db::MemTable(this);
    mdList->setObjectName("mdList");
    mdList->addFieldDef("ID", db::FieldType::Integer);
    mdList->addFieldDef("Name", db::FieldType::VarChar, 80);
    dsList = new db::DataSource(mdList, this);
    dsList->setObjectName("dsList");

    dbList = new ui::LookupListBox(body());
    dbList->setObjectName("dbList");
    dbList->setToolTip(QStringLiteral("Для удаления используйте Delete"));
    dbList->setKeyField("ID");
    dbList->setListField("Name");
    dbList->setMinimumHeight(30);
    dbList->setListSource(dsList);
    dbList->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { dbListKeyDown(s, key, m); });
    };
    // The combo on top, the list under it taking the rest of the frame.
    if (auto* box = qobject_cast<QBoxLayout*>(body()->layout())) {
        box->setDirection(QBoxLayout::TopToBottom);
        box->addWidget(dbList, 1);
    } else {
        body()->layout()->addWidget(dbList);
    }
    mdList->open();
}

TMultiAbs_LF::~TMultiAbs_LF() = default;

void TMultiAbs_LF::AfterConstruction() {
    TAbs_LF::AfterConstruction();
    if (!lcSelect->emptyValue().isEmpty()) lcSelect->setEmptyValue(QStringLiteral("<Не определено>"));
}

bool TMultiAbs_LF::HasExclusion() const {
    return sSQLTemplate.contains(Marker, Qt::CaseInsensitive) &&
           sNotInSQL.contains(Marker, Qt::CaseInsensitive);
}

void TMultiAbs_LF::SetKind(int kind) {
    Kind = kind;
    if (pFIBDataSet1->active() && pFIBDataSet1->findParam("KIND")) Get_sSQL();
}

void TMultiAbs_LF::Init() {
    // The list is read whole and the chosen rows are hidden by the rebuild, never by the server.
    sSQL.clear();
    TAbs_LF::Init();
    if (!mdList->isEmpty()) Get_sSQL();
}

QString TMultiAbs_LF::SelectText(const QString& keys) const {
    if (keys.isEmpty()) return QString(sSQLTemplate).replace(Marker, QString(), Qt::CaseInsensitive);
    const QString clause = QString(sNotInSQL).replace(Marker, keys, Qt::CaseInsensitive);
    return QString(sSQLTemplate).replace(Marker, clause, Qt::CaseInsensitive);
}

void TMultiAbs_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1BeforeOpen(dataSet);
    if (!sSQLTemplate.isEmpty()) pFIBDataSet1->setSelectSql(SelectText(sSQL));
    if (db::Param* kind = pFIBDataSet1->findParam("KIND")) kind->setValue(Kind);
}

QSet<qint64> TMultiAbs_LF::ListKeys() const {
    QSet<qint64> keys;
    const db::Field* id = mdList->fieldByName("ID");
    for (int row = 0; row < mdList->recordCount(); ++row)
        keys.insert(keyOf(mdList->valueAt(row, id->index())));
    return keys;
}

QString TMultiAbs_LF::Get_sSQL() {
    sSQL.clear();
    iChosenCount = 0;
    const QSet<qint64> chosen = ListKeys();
    pFIBDataSet1->disableControls();
    try {
        // The whole list, in the query's order: the chosen keys it holds make the key list.
        pFIBDataSet1->setKeyFilter(QString(), {});
        pFIBDataSet1->close();
        pFIBDataSet1->open();
        QSet<qint64> found;
        if (!chosen.isEmpty()) {
            const int column = pFIBDataSet1->fieldByName(lcSelect->lookupField())->index();
            QStringList keys;
            for (int row = 0, n = pFIBDataSet1->recordCount(); row < n; ++row) {
                const QVariant v = pFIBDataSet1->valueAt(row, column);
                if (v.isNull() || !chosen.contains(keyOf(v))) continue;
                keys << v.toString();
                found.insert(keyOf(v));
            }
            sSQL = keys.join(QStringLiteral(", "));
            iChosenCount = int(keys.size());
        }
        // What the server would leave out with the exclusion clause is left out of the view; a
        // query without a place for the clause keeps every row.
        if (!found.isEmpty() && HasExclusion())
            pFIBDataSet1->setKeyFilter(lcSelect->lookupField(), [found](const QVariant& v) {
                return v.isNull() || !found.contains(keyOf(v));
            });
    } catch (...) {
        pFIBDataSet1->enableControls();
        throw;
    }
    pFIBDataSet1->enableControls();
    return sSQL;
}

void TMultiAbs_LF::ReopenList() {
    Get_sSQL();
}

// ---- items

int TMultiAbs_LF::ItemsCount() {
    return mdList->recordCount() + 1;
}

QString TMultiAbs_LF::ItemsItem(int index) {
    if (index == 0) {
        const QVariant key = lcSelect->keyValue();
        return holdsValue(key) ? key.toString() : QStringLiteral("-1");
    }
    if (index < 1 || index > mdList->recordCount()) return QString();
    return mdList->valueAt(index - 1, mdList->fieldByName("ID")->index()).toString();
}

QString TMultiAbs_LF::ItemsList() {
    QStringList items;
    for (int i = 0, n = ItemsCount(); i < n; ++i) items << ItemsItem(i);
    return items.join(QLatin1Char(','));
}

// ---- keys

void TMultiAbs_LF::deleteListRow() {
    if (mdList->isEmpty()) return;
    mdList->remove();
    Get_sSQL();
}

void TMultiAbs_LF::FillListRow() {
    mdList->fieldByName("ID")->setValue(lcSelect->keyValue());
    mdList->fieldByName("Name")->setValue(lcSelect->displayText());
}

void TMultiAbs_LF::insertChosen() {
    if (MaxChosen() > 0 && iChosenCount > MaxChosen()) {
        TyErrorBox(QStringLiteral(
            "Слишком большое количество элементов в списке. \rНельзя добавить еще один элемент."));
        return;
    }
    mdList->append();
    try {
        FillListRow();
        mdList->post();
    } catch (...) {
        mdList->cancel();
        throw;
    }
    // The combo moves on to the row after the one just chosen (the first after the last).
    QVariant next;
    if (!pFIBDataSet1->isEmpty()) {
        pFIBDataSet1->next();
        if (pFIBDataSet1->eof()) pFIBDataSet1->first();
        next = pFIBDataSet1->fieldByName(lcSelect->lookupField())->asInteger();
    }
    Get_sSQL();
    if (next.isValid()) lcSelect->setKeyValue(next);
}

void TMultiAbs_LF::lcSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) {
    if (key == Qt::Key_Delete) {
        key = 0;
        if (mdList->isEmpty())
            lcSelect->setKeyValue(-1);
        else
            mdList->remove();
        Get_sSQL();
    }
    TAbs_LF::lcSelectKeyDown(sender, key, shift);
    if (key == Qt::Key_Insert && holdsValue(lcSelect->keyValue())) insertChosen();
}

void TMultiAbs_LF::dbListKeyDown(QObject*, int& key, Qt::KeyboardModifiers) {
    if (key == Qt::Key_Delete) deleteListRow();
}

void TMultiAbs_LF::lcSelectDlgClick(QObject* sender) {
    if (pFIBDataSet1->active() && !pFIBDataSet1->isEmpty())
        if (db::Field* classif = pFIBDataSet1->findField("classif"))
            ClassifStart = classif->isNull() ? -1 : classif->asInteger();
    RunParams.KeyInt = ClassifStart;
    RunParams.ResultInt = ClassifType;
    if (KindRunParam) RunParams.EnsureParams().ByName("KIND").Value = Kind;
    try {
        TAbs_LF::lcSelectDlgClick(sender);
    } catch (...) {
        if (KindRunParam) RunParams.Params.reset();
        throw;
    }
    if (KindRunParam) RunParams.Params.reset();
}

// ---- layout

void TMultiAbs_LF::SaveLayout(TConfigItem* node) {
    TAbs_LF::SaveLayout(node);
    if (!node) return;
    const QVariant key = lcSelect->keyValue();
    node->ItemByName("lcSelect.KeyValue")->SetAsInteger(holdsValue(key) ? key.toInt() : -1);
    node->ItemByName("mdList.RecordCount")->SetAsInteger(mdList->recordCount());
    const int id = mdList->fieldByName("ID")->index();
    for (int row = 0; row < mdList->recordCount(); ++row)
        node->ItemByName(QStringLiteral("mdList.Record%1").arg(row))
            ->SetAsInteger(mdList->valueAt(row, id).toInt());
}

void TMultiAbs_LF::RestoreLayout(TConfigItem* node) {
    TAbs_LF::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists("lcSelect.KeyValue"))
        lcSelect->setKeyValue(node->ItemByName("lcSelect.KeyValue")->GetAsInteger());
    if (!pFIBDataSet1->active()) return;
    const db::AbstractDataSet::Bookmark mark = pFIBDataSet1->bookmark();
    // The combo's own key, as the combo holds it: a key the list does not hold (the -1 of an
    // empty choice) leaves the dataset on whatever row it was, whose key is not the combo's.
    const QVariant comboKey = lcSelect->keyValue();
    const qint64 own = holdsValue(comboKey) ? keyOf(comboKey) : -1;
    pFIBDataSet1->disableControls();
    mdList->disableControls();
    try {
        if (node->IsExists("mdList.RecordCount")) {
            // One pass over the list finds every saved key, however many there are.
            const int keyColumn = pFIBDataSet1->fieldByName(lcSelect->lookupField())->index();
            const QString display = lcSelect->lookupDisplay().section(';', 0, 0).trimmed();
            const int nameColumn = pFIBDataSet1->fieldByName(display)->index();
            QHash<qint64, int> rowOf;
            for (int row = 0, n = pFIBDataSet1->recordCount(); row < n; ++row)
                rowOf.insert(keyOf(pFIBDataSet1->valueAt(row, keyColumn)), row);
            const int count = node->ItemByName("mdList.RecordCount")->GetAsInteger();
            for (int i = 0; i < count; ++i) {
                const QString name = QStringLiteral("mdList.Record%1").arg(i);
                if (!node->IsExists(name)) continue;
                const TConfigItem* saved = node->Find(name);
                bool ok = false;
                const qint64 key = saved->Value().toLongLong(&ok);
                // The combo's own key is not put into the list; keys the table lost are dropped.
                if (!ok || key == own) continue;
                const auto it = rowOf.constFind(key);
                if (it == rowOf.constEnd()) continue;
                mdList->append();
                mdList->fieldByName("ID")->setValue(pFIBDataSet1->valueAt(*it, keyColumn));
                mdList->fieldByName("Name")->setValue(pFIBDataSet1->valueAt(*it, nameColumn));
                mdList->post();
            }
        }
        Get_sSQL();
        if (mark >= 0 && pFIBDataSet1->bookmarkValid(mark)) pFIBDataSet1->gotoBookmark(mark);
    } catch (...) {
        mdList->enableControls();
        pFIBDataSet1->enableControls();
        throw;
    }
    mdList->enableControls();
    pFIBDataSet1->enableControls();
}

} // namespace frames
