// SPDX-License-Identifier: MIT
// Reading, editing and writing a 200-slide deck through the stand-in object model: read the
// .pptx, put readings after the text of one shape on every slide, write the .pptx.
#include <benchmark/benchmark.h>

#include <QString>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "minihost/slxcore/deck.h"
#include "nvo/runtime.h"

namespace {

constexpr int kSlides = 200;

// The deck every run starts from, made once: on each slide a title-like box and a body box of
// Chinese text.
const QByteArray& sourceDeck() {
    static const QByteArray bytes = [] {
        auto deck = minihost::Deck::create(kSlides);
        for (int slide = 1; slide <= kSlides; ++slide) {
            deck->addTextBox(slide, QStringLiteral("第%1课").arg(slide), QRectF(40, 20, 880, 60));
            deck->addTextBox(
                slide, QStringLiteral("我们一起学习汉语拼音，今天天气很好。\r老师说：大家好！"),
                QRectF(40, 100, 880, 300));
        }
        QString error;
        return deck->toBytes(&error);
    }();
    return bytes;
}

// Readings after the body text of every slide, through the object model as the add-on does it.
void editEverySlide(minihost::Deck& deck) {
    BstrHolder readings(QStringLiteral("（wǒ men yì qǐ xué xí hàn yǔ pīn yīn）"));
    for (int slide = 1; slide <= deck.slideCount(); ++slide) {
        deck.setCurrentSlide(slide);
        deck.selectShapes({deck.shapes(slide).last().id});
        ComPtr<slxoldapi::Selection> selection;
        deck.view()->selectionObject()->QueryInterface(slxoldapi::IID_Selection,
                                                       selection.putVoid());
        ComPtr<slxoldapi::ShapeRange> shapes;
        selection->get_ShapeRange(shapes.put());
        VARIANT first{};
        first.vt = VT_I4;
        first.lVal = 1;
        ComPtr<slxoldapi::Shape> shape;
        shapes->Item(first, shape.put());
        ComPtr<slxoldapi::TextFrame> frame;
        ComPtr<slxoldapi::TextRange> text;
        ComPtr<slxoldapi::TextRange> inserted;
        shape->get_TextFrame(frame.put());
        frame->get_TextRange(text.put());
        text->InsertAfter(readings.get(), inserted.put());
    }
}

void ReadEditWrite200Slides(benchmark::State& state) {
    const QByteArray& source = sourceDeck();
    for (auto _ : state) {
        QString error;
        auto deck = minihost::Deck::load(source, QStringLiteral("bench.pptx"), &error);
        editEverySlide(*deck);
        const QByteArray written = deck->toBytes(&error);
        benchmark::DoNotOptimize(written.size());
        if (written.isEmpty()) state.SkipWithError(error.toUtf8().constData());
    }
    state.counters["slides"] = kSlides;
    state.counters["deck_kB"] = source.size() / 1024.0;
}
BENCHMARK(ReadEditWrite200Slides)->Unit(benchmark::kMillisecond);

void Read200Slides(benchmark::State& state) {
    const QByteArray& source = sourceDeck();
    for (auto _ : state) {
        QString error;
        auto deck = minihost::Deck::load(source, QStringLiteral("bench.pptx"), &error);
        benchmark::DoNotOptimize(deck->slideCount());
    }
}
BENCHMARK(Read200Slides)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
