// SPDX-License-Identifier: MIT
// tagText through the real dlopen binding and through the host's reading service.
#include <cstring>

#include "enginetest.h"

namespace {

// A reading service that answers every text with a fixed status and, optionally, a one-reading
// record: for the provider's success rule (status exactly 0 and a record).
class FixedStatusTagger final : public IZReadingTagger {
public:
    FixedStatusTagger(HRESULT status, bool withRecord)
        : m_status(status), m_withRecord(withRecord) {}
    HRESULT QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown && iid != IID_IZReadingTagger) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    HRESULT TagText(const char16_t*, std::int32_t, std::uint32_t,
                    ZReadingRecord** record) override {
        *record = nullptr;
        if (m_withRecord) {
            // One block, as the interface promises: header, then "zhōng", then the two arrays.
            auto* bytes =
                static_cast<unsigned char*>(_XCoTaskMemAlloc(sizeof(ZReadingRecord) + 16 + 8));
            auto* answer = reinterpret_cast<ZReadingRecord*>(bytes);
            answer->output = reinterpret_cast<char16_t*>(bytes + sizeof(ZReadingRecord));
            std::memcpy(answer->output, u"zh\u014Dng", 6 * sizeof(char16_t));
            answer->outputLength = 5;
            answer->reserved = nullptr;
            answer->itemCount = 1;
            answer->itemValues =
                reinterpret_cast<std::uint32_t*>(bytes + sizeof(ZReadingRecord) + 16);
            answer->itemValues[0] = 1;
            answer->itemLengths = reinterpret_cast<std::int32_t*>(answer->itemValues + 1);
            answer->itemLengths[0] = 5;
            *record = answer;
        }
        return m_status;
    }
    int references = 0;

private:
    HRESULT m_status;
    bool m_withRecord;
};

using Journal = std::vector<std::string>;
using Readings = std::vector<std::string>;

class SentenceTaggingTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        load();
        tagger.reset();  // keep the journal to what tagText does
        scriptReadings();
    }
};

TEST_F(SentenceTaggingTest, LatinLettersAroundOneCharacterGiveFourReadings) {
    const auto readings = tag(QStringLiteral("ab中c"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"", "", "zhōnɡ", ""}));
    EXPECT_EQ(tagger.journal(),
              (Journal{"GetPinyinObject", "PinyinTagSen 中", "ReleasePinyinObject"}));
}

TEST_F(SentenceTaggingTest, ALonePolyphonicCharacterGivesEveryCandidate) {
    const auto readings = tag(QStringLiteral("长"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"chánɡ", "zhǎnɡ"}));
}

TEST_F(SentenceTaggingTest, APolyphonicCharacterInASentenceKeepsItsFirstCandidate) {
    const auto readings = tag(QStringLiteral("长大"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"chánɡ", "dà"}));
}

TEST_F(SentenceTaggingTest, OneTwoIsTaggedAsTwoCalls) {
    const auto readings = tag(QStringLiteral("一二"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"yī", "èr"}));
    EXPECT_EQ(tagger.journal(), (Journal{"GetPinyinObject", "PinyinTagSen 一", "PinyinTagSen 二",
                                         "ReleasePinyinObject"}));
}

TEST_F(SentenceTaggingTest, OneTwoThreeIsTaggedInOneCall) {
    const auto readings = tag(QStringLiteral("一二三"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"yī", "èr", "sān"}));
    EXPECT_EQ(tagger.journal(),
              (Journal{"GetPinyinObject", "PinyinTagSen 一二三", "ReleasePinyinObject"}));
}

TEST_F(SentenceTaggingTest, OneTwoAfterFilteringIsTaggedAsTwoCallsToo) {
    // The exact text is the filtered one: "一、二" reaches the provider as "一二".
    const auto readings = tag(QStringLiteral("一、二"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"yī", "", "èr"}));
    EXPECT_EQ(tagger.journal().at(1), "PinyinTagSen 一");
}

