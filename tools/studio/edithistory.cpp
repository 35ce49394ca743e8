// SPDX-License-Identifier: MIT
#include "edithistory.h"

void EditHistory::reset() {
    m_done.clear();
    m_undone.clear();
    m_saved = 0;
}

void EditHistory::undone() {
    if (!m_done.isEmpty()) m_undone.append(m_done.takeLast());
}

void EditHistory::redone() {
    if (!m_undone.isEmpty()) m_done.append(m_undone.takeLast());
}

void EditHistory::update(int undoSteps, int redoSteps) {
    // New steps: the deck dropped its redo steps and gained these.
    if (undoSteps > m_done.size()) m_undone.clear();
    while (undoSteps > m_done.size()) m_done.append(m_next++);
    while (undoSteps < m_done.size()) m_done.removeLast();
    while (redoSteps < m_undone.size()) m_undone.removeFirst();
    while (redoSteps > m_undone.size()) m_undone.prepend(m_next++);
}

void EditHistory::markSaved() {
    m_saved = top();
}

bool EditHistory::modified() const {
    return top() != m_saved;
}
