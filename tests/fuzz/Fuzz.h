#pragma once
// Bounded fuzzing: a fixed seed per test, a fixed number of inputs, and properties that every
// input must keep. A failure prints the seed, the input number and the input.
#include <QString>
#include <QStringList>
#include <algorithm>
#include <cstdint>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace frames::test {

// A small deterministic generator (splitmix64): the same seed gives the same inputs everywhere.
class Rng {
public:
    explicit Rng(std::uint64_t seed) : s_(seed) {}
    std::uint64_t next() {
        std::uint64_t z = (s_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // 0 .. n-1 (n > 0)
    int below(int n) { return int(next() % std::uint64_t(n)); }
    int between(int lo, int hi) { return lo + below(hi - lo + 1); }
    bool chance(int percent) { return below(100) < percent; }
    double unit() { return double(next() >> 11) / double(1ull << 53); }
    template <typename T> const T& pick(const std::vector<T>& v) { return v[size_t(below(int(v.size())))]; }
    QChar pickChar(const QString& alphabet) { return alphabet[below(int(alphabet.size()))]; }
    QString text(const QString& alphabet, int minLen, int maxLen) {
        QString s;
        for (int i = 0, n = between(minLen, maxLen); i < n; ++i) s += pickChar(alphabet);
        return s;
    }

private:
    std::uint64_t s_;
};

// Characters that are not letters or digits in any test alphabet: control characters, NUL,
// quotes, surrogate-free non-Latin text, the no-break space.
inline QString spiceAlphabet() {
    return QString::fromUtf8("'\"-/*;^:?$ \t\r\n\\{}[],.0123456789aZзЯё€\u00A0") + QChar(0) + QChar(0x1F) +
           QChar(0x7F);
}

// Mutates a text: deletes, inserts or replaces a few characters, or cuts it short.
inline QString mutate(Rng& rng, QString s, const QString& alphabet) {
    const int edits = rng.between(1, 4);
    for (int e = 0; e < edits; ++e) {
        const int at = s.isEmpty() ? 0 : rng.below(int(s.size()) + 1);
        switch (rng.below(5)) {
        case 0:
            if (!s.isEmpty()) s.remove(std::min(at, int(s.size()) - 1), rng.between(1, 3));
            break;
        case 1:
            s.insert(at, rng.text(alphabet, 1, 4));
            break;
        case 2:
            if (at < s.size()) s[at] = rng.pickChar(alphabet);
            break;
        case 3:
            s.truncate(at); // a file cut short
            break;
        default: { // a piece of the text repeated elsewhere
            const int from = s.isEmpty() ? 0 : rng.below(int(s.size()));
            s.insert(at, s.mid(from, rng.between(1, 12)));
        }
        }
    }
    return s;
}

// Describes an input for a failure message, with its control characters visible.
inline std::string shown(const QString& s) {
    QString out;
    for (QChar c : s) {
        if (c.unicode() < 0x20 || c.unicode() == 0x7F)
            out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QChar('0'));
        else
            out += c;
    }
    return out.toStdString();
}

} // namespace frames::test

// Failure messages show texts as text, with control characters visible.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << frames::test::shown(s) << '"';
}
