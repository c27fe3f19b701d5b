#include "frames/lookup/LF_DiscAlgCondition.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "platform/widgets/DataSetModel.h"
#include <QComboBox>
#include <QPainter>
#include <QScopedValueRollback>

namespace frames {

namespace {

QString keyText(const QVariant& v) {
    return (!v.isValid() || v.isNull()) ? QString() : v.toString().trimmed();
}

QPixmap unusedMark() {
    QPixmap pm(16, 16);
    pm.fill(Qt::transparent);
    QPainter p(&pm);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(QPen(QColor(0x80, 0x80, 0x80), 2));
    p.drawEllipse(QRectF(2, 2, 12, 12));
    p.drawLine(QPointF(4.5, 11.5), QPointF(11.5, 4.5));
    return pm;
}

} // namespace

TDiscAlgCondition_LF::TDiscAlgCondition_LF(QWidget* parent) : TAbs_LF(parent) {
    lcSelect->comboBox()->setIconSize(QSize(16, 16));
    lcSelect->OnChange = [this](QObject* sender) { lcSelectChange(sender); };
    lcSelect->OnGetImage = [this](QObject* sender, int row) { return lcSelectGetImage(sender, row); };
}

void TDiscAlgCondition_LF::Init() {
    TAbs_LF::Init();
    accepted_ = lcSelect->keyValue();
}

void TDiscAlgCondition_LF::pFIBDataSet1AfterOpen(db::AbstractDataSet& dataSet) {
    TAbs_LF::pFIBDataSet1AfterOpen(dataSet);
    unused_.clear();
    const db::Field* id = dataSet.findField(lcSelect->lookupField());
    const db::Field* use = dataSet.findField("IS_USE");
    if (!id || !use) return;
    for (int row = 0, n = dataSet.recordCount(); row < n; ++row)
        if (!ui::DataSetModel::isTrueValue(dataSet.valueAt(row, use->index())))
            unused_.insert(keyText(dataSet.valueAt(row, id->index())));
}

bool TDiscAlgCondition_LF::IsUnused(const QVariant& key) const {
    return unused_.contains(keyText(key));
}

QIcon TDiscAlgCondition_LF::lcSelectGetImage(QObject*, int row) {
    if (row < 0) return {};
    const db::Field* id = pFIBDataSet1->findField(lcSelect->lookupField());
    if (!id || !IsUnused(id->value())) return {};
    static const QIcon mark(unusedMark());
    return mark;
}

void TDiscAlgCondition_LF::lcSelectChange(QObject*) {
    if (restoring_) return;
    const QVariant key = lcSelect->keyValue();
    if (!IsUnused(key)) {
        accepted_ = key;
        return;
    }
    const QString name = lcSelect->displayText();
    {
        QScopedValueRollback restoring(restoring_, true);
        if (accepted_.isValid() && !accepted_.isNull())
            lcSelect->setKeyValue(accepted_);
        else
            lcSelect->clear();
    }
    TyWarningBox(QStringLiteral("Условие «%1» не используется и не может быть выбрано.").arg(name));
}

FRAMES_REGISTER(TDiscAlgCondition_LF, "lookup");

} // namespace frames
