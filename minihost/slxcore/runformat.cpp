// SPDX-License-Identifier: MIT
#include "minihost/slxcore/runformat_p.h"

#include <QColor>
#include <algorithm>
#include <cmath>

#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

std::uint32_t parseHex(const char* text) {
    bool ok = false;
    const std::uint32_t value = QString::fromLatin1(text).toUInt(&ok, 16);
    return ok ? (value & 0xFFFFFFu) : 0u;
}

// Applies the colour's luminance and tint/shade children, in document order, in HSL as
// presentation programs do (values in thousandths of a percent).
std::uint32_t transformed(std::uint32_t rgb, pugi::xml_node choice) {
    QColor color = QColor::fromRgb(rgb);
    for (pugi::xml_node t = choice.first_child(); t; t = t.next_sibling()) {
        const std::string local = localName(t);
        const double v = t.attribute("val").as_double() / 100000.0;
        double h, s, l;
        color.getHslF(&h, &s, &l);
        if (local == "lumMod")
            l *= v;
        else if (local == "lumOff")
            l += v;
        else if (local == "tint")
            l = l * v + (1 - v);  // towards white
        else if (local == "shade")
            l *= v;  // towards black
        else if (local == "satMod")
            s *= v;
        else
            continue;
        color.setHslF(h < 0 ? 0 : h, std::clamp(s, 0.0, 1.0), std::clamp(l, 0.0, 1.0));
    }
    return color.rgb() & 0xFFFFFFu;
}

QString resolveTypeface(const QString& face, const DeckStyles& styles) {
    if (face == QLatin1String("+mn-lt")) return styles.minorLatin;
    if (face == QLatin1String("+mj-lt")) return styles.majorLatin;
    if (face == QLatin1String("+mn-ea")) return styles.minorEastAsian;
    if (face == QLatin1String("+mj-ea")) return styles.majorEastAsian;
    return face;
}

}  // namespace

bool colorOf(pugi::xml_node holder, const DeckStyles& styles, std::uint32_t* rgb, bool transforms,
             const std::uint32_t* placeholder) {
    pugi::xml_node choice;
    if (pugi::xml_node srgb = child(holder, "srgbClr")) {
        *rgb = parseHex(srgb.attribute("val").value());
        choice = srgb;
    } else if (pugi::xml_node sys = child(holder, "sysClr")) {
        *rgb = parseHex(sys.attribute("lastClr").value());
        choice = sys;
    } else if (pugi::xml_node scheme = child(holder, "schemeClr")) {
        std::string name = scheme.attribute("val").value();
        if (const auto mapped = styles.colorMap.find(name); mapped != styles.colorMap.end()) {
            name = mapped->second;
        } else {
            // The usual master colour map: text on dark 1, background on light 1.
            if (name == "tx1") name = "dk1";
            if (name == "bg1") name = "lt1";
            if (name == "tx2") name = "dk2";
            if (name == "bg2") name = "lt2";
        }
        auto it = styles.schemeColors.find(name);
        *rgb = it == styles.schemeColors.end() ? 0u : it->second;
        if (name == "phClr" && placeholder) *rgb = *placeholder;
        choice = scheme;
    } else if (pugi::xml_node preset = child(holder, "prstClr")) {
        // The preset names are those of CSS, which Qt knows.
        const QColor named(QString::fromLatin1(preset.attribute("val").value()));
        *rgb = named.isValid() ? named.rgb() & 0xFFFFFFu : 0u;
        choice = preset;
    } else if (pugi::xml_node linear = child(holder, "scrgbClr")) {
        // Linear light in thousandths of a percent, made sRGB.
        auto channel = [&](const char* name) {
            const double c = std::clamp(linear.attribute(name).as_double() / 100000.0, 0.0, 1.0);
            const double srgb = c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
            return static_cast<std::uint32_t>(std::lround(srgb * 255));
        };
        *rgb = channel("r") << 16 | channel("g") << 8 | channel("b");
        choice = linear;
    } else if (pugi::xml_node hsl = child(holder, "hslClr")) {
        *rgb = QColor::fromHslF(hsl.attribute("hue").as_double() / 21600000.0,
                                std::clamp(hsl.attribute("sat").as_double() / 100000.0, 0.0, 1.0),
                                std::clamp(hsl.attribute("lum").as_double() / 100000.0, 0.0, 1.0))
                   .rgb() &
               0xFFFFFFu;
        choice = hsl;
    } else {
        return false;
    }
    if (transforms) *rgb = transformed(*rgb, choice);
    return true;
}

double alphaOf(pugi::xml_node holder) {
    pugi::xml_node choice = holder.first_child();
    while (choice && choice.type() != pugi::node_element) choice = choice.next_sibling();
    const pugi::xml_node alpha = child(choice, "alpha");
    return alpha ? std::clamp(alpha.attribute("val").as_double() / 100000.0, 0.0, 1.0) : 1.0;
}

std::map<std::string, std::string> colorMapOf(pugi::xml_node root) {
    std::map<std::string, std::string> map;
    pugi::xml_node clrMap = child(root, "clrMap");
    if (!clrMap) clrMap = child(child(root, "clrMapOvr"), "overrideClrMapping");
    for (pugi::xml_attribute a : clrMap.attributes()) map[a.name()] = a.value();
    return map;
}

