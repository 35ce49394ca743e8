// SPDX-License-Identifier: MIT
// Loading and unloading the tagging library through the real dlopen binding.
#include "enginetest.h"
#include "hostcalls.h"

namespace {

using Journal = std::vector<std::string>;

std::string openDictionary(const std::string& directory) {
    return "OpenDictionary " + directory + "Pinyin.dic|" + directory + "firrule.dic|" + directory +
           "secrule.dic";
}

// The host calls that find and load the library when it lives in `directory` (no trailing '/').
Journal lookupsAndLoad(const QString& directory) {
    return {"GetDirInfo 2", "GetDirInfo 27",
            "loadlibrary " + directory.toStdString() + "/libPinyinTagger.so"};
}

class TaggerBindingTest : public EngineTest {
protected:
    void SetUp() override {
        EngineTest::SetUp();
        hostcalls::clear();
    }
};

TEST_F(TaggerBindingTest, LoadsTheLibraryAndOpensTheThreeDictionaries) {
    EXPECT_TRUE(loadPinyinTagger(handle, &app));
    ASSERT_NE(handle.library, nullptr);
    EXPECT_NE(*handle.library, nullptr);
    EXPECT_EQ(handle.coreApplication, &app);
    EXPECT_EQ(hostcalls::journal(), lookupsAndLoad(TaggerDoubleLibrary::directory()));
    EXPECT_EQ(tagger.journal(),
              (Journal{"LoadPinYinLibrary host", openDictionary("/opt/zphonetic/dict/")}));
}

TEST_F(TaggerBindingTest, ASecondLoadDoesNotTouchTheLibrary) {
    load();
    HMODULE* cell = handle.library;
    const Journal afterFirst = tagger.journal();
    EXPECT_TRUE(loadPinyinTagger(handle, &app));
    EXPECT_EQ(handle.library, cell);
    EXPECT_EQ(tagger.journal(), afterFirst);
}

TEST_F(TaggerBindingTest, FeatureOffLoadsNothingAndSucceeds) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    EXPECT_TRUE(loadPinyinTagger(handle, &app));
    EXPECT_EQ(handle.library, nullptr);
    EXPECT_EQ(handle.coreApplication, &app);
    EXPECT_TRUE(hostcalls::journal().empty()) << "no directory lookup, no library load";
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(TaggerBindingTest, TheFirstCoreApplicationStays) {
    minihost::setFeatureState(ZFeatureTaggingLibrary, false);
    ZCoreApplication other;  // offers no reading service
    EXPECT_TRUE(loadPinyinTagger(handle, &app));
    EXPECT_TRUE(loadPinyinTagger(handle, &other));
    EXPECT_EQ(handle.coreApplication, &app);
    minihost::setFeatureState(ZFeatureTaggingLibrary, true);
    ASSERT_TRUE(loadPinyinTagger(handle, &other));
    EXPECT_EQ(handle.coreApplication, &app);
    // The interface came from the first application's reading service.
    EXPECT_EQ(tagger.journal().front(), "LoadPinYinLibrary host");
}

TEST_F(TaggerBindingTest, DirectoryWithAndWithoutTrailingSlashGiveTheSamePaths) {
    const QString library = TaggerDoubleLibrary::directory();
    ASSERT_FALSE(library.endsWith(QLatin1Char('/')));
    minihost::setDirectory(ZDirTaggingLibrary, library);
    load();
    unloadPinyinTagger(handle);
    minihost::setDirectory(ZDirTaggingLibrary, library + QLatin1Char('/'));
    minihost::setDirectory(ZDirDictionaries, QStringLiteral("/opt/zphonetic/dict/"));
    load();
    // The same library path both times: no '/' appended to a directory that ends in one.
    Journal twice = lookupsAndLoad(library);
    for (const std::string& call : lookupsAndLoad(library)) twice.push_back(call);
    EXPECT_EQ(hostcalls::journal(), twice);
    EXPECT_EQ(tagger.journal(),
              (Journal{"LoadPinYinLibrary host", openDictionary("/opt/zphonetic/dict/"),
                       "CloseDictionary", "LoadPinYinLibrary host",
                       openDictionary("/opt/zphonetic/dict/")}));
}

TEST_F(TaggerBindingTest, BackslashEndsADirectoryToo) {
    minihost::setDirectory(ZDirDictionaries, QStringLiteral("C:\\dict\\"));
    load();
    EXPECT_EQ(tagger.journal().at(1), openDictionary("C:\\dict\\"));
    unloadPinyinTagger(handle);
    // The library's directory ending in '\' gets nothing appended, so its path is
    // "<dir>\libPinyinTagger.so", which does not exist.
    minihost::setDirectory(ZDirTaggingLibrary,
                           TaggerDoubleLibrary::directory() + QLatin1Char('\\'));
    EXPECT_FALSE(loadPinyinTagger(handle, &app));
    EXPECT_EQ(handle.library, nullptr);
    EXPECT_EQ(
        hostcalls::journal().back(),
        "loadlibrary " + TaggerDoubleLibrary::directory().toStdString() + "\\libPinyinTagger.so");
}

TEST_F(TaggerBindingTest, AFailedDictionaryLookupReusesWhatTheBufferHolds) {
    // An empty directory makes the host's lookup fail and leave the buffer as it was: the
    // library's directory, with the '/' the binding appended.
    minihost::setDirectory(ZDirDictionaries, QString());
    load();
    EXPECT_EQ(tagger.journal().at(1),
              openDictionary(TaggerDoubleLibrary::directory().toStdString() + "/"));
}

TEST_F(TaggerBindingTest, AMissingLibraryFailsAndLeavesTheHandleEmpty) {
    minihost::setDirectory(ZDirTaggingLibrary, QStringLiteral("/nonexistent/zphonetic"));
    EXPECT_FALSE(loadPinyinTagger(handle, &app));
    EXPECT_EQ(handle.library, nullptr);
    EXPECT_EQ(handle.coreApplication, &app);
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(TaggerBindingTest, NoReadingServiceHandsTheLibraryNull) {
    minihost::unregisterService(&app, SID_ZReadingService);
    load();
    EXPECT_EQ(tagger.journal().front(), "LoadPinYinLibrary null");
}

TEST_F(TaggerBindingTest, AServiceWithoutTheHostInterfaceHandsTheLibraryNull) {
    PlainUnknown plain;
    minihost::registerService(&app, SID_ZReadingService, &plain);
    load();
    EXPECT_EQ(tagger.journal().front(), "LoadPinYinLibrary null");
    EXPECT_EQ(plain.references, 1);  // the application's own
    minihost::unregisterService(&app, SID_ZReadingService);
    EXPECT_EQ(plain.references, 0);
}

TEST_F(TaggerBindingTest, NoCoreApplicationHandsTheLibraryNull) {
    ASSERT_TRUE(loadPinyinTagger(handle, nullptr));
    EXPECT_EQ(tagger.journal().front(), "LoadPinYinLibrary null");
}

TEST_F(TaggerBindingTest, UnloadingAnEmptyHandleDoesNothing) {
    unloadPinyinTagger(handle);
    EXPECT_EQ(handle.library, nullptr);
    EXPECT_TRUE(tagger.journal().empty());
}

TEST_F(TaggerBindingTest, UnloadClosesTheDictionariesAndALaterLoadLoadsAgain) {
    load();
    unloadPinyinTagger(handle);
    EXPECT_EQ(handle.library, nullptr);
    EXPECT_EQ(tagger.journal().back(), "CloseDictionary");
    load();
    EXPECT_EQ(tagger.journal(),
              (Journal{"LoadPinYinLibrary host", openDictionary("/opt/zphonetic/dict/"),
                       "CloseDictionary", "LoadPinYinLibrary host",
                       openDictionary("/opt/zphonetic/dict/")}));
}

TEST_F(TaggerBindingTest, ALibraryWithoutItsEntryPointsIsDeliberatelyNotGuardedAgainst) {
    // A broken installation: the library loads but has no OpenDictionary. The binding calls the
    // missing entry point anyway, as designed, and the process dies.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    minihost::setDirectory(ZDirTaggingLibrary, QStringLiteral(ZPHONETIC_BROKEN_TAGGER_DIR));
    EXPECT_DEATH(loadPinyinTagger(handle, &app), "");
}

}  // namespace
