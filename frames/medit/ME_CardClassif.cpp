#include "frames/medit/ME_CardClassif.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/medit/ME_Value.h"
#include "frames/core/Tyapi.h"
#include <QGridLayout>
#include <QLayout>

namespace frames {

namespace {
bool isNull(const QVariant& v) {
    return !v.isValid() || v.isNull();
}
} // namespace

TCardClassif_ME::TCardClassif_ME(QWidget* parent) : TAbsMEditFrame(parent) {
    setMinimumSize(300, 120);
    auto* panel = new QWidget(body());
    panel->setObjectName("pnValues");
    body()->layout()->addWidget(panel);
    auto* grid = new QGridLayout(panel);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setColumnStretch(0, 1);
    auto makeMemo = [&](const char* name) {
        auto* m = innerFrame<TMemoEdit_Frame>("TMemoEdit_Frame", QString::fromLatin1(name), panel);
        m->SetReadOnly(true);
        return m;
    };
    auto makeButton = [&](const char* name) {
        auto* b = new QToolButton(panel);
        b->setObjectName(name);
        b->setText(QStringLiteral("..."));
        return b;
    };
    mefNewValue = makeMemo("mefNewValue");
    sbNewValue = makeButton("sbNewValue");
    mefOldValue = makeMemo("mefOldValue");
    sbOldValue = makeButton("sbOldValue");
    chbUseOldValue = new QCheckBox(panel);
    chbUseOldValue->setObjectName("chbUseOldValue");
    grid->addWidget(mefNewValue, 0, 0, 1, 2);
    grid->addWidget(sbNewValue, 0, 2, Qt::AlignBottom);
    grid->addWidget(mefOldValue, 1, 0);
    grid->addWidget(chbUseOldValue, 1, 1, Qt::AlignBottom | Qt::AlignRight);
    grid->addWidget(sbOldValue, 1, 2, Qt::AlignBottom);
    connect(sbNewValue, &QToolButton::clicked, this, [this] { guard([&] { sbNewValueClick(sbNewValue); }); });
    connect(sbOldValue, &QToolButton::clicked, this, [this] { guard([&] { sbOldValueClick(sbOldValue); }); });
}

bool TCardClassif_ME::pick(QVariant& key, TMemoEdit_Frame* memo) {
    TRunParams params;
    ResetParams(params);
    params.Mode = 1;
    params.ResultInt = 0;
    params.KeyFieldName = QStringLiteral("NAME_CLASSIF");
    const int current = isNull(key) ? -1 : key.toInt();
    params.KeyValue = current;
    params.KeyInt = current;
    if (RunModule(QStringLiteral("QucikClassifForm"), params) == 2) return false;
    const QVariant chosen = isNull(params.KeyValue) ? QVariant(params.KeyInt) : params.KeyValue;
    bool ok = false;
    const int id = chosen.toInt(&ok);
    if (!ok || id < 0) return false;
    key = id;
    // The text the form returned under the field's name, else the branch's name as stored.
    const TVarParams::Param* text = params.Params ? params.Params->Find(params.KeyFieldName) : nullptr;
    const QString name =
        text ? text->Value.toString()
             : QvSqlValue({QStringLiteral("select NAME_CLASSIF from CLASSIF where ID_CLASSIF = "), id})
                   .toString();
    memo->Memo->setPlainText(name);
    return true;
}

void TCardClassif_ME::sbNewValueClick(QObject*) {
    pick(newKey_, mefNewValue);
}

void TCardClassif_ME::sbOldValueClick(QObject*) {
    if (pick(oldKey_, mefOldValue) && !chbUseOldValue->isChecked()) chbUseOldValue->setChecked(true);
}

void TCardClassif_ME::pfUpdateBeforeExecute(QObject* sender) {
    TAbsMEditFrame::pfUpdateBeforeExecute(sender);
    setParam(QStringLiteral("session"), SessionNumber());
    setParam(QStringLiteral("fieldname"), FieldName());
    setParam(QStringLiteral("new_value"), isNull(newKey_) ? QStringLiteral("") : newKey_.toString());
    setParam(QStringLiteral("old_value"), isNull(oldKey_) ? QStringLiteral("") : oldKey_.toString());
    setParam(QStringLiteral("use_old_value"), BoolText(chbUseOldValue->isChecked()));
}

FRAMES_REGISTER(TCardClassif_ME, "medit");

} // namespace frames
