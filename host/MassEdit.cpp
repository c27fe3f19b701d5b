#include "host/MassEdit.h"
#include "frames/core/ConfigItem.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/ME_Abs.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include "frames/core/WaitCursor.h"
#include "host/FrameHostForms.h"
#include "host/HostImpl.h"
#include "platform/db/AbstractDataSet.h"
#include "platform/db/Error.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QButtonGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <stdexcept>

namespace workbench {

namespace db = frames::db;

namespace {

// The documents' columns that a mass edit may set, with their frames. The lists of the
// reference frames are their CSQL; PAR_n name the parameters that the frame fills from its
// context (run constants).
const char* const kDocumentColumns = R"([
  { "column": "DOC_NUMBER", "caption": "Номер документа", "frame": "TEdit_ME", "conversion": "text" },
  { "column": "STATUS", "caption": "Состояние", "frame": "TEdit_ME", "conversion": "text" },
  { "column": "ARTICUL", "caption": "Артикул", "frame": "TEdit_ME", "conversion": "text" },
  { "column": "NOTE", "caption": "Примечание", "frame": "TMemoEdit_ME", "conversion": "text" },
  { "column": "AMOUNT", "caption": "Сумма", "frame": "TCalcEdit_ME", "conversion": "number",
    "params": ["PrecKind=Cur"] },
  { "column": "QUANTITY", "caption": "Количество", "frame": "TCalcEdit_ME", "conversion": "number" },
  { "column": "DOC_DATE", "caption": "Дата документа", "frame": "TDateEdit_ME", "conversion": "date" },
  { "column": "DOC_MONTH", "caption": "Отчётный месяц", "frame": "TDateEdit_ME", "conversion": "date" },
  { "column": "IS_CHECKED", "caption": "Проверен бухгалтерией", "frame": "TCheckBoxEdit_ME", "conversion": "bool" },
  { "column": "IS_PAID", "caption": "Оплачен", "frame": "TCheckBoxEdit_ME", "conversion": "flag" },
  { "column": "CUR_TYPE", "caption": "Валюта", "frame": "TComboEdit_ME", "conversion": "key",
    "params": ["CSQL=select ID_CUR_TYPE as ID, NAME_CUR_TYPE as NAME from CUR_TYPE where ID_CUR_TYPE > -1 order by NAME_CUR_TYPE"] },
  { "column": "ID_SEASON", "caption": "Сезон", "frame": "TRefAdd_ComboEdit_ME", "conversion": "key_or_null",
    "params": ["CSQL=select ID, NAME from TYREF_ADD_DATA where KIND = :KIND order by NAME", "REFADD_KIND=1"] },
  { "column": "ID_FILIAL", "caption": "Филиал", "frame": "TComboEditFilial_ME", "conversion": "key",
    "params": ["CSQL=select ID_TH_CLASSIF as ID, NAME from TH_CLASSIF where PARENT_ID = :CUR_SHOPINDEX and ID_TH_CLASSIF > -1 order by NAME",
               "PAR_1=CUR_SHOPINDEX"] },
  { "column": "ID_COLOR", "caption": "Цвет", "frame": "TComboColorEdit_ME", "conversion": "key",
    "params": ["CSQL=select ID, NAME, COLOR from COLOR where ID > -1 order by NAME"] },
  { "column": "ID_CLASSIF", "caption": "Группа классификатора", "frame": "TClassifComboEdit_ME", "conversion": "key",
    "params": ["CSQL=select ID_CLASSIF as ID, NAME_CLASSIF as NAME from CLASSIF where ID_CLASSIF_TYPE = :TYPE_CLASSIF and ID_CLASSIF > -1 order by NAME_CLASSIF",
               "TYPE_CLASSIF=0"] },
  { "column": "ID_CARD_CLASSIF", "caption": "Товарная группа", "frame": "TCardClassif_ME", "conversion": "key" },
  { "column": "PAYMENT_KIND", "caption": "Вид оплаты", "frame": "TLayerFrame_ME", "conversion": "text",
    "params": ["ClassID=PaymentKindLayer"] }
])";

// The text value :param as the column's value.
QString converted(const QString& conversion, const QString& param) {
    const QString p = QStringLiteral("cast(:%1 as varchar(255))").arg(param);
    if (conversion == QLatin1String("text")) return p;
    if (conversion == QLatin1String("number"))
        return QStringLiteral("cast(replace(%1, ',', '.') as numeric(18,6))").arg(p);
    if (conversion == QLatin1String("date")) return QStringLiteral("cast(%1 as date)").arg(p);
    if (conversion == QLatin1String("bool")) return QStringLiteral("cast(%1 as char(1))").arg(p);
    if (conversion == QLatin1String("flag"))
        return QStringLiteral("case %1 when 'T' then 1 else 0 end").arg(p);
    if (conversion == QLatin1String("key")) return QStringLiteral("cast(nullif(%1, '') as integer)").arg(p);
    if (conversion == QLatin1String("key_or_null"))
        return QStringLiteral("cast(nullif(nullif(%1, ''), '-1') as integer)").arg(p);
    throw std::invalid_argument("mass edit: unknown conversion " + conversion.toStdString());
}

