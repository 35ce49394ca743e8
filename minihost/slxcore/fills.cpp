// SPDX-License-Identifier: MIT
#include "minihost/slxcore/fills_p.h"

#include <algorithm>
#include <vector>

#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

constexpr double kPercent = 100000.0;  // DrawingML percentages are thousandths of a percent

void gradientOf(pugi::xml_node gradient, const DeckStyles& styles, Fill* fill,
                const std::uint32_t* placeholder) {
    fill->kind = Fill::Kind::Gradient;
    std::vector<GradientStop> stops;
    for (pugi::xml_node gs : child(gradient, "gsLst").children()) {
        if (std::string(localName(gs)) != "gs") continue;
        GradientStop stop;
        stop.position = std::clamp(gs.attribute("pos").as_double() / kPercent, 0.0, 1.0);
        if (!colorOf(gs, styles, &stop.rgb, true, placeholder)) continue;
        stop.alpha = alphaOf(gs);
        stops.push_back(stop);
    }
    std::stable_sort(stops.begin(), stops.end(), [](const GradientStop& a, const GradientStop& b) {
        return a.position < b.position;
    });
    for (const GradientStop& stop : stops) fill->stops << stop;
    if (pugi::xml_node lin = child(gradient, "lin"))
        fill->angle = lin.attribute("ang").as_double() / 60000.0;
    if (pugi::xml_node path = child(gradient, "path")) {
        fill->path = qs(path.attribute("path").value());
        if (fill->path.isEmpty()) fill->path = QStringLiteral("circle");
        // The focus: the rectangle inset by l, t, r and b (fractions of the box).
        const pugi::xml_node to = child(path, "fillToRect");
        const double l = to.attribute("l").as_double() / kPercent;
        const double t = to.attribute("t").as_double() / kPercent;
        const double r = to.attribute("r").as_double() / kPercent;
        const double b = to.attribute("b").as_double() / kPercent;
        fill->focus = QRectF(l, t, std::max(0.0, 1 - l - r), std::max(0.0, 1 - t - b));
    }
    if (!fill->stops.isEmpty()) fill->rgb = fill->stops.first().rgb;
}

}  // namespace

bool fillOf(pugi::xml_node properties, const DeckStyles& styles, const PartOfId& partOf, Fill* fill,
            const std::uint32_t* placeholder) {
    *fill = Fill();
    if (child(properties, "noFill")) return true;
    if (pugi::xml_node solid = child(properties, "solidFill")) {
        if (colorOf(solid, styles, &fill->rgb, true, placeholder)) {
            fill->kind = Fill::Kind::Solid;
            fill->alpha = alphaOf(solid);
        }
        return true;
    }
    if (pugi::xml_node gradient = child(properties, "gradFill")) {
        gradientOf(gradient, styles, fill, placeholder);
        // A gradient without stops names no colours: the fill is inherited (the shape style's).
        if (fill->stops.isEmpty()) {
            *fill = Fill();
            return false;
        }
        return true;
    }
    if (pugi::xml_node blipFill = child(properties, "blipFill")) {
        const std::string id = attribute(child(blipFill, "blip"), "embed").value();
        fill->picture = id.empty() || !partOf ? QString() : partOf(id);
        fill->kind = fill->picture.isEmpty() ? Fill::Kind::None : Fill::Kind::Picture;
        fill->tile = static_cast<bool>(child(blipFill, "tile"));
        return true;
    }
    if (pugi::xml_node pattern = child(properties, "pattFill")) {
        fill->kind = Fill::Kind::Pattern;
        fill->pattern = qs(pattern.attribute("prst").value());
        colorOf(child(pattern, "fgClr"), styles, &fill->rgb, true, placeholder);
        colorOf(child(pattern, "bgClr"), styles, &fill->patternBackground, true, placeholder);
        return true;
    }
    if (child(properties, "grpFill")) return true;  // the group's fill: not drawn here
    return false;
}

bool themeFillOf(pugi::xml_node reference, const DeckStyles& styles, const PartOfId& partOf,
                 Fill* fill) {
    const int index = reference.attribute("idx").as_int();
    if (index <= 0) return false;
    const char* list = index >= 1001 ? "bgFillStyleLst" : "fillStyleLst";
    int n = index >= 1001 ? index - 1000 : index;
    std::uint32_t color = 0;
    const bool colored = colorOf(reference, styles, &color, true);
    for (pugi::xml_node style : child(styles.formatScheme, list).children()) {
        if (style.type() != pugi::node_element || --n > 0) continue;
        // A style is one fill element: wrap its parent's view of it.
        pugi::xml_document holder;
        holder.append_copy(style);
        return fillOf(holder, styles, partOf, fill, colored ? &color : nullptr);
    }
    // No theme (or a short one): the reference's own colour.
    if (!colored) return false;
    *fill = Fill();
    fill->kind = Fill::Kind::Solid;
    fill->rgb = color;
    return true;
}

std::uint32_t mainColor(const Fill& fill) {
    return fill.kind == Fill::Kind::Gradient && !fill.stops.isEmpty() ? fill.stops.first().rgb
                                                                      : fill.rgb;
}

}  // namespace minihost
