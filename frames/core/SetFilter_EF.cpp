#include "frames/core/SetFilter_EF.h"
#include "frames/core/Tyapi.h"
#include <QLayout>
#include <QVBoxLayout>

namespace frames {

namespace {
const char* const kChecked = "cbSet.Checked";
}

TSetFilter_EF::TSetFilter_EF(QWidget* parent) : TAbsEditFrame(parent) {
    resize(250, 90);
    // The group box carries the caption; the label of the plain frame stays hidden.
    lbSelect->hide();
    GroupBox = new QGroupBox(body());
    GroupBox->setObjectName("GroupBox");
    body()->layout()->addWidget(GroupBox);
    auto* box = new QVBoxLayout(GroupBox);
    box->setContentsMargins(4, 2, 4, 2);
    box->setSpacing(2);
    content_ = new QWidget(GroupBox);
    content_->setObjectName("content");
    auto* inner = new QVBoxLayout(content_);
    inner->setContentsMargins(0, 0, 0, 0);
    inner->setSpacing(2);
    box->addWidget(content_, 1);
    cbSet = new QCheckBox(QString::fromUtf8("Учитывать"), GroupBox);
    cbSet->setObjectName("cbSet");
    box->addWidget(cbSet);
}

TSetFilter_EF::~TSetFilter_EF() = default;

QVBoxLayout* TSetFilter_EF::contentLayout() const {
    return static_cast<QVBoxLayout*>(content_->layout());
}

void TSetFilter_EF::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    cbSet->setEnabled(!value);
}

void TSetFilter_EF::RestoreLayout(TConfigItem* node) {
    TAbsEditFrame::RestoreLayout(node);
    if (node && node->IsExists(kChecked)) cbSet->setChecked(node->ItemByName(kChecked)->GetAsBoolean());
}

void TSetFilter_EF::SaveLayout(TConfigItem* node) {
    TAbsEditFrame::SaveLayout(node);
    if (node) node->ItemByName(kChecked)->SetAsBoolean(cbSet->isChecked());
}

void TSetFilter_EF::Init() {
    TAbsEditFrame::Init();
}

bool TSetFilter_EF::IsEmpty() {
    if (TAbsEditFrame::IsEmpty()) return true;
    return !cbSet->isChecked();
}

void TSetFilter_EF::Clear() {
    cbSet->setChecked(false);
}

int TSetFilter_EF::ItemsCount() {
    return 0;
}

QString TSetFilter_EF::ItemsItem(int) {
    return {};
}

QString TSetFilter_EF::ItemsList() {
    QStringList items;
    for (int i = 0, n = ItemsCount(); i < n; ++i) items << ItemsItem(i);
    return items.join(',');
}

QStringList TSetFilter_EF::knownItems() {
    QStringList items;
    for (int i = 0, n = ItemsCount(); i < n; ++i) {
        const QString item = ItemsItem(i).trimmed();
        if (!item.isEmpty() && item != "-1" && !items.contains(item)) items << item;
    }
    return items;
}

QString TSetFilter_EF::KnownItemsList() {
    return knownItems().join(',');
}

void TSetFilter_EF::AddText(const QString&) {}

QString TSetFilter_EF::SQL(const QString& fieldName) {
    if (!cbSet->isChecked()) return {};
    QStringList literals;
    for (const QString& item : knownItems()) literals << SqlKey(item);
    if (literals.isEmpty()) return {};
    return fieldName + " in (" + literals.join(',') + ")";
}

bool TSetFilter_EF::IsCorrect() {
    return true;
}

void TSetFilter_EF::ContentChanged() {
    cbSet->setChecked(true);
    emit filterChanged();
}

} // namespace frames
