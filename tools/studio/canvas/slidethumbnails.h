// SPDX-License-Identifier: MIT
// One thumbnail per slide, numbered, the current one marked; clicking one (or moving through
// them with the keys) makes it the deck's current slide. The pictures are drawn a few at a time
// from the event loop, the current slide's first, so a large deck opens at once.
#pragma once

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
    void refresh();                      // draws every slide again and marks the current one

    // The list the thumbnails are items of, for tests that click them.
    QListWidget* list() const { return m_list; }
    // How many pictures are still to be drawn.
    int pending() const { return static_cast<int>(m_pending.size()); }

signals:
    void slideActivated(int slide);  // from 1; the deck's current slide is already set

private:
    void activate(int row);
    void drawSome();

    minihost::Deck* m_deck = nullptr;
    QListWidget* m_list;
    QTimer* m_drawing;
    std::deque<int> m_pending;  // rows whose picture is still blank, in drawing order
};
