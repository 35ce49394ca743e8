// SPDX-License-Identifier: MIT
// Short ways for tests to reach objects of a deck's object model.
#pragma once

#include <QString>

#include "common/bstrholder.h"
#include "common/comptr.h"
#include "minihost/slxcore/deck.h"
#include "nvo/runtime.h"
#include "slxcore/slxoldapi.h"

namespace omtest {

using slxoldapi::ColorFormat;
using slxoldapi::Font;
using slxoldapi::Selection;
using slxoldapi::Shape;
using slxoldapi::ShapeRange;
using slxoldapi::Shapes;
using slxoldapi::TextFrame;
using slxoldapi::TextRange;

inline ComPtr<Selection> selection(minihost::Deck& deck) {
    ComPtr<Selection> result;
    deck.view()->selectionObject()->QueryInterface(slxoldapi::IID_Selection, result.putVoid());
    return result;
}

inline ComPtr<Shape> item(ShapeRange* range, int index) {
    VARIANT v{};
    v.vt = VT_I4;
    v.lVal = index;
    ComPtr<Shape> shape;
    range->Item(v, shape.put());
    return shape;
}

// The shape `id` of the current slide, reached as a client would: select it, take it.
inline ComPtr<Shape> shape(minihost::Deck& deck, int id) {
    deck.selectShapes({id});
    ComPtr<ShapeRange> range;
    selection(deck)->get_ShapeRange(range.put());
    ComPtr<Shape> result = item(range.get(), 1);
    deck.clearSelection();
    return result;
}

inline ComPtr<TextRange> wholeText(minihost::Deck& deck, int id) {
    ComPtr<TextFrame> frame;
    ComPtr<TextRange> range;
    if (ComPtr<Shape> s = shape(deck, id); s && SUCCEEDED(s->get_TextFrame(frame.put())))
        frame->get_TextRange(range.put());
    return range;
}

inline ComPtr<TextRange> characters(TextRange* range, int start, int length) {
    ComPtr<TextRange> result;
    range->Characters(start, length, result.put());
    return result;
}

inline QString text(TextRange* range) {
    BstrHolder b;
    if (!range || FAILED(range->get_Text(b.put()))) return QStringLiteral("<failed>");
    return b.toQString();
}

inline int length(TextRange* range) {
    std::int32_t n = -1;
    range->get_Length(&n);
    return n;
}

inline ComPtr<TextRange> insertAfter(TextRange* range, const QString& value) {
    BstrHolder b(value);
    ComPtr<TextRange> inserted;
    range->InsertAfter(b.get(), inserted.put());
    return inserted;
}

inline HRESULT putText(TextRange* range, const QString& value) {
    BstrHolder b(value);
    return range->put_Text(b.get());
}

inline ComPtr<Font> font(TextRange* range) {
    ComPtr<Font> result;
    range->get_Font(result.put());
    return result;
}

inline float size(TextRange* range) {
    float value = -1;
    font(range)->get_Size(&value);
    return value;
}

inline QString fontName(TextRange* range) {
    BstrHolder b;
    font(range)->get_Name(b.put());
    return b.toQString();
}

inline std::uint32_t rgb(TextRange* range) {
    ComPtr<ColorFormat> color;
    std::uint32_t value = 0xDEADBEEF;
    if (SUCCEEDED(font(range)->get_Color(color.put()))) color->get_RGB(&value);
    return value;
}

}  // namespace omtest
