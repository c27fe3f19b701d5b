#include "frames/core/ConfigItem.h"
#include "platform/db/Params.h"
#include <QJsonDocument>
#include <QJsonValue>
#include <QLocale>
#include <QStringDecoder>
#include <charconv>
#include <cmath>
#include <cstring>

namespace frames {

TConfigItem* TConfigItem::Find(const QString& name) const {
    return index_.value(keyOf(name), nullptr);
}

TConfigItem* TConfigItem::ItemByName(const QString& name) {
    const QString key = keyOf(name);
    if (TConfigItem* c = index_.value(key, nullptr)) return c;
    children_.push_back(std::make_unique<TConfigItem>(name));
    TConfigItem* c = children_.back().get();
    index_.insert(key, c);
    return c;
}

bool TConfigItem::IsExists(const QString& name) const {
    return index_.contains(keyOf(name));
}

void TConfigItem::Remove(const QString& name) {
    TConfigItem* c = index_.take(keyOf(name));
    if (!c) return;
    std::erase_if(children_, [c](const auto& p) { return p.get() == c; });
}

void TConfigItem::ClearItems() {
    index_.clear();
    children_.clear();
}

int TConfigItem::GetAsInteger() const {
    bool ok = false;
    const int v = value_.toInt(&ok);
    return ok ? v : int(value_.toDouble());
}

double TConfigItem::GetAsFloat() const {
    return value_.toDouble();
}

bool TConfigItem::GetAsBoolean() const {
    if (value_.typeId() == QMetaType::QString) {
        const QString s = value_.toString().trimmed().toLower();
        return s == "true" || s == "1" || s == "t" || s == "y";
    }
    return value_.toBool();
}

bool TConfigItem::sameTree(const TConfigItem& other) const {
    if (keyOf(name_) != keyOf(other.name_) || value_ != other.value_ ||
        children_.size() != other.children_.size())
        return false;
    for (size_t i = 0; i < children_.size(); ++i)
        if (!children_[i]->sameTree(*other.children_[i])) return false;
    return true;
}

// ---- JSON

QJsonObject TConfigItem::toJson() const {
    QJsonObject o;
    if (value_.isValid()) o.insert("value", QJsonValue::fromVariant(value_));
    if (!children_.empty()) {
        QJsonObject items;
        for (auto& c : children_) items.insert(c->name_, c->toJson());
        o.insert("items", items);
    }
    return o;
}

void TConfigItem::fromJson(const QJsonObject& o) {
    QString error;
    readJsonText(QJsonDocument(o).toJson(QJsonDocument::Compact), &error);
}

// A reader of JSON text straight into the tree: children keep the order they have in the text,
// nesting is bounded before it can exhaust the stack, and an error names its offset.
class TConfigItem::Reader {
public:
    explicit Reader(const QByteArray& text)
        : p_(text.constData()), begin_(text.constData()), end_(text.constData() + text.size()) {}

    bool readDocument(TConfigItem& root) {
        if (end_ - p_ >= 3 && std::memcmp(p_, "\xEF\xBB\xBF", 3) == 0) p_ += 3; // a byte order mark
        skipSpace();
        if (p_ == end_) return fail(QStringLiteral("the file is empty"));
        if (*p_ != '{') return fail(QStringLiteral("the top level is not an object"));
        if (!readNode(root, 0)) return false;
        skipSpace();
        if (p_ != end_) return fail(QStringLiteral("text after the end of the tree"));
        return true;
    }

    QString error;

private:
    bool fail(const QString& why) {
        if (error.isEmpty()) error = QStringLiteral("%1 at offset %2").arg(why).arg(p_ - begin_);
        return false;
    }
    bool tooDeep() { return fail(QStringLiteral("nested deeper than %1 levels").arg(MaxDepth)); }

    void skipSpace() {
        while (p_ != end_ && (*p_ == ' ' || *p_ == '\n' || *p_ == '\r' || *p_ == '\t')) ++p_;
    }
    bool expect(char c) {
        skipSpace();
        if (p_ == end_ || *p_ != c) return fail(QStringLiteral("'%1' expected").arg(QLatin1Char(c)));
        ++p_;
        return true;
    }
    // Calls member(name) for each member of the object at p_; member reads the value.
    template <typename F> bool readMembers(F&& member) {
        if (!expect('{')) return false;
        skipSpace();
        if (p_ != end_ && *p_ == '}') {
            ++p_;
            return true;
        }
        for (;;) {
            skipSpace();
            QString name;
            if (!readString(name) || !expect(':')) return false;
            skipSpace();
            if (!member(name)) return false;
            skipSpace();
            if (p_ == end_) return fail(QStringLiteral("the text ends inside an object"));
            if (*p_ == '}') {
                ++p_;
                return true;
            }
            if (*p_ != ',') return fail(QStringLiteral("',' or '}' expected"));
            ++p_;
        }
    }

