// SPDX-License-Identifier: MIT
// Drawing slides: what paintSlide puts where, over the example deck and the public test decks.
// Every slide drawn is also written to <build>/canvas-renders/ to be looked at.
#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPainter>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "minihost/slxrender/sliderenderer.h"
#include "minihost/slxrender/slidescene.h"

using minihost::Deck;

namespace {

QImage render(const Deck& deck, int slide) {  // one pixel per point
    const QSizeF size = deck.slideSize();
    QImage image(size.toSize(), QImage::Format_RGB32);
    image.fill(Qt::magenta);  // anything left unpainted shows
    QPainter painter(&image);
    minihost::paintSlide(painter, deck, slide, QRectF(QPointF(), QSizeF(image.size())));
    return image;
}

void keep(const QImage& image, const QString& name) {
    QDir().mkpath(QStringLiteral(CANVAS_RENDERS_DIR));
    image.save(QStringLiteral(CANVAS_RENDERS_DIR "/%1.png").arg(name));
}

std::unique_ptr<Deck> open(const QString& path) {
    QString error;
    auto deck = Deck::loadFile(path, &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

// The bounding box of pixels of `color` (within `tolerance` per channel) in `area`.
QRect pixelsOf(const QImage& image, QColor color, int tolerance = 60, QRect area = QRect()) {
    if (area.isNull()) area = image.rect();
    int left = INT_MAX, top = INT_MAX, right = -1, bottom = -1;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (std::abs(c.red() - color.red()) <= tolerance &&
                std::abs(c.green() - color.green()) <= tolerance &&
                std::abs(c.blue() - color.blue()) <= tolerance) {
                left = std::min(left, x);
                top = std::min(top, y);
                right = std::max(right, x);
                bottom = std::max(bottom, y);
            }
        }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

TEST(SlideRenderer, ExampleDeckTextInItsBoxesInItsColour) {
    auto deck = open(QStringLiteral(EXAMPLE_DECK));
    ASSERT_TRUE(deck);
    for (int slide = 1; slide <= deck->slideCount(); ++slide) {
        const QImage image = render(*deck, slide);  // 1 pixel per point
        keep(image, QStringLiteral("lesson-%1").arg(slide));
        EXPECT_EQ(pixelsOf(image, Qt::magenta, 0), QRect()) << "slide " << slide;
        // The text is dark blue (1F3864) on white, inside the two text boxes (60, 40, 840, ...)
        // and (60, 140, 840, ...), after their 7.2 pt left inset.
        const QRect ink = pixelsOf(image, QColor(0x1F, 0x38, 0x64), 40);
        ASSERT_FALSE(ink.isNull()) << "slide " << slide;
        EXPECT_GE(ink.left(), 60 + 7);
        EXPECT_LE(ink.left(), 60 + 7 + 6);
        EXPECT_GE(ink.top(), 40);
        EXPECT_LE(ink.bottom(), 140 + 200);
        // Title and body: ink in both boxes.
        EXPECT_FALSE(
            pixelsOf(image, QColor(0x1F, 0x38, 0x64), 40, QRect(60, 40, 840, 60)).isNull());
        EXPECT_FALSE(
            pixelsOf(image, QColor(0x1F, 0x38, 0x64), 40, QRect(60, 140, 840, 160)).isNull());
    }
}

TEST(SlideRenderer, LinesBreakWhereLibreOfficeBreaksThem) {
    // The example deck's first line with readings in brackets after four characters, as the
    // phonetic-symbol command writes them: LibreOffice breaks it before 上 (checked on its PDF
    // page), with a quarter em between the brackets and the Latin readings.
    auto deck = open(QStringLiteral(EXAMPLE_DECK));
    ASSERT_TRUE(deck);
    const QString line =
        QStringLiteral("床（chuáng）前（qián）明（míng）月（yuè）光，疑是地上霜。");
    ASSERT_GT(deck->replaceText(1, 3, 0, 12, line, QStringLiteral("typing")), 0);
    const minihost::SlideScene scene(*deck, 1);
    const minihost::TextLayout* text = scene.text(3);
    ASSERT_TRUE(text);
    const int shang = static_cast<int>(line.indexOf(QStringLiteral("上霜")));
    EXPECT_EQ(text->lineStart(shang), shang);
    EXPECT_EQ(text->lineStart(shang - 1), 0);
    EXPECT_EQ(text->lineEnd(0), shang);
}

TEST(SlideRenderer, PaintsOnlyIntoItsTarget) {
    auto deck = open(QStringLiteral(EXAMPLE_DECK));
    ASSERT_TRUE(deck);
    QImage image(400, 400, QImage::Format_RGB32);
    image.fill(Qt::magenta);
    QPainter painter(&image);
    minihost::paintSlide(painter, *deck, 1, QRectF(100, 100, 160, 90));
    painter.end();
    EXPECT_EQ(pixelsOf(image, Qt::magenta, 0, QRect(100, 100, 160, 90)), QRect());
    // The slide's background (the lesson's warm white) fills the target and nothing else.
    const QRect painted = pixelsOf(image, QColor(0xFF, 0xFD, 0xF5), 0);
    EXPECT_EQ(painted, QRect(100, 100, 160, 90));
    // A slide that does not exist paints nothing.
    QImage blank(100, 100, QImage::Format_RGB32);
    blank.fill(Qt::magenta);
    QPainter other(&blank);
    minihost::paintSlide(other, *deck, 4, QRectF(0, 0, 100, 100));
    other.end();
    EXPECT_EQ(pixelsOf(blank, Qt::magenta, 0), blank.rect());
}

TEST(SlideRenderer, PicturesFromTheDeckShapesInTheirThemeStyleAndATableInItsStyle) {
    if (decktest::testDeckNames().isEmpty()) GTEST_SKIP() << "no public test decks";
    auto deck = open(decktest::testDeckDir() + QStringLiteral("/pypptx-test_slides.pptx"));
    ASSERT_TRUE(deck);
    const QImage image = render(*deck, 1);
    // The picture (id 6, at 439.4, 156.6, 211 x 71): its yellow and blue, nowhere else.
    const QRect yellow = pixelsOf(image, QColor(0xFF, 0xD4, 0x3B), 40);
    ASSERT_FALSE(yellow.isNull());
    EXPECT_TRUE(QRect(439, 156, 212, 72).contains(yellow.topLeft()));
    // The rounded rectangles (ids 12, 13) filled with the theme's third fill style in accent 1
    // (4F81BD): a gradient of its shades, blue throughout; their text white.
    const QColor filled = image.pixelColor(450, 470);
    EXPECT_GT(filled.blue(), filled.red() + 60);
    EXPECT_GT(filled.blue(), filled.green() + 30);
    EXPECT_FALSE(pixelsOf(image, Qt::white, 10, QRect(450, 460, 60, 20)).isNull());
    // The table (id 16, at 36.8, 326.7, 323.2 x 58.4) in its style: the header row in accent 1
    // with white text, the rows below in its tints.
    EXPECT_EQ(image.pixelColor(39, 330), QColor(0x4F, 0x81, 0xBD));
    EXPECT_FALSE(pixelsOf(image, Qt::white, 10, QRect(44, 328, 80, 26)).isNull());
    const QColor band = image.pixelColor(39, 362);
    EXPECT_GT(band.red(), 0xB0);
    EXPECT_GT(band.blue(), band.red());
}

TEST(SlideRenderer, DrawsEveryPublicTestDeckWithoutLeavingObjects) {
    const QStringList names = decktest::testDeckNames();
    if (names.isEmpty()) GTEST_SKIP() << "no public test decks";
    for (const QString& name : names) {
        auto deck = open(decktest::testDeckDir() + QLatin1Char('/') + name);
        if (!deck) continue;
        for (int slide = 1; slide <= deck->slideCount(); ++slide) {
            const QImage image = render(*deck, slide);
            keep(image, QStringLiteral("%1-%2").arg(QFileInfo(name).completeBaseName()).arg(slide));
            EXPECT_EQ(pixelsOf(image, Qt::magenta, 0), QRect())
                << name.toStdString() << " " << slide;
        }
    }
    EXPECT_EQ(minihost::liveObjectCount(), 0);
}

}  // namespace