FontValues resolveFont(pugi::xml_node rPr, pugi::xml_node txBody, const DeckStyles& styles) {
    const pugi::xml_node listLevel = child(child(child(txBody, "lstStyle"), "lvl1pPr"), "defRPr");
    return resolveFont({rPr, listLevel, styles.defaultRunProperties}, styles);
}

FontValues resolveFont(const std::vector<pugi::xml_node>& chain, const DeckStyles& styles,
                       bool transforms) {
    FontValues values;
    values.name = styles.minorLatin.isEmpty() ? QStringLiteral("Calibri") : styles.minorLatin;
    bool haveBold = false, haveSize = false, haveSpacing = false, haveName = false,
         haveColor = false;
    bool haveItalic = false, haveUnderline = false, haveStrike = false, haveEastAsian = false;
    auto flag = [](pugi::xml_attribute a) {
        const std::string v = a.value();
        return v == "1" || v == "true";
    };
    for (pugi::xml_node props : chain) {
        if (!props) continue;
        if (!haveBold && props.attribute("b")) {
            values.bold = flag(props.attribute("b"));
            haveBold = true;
        }
        if (!haveItalic && props.attribute("i")) {
            values.italic = flag(props.attribute("i"));
            haveItalic = true;
        }
        if (!haveUnderline && props.attribute("u")) {
            values.underline = std::string(props.attribute("u").value()) != "none";
            haveUnderline = true;
        }
        if (!haveStrike && props.attribute("strike")) {
            values.strike = std::string(props.attribute("strike").value()) != "noStrike";
            haveStrike = true;
        }
        if (!haveSize && props.attribute("sz")) {
            values.size = static_cast<float>(props.attribute("sz").as_int(1800)) / 100.0f;
            haveSize = true;
        }
        if (!haveSpacing && props.attribute("spc")) {
            values.spacing = static_cast<float>(props.attribute("spc").as_int(0)) / 100.0f;
            haveSpacing = true;
        }
        // A typeface element (a:latin, a:ea) names the face unless its theme reference is empty.
        auto typeface = [&](const char* local, QString& face, bool& have) {
            if (have) return;
            const QString named =
                resolveTypeface(qs(child(props, local).attribute("typeface").value()), styles);
            if (named.isEmpty()) return;
            face = named;
            have = true;
        };
        typeface("latin", values.name, haveName);
        typeface("ea", values.eastAsianName, haveEastAsian);
        if (!haveColor)
            if (pugi::xml_node fill = child(props, "solidFill"))
                haveColor = colorOf(fill, styles, &values.rgb, transforms);
    }
    if (!haveEastAsian) values.eastAsianName = styles.minorEastAsian;
    return values;
}

void setBold(pugi::xml_node rPr, bool bold) {
    pugi::xml_attribute b = rPr.attribute("b");
    if (!b) b = rPr.append_attribute("b");
    b.set_value(bold ? "1" : "0");
}

void setSize(pugi::xml_node rPr, float points) {
    pugi::xml_attribute sz = rPr.attribute("sz");
    if (!sz) sz = rPr.append_attribute("sz");
    sz.set_value(static_cast<int>(std::lround(points * 100.0f)));
}

void setTypeface(pugi::xml_node rPr, const QString& name) {
    pugi::xml_node latin = ensureChild(rPr, "latin", prefixOf(rPr), kRunPropertiesOrder);
    pugi::xml_attribute face = latin.attribute("typeface");
    if (!face) face = latin.append_attribute("typeface");
    face.set_value(name.toUtf8().constData());
}

void setColor(pugi::xml_node rPr, std::uint32_t rgb) {
    removeChildren(rPr, {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"});
    const std::string prefix = prefixOf(rPr);
    pugi::xml_node fill = ensureChild(rPr, "solidFill", prefix, kRunPropertiesOrder);
    const QString hex = QStringLiteral("%1").arg(rgb & 0xFFFFFFu, 6, 16, QChar('0')).toUpper();
    fill.append_child((prefix + "srgbClr").c_str())
        .append_attribute("val")
        .set_value(hex.toLatin1().constData());
}

void readTheme(const pugi::xml_document& theme, DeckStyles& styles) {
    const pugi::xml_node elements = child(child(theme, "theme"), "themeElements");
    const pugi::xml_node fonts = child(elements, "fontScheme");
    auto face = [&](const char* which, const char* script) {
        return qs(child(child(fonts, which), script).attribute("typeface").value());
    };
    styles.minorLatin = face("minorFont", "latin");
    styles.majorLatin = face("majorFont", "latin");
    styles.minorEastAsian = face("minorFont", "ea");
    styles.majorEastAsian = face("majorFont", "ea");
    styles.formatScheme = child(elements, "fmtScheme");
    const pugi::xml_node colors = child(elements, "clrScheme");
    for (pugi::xml_node c = colors.first_child(); c; c = c.next_sibling()) {
        std::uint32_t rgb = 0;
        if (c.type() == pugi::node_element && colorOf(c, styles, &rgb))
            styles.schemeColors[localName(c)] = rgb;
    }
}

}  // namespace minihost
