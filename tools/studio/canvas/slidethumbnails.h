// SPDX-License-Identifier: MIT
// One thumbnail per slide, numbered, the current one marked; clicking one (or moving through
// them with the keys) makes it the deck's current slide.
#pragma once

#include <QWidget>

#include "minihost/slxcore/deck.h"

class QListWidget;

class SlideThumbnails : public QWidget {
    Q_OBJECT
public:
    explicit SlideThumbnails(QWidget* parent = nullptr);
    void setDeck(minihost::Deck* deck);  // not owned; null shows nothing
    void refresh();  // draws every slide again and marks the current one

    // The list the thumbnails are items of, for tests that click them.
    QListWidget* list() const { return m_list; }

signals:
    void slideActivated(int slide);  // from 1; the deck's current slide is already set

private:
    void activate(int row);

    minihost::Deck* m_deck = nullptr;
    QListWidget* m_list;
};
