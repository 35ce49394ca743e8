// SPDX-License-Identifier: MIT
// Reading what the selection designates.
#include "common/bstrholder.h"
#include "common/comptr.h"
#include "document/textaccess.h"
#include "nvo/runtime.h"
#include "nvo/zapplication.h"

namespace {

using slxoldapi::Selection;
using slxoldapi::Shape;
using slxoldapi::ShapeRange;
using slxoldapi::TextFrame;
using slxoldapi::TextRange;

ComPtr<Selection> activeSelection(IZApplication* coreApp) {
    if (!coreApp) return {};
    slxoldapi::DocumentView* view = coreApp->activeView();
    if (!view) return {};
    IUnknown* selection = view->selectionObject();
    if (!selection) return {};
    ComPtr<Selection> result;
    selection->QueryInterface(slxoldapi::IID_Selection, result.putVoid());
    return result;
}

// Item(index) with the index as a VT_I4 VARIANT, cleared right after the call.
HRESULT itemAt(ShapeRange* range, std::int32_t index, Shape** shape) {
    VARIANT position{};
    position.vt = VT_I4;
    position.lVal = index;
    const HRESULT hr = range->Item(position, shape);
    _MVariantClear(&position);
    return hr;
}

std::int32_t lengthOf(TextRange* range) {
    std::int32_t length = 0;
    if (!range || FAILED(range->get_Length(&length))) return 0;
    return length;
}

}  // namespace

void readSelectedTexts(IZApplication* coreApp, QStringList& out) {
    const ComPtr<Selection> selection = activeSelection(coreApp);
    if (!selection) return;

    ComPtr<TextRange> selected;
    if (SUCCEEDED(selection->get_TextRange(selected.put())) && selected &&
        lengthOf(selected.get()) >= 1) {
        BstrHolder text;
        if (SUCCEEDED(selected->get_Text(text.put()))) out << text.toQString();
        return;
    }

    ComPtr<ShapeRange> shapes;
    std::int32_t count = 0;
    if (FAILED(selection->get_ShapeRange(shapes.put())) || !shapes ||
        FAILED(shapes->get_Count(&count)))
        return;
    // An empty shape is skipped; a call that fails (a picture has no text frame) ends the walk,
    // and what was read so far stands.
    for (std::int32_t i = 1; i <= count; ++i) {
        ComPtr<Shape> shape;
        ComPtr<TextFrame> frame;
        ComPtr<TextRange> whole;
        std::int32_t length = 0;
        if (FAILED(itemAt(shapes.get(), i, shape.put())) || !shape ||
            FAILED(shape->get_TextFrame(frame.put())) || !frame ||
            FAILED(frame->get_TextRange(whole.put())) || !whole ||
            FAILED(whole->get_Length(&length)))
            return;
        if (length < 1) continue;
        BstrHolder text;
        if (FAILED(whole->get_Text(text.put()))) return;
        out << text.toQString();
    }
}

void findTextTarget(IZApplication* coreApp, Shape*& shape, TextFrame*& frame, TextRange*& range) {
    shape = nullptr;
    frame = nullptr;
    range = nullptr;
    const ComPtr<Selection> selection = activeSelection(coreApp);
    if (!selection) return;
    ComPtr<ShapeRange> shapes;
    std::int32_t count = 0;
    if (FAILED(selection->get_ShapeRange(shapes.put())) || !shapes ||
        FAILED(shapes->get_Count(&count)) || count <= 0)
        return;

    if (count > 1) {
        for (std::int32_t i = 1; i <= count; ++i) {
            ComPtr<Shape> candidate;
            if (FAILED(itemAt(shapes.get(), i, candidate.put())) || !candidate) continue;
            // Written straight into `frame`: the previous frame is overwritten, not released.
            // This keeps the add-on's original behaviour and is deliberate.
            if (FAILED(candidate->get_TextFrame(&frame)) || !frame) continue;
            ComPtr<TextRange> whole;
            if (FAILED(frame->get_TextRange(whole.put())) || !whole) continue;
            if (lengthOf(whole.get()) > 0) {
                shape = candidate.detach();
                return;
            }
        }
        return;
    }

    if (FAILED(selection->get_TextRange(&range)) || !range || lengthOf(range) <= 0) return;
    ComPtr<Shape> holder;
    if (FAILED(itemAt(shapes.get(), 1, holder.put())) || !holder) return;
    TextFrame* found = nullptr;
    if (SUCCEEDED(holder->get_TextFrame(&found))) frame = found;
    shape = holder.detach();
}

void readSelectionStyle(IZApplication* coreApp, TextStyle& style, Shape*& shape) {
    Shape* found = nullptr;
    TextFrame* rawFrame = nullptr;
    TextRange* rawRange = nullptr;
    findTextTarget(coreApp, found, rawFrame, rawRange);
    const ComPtr<TextFrame> frame = ComPtr<TextFrame>::adopt(rawFrame);
    const ComPtr<TextRange> range = ComPtr<TextRange>::adopt(rawRange);
    shape = found;
    if (!found) return;
    if (range) {
        readTextStyle(range.get(), style);
    } else if (frame) {
        ComPtr<TextRange> whole;
        if (SUCCEEDED(frame->get_TextRange(whole.put()))) readTextStyle(whole.get(), style);
    }
}
