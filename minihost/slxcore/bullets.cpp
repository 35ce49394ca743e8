// SPDX-License-Identifier: MIT
#include "minihost/slxcore/bullets_p.h"

#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

QString roman(int n) {
    static const std::pair<int, const char*> kDigits[] = {
        {1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
        {40, "xl"},  {10, "x"},   {9, "ix"},  {5, "v"},    {4, "iv"},  {1, "i"}};
    QString text;
    for (const auto& [value, digits] : kDigits)
        for (; n >= value; n -= value) text += QLatin1String(digits);
    return text;
}

QString letters(int n) {
    // a..z, then aa..zz, as presentation programs count on.
    const QChar letter(QLatin1Char('a').unicode() + (n - 1) % 26);
    return QString((n - 1) / 26 + 1, letter);
}

// Symbol fonts' characters that decks use as bullets, as the Unicode characters they show (the
// symbol fonts themselves are seldom installed).
QString symbolBullet(const QString& font, const QString& text) {
    if (text.size() != 1) return text;
    const ushort c =
        text.at(0).unicode() >= 0xF000 ? text.at(0).unicode() - 0xF000 : text.at(0).unicode();
    if (font.startsWith(QLatin1String("Wingdings"))) {
        switch (c) {
            case 0xA7:
                return QStringLiteral("\u25AA");  // small square
            case 0xD8:
                return QStringLiteral("\u27A2");  // arrowhead
            case 0xFC:
                return QStringLiteral("\u2714");  // check mark
            case 0x71:
                return QStringLiteral("\u2751");  // shadowed square
            case 0x76:
                return QStringLiteral("\u2756");  // diamond of diamonds
            case 0x6C:
                return QStringLiteral("\u25CF");  // circle
            case 0x6E:
                return QStringLiteral("\u25A0");  // square
            case 0xE0:
                return QStringLiteral("\u2192");  // arrow
            default:
                return QStringLiteral("\u25AA");
        }
    }
    if (font == QLatin1String("Symbol") && c == 0xB7) return QStringLiteral("\u2022");
    return text.at(0).unicode() >= 0xF000 ? QString(QChar(c)) : text;
}

}  // namespace

QString autoNumber(const std::string& scheme, int n) {
    QString number;
    if (scheme.rfind("alphaLc", 0) == 0)
        number = letters(n);
    else if (scheme.rfind("alphaUc", 0) == 0)
        number = letters(n).toUpper();
    else if (scheme.rfind("romanLc", 0) == 0)
        number = roman(n);
    else if (scheme.rfind("romanUc", 0) == 0)
        number = roman(n).toUpper();
    else
        number = QString::number(n);
    const auto endsWith = [&](const char* suffix) {
        const std::string s(suffix);
        return scheme.size() >= s.size() &&
               scheme.compare(scheme.size() - s.size(), s.size(), s) == 0;
    };
    if (endsWith("ParenBoth")) return QLatin1Char('(') + number + QLatin1Char(')');
    if (endsWith("ParenR")) return number + QLatin1Char(')');
    if (endsWith("Period")) return number + QLatin1Char('.');
    if (endsWith("Minus")) return QStringLiteral("- ") + number + QStringLiteral(" -");
    return number;  // "...Plain"
}

void Numbering::apply(TextParagraph& para, const std::vector<pugi::xml_node>& chain, int level,
                      const DeckStyles& styles) {
    // A paragraph ends the numbering of the levels below it, and of its own when it has none.
    for (auto it = m_next.begin(); it != m_next.end();)
        it = it->first > level ? m_next.erase(it) : std::next(it);
    bool numbered = false;
    for (pugi::xml_node n : chain) {
        if (child(n, "buNone")) break;
        if (pugi::xml_node bu = child(n, "buChar")) {
            para.bullet = qs(bu.attribute("char").value());
            break;
        }
        if (pugi::xml_node bu = child(n, "buAutoNum")) {
            const std::string scheme = bu.attribute("type").value();
            auto& next = m_next[level];
            if (next.first != scheme || next.second == 0)
                next = {scheme, bu.attribute("startAt").as_int(1)};
            para.bullet = autoNumber(scheme, next.second++);
            numbered = true;
            break;
        }
    }
    if (!numbered) m_next.erase(level);
    if (para.bullet.isEmpty()) return;
    for (pugi::xml_node n : chain)
        if (pugi::xml_node font = child(n, "buFont")) {
            para.bulletFont = qs(font.attribute("typeface").value());
            break;
        }
    if (!numbered) para.bullet = symbolBullet(para.bulletFont, para.bullet);
    if (para.bulletFont.startsWith(QLatin1String("Wingdings")) ||
        para.bulletFont == QLatin1String("Symbol"))
        para.bulletFont.clear();  // the character was mapped: the text's typeface shows it
    for (pugi::xml_node n : chain)
        if (pugi::xml_node color = child(n, "buClr")) {
            para.bulletColored = colorOf(color, styles, &para.bulletRgb, true);
            break;
        }
    for (pugi::xml_node n : chain)
        if (pugi::xml_node size = child(n, "buSzPct")) {
            para.bulletScale = static_cast<float>(size.attribute("val").as_double(100000) / 100000);
            break;
        }
}

}  // namespace minihost
