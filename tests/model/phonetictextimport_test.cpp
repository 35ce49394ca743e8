// SPDX-License-Identifier: MIT
// The arguments of setPhoneticText: what the page confirmed, validated item by item.
#include <gtest/gtest.h>

#include "model/phonetictextimport.h"

namespace {

QMap<QString, QVariant> args(const QVariant& phonetic, const QVariant& styleType = 1,
                             const QVariant& bracketType = 1) {
    return {{"styleType", styleType}, {"bracketType", bracketType}, {"phonetic", phonetic}};
}

void expectItem(const PhoneticItem& item, const QString& pinyin, const QString& text, int index) {
    EXPECT_EQ(item.pinyin, pinyin);
    EXPECT_EQ(item.text, text);
    EXPECT_EQ(item.index, index);
}

TEST(PhoneticTextImport, TwoReadingsOneOfThemTheSecondOfItsCharacter) {
    const PhoneticImport result = importPhoneticText(args(QString::fromUtf8(
        R"([{"index":0,"pinyin":"dū","text":"都"},{"index":1,"pinyin":"děi","text":"得"}])")));
    EXPECT_EQ(result.styleType, 1);
    EXPECT_EQ(result.bracketType, 1);
    ASSERT_EQ(result.items.size(), 2);
    expectItem(result.items[0], QString::fromUtf8("dū"), QString::fromUtf8("都"), 0);
    expectItem(result.items[1], QString::fromUtf8("děi"), QString::fromUtf8("得"), 1);
}

TEST(PhoneticTextImport, AnArrayInsteadOfAStringGivesNothing) {
    const QVariantList array{QVariantMap{{"index", 0}, {"pinyin", "dū"}, {"text", "都"}}};
    const PhoneticImport result = importPhoneticText(args(array));
    EXPECT_TRUE(result.items.isEmpty());
    EXPECT_EQ(result.styleType, 1);  // the choices are still read
}

TEST(PhoneticTextImport, ABadIndexDropsOnlyItsElement) {
    const PhoneticImport result = importPhoneticText(args(QString::fromUtf8(
        R"([{"index":0,"pinyin":"nǐ","text":"你"},{"index":3.5,"pinyin":"x","text":"x"},)"
        R"({"index":"2","pinyin":"y","text":"y"},{"index":1,"pinyin":"hǎo","text":"好"}])")));
    ASSERT_EQ(result.items.size(), 2);
    expectItem(result.items[0], QString::fromUtf8("nǐ"), QString::fromUtf8("你"), 0);
    expectItem(result.items[1], QString::fromUtf8("hǎo"), QString::fromUtf8("好"), 1);
}

TEST(PhoneticTextImport, IndexesMustFitA32BitInteger) {
    const PhoneticImport result = importPhoneticText(args(QStringLiteral(
        R"([{"index":2147483648,"pinyin":"a","text":"a"},{"index":-2147483648,"pinyin":"b","text":"b"}])")));
    ASSERT_EQ(result.items.size(), 1);
    EXPECT_EQ(result.items[0].index, -2147483647 - 1);  // passed on unchecked
}

TEST(PhoneticTextImport, MissingOrWronglyTypedMembersDropTheElement) {
    const PhoneticImport result = importPhoneticText(args(QStringLiteral(
        R"([{"pinyin":"a","text":"a"},{"index":0,"text":"a"},{"index":0,"pinyin":"a"},)"
        R"({"index":0,"pinyin":1,"text":"a"},{"index":0,"pinyin":"a","text":null},5,"s",null,[1],)"
        R"({"index":4,"pinyin":"ok","text":"k","duyin":["x"],"extra":true}])")));
    ASSERT_EQ(result.items.size(), 1);
    expectItem(result.items[0], "ok", "k", 4);
}

TEST(PhoneticTextImport, AnEmptyPinyinIsKept) {
    const PhoneticImport result =
        importPhoneticText(args(QString::fromUtf8(R"([{"index":0,"pinyin":"","text":"你"}])")));
    ASSERT_EQ(result.items.size(), 1);
    expectItem(result.items[0], QString(), QString::fromUtf8("你"), 0);
}

TEST(PhoneticTextImport, AnEmptyArrayGivesNothing) {
    EXPECT_TRUE(importPhoneticText(args(QStringLiteral("[]"))).items.isEmpty());
}

TEST(PhoneticTextImport, OrderAndRepeatedIndexesAreKept) {
    const PhoneticImport result = importPhoneticText(args(QStringLiteral(
        R"([{"index":2,"pinyin":"c","text":"C"},{"index":0,"pinyin":"a","text":"A"},{"index":2,"pinyin":"d","text":"D"}])")));
    ASSERT_EQ(result.items.size(), 3);
    expectItem(result.items[0], "c", "C", 2);
    expectItem(result.items[1], "a", "A", 0);
    expectItem(result.items[2], "d", "D", 2);
}

TEST(PhoneticTextImport, StyleTypeAsAStringConverts) {
    const PhoneticImport result =
        importPhoneticText(args(QStringLiteral("[]"), QStringLiteral("2"), QStringLiteral("x")));
    EXPECT_EQ(result.styleType, 2);
    EXPECT_EQ(result.bracketType, 0);  // not numeric
}

TEST(PhoneticTextImport, MissingChoicesAreMinusOne) {
    const PhoneticImport result = importPhoneticText(
        {{"phonetic", QStringLiteral(R"([{"index":0,"pinyin":"a","text":"a"}])")}});
    EXPECT_EQ(result.styleType, -1);
    EXPECT_EQ(result.bracketType, -1);
    EXPECT_EQ(result.items.size(), 1);
}

TEST(PhoneticTextImport, NoPhoneticOrNotAnArrayGivesNothing) {
    EXPECT_TRUE(importPhoneticText({{"styleType", 1}}).items.isEmpty());
    for (const char* text :
         {"", "{\"index\":0,\"pinyin\":\"a\",\"text\":\"a\"}", "42", "not json", "\"[]\""})
        EXPECT_TRUE(importPhoneticText(args(QString::fromUtf8(text))).items.isEmpty()) << text;
}

TEST(PhoneticTextImport, CommentsAreAllowed) {
    const PhoneticImport result = importPhoneticText(args(QStringLiteral(
        "// the page's choice\n[ /* first */ {\"index\":0,\"pinyin\":\"a\",\"text\":\"a\"} ]")));
    EXPECT_EQ(result.items.size(), 1);
}

TEST(PhoneticTextImport, ADamagedArrayKeepsWhatTheReaderRead) {
    // The parse fails, yet the elements before the damage stand: only the shape of the value
    // counts.
    const PhoneticImport result = importPhoneticText(args(QStringLiteral(
        R"([{"index":0,"pinyin":"a","text":"a"},{"index":1,"pinyin":"b","text":"b"}, oops)")));
    EXPECT_EQ(result.items.size(), 2);
}

TEST(PhoneticTextImport, AnElementNestedDeeperThanTheReaderGoesCostsOnlyItself) {
    // The JSON reader gives up past its stack limit (1000) by throwing: such a value reads as
    // null, wherever it stands, and only its own element is lost.
    const QString deep = QString(5000, QLatin1Char('[')) + QString(5000, QLatin1Char(']'));
    const QString first = QStringLiteral(R"({"index":0,"pinyin":"a","text":"a"})");
    const QString second = QStringLiteral(R"({"index":1,"pinyin":"b","text":"b"})");
    PhoneticImport result;
    EXPECT_NO_THROW(result =
                        importPhoneticText(args(QLatin1Char('[') + first + QLatin1Char(',') + deep +
                                                QLatin1Char(',') + second + QLatin1Char(']'))));
    ASSERT_EQ(result.items.size(), 2);
    expectItem(result.items[0], "a", "a", 0);
    expectItem(result.items[1], "b", "b", 1);

    // A good element whose extra member nests too deep keeps its readings: other members are
    // ignored.
    result = importPhoneticText(args(QStringLiteral(R"([{"index":2,"pinyin":"c","text":"c","x":)") +
                                     deep + QStringLiteral("}]")));
    ASSERT_EQ(result.items.size(), 1);
    expectItem(result.items[0], "c", "c", 2);

    // A deep value cut off by the end of the text: what came before stands.
    result = importPhoneticText(
        args(QLatin1Char('[') + first + QLatin1Char(',') + QString(3000, QLatin1Char('['))));
    ASSERT_EQ(result.items.size(), 1);
    expectItem(result.items[0], "a", "a", 0);
}

TEST(PhoneticTextImport, NothingButDeepNestingGivesNothing) {
    const QString deep = QString(5000, QLatin1Char('[')) + QString(5000, QLatin1Char(']'));
    for (const QString& text : {deep, QStringLiteral("{\"a\":") + deep + QLatin1Char('}')}) {
        PhoneticImport result;
        EXPECT_NO_THROW(result = importPhoneticText(args(text)));
        EXPECT_TRUE(result.items.isEmpty());
        EXPECT_EQ(result.styleType, 1);
    }
}

TEST(PhoneticTextImport, BracketsInStringsAndCommentsAreNotNesting) {
    // 70 brackets in a reading and in a comment: text, not structure.
    const QString brackets(70, QLatin1Char('['));
    const PhoneticImport result = importPhoneticText(
        args(QStringLiteral("[ /* ") + brackets + QStringLiteral(" */ {\"index\":0,\"pinyin\":\"") +
             brackets + QStringLiteral("\\\"\",\"text\":\"a\"} // ") + brackets +
             QStringLiteral("\n]")));
    ASSERT_EQ(result.items.size(), 1);
    expectItem(result.items[0], brackets + QLatin1Char('"'), "a", 0);
}

TEST(PhoneticTextImport, NestingUpToTheLimitIsReadAsItStands) {
    // An extra member 60 levels deep is a value like any other: ignored, its element kept.
    const QString nested = QString(60, QLatin1Char('[')) + QString(60, QLatin1Char(']'));
    const PhoneticImport result =
        importPhoneticText(args(QStringLiteral(R"([{"index":0,"pinyin":"a","text":"a","x":)") +
                                nested + QStringLiteral("}]")));
    EXPECT_EQ(result.items.size(), 1);
}

}  // namespace
