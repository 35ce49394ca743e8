// SPDX-License-Identifier: MIT
// Stands in for the thumbnails panel until it lands: one button per slide.
#pragma once

#include <QWidget>

class QVBoxLayout;
namespace minihost {
class Deck;
}

class SlideThumbnails : public QWidget {
    Q_OBJECT
public:
    explicit SlideThumbnails(QWidget* parent = nullptr);
    void setDeck(minihost::Deck* deck);
    void refresh();

signals:
    void slideActivated(int slide);

private:
    minihost::Deck* m_deck = nullptr;
    QVBoxLayout* m_layout;
};
