// SPDX-License-Identifier: MIT
// What one shape shows, resolved as Deck::drawing() resolves a slide's shapes: for fitting a
// shape to its text and laying out one shape's text without drawing the whole slide.
#pragma once

#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/slidetree_p.h"

namespace minihost {

class DeckCore;

// Shape `node` of slide `slide` (from 0) with everything it inherits resolved.
DrawnShape drawnShapeOf(const DeckCore& core, int slide, const ShapeNode& node);

}  // namespace minihost
