#include "frames/medit/ME_RefAdd_ComboEdit.h"
#include "frames/core/Registry.h"
#include "platform/db/Params.h"
#include <stdexcept>

namespace frames {

int TRefAdd_ComboEdit_ME::Kind() const {
    const QString text = Values(QStringLiteral("REFADD_KIND")).trimmed();
    bool ok = false;
    const int kind = text.toInt(&ok);
    if (!ok)
        throw std::runtime_error(
            QStringLiteral("'%1' не является целым числом (вид дополнительного справочника)")
                .arg(text)
                .toStdString());
    return kind;
}

void TRefAdd_ComboEdit_ME::PrepareList(db::DataSet* dataSet) {
    TComboEdit_ME::PrepareList(dataSet);
    dataSet->paramByName(QStringLiteral("KIND"))->setValue(Kind());
}

void TRefAdd_ComboEdit_ME::SendNameAndKind() {
    setParam(QStringLiteral("KIND"), Kind());
}

FRAMES_REGISTER(TRefAdd_ComboEdit_ME, "medit");

} // namespace frames
