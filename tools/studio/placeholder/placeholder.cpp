// SPDX-License-Identifier: MIT
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

#include "minihost/slxcore/deck.h"
#include "slidethumbnails.h"
#include "slideview.h"

SlideView::SlideView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(320, 180);
}

void SlideView::setDeck(minihost::Deck* deck) {
    m_deck = deck;
    update();
}

void SlideView::refresh() {
    update();
}

QTransform SlideView::slideToWidget() const {
    const QSizeF size = m_deck->slideSize();
    const double scale = std::min(width() / size.width(), height() / size.height());
    QTransform transform;
    transform.translate((width() - size.width() * scale) / 2, (height() - size.height() * scale) / 2);
    transform.scale(scale, scale);
    return transform;
}

void SlideView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::gray);
    if (!m_deck) return;
    painter.setTransform(slideToWidget());
    painter.fillRect(QRectF(QPointF(), m_deck->slideSize()), Qt::white);
    const QList<int> selected = m_deck->selectedShapes();
    for (const minihost::ShapeInfo& shape : m_deck->shapes(m_deck->currentSlide())) {
        painter.setPen(selected.contains(shape.id) ? Qt::blue : Qt::lightGray);
        painter.drawRect(shape.box);
        painter.setPen(Qt::black);
        painter.drawText(shape.box, Qt::TextWordWrap, shape.text);
    }
}

void SlideView::mousePressEvent(QMouseEvent* event) {
    if (!m_deck) return;
    const QPointF point = slideToWidget().inverted().map(QPointF(event->pos()));
    for (const minihost::ShapeInfo& shape : m_deck->shapes(m_deck->currentSlide())) {
        if (shape.box.contains(point)) {
            m_deck->selectShapes({shape.id});
            update();
            emit selectionChanged();
            return;
        }
    }
}

SlideThumbnails::SlideThumbnails(QWidget* parent) : QWidget(parent), m_layout(new QVBoxLayout(this)) {}

void SlideThumbnails::setDeck(minihost::Deck* deck) {
    m_deck = deck;
    refresh();
}

void SlideThumbnails::refresh() {
    while (QLayoutItem* item = m_layout->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    if (!m_deck) return;
    for (int slide = 1; slide <= m_deck->slideCount(); ++slide) {
        auto* button = new QPushButton(QString::number(slide), this);
        connect(button, &QPushButton::clicked, this, [this, slide] {
            m_deck->setCurrentSlide(slide);
            emit slideActivated(slide);
        });
        m_layout->addWidget(button);
    }
    m_layout->addStretch();
}
