// SPDX-License-Identifier: MIT
#include "minihost/slxcore/textscripts_p.h"

#include <QChar>
#include <algorithm>
#include <map>
#include <string>

#include "minihost/slxcore/textlayout.h"

namespace minihost {
namespace {

struct Range {
    char32_t first, last;
};

bool within(char32_t c, std::initializer_list<Range> ranges) {
    for (const Range& r : ranges)
        if (c >= r.first && c <= r.last) return true;
    return false;
}

// Characters that follow the script of their neighbours, as LibreOffice classes them: spaces,
// combining marks, general punctuation, super- and subscripts, currency, letterlike and number
// forms, arrows, mathematical and technical symbols, enclosed alphanumerics, box drawing,
// geometric shapes, dingbats, supplemental punctuation, private use, variation selectors, small
// form variants, specials and the symbols and emoji beyond the first plane.
bool isWeak(char32_t c) {
    return c == ' ' || c == 0xA0 || c == '\t' || c == '\v' || c == 1 || c == 2 ||
           (within(c, {{0x0300, 0x036F},
                       {0x2000, 0x2BFF},
                       {0x2E00, 0x2E7F},
                       {0xE000, 0xF8FF},
                       {0xFE00, 0xFE0F},
                       {0xFE20, 0xFE2F},
                       {0xFE50, 0xFE6F},
                       {0xFFF0, 0xFFFF},
                       {0x1F000, 0x1FFFF}}) &&
            !isEastAsian(c));
}

// Closing punctuation, and what else a line may not start with: Chinese, Japanese and Latin
// closing marks, units that follow a number, middle dots, small kana and iteration marks.
const char16_t kNoStart[] =
    u"!%),.:;?]}"
    u"¢°·’”‰′″℃∶、。〃〆〉》」』】〕〗〙〛〞〟︰︱︳︴︶︸︺︼︾﹀﹂﹄﹏﹐﹑﹒﹔﹕﹖﹗﹚﹜﹞"
    u"！％），．：；？］｝～｠｡｣､･ゝゞヽヾ々〻ー・ぁぃぅぇぉっゃゅょゎゕゖァィゥェォッャュョヮヵヶ…"
    u"‥⋯";
// Opening punctuation, and what else a line may not end with: currency signs before a number.
const char16_t kNoEnd[] = u"([{£¥‘“〈《「『【〔〖〘〚〝︵︷︹︻︽︿﹁﹃﹙﹛﹝（［｛｟｢＄￡￥";

// Whether `c` is in `list`, by a search of the list sorted once (every character of a paragraph
// is looked up).
bool listed(const char16_t* list, char32_t c) {
    static std::map<const char16_t*, std::u16string> sorted;  // the thread that lays text out only
    auto it = sorted.find(list);
    if (it == sorted.end()) {
        std::u16string chars(list);
        std::sort(chars.begin(), chars.end());
        it = sorted.emplace(list, std::move(chars)).first;
    }
    return c <= 0xFFFF &&
           std::binary_search(it->second.begin(), it->second.end(), static_cast<char16_t>(c));
}

// The character starting at unit `i` (a whole pair), or the lone unit.
char32_t codeAt(const QString& text, int i) {
    const QChar c = text[i];
    if (c.isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate())
        return QChar::surrogateToUcs4(c, text[i + 1]);
    return c.unicode();
}

// The character ending at unit `i`.
char32_t codeBefore(const QString& text, int i) {
    const QChar c = text[i];
    if (c.isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate())
        return QChar::surrogateToUcs4(text[i - 1], c);
    return c.unicode();
}

bool isSecondOfPair(const QString& text, int i) {
    return text[i].isLowSurrogate() && i > 0 && text[i - 1].isHighSurrogate();
}

}  // namespace

bool isEastAsian(char32_t c) {
    return within(c, {{0x1100, 0x11FF},      // Hangul Jamo
                      {0x2E80, 0x2FDF},      // CJK and Kangxi radicals
                      {0x2FF0, 0x31FF},      // description characters, symbols and punctuation,
                                             // kana, bopomofo, Hangul compatibility jamo, kanbun,
                                             // strokes
                      {0x3200, 0x4DBF},      // enclosed, compatibility, extension A
                      {0x4E00, 0x9FFF},      // unified ideographs
                      {0xA000, 0xA4CF},      // Yi
                      {0xA960, 0xA97F},      // Hangul Jamo extended A
                      {0xAC00, 0xD7FF},      // Hangul syllables, Jamo extended B
                      {0xF900, 0xFAFF},      // compatibility ideographs
                      {0xFE10, 0xFE1F},      // vertical forms
                      {0xFE30, 0xFE4F},      // compatibility forms
                      {0xFF00, 0xFFEF},      // half- and full-width forms
                      {0x16FE0, 0x16FFF},    // ideographic symbols
                      {0x1B000, 0x1B2FF},    // kana supplement and extensions
                      {0x1F200, 0x1F2FF},    // enclosed ideographic supplement
                      {0x20000, 0x3FFFF}});  // ideograph extensions B and beyond
}

bool isBreakingSpace(char16_t c) {
    return c == ' ' || c == '\t' || (c >= 0x2000 && c <= 0x200B && c != 0x2007) || c == 0x3000;
}

std::vector<Script> scriptsOf(const QString& text) {
    const int n = static_cast<int>(text.size());
    std::vector<Script> scripts(static_cast<std::size_t>(n), Script::Latin);
    std::vector<bool> weak(static_cast<std::size_t>(n), true);
    for (int i = 0; i < n; ++i) {
        if (isSecondOfPair(text, i)) continue;
        const char32_t c = codeAt(text, i);
        if (isWeak(c) || QChar::category(c) == QChar::Mark_NonSpacing) continue;
        weak[i] = false;
        scripts[i] = isEastAsian(c) ? Script::EastAsian : Script::Latin;
    }
    // Weak characters join the text before them; those at the start, the text after them.
    int firstStrong = 0;
    while (firstStrong < n && weak[firstStrong]) ++firstStrong;
    const Script lead = firstStrong < n ? scripts[firstStrong] : Script::Latin;
    Script current = lead;
    for (int i = 0; i < n; ++i) {
        if (weak[i])
            scripts[i] = current;
        else
            current = scripts[i];
    }
    return scripts;
}

std::vector<bool> breaksOf(const QString& text) {
    const int n = static_cast<int>(text.size());
    std::vector<bool> breaks(static_cast<std::size_t>(n), false);
    for (int i = 1; i < n; ++i) {
        const QChar here = text[i];
        if (isSecondOfPair(text, i) || here.isMark() || isBreakingSpace(here.unicode()) ||
            here == QChar('\v') || text[i - 1] == QChar('\v'))
            continue;
        const char32_t after = codeAt(text, i), before = codeBefore(text, i - 1);
        if (listed(kNoStart, after) || listed(kNoEnd, before)) continue;
        if (isBreakingSpace(text[i - 1].unicode())) {
            breaks[i] = true;
        } else {
            breaks[i] = isEastAsian(before) || isEastAsian(after);
        }
    }
    return breaks;
}

}  // namespace minihost
