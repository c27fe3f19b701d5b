#include "host/ClassifForm.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/WaitCursor.h"
#include "host/GridTools.h"
#include "platform/db/DataSet.h"
#include "platform/db/Query.h"
#include "platform/widgets/ClassifTreeView.h"
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

namespace {

const char* const branchesSql = "select ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF from CLASSIF_VIEW\n"
                                "where ID_CLASSIF_TYPE = :TYPE and ID_CLASSIF > -1\n"
                                "order by NAME_CLASSIF collate PXW_CYRL";
const char* const typeNameSql =
    "select NAME_CLASSIF_TYPE from CLASSIF_TYPE_VIEW where ID_CLASSIF_TYPE = :TYPE";

} // namespace

ClassifForm::ClassifForm(db::Database* database, db::Transaction* tr, frames::TRunParams& params,
                         QWidget* parent)
    : TfmPersistentForm(parent), params_(params) {
    setObjectName(FormName);
    setWindowTitle(QStringLiteral("Классификатор"));
    resize(420, 520);
    type_ = params.ResultInt;
    if (params.Params)
        if (const frames::TVarParams::Param* p = params.Params->Find(QStringLiteral("DONT_ACCEPT_ROOT")))
            dontAcceptRoot_ = p->Value.toBool();

    dataSet_ = new db::DataSet(database, tr, this);
    dataSet_->setObjectName(QStringLiteral("dsClassif"));
    dataSet_->setSelectSql(QString::fromLatin1(branchesSql));

    search_ = new QLineEdit(this);
    search_->setObjectName(QStringLiteral("edSearch"));
    search_->setPlaceholderText(QStringLiteral("Поиск"));
    search_->setClearButtonEnabled(true);
    found_ = new QLabel(this);
    found_->setObjectName(QStringLiteral("lbFound"));
    tree_ = new ui::ClassifTreeView(this);
    tree_->setObjectName(QStringLiteral("tvClassif"));

    const ChooserButtons b = layOutChooser(this, search_, found_, tree_);
    ok_ = b.ok;
    cancel_ = b.cancel;

    connect(search_, &QLineEdit::textEdited, this,
            [this](const QString& text) { frames::guard([&] { setSearchText(text); }); });
    search_->installEventFilter(this);
    connect(tree_, &ui::ClassifTreeView::currentNodeChanged, this, [this] { updateButtons(); });
    connect(tree_, &ui::ClassifTreeView::nodeActivated, this,
            [this] { frames::guard([this] { confirm(); }); });
    connect(ok_, &QPushButton::clicked, this, [this] { frames::guard([this] { confirm(); }); });
    connect(cancel_, &QPushButton::clicked, this, [this] { frames::guard([this] { cancel(); }); });
    updateButtons();
}

ClassifForm::~ClassifForm() = default;

bool ClassifForm::eventFilter(QObject* o, QEvent* e) {
    // Enter in the search box looks further; it does not answer the form.
    if (o == search_ && e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            frames::guard([this] { findNext(); });
            return true;
        }
    }
    return QDialog::eventFilter(o, e);
}

void ClassifForm::open() {
    const frames::WaitCursor wait;
    db::Query name(dataSet_->database(), dataSet_->transaction());
    name.setSql(QString::fromLatin1(typeNameSql));
    name.paramByName(QStringLiteral("TYPE"))->setValue(type_);
    name.open();
    if (name.next() && !name.value(0).isNull())
        setWindowTitle(QStringLiteral("Классификатор: %1").arg(name.value(0).toString().trimmed()));
    name.close();

    dataSet_->close();
    dataSet_->paramByName(QStringLiteral("TYPE"))->setValue(type_);
    dataSet_->open();
    tree_->build(*dataSet_);
    // Open on the caller's branch; without one, on the top of the tree.
    if (params_.KeyInt < 0 || !tree_->setCurrentKey(params_.KeyInt)) {
        const QList<int> tops = tree_->childNodes(-1);
        if (!tops.isEmpty()) {
            tree_->setCurrentNode(tops.first());
            if (tops.size() == 1) tree_->expand(tree_->indexOfNode(tops.first()));
        }
    }
    updateButtons();
    tree_->setFocus();
}

bool ClassifForm::setCurrentKey(int key) {
    const bool ok = tree_->setCurrentKey(key);
    updateButtons();
    return ok;
}

std::optional<int> ClassifForm::currentKey() const {
    return tree_->currentKey();
}

bool ClassifForm::findFrom(int after) {
    const int node = tree_->findText(search_->text(), after);
    if (node >= 0) tree_->setCurrentNode(node);
    found_->setText(node >= 0 || search_->text().trimmed().isEmpty() ? QString()
                                                                     : QStringLiteral("не найдено"));
    return node >= 0;
}

void ClassifForm::setSearchText(const QString& text) {
    if (search_->text() != text) search_->setText(text);
    findFrom(-1);
}

bool ClassifForm::findNext() {
    return findFrom(tree_->currentNode());
}

void ClassifForm::updateButtons() {
    ok_->setEnabled(tree_->currentNode() >= 0);
}

void ClassifForm::confirm() {
    const int node = tree_->currentNode();
    if (node < 0) return;
    if (dontAcceptRoot_ && tree_->isTopLevel(node)) {
        frames::TyWarningBox(QStringLiteral("Корень классификатора выбрать нельзя: выберите ветвь"));
        return;
    }
    const int key = tree_->nodeKey(node);
    params_.ResultInt = key;
    params_.KeyInt = key;
    params_.KeyValue = key;
    done(Confirmed);
}

void ClassifForm::cancel() {
    done(Cancelled);
}

} // namespace workbench
