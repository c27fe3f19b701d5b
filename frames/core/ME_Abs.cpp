#include "frames/core/ME_Abs.h"
#include "frames/core/Host.h"
#include "frames/core/RunParams.h"
#include "frames/core/Tyapi.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"

namespace frames {

TAbsMEditFrame::TAbsMEditFrame(QWidget* parent) : TAbsEditFrame(parent) {
    setMinimumSize(300, 40);
    lbSelect->hide();
    // Frames write in a transaction of their own: "write, nowait, rec_version, read_committed",
    // so a record another user holds fails at once instead of freezing the dialog.
    pfTransaction =
        new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);
    pfTransaction->setObjectName("pfTransaction");
    pfUpdate = new db::Query(dmDataBaseFIB()->RvDatabase(), pfTransaction, this);
    pfUpdate->setObjectName("pfUpdate");
}

TAbsMEditFrame::~TAbsMEditFrame() = default;

void TAbsMEditFrame::SetParams(const QString& params) {
    paramList_ = params.split(QLatin1Char('\n'));
    for (QString& line : paramList_)
        if (line.endsWith(QLatin1Char('\r'))) line.chop(1);
    fieldName_ = Values(QStringLiteral("FIELDNAME")).trimmed();
    pfUpdate->setSql(Values(QStringLiteral("SQL")));
}

QString TAbsMEditFrame::Values(const QString& key) const {
    for (const QString& line : paramList_) {
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq > 0 && line.left(eq).compare(key, Qt::CaseInsensitive) == 0) return line.mid(eq + 1);
    }
    return {};
}

QVariant TAbsMEditFrame::GetParamValue(const QString& name) {
    const QString key = name.trimmed();
    for (const QString& line : paramList_) {
        const qsizetype eq = line.indexOf(QLatin1Char('='));
        if (eq > 0 && line.left(eq).compare(key, Qt::CaseInsensitive) == 0) return line.mid(eq + 1);
    }
    const QString upper = key.toUpper();
    if (upper == QLatin1String("CUR_USER")) return CUR_USER;
    if (upper == QLatin1String("CUR_FILIALINDEX")) return CUR_FILIALINDEX;
    if (upper == QLatin1String("CUR_SHOPINDEX")) return CUR_SHOPINDEX;
    if (upper == QLatin1String("GLOBAL_PAR_SET_FOR")) return GLOBAL_PAR_SET_FOR;
    if (upper == QLatin1String("GLOBAL_PAR_CLASSIF_TYPE")) return GLOBAL_PAR_CLASSIF_TYPE;
    if (upper == QLatin1String("SESSION")) return SessionNumber();
    return {};
}

bool TAbsMEditFrame::ApplyChanges() {
    rowsAffected_ = 0;
    pfTransaction->ensureStarted();
    pfUpdateBeforeExecute(pfUpdate);
    pfUpdate->exec();
    rowsAffected_ = pfUpdate->rowsAffected();
    pfUpdateAfterExecute(pfUpdate);
    return true;
}

void TAbsMEditFrame::pfUpdateBeforeExecute(QObject*) {}
void TAbsMEditFrame::pfUpdateAfterExecute(QObject*) {}

void TAbsMEditFrame::DelParam(const QString& name) {
    paramList_ = IBDelParam(paramList_.join(QLatin1Char('\n')), name).split(QLatin1Char('\n'));
}

int TAbsMEditFrame::SessionNumber() {
    return dmDataBaseFIB()->SessionNumber();
}

QString TAbsMEditFrame::BoolText(bool value) {
    return value ? QStringLiteral("T") : QStringLiteral("F");
}

void TAbsMEditFrame::setIfPresent(const QString& name, const QVariant& value) {
    if (db::Param* p = pfUpdate->findParam(name)) p->setValue(value);
}

void TAbsMEditFrame::setParam(const QString& name, const QVariant& value) {
    pfUpdate->paramByName(name)->setValue(value);
}

} // namespace frames
