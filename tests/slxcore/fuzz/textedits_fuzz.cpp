// SPDX-License-Identifier: MIT
// Fuzzes the object model's text edits against a plain string: random sequences of inserts,
// replacements and deletions through Characters, InsertAfter and put_Text, with undo and redo,
// on a text frame of two paragraphs. After every operation the frame's text is the string's;
// the deck written at the end reads back with that text; everything undone writes the deck's
// bytes as they were read.
//
// Input: one byte per operation (its kind and arguments in the bytes that follow).
#include <QByteArray>
#include <QRectF>
#include <QString>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzzinput.h"
#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/liveobjects.h"
#include "omhelpers.h"

using namespace omtest;

namespace {

void check(bool condition) {
    if (!condition) __builtin_trap();
}

const QString kStart = QStringLiteral("你好，世界\rab");

// A one-slide deck with one text box, as bytes, and the box's id.
const QByteArray& original(int* id) {
    static int boxId = 0;
    static const QByteArray bytes = [] {
        auto deck = minihost::Deck::create(1);
        boxId = deck->addTextBox(1, kStart, QRectF(10, 10, 400, 100));
        QString error;
        return deck->toBytes(&error);
    }();
    *id = boxId;
    return bytes;
}

// The fuzz input, with texts made of a few units that matter to positions.
struct Reader : FuzzInput {
    QString text() {
        static const QChar kUnits[] = {u'a', u'汉', u'字', u' ', u'\r', u'\v', u'Z', u'。'};
        QString value;
        for (int n = next() % 5; n > 0; --n) value += kUnits[next() % 8];
        return value;
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    int id = 0;
    const QByteArray& bytes = original(&id);
    QString error;
    std::unique_ptr<minihost::Deck> deck =
        minihost::Deck::load(bytes, QStringLiteral("fuzz.pptx"), &error);
    check(deck != nullptr);
    QString model = kStart;
    std::vector<QString> done, undone;  // the model's states, as the deck's undo steps hold them
    // Undo and redo: the model goes back to the state on top of `from`, and the state it leaves
    // goes on top of `to`.
    auto travel = [&model](std::vector<QString>& from, std::vector<QString>& to) {
        if (from.empty()) return;
        to.push_back(model);
        model = from.back();
        from.pop_back();
    };
    Reader in{data, size};
    for (int step = 0; step < 64 && in.more(); ++step) {
        const int op = in.next() % 6;
        const int steps = deck->undoSteps().size();
        const QString before = model;
        if (op < 3) {
            ComPtr<TextRange> all = wholeText(*deck, id);
            check(all.get() != nullptr);
            const int start = in.next() % (model.size() + 2);
            const int length = in.next() % 6;
            ComPtr<TextRange> range = characters(all.get(), start, length);
            if (start > model.size()) {
                check(range.get() == nullptr);  // past the end: refused
                continue;
            }
            check(range.get() != nullptr);
            const int taken = std::min(length, static_cast<int>(model.size()) - start);
            check(text(range.get()) == model.mid(start, taken));
            if (op == 0) {
                const QString value = in.text();
                ComPtr<TextRange> inserted = insertAfter(range.get(), value);
                check(inserted.get() != nullptr && text(inserted.get()) == value);
                model.insert(start + taken, value);
            } else {
                const QString value = op == 1 ? in.text() : QString();
                check(SUCCEEDED(putText(range.get(), value)));
                check(text(range.get()) == value);
                model.replace(start, taken, value);
            }
            if (deck->undoSteps().size() > steps) {
                done.push_back(before);
                undone.clear();
            }
        } else if (op == 3) {
            check(deck->undo() == !done.empty());
            travel(done, undone);
        } else if (op == 4) {
            check(deck->redo() == !undone.empty());
            travel(undone, done);
        } else {
            const QByteArray written = deck->toBytes(&error);
            check(!written.isEmpty());
            auto again = minihost::Deck::load(written, QStringLiteral("again.pptx"), &error);
            check(again && again->text(1, id) == model);
        }
        check(deck->text(1, id) == model);
    }
    while (deck->undo()) {
    }
    check(deck->text(1, id) == kStart);
    check(deck->toBytes(&error) == bytes);
    deck.reset();
    check(minihost::liveObjectCount() == 0);
    return 0;
}
