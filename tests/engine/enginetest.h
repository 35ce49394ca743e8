// SPDX-License-Identifier: MIT
// The engine's test fixture: the test tagging library as libPinyinTagger.so in directory 2, a
// dictionary directory 27, feature 0x1000018 on, and a core application whose reading service
// answers from its own script. Every test ends with the library unloaded and every reference
// the engine took on the core application given back.
#pragma once

#include <gtest/gtest.h>

#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "common/bstrholder.h"
#include "engine/readings.h"
#include "engine/sentencetagging.h"
#include "engine/taggerbinding.h"
#include "fakecoreapplication.h"
#include "minihost/nvo/hostconfig.h"
#include "taggerdoublelibrary.h"

inline std::vector<std::string> utf8(const QStringList& list) {
    std::vector<std::string> result;
    for (const QString& item : list) result.push_back(item.toStdString());
    return result;
}

class EngineTest : public ::testing::Test {
protected:
    static constexpr char kDictionaries[] = "/opt/zphonetic/dict";

    void SetUp() override {
        ASSERT_TRUE(tagger.isLoaded()) << "the test tagging library did not load";
        minihost::resetFeatureStates();
        minihost::resetDirectories();
        minihost::setDirectory(minihost::kDirTaggingLibrary, TaggerDoubleLibrary::directory());
        minihost::setDirectory(minihost::kDirDictionaries, QString::fromLatin1(kDictionaries));
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
        EXPECT_EQ(app.references, 0) << "a reference to the core application was not released";
        EXPECT_EQ(minihost::liveReadingServices(), 1) << "a reading service was leaked";
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

    TaggerDoubleLibrary tagger;
    FakeCoreApplication app{{{u'中', QStringLiteral("zhōng")},
                             {u'国', QStringLiteral("guó")},
                             {u'刚', QStringLiteral("gang")}}};
    PinyinTaggerHandle handle;
};
