// SPDX-License-Identifier: MIT
// Decks made as an attacker would make them, small files that ask for much: each builder makes
// one class at the size asked, so a test can go past a limit or stay just under it. The archives
// are written here byte by byte, a part that repeats compressed once and copied (parts under
// 64 kB are stored as they are), so that a deck whose parts decompress to gigabytes is made in a
// moment and takes little memory to make.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <vector>

namespace hostile {

// ---- pieces of slides (PresentationML with the prefixes p: and a:, EMU)
// A text box with id `id` holding `text` (escaped for XML), `top` EMU from the slide's top.
QByteArray textBox(int id, const QString& text, std::int64_t top = 0);
// A picture with id `id` showing relationship `relationship` ("rId2") in a box of 4 x 3 inches.
QByteArray picture(int id, const char* relationship);
// A slide part whose shape tree holds `shapes`.
QByteArray slideXml(const QByteArray& shapes);

// ---- pictures
// A PNG of `width` x `height` opaque grey pixels (8-bit RGBA), its pixel data deflated at `level`
// (0: stored, so the file is as large as the picture) without ever holding the picture: rows are
// compressed a few at a time and the result repeated.
QByteArray greyPng(int width, int height, int level);
// A PNG whose header claims `width` x `height` pixels, with a few bytes of data.
QByteArray pngClaiming(std::uint32_t width, std::uint32_t height);

// ---- decks
struct Slide {
    QByteArray xml;
    // Parts the slide's relationships rId2, rId3, ... point at (the layout is rId1).
    std::vector<QString> media;
};
struct Media {
    QString part;  // "ppt/media/image1.png"
    QByteArray bytes;
};
// A deck of `slides` (listed in order, each part slideN.xml), the blank deck's master, layout and
// theme, and `media`. Parts of equal bytes are compressed once.
QByteArray deck(const std::vector<Slide>& slides, const std::vector<Media>& media = {});
// The same, its presentation listing the slides numbered in `listed` (from 1, in that order, as
// often as they appear there).
QByteArray deck(const std::vector<Slide>& slides, const std::vector<Media>& media,
                const std::vector<int>& listed);

// ---- the classes of hostile decks
// Groups nested `depth` deep, a text box of Chinese innermost.
QByteArray nestedGroups(int depth);
// Plain elements nested `depth` deep in a shape's extension list.
QByteArray nestedElements(int depth);
// One slide part, with Chinese text, listed `times` times in the presentation.
QByteArray repeatedSlide(int times);
// `count` slides, each its own part with a text box of Chinese.
QByteArray manySlides(int count);
// `slides` slides of `count` text boxes of Chinese each.
QByteArray manyShapes(int count, int slides = 1);
// `slides` slides of `count` shapes each that say nothing but their id: shapes at the least
// memory a shape takes.
QByteArray bareShapes(int count, int slides);
// One slide with one text box whose single run holds `characters` Chinese characters.
QByteArray longRun(int characters);
// `count` slides each padded with whitespace to `bytes` bytes: parts that inflate.
QByteArray inflatingSlides(int count, std::int64_t bytes);
// One slide whose extension list holds `count` empty elements: XML that takes memory.
QByteArray denseElements(std::int64_t count);
// `count` slides, each with a picture of its own of `side` x `side` pixels (PNG, deflated at
// `level`) and a text box of Chinese.
QByteArray bigPictures(int count, int side, int level);
// A slide with a picture whose header claims `width` x `height` pixels.
QByteArray claimedPicture(std::uint32_t width, std::uint32_t height);
// Control characters (escape sequences that clear the screen and set the clipboard, a
// right-to-left override) in a text, a shape's name and a font; and, when `inTarget`, in the
// relationship target of the slide (which then points outside the archive).
QByteArray controlCharacters(bool inTarget);

}  // namespace hostile
