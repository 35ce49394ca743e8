// SPDX-License-Identifier: MIT
// The typefaces text is measured in, found through the font configuration: an installed family
// itself, bold and italic faces of their own, a missing family's replacement, East Asian text in
// the system's typeface for Chinese when its own has no ideographs or is missing; and the raw
// font drawing finds through Qt, which must be the very face that was measured (glyph ids are a
// face's own), else none. Expectations name the fonts the project's machines install (DejaVu,
// Noto CJK).
#include <gtest/gtest.h>
#include <hb.h>

#include <QFile>
#include <QFileInfo>

#include "minihost/slxcore/typefaces.h"
#include "qtprinters.h"

using minihost::Typeface;

namespace {

QString fileName(const Typeface& face) {
    return QFileInfo(face.file).fileName();
}

// The face found for `asked` (bold, italic as given), expected of `family` and in the file `file`.
Typeface expectFace(const char* asked, bool bold, bool italic, const char* family,
                    const char* file) {
    SCOPED_TRACE(asked);
    const Typeface face = minihost::typefaceFor(QString::fromUtf8(asked), bold, italic);
    EXPECT_EQ(face.family, QString::fromUtf8(family));
    EXPECT_EQ(fileName(face), QString::fromUtf8(file));
    return face;
}

// The face's table `tag` as HarfBuzz reads it from the file.
QByteArray tableOf(const Typeface& face, const char* tag) {
    hb_blob_t* file = hb_blob_create_from_file(QFile::encodeName(face.file).constData());
    hb_face_t* hbFace = hb_face_create(file, static_cast<unsigned>(face.index));
    hb_blob_t* table = hb_face_reference_table(hbFace, hb_tag_from_string(tag, 4));
    unsigned length = 0;
    const char* data = hb_blob_get_data(table, &length);
    QByteArray copy(data, static_cast<int>(length));
    hb_blob_destroy(table);
    hb_face_destroy(hbFace);
    hb_blob_destroy(file);
    return copy;
}

QFont fontOf(bool bold = false, bool italic = false) {
    QFont font;
    font.setPixelSize(200);
    font.setBold(bold);
    font.setItalic(italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

TEST(Typefaces, AnInstalledFamilyIsItselfWithItsBoldAndItalicFaces) {
    const Typeface regular =
        expectFace("DejaVu Sans", false, false, "DejaVu Sans", "DejaVuSans.ttf");
    EXPECT_EQ(regular.style, QStringLiteral("Book"));
    EXPECT_EQ(regular.index, 0);
    const Typeface bold =
        expectFace("DejaVu Sans", true, false, "DejaVu Sans", "DejaVuSans-Bold.ttf");
    EXPECT_EQ(bold.style, QStringLiteral("Bold"));
    EXPECT_EQ(fileName(minihost::typefaceFor(QStringLiteral("dejavu sans"), false, true)),
              QStringLiteral("DejaVuSans-Oblique.ttf"));
    EXPECT_EQ(fileName(minihost::typefaceFor(QStringLiteral("DejaVu Sans"), true, true)),
              QStringLiteral("DejaVuSans-BoldOblique.ttf"));
    // A family that is a width of another is named as asked.
    expectFace("DejaVu Sans Condensed", false, false, "DejaVu Sans Condensed",
               "DejaVuSansCondensed.ttf");
}

TEST(Typefaces, AMissingFamilyIsWhatTheConfigurationPutsInItsPlace) {
    // A serif family is replaced by a serif one, not by the first family of a list.
    expectFace("Times New Roman", false, false, "DejaVu Serif", "DejaVuSerif.ttf");
    EXPECT_EQ(fileName(minihost::typefaceFor(QStringLiteral("Times New Roman"), true, false)),
              QStringLiteral("DejaVuSerif-Bold.ttf"));
    const Typeface unknown =
        expectFace("No Such Typeface Anywhere", false, false, "DejaVu Sans", "DejaVuSans.ttf");
    // No family at all: the system's sans-serif typeface.
    EXPECT_EQ(minihost::typefaceFor(QString(), false, false).file, unknown.file);
}

TEST(Typefaces, EastAsianTextIsInItsTypefaceOrTheSystemsTypefaceForChinese) {
    // The face of a collection that the family names.
    const Typeface sc =
        minihost::eastAsianTypefaceFor(QStringLiteral("Noto Sans CJK SC"), false, false);
    EXPECT_EQ(sc.family, QStringLiteral("Noto Sans CJK SC"));
    EXPECT_EQ(fileName(sc), QStringLiteral("NotoSansCJK-Regular.ttc"));
    EXPECT_EQ(sc.index, 2);
    const Typeface jp =
        minihost::eastAsianTypefaceFor(QStringLiteral("Noto Sans CJK JP"), true, false);
    EXPECT_EQ(jp.family, QStringLiteral("Noto Sans CJK JP"));
    EXPECT_EQ(jp.style, QStringLiteral("Bold"));
    EXPECT_EQ(fileName(jp), QStringLiteral("NotoSansCJK-Bold.ttc"));
    EXPECT_EQ(jp.index, 0);
    // Missing, and installed without ideographs: the typeface for Chinese, bold as asked.
    for (const QString& family :
         {QStringLiteral("Microsoft YaHei"), QStringLiteral("DejaVu Sans"), QString()}) {
        const Typeface face = minihost::eastAsianTypefaceFor(family, false, false);
        EXPECT_EQ(face.family, QStringLiteral("Noto Sans CJK SC")) << family.toStdString();
        EXPECT_EQ(face.file, sc.file) << family.toStdString();
        EXPECT_EQ(face.index, 2) << family.toStdString();
        const Typeface bold = minihost::eastAsianTypefaceFor(family, true, false);
        EXPECT_EQ(fileName(bold), QStringLiteral("NotoSansCJK-Bold.ttc")) << family.toStdString();
        EXPECT_EQ(bold.index, 2) << family.toStdString();
    }
}

TEST(Typefaces, DrawingFindsTheVeryFaceThatWasMeasured) {
    struct Case {
        Typeface face;
        bool bold, italic;
    };
    const QString sans = QStringLiteral("DejaVu Sans");
    const QString cjk = QStringLiteral("Noto Sans CJK SC");
    const Case cases[] = {
        {minihost::typefaceFor(sans, false, false), false, false},
        {minihost::typefaceFor(sans, true, false), true, false},
        {minihost::typefaceFor(sans, false, true), false, true},
        {minihost::typefaceFor(QStringLiteral("DejaVu Sans Condensed"), false, false), false,
         false},
        {minihost::eastAsianTypefaceFor(cjk, false, false), false, false},
        {minihost::eastAsianTypefaceFor(cjk, true, false), true, false},
        {minihost::eastAsianTypefaceFor(QStringLiteral("Noto Serif CJK TC"), false, false), false,
         false},
    };
    for (const Case& c : cases) {
        const QRawFont raw = minihost::drawingFont(c.face, fontOf(c.bold, c.italic));
        ASSERT_TRUE(raw.isValid()) << c.face.file.toStdString() << " " << c.face.index;
        EXPECT_EQ(raw.pixelSize(), 200);
        for (const char* tag : {"head", "name", "cmap", "hmtx"})
            EXPECT_EQ(raw.fontTable(tag), tableOf(c.face, tag))
                << c.face.file.toStdString() << " " << tag;
    }
}

TEST(Typefaces, AFaceQtDoesNotFindIsNotDrawnWithAnother) {
    // The Japanese face of the collection, named as the Chinese one: Qt finds the Chinese face.
    Typeface wrong =
        minihost::eastAsianTypefaceFor(QStringLiteral("Noto Sans CJK SC"), false, false);
    wrong.index = 0;
    EXPECT_FALSE(minihost::drawingFont(wrong, fontOf()).isValid());
    // The bold file named as the regular face.
    Typeface bold = minihost::typefaceFor(QStringLiteral("DejaVu Sans"), true, false);
    bold.style = QStringLiteral("Book");
    EXPECT_FALSE(minihost::drawingFont(bold, fontOf()).isValid());
    // A file that cannot be read.
    Typeface missing = minihost::typefaceFor(QStringLiteral("DejaVu Sans"), false, false);
    missing.file = QStringLiteral("/nonexistent/DejaVuSans.ttf");
    EXPECT_FALSE(minihost::drawingFont(missing, fontOf()).isValid());
    EXPECT_FALSE(minihost::drawingFont(Typeface(), fontOf()).isValid());
}

}  // namespace
