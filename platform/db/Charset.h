#pragma once
#include <QByteArray>
#include <QString>

namespace frames::db {

// The connection's character set. The databases are WIN1251 (so that "collate PXW_CYRL" applies),
// and the connection uses the same set: text literals inside statements then carry WIN1251 and
// can be ordered and compared with that collation. WIN1251 columns, collated or not, are fetched
// as stored and decoded on access by this codec, as are statement text, metadata names, text
// blobs and server messages; columns in other sets are asked for in UTF8.
inline constexpr const char* connectionCharset = "WIN1251";

// Encodes text in the connection's character set. A character the set lacks cannot reach the
// database: db::Error (a configuration error naming the character and the context) is thrown
// rather than storing a substitute.
QByteArray toConnectionText(const QString& text, const QString& context);
// Decodes text the server sent in the connection's character set.
QString fromConnectionText(const char* data, qsizetype size);
inline QString fromConnectionText(const QByteArray& data) {
    return fromConnectionText(data.constData(), data.size());
}
// Decodes a server message: its own text is UTF8, the names and values quoted in it come in the
// connection's character set. Valid UTF8 is taken as such, anything else as the connection's set.
QString fromServerMessage(const char* text);

} // namespace frames::db
