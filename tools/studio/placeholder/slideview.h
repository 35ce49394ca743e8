// SPDX-License-Identifier: MIT
// Stands in for the slide canvas until it lands: the current slide's shapes as labelled boxes,
// a click selects one. Same interface as the canvas's SlideView.
#pragma once

#include <QWidget>

namespace minihost {
class Deck;
}

class SlideView : public QWidget {
    Q_OBJECT
public:
    explicit SlideView(QWidget* parent = nullptr);
    void setDeck(minihost::Deck* deck);
    void refresh();

signals:
    void selectionChanged();
    void textEditingChanged(bool active);
    void deckEdited();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QTransform slideToWidget() const;
    minihost::Deck* m_deck = nullptr;
};
