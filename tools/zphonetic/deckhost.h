// SPDX-License-Identifier: MIT
// The host around a command on a deck file ("onekey", "apply"): the files the readings come from
// checked, the deck read and shown on a slide, a host window with the Home tab current, the
// deck's view active, and the add-on loaded, through the host's public controls; what it set up
// is undone, in reverse, when it goes.
#pragma once

#include <QString>
#include <memory>

#include "minihost/nvo/addonmodule.h"

struct IZApplication;
class ZMainWindow;

namespace minihost {
class Deck;
}

class DeckHost {
public:
    DeckHost();
    ~DeckHost();
    DeckHost(const DeckHost&) = delete;
    DeckHost& operator=(const DeckHost&) = delete;

    // Checks the tagging library and its dictionaries (one line naming a missing file and the
    // fix), reads the deck at `path`, shows slide `slide`, makes the window and the active view,
    // and loads the add-on. Returns 0, or the exit status of the error it reported; nothing is
    // written in either case.
    int open(const QString& path, int slide);

    minihost::Deck& deck() { return *m_deck; }
    minihost::AddonSession& addon() { return *m_addon; }
    // The host application's root, for the undo steps the host itself opens.
    IZApplication* coreApplication() const;

private:
    std::unique_ptr<minihost::Deck> m_deck;
    std::unique_ptr<ZMainWindow> m_window;
    std::unique_ptr<minihost::AddonSession> m_addon;
    bool m_viewActive = false;
};

// What a host program does before a command that needs readings: checks the tagging library and
// its dictionaries. 0, or the exit status of the error it reported ("zphonetic: <missing file>:
// <what it is and the fix>").
int checkReadingFiles();
