// SPDX-License-Identifier: MIT
// How much a deck may make the programs read, hold and draw. A deck past one of these is refused
// with a message that names the limit (a picture past the picture limits is not drawn), so that a
// crafted file can neither exhaust memory nor stall a program, whatever it claims. Each limit is
// far above what real decks use: the largest of the public real-world test decks has 45 slides,
// 400 shapes, elements nested 24 deep, 3 MB of XML and pictures of 2264 x 2160 pixels.
#pragma once

#include <cstdint>

namespace minihost::limits {

// Entries of the zip archive.
constexpr std::int64_t kEntries = 20000;
// One part, decompressed (a slide is a few kilobytes).
constexpr std::uint64_t kPartBytes = 64ull << 20;
// Every part read, pictures included, decompressed and each counted once.
constexpr std::uint64_t kDeckBytes = 1ull << 30;
// The XML parts read, as held in memory: their bytes, and for every "<" and "=" in them the node
// or attribute it may make (128 and 40 bytes, counted before the part is parsed).
constexpr std::uint64_t kXmlMemory = 256ull << 20;
// Elements nested in one XML part (groups of shapes included).
constexpr int kXmlDepth = 256;
// Slides the presentation lists.
constexpr int kSlides = 5000;
// Shapes of one slide, layout or master (group members included), and of the whole deck.
constexpr int kShapesPerPart = 20000;
constexpr int kShapes = 100000;

// Pictures (picturestore.h). One whose header claims more than kPictureSide pixels a side or
// kPicturePixels in all is not decoded; one of more than kPictureWholePixels only where its format
// can be decoded scaled (PNG, JPEG), never whole. A picture is decoded at most kPictureDrawnSide
// pixels a side; the pictures of a deck are decoded from kDeckPicturePixels pixels in all (each
// counted once), and those kept decoded take at most kPictureMemory bytes.
constexpr int kPictureSide = 65535;
constexpr std::int64_t kPicturePixels = 256ll << 20;
constexpr std::int64_t kPictureWholePixels = 16ll << 20;
constexpr int kPictureDrawnSide = 4096;
constexpr std::int64_t kDeckPicturePixels = 1ll << 30;
constexpr std::int64_t kPictureMemory = 128ll << 20;

}  // namespace minihost::limits
