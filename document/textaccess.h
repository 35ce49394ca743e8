// SPDX-License-Identifier: MIT
// Everything the add-on reads from or writes to a slide, over the host's presentation object
// model (slxcore/slxoldapi.h).
//
// Shared rules: nothing here reports anything or throws to its caller. A null object, a negative
// status or a zero count ends the current path silently and what was produced so far stands.
// Every object obtained is released and every BSTR freed on every path, unwinding included
// (one exception, kept on purpose: see findTextTarget). Positions and lengths are UTF-16 units.
#pragma once

#include <QColor>
#include <QString>
#include <QStringList>
#include <cstdint>

#include "model/phoneticsymbolmodel.h"
#include "slxcore/slxoldapi.h"

struct IZApplication;

// The texts of the selection of the active view, appended to `out`. A non-empty text selection
// gives just that run, even when its shape holds more; otherwise each selected shape in order
// gives its whole text, and shapes without text are skipped. So a bare cursor gives the whole
// text of its shape. Example: shapes "" and "你好" selected -> out gains "你好".
void readSelectedTexts(IZApplication* coreApp, QStringList& out);

// The text the selection designates. The three outputs are set to null first; the caller
// releases whatever is set afterwards.
// - Several shapes selected: `shape` is the first one with text and `frame` its frame; `range`
//   stays null (the caller takes the whole frame). With no text anywhere, `shape` stays null and
//   `frame` holds the last shape's frame. A frame replaced during the search is NOT released
//   (kept on purpose): each shape examined before the last leaks one frame reference.
// - One shape selected: `range` is the selection's text range; when it is non-empty, `shape` is
//   that shape and `frame` its frame. A bare cursor leaves a zero-length `range` and nothing else.
void findTextTarget(IZApplication* coreApp, slxoldapi::Shape*& shape, slxoldapi::TextFrame*& frame,
                    slxoldapi::TextRange*& range);

// The format and text of the selection's target (findTextTarget) read into `style`: from the
// selected range, or from the whole frame when the target is a shape. `style` is untouched when
// no shape was found. `shape` receives the found shape (or null); the caller releases it.
void readSelectionStyle(IZApplication* coreApp, TextStyle& style, slxoldapi::Shape*& shape);

// The range's font name, colour (fromHostColor), size (truncated toward zero) and text into
// `style`. A field whose call fails keeps its value; the text is read even without a font.
void readTextStyle(slxoldapi::TextRange* range, TextStyle& style);

// Writes `style` to the range: bold always (on or off), the size when above 0, the font name when
// not empty, the colour (toHostColor) only with applyColor. Statuses are ignored.
void applyTextStyle(slxoldapi::TextRange* range, const TextStyle* style);

// Where the commands put the text boxes they make, in points from the slide's top left corner:
// every box of a command at the same point (they stack rather than being laid out), the readings
// of the dialog's own-box layout without a target 30 points higher.
constexpr int kReadingBoxLeft = 400;
constexpr int kReadingBoxTop = 250;
// The widest a box of readings is made, in points: a width of 851 or more is cut to this.
constexpr int kReadingBoxMaxWidth = 850;

// A new text box holding `text` on the active view's slide at (`left`, `top`), (length + 1) x
// `charWidth` points wide but at most kReadingBoxMaxWidth (a product of 851 or more gives 850),
// 700 high. With `style`, the empty box's range is formatted before the text goes in. Returns 1
// and hands the shape to `*out` (the caller releases it), or 0: for a null `coreApp` or `out` or
// an empty `text` without any object-model call; when the box cannot be made; and when its frame
// or range cannot be had (the empty box then stays on the slide). Example: "abc", charWidth 12 ->
// 48 wide.
int insertReadingTextBox(IZApplication* coreApp, const QString& text, const TextStyle* style,
                         int left, int top, slxoldapi::Shape** out, int charWidth);

// The two colour conversions are deliberately not mirror images:
// toHostColor packs red | green << 8 | blue << 16 (alpha dropped): (0x11, 0x22, 0x33) -> 0x332211.
std::uint32_t toHostColor(const QColor& color);
// fromHostColor reads the value as 0xAARRGGBB with alpha forced to 255: 0x332211 -> (0x33, 0x22,
// 0x11).
QColor fromHostColor(std::uint32_t value);
