// SPDX-License-Identifier: MIT
// The typefaces the text layout measures and draws text in, found as the system's font
// configuration finds them, and the raw font that draws a typeface's glyphs.
//
// Finding a typeface asks the font configuration for the one face that matches a family, bold
// and italic (as Qt's own font matching does underneath), never Qt's font database: the first
// use of that database lists every installed font and reads what each covers, which would be
// most of the time a command takes to start. Drawing, which is not on a command's way, does go
// through Qt's database, and checks that it found the very face that was measured.
//
// Like the text layout, these are used on the thread that lays text out, after a
// QGuiApplication exists.
#pragma once

#include <QFont>
#include <QRawFont>
#include <QString>

#include "hostexport.h"

namespace minihost {

// One face of an installed font file.
struct Typeface {
    QString family;  // as the font configuration names it, e.g. "Noto Sans CJK SC"
    QString style;   // its style name in that family, e.g. "Bold"
    QString file;    // the font file's path
    int index = 0;   // the face in the file: a font collection holds several
    bool isNull() const { return file.isEmpty(); }
};

// The face the system draws `family` in, bold and italic as asked: the family itself when it is
// installed, else what the font configuration puts in its place (as presentation programs
// replace a typeface, not with the next family of a list); the system's sans-serif typeface for
// an empty family. A null typeface when the system has no font at all.
// Example: "DejaVu Sans", bold -> DejaVuSans-Bold.ttf; "Calibri" without it installed -> the
// family the configuration names for it (here "DejaVu Sans").
ZHOST_API Typeface typefaceFor(const QString& family, bool bold, bool italic);

// The face East Asian text in `family` is drawn in: the family's when it is installed and has
// ideographs, else the system's East Asian typeface (the font configuration's typeface for
// Chinese), bold and italic as asked.
// Example: "Noto Sans CJK SC" -> face 2 of NotoSansCJK-Regular.ttc; "Microsoft YaHei" without it
// installed, or "DejaVu Sans" (no ideographs) -> the typeface for Chinese, here the same face.
ZHOST_API Typeface eastAsianTypefaceFor(const QString& family, bool bold, bool italic);

// A raw font that draws the glyphs of `typeface` (glyph ids are a face's own) at the size, and
// with the bold and italic, of `font`, found through Qt's font database by the typeface's
// family and style. Invalid when Qt finds another face there (tables other than the typeface's),
// or when the typeface's file cannot be read: then draw the text as a string in `font`.
ZHOST_API QRawFont drawingFont(const Typeface& typeface, const QFont& font);

}  // namespace minihost