// A name as a quoted identifier.
QString quotedName(const QString& name) {
    QString n = name;
    n.replace(QLatin1Char('"'), QStringLiteral("\"\""));
    return QLatin1Char('"') + n + QLatin1Char('"');
}

QString paramValue(const QStringList& lines, const QString& key) {
    for (const QString& l : lines)
        if (l.startsWith(key + QLatin1Char('='), Qt::CaseInsensitive)) return l.mid(key.size() + 1);
    return {};
}

} // namespace

const MassEditColumn* MassEditTable::find(const QString& column) const {
    for (const MassEditColumn& c : columns)
        if (c.column.compare(column, Qt::CaseInsensitive) == 0) return &c;
    return nullptr;
}

const MassEditColumn* MassEditTable::findByFrame(const QString& frameClass) const {
    for (const MassEditColumn& c : columns)
        if (c.frameClass == frameClass) return &c;
    return nullptr;
}

const MassEditTable& documentMassEdit() {
    static const MassEditTable table = [] {
        MassEditTable t{QStringLiteral("PAYMENT_DOC"), QStringLiteral("ID_PAYMENT_DOC"), {}};
        QJsonParseError err;
        const QJsonDocument doc = QJsonDocument::fromJson(QByteArray(kDocumentColumns), &err);
        if (!doc.isArray()) throw std::logic_error("mass edit columns: " + err.errorString().toStdString());
        for (const QJsonValue& v : doc.array()) {
            const QJsonObject o = v.toObject();
            QStringList params;
            for (const QJsonValue& p : o.value(QStringLiteral("params")).toArray()) params << p.toString();
            t.columns.append({o.value(QStringLiteral("column")).toString(),
                              o.value(QStringLiteral("caption")).toString(),
                              o.value(QStringLiteral("frame")).toString(),
                              o.value(QStringLiteral("conversion")).toString(), params});
        }
        return t;
    }();
    return table;
}

QString massEditStatement(const MassEditTable& table, const QString& column) {
    const MassEditColumn* c = table.find(column);
    if (!c) throw std::invalid_argument("mass edit: " + column.toStdString() + " is not an editable column");
    const QString col = QStringLiteral("t.") + quotedName(c->column);
    QStringList sql;
    sql << QStringLiteral("update %1 t set %2 = %3")
               .arg(quotedName(table.table), col, converted(c->conversion, "new_value"));
    sql << QStringLiteral("where exists (select 1 from MEDIT_MARKS m where m.SESSION_ID = :session and "
                          "m.RECORD_ID = t.%1)")
               .arg(quotedName(table.keyColumn));
    if (c->frameClass == QLatin1String("TRefAdd_ComboEdit_ME")) {
        // The frame sends its kind: it must be the column's.
        bool ok = false;
        const int kind = paramValue(c->params, QStringLiteral("REFADD_KIND")).toInt(&ok);
        if (!ok) throw std::invalid_argument("mass edit: " + column.toStdString() + " has no REFADD_KIND");
        sql << QStringLiteral("  and cast(:KIND as integer) = %1").arg(kind);
    } else {
        // The frame sends the column it edits: the statement runs only for its own column.
        sql << QStringLiteral("  and cast(:fieldname as varchar(31)) = %1").arg(frames::StrParam(c->column));
    }
    if (c->frameClass != QLatin1String("TCheckBoxEdit_ME") &&
        c->frameClass != QLatin1String("TLayerFrame_ME"))
        sql << QStringLiteral("  and (cast(:use_old_value as char(1)) <> 'T' or %1 is not distinct from %2)")
                   .arg(col, converted(c->conversion, "old_value"));
    return sql.join(QLatin1Char('\n'));
}

QString massEditParams(const MassEditTable& table, const QString& column) {
    const MassEditColumn* c = table.find(column);
    if (!c) throw std::invalid_argument("mass edit: " + column.toStdString() + " is not an editable column");
    QStringList lines;
    lines << QStringLiteral("FIELDNAME=") + c->column;
    lines << QStringLiteral("SQL=") +
                 massEditStatement(table, column).replace(QLatin1Char('\n'), QLatin1Char(' '));
    lines << c->params;
    return lines.join(QLatin1Char('\n'));
}

