#include "frames/filter/FF_Classif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "frames/select/DF_Classif.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include <QBoxLayout>
#include <QMouseEvent>

namespace frames {

// ---------------------------------------------------------------- summary rows

namespace filter_summary {

bool Replace(const QVariantList& deleteSql, const QVariantList& insertSql, const QString& operation) {
    db::Transaction tr(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait());
    try {
        QvSqlExec(&tr, false, deleteSql);
        QvSqlExec(&tr, false, insertSql);
        tr.commit();
        return true;
    } catch (...) {
        const std::exception_ptr e = std::current_exception();
        try {
            if (tr.active()) tr.rollback();
        } catch (...) {
            // The connection that failed the statement may not take the rollback either; the
            // transaction dies with it.
        }
        reportError(e, operation);
        return false;
    }
}

FirstRow ReadFirst(const QVariantList& selectSql, const QString& operation) {
    FirstRow r;
    try {
        std::unique_ptr<db::Query> q = QvSqlQueryRead(selectSql);
        r.value = q->value(0);
        r.found = r.value.isValid();
        q->close();
        r.ok = true;
    } catch (...) {
        reportError(std::current_exception(), operation);
    }
    return r;
}

} // namespace filter_summary

// ---------------------------------------------------------------- TDialogFilter_FF

TDialogFilter_FF::TDialogFilter_FF(QWidget* parent) : TSetFilter_EF(parent) {}

TAbsEditFrame* TDialogFilter_FF::createDialog(const QString& className, const QString& name) {
    dialog_ = Registry::instance().create(className, content());
    dialog_->setObjectName(name);
    contentLayout()->addWidget(dialog_, 1);
    return dialog_;
}

void TDialogFilter_FF::Init() {
    TSetFilter_EF::Init();
    dialog_->Init();
}

void TDialogFilter_FF::DataRefresh() {
    TSetFilter_EF::DataRefresh();
    dialog_->DataRefresh();
}

void TDialogFilter_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    dialog_->SetReadOnly(value);
}

void TDialogFilter_FF::FormClose() {
    dialog_->FormClose();
    TSetFilter_EF::FormClose();
}

void TDialogFilter_FF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (node && node->IsExists(dialog_->objectName()))
        dialog_->RestoreLayout(node->ItemByName(dialog_->objectName()));
}

void TDialogFilter_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (node) dialog_->SaveLayout(node->ItemByName(dialog_->objectName()));
}

// ---------------------------------------------------------------- TClassif_FF

namespace {
const char* const kClassifType = "DF_Classif.ClassifType";
} // namespace

TClassif_FF::TClassif_FF(QWidget* parent) : TDialogFilter_FF(parent) {
    resize(360, 420);
    DF_Classif =
        qobject_cast<TDFClassif*>(createDialog(QStringLiteral("TDFClassif"), QStringLiteral("DF_Classif")));
    connect(DF_Classif, &ClassifChoiceFrame::SelectionChanged, this,
            [this] { guard([&] { DF_ClassifpfUpdateAfterExecute(); }); });
    // Installed after the dialog's own filter, so that this one sees the press first.
    DF_Classif->TreeView->viewport()->installEventFilter(this);
}

TClassif_FF::~TClassif_FF() = default;

void TClassif_FF::SetKind(int kind) {
    if (DF_Classif->Kind == kind) return;
    DF_Classif->Kind = kind;
    if (DF_Classif->pfDataSet->active()) DF_Classif->DataRefresh();
}

int TClassif_FF::GetKind() const {
    return DF_Classif->Kind;
}

void TClassif_FF::SaveLayout(TConfigItem* node) {
    TDialogFilter_FF::SaveLayout(node);
    const int user = CUR_USER;
    const int kind = GetKind();
    const int type = DF_Classif->ClassifType;
    if (node) node->ItemByName(kClassifType)->SetAsInteger(type);
    filter_summary::Replace(
        {"delete from sel_classif_filter where id_user=", user, " and kind=", kind},
        {"insert into sel_classif_filter (id_user,kind,classif_type,itemcount)", "  select id_user,", kind,
         ",", type, ",", "    (select sum(c.itemcount) from sel_classif sc ",
         "        left join classif c on sc.classif=c.id_classif", "        where sc.id_user=", user,
         " and sc.kind=", kind, " and sc.classif_type=", type, ")", "    from users",
         "    where id_user=", user},
        QStringLiteral("Не удалось сохранить фильтр по классификатору"));
}

void TClassif_FF::RestoreLayout(TConfigItem* node) {
    TDialogFilter_FF::RestoreLayout(node);
    const int user = CUR_USER;
    const int kind = GetKind();
    const QString reading = QStringLiteral("Не удалось прочитать фильтр по классификатору");
    const filter_summary::FirstRow exists = filter_summary::ReadFirst(
        {"select 1 from sel_classif_filter where id_user=", user, " and kind=", kind, " rows 1"}, reading);
    if (!exists.ok) return; // the user was told; the box stays as the layout left it
    if (exists.found) {
        cbSet->setChecked(true);
        const filter_summary::FirstRow type =
            filter_summary::ReadFirst({"select classif_type from sel_classif_filter where id_user=", user,
                                       " and kind=", kind, " rows 1"},
                                      reading);
        if (type.ok && type.found && !type.value.isNull()) DF_Classif->SetClassifType(type.value.toInt());
    } else {
        cbSet->setChecked(false);
        if (node && node->IsExists(kClassifType))
            DF_Classif->SetClassifType(node->ItemByName(kClassifType)->GetAsInteger());
    }
}

void TClassif_FF::DF_ClassifpfUpdateAfterExecute() {
    ContentChanged();
}

void TClassif_FF::DF_ClassifTreeViewMouseDown(Qt::MouseButton button, Qt::KeyboardModifiers shift,
                                              const QPoint& pos) {
    DF_Classif->TreeViewMouseDown(button, shift, pos);
}

bool TClassif_FF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == DF_Classif->TreeView->viewport() && event->type() == QEvent::MouseButtonPress) {
        auto* e = static_cast<QMouseEvent*>(event);
        if (e->button() == Qt::RightButton) {
            const QPoint pos = e->position().toPoint();
            guard([&] { DF_ClassifTreeViewMouseDown(e->button(), e->modifiers(), pos); });
            return true; // handled here: the dialog's own filter must not toggle the node again
        }
    }
    return TDialogFilter_FF::eventFilter(watched, event);
}

FRAMES_REGISTER(TClassif_FF, "filter");

} // namespace frames
