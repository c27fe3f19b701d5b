// Fuzzing the two SQL text scanners of the data layer: the script splitter and the parameter
// scanner. Generated inputs with a known answer check the result exactly; mutated inputs check
// what must hold for any text.
#include "platform/db/Database.h"
#include "platform/db/Params.h"
#include "tests/fuzz/Fuzz.h"
#include <QRegularExpression>

using namespace frames::db;

namespace frames::test {
namespace {

// ---- script splitter

// One token of a statement. Tokens are separated by single spaces, so that two tokens never
// form a comment opener or a terminator between them.
QString statementToken(Rng& rng, const QString& term) {
    static const std::vector<QString> words = {
        "select", "insert", "into",    "values", "from", "where", "x", "ID", "NAME", "rdb$database",
        "begin",  "end",    "suspend", "42",     "3.5",  "=",     "(", ")",  ",",    "<>",
        "+",      "||",     "Имя"};
    // Text that may hold anything the splitter must not cut at.
    const QString inQuotes = QString::fromUtf8(";^-/*' \n\tabcЖ");
    const QString inComment = QString::fromUtf8(";^-' \"abcЖ");
    switch (rng.below(8)) {
    case 0: { // 'text' with doubled quotes
        QString t = rng.text(inQuotes, 0, 12);
        t.replace("'", "''");
        return "'" + t + "'";
    }
    case 1: { // "quoted identifier"
        QString t = rng.text(QString::fromUtf8(";^-/* abc'"), 1, 8);
        return '"' + t + '"';
    }
    case 2:
        return "/*" + rng.text(inComment + "\n", 0, 12) + "*/";
    case 3:
        return "--" + rng.text(inComment, 0, 12) + "\n";
    case 4: // the other terminator is plain text inside a block
        return term == ";" ? QStringLiteral("^") : QStringLiteral(";");
    default:
        return rng.pick(words);
    }
}

QString generatedStatement(Rng& rng, const QString& term) {
    QStringList tokens{rng.pick(std::vector<QString>{"select", "insert", "update", "create", "execute"})};
    for (int i = 0, n = rng.between(0, 10); i < n; ++i) tokens << statementToken(rng, term);
    QString s = tokens.join(' ');
    // A statement ends in a word, so a line comment's newline is inside it.
    return s + " " + rng.pick(std::vector<QString>{"1", "x", "end", ")"});
}

QString filler(Rng& rng) {
    switch (rng.below(5)) {
    case 0:
        return " ";
    case 1:
        return "\n-- " + rng.text(QString::fromUtf8(";^' abc"), 0, 10) + "\n";
    case 2:
        return "\n/* " + rng.text(QString::fromUtf8(";^' abc\n"), 0, 10) + " */ ";
    case 3:
        return "\r\n\t";
    default:
        return "\n";
    }
}

TEST(FuzzSqlScript, GeneratedScriptsSplitBackIntoTheirStatements) {
    Rng rng(20261123);
    const int inputs = 4000;
    for (int n = 0; n < inputs; ++n) {
        QString script;
        QStringList expected;
        QString term = ";";
        for (int k = 0, count = rng.between(0, 6); k < count; ++k) {
            if (rng.chance(20)) { // switch the terminator and back, as procedure bodies do
                const QString next = term == ";" ? "^" : ";";
                script += filler(rng) + (rng.chance(50) ? "SET TERM " : "set term ") + next + " " + term;
                term = next;
            }
            const QString s = generatedStatement(rng, term);
            expected << s;
            script += filler(rng) + s + (rng.chance(30) ? " " : "") + term;
            if (rng.chance(10)) script += term; // an empty statement
        }
        // The last statement may go without its terminator; a comment after it is then part of it.
        if (rng.chance(30) && !expected.isEmpty() && script.endsWith(term)) {
            script.chop(term.size());
            script += "\n";
        } else {
            script += filler(rng);
        }
        const QStringList got = SqlScript::split(script);
        ASSERT_EQ(got, expected) << "input " << n << ": " << shown(script);
    }
    RecordProperty("inputs", inputs);
}

// Any text: the splitter ends, and every statement it returns is a non-empty, trimmed piece of
// the text, in order and without overlap, that is not a SET TERM command.
TEST(FuzzSqlScript, AnyTextGivesOrderedPiecesOfItself) {
    Rng rng(7);
    static const QRegularExpression setTerm(QStringLiteral("^set\\s+term\\s+\\S+$"),
                                            QRegularExpression::CaseInsensitiveOption);
    const QString alphabet = spiceAlphabet() + "SETRMsetrm";
    const int inputs = 6000;
    for (int n = 0; n < inputs; ++n) {
        QString script;
        if (rng.chance(50)) {
            for (int k = 0, count = rng.between(1, 4); k < count; ++k)
                script += generatedStatement(rng, ";") + ";" + filler(rng);
            if (rng.chance(30)) script.insert(rng.below(int(script.size()) + 1), "set term ^ ;\n");
            script = mutate(rng, script, alphabet);
        } else {
            script = rng.text(alphabet, 0, 80);
        }
        const QStringList got = SqlScript::split(script);
        qsizetype at = 0;
        for (const QString& s : got) {
            ASSERT_FALSE(s.isEmpty()) << shown(script);
            ASSERT_EQ(s, s.trimmed()) << shown(script);
            ASSERT_FALSE(setTerm.match(s).hasMatch()) << shown(script);
            const qsizetype found = script.indexOf(s, at);
            ASSERT_GE(found, 0) << "input " << n << ": statement «" << shown(s) << "» is not a piece of «"
                                << shown(script) << "»";
            at = found + s.size();
        }
    }
    RecordProperty("inputs", inputs);
}

// ---- parameter scanner

struct Expected {
    QString sql, positional;
    QStringList names;
    std::vector<int> positions;
};

void addParam(Expected& e, const QString& written, const QString& name) {
    int idx = -1;
    for (int k = 0; k < e.names.size(); ++k)
        if (e.names[k].compare(name, Qt::CaseInsensitive) == 0) idx = k;
    if (idx < 0) {
        idx = int(e.names.size());
        e.names << name;
    }
    e.positions.push_back(idx);
    e.sql += written;
    e.positional += '?';
}

void addText(Expected& e, const QString& text) {
    e.sql += text;
    e.positional += text;
}

TEST(FuzzParams, GeneratedStatementsGiveTheirParametersBack) {
    Rng rng(42);
    static const std::vector<QString> names = {"id",        "ID", "Id_User", "shop",  "SHOP",
                                               "date_from", "x1", "kind",    "ПАРАМ", "a$b"};
    const int inputs = 6000;
    for (int n = 0; n < inputs; ++n) {
        Expected e;
        int unnamed = 0;
        addText(e, "select");
        for (int k = 0, count = rng.between(0, 12); k < count; ++k) {
            addText(e, " ");
            switch (rng.below(9)) {
            case 0:
            case 1: {
                const QString name = rng.pick(names);
                addParam(e, (rng.chance(50) ? ":" : "?") + name, name);
                break;
            }
            case 2:
                addParam(e, "?", QStringLiteral("?%1").arg(++unnamed));
                break;
            case 3: // parameters inside quotes and comments are text
                addText(e, "'" + (rng.chance(50) ? QString(":") : QString("?")) + rng.pick(names) + "'");
                break;
            case 4:
                addText(e, "\"A:" + rng.pick(names) + "\"");
                break;
            case 5:
                addText(e, "/* :" + rng.pick(names) + " ? */");
                break;
            case 6:
                addText(e, "-- ?" + rng.pick(names) + " :x\n");
                break;
            case 7: // not parameters: a name's own colon, a cast, "::" and ":$"
                addText(e, rng.pick(std::vector<QString>{"a:b", "x::int", ":$1", "rdb$relations", "1:2"}));
                break;
            default:
                addText(e, rng.pick(std::vector<QString>{"from", "t", "where", "=", "(", ")", ",", "and"}));
            }
        }
        const ScannedSql got = ScannedSql::scan(e.sql);
        ASSERT_EQ(got.positionalSql, e.positional) << "input " << n << ": " << shown(e.sql);
        ASSERT_EQ(got.positions, e.positions) << "input " << n << ": " << shown(e.sql);
        ASSERT_EQ(got.names.size(), e.names.size()) << "input " << n << ": " << shown(e.sql);
        for (int k = 0; k < e.names.size(); ++k)
            ASSERT_EQ(got.names[k].compare(e.names[k], Qt::CaseInsensitive), 0)
                << "input " << n << ": " << shown(e.sql);
    }
    RecordProperty("inputs", inputs);
}

// Any text: every "?" left is a parameter, every name is used, no name twice, and scanning the
// positional text again finds the same places and changes nothing.
TEST(FuzzParams, AnyTextScansToConsistentPositions) {
    Rng rng(4242);
    const QString alphabet = spiceAlphabet() + "idx_";
    const int inputs = 20000;
    for (int n = 0; n < inputs; ++n) {
        const QString sql = rng.chance(50) ? rng.text(alphabet, 0, 60)
                                           : mutate(rng,
                                                    "select * from T where ID = :id and N = ?n -- :c\n"
                                                    "and S = 'a:b' and /* ?d */ K in (?, :ID, ?k)",
                                                    alphabet);
        const ScannedSql s = ScannedSql::scan(sql);
        ASSERT_LE(s.positionalSql.size(), sql.size());
        std::vector<bool> used(size_t(s.names.size()), false);
        for (int p : s.positions) {
            ASSERT_GE(p, 0);
            ASSERT_LT(p, s.names.size()) << shown(sql);
            used[size_t(p)] = true;
        }
        for (int k = 0; k < s.names.size(); ++k) {
            ASSERT_TRUE(used[size_t(k)]) << shown(sql);
            ASSERT_FALSE(s.names[k].isEmpty());
            for (int j = 0; j < k; ++j) ASSERT_NE(s.names[j].compare(s.names[k], Qt::CaseInsensitive), 0);
        }
        const ScannedSql again = ScannedSql::scan(s.positionalSql);
        ASSERT_EQ(again.positionalSql, s.positionalSql) << "input " << n << ": " << shown(sql);
        ASSERT_EQ(again.positions.size(), s.positions.size()) << "input " << n << ": " << shown(sql);
        for (const QString& name : again.names) ASSERT_TRUE(name.startsWith('?')) << shown(sql);
    }
    RecordProperty("inputs", inputs);
}

} // namespace
} // namespace frames::test
