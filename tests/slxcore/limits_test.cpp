// SPDX-License-Identifier: MIT
// What a deck may make the host read, hold and walk (decklimits.h): each limit holds a deck at it
// and refuses one past it with the exact message; each part is parsed once; shapes are found
// however they nest.
#include <gtest/gtest.h>

#include <QByteArray>

#include "decktestutil.h"
#include "hostiledecks.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/decklimits.h"
#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"
#include "qtprinters.h"

using namespace omtest;
using minihost::Deck;
namespace limits = minihost::limits;

namespace {

std::unique_ptr<Deck> load(const QByteArray& bytes, QString* error = nullptr) {
    QString ignored;
    return Deck::load(bytes, QStringLiteral("deck.pptx"), error ? error : &ignored);
}

// The problem a refused deck is refused with, after "deck.pptx: ".
QString refusal(const QByteArray& bytes) {
    QString error;
    EXPECT_FALSE(load(bytes, &error));
    EXPECT_EQ(minihost::liveObjectCount(), 0);
    return error.startsWith(QLatin1String("deck.pptx: ")) ? error.mid(11) : error;
}

// What parsing a part is reckoned to take: its bytes, two nodes of 64 bytes for every "<" and
// an attribute of 40 for every "=".
qint64 xmlMemory(const QByteArray& xml) {
    return xml.size() + 128 * xml.count('<') + 40 * xml.count('=');
}

// The XML the deck is read from before its slides: the package's and presentation's
// relationships, the presentation and the theme.
qint64 xmlBeforeSlides(const QByteArray& deck) {
    qint64 memory = 0;
    for (const char* part : {"_rels/.rels", "ppt/presentation.xml",
                             "ppt/_rels/presentation.xml.rels", "ppt/theme/theme1.xml"})
        memory += xmlMemory(decktest::zipPart(deck, QString::fromLatin1(part)));
    return memory;
}

// `count` empty elements in a slide's shape tree, after a text box: XML that takes memory.
QByteArray slideOfElements(std::int64_t count) {
    return hostile::slideXml(hostile::textBox(2, QStringLiteral("汉字")) +
                             "<x:n xmlns:x=\"urn:x\">" +
                             QByteArray("<x:e/>").repeated(static_cast<int>(count)) + "</x:n>");
}

TEST(DeckLimits, ElementsNestedToTheLimitAreReadOneDeeperAreRefused) {
    // The slide, its tree and the element holding them are three levels.
    EXPECT_TRUE(load(hostile::nestedElements(limits::kXmlDepth - 4)));
    EXPECT_EQ(refusal(hostile::nestedElements(limits::kXmlDepth - 3)),
              QStringLiteral("part \"ppt/slides/slide1.xml\" nests elements 257 deep (the limit is "
                             "256)"));
}

TEST(DeckLimits, ShapesInGroupsNestedAsDeepAsAllowedAreListedFoundAndPlaced) {
    // 248 groups: the innermost text box's text is 256 deep.
    const auto deck = load(hostile::nestedGroups(limits::kXmlDepth - 8));
    ASSERT_TRUE(deck);
    const QList<minihost::ShapeInfo> shapes = deck->shapes(1);
    ASSERT_EQ(shapes.size(), 249);
    EXPECT_EQ(shapes.last().id, 2);
    EXPECT_EQ(deck->text(1, 2), QStringLiteral("床前明月光疑是地上霜举头望明月低头思故乡"));
    EXPECT_EQ(deck->placeOf(1, 2), shapes.last().box);
    EXPECT_EQ(deck->placeOf(1, 2), QRectF(36, 0, 648, 36));
}

TEST(DeckLimits, SlidesToTheLimitAreReadOneMoreIsRefused) {
    const auto deck = load(hostile::manySlides(limits::kSlides));
    ASSERT_TRUE(deck);
    EXPECT_EQ(deck->slideCount(), limits::kSlides);
    EXPECT_EQ(refusal(hostile::manySlides(limits::kSlides + 1)),
              QStringLiteral("the presentation lists 5001 slides (the limit is 5000)"));
}

TEST(DeckLimits, ASlidePartListedTwiceIsRefused) {
    EXPECT_EQ(refusal(hostile::repeatedSlide(2)),
              QStringLiteral("slide 2 is part \"ppt/slides/slide1.xml\" again, which is slide 1 "
                             "already"));
    const std::vector<hostile::Slide> two(2, {hostile::slideXml(QByteArray()), {}});
    EXPECT_EQ(refusal(hostile::deck(two, {}, {1, 2, 1})),
              QStringLiteral("slide 3 is part \"ppt/slides/slide1.xml\" again, which is slide 1 "
                             "already"));
}

TEST(DeckLimits, ShapesToTheLimitsAreReadOneMoreIsRefused) {
    EXPECT_TRUE(load(hostile::bareShapes(limits::kShapesPerPart, 1)));
    EXPECT_EQ(refusal(hostile::bareShapes(limits::kShapesPerPart + 1, 1)),
              QStringLiteral("part \"ppt/slides/slide1.xml\" holds 20001 shapes (the limit is "
                             "20000)"));
    EXPECT_TRUE(load(hostile::bareShapes(limits::kShapesPerPart, 5)));
    EXPECT_EQ(refusal(hostile::bareShapes(limits::kShapesPerPart / 2, 11)),
              QStringLiteral("part \"ppt/slides/slide11.xml\" takes the shapes read to 110000 (the "
                             "limit is 100000)"));
}

TEST(DeckLimits, XmlThatWouldTakeTooMuchMemoryIsRefusedBeforeItIsParsed) {
    // Two slides of 900,000 elements each: 115 MB reckoned each, under the limit together...
    const std::vector<hostile::Slide> two(2, {slideOfElements(900000), {}});
    EXPECT_TRUE(load(hostile::deck(two)));
    // ... a third takes the XML past it, and is named with what it would have taken.
    const std::vector<hostile::Slide> three(3, {slideOfElements(900000), {}});
    const QByteArray deck = hostile::deck(three);
    const qint64 expected =
        xmlBeforeSlides(deck) +
        3 * xmlMemory(decktest::zipPart(deck, QStringLiteral("ppt/slides/slide1.xml")));
    EXPECT_EQ(refusal(deck), QStringLiteral("part \"ppt/slides/slide3.xml\" takes the XML held in "
                                            "memory to about %1 bytes (the limit is 268435456)")
                                 .arg(expected));
}

TEST(DeckLimits, ALayoutSharedByItsSlidesIsParsedOnce) {
    // A layout reckoned at 150 MB: parsed again for a second slide, it would pass the limit.
    hostile::Slide slide{slideOfElements(10), {}};
    const QByteArray deck = hostile::deck({slide, slide});
    decktest::Parts parts;
    for (const decktest::ZipEntry& entry : decktest::zipEntries(deck))
        parts.emplace_back(entry.name, entry.data);
    const QString layoutPart = QStringLiteral("ppt/slideLayouts/slideLayout1.xml");
    QByteArray layout = decktest::partOf(parts, layoutPart);
    layout.replace("</p:spTree>", "<x:n xmlns:x=\"urn:x\">" +
                                      QByteArray("<x:e/>").repeated(1150000) + "</x:n></p:spTree>");
    const auto read = load(decktest::makeZip(decktest::replaced(parts, layoutPart, layout)));
    ASSERT_TRUE(read);
    for (int round = 0; round < 2; ++round)
        for (int i = 1; i <= read->slideCount(); ++i) {
            EXPECT_EQ(read->drawing(i).shapes.size(), 1);
            EXPECT_EQ(read->placeOf(i, 2), QRectF(36, 0, 648, 36));
        }
}

TEST(DeckLimits, AnEditedSlideIsWrittenWithoutParsingItAgain) {
    // A slide reckoned at 140 MB: parsed again to tell whether it changed, it would pass the limit.
    const auto deck = load(hostile::deck({{slideOfElements(1100000), {}}}));
    ASSERT_TRUE(deck);
    deck->addTextBox(1, QStringLiteral("新"), QRectF(10, 10, 100, 30));
    QString error;
    const QByteArray written = deck->toBytes(&error);
    ASSERT_FALSE(written.isEmpty()) << error.toStdString();
    EXPECT_EQ(load(written)->shapes(1).size(), 2);
}

TEST(DeckLimits, NewIdsFollowTheLargestIdWithoutSearchingAgainAndAfterAnUndo) {
    const auto deck =
        load(hostile::deck({{hostile::slideXml(hostile::textBox(7, QStringLiteral("字")) +
                                               "<x:i xmlns:x=\"urn:x\" id=\"40\"/>"),
                             {}}}));
    ASSERT_TRUE(deck);
    ComPtr<Shapes> shapes;
    deck->view()->get_Shapes(shapes.put());
    std::vector<int> ids;
    for (int i = 0; i < 3; ++i) {
        ComPtr<IUnknown> made;
        ASSERT_TRUE(SUCCEEDED(shapes->AddTextbox(1, 0, 0, 10, 10, made.put())));
        ids.push_back(deck->shapes(1).last().id);
    }
    EXPECT_EQ(ids, std::vector<int>({41, 42, 43}));
    ASSERT_TRUE(deck->undo());  // each box was a step of its own
    ComPtr<IUnknown> again;
    ASSERT_TRUE(SUCCEEDED(shapes->AddTextbox(1, 0, 0, 10, 10, again.put())));
    EXPECT_EQ(deck->shapes(1).last().id, 43);
    EXPECT_TRUE(deck->deleteShapes(1, {43}, QStringLiteral("delete")));
    EXPECT_EQ(deck->addTextBox(1, QStringLiteral("x"), QRectF(0, 0, 10, 10)), 43);
}

}  // namespace
