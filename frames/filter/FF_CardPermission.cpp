#include "frames/filter/FF_CardPermission.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/MemTable.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DataSetModel.h"
#include <QBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOptionHeader>

namespace frames {

namespace {

const QString kGroupTitle = QStringLiteral("Группа мест хранения|");

// Header captions of the form "upper|lower" drawn on two levels: the lower text in the section's
// own lower half, the upper text once across the neighbouring sections that share it.
class TwoLevelHeaderStyle : public QProxyStyle {
public:
    using QProxyStyle::QProxyStyle;

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        const auto* header = qobject_cast<const QHeaderView*>(widget);
        const auto* opt = qstyleoption_cast<const QStyleOptionHeader*>(option);
        if (element != CE_Header || !header || !opt || !opt->text.contains(QLatin1Char('|'))) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        const QString upper = opt->text.section(QLatin1Char('|'), 0, 0);
        const QString lower = opt->text.section(QLatin1Char('|'), 1);
        const QRect r = opt->rect;
        const int half = r.height() / 2;
        const QRect top(r.left(), r.top(), r.width(), half);
        const QRect bottom(r.left(), r.top() + half, r.width(), r.height() - half);

        // Upper level: one caption over the run of sections that share it.
        int left = r.left(), right = r.right();
        const int visual = header->visualIndex(opt->section);
        auto upperOf = [&](int v) {
            const int logical = header->logicalIndex(v);
            if (logical < 0 || header->isSectionHidden(logical)) return QString();
            const QString t = header->model()->headerData(logical, Qt::Horizontal).toString();
            return t.contains(QLatin1Char('|')) ? t.section(QLatin1Char('|'), 0, 0) : QString();
        };
        for (int v = visual - 1; v >= 0 && upperOf(v) == upper; --v)
            left -= header->sectionSize(header->logicalIndex(v));
        bool lastOfRun = true;
        for (int v = visual + 1; v < header->count() && upperOf(v) == upper; ++v) {
            right += header->sectionSize(header->logicalIndex(v));
            lastOfRun = false;
        }
        painter->save();
        painter->setClipRect(r);
        painter->fillRect(top, opt->palette.button());
        painter->setPen(opt->palette.color(QPalette::Mid));
        painter->drawLine(top.bottomLeft(), top.bottomRight());
        if (lastOfRun) painter->drawLine(top.topRight(), top.bottomRight());
        painter->setPen(opt->palette.color(QPalette::ButtonText));
        painter->drawText(QRect(left, top.top(), right - left + 1, top.height()), Qt::AlignCenter, upper);
        painter->restore();

        QStyleOptionHeader part(*opt);
        part.rect = bottom;
        part.text = lower;
        QProxyStyle::drawControl(CE_Header, &part, painter, widget);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override {
        const auto* opt = qstyleoption_cast<const QStyleOptionHeader*>(option);
        if (type != CT_HeaderSection || !opt || !opt->text.contains(QLatin1Char('|')))
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        QStyleOptionHeader part(*opt);
        part.text = opt->text.section(QLatin1Char('|'), 1);
        QSize s = QProxyStyle::sizeFromContents(type, &part, size, widget);
        s.setHeight(s.height() * 2);
        return s;
    }
};

} // namespace

TCardPermission_FF::TCardPermission_FF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(420, 220);
    pfDataSet = new db::DataSet(this);
    pfDataSet->setObjectName("pfDataSet");
    pfDataSet->setDatabase(dmDataBaseFIB()->RvDatabase());
    pfDataSet->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    mdDataSet = new db::MemTable(this);
    mdDataSet->setObjectName("mdDataSet");
    Ds = new db::DataSource(mdDataSet, this);
    Ds->setObjectName("Ds");

