#pragma once
#include <QByteArray>
#include <QDate>
#include <QDateTime>
#include <QString>
#include <QTime>
#include <QVariant>
#include <functional>

namespace frames::db {

class AbstractDataSet;

enum class FieldType {
    SmallInt,
    Integer,
    BigInt,
    Numeric, // Numeric: scaled integer, see Field::scale()
    Float,
    Double,
    Char,
    VarChar,
    Date,
    Time,
    Timestamp,
    Boolean,
    TextBlob,
    BinaryBlob,
    Binary
};

// A column of a dataset. Values are read from the dataset's current row (or its edit buffer while
// the dataset is in edit or insert state) and written to the edit buffer.
class Field {
public:
    Field(AbstractDataSet* owner, int index, QString name, FieldType type, int size = 0, int scale = 0);

    AbstractDataSet* dataSet() const { return owner_; }
    int index() const { return index_; }
    const QString& fieldName() const { return name_; }
    FieldType dataType() const { return type_; }
    int size() const { return size_; }   // characters for text, bytes for binary
    int scale() const { return scale_; } // decimal places of a Numeric (positive)
    bool isNumeric() const;              // any integer, numeric or floating type
    bool isText() const;

    // Reading. Null reads as an invalid QVariant, 0, 0.0, "" or a null date.
    QVariant value() const;
    bool isNull() const;
    int asInteger() const;
    qint64 asInt64() const;
    double asDouble() const;
    bool asBoolean() const;
    QString asString() const; // numbers in the C locale, dates as yyyy-MM-dd, null as ""
    QDate asDate() const;
    QTime asTime() const;
    QDateTime asDateTime() const;
    QByteArray asBytes() const;
    // The text shown to a user: getText handler if set, else asString().
    QString displayText() const;

    // Writing (dataset must be in edit or insert state). A string is converted by the field's
    // type: "12" into an integer field stores 12; text that does not convert raises db::Error.
    void setValue(const QVariant& v);
    void setAsString(const QString& s);
    void setAsInteger(int v) { setValue(v); }
    void setAsDouble(double v) { setValue(v); }
    void clear(); // set to null

    // Free integer for the application (display precision class of amount fields, for example).
    int tag = 0;
    // The field's text event: (field, text in/out, displayText?).
    std::function<void(const Field&, QString&, bool)> getText;
    QString displayFormat; // optional format for numbers/dates used by controls

private:
    AbstractDataSet* owner_;
    int index_;
    QString name_;
    FieldType type_;
    int size_;
    int scale_;
};

} // namespace frames::db
