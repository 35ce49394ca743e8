// SPDX-License-Identifier: MIT
// Readings over their text, as school books print them: each syllable centred over its
// character, half the text's size, in the character's colour. Deck::placeReadingsOver places
// them, Deck::readingsOver finds them again in the file, Deck::removeReadingsOver takes them
// away; see deck.h for the calls.
//
// How the readings are written (chosen by measuring LibreOffice's rendering, see
// tests/slxcore/readingsover_libreoffice_test.cpp for the figures):
//   - One text box per syllable: the default insets, no wrap, anchored at its bottom, its
//     paragraph centred, as wide as its syllable, two reading sizes and its insets, its centre over
//     the character's, its syllable just over the character's line. Centring is left to the program
//     that draws the slide, so no program needs our measure of the syllable to put it over its
//     character.
//   - Heights as LibreOffice's rendering shows them in the boxes pdftotext reads back: a line's
//     text reaches 0.95 of its size above its baseline and 0.35 below. A reading's box ends
//     0.05 reading sizes over the top of its character's line.
//   - The syllable is half the size of the largest character read (never below 8 pt), in the
//     colour and the Latin typeface of its character.
//   - The text keeps its characters and stays one ordinary text; its paragraphs with readings
//     get exact line spacing of 1.3 times their largest size plus 1.4 reading sizes (the room is
//     taken above each line, where the readings go), never less than they had; where two
//     neighbouring syllables would come closer than a quarter of a reading size, the text's
//     character spacing grows (the same for all its runs) until they do not.
//   - The boxes of one text are one group, just over the text in z order (over the group the
//     text is in, for a text inside a group).
//
// How a text's readings are found again (what the file records): the group is named
// "Pinyin over N", N being the text's shape id (p:cNvPr/@id, unique on its slide), and each box
// in it "Pinyin P", P being the text position of its character when the readings were placed;
// its text is the syllable. Names are kept by every presentation program and mean nothing to
// them otherwise. Placing readings over a text removes every group named for it first, so
// readings are replaced, never doubled.
//
// Not handled: rotated or flipped texts (their readings are placed as if the text were not
// turned), vertical text. On a line that mixes Chinese with Latin letters or digits, LibreOffice
// leaves about a quarter of an em at each change of script, which the file format does not
// describe; the readings are placed where LibreOffice draws the characters, and other programs
// may draw such a line a little narrower.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include "hostexport.h"

namespace minihost {

// One syllable over the character at text position `position` of its text.
struct Reading {
    int position = 0;
    QString syllable;
    bool operator==(const Reading& other) const {
        return position == other.position && syllable == other.syllable;
    }
};

// The syllables of a text of readings as the add-on writes it: its runs of letters (tone marks
// included), whatever separates or brackets them.
// Example: "（chuánɡ qián ）" -> {"chuánɡ", "qián"}; "[nǐ] [hǎo]" -> {"nǐ", "hǎo"}.
ZHOST_API QStringList syllablesOf(const QString& readings);

// Whether the add-on reads character `c` (U+4E00..U+9FA5): the characters that get a reading.
ZHOST_API bool isReadChinese(QChar c);

// The readings of [start, start + length) of `text` (length -1: to its end), one syllable of
// `syllables` for each character the add-on reads, in order. False (and `*readings` untouched)
// when there are more or fewer syllables than such characters.
// Example: "你好，世界" with {"nǐ", "hǎo", "shì", "jiè"} -> {0 nǐ, 1 hǎo, 3 shì, 4 jiè}.
ZHOST_API bool assignReadings(const QString& text, int start, int length,
                              const QStringList& syllables, QList<Reading>* readings);

}  // namespace minihost
