// SPDX-License-Identifier: MIT
#include "minihost/slxcore/textfonts_p.h"

#include <hb.h>

#include <QFontDatabase>
#include <QFontInfo>
#include <QGlyphRun>
#include <QHash>
#include <QTextLayout>
#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

namespace minihost {
namespace {

// How far a run is laid out: beyond any slide.
constexpr double kEndless = 1e7;

// The family the system draws for `family`: itself when installed, else what the font
// configuration puts in its place (as presentation programs do), not the next family of a list.
QString installedFamily(const QString& family) {
    static QHash<QString, QString> known;  // the thread that lays text out only
    auto it = known.find(family);
    if (it == known.end())
        it = known.insert(
            family,
            QFontInfo(QFont(family.isEmpty() ? QStringLiteral("sans-serif") : family)).family());
    return *it;
}

// The typeface the system draws ideographs with when the font asked for has none: the one
// presentation programs fall back to for East Asian text whose typeface is not installed.
QString systemEastAsianFamily() {
    static const QString family = [] {
        QTextLayout layout(QStringLiteral("中"), QFont(installedFamily(QString())));
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        const QList<QGlyphRun> runs = layout.glyphRuns();
        return runs.isEmpty() ? installedFamily(QString()) : runs.first().rawFont().familyName();
    }();
    return family;
}

QString eastAsianFamily(const QString& family) {
    static QHash<QString, QString> known;
    auto it = known.find(family);
    if (it == known.end()) {
        const bool installed =
            !family.isEmpty() && QFontDatabase().families().contains(family, Qt::CaseInsensitive);
        it = known.insert(family, installed ? family : systemEastAsianFamily());
    }
    return *it;
}

// A font file's face for HarfBuzz, over copies of its tables read once, and a font of it whose
// positions are in font units.
class Face {
public:
    // Reads the tables shaping needs now: the face outlives the raw fonts it was made from.
    explicit Face(const QRawFont& font) {
        for (const char* tag :
             {"cmap", "GSUB", "GPOS", "GDEF", "hmtx", "hhea", "maxp", "head", "OS/2", "kern"})
            m_tables.emplace(HB_TAG(tag[0], tag[1], tag[2], tag[3]), font.fontTable(tag));
        m_face = hb_face_create_for_tables(&Face::table, this, nullptr);
        m_upem = std::max(1, static_cast<int>(font.unitsPerEm()));
        hb_face_set_upem(m_face, static_cast<unsigned>(m_upem));
        m_font = hb_font_create(m_face);
        hb_font_set_scale(m_font, m_upem, m_upem);
    }
    ~Face() {
        hb_font_destroy(m_font);
        hb_face_destroy(m_face);
    }
    Face(const Face&) = delete;
    Face& operator=(const Face&) = delete;
    hb_font_t* font() const { return m_font; }
    int unitsPerEm() const { return m_upem; }

private:
    static hb_blob_t* table(hb_face_t*, hb_tag_t tag, void* user) {
        const Face* self = static_cast<const Face*>(user);
        const auto it = self->m_tables.find(tag);
        if (it == self->m_tables.end() || it->second.isEmpty()) return nullptr;
        return hb_blob_create(it->second.constData(), static_cast<unsigned>(it->second.size()),
                              HB_MEMORY_MODE_READONLY, nullptr, nullptr);
    }
    std::map<hb_tag_t, QByteArray> m_tables;
    hb_face_t* m_face = nullptr;
    hb_font_t* m_font = nullptr;
    int m_upem = 1000;
};

// The HarfBuzz face of a raw font, made once per face of a font file.
const Face& faceOf(const QRawFont& font) {
    static std::map<QString, std::unique_ptr<Face>> faces;  // the thread that lays text out only
    const QString key = font.familyName() + QChar('\n') + font.styleName() + QChar('\n') +
                        QString::number(font.weight()) + QChar('\n') +
                        QString::number(static_cast<int>(font.style()));
    auto& face = faces[key];
    if (!face) face = std::make_unique<Face>(font);
    return *face;
}

// At most this many units are shaped at once. HarfBuzz keeps 40 bytes a glyph while it shapes:
// a text of millions of units (the readings of a very long text) is shaped in pieces, each told
// the text around it, cut after a space where there is one.
constexpr int kShapedAtOnce = 8192;

// Where the piece of `text` starting at `start` ends: after its last space, else at the most
// units shaped at once (never inside a surrogate pair), else at the text's end.
int pieceEnd(const QString& text, int start) {
    const int n = static_cast<int>(text.size());
    if (n - start <= kShapedAtOnce) return n;
    int end = start + kShapedAtOnce;
    for (int at = end; at > start + kShapedAtOnce / 2; --at)
        if (text[at - 1] == QChar(' ')) return at;
    if (text[end].isLowSurrogate()) --end;
    return end;
}

// Shapes text as LibreOffice does, with HarfBuzz told its language: East Asian text as Chinese,
// so that the font's Chinese forms are used (a full-width dash, full-width quotes), Latin text as
// English. False when the font lacks a glyph for it: then the system shapes it, falling back to
// other fonts as it draws it.
bool shapeWithLanguage(const QString& text, const QFont& font, Script script, ShapedText& shaped) {
    const bool eastAsian = script == Script::EastAsian;
    const QRawFont raw =
        QRawFont::fromFont(font, eastAsian ? QFontDatabase::SimplifiedChinese : QFontDatabase::Any);
    if (!raw.isValid()) return false;
    const Face& face = faceOf(raw);
    // Points per font unit: the font is kUnits pixels per point.
    const double scale = font.pixelSize() / kUnits / face.unitsPerEm();
    const double spacing =
        font.letterSpacingType() == QFont::AbsoluteSpacing ? font.letterSpacing() / kUnits : 0.0;
    const int n = static_cast<int>(text.size());
    // Each unit's advance first, at offsets[unit + 1]; summed into offsets at the end.
    shaped.offsets.assign(static_cast<std::size_t>(n) + 1, 0.0);
    shaped.glyphs.reserve(static_cast<std::size_t>(n));
    shaped.glyphUnits.reserve(static_cast<std::size_t>(n));
    shaped.glyphX.reserve(static_cast<std::size_t>(n));
    hb_buffer_t* buffer = hb_buffer_create();
    const auto* utf16 = reinterpret_cast<const uint16_t*>(text.utf16());
    bool complete = true;
    double x = 0;
    for (int start = 0; start < n && complete;) {
        const int end = pieceEnd(text, start);
        hb_buffer_clear_contents(buffer);
        hb_buffer_add_utf16(buffer, utf16, n, static_cast<unsigned>(start), end - start);
        hb_buffer_set_language(buffer, hb_language_from_string(eastAsian ? "zh-cn" : "en", -1));
        hb_buffer_guess_segment_properties(buffer);
        hb_buffer_set_direction(buffer, HB_DIRECTION_LTR);
        hb_shape(face.font(), buffer, nullptr, 0);
        unsigned count = 0;
        const hb_glyph_info_t* infos = hb_buffer_get_glyph_infos(buffer, &count);
        const hb_glyph_position_t* positions = hb_buffer_get_glyph_positions(buffer, &count);
        for (unsigned g = 0; g < count; ++g) {
            const int unit = static_cast<int>(infos[g].cluster);  // in the whole text
            complete = complete && infos[g].codepoint != 0;
            shaped.glyphs.push_back(infos[g].codepoint);
            shaped.glyphUnits.push_back(unit);
            shaped.glyphX.push_back(x + positions[g].x_offset * scale);
            double step = positions[g].x_advance * scale;
            // Character spacing follows each character, after its last glyph.
            if (g + 1 == count || infos[g + 1].cluster != infos[g].cluster) step += spacing;
            shaped.offsets[static_cast<std::size_t>(unit) + 1] += step;
            x += step;
        }
        start = end;
    }
    hb_buffer_destroy(buffer);
    if (!complete) return false;
    shaped.rawFont = raw;
    for (int i = 0; i < n; ++i)
        shaped.offsets[static_cast<std::size_t>(i) + 1] +=
            shaped.offsets[static_cast<std::size_t>(i)];
    return true;
}

// Text shaped as the system shapes it, as QPainter draws it.
std::vector<double> systemOffsets(const QString& text, const QFont& font) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(kEndless);
    layout.endLayout();
    std::vector<double> offsets(static_cast<std::size_t>(text.size()) + 1, 0.0);
    for (int i = 0; i <= text.size(); ++i) {
        // Inside a pair the cursor is at its start: the pair's advance belongs to its first unit.
        const bool inPair = i > 0 && i < text.size() && text[i].isLowSurrogate();
        offsets[static_cast<std::size_t>(i)] = line.cursorToX(inPair ? i + 1 : i) / kUnits;
    }
    return offsets;
}

}  // namespace

QFont fontFor(const TextFormat& format, Script script, double scale) {
    QFont font(script == Script::EastAsian ? eastAsianFamily(format.eastAsianFont)
                                           : installedFamily(format.latinFont));
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(format.size * scale * kUnits))));
    font.setBold(format.bold);
    font.setItalic(format.italic);
    font.setUnderline(format.underline);
    font.setStrikeOut(format.strike);
    font.setKerning(true);
    if (format.characterSpacing != 0)
        font.setLetterSpacing(QFont::AbsoluteSpacing, format.characterSpacing * kUnits);
    // Hinting would round advances at the layout's size, not at the size the slide is shown at.
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

ShapedText shapeText(const QString& text, const QFont& font, Script script) {
    ShapedText shaped;
    if (shapeWithLanguage(text, font, script, shaped)) return shaped;
    shaped = ShapedText();
    shaped.offsets = systemOffsets(text, font);
    return shaped;
}

}  // namespace minihost
