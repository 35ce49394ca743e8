// SPDX-License-Identifier: MIT
// Decks made to be laid out and LibreOffice's rendering of them read back: the text layout's and
// the readings' tests against LibreOffice share them. Converting needs soffice; reading the PDF
// needs poppler's Qt library (ZPHONETIC_HAVE_POPPLER_QT5).
#pragma once

#include <QByteArray>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <vector>

namespace lotest {

// A paragraph of runs at `size` points; "\v" in `text` becomes a line break.
QByteArray paragraph(const QString& text, int size, const QByteArray& pPr = {},
                     const QByteArray& runAttributes = {}, const QByteArray& fonts = {});
// A text box with id 2 at (x, y), w x h points.
QByteArray textBox(double x, double y, double w, double h, const QByteArray& paragraphs,
                   const QByteArray& bodyAttributes = "wrap=\"square\"");
// Run fonts naming Noto Sans and Noto Sans CJK SC.
extern const QByteArray kNotoFonts;
// A deck whose master gives body text 32 pt and whose one layout has a body placeholder at
// (80, 120), 800 x 300 points; its slide holds that placeholder (id 2) with `text`, saying
// nothing of its size or place.
QByteArray placeholderDeck(const QString& text);

// LibreOffice's soffice, or "" when it is not installed.
QString soffice();
// Converts `files` to PDF in `outDir` with one run of `program` (soffice) and a profile of its
// own in `outDir`; false and its output in `*output` when it did not finish.
bool convertToPdf(const QString& program, const QStringList& files, const QString& outDir,
                  QString* output);

#ifdef ZPHONETIC_HAVE_POPPLER_QT5
// A character of the PDF. Poppler gives a character's box from 0.95 size above its baseline to
// 0.35 below (the fonts LibreOffice embeds carry no usable ascent).
struct Glyph {
    QChar c;
    double left = 0, width = 0, height = 0, baseline = 0;
    bool lastOfWord = false;
    int word = 0;  // the index of its word on the page
    QRectF box() const { return QRectF(left, baseline - height * 0.95 / 1.3, width, height); }
};
// The characters of the PDF's first page, word after word.
std::vector<Glyph> pdfGlyphs(const QString& path);
// Its lines: glyphs whose baselines agree, top to bottom, each left to right.
std::vector<std::vector<Glyph>> pdfLines(const QString& path);
#endif

}  // namespace lotest
