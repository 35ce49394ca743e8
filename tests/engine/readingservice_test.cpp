// SPDX-License-Identifier: MIT
// The host's reading service object on its own.
#include <gtest/gtest.h>

#include <QString>
#include <stdexcept>

#include "common/comptr.h"
#include "minihost/nvo/hostreadingservice.h"
#include "nvo/readingservice.h"
#include "nvo/runtime.h"

namespace {

using minihost::HostReading;

// One reading per character: the character's code in hex, covering one character.
bool hexReadings(const QString& text, QVector<HostReading>& readings) {
    for (QChar character : text) readings.append({QString::number(character.unicode(), 16), 1});
    return true;
}

ComPtr<IZReadingTagger> makeTagger(minihost::ReadingFunction tag) {
    const ComPtr<IUnknown> service =
        ComPtr<IUnknown>::adopt(minihost::createReadingService(std::move(tag)));
    return service.query<IZReadingTagger>(IID_IZReadingTagger);
}

TEST(ReadingService, AnswersBothInterfacesAndIsReleasedOnce) {
    const int before = minihost::liveReadingServices();
    {
        const ComPtr<IUnknown> service =
            ComPtr<IUnknown>::adopt(minihost::createReadingService(hexReadings));
        EXPECT_EQ(minihost::liveReadingServices(), before + 1);
        EXPECT_TRUE(service.query<IZReadingTagger>(IID_IZReadingTagger));
        EXPECT_TRUE(service.query<IZReadingHost>(IID_IZReadingHost));
        EXPECT_TRUE(service.query<IUnknown>(IID_IUnknown));
        void* other = reinterpret_cast<void*>(1);
        EXPECT_EQ(service->QueryInterface(SID_ZReadingService, &other), E_NOINTERFACE);
        EXPECT_EQ(other, nullptr);
    }
    EXPECT_EQ(minihost::liveReadingServices(), before);
}

TEST(ReadingService, TagTextAnswersOneTaskMemoryRecord) {
    const auto tagger = makeTagger(hexReadings);
    ZReadingRecord* record = nullptr;
    ASSERT_EQ(tagger->TagText(u"中国", 2, 0x804, &record), S_OK);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record->outputLength, 8);
    EXPECT_EQ(QString::fromUtf16(record->output), QStringLiteral("4e2d56fd"));
    EXPECT_EQ(record->reserved, nullptr);
    EXPECT_EQ(record->itemCount, 2);
    EXPECT_EQ(record->itemValues[0], 1u);
    EXPECT_EQ(record->itemLengths[0], 4);
    EXPECT_EQ(record->itemLengths[1], 4);
    // One block: every pointer lies inside it.
    auto* begin = reinterpret_cast<unsigned char*>(record);
    EXPECT_GT(reinterpret_cast<unsigned char*>(record->output), begin);
    EXPECT_GT(reinterpret_cast<unsigned char*>(record->itemLengths),
              reinterpret_cast<unsigned char*>(record->output));
    _XCoTaskMemFree(record);
}

TEST(ReadingService, TagTextReadsOnlyTheGivenLength) {
    const auto tagger = makeTagger(hexReadings);
    ZReadingRecord* record = nullptr;
    ASSERT_EQ(tagger->TagText(u"中国", 1, 0x804, &record), S_OK);
    EXPECT_EQ(record->itemCount, 1);
    _XCoTaskMemFree(record);
}

TEST(ReadingService, BadArgumentsAndFailuresLeaveNoRecord) {
    const auto tagger = makeTagger(hexReadings);
    ZReadingRecord* record = reinterpret_cast<ZReadingRecord*>(1);
    EXPECT_EQ(tagger->TagText(u"中", 1, 0x409, &record), E_INVALIDARG);
    EXPECT_EQ(record, nullptr);
    EXPECT_EQ(tagger->TagText(u"中", -1, 0x804, &record), E_INVALIDARG);
    EXPECT_EQ(tagger->TagText(nullptr, 1, 0x804, &record), E_POINTER);
    EXPECT_EQ(tagger->TagText(u"中", 1, 0x804, nullptr), E_POINTER);
    EXPECT_EQ(tagger->TagText(u"", 0, 0x804, &record), E_FAIL);  // no readings
    EXPECT_EQ(record, nullptr);
}

TEST(ReadingService, AFailingOrThrowingFunctionIsAFailureStatus) {
    ZReadingRecord* record = nullptr;
    EXPECT_EQ(makeTagger({})->TagText(u"中", 1, 0x804, &record), E_FAIL);
    EXPECT_EQ(makeTagger([](const QString&, QVector<HostReading>&) {
                  return false;
              })->TagText(u"中", 1, 0x804, &record),
              E_FAIL);
    EXPECT_EQ(makeTagger([](const QString&, QVector<HostReading>&) -> bool {
                  throw std::runtime_error("engine failure");
              })->TagText(u"中", 1, 0x804, &record),
              E_FAIL);
    EXPECT_EQ(record, nullptr);
}

}  // namespace
