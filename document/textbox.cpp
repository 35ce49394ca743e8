// SPDX-License-Identifier: MIT
// A new text box of readings on the active slide.
#include "common/bstrholder.h"
#include "common/comptr.h"
#include "document/textaccess.h"
#include "nvo/zapplication.h"

namespace {

constexpr float kHeight = 700.0f;

}  // namespace

int insertReadingTextBox(IZApplication* coreApp, const QString& text, const TextStyle* style,
                         int left, int top, slxoldapi::Shape** out, int charWidth) {
    if (!coreApp || !out || text.isEmpty()) return 0;
    slxoldapi::DocumentView* view = coreApp->activeView();
    if (!view) return 0;
    ComPtr<slxoldapi::Shapes> shapes;
    if (FAILED(view->get_Shapes(shapes.put())) || !shapes) return 0;

    std::int64_t width = (static_cast<std::int64_t>(text.size()) + 1) * charWidth;
    if (width >= kReadingBoxMaxWidth + 1) width = kReadingBoxMaxWidth;
    ComPtr<IUnknown> made;
    if (FAILED(shapes->AddTextbox(1, static_cast<float>(left), static_cast<float>(top),
                                  static_cast<float>(width), kHeight, made.put())) ||
        !made)
        return 0;
    ComPtr<slxoldapi::Shape> shape = made.query<slxoldapi::Shape>(slxoldapi::IID_Shape);
    ComPtr<slxoldapi::TextFrame> frame;
    ComPtr<slxoldapi::TextRange> range;
    if (!shape || FAILED(shape->get_TextFrame(frame.put())) || !frame ||
        FAILED(frame->get_TextRange(range.put())) || !range)
        return 0;
    // Formatted while still empty, so the text put in next takes the format up.
    if (style) applyTextStyle(range.get(), style);
    BstrHolder value(text);
    range->put_Text(value.get());
    *out = shape.detach();
    return 1;
}
