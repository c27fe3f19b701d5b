#include "frames/edit/EF_SetDouble.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/Tyapi.h"
#include <QGridLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace frames {

namespace {
const char* const kFrom = "FromSumma";
const char* const kTo = "ToSumma";
const char* const kChecked = "cbSet.Checked";
} // namespace

TSetDouble_EF::TSetDouble_EF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(166, 89);
    auto* rows = new QWidget(content());
    rows->setObjectName("rows");
    auto* grid = new QGridLayout(rows);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(4);
    grid->setVerticalSpacing(2);
    contentLayout()->addWidget(rows);

    Label1 = new QLabel(rows);
    Label1->setObjectName("Label1");
    Label2 = new QLabel(rows);
    Label2->setObjectName("Label2");
    auto makeEditor = [&](const char* name) {
        auto* f = static_cast<TCalcEdt_Frame*>(Registry::instance().create("TCalcEdt_Frame", rows));
        f->setObjectName(name);
        f->SetCaption(QString());
        f->lbSelect->hide();
        f->layout()->setContentsMargins(0, 0, 0, 0);
        f->CalcEdit->setImmediatePost(true);
        f->CalcEdit->OnEditValueChanged = [this](QObject* s) { guard([&] { ceSummaEditValueChanged(s); }); };
        f->CalcEdit->OnExit = [this, f](QObject*) { guard([&] { ceSummaExit(f); }); };
        return f;
    };
    ceFromSumma = makeEditor("ceFromSumma");
    ceToSumma = makeEditor("ceToSumma");
    grid->addWidget(Label1, 0, 0);
    grid->addWidget(ceFromSumma, 0, 1);
    grid->addWidget(Label2, 1, 0);
    grid->addWidget(ceToSumma, 1, 1);
    grid->setColumnStretch(1, 1);
    Label1->setBuddy(ceFromSumma->CalcEdit->lineEdit());
    Label2->setBuddy(ceToSumma->CalcEdit->lineEdit());
}

TSetDouble_EF::~TSetDouble_EF() = default;

void TSetDouble_EF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    ceFromSumma->SetReadOnly(value);
    ceToSumma->SetReadOnly(value);
}

void TSetDouble_EF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (!node) return;
    if (node->IsExists(kFrom)) ceFromSumma->SetValue(node->ItemByName(kFrom)->GetAsFloat());
    if (node->IsExists(kTo)) ceToSumma->SetValue(node->ItemByName(kTo)->GetAsFloat());
    cbSet->setChecked(node->IsExists(kChecked) && node->ItemByName(kChecked)->GetAsBoolean());
}

void TSetDouble_EF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (!node) return;
    node->ItemByName(kFrom)->SetAsFloat(ceFromSumma->GetValue());
    node->ItemByName(kTo)->SetAsFloat(ceToSumma->GetValue());
}

void TSetDouble_EF::Clear() {
    ceFromSumma->Clear();
    ceToSumma->Clear();
    TSetFilter_EF::Clear();
}

QString TSetDouble_EF::SQL(const QString& fieldName, bool allowNull) {
    if (!cbSet->isChecked()) return {};
    const double from = ceFromSumma->GetValue();
    const double to = ceToSumma->GetValue();
    const QString f = SqlNumber(from), t = SqlNumber(to);
    QString result;
    bool brackets = false;
    if (to >= from) {
        result = fieldName + " between " + f + " and " + t;
    } else {
        // Upper below lower: the amounts outside the two.
        result = fieldName + ">=" + f + " or " + fieldName + "<=" + t;
        brackets = true;
    }
    if (allowNull && ZeroInRange()) {
        result += " or " + fieldName + " is null";
        brackets = true;
    }
    return brackets ? "(" + result + ")" : result;
}

bool TSetDouble_EF::ZeroInRange() {
    if (!cbSet->isChecked()) return false;
    const double from = ceFromSumma->GetValue();
    const double to = ceToSumma->GetValue();
    if (to > from) return from <= 0 && to >= 0;
    // An equal pair is treated as a wrapped range here, although SQL renders it with "between".
    return from <= 0 || to >= 0;
}

void TSetDouble_EF::ceSummaEditValueChanged(QObject*) {
    ContentChanged();
}

void TSetDouble_EF::ceSummaExit(QObject* sender) {
    if (auto* f = qobject_cast<TCalcEdt_Frame*>(sender)) f->CheckMinMax();
}

FRAMES_REGISTER(TSetDouble_EF, "edit");

} // namespace frames
