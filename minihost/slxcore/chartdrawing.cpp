// SPDX-License-Identifier: MIT
// A graphic frame's chart for drawing: its kind, title, categories and series as its part caches
// them (c:numCache, c:strCache), with their colours.
#include <QStringList>
#include <cmath>
#include <cstring>
#include <limits>

#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/drawing_p.h"
#include "minihost/slxcore/fills_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {
namespace {

// At most this many points a series and series a chart are read: what a slide can show.
constexpr int kPointsRead = 4096;
constexpr int kSeriesRead = 64;

// The elements of `parent` named `local`, in order.
std::vector<pugi::xml_node> elements(pugi::xml_node parent, const char* local) {
    std::vector<pugi::xml_node> found;
    for (pugi::xml_node n : parent.children())
        if (n.type() == pugi::node_element && std::strcmp(localName(n), local) == 0)
            found.push_back(n);
    return found;
}

// The cached points of a reference (c:val, c:cat, c:tx, ...): their text by index.
QStringList cachedPoints(pugi::xml_node reference) {
    pugi::xml_node cache;
    for (const char* ref : {"numRef", "strRef", "multiLvlStrRef"})
        if (pugi::xml_node r = child(reference, ref)) {
            cache = child(r, "numCache");
            if (!cache) cache = child(r, "strCache");
            if (!cache) cache = child(child(r, "multiLvlStrCache"), "lvl");
        }
    if (!cache) cache = child(reference, "numLit");
    if (!cache) cache = child(reference, "strLit");
    const int count = std::min(kPointsRead, child(cache, "ptCount").attribute("val").as_int());
    QStringList points;
    for (int i = 0; i < count; ++i) points << QString();
    for (pugi::xml_node pt : elements(cache, "pt")) {
        const int index = pt.attribute("idx").as_int(-1);
        if (index >= 0 && index < count) points[index] = qs(child(pt, "v").text().get());
    }
    if (count == 0)
        if (pugi::xml_node v = child(reference, "v")) points << qs(v.text().get());
    return points;
}

QString textOf(pugi::xml_node rich) {
    QString text;
    for (pugi::xml_node p : elements(rich, "p")) {
        if (!text.isEmpty()) text += QLatin1Char('\v');
        for (pugi::xml_node r : elements(p, "r")) text += qs(child(r, "t").text().get());
    }
    return text;
}

// The colour a series' or point's c:spPr gives it: its fill, else (lines) its outline's.
bool colorOfProperties(pugi::xml_node spPr, const DeckStyles& styles, std::uint32_t* rgb) {
    Fill fill;
    if (fillOf(spPr, styles, nullptr, &fill) && fill.kind != Fill::Kind::None) {
        *rgb = mainColor(fill);
        return true;
    }
    if (fillOf(child(spPr, "ln"), styles, nullptr, &fill) && fill.kind != Fill::Kind::None) {
        *rgb = mainColor(fill);
        return true;
    }
    return false;
}

std::uint32_t accent(const DeckStyles& styles, int index) {
    const std::string name = "accent" + std::to_string(index % 6 + 1);
    const auto it = styles.schemeColors.find(name);
    return it == styles.schemeColors.end() ? 0x4472C4u : it->second;
}

}  // namespace

ChartDrawing chartOf(const DeckCore& core, const DeckStyles& styles, const std::string& slidePart,
                     pugi::xml_node frame) {
    ChartDrawing chart;
    const pugi::xml_node data = child(child(frame, "graphic"), "graphicData");
    const std::string id = attribute(child(data, "chart"), "id").value();
    if (id.empty()) return chart;
    pugi::xml_node root;
    try {
        const std::string part = core.relatedPart(slidePart, id);
        if (part.empty()) return chart;
        root = child(core.keptPart(part)->doc.document_element(), "chart");
    } catch (const DeckError&) {
        return chart;  // a damaged chart part: its frame's place is drawn
    }
    if (pugi::xml_node title = child(root, "title"))
        chart.title = textOf(child(child(title, "tx"), "rich"));
    chart.legend = static_cast<bool>(child(root, "legend"));
    const pugi::xml_node plot = child(root, "plotArea");
    struct Kind {
        const char* element;
        const char* type;
    };
    const Kind kinds[] = {
        {"barChart", "bar"},           {"bar3DChart", "bar"},       {"lineChart", "line"},
        {"line3DChart", "line"},       {"areaChart", "area"},       {"area3DChart", "area"},
        {"pieChart", "pie"},           {"pie3DChart", "pie"},       {"ofPieChart", "pie"},
        {"doughnutChart", "doughnut"}, {"scatterChart", "scatter"}, {"radarChart", "radar"},
        {"bubbleChart", "scatter"}};
    pugi::xml_node group;
    for (const Kind& kind : kinds)
        if ((group = child(plot, kind.element))) {
            chart.type = QString::fromLatin1(kind.type);
            break;
        }
    if (!group) {
        chart.type = QStringLiteral("none");  // a kind not drawn: its title and frame
        return chart;
    }
    chart.horizontal = std::strcmp(child(group, "barDir").attribute("val").value(), "bar") == 0;
    const std::string grouping = child(group, "grouping").attribute("val").value();
    chart.stacked = grouping == "stacked" || grouping == "percentStacked";
    if (pugi::xml_node gap = child(group, "gapWidth"))
        chart.gapWidth = gap.attribute("val").as_double(150) / 100;
    const bool varyColors =
        child(group, "varyColors")
            .attribute("val")
            .as_bool(chart.type == QLatin1String("pie") || chart.type == QLatin1String("doughnut"));
    for (pugi::xml_node ser : elements(group, "ser")) {
        if (chart.series.size() >= kSeriesRead) break;
        ChartSeries series;
        const QStringList name = cachedPoints(child(ser, "tx"));
        series.name = name.isEmpty() ? QString() : name.first();
        const pugi::xml_node values = child(ser, "val") ? child(ser, "val") : child(ser, "yVal");
        for (const QString& v : cachedPoints(values)) {
            bool ok = false;
            const double value = v.toDouble(&ok);
            series.values << (ok ? value : std::numeric_limits<double>::quiet_NaN());
        }
        for (const QString& v : cachedPoints(child(ser, "xVal"))) series.xValues << v.toDouble();
        if (chart.categories.isEmpty()) chart.categories = cachedPoints(child(ser, "cat"));
        const int index = child(ser, "idx") ? child(ser, "idx").attribute("val").as_int()
                                            : static_cast<int>(chart.series.size());
        if (!colorOfProperties(child(ser, "spPr"), styles, &series.rgb))
            series.rgb = accent(styles, index);
        if (varyColors && chart.series.isEmpty())
            for (int i = 0; i < series.values.size(); ++i)
                series.pointColors[i] = accent(styles, i);
        for (pugi::xml_node dPt : elements(ser, "dPt")) {
            std::uint32_t rgb = 0;
            if (colorOfProperties(child(dPt, "spPr"), styles, &rgb))
                series.pointColors[child(dPt, "idx").attribute("val").as_int()] = rgb;
        }
        chart.series << series;
    }
    return chart;
}

}  // namespace minihost
