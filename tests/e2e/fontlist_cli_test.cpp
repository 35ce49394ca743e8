// SPDX-License-Identifier: MIT
// zphonetic onekey fits the boxes it writes to their text without Qt's font database: the
// typefaces are found through the font configuration, so the list of every installed font that
// the database reads on its first use (most of a command's start) is never made. A preloaded
// witness (fontlistwatch.c) counts the calls of fontconfig's FcFontList.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "onekeyrun.h"

namespace {

// Runs zphonetic with `arguments` with the witness preloaded; the calls of FcFontList it counted
// (-1 when it wrote none).
int fontListsOf(const QStringList& arguments, const QTemporaryDir& dir) {
    const QString count = dir.filePath(QStringLiteral("fontlists"));
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FONTLIST_WATCH_LIBRARY));
    environment.insert(QStringLiteral("FONTLIST_WATCH_FILE"), count);
    // In the sanitizers' build their runtime would have to come first among preloaded objects.
    const QString asan = qEnvironmentVariable("ASAN_OPTIONS");
    environment.insert(QStringLiteral("ASAN_OPTIONS"),
                       asan + (asan.isEmpty() ? "" : ":") + "verify_asan_link_order=0");
    const onekeytest::Outcome run = onekeytest::runZphonetic(arguments, environment);
    EXPECT_EQ(run.status, 0) << run.err.right(2000).toStdString();
    QFile file(count);
    if (!file.open(QIODevice::ReadOnly)) return -1;
    bool ok = false;
    const int calls = file.readAll().trimmed().toInt(&ok);
    return ok ? calls : -1;
}

const QString kLesson = QStringLiteral(ZPHONETIC_EXAMPLES_DIR "/lesson.pptx");

TEST(CommandLineFonts, OneKeyFitsItsBoxesWithoutListingTheInstalledFonts) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    EXPECT_EQ(fontListsOf({QStringLiteral("onekey"), kLesson, QStringLiteral("-o"),
                           dir.filePath(QStringLiteral("out.pptx"))},
                          dir),
              0);
}

// The witness sees the list made: drawing slides finds each typeface's raw font through Qt's
// font database.
TEST(CommandLineFonts, DrawingTheSlidesListsThem) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    EXPECT_GT(fontListsOf({QStringLiteral("render"), kLesson, QStringLiteral("-o"), dir.path(),
                           QStringLiteral("--slide"), QStringLiteral("1")},
                          dir),
              0);
}

}  // namespace