    DBGrid = new ui::DBGrid(content());
    DBGrid->setObjectName("DBGrid");
    DBGrid->setMultiSelect(false);
    DBGrid->setSortMarking(false);
    DBGrid->setReadOnly(true);
    DBGrid->setDataSource(Ds);
    auto* style = new TwoLevelHeaderStyle;
    style->setParent(DBGrid->horizontalHeader());
    DBGrid->horizontalHeader()->setStyle(style);
    DBGrid->horizontalHeader()->setDefaultAlignment(Qt::AlignCenter);
    contentLayout()->addWidget(DBGrid, 1);
    connect(DBGrid, &QAbstractItemView::doubleClicked, this, [this] { guard([&] { DBGridDblClick(); }); });
    DBGrid->installEventFilter(this);
}

TCardPermission_FF::~TCardPermission_FF() {
    DBGrid->setDataSource(nullptr);
}

void TCardPermission_FF::AfterConstruction() {
    TSetFilter_EF::AfterConstruction();
    try {
        BuildSQL();
        pfDataSet->open();
        CopyDataSets();
    } catch (...) {
        // The box stays empty; the report goes on without it.
        reportError(std::current_exception(),
                    QStringLiteral("Не удалось прочитать фильтр по разрешениям карточек"));
    }
}

void TCardPermission_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (modified_) ApplyChange();
}

void TCardPermission_FF::BuildSQL() {
    pfDataSet->close();
    QStringList columns{QStringLiteral("name")};
    QVariantMap captions{{QStringLiteral("name"), QStringLiteral("Шаблон разрешений")}};
    QStringList checks;

    const int user = CUR_USER;
    QString select = QStringLiteral("select pp.id,pp.name");
    QString joins;
    std::unique_ptr<db::Query> groups =
        QvSqlQueryRead({"select id, name from SUPERPLACE_HEAD where spkind=3 and is_used='T' order by id"});
    for (bool row = groups->value(0).isValid(); row; row = groups->next()) {
        const int n = groups->value(0).toInt();
        const QString s = groups->value(1).toString();
        const QString p = QStringLiteral("p") + QString::number(n);
        const QString field = QStringLiteral("p_") + QString::number(n);
        select += "," + p + ".is_set as " + field;
        joins += SqlText({"\r left join CARDPERMISSION_FILTER ", p, " on ", p, ".id_user=", user, " and ", p,
                          ".superplace=", n, " and ", p, ".permission_pattern=pp.id"});
        columns << field;
        captions.insert(field, kGroupTitle + s);
        checks << field;
    }
    groups->close();
    pfDataSet->setSelectSql(select + "\r from PERMISSION_PATTERN pp" + joins);

    DBGrid->setColumns(columns);
    DBGrid->setCaptions(captions);
    DBGrid->setCheckFields(checks);
}

void TCardPermission_FF::CopyDataSets() {
    mdDataSet->close();
    mdDataSet->clearFieldDefs();
    for (int i = 0; i < pfDataSet->fieldCount(); ++i) {
        const db::Field* f = pfDataSet->field(i);
        mdDataSet->addFieldDef(f->fieldName(), f->dataType(), f->size(), f->scale());
    }
    mdDataSet->open();
    mdDataSet->disableControls();
    try {
        for (int row = 0; row < pfDataSet->recordCount(); ++row) {
            QVariantList values;
            for (int i = 0; i < pfDataSet->fieldCount(); ++i) values << pfDataSet->valueAt(row, i);
            mdDataSet->appendRecord(values);
        }
    } catch (...) {
        mdDataSet->enableControls();
        throw;
    }
    mdDataSet->enableControls();
    mdDataSet->first();
    modified_ = false;
    fitColumns();
}

void TCardPermission_FF::fitColumns() {
    const QFontMetrics header(DBGrid->horizontalHeader()->font());
    const QFontMetrics cells(DBGrid->font());
    const int name = DBGrid->columnOfField(QStringLiteral("NAME"));
    ui::DataSetModel* model = DBGrid->dataModel();
    for (int c = 0; c < model->columnCount(); ++c) {
        // A group's column is as wide as its own (lower) title; the names as their longest.
        const QString title = model->caption(c).section(QLatin1Char('|'), -1);
        int width = header.horizontalAdvance(title) + 16;
        if (c == name) {
            const int field = model->fieldIndex(c);
            for (int r = 0; r < mdDataSet->recordCount(); ++r)
                width = qMax(width, cells.horizontalAdvance(mdDataSet->valueAt(r, field).toString()) + 12);
            width = qMin(width, 320);
        }
        DBGrid->setColumnWidth(c, qMax(width, 48));
    }
}

