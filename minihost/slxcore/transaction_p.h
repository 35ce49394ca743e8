// SPDX-License-Identifier: MIT
// The open undo step, held process-wide by the static guard.
#pragma once

#include <memory>

#include "minihost/slxcore/deckcore_p.h"

struct IZApplication;

namespace minihost {

// The one step that can be open at a time: a guard's, or the host's own transaction.
struct OpenStep {
    UndoStep step;
    bool record = true;
    bool host = false;             // the host's own transaction (what the static guard reports)
    std::weak_ptr<DeckCore> deck;  // null when the application had no deck open
};

// Opens a step on the deck of `application`'s active view; false when one is open already.
bool openStep(IZApplication* application, const QString& name, bool record, bool host);
// Closes the open step: recorded as one undo step (when it records) or rolled back.
void closeStep(bool keep);

}  // namespace minihost

class ZFormatStaticTransGuardPrivate {
public:
    std::unique_ptr<minihost::OpenStep> open;
    // The open step (a guard's or the host's) when it belongs to `deck`, else null.
    minihost::OpenStep* stepFor(const minihost::DeckCore* deck) const {
        return open && open->deck.lock().get() == deck ? open.get() : nullptr;
    }
};