TEST_F(SentenceTaggingTest, ReadingsCarryAlphaAndScriptG) {
    const auto readings = tag(QStringLiteral("刚中国"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"ɡɑnɡ", "zhōnɡ", "ɡuó"}));
    for (const QString& reading : *readings) {
        EXPECT_FALSE(reading.contains(QChar(0x0061)));
        EXPECT_FALSE(reading.contains(QChar(0x0067)));
    }
    EXPECT_TRUE(readings->at(0).contains(QChar(0x0251)));
    EXPECT_TRUE(readings->at(0).contains(QChar(0x0261)));
}

TEST_F(SentenceTaggingTest, AMismatchedCharacterGivesNoBlockAndReleasesTheTagger) {
    tagger.answer(u"中国", u"中/zhōng人/rén");
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    EXPECT_EQ(tagger.journal(),
              (Journal{"GetPinyinObject", "PinyinTagSen 中国", "ReleasePinyinObject"}));
    EXPECT_EQ(tagger.liveObjects(), 0);
}

TEST_F(SentenceTaggingTest, ACharacterWithoutItsSlashIsAMismatch) {
    tagger.answer(u"中", u"中zhōng");
    EXPECT_FALSE(tag(QStringLiteral("中")));
    EXPECT_EQ(tagger.journal().back(), "ReleasePinyinObject");
    EXPECT_EQ(tagger.liveObjects(), 0);
}

TEST_F(SentenceTaggingTest, ASlashRightAfterTheSlashEndsInAMismatch) {
    // "中//..." gives 中 an empty reading and then finds "/" where 国 should be.
    tagger.answer(u"中国", u"中//国/guó");
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    EXPECT_EQ(tagger.liveObjects(), 0);
}

TEST_F(SentenceTaggingTest, AnAnswerOfTwoUnitsOrLessGivesNoBlockAndKeepsTheTagger) {
    tagger.answer(u"中", u"中/");
    EXPECT_FALSE(tag(QStringLiteral("中")));
    tagger.answer(u"国", u"国");
    EXPECT_FALSE(tag(QStringLiteral("国")));
    tagger.setAnswer(u"人", nullptr, 0);
    EXPECT_FALSE(tag(QStringLiteral("人")));
    EXPECT_EQ(tagger.journal(), (Journal{"GetPinyinObject", "PinyinTagSen 中", "GetPinyinObject",
                                         "PinyinTagSen 国", "GetPinyinObject", "PinyinTagSen 人"}));
    EXPECT_EQ(tagger.liveObjects(), 3);  // deliberately never released
}

TEST_F(SentenceTaggingTest, AnAnswerThatEndsEarlyGivesTheReadingsMatchedSoFar) {
    tagger.answer(u"中国人", u"中/zhōng国/guó");
    const auto readings = tag(QStringLiteral("中国人"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"zhōnɡ", "ɡuó"}));
    EXPECT_EQ(tagger.liveObjects(), 0);
}

TEST_F(SentenceTaggingTest, AnAnswerThatEndsEarlyStaysShortAfterWidening) {
    tagger.answer(u"中国", u"中/zhōng");
    const auto readings = tag(QStringLiteral("a中国b"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"", "zhōnɡ"}));
}

TEST_F(SentenceTaggingTest, TheFullwidthCommaIsTaggable) {
    // U+FF0C lies in the Halfwidth and Fullwidth Forms, so it reaches the provider.
    const auto readings = tag(QStringLiteral("中，国"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(tagger.journal().at(1), "PinyinTagSen 中，国");
    EXPECT_EQ(utf8(*readings), (Readings{"zhōnɡ", "", "ɡuó"}));
}

TEST_F(SentenceTaggingTest, ALastCharacterWithAnEmptyReadingIsNotParsed) {
    // "国/" at the end leaves no room after its "/", so parsing stops before it.
    tagger.setReading(u'国', u"");
    const auto readings = tag(QStringLiteral("中国"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"zhōnɡ"}));
}

TEST_F(SentenceTaggingTest, AnEmptyReadingIsAReading) {
    tagger.answer(u"中国", u"中/国/guó");
    const auto readings = tag(QStringLiteral("中国"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"", "ɡuó"}));
}

