// SPDX-License-Identifier: MIT
// Whether a deck differs from its file, told from its undo and redo steps alone. Each step the
// deck gains gets a new number; the file holds the state after one of them (or after none). The
// deck has changes when the step on top of its undo list is not that one, so undoing back to the
// saved state is "unchanged" again, and a new step after undoing past it never is.
#pragma once

#include <QVector>

class EditHistory {
public:
    // A deck as read from its file: no steps, nothing changed.
    void reset();
    // The deck's step on top was undone, or its next redo step redone (by the window).
    void undone();
    void redone();
    // Follows the deck after any other change, from its number of undo and redo steps now: more
    // undo steps are new steps (which drop the redo steps). From counts alone a new step after an
    // undo looks like a redo, hence undone() and redone().
    void update(int undoSteps, int redoSteps);
    // The deck was just written to its file.
    void markSaved();
    bool modified() const;
    // Names the deck's state: equal numbers, the same content (0 for the state as read).
    int state() const { return m_done.isEmpty() ? 0 : m_done.last(); }

private:
    int top() const { return state(); }

    QVector<int> m_done;    // the deck's undo steps, oldest first
    QVector<int> m_undone;  // its redo steps, next redo last
    int m_next = 1;
    int m_saved = 0;
};
