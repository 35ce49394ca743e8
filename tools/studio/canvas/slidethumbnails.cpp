// SPDX-License-Identifier: MIT
#include "slidethumbnails.h"

#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QVBoxLayout>

#include "sliderenderer.h"

namespace {
constexpr int kThumbnailWidth = 160;  // pixels
}

SlideThumbnails::SlideThumbnails(QWidget* parent) : QWidget(parent), m_list(new QListWidget(this)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    m_list->setViewMode(QListView::ListMode);
    m_list->setIconSize(QSize(kThumbnailWidth, kThumbnailWidth));
    m_list->setSpacing(4);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setMinimumWidth(kThumbnailWidth + 60);
    connect(m_list, &QListWidget::currentRowChanged, this, &SlideThumbnails::activate);
}

void SlideThumbnails::setDeck(minihost::Deck* deck) {
    m_deck = deck;
    refresh();
}

void SlideThumbnails::refresh() {
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    if (!m_deck) return;
    const QSizeF size = m_deck->slideSize();
    const QSize pixels(kThumbnailWidth,
                       std::max(1, qRound(kThumbnailWidth * size.height() / std::max(1.0, size.width()))));
    m_list->setIconSize(pixels);
    for (int slide = 1; slide <= m_deck->slideCount(); ++slide) {
        QPixmap pixmap(pixels);
        pixmap.fill(Qt::white);
        QPainter painter(&pixmap);
        paintSlide(painter, *m_deck, slide, QRectF(QPointF(), QSizeF(pixels)));
        painter.setPen(QColor(0xA0, 0xA0, 0xA0));
        painter.drawRect(QRect(QPoint(), pixels).adjusted(0, 0, -1, -1));
        painter.end();
        m_list->addItem(new QListWidgetItem(QIcon(pixmap), QString::number(slide)));
    }
    m_list->setCurrentRow(m_deck->currentSlide() - 1);
}

void SlideThumbnails::activate(int row) {
    if (!m_deck || row < 0 || !m_deck->setCurrentSlide(row + 1)) return;
    emit slideActivated(row + 1);
}
