#include "frames/multi/LF_MultiColor.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "platform/widgets/ColorSwatch.h"
#include <QListView>

namespace frames {

TMultiColor_LF::TMultiColor_LF(QWidget* parent) : TMultiAbs_LF(parent) {
    resize(269, 123);
    dbColorList = dbList;
    dbColorList->setObjectName("dbColorList");
    dbColorList->view()->setIconSize(swatch_.size());
    mdList->close();
    mdList->addFieldDef("Color", db::FieldType::Integer);
    mdList->open();
    sSQLTemplate = FixedSQL;
    dbColorList->OnGetImage = [this](QObject* s, int row) { return dbColorListGetImage(s, row); };
    dbColorList->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { dbColorListKeyDown(s, key, m); });
    };
}

QString TMultiColor_LF::SelectText(const QString& keys) const {
    if (keys.isEmpty()) return FixedSQL + QStringLiteral("  order by name");
    return FixedSQL + QStringLiteral(" and not (id in (") + keys + QStringLiteral(")) order by name");
}

void TMultiColor_LF::FillListRow() {
    TMultiAbs_LF::FillListRow();
    mdList->fieldByName("Color")->setValue(pFIBDataSet1->fieldByName("COLOR")->value());
}

QVariant TMultiColor_LF::dbColorListGetImage(QObject*, int row) {
    const QVariant color = mdList->valueAt(row, mdList->fieldByName("Color")->index());
    const QColor fill =
        color.isNull() || !color.isValid() ? QColor(Qt::white) : ui::colorFromBgr(color.toLongLong());
    swatch_ = ui::colorSwatch(fill, swatch_.size());
    return swatch_;
}

void TMultiColor_LF::dbColorListKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) {
    dbListKeyDown(sender, key, shift);
}

FRAMES_REGISTER(TMultiColor_LF, "multi");

} // namespace frames
