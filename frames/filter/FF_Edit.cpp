#include "frames/filter/FF_Edit.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include <QLineEdit>
#include <QLocale>
#include <QVBoxLayout>

namespace frames {

TEdit_FF::TEdit_FF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(250, 130);
    MultiEditComboBox_EF =
        static_cast<TMultiEditComboBox_EF*>(Registry::instance().create("TMultiEditComboBox_EF", content()));
    MultiEditComboBox_EF->lbSelect->hide();
    contentLayout()->addWidget(MultiEditComboBox_EF, 1);
    ui::HistoryCombo* combo = MultiEditComboBox_EF->ComboBox;
    auto changed = [this] {
        guard([this] { MultiEditComboBox_EFComboBoxChange(MultiEditComboBox_EF->ComboBox); });
    };
    connect(combo->lineEdit(), &QLineEdit::textEdited, this, changed);
    connect(combo, &QComboBox::activated, this, changed);
    connect(MultiEditComboBox_EF, &TValueList_Frame::Changed, this, changed);
}

void TEdit_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    MultiEditComboBox_EF->SetReadOnly(value);
}

void TEdit_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (node) MultiEditComboBox_EF->SaveLayout(node->ItemByName(MultiEditComboBox_EF->objectName()));
}

void TEdit_FF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (node && node->IsExists(MultiEditComboBox_EF->objectName()))
        MultiEditComboBox_EF->RestoreLayout(node->ItemByName(MultiEditComboBox_EF->objectName()));
}

int TEdit_FF::ItemsCount() {
    return MultiEditComboBox_EF->ItemsCount();
}

QString TEdit_FF::ItemsItem(int i) {
    return MultiEditComboBox_EF->ItemsItem(i);
}

void TEdit_FF::AddText(const QString& text) {
    MultiEditComboBox_EF->AddText(text);
}

QString TEdit_FF::SQL(const QString& fieldName) {
    if (!cbSet->isChecked()) return {};
    const QStringList patterns = MultiEditComboBox_EF->Items();
    if (patterns.isEmpty()) return "(" + fieldName + " is null) or (trim(" + fieldName + ")='')";
    const QLocale locale;
    QStringList conditions;
    for (QString p : patterns) {
        p.replace(QLatin1Char('*'), QLatin1Char('%'));
        p.replace(QStringLiteral("'"), QStringLiteral("''"));
        conditions << "upper(" + fieldName + ") like '" + locale.toUpper(p) + "'";
    }
    return conditions.join(QStringLiteral(" or "));
}

void TEdit_FF::MultiEditComboBox_EFComboBoxChange(QObject*) {
    ContentChanged();
}

FRAMES_REGISTER(TEdit_FF, "filter");

} // namespace frames
