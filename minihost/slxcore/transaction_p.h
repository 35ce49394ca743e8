// SPDX-License-Identifier: MIT
// The open undo step, held process-wide by the static guard.
#pragma once

#include <memory>

#include "minihost/slxcore/deckcore_p.h"

class ZFormatTransGuard;

namespace minihost {

struct OpenStep {
    UndoStep step;
    bool record = true;
    std::weak_ptr<DeckCore> deck;  // null when the application had no deck open
    const ZFormatTransGuard* owner = nullptr;
};

}  // namespace minihost

class ZFormatStaticTransGuardPrivate {
public:
    std::unique_ptr<minihost::OpenStep> open;
    // The open step when it belongs to `deck`, else null.
    minihost::OpenStep* stepFor(const minihost::DeckCore* deck) const {
        return open && open->deck.lock().get() == deck ? open.get() : nullptr;
    }
};
