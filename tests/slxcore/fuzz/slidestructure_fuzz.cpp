// SPDX-License-Identifier: MIT
// Fuzzes the structure of slides: groups nested and left open, plain elements nested, ids given
// twice or out of range, pictures, slide parts listed more than once or not at all. The deck either
// loads or is refused in one line. One that loads: every shape listed is found by its id (the
// first of that id), drawn, and its text read; a text box added through the object model on every
// slide takes an id above every numeric id of the part and is found; the deck written reads back
// with the same shapes.
//
// Input: the first byte gives the number of slide parts (1 to 4); then one byte per step, each
// building the current slide or ending it, with its arguments in the bytes that follow; what is
// left when the slides are built lists them (slide numbers, repeats allowed).
#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "fuzzinput.h"
#include "hostiledecks.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"

using namespace omtest;

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

const QString kText = QStringLiteral("床前明月光");

// One slide's shapes, from the steps of the input up to its end.
QByteArray slideShapes(FuzzInput& in) {
    QByteArray shapes;
    int open = 0;
    while (in.more()) {
        const int step = in.next();
        switch (step % 8) {
            case 0:  // a group opens
                shapes += "<p:grpSp><p:nvGrpSpPr><p:cNvPr id=\"" + QByteArray::number(in.next()) +
                          "\" name=\"g\"/><p:cNvGrpSpPr/><p:nvPr/></p:nvGrpSpPr><p:grpSpPr><a:xfrm>"
                          "<a:off x=\"" +
                          QByteArray::number(in.next() * 10000) + "\" y=\"0\"/><a:ext cx=\"" +
                          QByteArray::number(in.next() * 10000) +
                          "\" cy=\"100\"/><a:chOff x=\"0\" y=\"0\"/><a:chExt cx=\"" +
                          QByteArray::number(in.next() * 10000) +
                          "\" cy=\"100\"/></a:xfrm></p:grpSpPr>";
                ++open;
                break;
            case 1:  // the innermost group closes
                if (open > 0) {
                    shapes += "</p:grpSp>";
                    --open;
                }
                break;
            case 2:  // a text box, its id perhaps one given before
                shapes += hostile::textBox(in.next(), kText.left(in.next() % 6), in.next() * 9000);
                break;
            case 3: {  // plain elements nested, perhaps past the limit
                const int depth = in.next() * 2;
                shapes += "<x:n xmlns:x=\"urn:f\">" + QByteArray("<x:n>").repeated(depth) +
                          QByteArray("</x:n>").repeated(depth + 1);
                break;
            }
            case 4:  // a picture
                shapes += hostile::picture(in.next(), in.next() % 2 ? "rId2" : "rId9");
                break;
            case 5:  // an element with a large numeric id
                shapes += "<x:i xmlns:x=\"urn:f\" id=\"" +
                          QByteArray::number(static_cast<qulonglong>(in.next()) * 16777259ull) +
                          "\"/>";
                break;
            case 6:  // every group closes
                shapes += QByteArray("</p:grpSp>").repeated(open);
                open = 0;
                break;
            default:  // the slide ends
                return shapes + QByteArray("</p:grpSp>").repeated(open);
        }
    }
    return shapes + QByteArray("</p:grpSp>").repeated(open);
}

// What a slide lists: each shape's id, in order.
std::vector<int> ids(const minihost::Deck& deck, int slide) {
    std::vector<int> result;
    for (const minihost::ShapeInfo& shape : deck.shapes(slide)) result.push_back(shape.id);
    return result;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput in{data, size};
    const int parts = 1 + in.next() % 4;
    std::vector<hostile::Slide> slides;
    static const hostile::Media media{QStringLiteral("ppt/media/image1.png"),
                                      hostile::greyPng(3, 2, 9)};
    for (int i = 0; i < parts; ++i)
        slides.push_back({hostile::slideXml(slideShapes(in)), {media.part}});
    std::vector<int> listed;
    while (in.more() && listed.size() < 8) listed.push_back(1 + in.next() % parts);
    if (listed.empty()) listed.push_back(1);

    QString error;
    const std::unique_ptr<minihost::Deck> deck = minihost::Deck::load(
        hostile::deck(slides, {media}, listed), QStringLiteral("fuzz.pptx"), &error);
    if (!deck) {
        check(!error.isEmpty() && !error.contains(QLatin1Char('\n')));
        return 0;
    }
    for (int slide = 1; slide <= deck->slideCount(); ++slide) {
        const QList<minihost::ShapeInfo> shapes = deck->shapes(slide);
        std::map<int, const minihost::ShapeInfo*> first;
        for (const minihost::ShapeInfo& shape : shapes) first.emplace(shape.id, &shape);
        for (const auto& [id, shape] : first) {
            check(deck->text(slide, id) == (shape->hasTextFrame ? shape->text : QString()));
            check(deck->placeOf(slide, id) == shape->box);
        }
        const minihost::SlideDrawing drawing = deck->drawing(slide);
        check(drawing.shapes.size() == shapes.size());
        for (const minihost::DrawnShape& drawn : drawing.shapes)
            if (!drawn.picture.isEmpty()) deck->pictures()->picture(drawn.picture, QSize(40, 30));

        // A new box through the object model: a fresh id, above every one of the part.
        deck->setCurrentSlide(slide);
        ComPtr<Shapes> collection;
        check(SUCCEEDED(deck->view()->get_Shapes(collection.put())));
        ComPtr<IUnknown> made;
        check(SUCCEEDED(collection->AddTextbox(1, 10, 10, 100, 20, made.put())));
        const std::vector<int> after = ids(*deck, slide);
        check(after.size() == static_cast<std::size_t>(shapes.size()) + 1);
        for (std::size_t i = 0; i + 1 < after.size(); ++i)
            check(after.back() > after[i] || after.back() == 2147483647);
        check(deck->text(slide, after.back()).isEmpty());
    }
    check(minihost::liveObjectCount() == 0);

    const QByteArray written = deck->toBytes(&error);
    check(!written.isEmpty());
    const std::unique_ptr<minihost::Deck> again =
        minihost::Deck::load(written, QStringLiteral("again.pptx"), &error);
    check(again != nullptr);
    check(again->slideCount() == deck->slideCount());
    for (int slide = 1; slide <= deck->slideCount(); ++slide)
        check(ids(*again, slide) == ids(*deck, slide));
    return 0;
}
