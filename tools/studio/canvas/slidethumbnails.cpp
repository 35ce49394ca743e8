// SPDX-License-Identifier: MIT
#include "slidethumbnails.h"

#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

#include "minihost/slxrender/sliderenderer.h"

namespace {
constexpr int kThumbnailWidth = 160;  // pixels
constexpr int kPerTurn = 8;           // pictures drawn per turn of the event loop
}  // namespace

SlideThumbnails::SlideThumbnails(QWidget* parent)
    : QWidget(parent), m_list(new QListWidget(this)), m_drawing(new QTimer(this)) {
    m_drawing->setInterval(0);
    connect(m_drawing, &QTimer::timeout, this, &SlideThumbnails::drawSome);
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
    if (m_deck) disconnect(m_deck, nullptr, this, nullptr);
    m_deck = deck;
    if (m_deck) {
        connect(m_deck, &minihost::Deck::changed, this,
                [this](const minihost::DeckChange& change) { redraw(change.slides()); });
        connect(m_deck, &minihost::Deck::currentSlideChanged, this, &SlideThumbnails::markCurrent);
    }
    showDeck();
}

void SlideThumbnails::showDeck() {
    const QSignalBlocker quiet(m_list);
    m_list->clear();
    m_pending.clear();
    m_drawing->stop();
    if (!m_deck) return;
    const QSizeF size = m_deck->slideSize();
    const QSize pixels(kThumbnailWidth, std::max(1, qRound(kThumbnailWidth * size.height() /
                                                           std::max(1.0, size.width()))));
    m_list->setIconSize(pixels);
    QPixmap blank(pixels);
    blank.fill(Qt::white);
    const int current = m_deck->currentSlide() - 1;
    for (int slide = 1; slide <= m_deck->slideCount(); ++slide) {
        m_list->addItem(new QListWidgetItem(QIcon(blank), QString::number(slide)));
        // The current slide and those after it first: they are the ones in sight.
        if (slide - 1 >= current) m_pending.push_back(slide - 1);
    }
    for (int row = 0; row < current; ++row) m_pending.push_back(row);
    m_list->setCurrentRow(current);
    m_drawing->start();
}

void SlideThumbnails::redraw(const QList<int>& slides) {
    // The changed slides first: the one being edited is in sight.
    for (auto it = slides.crbegin(); it != slides.crend(); ++it) {
        const int row = *it - 1;
        if (row < 0 || row >= m_list->count()) continue;
        if (std::find(m_pending.begin(), m_pending.end(), row) == m_pending.end())
            m_pending.push_front(row);
    }
    if (!m_pending.empty()) m_drawing->start();
}

void SlideThumbnails::markCurrent(int slide) {
    const QSignalBlocker quiet(m_list);
    m_list->setCurrentRow(slide - 1);
}

void SlideThumbnails::drawSome() {
    if (!m_deck) m_pending.clear();
    for (int n = 0; n < kPerTurn && !m_pending.empty(); ++n) {
        const int row = m_pending.front();
        m_pending.pop_front();
        const QSize pixels = m_list->iconSize();
        QPixmap pixmap(pixels);
        pixmap.fill(Qt::white);
        QPainter painter(&pixmap);
        minihost::paintSlide(painter, *m_deck, row + 1, QRectF(QPointF(), QSizeF(pixels)));
        painter.setPen(QColor(0xA0, 0xA0, 0xA0));
        painter.drawRect(QRect(QPoint(), pixels).adjusted(0, 0, -1, -1));
        painter.end();
        m_list->item(row)->setIcon(QIcon(pixmap));
        ++m_drawn;
    }
    if (m_pending.empty()) m_drawing->stop();
}

void SlideThumbnails::activate(int row) {
    if (m_deck && row >= 0) m_deck->setCurrentSlide(row + 1);
}
