// SPDX-License-Identifier: MIT
// Fuzzes the deck reader: any bytes either load as a deck or are refused with a message; a deck
// that loads is written again and the result loads again, with the same slides and texts.
#include <QByteArray>
#include <QString>
#include <cstddef>
#include <cstdint>

#include "minihost/slxcore/deck.h"

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<int>(size));
    QString error;
    std::unique_ptr<minihost::Deck> deck =
        minihost::Deck::load(bytes, QStringLiteral("fuzz.pptx"), &error);
    if (!deck) {
        check(!error.isEmpty());
        return 0;
    }
    const QByteArray written = deck->toBytes(&error);
    check(!written.isEmpty());
    std::unique_ptr<minihost::Deck> again =
        minihost::Deck::load(written, QStringLiteral("again.pptx"), &error);
    check(again != nullptr);
    check(again->slideCount() == deck->slideCount());
    for (int slide = 1; slide <= deck->slideCount(); ++slide) {
        const QList<minihost::ShapeInfo> before = deck->shapes(slide);
        const QList<minihost::ShapeInfo> after = again->shapes(slide);
        check(before.size() == after.size());
        for (int i = 0; i < before.size(); ++i) check(before[i].text == after[i].text);
    }
    return 0;
}