QString TCardPermission_FF::currentFieldName() const {
    const QModelIndex idx = DBGrid->currentIndex();
    const db::Field* f = idx.isValid() ? DBGrid->dataModel()->field(idx.column()) : nullptr;
    return f ? f->fieldName() : QString();
}

void TCardPermission_FF::toggleCurrent() {
    if (GetReadOnly() || !mdDataSet->active() || mdDataSet->isEmpty()) return;
    const QString name = currentFieldName();
    if (name.isEmpty()) return;
    db::Field* f = mdDataSet->fieldByName(name);
    mdDataSet->edit();
    try {
        f->setValue(f->isNull() || f->asInteger() != 1 ? 1 : 0);
        mdDataSet->post();
    } catch (...) {
        mdDataSet->cancel();
        throw;
    }
    modified_ = true;
    ContentChanged();
}

void TCardPermission_FF::DBGridDblClick() {
    if (currentFieldName() == QLatin1String("NAME")) return;
    toggleCurrent();
}

void TCardPermission_FF::DBGridKeyDown(int key) {
    if (key != 32 || currentFieldName().compare(QLatin1String("NAME"), Qt::CaseInsensitive) == 0) return;
    toggleCurrent();
}

bool TCardPermission_FF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == DBGrid && event->type() == QEvent::KeyPress) {
        auto* e = static_cast<QKeyEvent*>(event);
        if (e->key() == Qt::Key_Space && !(e->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
            guard([&] { DBGridKeyDown(e->key()); });
            return true;
        }
    }
    return TSetFilter_EF::eventFilter(watched, event);
}

bool TCardPermission_FF::ApplyChange() {
    if (!mdDataSet->active()) return true;
    if (mdDataSet->inEditMode()) mdDataSet->post();
    db::Transaction tr(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait());
    db::Query update(dmDataBaseFIB()->RvDatabase(), &tr);
    update.setSql(QStringLiteral("execute procedure CARDPERMISSION_FILTER_UPDATE(:id_user, :superplace, "
                                 ":permission_pattern, :is_set)"));
    mdDataSet->disableControls();
    const int keep = mdDataSet->recNo();
    try {
        tr.start();
        const int id = mdDataSet->fieldByName(QStringLiteral("ID"))->index();
        for (int row = 0; row < mdDataSet->recordCount(); ++row) {
            for (int i = 0; i < mdDataSet->fieldCount(); ++i) {
                const QString name = mdDataSet->field(i)->fieldName();
                if (!name.left(2).toUpper().startsWith(QLatin1String("P_"))) continue;
                const QVariant v = mdDataSet->valueAt(row, i);
                update.paramByName(QStringLiteral("id_user"))->setValue(CUR_USER);
                update.paramByName(QStringLiteral("superplace"))->setValue(name.mid(2).toInt());
                update.paramByName(QStringLiteral("permission_pattern"))
                    ->setValue(mdDataSet->valueAt(row, id));
                update.paramByName(QStringLiteral("is_set"))->setValue(v.isNull() ? 0 : v.toInt());
                update.exec();
            }
        }
        tr.commit();
    } catch (...) {
        const std::exception_ptr e = std::current_exception();
        try {
            if (tr.active()) tr.rollback();
        } catch (...) {
            // A lost connection takes the transaction with it.
        }
        if (keep >= 0) mdDataSet->setRecNo(keep);
        mdDataSet->enableControls();
        reportError(e, QStringLiteral("Не удалось сохранить фильтр по разрешениям карточек"));
        return false;
    }
    if (keep >= 0) mdDataSet->setRecNo(keep);
    mdDataSet->enableControls();
    modified_ = false;
    return true;
}

FRAMES_REGISTER(TCardPermission_FF, "filter");

} // namespace frames
