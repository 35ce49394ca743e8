// SPDX-License-Identifier: MIT
// The engine over the project's own tagging library and dictionaries, loaded exactly as a host
// loads them (directories 2 and 27, dlopen), and over the host's reading service backed by the
// same tagging engine: both providers must agree.
#include <gtest/gtest.h>

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>
#include <string>
#include <vector>

#include "engine/readings.h"
#include "engine/taggerbinding.h"
#include "hostjournal.h"
#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/nvo/hostreadingservice.h"
#include "minihost/nvo/taggerreadings.h"
#include "nvo/readingservice.h"
#include "nvo/zapplication.h"

namespace {

std::vector<std::string> utf8(const QStringList& list) {
    std::vector<std::string> result;
    for (const QString& item : list) result.push_back(item.toStdString());
    return result;
}

using Readings = std::vector<std::string>;

class RealTaggerTest : public ::testing::Test {
protected:
    RealTaggerTest() {
        IUnknown* service = minihost::createReadingService(minihost::engineReadingFunction());
        minihost::registerService(&app, SID_ZReadingService, service);
        service->Release();
    }

    void SetUp() override {
        minihost::clearHostJournal();
        minihost::resetFeatureStates();
        minihost::setDirectory(ZDirTaggingLibrary, QStringLiteral(ZPHONETIC_REAL_TAGGER_DIR));
        minihost::setDirectory(ZDirDictionaries, QStringLiteral(ZPHONETIC_REAL_DICT_DIR));
        ASSERT_TRUE(loadPinyinTagger(handle, &app));
        ASSERT_NE(handle.library, nullptr);
    }

    void TearDown() override {
        unloadPinyinTagger(handle);
        EXPECT_EQ(hostjournal::openCoreReferences(), 0);
        minihost::resetFeatureStates();
        minihost::resetDirectories();
    }

    QStringList readingsOf(const QString& text) {
        QMap<QChar, QStringList> candidates;
        QStringList readings;
        tagAlternatives(&handle, text, candidates);
        tagReadings(&handle, text, &candidates, readings);
        return readings;
    }

    ZCoreApplication app;
    PinyinTaggerHandle handle;
};

TEST_F(RealTaggerTest, ASentenceGetsOneReadingPerCharacter) {
    EXPECT_EQ(utf8(readingsOf(QStringLiteral("我是中国人。"))),
              (Readings{"wǒ", "shì", "zhōnɡ", "ɡuó", "rén", ""}));
}

TEST_F(RealTaggerTest, ALonePolyphonicCharacterHasSeveralCandidates) {
    QMap<QChar, QStringList> candidates;
    tagAlternatives(&handle, QStringLiteral("长"), candidates);
    const QStringList alternatives = candidates.value(QChar(u'长'));
    EXPECT_TRUE(alternatives.contains(QStringLiteral("chánɡ")));
    EXPECT_TRUE(alternatives.contains(QStringLiteral("zhǎnɡ")));
}

TEST_F(RealTaggerTest, OneTwoAndOneTwoThree) {
    EXPECT_EQ(utf8(readingsOf(QStringLiteral("一二"))), (Readings{"yī", "èr"}));
    EXPECT_EQ(readingsOf(QStringLiteral("一二三")).size(), 3);
}

TEST_F(RealTaggerTest, TheHostServiceAgreesWithTheLibrary) {
    const QString text = QStringLiteral("他长大了，银行在前面。");
    const QStringList fromLibrary = readingsOf(text);
    ASSERT_EQ(fromLibrary.size(), text.size());
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    QStringList fromService = readingsOf(text);
    // Only the library path writes the single-storey letter forms.
    for (QString& reading : fromService)
        reading.replace(QLatin1Char('a'), QChar(0x0251)).replace(QLatin1Char('g'), QChar(0x0261));
    EXPECT_EQ(utf8(fromService), utf8(fromLibrary));
}

// The user's own readings file, named by the environment before the library opens its
// dictionaries, as a host program finds it in the user's configuration directory.
class OwnReadingsTest : public RealTaggerTest {
protected:
    OwnReadingsTest() {
        qputenv("ZPHONETIC_READINGS_FILE", file().toLocal8Bit());
        write("银行 yín xíng\n");
    }
    ~OwnReadingsTest() override { qunsetenv("ZPHONETIC_READINGS_FILE"); }

    QString file() const { return dir.filePath(QStringLiteral("readings.txt")); }
    void write(const QByteArray& bytes) {
        QFile out(file());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly | QIODevice::Truncate));
        out.write(bytes);
    }
    // The readings of `text` through the library, then through the host's service.
    std::pair<Readings, Readings> bothReadingsOf(const QString& text) {
        const QStringList fromLibrary = readingsOf(text);
        minihost::setFeatureState(ZFeatureTaggingLibrary, false);
        unloadPinyinTagger(handle);
        EXPECT_TRUE(loadPinyinTagger(handle, &app));
        QStringList fromService = readingsOf(text);
        for (QString& reading : fromService)
            reading.replace(QLatin1Char('a'), QChar(0x0251))
                .replace(QLatin1Char('g'), QChar(0x0261));
        minihost::setFeatureState(ZFeatureTaggingLibrary, true);
        unloadPinyinTagger(handle);
        EXPECT_TRUE(loadPinyinTagger(handle, &app));
        return {utf8(fromLibrary), utf8(fromService)};
    }

    QTemporaryDir dir;
};

TEST_F(OwnReadingsTest, BothProvidersTakeTheUsersWordsAndTonesAtOnce) {
    const QString text = QStringLiteral("银行一个");
    const Readings mine{"yín", "xínɡ", "yí", "ɡè"};
    EXPECT_EQ(bothReadingsOf(text), std::make_pair(mine, mine));
    // Changed while both are loaded: the next text reads the file as it is now.
    write("银行 yín háng\ntones original\n");
    const Readings changed{"yín", "hánɡ", "yī", "ɡè"};
    EXPECT_EQ(utf8(readingsOf(text)), changed);
    EXPECT_EQ(bothReadingsOf(text), std::make_pair(changed, changed));
}

}  // namespace
