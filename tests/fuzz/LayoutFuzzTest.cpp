// Fuzzing the layout tree's JSON reader and writer.
#include "frames/core/ConfigItem.h"
#include "tests/fuzz/Fuzz.h"
#include <QJsonDocument>

namespace frames::test {
namespace {

// Names as frames and users make them, and the characters a writer must escape.
QString randomName(Rng& rng) {
    static const std::vector<QString> common = {"cbSet.Checked", "lcSelect.KeyValue",
                                                "FromDate",      "ToDate",
                                                "Grid",          "TClient_FF",
                                                "Фильтр",        "value",
                                                "items",         "",
                                                "Смайл 😀"};
    if (rng.chance(60))
        return rng.pick(common) + (rng.chance(50) ? QString::number(rng.below(50)) : QString());
    QString alphabet =
        QString::fromUtf8("aZ09 ._\"\\/{}[]:,\n\t\r'ЖёЯ€") + QChar(0) + QChar(0x01) + QChar(0x1F);
    return rng.text(alphabet, 0, 8);
}

QVariant randomValue(Rng& rng) {
    switch (rng.below(6)) {
    case 0:
        return QVariant();
    case 1:
        return rng.chance(50);
    case 2:
        return rng.between(-1000000, 1000000);
    case 3:
        return (rng.unit() - 0.5) * std::pow(10.0, rng.between(-8, 12));
    default:
        return randomName(rng);
    }
}

void fill(Rng& rng, TConfigItem& node, int depth) {
    const QVariant v = randomValue(rng);
    if (v.isValid()) {
        if (v.typeId() == QMetaType::Bool)
            node.SetAsBoolean(v.toBool());
        else if (v.typeId() == QMetaType::Int)
            node.SetAsInteger(v.toInt());
        else if (v.typeId() == QMetaType::Double)
            node.SetAsFloat(v.toDouble());
        else
            node.SetAsString(v.toString());
    }
    if (depth >= 5) return;
    for (int i = 0, n = rng.between(0, depth == 0 ? 6 : 4); i < n; ++i)
        fill(rng, *node.ItemByName(randomName(rng)), depth + 1);
}

int depthOf(const TConfigItem& node) {
    int d = 0;
    for (int i = 0; i < node.Count(); ++i) d = std::max(d, 1 + depthOf(*node.Item(i)));
    return d;
}

// Written trees are valid JSON and read back as the same tree, children in the same order.
TEST(FuzzLayout, WrittenTreesReadBackTheSame) {
    Rng rng(2026);
    const int inputs = 3000;
    for (int n = 0; n < inputs; ++n) {
        TConfigItem tree("Layout");
        fill(rng, tree, 0);
        const bool indented = rng.chance(50);
        const QByteArray text = tree.toJsonText(indented);
        QJsonParseError err{};
        ASSERT_TRUE(QJsonDocument::fromJson(text, &err).isObject())
            << "input " << n << ": " << err.errorString().toStdString() << "\n"
            << text.toStdString();
        TConfigItem back("Layout");
        QString why;
        ASSERT_TRUE(back.readJsonText(text, &why)) << why.toStdString() << "\n" << text.toStdString();
        ASSERT_TRUE(back.sameTree(tree)) << "input " << n << ":\n" << text.toStdString();
        ASSERT_EQ(back.toJsonText(indented), text) << "input " << n;
    }
    RecordProperty("inputs", inputs);
}

// Damaged files: a text the reader refuses leaves the tree as it was and says why; a text it
// takes is valid JSON and gives a tree within the depth limit that writes and reads back unchanged.
TEST(FuzzLayout, DamagedFilesAreRefusedWholeOrReadConsistently) {
    Rng rng(2027);
    const QString alphabet = spiceAlphabet() + "truefalsnl";
    const int inputs = 6000;
    int refused = 0;
    for (int n = 0; n < inputs; ++n) {
        TConfigItem source("Layout");
        fill(rng, source, 0);
        const QString damaged = mutate(rng, QString::fromUtf8(source.toJsonText(rng.chance(50))), alphabet);
        TConfigItem tree("Layout");
        tree.ItemByName("Kept")->SetAsString("до чтения");
        TConfigItem before("Layout");
        before.ItemByName("Kept")->SetAsString("до чтения");
        QString why;
        if (!tree.readJsonText(damaged.toUtf8(), &why)) {
            ++refused;
            ASSERT_FALSE(why.isEmpty());
            ASSERT_TRUE(tree.sameTree(before)) << "input " << n << " changed the tree: " << shown(damaged);
            continue;
        }
        ASSERT_LE(depthOf(tree), TConfigItem::MaxDepth);
        // What the reader takes is JSON by Qt's own parser too.
        ASSERT_TRUE(QJsonDocument::fromJson(damaged.toUtf8()).isObject())
            << "input " << n << ": " << shown(damaged);
        const QByteArray text = tree.toJsonText();
        TConfigItem again("Layout");
        ASSERT_TRUE(again.readJsonText(text, &why)) << why.toStdString();
        ASSERT_TRUE(again.sameTree(tree)) << "input " << n << ": " << shown(damaged);
    }
    RecordProperty("inputs", inputs);
    RecordProperty("refused", refused);
}

// Nesting at the limit is read, one level more is refused, and JSON nested far deeper than
// any parser should follow is refused without exhausting the stack.
TEST(FuzzLayout, DepthLimit) {
    auto nested = [](int levels) {
        QByteArray open, close;
        for (int i = 0; i < levels; ++i) {
            open += "{\"items\":{\"n\":";
            close += "}}";
        }
        return open + "{\"value\":1}" + close;
    };
    TConfigItem tree;
    QString why;
    EXPECT_TRUE(tree.readJsonText(nested(TConfigItem::MaxDepth), &why)) << why.toStdString();
    EXPECT_EQ(depthOf(tree), TConfigItem::MaxDepth);
    EXPECT_FALSE(tree.readJsonText(nested(TConfigItem::MaxDepth + 1), &why));
    EXPECT_TRUE(why.contains("deeper")) << why.toStdString();
    EXPECT_EQ(depthOf(tree), TConfigItem::MaxDepth); // unchanged
    EXPECT_FALSE(tree.readJsonText(QByteArray(100000, '[') + QByteArray(100000, ']'), &why));
    EXPECT_FALSE(tree.readJsonText(nested(50000), &why));
}

} // namespace
} // namespace frames::test
