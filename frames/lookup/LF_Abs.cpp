#include "frames/lookup/LF_Abs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/HostForms.h"
#include <QComboBox>
#include <QLayout>

namespace frames {

TAbs_LF::TAbs_LF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(451, 37);
    lcSelect = new ui::LookupCombo(body());
    lcSelect->setObjectName("lcSelect");
    lcSelect->setMinimumWidth(120);
    body()->layout()->addWidget(lcSelect);
    lbSelect->setBuddy(lcSelect);

    pFIBDataSet1 = new db::DataSet(this);
    pFIBDataSet1->setObjectName("pFIBDataSet1");
    pFIBDataSet1->setDatabase(dmDataBaseFIB()->RvDatabase());
    pFIBDataSet1->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    DataSource1 = new db::DataSource(pFIBDataSet1, this);
    DataSource1->setObjectName("DataSource1");
    lcSelect->setLookupSource(DataSource1);
    lcSelect->setDropDownCount(8);
    lcSelect->setIndexSwitch(false);

    lcSelect->OnClick = [this](QObject* s) { guard([&] { lcSelectClick(s); }); };
    lcSelect->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { lcSelectKeyDown(s, key, m); });
    };
    lcSelect->OnDlgClick = [this](QObject* s) { guard([&] { lcSelectDlgClick(s); }); };
    pFIBDataSet1->beforeOpen.connect([this](db::AbstractDataSet& ds) { pFIBDataSet1BeforeOpen(ds); });
    pFIBDataSet1->afterOpen.connect([this](db::AbstractDataSet& ds) { pFIBDataSet1AfterOpen(ds); });
}

TAbs_LF::~TAbs_LF() = default;

void TAbs_LF::AfterConstruction() {
    TAbsEditFrame::AfterConstruction();
    RunParams.Mode = 1;
    RunFlag = false;
    // The host hides the dialog button of a frame that has no reference form to open.
    lcSelect->setShowButton(HasDialog());
}

void TAbs_LF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    lcSelect->setReadOnly(value);
}

void TAbs_LF::Init() {
    TAbsEditFrame::Init();
    pFIBDataSet1->close();
    if (Owner()) {
        if (db::DataSource* bound = editDialogBinding(this)) lcSelect->setDataSource(bound);
        db::DataSource* src = lcSelect->dataSource();
        if (src && src->dataSet()) {
            db::AbstractDataSet* record = src->dataSet();
            const QString lookupField = lcSelect->lookupField();
            if (!lookupField.isEmpty() && !lcSelect->dataField().isEmpty() && !record->inEditMode() &&
                !pFIBDataSet1->refreshSql().trimmed().isEmpty()) {
                TraceText("Change Lookup SQL: " + pFIBDataSet1->refreshSql(), 1);
                pFIBDataSet1->setSelectSql(pFIBDataSet1->refreshSql());
                // The one-row select may name its key as the row was read ("old_" prefix, as
                // update statements do); without either name the missing parameter is reported.
                db::Param* key = pFIBDataSet1->findParam(lookupField);
                if (!key) key = pFIBDataSet1->findParam("old_" + lookupField);
                if (!key) key = pFIBDataSet1->paramByName(lookupField);
                key->setValue(record->fieldByName(lcSelect->dataField())->value());
            }
        }
    }
    pFIBDataSet1->open();
}

bool TAbs_LF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    const QVariant key = lcSelect->keyValue();
    return !key.isValid() || key.isNull();
}

void TAbs_LF::FormClose() {
    if (lcSelect->isDroppedDown()) lcSelect->closeUp(false);
    TAbsEditFrame::FormClose();
}

void TAbs_LF::FillParamList(QStringList&) {}

void TAbs_LF::notifyOwnerChanged() {
    if (auto* form = qobject_cast<TfmPersistentForm*>(Owner())) form->NotifyChanged();
}

void TAbs_LF::lcSelectClick(QObject*) {
    notifyOwnerChanged();
}

void TAbs_LF::lcSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) {
    const Qt::KeyboardModifiers held = shift & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (key == Qt::Key_Delete && held == Qt::NoModifier && !GetReadOnly() && lcSelect->escapeClear()) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(sender);
        key = 0;
    }
}

void TAbs_LF::acceptKey(const QVariant& key) {
    db::DataSource* src = lcSelect->dataSource();
    if (src && src->dataSet()) {
        db::AbstractDataSet* record = src->dataSet();
        if (!record->inEditMode()) record->edit();
        record->fieldByName(lcSelect->dataField())->setAsString(key.toString());
    } else {
        auto handler = std::move(lcSelect->OnChange);
        lcSelect->OnChange = nullptr;
        lcSelect->setKeyValue(key);
        lcSelect->OnChange = std::move(handler);
    }
}

void TAbs_LF::lcSelectDlgClick(QObject* sender) {
    LastKey = QVariant();
    if (lcSelect->isReadOnly()) Abort();
    RunParams.KeyValue = lcSelect->keyValue();
    RunParams.KeyFieldName = lcSelect->lookupField();
    RunParams.Flag = RunFlag;
    db::DataSource* src = lcSelect->dataSource();
    auto* boundSet = src ? qobject_cast<db::DataSet*>(src->dataSet()) : nullptr;
    RunParams.Transaction = boundSet ? boundSet->transaction() : TRunParams::NoTransaction();
    if (auto* twoGrid = qobject_cast<TfmLayer2_TwoGrid*>(Owner()))
        RunParams.EnsureParams().ByName("Transaction").Value =
            QVariant::fromValue(static_cast<void*>(twoGrid->Transaction()));
    const int result = RunModule(FormName, RunParams);
    ReopenList();
    if (result != 1) return;
    LastKey = RunParams.KeyValue;
    acceptKey(RunParams.KeyValue);
    notifyOwnerChanged();
    if (lcSelect->OnChange) lcSelect->OnChange(sender);
}

void TAbs_LF::ReopenList() {
    pFIBDataSet1->close();
    pFIBDataSet1->open();
}

void TAbs_LF::pFIBDataSet1BeforeOpen(db::AbstractDataSet&) {}

void TAbs_LF::pFIBDataSet1AfterOpen(db::AbstractDataSet&) {
    // Reference names stored with a lower-case first letter show capitalised.
    for (const QString& name : lcSelect->lookupDisplay().split(';', Qt::SkipEmptyParts))
        if (db::Field* f = pFIBDataSet1->findField(name.trimmed()))
            f->getText = [this](const db::Field& fld, QString& text, bool display) {
                FieldGetText(fld, text, display);
            };
}

void TAbs_LF::FieldGetText(const db::Field&, QString& text, bool) {
    // text arrives as the value of the row being shown (lists paint rows without moving the
    // cursor, so the field itself would give the current row's value).
    if (!text.isEmpty() && text.at(0) == QChar(0x044F)) // "я"
        text[0] = QChar(0x042F);                        // "Я"
}

} // namespace frames
