// SPDX-License-Identifier: MIT
// zphonetic render as a user runs it: the pictures it writes (the renderer's own, pixel for
// pixel), the slide and width it is given, and what it refuses, with the exact messages.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include "minihost/slxcore/deck.h"
#include "minihost/slxrender/sliderenderer.h"

namespace {

struct Outcome {
    int status = -1;
    QString out;
    QString err;
};

Outcome render(const QStringList& arguments) {
    QProcess process;
    process.start(QStringLiteral(ZPHONETIC_PROGRAM),
                  QStringList{QStringLiteral("render")} + arguments);
    Outcome outcome;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return outcome;
    outcome.status = process.exitCode();
    outcome.out = QString::fromUtf8(process.readAllStandardOutput());
    outcome.err = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

QString lesson() {
    return QStringLiteral(ZPHONETIC_EXAMPLES_DIR "/lesson.pptx");
}

class RenderCommand : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir.isValid()); }
    QString path(const QString& name) const { return dir.filePath(name); }
    QTemporaryDir dir;
};

TEST_F(RenderCommand, EverySlideIsWrittenAsTheRendererDrawsIt) {
    const QString out = path(QStringLiteral("pictures"));
    const Outcome run = render(
        {lesson(), QStringLiteral("-o"), out, QStringLiteral("--width"), QStringLiteral("320")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    QString error;
    const auto deck = minihost::Deck::loadFile(lesson(), &error);
    ASSERT_TRUE(deck) << error.toStdString();
    QString expected;
    for (int slide = 1; slide <= deck->slideCount(); ++slide) {
        const QString file = QDir(out).filePath(QStringLiteral("slide-%1.png").arg(slide));
        expected += file + QLatin1Char('\n');
        const QImage written(file);
        ASSERT_FALSE(written.isNull()) << slide;
        EXPECT_EQ(written.width(), 320);
        EXPECT_EQ(written.height(), 180);  // the example deck is 16:9
        // The same renderer in the same process kind: the same pixels.
        EXPECT_EQ(written.convertToFormat(QImage::Format_RGB32),
                  minihost::renderSlide(*deck, slide, 320))
            << slide;
    }
    EXPECT_EQ(run.out, expected);
    EXPECT_FALSE(QFile::exists(
        QDir(out).filePath(QStringLiteral("slide-%1.png").arg(deck->slideCount() + 1))));
}

TEST_F(RenderCommand, OneSlideOnly) {
    const QString out = path(QStringLiteral("one"));
    const Outcome run = render(
        {lesson(), QStringLiteral("-o"), out, QStringLiteral("--slide"), QStringLiteral("2")});
    ASSERT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(QDir(out).entryList(QDir::Files), QStringList{QStringLiteral("slide-2.png")});
    EXPECT_EQ(QImage(QDir(out).filePath(QStringLiteral("slide-2.png"))).width(), 1280);
}

TEST_F(RenderCommand, ErrorsNameWhatIsWrong) {
    const QString out = path(QStringLiteral("out"));
    Outcome run = render(
        {lesson(), QStringLiteral("-o"), out, QStringLiteral("--slide"), QStringLiteral("99")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.err,
        QStringLiteral("zphonetic: %1: there is no slide 99 (the deck has 3)\n").arg(lesson()));
    EXPECT_FALSE(QFile::exists(out));

    run = render(
        {lesson(), QStringLiteral("-o"), out, QStringLiteral("--width"), QStringLiteral("0")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              QStringLiteral("zphonetic: --width: \"0\" is not a width in pixels (1 to 8000)\n"));

    run = render({lesson()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              QStringLiteral("zphonetic: %1: needs an output folder: -o DIR\n").arg(lesson()));

    const QString missing = path(QStringLiteral("missing.pptx"));
    run = render({missing, QStringLiteral("-o"), out});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.err.startsWith(QStringLiteral("zphonetic: %1: ").arg(missing)))
        << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(out));
}

TEST_F(RenderCommand, AFileThatIsNoSlidePictureIsNeverReplaced) {
    const QString out = path(QStringLiteral("mixed"));
    ASSERT_TRUE(QDir().mkpath(out));
    QFile notes(QDir(out).filePath(QStringLiteral("slide-2.png")));
    ASSERT_TRUE(notes.open(QIODevice::WriteOnly));
    notes.write("my notes\n");
    notes.close();
    const Outcome run = render({lesson(), QStringLiteral("-o"), out});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.err,
              QStringLiteral("zphonetic: %1: exists and is not a slide picture: not replaced\n")
                  .arg(notes.fileName()));
    ASSERT_TRUE(notes.open(QIODevice::ReadOnly));
    EXPECT_EQ(notes.readAll(), QByteArray("my notes\n"));
    // Slide 1 was written before; drawing again replaces it (it is a slide picture).
    EXPECT_TRUE(QFile::exists(QDir(out).filePath(QStringLiteral("slide-1.png"))));
    EXPECT_EQ(render({lesson(), QStringLiteral("-o"), out, QStringLiteral("--slide"),
                      QStringLiteral("1")})
                  .status,
              0);

    // An output "folder" that is a file is refused and left as it is.
    const QString file = path(QStringLiteral("file"));
    QFile plain(file);
    ASSERT_TRUE(plain.open(QIODevice::WriteOnly));
    plain.close();
    const Outcome onFile = render({lesson(), QStringLiteral("-o"), file});
    EXPECT_EQ(onFile.status, 1);
    EXPECT_EQ(onFile.err, QStringLiteral("zphonetic: %1: is a file, not a folder\n").arg(file));
}

}  // namespace
