// SPDX-License-Identifier: MIT
// The "data" object of the readings document, built from a style, readings and candidates.
#include <gtest/gtest.h>
#include <json/reader.h>

#include "model/phonetictextexport.h"

namespace {

QString u(const char* text) {
    return QString::fromUtf8(text);
}

TextStyle styleOf(const QString& text, const QColor& color = QColor(0, 0, 0)) {
    TextStyle style;
    style.text = text;
    style.color = color;
    return style;
}

TEST(PhoneticData, OneEntryPerUnitWithReadingAndCandidates) {
    const QMap<QChar, QStringList> candidates{{u("都")[0], {u("dōu"), u("dū")}},
                                              {u("得")[0], {u("dé"), u("de"), u("děi")}}};
    const Json::Value data =
        buildPhoneticData(styleOf(u("都得"), QColor(255, 0, 0)), {u("dōu"), u("děi")}, candidates);
    ASSERT_EQ(data["phonetic"].size(), 2u);
    const Json::Value& first = data["phonetic"][0];
    EXPECT_EQ(first["index"].asInt(), 0);
    EXPECT_EQ(first["text"].asString(), "都");
    EXPECT_EQ(first["pinyin"].asString(), "dōu");
    ASSERT_EQ(first["duyin"].size(), 2u);
    EXPECT_EQ(first["duyin"][1].asString(), "dū");
    EXPECT_EQ(data["phonetic"][1]["duyin"][2].asString(), "děi");
    EXPECT_EQ(data["color"].size(), 3u);
    EXPECT_EQ(data["color"][0].asInt(), 255);
    EXPECT_EQ(data["color"][1].asInt(), 0);
    EXPECT_EQ(data["color"][2].asInt(), 0);
    EXPECT_EQ(data.getMemberNames(), (std::vector<std::string>{"color", "phonetic"}));
}

TEST(PhoneticData, ColourHasNoAlpha) {
    const Json::Value data = buildPhoneticData(styleOf(u("你"), QColor(10, 20, 30, 40)), {u("nǐ")},
                                               {{u("你")[0], {u("nǐ")}}});
    ASSERT_EQ(data["color"].size(), 3u);
    EXPECT_EQ(data["color"][2].asInt(), 30);
}

TEST(PhoneticData, ALatinLetterHasAnEmptyArrayAndAOneReadingCharacterOneElement) {
    const Json::Value data =
        buildPhoneticData(styleOf(u("你A")), {u("nǐ"), QString()}, {{u("你")[0], {u("nǐ")}}});
    const Json::Value& letter = data["phonetic"][1];
    EXPECT_EQ(letter["text"].asString(), "A");
    EXPECT_EQ(letter["pinyin"].asString(), "");
    EXPECT_TRUE(letter["duyin"].isArray());
    EXPECT_EQ(letter["duyin"].size(), 0u);
    EXPECT_EQ(data["phonetic"][0]["duyin"].size(), 1u);
}

TEST(PhoneticData, AnEmptyCandidateListGivesNull) {
    const Json::Value data = buildPhoneticData(styleOf(u("你")), {u("  ")}, {{u("你")[0], {}}});
    EXPECT_TRUE(data["phonetic"][0]["duyin"].isNull());
    EXPECT_EQ(data["phonetic"][0]["pinyin"].asString(),
              "  ");  // a Chinese character without reading
}

TEST(PhoneticData, ACharacterOutsideTheBasicPlaneGivesTwoEntries) {
    const QString text = u("𠀀你");  // U+20000 is two UTF-16 units
    ASSERT_EQ(text.size(), 3);
    const Json::Value data = buildPhoneticData(styleOf(text), {QString(), QString(), u("nǐ")},
                                               {{u("你")[0], {u("nǐ")}}});
    ASSERT_EQ(data["phonetic"].size(), 3u);
    EXPECT_EQ(data["phonetic"][0]["index"].asInt(), 0);
    EXPECT_EQ(data["phonetic"][1]["index"].asInt(), 1);
    EXPECT_EQ(data["phonetic"][2]["index"].asInt(), 2);
    EXPECT_EQ(data["phonetic"][2]["text"].asString(), "你");
    // Each half of the pair is one unit on its own, which UTF-8 cannot hold: the encoder's
    // replacement stands for it, once per entry.
    EXPECT_EQ(data["phonetic"][0]["text"].asString(), "?");
    EXPECT_EQ(data["phonetic"][1]["text"].asString(), "?");
    EXPECT_EQ(data["phonetic"][0]["duyin"].size(), 0u);
    EXPECT_EQ(data["phonetic"][1]["duyin"].size(), 0u);
}

TEST(PhoneticData, AnEmptyTextGivesAnEmptyArray) {
    const Json::Value data = buildPhoneticData(styleOf(QString()), {}, {});
    EXPECT_TRUE(data["phonetic"].isArray());
    EXPECT_EQ(data["phonetic"].size(), 0u);
}

}  // namespace
