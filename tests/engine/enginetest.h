// SPDX-License-Identifier: MIT
// The engine's test fixture: the test tagging library as libPinyinTagger.so in directory 2, a
// dictionary directory 27, feature 0x1000018 on, and the host's core application offering the
// host's reading service, backed by a scripted reading function. Every test ends with the
// library unloaded, every reference the engine took on the core application given back and no
// reading service left alive.
#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "common/bstrholder.h"
#include "engine/readings.h"
#include "engine/sentencetagging.h"
#include "engine/taggerbinding.h"
#include "hostjournal.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hostreadingservice.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"
#include "taggerdoublelibrary.h"

inline std::vector<std::string> utf8(const QStringList& list) {
    std::vector<std::string> result;
    for (const QString& item : list) result.push_back(item.toStdString());
    return result;
}

// An object that answers IUnknown only: a service that cannot be queried for anything.
class PlainUnknown final : public IUnknown {
public:
    HRESULT QueryInterface(REFIID iid, void** out) override {
        *out = nullptr;
        if (iid != IID_IUnknown) return E_NOINTERFACE;
        *out = this;
        AddRef();
        return S_OK;
    }
    std::uint32_t AddRef() override { return ++references; }
    std::uint32_t Release() override { return --references; }
    int references = 0;
};

// The reading service's script: a reading per character; a text with any other character has
// no readings. Records every text it is asked to read.
class ScriptedReadings {
public:
    explicit ScriptedReadings(std::map<char16_t, QString> readings)
        : m_readings(std::move(readings)) {}
    bool operator()(const QString& text, QVector<minihost::HostReading>& out) {
        texts.append(text);
        for (QChar character : text) {
            const auto found = m_readings.find(character.unicode());
            if (found == m_readings.end()) return false;
            out.append({found->second, 1});
        }
        return true;
    }
    QStringList texts;

private:
    std::map<char16_t, QString> m_readings;
};

// Fails the test when a reading service outlives it. Declared first in the fixture, so it is
// checked after every other member is gone.
struct ReadingServiceLeakCheck {
    ~ReadingServiceLeakCheck() {
        EXPECT_EQ(minihost::liveReadingServices(), 0) << "a reading service was leaked";
    }
};

class EngineTest : public ::testing::Test {
protected:
    static constexpr char kDictionaries[] = "/opt/zphonetic/dict";

    EngineTest() {
        IUnknown* service = minihost::createReadingService(
            [this](const QString& text, QVector<minihost::HostReading>& out) {
                return serviceScript(text, out);
            });
        minihost::registerService(&app, SID_ZReadingService, service);
        service->Release();
    }

    void SetUp() override {
        ASSERT_TRUE(tagger.isLoaded()) << "the test tagging library did not load";
        minihost::clearHostJournal();
        minihost::resetFeatureStates();
        minihost::resetDirectories();
        minihost::setDirectory(ZDirTaggingLibrary, TaggerDoubleLibrary::directory());
        minihost::setDirectory(ZDirDictionaries, QString::fromLatin1(kDictionaries));
        scriptReadings();
    }

    // The well-formed readings of the test tagging library.
    void scriptReadings() {
        tagger.setReading(u'中', u"zhōng");
        tagger.setReading(u'国', u"guó");
        tagger.setReading(u'人', u"rén");
        tagger.setReading(u'长', u"cháng zhǎng");
        tagger.setReading(u'大', u"dà");
        tagger.setReading(u'一', u"yī");
        tagger.setReading(u'二', u"èr");
        tagger.setReading(u'三', u"sān");
        tagger.setReading(u'刚', u"gang");
        tagger.setReading(u'\u9FA5', u"yù");
    }

    void TearDown() override {
        unloadPinyinTagger(handle);
        EXPECT_EQ(handle.library, nullptr);
        EXPECT_EQ(hostjournal::openCoreReferences(), 0)
            << "a reference to the core application was not released (or released twice)";
        minihost::resetFeatureStates();
        minihost::resetDirectories();
    }

    void load() {
        ASSERT_TRUE(loadPinyinTagger(handle, &app));
        ASSERT_NE(handle.library, nullptr);
    }

    // The readings tagText gives for `text`, or nothing when it gives no block.
    std::optional<QStringList> tag(const QString& text) {
        BstrHolder bstr(text);
        ReadingBlock* block = reinterpret_cast<ReadingBlock*>(&bstr);  // must be overwritten
        tagText(handle.library, handle.coreApplication, bstr.get(), &block);
        if (!block) return std::nullopt;
        const ReadingBlockPtr owned(block);
        QStringList readings;
        readingsFromBlock(*block, readings);
        return readings;
    }

    ReadingServiceLeakCheck leakCheck;
    TaggerDoubleLibrary tagger;
    ScriptedReadings serviceScript{{{u'中', QStringLiteral("zhōng")},
                                    {u'国', QStringLiteral("guó")},
                                    {u'刚', QStringLiteral("gang")}}};
    ZCoreApplication app;
    PinyinTaggerHandle handle;
};