    // {"value": ..., "items": {"name": {...}, ...}}; other members are passed over.
    bool readNode(TConfigItem& node, int depth) {
        if (depth > MaxDepth) return tooDeep();
        return readMembers([&](const QString& member) {
            if (member == QLatin1String("value")) return readValue(node.value_, node.name_);
            if (member != QLatin1String("items")) return skipValue(depth * 2 + 1);
            if (matchWord("null")) return true;
            if (p_ == end_ || *p_ != '{')
                return fail(QStringLiteral("the items of \"%1\" are not an object").arg(node.name_));
            return readMembers([&](const QString& name) {
                if (p_ == end_ || *p_ != '{')
                    return fail(
                        QStringLiteral("item \"%1\" of \"%2\" is not an object").arg(name, node.name_));
                // Two names that differ in case only are one item: the later one counts.
                TConfigItem* child = node.ItemByName(name);
                child->value_ = QVariant();
                child->ClearItems();
                return readNode(*child, depth + 1);
            });
        });
    }

    bool readValue(QVariant& value, const QString& owner) {
        if (p_ == end_) return fail(QStringLiteral("the text ends before a value"));
        if (*p_ == '"') {
            QString s;
            if (!readString(s)) return false;
            value = s;
            return true;
        }
        if (matchWord("true")) {
            value = true;
            return true;
        }
        if (matchWord("false")) {
            value = false;
            return true;
        }
        if (matchWord("null")) {
            value = QVariant();
            return true;
        }
        if (*p_ == '-' || (*p_ >= '0' && *p_ <= '9')) return readNumber(value);
        return fail(QStringLiteral("the value of \"%1\" is not a string, number or Boolean").arg(owner));
    }

    bool matchWord(const char* word) {
        const size_t n = std::strlen(word);
        if (size_t(end_ - p_) < n || std::memcmp(p_, word, n) != 0) return false;
        p_ += n;
        return true;
    }

    static bool isDigit(char c) { return c >= '0' && c <= '9'; }

    // -?(0|[1-9][0-9]*)(.[0-9]+)?([eE][+-]?[0-9]+)?: an integer within 64 bits is kept as one,
    // anything else as a double.
    bool readNumber(QVariant& value) {
        const char* start = p_;
        bool integral = true;
        if (*p_ == '-') ++p_;
        if (p_ == end_ || !isDigit(*p_)) return fail(QStringLiteral("a digit expected"));
        if (*p_ == '0')
            ++p_;
        else
            while (p_ != end_ && isDigit(*p_)) ++p_;
        if (p_ != end_ && *p_ == '.') {
            integral = false;
            ++p_;
            if (p_ == end_ || !isDigit(*p_)) return fail(QStringLiteral("a digit expected"));
            while (p_ != end_ && isDigit(*p_)) ++p_;
        }
        if (p_ != end_ && (*p_ == 'e' || *p_ == 'E')) {
            integral = false;
            ++p_;
            if (p_ != end_ && (*p_ == '+' || *p_ == '-')) ++p_;
            if (p_ == end_ || !isDigit(*p_)) return fail(QStringLiteral("a digit expected"));
            while (p_ != end_ && isDigit(*p_)) ++p_;
        }
        if (integral) {
            qint64 i = 0;
            const auto r = std::from_chars(start, p_, i);
            if (r.ec == std::errc() && r.ptr == p_) {
                value = qlonglong(i);
                return true;
            }
        }
        double d = 0;
        const auto r = std::from_chars(start, p_, d);
        if (r.ec != std::errc() || r.ptr != p_ || !std::isfinite(d)) {
            p_ = start;
            return fail(QStringLiteral("a number out of range"));
        }
        value = d;
        return true;
    }

    static int hexDigit(char c) {
        if (c >= '0' && c <= '9') return c - '0';
        if (c >= 'a' && c <= 'f') return c - 'a' + 10;
        if (c >= 'A' && c <= 'F') return c - 'A' + 10;
        return -1;
    }

    // A quoted string: UTF-8 text with the JSON escapes.
    bool readString(QString& out) {
        if (p_ == end_ || *p_ != '"') return fail(QStringLiteral("'\"' expected"));
        ++p_;
        out.clear();
        for (;;) {
            const char* run = p_;
            bool ascii = true;
            for (; p_ != end_ && *p_ != '"' && *p_ != '\\'; ++p_) {
                const auto c = static_cast<unsigned char>(*p_);
                if (c < 0x20) break;
                if (c >= 0x80) ascii = false;
            }
            if (ascii)
                out += QLatin1StringView(run, p_ - run);
            else if (!appendUtf8(out, run, p_))
                return false;
            if (p_ == end_) return fail(QStringLiteral("the text ends inside a string"));
            if (*p_ == '"') {
                ++p_;
                return true;
            }
            if (*p_ != '\\') return fail(QStringLiteral("a control character inside a string"));
            if (++p_ == end_) return fail(QStringLiteral("the text ends inside a string"));
            switch (*p_++) {
            case '"':
                out += u'"';
                break;
            case '\\':
                out += u'\\';
                break;
            case '/':
                out += u'/';
                break;
            case 'b':
                out += u'\b';
                break;
            case 'f':
                out += u'\f';
                break;
            case 'n':
                out += u'\n';
                break;
            case 'r':
                out += u'\r';
                break;
            case 't':
                out += u'\t';
                break;
            case 'u': {
                if (end_ - p_ < 4) return fail(QStringLiteral("a short \\u escape"));
                int code = 0;
                for (int k = 0; k < 4; ++k) {
                    const int h = hexDigit(*p_++);
                    if (h < 0) return fail(QStringLiteral("a bad \\u escape"));
                    code = code * 16 + h;
                }
                out += QChar(char16_t(code));
                break;
            }
            default:
                --p_;
                return fail(QStringLiteral("an unknown escape"));
            }
        }
    }

