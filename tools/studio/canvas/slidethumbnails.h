// SPDX-License-Identifier: MIT
// One thumbnail per slide, numbered, the current one marked; clicking one (or moving through
// them with the keys) makes it the deck's current slide. The pictures are drawn a few at a time
// from the event loop, the current slide's first, so a large deck opens at once; afterwards only
// the slides the deck names as changed are drawn again.
#pragma once

#include <QPointer>
#include <QWidget>
#include <deque>

#include "minihost/slxcore/deck.h"

class QListWidget;
class QTimer;

class SlideThumbnails : public QWidget {
    Q_OBJECT
public:
    explicit SlideThumbnails(QWidget* parent = nullptr);
    void setDeck(minihost::Deck* deck);  // not owned; null shows nothing

    // The list the thumbnails are items of, for tests that click them.
    QListWidget* list() const { return m_list; }
    // How many pictures are still to be drawn, and how many were drawn since the panel was made.
    int pending() const { return static_cast<int>(m_pending.size()); }
    int drawnCount() const { return m_drawn; }

private:
    void showDeck();
    void redraw(const QList<int>& slides);
    void markCurrent(int slide);
    void activate(int row);
    void drawSome();

    QPointer<minihost::Deck> m_deck;
    QListWidget* m_list;
    QTimer* m_drawing;
    std::deque<int> m_pending;  // rows whose picture is still to be drawn, in drawing order
    int m_drawn = 0;
};