TEST_F(SentenceTaggingTest, ANullTaggerObjectGivesNoBlock) {
    tagger.setNullObject(1);
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    EXPECT_EQ(tagger.journal(), (Journal{"GetPinyinObject null"}));
}

TEST_F(SentenceTaggingTest, NoLibraryGivesNoBlock) {
    unloadPinyinTagger(handle);
    tagger.reset();
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(SentenceTaggingTest, EmptyOrUntaggableTextNeverReachesTheLibrary) {
    EXPECT_FALSE(tag(QString()));
    EXPECT_FALSE(tag(QStringLiteral("abc 123")));
    // CJK punctuation, Extension A and a surrogate pair are not taggable.
    EXPECT_FALSE(tag(QString::fromUtf16(u"、。\u3400\U00020000")));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(SentenceTaggingTest, ANullTextGivesNoBlock) {
    ReadingBlock* block = nullptr;
    tagText(handle.library, handle.coreApplication, nullptr, &block);
    EXPECT_EQ(block, nullptr);
    tagText(handle.library, handle.coreApplication, nullptr, nullptr);
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(SentenceTaggingTest, OnlyTaggableCharactersReachTheLibrary) {
    // Hiragana, CJK Compatibility, a compatibility ideograph and a fullwidth form are taggable;
    // U+9FA6 is too (it is in the CJK Unified Ideographs block).
    const QString text = QString::fromUtf16(u"中、\u3042\u3300 \uF900x\uFF21\u9FA6\u3400");
    for (char16_t character : {u'\u3042', u'\u3300', u'\uF900', u'\uFF21', u'\u9FA6'})
        tagger.setReading(character, u"x");
    const auto readings = tag(text);
    ASSERT_TRUE(readings);
    EXPECT_EQ(tagger.journal().at(1),
              QString::fromUtf16(u"PinyinTagSen 中\u3042\u3300\uF900\uFF21\u9FA6").toStdString());
    EXPECT_EQ(readings->size(), text.size());
    EXPECT_EQ(readings->at(0), QStringLiteral("zhōnɡ"));
    EXPECT_EQ(readings->at(1), QString());
}

TEST_F(SentenceTaggingTest, TheTaggerBlockIsLaidOutAfterItsHeader) {
    BstrHolder text(QStringLiteral("中国"));
    ReadingBlock* block = nullptr;
    tagText(handle.library, handle.coreApplication, text.get(), &block);
    ASSERT_NE(block, nullptr);
    const ReadingBlockPtr owned(block);
    EXPECT_EQ(block->boundaryCount, 3);
    EXPECT_EQ(reinterpret_cast<unsigned char*>(block->boundaries),
              reinterpret_cast<unsigned char*>(block) + sizeof(ReadingBlock));
    EXPECT_EQ(reinterpret_cast<unsigned char*>(block->text),
              reinterpret_cast<unsigned char*>(block->boundaries + 3));
    EXPECT_EQ(QString::fromUtf16(block->text), QStringLiteral("zhōnɡɡuó"));
    EXPECT_EQ(block->length, 9);  // joined length + 1
    EXPECT_EQ(block->boundaries[0], 0);
    EXPECT_EQ(block->boundaries[1], 5);
    EXPECT_EQ(block->boundaries[2], 8);
    EXPECT_EQ(block->groupSizes, nullptr);
    EXPECT_EQ(block->extra, nullptr);
}

// ---- feature off: the host's reading service -------------------------------------------------

TEST_F(SentenceTaggingTest, FeatureOffNeverCallsTheLibrary) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    const auto readings = tag(QStringLiteral("a中国"));
    ASSERT_TRUE(readings);
    EXPECT_EQ(utf8(*readings), (Readings{"", "zhōng", "guó"}));
    EXPECT_TRUE(tagger.journal().empty());
    EXPECT_EQ(serviceScript.texts, QStringList{QStringLiteral("中国")});
}

TEST_F(SentenceTaggingTest, TheHostBlockCarriesTheServiceLayout) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    BstrHolder text(QStringLiteral("中国"));
    ReadingBlock* block = nullptr;
    tagText(handle.library, handle.coreApplication, text.get(), &block);
    ASSERT_NE(block, nullptr);
    const ReadingBlockPtr owned(block);
    EXPECT_EQ(block->length, 8);  // the service's own output length
    EXPECT_EQ(reinterpret_cast<unsigned char*>(block->text),
              reinterpret_cast<unsigned char*>(block) + sizeof(ReadingBlock));
    EXPECT_GT(reinterpret_cast<unsigned char*>(block->boundaries),
              reinterpret_cast<unsigned char*>(block->text + 8));
    EXPECT_EQ(block->boundaryCount, 3);
    EXPECT_EQ(block->boundaries[1], 5);
    EXPECT_EQ(block->boundaries[2], 8);
    ASSERT_NE(block->groupSizes, nullptr);
    EXPECT_EQ(block->groupSizes[0], 1);
    EXPECT_EQ(block->groupSizes[1], 1);
    EXPECT_EQ(block->extra, nullptr);
}

TEST_F(SentenceTaggingTest, FeatureOffWideningInsertsGroupSizesOfOne) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    BstrHolder text(QStringLiteral("中 国"));
    ReadingBlock* block = nullptr;
    tagText(handle.library, handle.coreApplication, text.get(), &block);
    ASSERT_NE(block, nullptr);
    const ReadingBlockPtr owned(block);
    ASSERT_EQ(block->boundaryCount, 4);
    EXPECT_EQ(block->boundaries[1], block->boundaries[2]);
    ASSERT_NE(block->groupSizes, nullptr);
    EXPECT_EQ(block->groupSizes[1], 1);
    EXPECT_EQ(block->length, 8);
}

