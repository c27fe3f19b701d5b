#include "frames/medit/ME_Value.h"
#include "frames/core/Guard.h"
#include "platform/db/Query.h"
#include <QGridLayout>
#include <QLayout>

namespace frames {

TTwoValue_ME::TTwoValue_ME(QWidget* parent) : TAbsMEditFrame(parent) {
    setMinimumSize(300, 75);
    auto* panel = new QWidget(body());
    panel->setObjectName("pnValues");
    body()->layout()->addWidget(panel);
    grid_ = new QGridLayout(panel);
    grid_->setContentsMargins(0, 0, 0, 0);
    grid_->setHorizontalSpacing(4);
    grid_->setVerticalSpacing(0);
    grid_->setColumnStretch(0, 1);
    chbNewNull = new QCheckBox(panel);
    chbNewNull->setObjectName("chbNewNull");
    chbNewNull->setChecked(true);
    chbOldNull = new QCheckBox(panel);
    chbOldNull->setObjectName("chbOldNull");
    chbOldNull->setChecked(true);
    chbUseOldValue = new QCheckBox(panel);
    chbUseOldValue->setObjectName("chbUseOldValue");
    chbUseOldValue->setChecked(false);
    // Clicks by the user (and click() in tests), not programmatic setChecked.
    connect(chbNewNull, &QCheckBox::clicked, this, [this] { guard([&] { chbNewNullClick(chbNewNull); }); });
    connect(chbOldNull, &QCheckBox::clicked, this, [this] { guard([&] { chbOldNullClick(chbOldNull); }); });
}

void TTwoValue_ME::placeEditors(QWidget* newEditor, QWidget* oldEditor) {
    grid_->addWidget(newEditor, 0, 0, 1, 2);
    grid_->addWidget(chbNewNull, 0, 2, Qt::AlignBottom);
    grid_->addWidget(oldEditor, 1, 0);
    grid_->addWidget(chbUseOldValue, 1, 1, Qt::AlignBottom | Qt::AlignRight);
    grid_->addWidget(chbOldNull, 1, 2, Qt::AlignBottom);
}

void TTwoValue_ME::NewValueChanged() {
    if (chbNewNull->isChecked()) chbNewNull->setChecked(false);
}

void TTwoValue_ME::OldValueChanged() {
    if (chbOldNull->isChecked()) chbOldNull->setChecked(false);
    if (!chbUseOldValue->isChecked()) chbUseOldValue->setChecked(true);
}

void TTwoValue_ME::chbNewNullClick(QObject*) {
    if (!chbNewNull->isChecked()) return;
    ClearNewValue();
    chbNewNull->setChecked(true);
}

void TTwoValue_ME::chbOldNullClick(QObject*) {
    if (!chbOldNull->isChecked()) return;
    ClearOldValue();
    chbOldNull->setChecked(true);
}

void TTwoValue_ME::SendNameAndKind() {
    setIfPresent(QStringLiteral("fieldname"), FieldName());
    setIfPresent(QStringLiteral("kind"), Values(QStringLiteral("REFADD_KIND")));
}

void TTwoValue_ME::pfUpdateBeforeExecute(QObject* sender) {
    TAbsMEditFrame::pfUpdateBeforeExecute(sender);
    setParam(QStringLiteral("session"), SessionNumber());
    SendNameAndKind();
    // An empty text is sent as an empty string, never as NULL: only "Пусто" sends NULL.
    auto text = [](const QString& t) { return QVariant(t.isNull() ? QStringLiteral("") : t); };
    setParam(QStringLiteral("new_value"), chbNewNull->isChecked() ? QVariant() : text(NewValueText()));
    setParam(QStringLiteral("old_value"), chbOldNull->isChecked() ? QVariant() : text(OldValueText()));
    setParam(QStringLiteral("use_old_value"), BoolText(chbUseOldValue->isChecked()));
}

} // namespace frames
