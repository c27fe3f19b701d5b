#include "frames/edit/CE_Curs.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "platform/db/Field.h"
#include <QLayout>

namespace frames {

TCursFrame_CE::TCursFrame_CE(QWidget* parent)
    : TCalcEdit_Frame(parent), record_(this, [this] { guard([&] { SelCurHistoryActionUpdate(); }); }) {
    // A rate is taken as typed: no bounds are applied on click, exit or change of the value.
    DBCalcEdit->OnButtonClick = nullptr;
    DBCalcEdit->OnEditValueChanged = nullptr;
    DBCalcEdit->OnClick = nullptr;
    DBCalcEdit->OnExit = nullptr;

    ActionList = new QObject(this);
    ActionList->setObjectName("ActionList");
    SelCurHistoryAction = new QAction(ActionList);
    SelCurHistoryAction->setObjectName("SelCurHistoryAction");
    SelCurHistoryAction->setText("...");
    // A tool button shows the icon text, from which Qt strips a trailing "...": say it outright.
    SelCurHistoryAction->setIconText("...");
    connect(SelCurHistoryAction, &QAction::triggered, this, [this] {
        guard([&] {
            SelCurHistoryActionUpdate();
            if (SelCurHistoryAction->isEnabled()) SelCurHistoryActionExecute();
        });
    });

    siSelect = new QToolButton(body());
    siSelect->setObjectName("siSelect");
    siSelect->setFixedSize(21, 21);
    siSelect->setFocusPolicy(Qt::NoFocus);
    siSelect->setDefaultAction(SelCurHistoryAction);
    siSelect->setToolButtonStyle(Qt::ToolButtonTextOnly); // the action has a text, no icon
    body()->layout()->addWidget(siSelect);
    static_cast<QBoxLayout*>(body()->layout())->addStretch(1);
    resize(160, 54);
}

TCursFrame_CE::~TCursFrame_CE() = default;

void TCursFrame_CE::AfterConstruction() {
    TCalcEdit_Frame::AfterConstruction();
    ModuleName = "CurHistoryForm";
    CurTypeField.clear();
    CursDate = QDateTime();
    ResetParams(RunParams);
    RunParams.Flag = true;
    SelCurHistoryActionUpdate();
}

void TCursFrame_CE::SetReadOnly(bool value) {
    TCalcEdit_Frame::SetReadOnly(value);
    siSelect->setEnabled(!value);
    SelCurHistoryActionUpdate();
}

void TCursFrame_CE::Init() {
    // A rate keeps its own precision whatever kind of amount its column is tagged as.
    const QString rateFormat = DBCalcEdit->displayFormat();
    TCalcEdit_Frame::Init();
    SetDisplayFormat(rateFormat);
    record_.setDataSource(DBCalcEdit->dataSource());
}

db::AbstractDataSet* TCursFrame_CE::boundDataSet() const {
    db::DataSource* src = DBCalcEdit->dataSource();
    db::AbstractDataSet* ds = src ? src->dataSet() : nullptr;
    return ds && ds->active() ? ds : nullptr;
}

void TCursFrame_CE::SelCurHistoryActionUpdate() {
    bool on = false;
    if (!GetReadOnly() && !CurTypeField.isEmpty()) {
        if (db::AbstractDataSet* ds = boundDataSet()) {
            const db::Field* cur = ds->findField(CurTypeField);
            on = cur && ds->recNo() >= 0 && !cur->isNull();
            if (on) on = ds->inEditMode();
        }
    }
    SelCurHistoryAction->setEnabled(on);
}

void TCursFrame_CE::SelCurHistoryActionExecute() {
    db::AbstractDataSet* ds = boundDataSet();
    if (!ds) return;
    RunParams.Params = std::make_shared<TVarParams>();
    TVarParams& params = *RunParams.Params;
    params.ByName("CurType").Value = ds->fieldByName(CurTypeField)->asString();
    if (CursDate.isValid()) params.ByName("Date").Value = CursDate.date().toString("dd.MM.yyyy");
    const int result = RunModule(ModuleName, RunParams);
    const std::shared_ptr<TVarParams> returned = std::move(RunParams.Params);
    RunParams.Params.reset();
    if (result != 1) return;
    if (!ds->inEditMode()) ds->edit();
    if (const TVarParams::Param* cur = returned->Find("CurType"))
        ds->fieldByName(CurTypeField)->setAsString(cur->Value.toString());
    const TVarParams::Param* curs = returned->Find("Curs");
    ds->fieldByName("CURS")->setAsDouble(numedit::toFloat(curs ? curs->Value.toString() : QString()));
}

void TCursFrame_CE::DBCalcEditPropertiesChange(QObject* sender) {
    TCalcEdit_Frame::DBCalcEditPropertiesChange(sender);
    const QString text = DBCalcEdit->editText();
    if (text.size() > 9) DBCalcEdit->setEditText(text.left(9));
    // As in the base: an empty rate read from the record is shown as stored.
    if (DBCalcEdit->editText().isEmpty() && (DBCalcEdit->isModified() || !DBCalcEdit->field()))
        DBCalcEdit->setEditText("0");
}

FRAMES_REGISTER(TCursFrame_CE, "edit");

} // namespace frames