TEST_F(SentenceTaggingTest, AFailingServiceGivesNoBlock) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    EXPECT_FALSE(tag(QStringLiteral("中人")));  // the service has no reading for 人
    PlainUnknown plain;
    minihost::registerService(&app, SID_ZReadingService, &plain);
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    minihost::unregisterService(&app, SID_ZReadingService);
    EXPECT_EQ(plain.references, 0);
    EXPECT_FALSE(tag(QStringLiteral("中国")));
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(SentenceTaggingTest, OnlyStatusZeroWithARecordIsAnAnswer) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    FixedStatusTagger succeeds(S_OK, true);
    minihost::registerService(&app, SID_ZReadingService, &succeeds);
    EXPECT_EQ(utf8(tag(QStringLiteral("中")).value_or(QStringList())), (Readings{"zhōng"}));
    // S_FALSE is not a failure to the object model, but it is no answer here; the record it
    // came with is freed all the same (the leak checker sees to that).
    FixedStatusTagger notExactlyZero(S_FALSE, true);
    minihost::registerService(&app, SID_ZReadingService, &notExactlyZero);
    EXPECT_FALSE(tag(QStringLiteral("中")));
    FixedStatusTagger noRecord(S_OK, false);
    minihost::registerService(&app, SID_ZReadingService, &noRecord);
    EXPECT_FALSE(tag(QStringLiteral("中")));
    minihost::unregisterService(&app, SID_ZReadingService);
    EXPECT_EQ(succeeds.references + notExactlyZero.references + noRecord.references, 0);
}

TEST_F(SentenceTaggingTest, FeatureOffWithoutACoreApplicationGivesNoBlock) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    BstrHolder text(QStringLiteral("中国"));
    ReadingBlock* block = nullptr;
    tagText(nullptr, nullptr, text.get(), &block);
    EXPECT_EQ(block, nullptr);
}

}  // namespace