int runMassEdit(frames::TAbsMEditFrame* frame, const QList<int>& keys) {
    db::Transaction* tr = frame->pfTransaction;
    db::Database* database = frame->pfUpdate->database();
    const int session = frames::TAbsMEditFrame::SessionNumber();
    if (tr->active()) tr->rollback();
    tr->start();
    try {
        auto run = [&](const QString& sql, const std::function<void(db::Query&)>& fill = {}) {
            db::Query q(database, tr);
            q.setSql(sql);
            q.paramByName(QStringLiteral("session"))->setValue(session);
            if (fill) fill(q);
            q.exec();
        };
        // Marks an earlier session of the same number may have left.
        run(QStringLiteral("delete from MEDIT_MARKS where SESSION_ID = :session"));
        db::Query mark(database, tr);
        mark.setSql(QStringLiteral("insert into MEDIT_MARKS (SESSION_ID, RECORD_ID) values (:session, :id)"));
        for (int key : keys) {
            mark.paramByName(QStringLiteral("session"))->setValue(session);
            mark.paramByName(QStringLiteral("id"))->setValue(key);
            mark.exec();
        }
        if (!frame->ApplyChanges()) {
            tr->rollback();
            return -1;
        }
        const int changed = frame->RowsAffected();
        run(QStringLiteral("delete from MEDIT_MARKS where SESSION_ID = :session"));
        tr->commit();
        return changed;
    } catch (...) {
        if (tr->active()) {
            try {
                tr->rollback();
            } catch (...) {
            }
        }
        throw;
    }
}

// ---- PaymentKindLayer

