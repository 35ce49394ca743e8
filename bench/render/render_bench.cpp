// SPDX-License-Identifier: MIT
// Drawing the slides of a 200-slide deck 640 pixels wide with the one slide renderer (what
// `zphonetic render --width 640` and the studio's canvas do for each slide): a gradient
// background from the master, on every slide a title and a bulleted body of Chinese and Latin
// text, filled preset shapes with gradients and outlines, and a styled 4 x 4 table. One
// iteration draws one slide, going round the deck; the deck is read once.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>

#include "decktestutil.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxrender/sliderenderer.h"

namespace {

constexpr int kSlides = 200;
constexpr int kWidth = 640;

QByteArray slideShapes(int slide) {
    auto sp = [](int id, const char* geometry, const QByteArray& place, const QByteArray& fill,
                 const QByteArray& body) {
        return "<p:sp><p:nvSpPr><p:cNvPr id=\"" + QByteArray::number(id) +
               "\" name=\"S\"/><p:cNvSpPr/><p:nvPr/></p:nvSpPr><p:spPr><a:xfrm>" + place +
               "</a:xfrm><a:prstGeom prst=\"" + geometry + "\"><a:avLst/></a:prstGeom>" + fill +
               "</p:spPr><p:txBody><a:bodyPr/><a:lstStyle/>" + body + "</p:txBody></p:sp>";
    };
    auto place = [](int x, int y, int w, int h) {
        const int emu = 12700;
        return "<a:off x=\"" + QByteArray::number(x * emu) + "\" y=\"" +
               QByteArray::number(y * emu) + "\"/><a:ext cx=\"" + QByteArray::number(w * emu) +
               "\" cy=\"" + QByteArray::number(h * emu) + "\"/>";
    };
    const QByteArray run = "<a:r><a:rPr lang=\"zh-CN\" sz=\"2000\"/><a:t>";
    QByteArray body;
    for (int i = 0; i < 5; ++i)
        body += "<a:p><a:pPr marL=\"342900\" indent=\"-342900\"><a:buChar char=\"•\"/></a:pPr>" +
                run + "我们一起学习汉语拼音 lesson " + QByteArray::number(i + 1) +
                "，今天天气很好。</a:t></a:r></a:p>";
    QByteArray cells;
    for (int r = 0; r < 4; ++r) {
        cells += "<a:tr h=\"381000\">";
        for (int c = 0; c < 4; ++c)
            cells += "<a:tc><a:txBody><a:bodyPr/><a:lstStyle/><a:p>" + run + "行" +
                     QByteArray::number(r) + QByteArray::number(c) +
                     "</a:t></a:r></a:p></a:txBody><a:tcPr><a:lnB w=\"12700\"><a:solidFill>"
                     "<a:schemeClr val=\"accent1\"/></a:solidFill></a:lnB><a:solidFill>"
                     "<a:schemeClr val=\"accent1\"><a:tint val=\"" +
                     QByteArray(r == 0 ? "100000" : "20000") +
                     "\"/></a:schemeClr></a:solidFill></a:tcPr></a:tc>";
        cells += "</a:tr>";
    }
    const QByteArray gradient =
        "<a:gradFill><a:gsLst><a:gs pos=\"0\"><a:schemeClr val=\"accent2\"/></a:gs><a:gs "
        "pos=\"100000\"><a:schemeClr val=\"accent2\"><a:lumMod val=\"50000\"/></a:schemeClr>"
        "</a:gs></a:gsLst><a:lin ang=\"2700000\"/></a:gradFill><a:ln w=\"19050\"><a:solidFill>"
        "<a:srgbClr val=\"333333\"/></a:solidFill></a:ln>";
    return sp(2, "rect", place(40, 20, 880, 60), "<a:noFill/>",
              "<a:p>" + run + "第" + QByteArray::number(slide) + "课 Lesson</a:t></a:r></a:p>") +
           sp(3, "rect", place(40, 100, 520, 300), "<a:noFill/>", body) +
           sp(4, "roundRect", place(600, 100, 320, 80), gradient,
              "<a:p>" + run + "拼音</a:t></a:r></a:p>") +
           sp(5, "rightArrow", place(600, 200, 150, 60), gradient, "<a:p/>") +
           sp(6, "ellipse", place(770, 200, 150, 60), gradient, "<a:p/>") +
           "<p:graphicFrame><p:nvGraphicFramePr><p:cNvPr id=\"7\" name=\"Table\"/>"
           "<p:cNvGraphicFramePr/><p:nvPr/></p:nvGraphicFramePr><p:xfrm>" +
           place(600, 290, 320, 120) +
           "</p:xfrm><a:graphic><a:graphicData "
           "uri=\"http://schemas.openxmlformats.org/drawingml/2006/table\"><a:tbl><a:tblPr/>"
           "<a:tblGrid><a:gridCol w=\"1016000\"/><a:gridCol w=\"1016000\"/><a:gridCol "
           "w=\"1016000\"/><a:gridCol w=\"1016000\"/></a:tblGrid>" +
           cells + "</a:tbl></a:graphicData></a:graphic></p:graphicFrame>";
}

const minihost::Deck& benchDeck() {
    static const std::unique_ptr<minihost::Deck> deck = [] {
        QString error;
        const QByteArray blank = minihost::Deck::create(kSlides)->toBytes(&error);
        decktest::Parts parts;
        for (const decktest::ZipEntry& entry : decktest::zipEntries(blank))
            parts.emplace_back(entry.name, entry.data);
        const QString master = QStringLiteral("ppt/slideMasters/slideMaster1.xml");
        QByteArray xml = decktest::partOf(parts, master);
        xml.replace("<p:spTree>",
                    "<p:bg><p:bgPr><a:gradFill><a:gsLst><a:gs pos=\"0\"><a:schemeClr "
                    "val=\"bg1\"/></a:gs><a:gs pos=\"100000\"><a:schemeClr val=\"accent1\">"
                    "<a:tint val=\"30000\"/></a:schemeClr></a:gs></a:gsLst><a:lin "
                    "ang=\"5400000\"/></a:gradFill></p:bgPr></p:bg><p:spTree>");
        parts = decktest::replaced(parts, master, xml);
        for (int slide = 1; slide <= kSlides; ++slide) {
            const QString name = QStringLiteral("ppt/slides/slide%1.xml").arg(slide);
            QByteArray part = decktest::partOf(parts, name);
            part.replace("</p:grpSpPr></p:spTree>",
                         "</p:grpSpPr>" + slideShapes(slide) + "</p:spTree>");
            parts = decktest::replaced(parts, name, part);
        }
        auto loaded =
            minihost::Deck::load(decktest::makeZip(parts), QStringLiteral("bench.pptx"), &error);
        if (!loaded) qFatal("the benchmark's deck: %s", qPrintable(error));
        return loaded;
    }();
    return *deck;
}

void RenderSlideAt640(benchmark::State& state) {
    const minihost::Deck& deck = benchDeck();
    int slide = 0;
    for (auto _ : state) {
        const QImage image = minihost::renderSlide(deck, slide % kSlides + 1, kWidth);
        benchmark::DoNotOptimize(image.constBits());
        ++slide;
    }
    state.counters["slides"] = kSlides;
    // What a slide holds, so a broken deck shows: 6 shapes, 16 cells.
    const minihost::SlideDrawing drawing = deck.drawing(1);
    state.counters["shapes"] = drawing.shapes.size();
    state.counters["cells"] = drawing.shapes.isEmpty() ? 0 : drawing.shapes.last().cells.size();
    if (drawing.backgroundFill.kind != minihost::Fill::Kind::Gradient)
        state.SkipWithError("the master's gradient background is missing");
}
BENCHMARK(RenderSlideAt640)->Unit(benchmark::kMillisecond)->Iterations(kSlides);

}  // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);  // the text layout needs fonts
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
