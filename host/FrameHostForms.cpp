#include "host/FrameHostForms.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/WaitCursor.h"
#include "frames/edit/EF_CalcEdit.h"
#include "frames/lookup/LF_Abs.h"
#include "host/HostImpl.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Error.h"
#include "platform/db/MemTable.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/LookupCombo.h"
#include <QDialogButtonBox>
#include <QFile>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QShortcut>
#include <QVBoxLayout>
#include <memory>
#include <stdexcept>

// Q_INIT_RESOURCE declares the resource's function: outside our namespace.
static void initFrameParamResources() {
    Q_INIT_RESOURCE(workbench_resources);
}

namespace workbench {

namespace db = frames::db;
namespace ui = frames::ui;

namespace {

QList<EditorSlot> slotsOf(const QStringList& classes) {
    QList<EditorSlot> out;
    for (const QString& cls : classes) out.append(EditorSlot{cls, {}, {}, {}, {}});
    return out;
}

// The object and property a slot's valueProperty names on its frame.
QObject* valueTarget(QObject* frame, const EditorSlot& s, QByteArray& property) {
    const int dot = s.valueProperty.lastIndexOf(QLatin1Char('.'));
    property = s.valueProperty.mid(dot + 1).toLatin1();
    QObject* target = dot < 0 ? frame : frame->findChild<QObject*>(s.valueProperty.left(dot));
    if (!target || target->metaObject()->indexOfProperty(property.constData()) < 0)
        throw std::runtime_error(
            QStringLiteral("%1: no property %2").arg(s.frameName(), s.valueProperty).toStdString());
    return target;
}

} // namespace

void applyFrameParams(frames::TAbsEditFrame* frame) {
    static const QJsonObject table = [] {
        initFrameParamResources();
        QFile f(QStringLiteral(":/workbench/frame_params.json"));
        if (!f.open(QIODevice::ReadOnly)) throw std::runtime_error("frame_params.json is missing");
        return QJsonDocument::fromJson(f.readAll()).object().value(QStringLiteral("frames")).toObject();
    }();
    auto* lf = qobject_cast<frames::TAbs_LF*>(frame);
    const QJsonObject params =
        table.value(QString::fromLatin1(frame->metaObject()->className()).section(QStringLiteral("::"), -1))
            .toObject();
    if (params.isEmpty()) return;
    if (!lf) {
        // Other frames take their parameters as properties (a selection dialog's kind).
        for (auto it = params.begin(); it != params.end(); ++it)
            if (frame->metaObject()->indexOfProperty(it.key().toLatin1()) >= 0)
                frame->setProperty(it.key().toLatin1(), it.value().toVariant());
        return;
    }
    for (auto it = params.begin(); it != params.end(); ++it) {
        db::Param* p = lf->pFIBDataSet1->findParam(it.key());
        if (!p) continue;
        const QVariant v = it.value().toVariant();
        p->setValue(v.toString() == QLatin1String("today") ? QVariant(frames::host()->Today()) : v);
    }
}

// ---- RecordListForm

RecordListForm::RecordListForm(HostImpl* host, db::AbstractDataSet* records, const QStringList& frameClasses,
                               QWidget* parent)
    : RecordListForm(host, records, slotsOf(frameClasses), parent) {}

RecordListForm::RecordListForm(HostImpl* host, db::AbstractDataSet* records, const QList<EditorSlot>& editors,
                               QWidget* parent)
    : TfmLayer1_FIB(parent), host_(host), records_(records), editors_(editors) {
    setObjectName(QStringLiteral("RecordListForm"));
    setWindowTitle(QStringLiteral("Записи: %1").arg(frameClasses().join(QStringLiteral(", "))));
    resize(640, 320);
    records_->setParent(this);
    source_ = new db::DataSource(records_, this);
    SetCurrentSource(source_);

    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grRecords"));
    grid_->setMultiSelect(false);
    grid_->setDataSource(source_);

    auto* btEdit = new QPushButton(QStringLiteral("&Изменить…"), this);
    btEdit->setObjectName(QStringLiteral("btEdit"));
    auto* btView = new QPushButton(QStringLiteral("&Просмотр…"), this);
    btView->setObjectName(QStringLiteral("btView"));
    auto* btAdd = new QPushButton(QStringLiteral("&Добавить…"), this);
    btAdd->setObjectName(QStringLiteral("btAdd"));
    // Only a table with an insert statement takes new records.
    auto* table = qobject_cast<db::DataSet*>(records_);
    btAdd->setVisible(table && !table->insertSql().trimmed().isEmpty());
    // A row found by its text, from the keyboard too (Ctrl+F).
    auto* btFind = new QPushButton(QStringLiteral("&Найти…"), this);
    btFind->setObjectName(QStringLiteral("btFind"));
    btFind->setToolTip(QStringLiteral("Найти запись по тексту (Ctrl+F)"));
    auto* find = new QShortcut(QKeySequence::Find, this);
    auto* btClose = new QPushButton(QStringLiteral("Закрыть"), this);
    setActionIcon(btFind, "edit-find", QStyle::SP_FileDialogContentsView);
    setActionIcon(btEdit, "document-edit", QStyle::SP_FileDialogDetailedView);
    setActionIcon(btView, "document-preview", QStyle::SP_FileDialogContentsView);
    setActionIcon(btAdd, "document-new", QStyle::SP_FileIcon);
    setActionIcon(btClose, "window-close", QStyle::SP_DialogCloseButton);
    auto* buttons = new QHBoxLayout;
    buttons_ = buttons;
    buttons->addWidget(btEdit);
    buttons->addWidget(btView);
    buttons->addWidget(btAdd);
    buttons->addWidget(btFind);
    buttons->addStretch(1);
    buttons->addWidget(btClose);
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(QStringLiteral("Двойной щелчок или «Изменить…» открывает запись на форме "
                                           "редактирования: фреймы на ней привязаны к этой записи."),
                            this);
    hint->setObjectName(QStringLiteral("lbHint"));
    hint->setWordWrap(true);
    layout->addWidget(hint);
    layout->addWidget(grid_, 1);
    layout->addLayout(buttons);

    // Each column is shown in the format of the frame that edits it.
    records_->afterOpen.connect([this](db::AbstractDataSet&) { applyEditorFormats(); });
    if (records_->active()) applyEditorFormats();

    connect(btEdit, &QPushButton::clicked, this, [this] { frames::guard([this] { editCurrent(); }); });
    connect(btView, &QPushButton::clicked, this, [this] { frames::guard([this] { viewCurrent(); }); });
    connect(btAdd, &QPushButton::clicked, this, [this] { frames::guard([this] { addNew(); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);
    connect(grid_, &ui::DBGrid::activated, this, [this] { frames::guard([this] { editCurrent(); }); });
    const auto findRow = [this] { frames::guard([this] { host_->ShowFindForm(grid_, QString()); }); };
    connect(btFind, &QPushButton::clicked, this, findRow);
    connect(find, &QShortcut::activated, this, findRow);
}

namespace {

// The "DisplayFormat" a form description gives any of its components, or empty.
QString displayFormatIn(const QJsonObject& description) {
    const QJsonObject comps = description.value(QStringLiteral("components")).toObject();
    for (auto it = comps.begin(); it != comps.end(); ++it) {
        const QString f = it.value().toObject().value(QStringLiteral("DisplayFormat")).toString();
        if (!f.isEmpty()) return f;
    }
    return {};
}

} // namespace

void RecordListForm::applyEditorFormats() {
    for (const EditorSlot& slot : editors_) {
        db::Field* f = slot.column.isEmpty() ? nullptr : records_->findField(slot.column);
        if (!f) continue;
        // The slot's own description first, then the class's (the nearest class first).
        QString format = displayFormatIn(slot.description);
        const QStringList chain = frames::FormLoader::chain(slot.className);
        for (auto it = chain.crbegin(); format.isEmpty() && it != chain.crend(); ++it)
            format = displayFormatIn(frames::FormLoader::description(*it));
        if (!format.isEmpty()) f->displayFormat = format;
    }
    // Numbers no frame names a format for (the calculated ones too) as the amount editor shows
    // them.
    for (int i = 0; i < records_->fieldCount(); ++i) {
        db::Field* f = records_->field(i);
        const db::FieldType t = f->dataType();
        const bool number =
            t == db::FieldType::Numeric || t == db::FieldType::Float || t == db::FieldType::Double;
        if (number && f->displayFormat.isEmpty())
            f->displayFormat = frames::TCalcEdit_Frame::FormatOfTag(f->tag);
    }
}

RecordListForm::~RecordListForm() {
    // The grid goes before the records it shows.
    delete grid_;
    if (writeTr_ && writeTr_->active()) {
        try {
            writeTr_->rollback();
        } catch (const db::Error&) {
        }
    }
}

QStringList RecordListForm::frameClasses() const {
    QStringList out;
    for (const EditorSlot& s : editors_) out << s.className;
    return out;
}

void RecordListForm::setWriteTransaction(db::Transaction* tr) {
    writeTr_ = tr;
    if (auto* table = qobject_cast<db::DataSet*>(records_)) table->setUpdateTransaction(tr);
}

RecordListForm* RecordListForm::forLookup(HostImpl* host, const QString& className, QWidget* parent) {
    const frames::WaitCursor wait;
    // The frame's own list, read free-standing, gives the keys the records point at.
    QWidget scratch;
    std::unique_ptr<frames::TAbsEditFrame> probe(frames::Registry::instance().create(className, &scratch));
    auto* lf = qobject_cast<frames::TAbs_LF*>(probe.get());
    if (!lf) throw std::runtime_error(className.toStdString() + " is not a lookup frame");
    applyFrameParams(lf);
    lf->Init();
    const QString keyField = lf->lcSelect->lookupField();
    // A frame that names no field of its own (its value is a code it lists itself) edits a text
    // column of the record.
    QString field = lf->lcSelect->dataField().isEmpty() ? keyField : lf->lcSelect->dataField();
    if (field.isEmpty()) field = QStringLiteral("VALUE");

    auto* records = new db::MemTable;
    db::DataSet* list = lf->pFIBDataSet1;
    const db::Field* key = list->active() ? list->findField(keyField) : nullptr;
    records->addFieldDef(QStringLiteral("N"), db::FieldType::Integer);
    if (key)
        records->addFieldDef(field, key->dataType(), key->size(), key->scale());
    else
        records->addFieldDef(field, keyField.isEmpty() ? db::FieldType::VarChar : db::FieldType::Integer,
                             100);
    records->addFieldDef(QStringLiteral("SHOWN"), db::FieldType::VarChar, 200);
    records->open();
    int n = 0;
    if (key) {
        const QString display = lf->lcSelect->lookupDisplay().split(QLatin1Char(';')).value(0).trimmed();
        const db::Field* shown = list->findField(display);
        for (list->first(); !list->eof() && n < 5; list->next())
            records->appendRecord({++n, key->value(), shown ? shown->displayText() : QString()});
    }
    records->appendRecord({++n, QVariant(), QString()});
    records->first();
    lf->FormClose();

    // A frame that names no field of its own edits the key field here.
    EditorSlot slot{className, field, {}, {}, {}};
    if (lf->lcSelect->dataField().isEmpty())
        slot.description = QJsonObject{
            {QStringLiteral("components"),
             QJsonObject{{QStringLiteral("lcSelect"), QJsonObject{{QStringLiteral("DataField"), field}}}}}};
    auto* form = new RecordListForm(host, records, QList<EditorSlot>{slot}, parent);
    form->setWindowTitle(QStringLiteral("%1 на форме редактирования").arg(className));
    form->shownColumn = QStringLiteral("SHOWN");
    form->grid_->setColumns({QStringLiteral("N"), field, QStringLiteral("SHOWN")});
    form->grid_->setCaptions({{QStringLiteral("N"), QStringLiteral("№")},
                              {field, field + QStringLiteral(" (ключ)")},
                              {QStringLiteral("SHOWN"), QStringLiteral("Показано фреймом")}});
    return form;
}

int RecordListForm::editCurrent() {
    return showDialog(false);
}

int RecordListForm::viewCurrent() {
    if (records_->inEditMode()) return QDialog::Rejected;
    return showDialog(true);
}

int RecordListForm::showDialog(bool viewOnly) {
    if (!records_->active() || (records_->isEmpty() && !records_->inEditMode())) return QDialog::Rejected;
    FrameEditDialog dlg(host_, this, viewOnly);
    try {
        dlg.prepare();
    } catch (...) {
        // Reported here, like every other failure of the form: the caller gets "not edited".
        const std::exception_ptr e = std::current_exception();
        frames::guard([&] { dlg.reject(); });
        frames::reportError(e, QStringLiteral("Запись не открыта для редактирования"));
        return QDialog::Rejected;
    }
    if (!host_->interactive()) {
        dlg.reject();
        return QDialog::Rejected;
    }
    return dlg.exec();
}

int RecordListForm::addNew() {
    if (!records_->active()) return QDialog::Rejected;
    records_->append();
    return editCurrent();
}

void RecordListForm::addButton(QPushButton* button) {
    button->setParent(this);
    buttons_->insertWidget(buttons_->count() - 2, button); // before the stretch and "Закрыть"
}

void RecordListForm::refresh() {
    const frames::WaitCursor wait;
    if (records_->inEditMode()) records_->cancel();
    records_->reopen(true);
}

// ---- FrameEditDialog

FrameEditDialog::FrameEditDialog(HostImpl* host, RecordListForm* owner, bool viewOnly)
    : TfmAbsEditDlg(owner), host_(host), list_(owner), viewOnly_(viewOnly) {
    setObjectName(QStringLiteral("FrameEditDialog"));
    // The dialogs of different lists show different frames: each list's keeps its own size.
    setProperty("placementName", owner->objectName() + QStringLiteral("/FrameEditDialog"));
    setWindowTitle(viewOnly ? QStringLiteral("Просмотр записи") : QStringLiteral("Редактирование записи"));
    hosted_ = new HostedFrames(this, [this](const QString& name) { return layoutNode(name); });
    resize(520, 160);
    // The frames sit on a plain panel inside a scroll area: neither counts as an owner, the
    // dialog does.
    scroll_ = new QScrollArea(this);
    scroll_->setObjectName(QStringLiteral("sbFrames"));
    scroll_->setWidgetResizable(true);
    scroll_->setFrameShape(QFrame::NoFrame);
    body_ = new QWidget;
    body_->setObjectName(QStringLiteral("pnFrames"));
    auto* grid = new QGridLayout(body_);
    grid->setContentsMargins(0, 0, 0, 0);
    scroll_->setWidget(body_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName(QStringLiteral("btOk"));
    buttons->button(QDialogButtonBox::Cancel)->setObjectName(QStringLiteral("btCancel"));
    if (viewOnly) {
        buttons->button(QDialogButtonBox::Ok)->hide();
        buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("Закрыть"));
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll_, 1);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { frames::guard([this] { accept(); }); });
    connect(buttons, &QDialogButtonBox::rejected, this, [this] { frames::guard([this] { reject(); }); });
}

FrameEditDialog::~FrameEditDialog() {
    if (closed_) return;
    frames::guard([this] { cancelEdit(); });
    closeFrames();
}

frames::TConfigItem* FrameEditDialog::layoutNode(const QString& name) const {
    return host_->LayoutRoot()->ItemByName(QStringLiteral("FrameEditDialog"))->ItemByName(name);
}

frames::TAbsEditFrame* FrameEditDialog::frame(const QString& name) const {
    for (frames::TAbsEditFrame* f : frames_)
        if (f->objectName() == name) return f;
    return nullptr;
}

void FrameEditDialog::prepare() {
    const frames::WaitCursor wait;
    db::AbstractDataSet* record = list_->records();
    if (!viewOnly_ && !record->inEditMode()) record->edit();
    auto* grid = static_cast<QGridLayout*>(body_->layout());
    const int columns = qMax(1, list_->editorColumns);
    for (const EditorSlot& s : list_->editors()) {
        frames::TAbsEditFrame* f = frames::Registry::instance().create(s.className, body_);
        f->setObjectName(s.frameName());
        const int i = int(frames_.size());
        frames_.push_back(f);
        slotOf_.push_back(&s);
        grid->addWidget(f, i / columns, i % columns, Qt::AlignTop);
        if (!s.description.isEmpty()) frames::FormLoader::applyDescription(f, s.description, s.className);
        applyFrameParams(f);
        f->SetRequired(s.required);
        if (!s.keyProperty.isEmpty()) {
            // The record's key, which the frame needs before Init reads its data.
            const QVariant key = record->fieldByName(s.column)->value();
            if (!f->setProperty(s.keyProperty.toLatin1().constData(), key.isNull() ? QVariant(-1) : key))
                throw std::runtime_error(
                    QStringLiteral("%1 has no property %2").arg(s.className, s.keyProperty).toStdString());
        }
        hosted_->open(f);
        if (viewOnly_) f->SetReadOnly(true);
        if (!s.valueProperty.isEmpty()) {
            // A frame that keeps its own value shows the record's.
            QByteArray property;
            QObject* target = valueTarget(f, s, property);
            const QVariant v = record->fieldByName(s.column)->value();
            if (v.isValid() && !v.isNull()) target->setProperty(property.constData(), v);
        }
    }
    grid->setRowStretch(grid->rowCount(), 1);
    {
        // Big enough to show every frame without scrolling, within reason and within the screen
        // (a small screen scrolls the frames instead of cutting off the buttons).
        const QSize hint = body_->sizeHint();
        const QRect screen = this->screen() ? this->screen()->availableGeometry() : QRect(0, 0, 1440, 1080);
        resize(qBound(520, hint.width() + 40, qMax(520, qMin(1400, screen.width() - 40))),
               qBound(160, hint.height() + 80, qMax(160, qMin(1000, screen.height() - 60))));
    }
    frames::TAbsEditFrame* first = list_->focusEditor.isEmpty() ? nullptr : frame(list_->focusEditor);
    if (!first && !frames_.empty()) first = frames_.front();
    if (first) frames::guard([first] { first->SetFocus(); });
}

bool FrameEditDialog::save() {
    if (viewOnly_) return false;
    if (frames::TAbsEditFrame* empty = hosted_->firstEmptyRequired()) {
        host_->WarningBox(requiredValueText(empty));
        frames::guard([empty] { empty->SetFocus(); });
        return false;
    }
    db::AbstractDataSet* record = list_->records();
    db::Transaction* tr = list_->writeTransaction();
    dropped_ = false;
    auto rollback = [tr] {
        if (tr && tr->active()) {
            try {
                tr->rollback();
            } catch (...) {
            }
        }
    };
    try {
        if (!record->inEditMode()) record->edit();
        for (size_t i = 0; i < frames_.size(); ++i) {
            frames::TAbsEditFrame* f = frames_[i];
            f->Save();
            const EditorSlot& s = *slotOf_[i];
            if (!s.valueProperty.isEmpty()) {
                QByteArray property;
                const QObject* target = valueTarget(f, s, property);
                record->fieldByName(s.column)->setValue(target->property(property.constData()));
            }
        }
        if (!list_->shownColumn.isEmpty())
            for (frames::TAbsEditFrame* f : frames_)
                if (auto* lf = qobject_cast<frames::TAbs_LF*>(f))
                    record->fieldByName(list_->shownColumn)->setValue(lf->lcSelect->displayText());
        postRecord();
    } catch (const db::Error& e) {
        rollback();
        if (e.isRecordChanged()) return resolveConflict();
        // A lock conflict or a lost connection: told in words, the record keeps what the user
        // typed and the dialog stays open.
        frames::reportError(std::current_exception(), QStringLiteral("Запись не сохранена"));
        return false;
    } catch (...) {
        rollback();
        frames::reportError(std::current_exception(), QStringLiteral("Запись не сохранена"));
        return false;
    }
    // The list shows names looked up by the statement: read the row again.
    if (auto* table = qobject_cast<db::DataSet*>(record); table && !table->refreshSql().trimmed().isEmpty())
        frames::guard([table] { table->refreshRecord(); });
    return true;
}

void FrameEditDialog::postRecord() {
    db::Transaction* tr = list_->writeTransaction();
    if (tr) tr->ensureStarted();
    list_->records()->post();
    if (tr) tr->commit();
}

QString FrameEditDialog::describeChanges(const std::vector<QVariant>& current) const {
    db::AbstractDataSet* record = list_->records();
    const std::vector<QVariant>& original = record->originalValues();
    QStringList lines;
    for (int i = 0; i < record->fieldCount() && size_t(i) < current.size() && size_t(i) < original.size();
         ++i) {
        const QVariant& was = original[size_t(i)];
        const QVariant& now = current[size_t(i)];
        if (was.isNull() == now.isNull() && (was.isNull() || was == now)) continue;
        const db::Field* f = record->field(i);
        auto shown = [](const QVariant& v) {
            return v.isNull() ? QStringLiteral("(пусто)") : v.toString().left(80);
        };
        lines << QStringLiteral("  %1: было «%2», сейчас «%3»").arg(f->fieldName(), shown(was), shown(now));
    }
    return lines.join(QLatin1Char('\n'));
}

bool FrameEditDialog::resolveConflict() {
    auto* table = qobject_cast<db::DataSet*>(list_->records());
    std::vector<QVariant> current;
    if (table && !frames::guard([&] { current = table->readCurrentRow(); })) return false;
    if (current.empty()) {
        host_->ErrorBox(QStringLiteral("Запись не сохранена: другой пользователь удалил её или изменил так, "
                                       "что её больше нет в списке."));
        return false;
    }
    const QString changes = describeChanges(current);
    host_->TraceText(QStringLiteral("Record changed by another user:\n") + changes, 1);
    const QString question =
        QStringLiteral("Запись изменена другим пользователем после того, как вы её открыли.\n"
                       "Сейчас в базе данных:\n%1\n\n"
                       "«Да» — записать ваши изменения поверх, «Нет» — отказаться от своих изменений и "
                       "показать запись такой, какая она сейчас.")
            .arg(changes.isEmpty() ? QStringLiteral("  (отличий в колонках списка нет)") : changes);
    if (host_->QuestionBox(question)) {
        // Reapply: the edit now starts from the row as it is, and is written once more.
        list_->records()->rebaseEdit(current);
        db::Transaction* tr = list_->writeTransaction();
        try {
            postRecord();
        } catch (...) {
            if (tr && tr->active()) frames::guard([tr] { tr->rollback(); });
            frames::reportError(std::current_exception(), QStringLiteral("Запись не сохранена"));
            return false;
        }
        frames::guard([table] { table->refreshRecord(); });
        return true;
    }
    // Drop: the user's change goes, the list shows the row as the other user left it.
    dropped_ = true;
    frames::guard([table] { table->refreshRecord(); });
    return false;
}

void FrameEditDialog::closeFrames() {
    if (closed_) return;
    closed_ = true;
    hosted_->close();
}

void FrameEditDialog::accept() {
    if (viewOnly_) {
        reject();
        return;
    }
    if (!save()) {
        if (dropped_) reject();
        return;
    }
    closeFrames();
    TfmAbsEditDlg::accept();
}

void FrameEditDialog::cancelEdit() {
    db::AbstractDataSet* record = list_->records();
    if (record->inEditMode()) record->cancel();
    db::Transaction* tr = list_->writeTransaction();
    if (tr && tr->active()) tr->rollback();
}

void FrameEditDialog::reject() {
    frames::guard([this] { cancelEdit(); });
    closeFrames();
    TfmAbsEditDlg::reject();
}

} // namespace workbench
