// SPDX-License-Identifier: MIT
// The presentation object model: COM-like interfaces over the open presentation.
//
// Conventions (nvo/com.h): IUnknown first; every other operation returns an HRESULT, negative =
// failure; objects handed out are AddRef'd and released once by the receiver; strings are BSTRs
// (going in, the caller keeps ownership; coming out, the receiver frees them).
//
// Text positions and lengths count UTF-16 units. A paragraph break and a line break count one
// unit each; a field (a slide number, a date) is indivisible. Sizes and coordinates are points.
//
// A text range is live: it keeps designating the same characters while text is inserted or
// removed elsewhere in its frame.
//
// Slot order within an interface is frozen; new operations go into new interfaces.
#pragma once

#include <cstdint>

#include "hostexport.h"
#include "nvo/com.h"

namespace slxoldapi {

struct Shapes;
struct ShapeRange;
struct Shape;
struct TextFrame;
struct TextRange;
struct Font;
struct ColorFormat;

// Interface ids of the objects reached through QueryInterface, exported by the core library.
extern ZHOST_API const GUID IID_Selection;
extern ZHOST_API const GUID IID_Shape;

// The view of one presentation window, showing one slide.
struct DocumentView : IUnknown {
    // The view's selection object (answers QueryInterface(IID_Selection)), or null. A plain
    // pointer: not AddRef'd, valid while the view lives; the caller does not release it.
    virtual IUnknown* selectionObject() = 0;
    // The shapes of the slide shown in the view.
    virtual HRESULT get_Shapes(Shapes** shapes) = 0;
};

// What the user selected in a view: either a set of shapes, or a run of text in one shape.
struct Selection : IUnknown {
    // The selected shapes, in selection order; with a text selection, the one shape holding it.
    virtual HRESULT get_ShapeRange(ShapeRange** range) = 0;
    // The selected run of text (length 0 for a bare cursor). Fails, with *range null, when the
    // selection is not in text.
    virtual HRESULT get_TextRange(TextRange** range) = 0;
};

struct ShapeRange : IUnknown {
    virtual HRESULT get_Count(std::int32_t* count) = 0;
    // The shape at the 1-based position `index` (a VT_I4 VARIANT).
    virtual HRESULT Item(VARIANT index, Shape** shape) = 0;
};

// The shapes of a slide.
struct Shapes : IUnknown {
    // Adds a text box (orientation 1 = horizontal) at `left`, `top`, `width` by `height` with the
    // host's default text formatting, on top of the slide's other shapes; undoable. The new
    // shape answers QueryInterface(IID_Shape).
    virtual HRESULT AddTextbox(std::int32_t orientation, float left, float top, float width,
                               float height, IUnknown** shape) = 0;
};

struct Shape : IUnknown {
    // Selects the shape: `replace` -1 replaces the selection, 0 adds the shape to it.
    virtual HRESULT Select(std::int32_t replace) = 0;
    virtual HRESULT put_Width(float width) = 0;
    // The shape's text frame; fails for shapes that hold no text.
    virtual HRESULT get_TextFrame(TextFrame** frame) = 0;
};

struct TextFrame : IUnknown {
    // The frame's whole text.
    virtual HRESULT get_TextRange(TextRange** range) = 0;
    // 1: the shape's height follows its text from now on; 0: it keeps its size.
    virtual HRESULT put_AutoSize(std::int32_t autoSize) = 0;
};

struct TextRange : IUnknown {
    virtual HRESULT get_Length(std::int32_t* length) = 0;
    // The sub-range of `length` units starting `start` units (from 0) after this range's start.
    // It may reach past this range's end into the text that follows; it is clamped at the end of
    // the frame's text. Fails for a negative start or length, or a start past the frame's end.
    virtual HRESULT Characters(std::int32_t start, std::int32_t length, TextRange** range) = 0;
    virtual HRESULT get_Text(BSTR* text) = 0;
    // Replaces the range's text; the range then designates the new text, formatted like the
    // first character it replaced.
    virtual HRESULT put_Text(BSTR text) = 0;
    // Inserts `text` right after the range, formatted like the range's last character. This range
    // does not grow; *inserted designates the new text.
    virtual HRESULT InsertAfter(BSTR text, TextRange** inserted) = 0;
    // The character formatting of the range (of its first character when mixed).
    virtual HRESULT get_Font(Font** font) = 0;
};

struct Font : IUnknown {
    virtual HRESULT get_Color(ColorFormat** color) = 0;
    // -1 on, 0 off.
    virtual HRESULT put_Bold(std::int32_t bold) = 0;
    virtual HRESULT get_Size(float* size) = 0;
    virtual HRESULT put_Size(float size) = 0;
    virtual HRESULT get_Name(BSTR* name) = 0;
    virtual HRESULT put_Name(BSTR name) = 0;
};

// A font colour. get_RGB hands it out as 0x00RRGGBB; put_RGB takes it as 0x00BBGGRR.
struct ColorFormat : IUnknown {
    virtual HRESULT get_RGB(std::uint32_t* rgb) = 0;
    virtual HRESULT put_RGB(std::uint32_t rgb) = 0;
};

}  // namespace slxoldapi