PaymentKindLayer::PaymentKindLayer(QWidget* parent) : TfmAbsGrid_ME(parent) {
    setObjectName(QString::fromLatin1(FormName));
    setWindowTitle(QStringLiteral("Вид оплаты"));
    auto* layout = new QVBoxLayout(this);
    kinds_ = new QButtonGroup(this);
    const std::pair<const char*, QString> kinds[] = {{"1", QStringLiteral("Наличные")},
                                                     {"2", QStringLiteral("Безналичный расчёт")},
                                                     {"3", QStringLiteral("Банковская карта")},
                                                     {"4", QStringLiteral("Взаимозачёт")}};
    for (const auto& [code, caption] : kinds) {
        auto* b = new QRadioButton(caption, this);
        b->setObjectName(QStringLiteral("rbKind%1").arg(QLatin1String(code)));
        b->setProperty("code", QString::fromLatin1(code));
        kinds_->addButton(b);
        layout->addWidget(b);
    }
    buttons_ = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    layout->addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons_, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

void PaymentKindLayer::TakeParams(frames::TRunParams&) {
    setKind(QString()); // every mass edit starts without a kind
}

QString PaymentKindLayer::kind() const {
    QAbstractButton* b = kinds_->checkedButton();
    return b ? b->property("code").toString() : QString();
}

void PaymentKindLayer::setKind(const QString& code) {
    kinds_->setExclusive(false);
    for (QAbstractButton* b : kinds_->buttons()) b->setChecked(b->property("code").toString() == code);
    kinds_->setExclusive(true);
}

bool PaymentKindLayer::CheckChanges() {
    if (!kind().isEmpty()) return true;
    frames::TyWarningBox(QStringLiteral("Выберите вид оплаты."));
    return false;
}

void PaymentKindLayer::FillUpdateParams(db::Query* update) {
    update->paramByName(QStringLiteral("new_value"))->setValue(kind());
}

QWidget* PaymentKindLayer::LayerHiddenControl() const {
    return buttons_;
}

std::unique_ptr<QObject> makeMassEditLayer(const QString& name) {
    if (name == QLatin1String(PaymentKindLayer::FormName)) return std::make_unique<PaymentKindLayer>();
    return nullptr;
}

// ---- MassEditDialog

MassEditDialog::MassEditDialog(HostImpl* host, RecordListForm* list, const MassEditTable& table,
                               QWidget* parent)
    : TfmPersistentForm(parent ? parent : list), host_(host), list_(list), table_(table) {
    setObjectName(QStringLiteral("MassEditDialog"));
    setWindowTitle(QStringLiteral("Групповое изменение"));
    resize(520, 320);

    db::AbstractDataSet* records = list->records();
    frames::ui::DBGrid* grid = list->grid();
    const QList<db::AbstractDataSet::Bookmark> marks = grid->markedBookmarks();
    if (marks.isEmpty()) {
        if (!records->isEmpty()) keys_ << records->fieldByName(table.keyColumn)->asInteger();
    } else {
        const db::AbstractDataSet::Bookmark here = records->bookmark();
        for (auto b : marks)
            if (records->bookmarkValid(b)) {
                records->gotoBookmark(b);
                keys_ << records->fieldByName(table.keyColumn)->asInteger();
            }
        records->gotoBookmark(here);
    }

    lbMarked_ = new QLabel(QStringLiteral("Записей к изменению: %1").arg(keys_.size()), this);
    lbMarked_->setObjectName(QStringLiteral("lbMarked"));
    cbColumn_ = new QComboBox(this);
    cbColumn_->setObjectName(QStringLiteral("cbColumn"));
    for (const MassEditColumn& c : table.columns) cbColumn_->addItem(c.caption, c.column);
    auto* form = new QFormLayout;
    form->addRow(lbMarked_);
    form->addRow(QStringLiteral("Колонка:"), cbColumn_);
    frameBox_ = new QVBoxLayout;
    auto* buttons = new QDialogButtonBox(this);
    auto* btApply = buttons->addButton(QStringLiteral("Применить"), QDialogButtonBox::AcceptRole);
    btApply->setObjectName(QStringLiteral("btApply"));
    auto* btClose = buttons->addButton(QStringLiteral("Закрыть"), QDialogButtonBox::RejectRole);
    btClose->setObjectName(QStringLiteral("btClose"));
    btApply->setEnabled(!keys_.isEmpty());
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(frameBox_, 1);
    layout->addWidget(buttons);

    connect(cbColumn_, &QComboBox::currentIndexChanged, this,
            [this](int i) { frames::guard([&] { chooseColumn(cbColumn_->itemData(i).toString()); }); });
    connect(btApply, &QPushButton::clicked, this, [this] { frames::guard([&] { apply(); }); });
    connect(btClose, &QPushButton::clicked, this, &QDialog::reject);
    if (!table.columns.isEmpty()) chooseColumn(table.columns.first().column);
}

MassEditDialog::~MassEditDialog() {
    closeFrame();
}

void MassEditDialog::closeFrame() {
    if (!frame_) return;
    frames::TAbsMEditFrame* f = frame_;
    frame_ = nullptr;
    frames::guard([&] { f->SaveLayout(layoutNode(f->FieldName())); });
    frames::guard([&] { f->FormClose(); });
    delete f;
}

frames::TConfigItem* MassEditDialog::layoutNode(const QString& column) const {
    return host_->LayoutRoot()->ItemByName(QStringLiteral("MassEditDialog"))->ItemByName(column);
}

void MassEditDialog::chooseColumn(const QString& column) {
    const MassEditColumn* c = table_.find(column);
    if (!c) throw std::invalid_argument("mass edit: " + column.toStdString() + " is not an editable column");
    const int index = cbColumn_->findData(c->column);
    if (index != cbColumn_->currentIndex()) {
        const QSignalBlocker block(cbColumn_);
        cbColumn_->setCurrentIndex(index);
    }
    closeFrame();
    std::unique_ptr<frames::TAbsEditFrame> made(frames::Registry::instance().create(c->frameClass, this));
    auto* f = qobject_cast<frames::TAbsMEditFrame*>(made.get());
    if (!f) throw std::logic_error("mass edit: " + c->frameClass.toStdString() + " is not a mass-edit frame");
    f->SetParams(massEditParams(table_, c->column));
    f->Init();
    f->RestoreLayout(layoutNode(c->column)); // the texts sent before, for this column
    made.release();
    frame_ = f;
    frameBox_->addWidget(f);
    f->show();
    f->FormShow();
}

int MassEditDialog::apply() {
    if (!frame_ || keys_.isEmpty()) return -1;
    if (frame_->property("Tag").toInt() == 666) {
        frames::TyWarningBox(QStringLiteral("Не выбрано новое значение."));
        return -1;
    }
    const frames::WaitCursor wait;
    int changed = -1;
    const QString operation = QStringLiteral("Групповое изменение не выполнено");
    try {
        changed = runMassEdit(frame_, keys_);
    } catch (db::Error& e) {
        // The server's own words go to the trace log; the user is told in his language what
        // went wrong with the value (a lock, a lost connection keep the data layer's words).
        const MassEditColumn* c = table_.find(frame_->FieldName());
        const QString caption = c ? c->caption : frame_->FieldName();
        if (!e.isLockConflict() && !e.isConnectionLost() && !e.isRecordChanged())
            e.setUserText(
                e.isConstraintViolation()
                    ? QStringLiteral("значение не подходит для колонки «%1»: оно нарушает правила базы "
                                     "данных (обязательное значение, ссылка или допустимый диапазон).")
                          .arg(caption)
                    : QStringLiteral("сервер не смог записать значение в колонку «%1» (неверный формат "
                                     "или слишком длинное значение).")
                          .arg(caption));
        frames::reportError(std::make_exception_ptr(e), operation);
        return -1;
    } catch (...) {
        frames::reportError(std::current_exception(), operation);
        return -1;
    }
    if (changed < 0) return -1;
    host_->InfoBox(QStringLiteral("Изменено записей: %1 из %2.").arg(changed).arg(keys_.size()));
    list_->refresh();
    return changed;
}

} // namespace workbench