    bool appendUtf8(QString& out, const char* from, const char* to) {
        QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        out += decode(QByteArrayView(from, to - from));
        if (decode.hasError()) {
            p_ = from;
            return fail(QStringLiteral("text that is not UTF-8"));
        }
        return true;
    }

    // Passes over a member this reader does not use, whatever JSON it holds.
    bool skipValue(int level) {
        if (level > 2 * MaxDepth + 2) return tooDeep();
        if (p_ == end_) return fail(QStringLiteral("the text ends before a value"));
        if (*p_ == '{') return readMembers([&](const QString&) { return skipValue(level + 1); });
        if (*p_ == '[') {
            ++p_;
            skipSpace();
            if (p_ != end_ && *p_ == ']') {
                ++p_;
                return true;
            }
            for (;;) {
                skipSpace();
                if (!skipValue(level + 1)) return false;
                skipSpace();
                if (p_ == end_) return fail(QStringLiteral("the text ends inside an array"));
                if (*p_ == ']') {
                    ++p_;
                    return true;
                }
                if (*p_ != ',') return fail(QStringLiteral("',' or ']' expected"));
                ++p_;
            }
        }
        QVariant ignored;
        return readValue(ignored, QStringLiteral("?"));
    }

    const char* p_;
    const char* begin_;
    const char* end_;
};

bool TConfigItem::readJsonText(const QByteArray& text, QString* error) {
    // Built aside, so that a text that fails half-way leaves this node as it was.
    TConfigItem read(name_);
    Reader reader(text);
    if (!reader.readDocument(read)) {
        if (error) *error = reader.error;
        return false;
    }
    value_ = std::move(read.value_);
    children_ = std::move(read.children_);
    index_ = std::move(read.index_);
    return true;
}

namespace {

void writeString(QByteArray& out, const QString& s) {
    out += '"';
    const QByteArray utf8 = s.toUtf8();
    for (const char ch : utf8) {
        const auto c = static_cast<unsigned char>(ch);
        switch (c) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (c < 0x20) {
                static const char hex[] = "0123456789abcdef";
                out += "\\u00";
                out += hex[c >> 4];
                out += hex[c & 15];
            } else {
                out += ch;
            }
        }
    }
    out += '"';
}

void writeValue(QByteArray& out, const QVariant& v) {
    if (v.typeId() == QMetaType::ULongLong || v.typeId() == QMetaType::ULong) {
        out += QByteArray::number(v.toULongLong());
        return;
    }
    if (db::isIntegerValue(v)) {
        out += QByteArray::number(v.toLongLong());
        return;
    }
    switch (v.typeId()) {
    case QMetaType::Bool:
        out += v.toBool() ? "true" : "false";
        return;
    case QMetaType::Double:
    case QMetaType::Float: {
        const double d = v.toDouble();
        if (!std::isfinite(d)) {
            out += "null";
            return;
        }
        // The shortest text that reads back as the same double.
        out += QByteArray::number(d, 'g', QLocale::FloatingPointShortest);
        return;
    }
    default:
        writeString(out, v.toString());
    }
}

} // namespace

void TConfigItem::writeText(QByteArray& out, bool indented, int indent) const {
    const QByteArray pad = indented ? QByteArray(indent + 4, ' ') : QByteArray();
    const char* nl = indented ? "\n" : "";
    const char* colon = indented ? ": " : ":";
    out += '{';
    bool first = true;
    if (value_.isValid()) {
        out += nl;
        out += pad;
        out += "\"value\"";
        out += colon;
        writeValue(out, value_);
        first = false;
    }
    if (!children_.empty()) {
        if (!first) out += ',';
        out += nl;
        out += pad;
        out += "\"items\"";
        out += colon;
        out += '{';
        const QByteArray childPad = indented ? QByteArray(indent + 8, ' ') : QByteArray();
        for (size_t i = 0; i < children_.size(); ++i) {
            if (i) out += ',';
            out += nl;
            out += childPad;
            writeString(out, children_[i]->name_);
            out += colon;
            children_[i]->writeText(out, indented, indent + 8);
        }
        out += nl;
        out += pad;
        out += '}';
        first = false;
    }
    if (!first) {
        out += nl;
        if (indented) out += QByteArray(indent, ' ');
    }
    out += '}';
}

QByteArray TConfigItem::toJsonText(bool indented) const {
    QByteArray out;
    writeText(out, indented, 0);
    if (indented) out += '\n';
    return out;
}

} // namespace frames
