#include "platform/db/Field.h"
#include "platform/db/AbstractDataSet.h"

namespace frames::db {

Field::Field(AbstractDataSet* owner, int index, QString name, FieldType type, int size, int scale)
    : owner_(owner), index_(index), name_(std::move(name)), type_(type), size_(size), scale_(scale) {}

bool Field::isNumeric() const {
    switch (type_) {
    case FieldType::SmallInt:
    case FieldType::Integer:
    case FieldType::BigInt:
    case FieldType::Numeric:
    case FieldType::Float:
    case FieldType::Double:
        return true;
    default:
        return false;
    }
}

bool Field::isText() const {
    return type_ == FieldType::Char || type_ == FieldType::VarChar || type_ == FieldType::TextBlob;
}

QVariant Field::value() const {
    return owner_->currentValue(index_);
}

bool Field::isNull() const {
    const QVariant v = value();
    return !v.isValid() || v.isNull();
}

int Field::asInteger() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::Double) return int(qRound64(v.toDouble()));
    if (v.typeId() == QMetaType::QString) return v.toString().trimmed().toInt();
    return v.toInt();
}

qint64 Field::asInt64() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::Double) return qRound64(v.toDouble());
    if (v.typeId() == QMetaType::QString) return v.toString().trimmed().toLongLong();
    return v.toLongLong();
}

double Field::asDouble() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QString) {
        QString s = v.toString().trimmed();
        s.replace(',', '.');
        return s.toDouble();
    }
    return v.toDouble();
}

bool Field::asBoolean() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QString) {
        const QString s = v.toString().trimmed().toLower();
        return s == "1" || s == "true" || s == "t" || s == "y" || s == "yes";
    }
    return v.toBool();
}

QString Field::asString() const {
    const QVariant v = value();
    if (!v.isValid() || v.isNull()) return {};
    switch (type_) {
    case FieldType::Numeric:
        return owner_->currentNumericText(index_);
    case FieldType::Float:
    case FieldType::Double:
        return QString::number(v.toDouble(), 'g', type_ == FieldType::Float ? 7 : 15);
    case FieldType::Date:
        return v.toDate().toString(QStringLiteral("yyyy-MM-dd"));
    case FieldType::Time:
        return v.toTime().toString(QStringLiteral("HH:mm:ss"));
    case FieldType::Timestamp:
        return v.toDateTime().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    case FieldType::Boolean:
        return v.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case FieldType::Binary:
    case FieldType::BinaryBlob:
        return QString::fromLatin1(v.toByteArray().toHex());
    default:
        return v.toString();
    }
}

QDate Field::asDate() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QDateTime) return v.toDateTime().date();
    return v.toDate();
}

QTime Field::asTime() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QDateTime) return v.toDateTime().time();
    return v.toTime();
}

QDateTime Field::asDateTime() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QDate) return QDateTime(v.toDate(), QTime(0, 0));
    return v.toDateTime();
}

QByteArray Field::asBytes() const {
    const QVariant v = value();
    if (v.typeId() == QMetaType::QString) return v.toString().toUtf8();
    return v.toByteArray();
}

QString Field::displayText() const {
    QString s = asString();
    if (getText) getText(*this, s, true);
    return s;
}

void Field::setValue(const QVariant& v) {
    owner_->setCurrentValue(index_, v);
}

void Field::setAsString(const QString& s) {
    setValue(QVariant(s));
}

void Field::clear() {
    setValue(QVariant());
}

} // namespace frames::db
