// SPDX-License-Identifier: MIT
#include "minihost/slxcore/typefaces.h"

#include <fontconfig/fontconfig.h>

#include <QFile>
#include <QHash>

#include "minihost/slxcore/shapingfaces_p.h"

namespace minihost {
namespace {

// What a face is asked for by: a family (or, empty, none), a language it must write, bold, italic.
struct Request {
    QString family;
    const char* language = nullptr;
    bool bold = false;
    bool italic = false;
};

// A face found, with whether it is of the family asked for (not a replacement) and whether it
// has ideographs: a typeface asked for East Asian text without them is replaced as a missing one
// is.
struct Match {
    Typeface face;
    bool ofFamily = false;
    bool ideographs = false;
};

constexpr FcChar32 kIdeograph = 0x4E2D;  // 中

// The font configuration's one best face for `request`, with the substitutions it makes (a
// missing family's replacements, the default families) as the system's font matching does.
Match match(const Request& request) {
    FcPattern* pattern = FcPatternCreate();
    const QByteArray family = request.family.toUtf8();
    if (!family.isEmpty())
        FcPatternAddString(pattern, FC_FAMILY,
                           reinterpret_cast<const FcChar8*>(family.constData()));
    if (request.language)
        FcPatternAddString(pattern, FC_LANG, reinterpret_cast<const FcChar8*>(request.language));
    FcPatternAddInteger(pattern, FC_WEIGHT, request.bold ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(pattern, FC_SLANT, request.italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* best = FcFontMatch(nullptr, pattern, &result);
    FcPatternDestroy(pattern);
    Match found;
    if (!best) return found;
    Typeface& face = found.face;
    FcChar8* value = nullptr;
    if (FcPatternGetString(best, FC_FILE, 0, &value) == FcResultMatch)
        face.file = QFile::decodeName(reinterpret_cast<const char*>(value));
    FcPatternGetInteger(best, FC_INDEX, 0, &face.index);
    if (FcPatternGetString(best, FC_STYLE, 0, &value) == FcResultMatch)
        face.style = QString::fromUtf8(reinterpret_cast<const char*>(value));
    // A face may have several family names (a width's own family besides its main one): the one
    // asked for names it, as Qt names it then.
    for (int i = 0; FcPatternGetString(best, FC_FAMILY, i, &value) == FcResultMatch; ++i) {
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(value));
        if (i == 0) face.family = name;
        if (!family.isEmpty() && name.compare(request.family, Qt::CaseInsensitive) == 0) {
            face.family = name;
            found.ofFamily = true;
        }
    }
    FcCharSet* characters = nullptr;
    found.ideographs = FcPatternGetCharSet(best, FC_CHARSET, 0, &characters) == FcResultMatch &&
                       FcCharSetHasChar(characters, kIdeograph);
    FcPatternDestroy(best);
    return found;
}

QString keyOf(const QString& family, bool bold, bool italic) {
    return family + QChar(bold ? 'b' : 'r') + QChar(italic ? 'i' : 'u');
}

// The family the system draws Chinese in when the typeface asked for is missing.
QString systemEastAsianFamily() {
    static const QString family = match({QString(), "zh-cn", false, false}).face.family;
    return family;
}

}  // namespace

Typeface typefaceFor(const QString& family, bool bold, bool italic) {
    static QHash<QString, Typeface> known;  // the thread that lays text out only
    const QString key = keyOf(family, bold, italic);
    auto it = known.find(key);
    if (it == known.end()) {
        const QString asked = family.isEmpty() ? QStringLiteral("sans-serif") : family;
        it = known.insert(key, match({asked, nullptr, bold, italic}).face);
    }
    return *it;
}

Typeface eastAsianTypefaceFor(const QString& family, bool bold, bool italic) {
    static QHash<QString, Typeface> known;
    const QString key = keyOf(family, bold, italic);
    auto it = known.find(key);
    if (it == known.end()) {
        Match found;
        if (!family.isEmpty()) found = match({family, nullptr, bold, italic});
        if (!found.ofFamily || !found.ideographs)
            found = match({systemEastAsianFamily(), nullptr, bold, italic});
        it = known.insert(key, found.face);
    }
    return *it;
}

QRawFont drawingFont(const Typeface& typeface, const QFont& font) {
    const ShapingFace* face = shapingFace(typeface);
    if (!face) return {};
    QFont request(font);
    request.setFamily(typeface.family);
    request.setStyleName(typeface.style);
    QRawFont raw = QRawFont::fromFont(request);
    // Qt's matching of a family and style may settle on another face (another file, or another
    // face of a collection): its glyph ids would be other glyphs.
    for (const char* tag : {"head", "maxp", "name"})
        if (!raw.isValid() || raw.fontTable(tag) != face->table(tag)) return {};
    return raw;
}

}  // namespace minihost
