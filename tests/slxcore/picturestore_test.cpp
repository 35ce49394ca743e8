// SPDX-License-Identifier: MIT
// The deck's pictures for drawing: decoded once, at the size they are drawn, within the limits,
// each refusal with its exact message.
#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QRegularExpression>
#include <QtEndian>

#include "hostiledecks.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/decklimits.h"
#include "qtprinters.h"

using minihost::Deck;

namespace {

// A deck of one slide per picture, each picture its own part (image1.png, ...).
std::unique_ptr<Deck> deckOf(const std::vector<QByteArray>& pictures,
                             const QString& suffix = QStringLiteral("png")) {
    std::vector<hostile::Slide> slides;
    std::vector<hostile::Media> media;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const QString part = QStringLiteral("ppt/media/image%1.%2").arg(i + 1).arg(suffix);
        slides.push_back({hostile::slideXml(hostile::picture(2, "rId2")), {part}});
        media.push_back({part, pictures[i]});
    }
    QString error;
    auto deck = Deck::load(hostile::deck(slides, media), QStringLiteral("deck.pptx"), &error);
    EXPECT_TRUE(deck) << error.toStdString();
    return deck;
}

QString partOf(const Deck& deck, int slide) {
    return deck.drawing(slide).shapes.value(0).picture;
}

QByteArray encoded(const QImage& image, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format, 90);
    return bytes;
}

TEST(PictureStore, ADrawingNamesThePictureItsStoreDecodesOnceAtTheSizeDrawn) {
    const auto deck = deckOf({hostile::greyPng(300, 200, 9)});
    ASSERT_TRUE(deck);
    const QString part = partOf(*deck, 1);
    EXPECT_EQ(part, QStringLiteral("ppt/media/image1.png"));
    const auto store = deck->pictures();
    QImage image = store->picture(part, QSize(150, 100));
    EXPECT_EQ(image.size(), QSize(150, 100));
    EXPECT_EQ(image.pixelColor(75, 50), QColor(128, 128, 128));
    EXPECT_EQ(store->decodes(), 1);
    // Smaller: the same image, which the painter scales down.
    EXPECT_EQ(store->picture(part, QSize(100, 60)).size(), QSize(150, 100));
    EXPECT_EQ(store->decodes(), 1);
    // Larger: decoded again, never beyond the picture's own size.
    EXPECT_EQ(store->picture(part, QSize(300, 200)).size(), QSize(300, 200));
    EXPECT_EQ(store->picture(part, QSize(900, 600)).size(), QSize(300, 200));
    EXPECT_EQ(store->decodes(), 2);
    EXPECT_EQ(store->problem(part), QString());
}

TEST(PictureStore, ALargePngIsDecodedRowByRowToTheSizeDrawn) {
    // 20 million pixels: more than is ever decoded whole.
    const auto deck = deckOf({hostile::greyPng(5000, 4000, 9)});
    ASSERT_TRUE(deck);
    const QImage image = deck->pictures()->picture(partOf(*deck, 1), QSize(500, 400));
    EXPECT_EQ(image.size(), QSize(500, 400));
    EXPECT_EQ(image.pixelColor(0, 0), QColor(128, 128, 128));
    EXPECT_EQ(image.pixelColor(499, 399), QColor(128, 128, 128));
}

TEST(PictureStore, ALargeJpegIsDecodedShrunk) {
    QImage photo(4200, 4200, QImage::Format_RGB32);
    photo.fill(QColor(200, 100, 50));
    const auto deck = deckOf({encoded(photo, "JPG")}, QStringLiteral("jpeg"));
    ASSERT_TRUE(deck);
    const QImage image = deck->pictures()->picture(partOf(*deck, 1), QSize(420, 420));
    ASSERT_EQ(image.size(), QSize(420, 420));
    const QColor colour = image.pixelColor(210, 210);
    EXPECT_NEAR(colour.red(), 200, 4);
    EXPECT_NEAR(colour.green(), 100, 4);
    EXPECT_NEAR(colour.blue(), 50, 4);
}

TEST(PictureStore, AbsurdDimensionsAreRefusedBeforeAnythingIsDecoded) {
    const auto deck = deckOf({hostile::pngClaiming(100000, 100000)});
    ASSERT_TRUE(deck);
    const auto store = deck->pictures();
    EXPECT_TRUE(store->picture(partOf(*deck, 1), QSize(400, 400)).isNull());
    EXPECT_EQ(store->problem(partOf(*deck, 1)),
              QStringLiteral("picture \"ppt/media/image1.png\" claims 100000 x 100000 pixels (the "
                             "limit is 65535 a side and 268435456 in all)"));
    EXPECT_EQ(store->decodes(), 0);
}

