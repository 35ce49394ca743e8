// SPDX-License-Identifier: MIT
// What one shape shows, resolved as Deck::drawing() resolves a slide's shapes: for fitting a
// shape to its text and laying out one shape's text without drawing the whole slide.
#pragma once

#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/slidetree_p.h"

#include <string>

namespace minihost {

class DeckCore;

struct DeckStyles;

// The chart a graphic frame `frame` of part `slidePart` shows, read from its chart part (a
// ChartDrawing without a type when it holds none).
ChartDrawing chartOf(const DeckCore& core, const DeckStyles& styles, const std::string& slidePart,
                     pugi::xml_node frame);

// Shape `node` of slide `slide` (from 0) with everything it inherits resolved.
DrawnShape drawnShapeOf(const DeckCore& core, int slide, const ShapeNode& node);

}  // namespace minihost
