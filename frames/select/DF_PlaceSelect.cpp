#include "frames/select/DF_PlaceSelect.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include <stdexcept>

namespace frames {

FRAMES_REGISTER(TPlaceSelect_DF, "select");

void TPlaceSelect_DF::AfterConstruction() {
    TAbs_DF::AfterConstruction();
    TreeType = -2;
    AccessGoodMove = 0;
    UseOrderReglament = 0;
    IsFilial = false;
    PlaceTotal = QvSqlValue({QStringLiteral("select count(*) from CLIENTS where CLIENT_TYPE = 1")}).toInt();
    ShowNodeCounts = true;
}

int TPlaceSelect_DF::treeRoot() const {
    return IsFilial ? CUR_FILIALINDEX : CUR_SHOPINDEX;
}

void TPlaceSelect_DF::trDataSetBeforeOpen(db::AbstractDataSet& dataSet) {
    TreeType = treeRoot();
    TAbs_DF::trDataSetBeforeOpen(dataSet);
    if (db::Param* p = trDataSet->findParam("IS_FILIAL")) p->setValue(IsFilial ? 1 : 0);
}

void TPlaceSelect_DF::SetIsFilial(bool value) {
    if (value == IsFilial) return;
    IsFilial = value;
    ReopenDataSet();
}

void TPlaceSelect_DF::SetKind(int kind) {
    auto q = QvSqlQueryRead(
        {QStringLiteral("select access_goodmove, use_order_reglament from SEL_PLACE_KIND where id = "),
         QString::number(kind)});
    const bool found =
        q->isOpen() && q->columnCount() > 0 && !q->value(0).isNull() && !q->value(0).toString().isEmpty();
    if (!found) throw std::runtime_error(QStringLiteral("Неизвестный вид выбора").toStdString());
    const int goodMove = q->value(0).toInt();
    const int reglament = q->value(1).toInt();
    q.reset();
    TAbs_DF::SetKind(kind);
    AccessGoodMove = goodMove;
    UseOrderReglament = reglament;
    const bool wasOpen = pfDataSet->active() || pfSelected->active();
    pfSelected->close();
    pfDataSet->close();
    for (db::DataSet* d : {pfDataSet, pfSelected}) {
        if (db::Param* p = d->findParam("USE_ORDER_REGLAMENT")) p->setValue(UseOrderReglament);
        if (db::Param* p = d->findParam("ACCESS_GOODMOVE")) p->setValue(AccessGoodMove);
    }
    for (TFIBQuery* s : {pfAddSelected, pfClassItemsCount, pfClearInvalid}) {
        s->setParam("USE_ORDER_REGLAMENT", UseOrderReglament);
        s->setParam("ACCESS_GOODMOVE", AccessGoodMove);
    }
    if (wasOpen) {
        pfDataSet->open();
        pfSelected->open();
    }
}

void TPlaceSelect_DF::pfClearInvalidBeforeExecute() {
    pfClearInvalid->setParam("IS_FILIAL", IsFilial ? 1 : 0);
    pfClearInvalid->setParam("ID_CLASSIF", treeRoot());
}

void TPlaceSelect_DF::GetMXPanelTexts(QString& text, QString& extraText, QColor& textColor,
                                      QColor& extraColor, QString& rightName) {
    TAbs_DF::GetMXPanelTexts(text, extraText, textColor, extraColor, rightName);
    extraText = QStringLiteral("(всего ") + QString::number(PlaceTotal) + QStringLiteral(")");
}

} // namespace frames