TEST(PictureStore, AFormatDecodedOnlyWholeIsRefusedPastTheWholeLimit) {
    QByteArray bmp("BM", 2);
    bmp.resize(54);
    const auto put = [&](int at, quint32 value) { qToLittleEndian(value, bmp.data() + at); };
    put(2, 54);
    put(6, 0);
    put(10, 54);
    put(14, 40);    // the header's size
    put(18, 5000);  // width
    put(22, 5000);  // height
    put(26, 1 | (24 << 16));
    for (int at = 30; at < 54; at += 4) put(at, 0);
    const auto deck = deckOf({bmp}, QStringLiteral("bmp"));
    ASSERT_TRUE(deck);
    EXPECT_TRUE(deck->pictures()->picture(partOf(*deck, 1), QSize(400, 400)).isNull());
    EXPECT_EQ(deck->pictures()->problem(partOf(*deck, 1)),
              QStringLiteral("picture \"ppt/media/image1.bmp\" has 5000 x 5000 pixels in BMP, "
                             "which is decoded only whole (the limit is 16777216 pixels)"));
}

TEST(PictureStore, TheDecksPicturesAreDecodedFromALimitedNumberOfPixels) {
    // Each claims the most pixels a picture may have (and holds no rows): four take the deck's
    // pixels to the limit, the fifth is refused without being decoded.
    const QByteArray claiming = hostile::pngClaiming(16384, 16384);
    const auto deck = deckOf(std::vector<QByteArray>(5, claiming));
    ASSERT_TRUE(deck);
    const auto store = deck->pictures();
    for (int slide = 1; slide <= 4; ++slide) {
        EXPECT_TRUE(store->picture(partOf(*deck, slide), QSize(40, 40)).isNull());
        EXPECT_EQ(store->problem(partOf(*deck, slide)),
                  QStringLiteral("picture \"ppt/media/image%1.png\" cannot be decoded scaled "
                                 "(Not enough image data)")
                      .arg(slide));
    }
    EXPECT_EQ(store->decodes(), 4);
    EXPECT_TRUE(store->picture(partOf(*deck, 5), QSize(40, 40)).isNull());
    EXPECT_EQ(store->problem(partOf(*deck, 5)),
              QStringLiteral("picture \"ppt/media/image5.png\" takes the deck's pictures to "
                             "1342177280 pixels (the limit is 1073741824)"));
    EXPECT_EQ(store->decodes(), 4);
}

TEST(PictureStore, PicturesCountTowardsTheDecksDecompressedBytes) {
    // Seventeen parts of 64 MB each (a picture's header, then nothing but zeros): the seventeenth
    // takes what was read past the limit, and is not read.
    const QByteArray padded = hostile::pngClaiming(100000, 100000) + QByteArray(64000000, '\0');
    const auto deck = deckOf(std::vector<QByteArray>(17, padded));
    ASSERT_TRUE(deck);
    const auto store = deck->pictures();
    for (int slide = 1; slide <= 16; ++slide) {
        store->picture(partOf(*deck, slide), QSize(40, 40));
        EXPECT_TRUE(store->problem(partOf(*deck, slide)).contains(QLatin1String(" claims ")));
    }
    EXPECT_TRUE(store->picture(partOf(*deck, 17), QSize(40, 40)).isNull());
    const QString problem = store->problem(partOf(*deck, 17));
    EXPECT_TRUE(QRegularExpression(
                    QStringLiteral("^deck\\.pptx: part \"ppt/media/image17\\.png\" takes the "
                                   "parts read to \\d+ bytes decompressed \\(the limit is "
                                   "1073741824\\)$"))
                    .match(problem)
                    .hasMatch())
        << problem.toStdString();
}

TEST(PictureStore, NotAPictureAndAStoreThatOutlivesItsDeck) {
    auto deck =
        deckOf({QByteArray("<svg xmlns=\"http://www.w3.org/2000/svg\"/>")}, QStringLiteral("svg"));
    ASSERT_TRUE(deck);
    const QString part = partOf(*deck, 1);
    const auto store = deck->pictures();
    EXPECT_TRUE(store->picture(part, QSize(40, 40)).isNull());
    EXPECT_TRUE(store->problem(part).startsWith(QStringLiteral("picture \"ppt/media/image1.svg\"")))
        << store->problem(part).toStdString();
    deck.reset();
    EXPECT_TRUE(store->picture(QStringLiteral("ppt/media/image2.png"), QSize(40, 40)).isNull());
    EXPECT_EQ(store->problem(QStringLiteral("ppt/media/image2.png")),
              QStringLiteral("the deck is closed"));
}

}  // namespace
