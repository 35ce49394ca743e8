// SPDX-License-Identifier: MIT
#include "slideview.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "minihost/slxrender/slidescene.h"

namespace {

constexpr double kMargin = 16;              // pixels around the slide
constexpr double kHandle = 7;               // a handle's side, pixels
constexpr double kBorder = 4;               // how near the border a press moves the shape, pixels
constexpr double kStep = 6, kFineStep = 1;  // arrow-key moves, points
const QColor kSelection(0x1E, 0x6F, 0xD9);

// The box's eight handles: corners and edge middles, clockwise from the top left.
QPointF handlePoint(const QRectF& r, int i) {
    const QPointF points[8] = {
        r.topLeft(),     {r.center().x(), r.top()},    r.topRight(),   {r.right(), r.center().y()},
        r.bottomRight(), {r.center().x(), r.bottom()}, r.bottomLeft(), {r.left(), r.center().y()}};
    return points[i];
}

// The text positions one character before or after `pos`, a surrogate pair whole.
int previousPosition(const QString& text, int pos) {
    if (pos <= 0) return 0;
    return pos >= 2 && text[pos - 1].isLowSurrogate() && text[pos - 2].isHighSurrogate() ? pos - 2
                                                                                         : pos - 1;
}
int nextPosition(const QString& text, int pos) {
    if (pos >= text.size()) return static_cast<int>(text.size());
    return pos + 1 < text.size() && text[pos].isHighSurrogate() && text[pos + 1].isLowSurrogate()
               ? pos + 2
               : pos + 1;
}

}  // namespace

SlideView::SlideView(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_InputMethodEnabled);
    setMouseTracking(false);
    setMinimumSize(240, 160);
}

SlideView::~SlideView() = default;

void SlideView::setDeck(minihost::Deck* deck) {
    if (m_deck) disconnect(m_deck, nullptr, this, nullptr);
    m_deck = deck;
    if (m_deck) {
        connect(m_deck, &minihost::Deck::changed, this, [this](const minihost::DeckChange& change) {
            if (change.touches(m_slide)) showSlide();
        });
        connect(m_deck, &minihost::Deck::currentSlideChanged, this, &SlideView::showSlide);
        connect(m_deck, &minihost::Deck::selectionChanged, this, [this] {
            syncFromDeck();
            update();
        });
    }
    showSlide();
}

void SlideView::showSlide() {
    m_drag = Drag::None;
    rebuild();
    syncFromDeck();
    update();
}

void SlideView::rebuild() {
    m_scene.reset();
    m_slide = 0;
    if (!m_deck || m_deck->slideCount() == 0) return;
    m_slide = m_deck->currentSlide();
    m_scene = std::make_unique<minihost::SlideScene>(*m_deck, m_slide);
}

void SlideView::syncFromDeck() {
    if (!m_deck || !m_scene || !m_deck->hasTextSelection()) {
        setTextMode(false);
        return;
    }
    const minihost::Deck::TextSelection sel = m_deck->textSelection();
    const minihost::TextLayout* layout = m_scene->text(sel.shapeId);
    if (!layout) {
        setTextMode(false);
        return;
    }
    const int length = layout->length();
    const int start = std::min(sel.start, length);
    const int end = std::min(sel.start + sel.length, length);
    if (!m_textMode || sel.shapeId != m_textShape || std::min(m_anchor, m_caret) != start ||
        std::max(m_anchor, m_caret) != end) {
        m_textShape = sel.shapeId;
        m_anchor = start;
        m_caret = end;
    }
    // An undo may have shortened the text under the selection.
    if (start != sel.start || end - start != sel.length) applyTextSelection();
    setTextMode(true);
}

void SlideView::setTextMode(bool on) {
    if (m_textMode == on) return;
    m_textMode = on;
    if (!on) m_textShape = 0;
    emit textEditingChanged(on);
}

void SlideView::applyTextSelection() {
    m_deck->selectText(m_textShape, std::min(m_anchor, m_caret), std::abs(m_caret - m_anchor));
    update();
}

void SlideView::selectShapes(const QList<int>& ids) {
    setTextMode(false);
    if (ids.isEmpty())
        m_deck->clearSelection();
    else
        m_deck->selectShapes(ids);
    update();
}

int SlideView::textCursor() const {
    return m_textMode ? m_caret : -1;
}
int SlideView::textAnchor() const {
    return m_textMode ? m_anchor : -1;
}

QRectF SlideView::slideRect() const {
    if (!m_deck) return {};
    const QSizeF size = m_deck->slideSize();
    const double w = std::max(1.0, width() - 2 * kMargin),
                 h = std::max(1.0, height() - 2 * kMargin);
    const double zoom = std::min(w / size.width(), h / size.height());
    const QSizeF shown = size * zoom;
    return QRectF(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
}

QPointF SlideView::toWidget(const QPointF& slidePoint) const {
    if (!m_scene) return slidePoint;
    return m_scene->toTarget(slideRect()).map(slidePoint);
}

QPointF SlideView::toSlide(const QPointF& widgetPoint) const {
    if (!m_scene) return widgetPoint;
    return m_scene->toTarget(slideRect()).inverted().map(widgetPoint);
}

void SlideView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), QColor(0xE6, 0xE6, 0xE6));
    if (!m_scene) return;
    const QRectF target = slideRect();
    painter.fillRect(target.translated(3, 3), QColor(0, 0, 0, 60));
    const QTransform toTarget = m_scene->toTarget(target);
    painter.save();
    painter.setClipRect(target);
    painter.setTransform(toTarget, true);
    if (m_textMode)
        m_scene->paint(painter, m_textShape, std::min(m_anchor, m_caret),
                       std::abs(m_caret - m_anchor));
    else
        m_scene->paint(painter);
    painter.restore();

    painter.setRenderHint(QPainter::Antialiasing, false);
    if (m_textMode) {
        const QRectF frame = toTarget.mapRect(m_scene->boxOf(m_textShape));
        painter.setPen(QPen(kSelection, 1, Qt::DashLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(frame);
        if (const minihost::TextLayout* layout = m_scene->text(m_textShape)) {
            painter.setPen(QPen(Qt::black, 1.5));
            painter.drawLine(toTarget.map(layout->cursorLine(m_caret)));
        }
        return;
    }
    const QList<int> selected = m_deck->selectedShapes();
    for (int id : selected) {
        QRectF box = toTarget.mapRect(m_scene->boxOf(id));
        if (m_drag == Drag::Move && m_dragged)
            box.translate(toTarget.map(m_dragDelta) - toTarget.map(QPointF()));
        if (m_drag == Drag::Resize && m_dragged)
            box = toTarget.mapRect(resized(m_scene->boxOf(id), m_dragDelta));
        painter.setPen(QPen(kSelection, 1, m_dragged ? Qt::DashLine : Qt::SolidLine));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(box);
        if (selected.size() != 1 || m_dragged) continue;
        painter.setBrush(Qt::white);
        painter.setPen(QPen(kSelection, 1));
        for (int i = 0; i < 8; ++i) {
            const QPointF c = handlePoint(box, i);
            painter.drawRect(
                QRectF(c - QPointF(kHandle / 2, kHandle / 2), QSizeF(kHandle, kHandle)));
        }
    }
}

int SlideView::handleAt(const QPointF& widgetPoint) const {
    if (!m_scene || m_textMode) return -1;
    const QList<int> selected = m_deck->selectedShapes();
    if (selected.size() != 1) return -1;
    const QRectF box = m_scene->toTarget(slideRect()).mapRect(m_scene->boxOf(selected.first()));
    for (int i = 0; i < 8; ++i) {
        const QPointF d = widgetPoint - handlePoint(box, i);
        if (std::abs(d.x()) <= kHandle && std::abs(d.y()) <= kHandle) return i;
    }
    return -1;
}

bool SlideView::onBorder(int shapeId, const QPointF& widgetPoint) const {
    const QRectF box = m_scene->toTarget(slideRect()).mapRect(m_scene->boxOf(shapeId));
    const QRectF outer = box.adjusted(-kBorder, -kBorder, kBorder, kBorder);
    const QRectF inner = box.adjusted(kBorder, kBorder, -kBorder, -kBorder);
    return outer.contains(widgetPoint) && !inner.contains(widgetPoint);
}

QRectF SlideView::resized(const QRectF& box, const QPointF& delta) const {
    const bool leftEdge = m_handle == 0 || m_handle == 6 || m_handle == 7;
    const bool rightEdge = m_handle >= 2 && m_handle <= 4;
    const bool topEdge = m_handle <= 2;
    const bool bottomEdge = m_handle >= 4 && m_handle <= 6;
    double left = box.left(), top = box.top(), right = box.right(), bottom = box.bottom();
    if (leftEdge) left += delta.x();
    if (rightEdge) right += delta.x();
    if (topEdge) top += delta.y();
    if (bottomEdge) bottom += delta.y();
    // Never smaller than a point, whichever way the handle went: the opposite edge stays.
    if (right - left < 1) {
        if (leftEdge)
            left = right - 1;
        else
            right = left + 1;
    }
    if (bottom - top < 1) {
        if (topEdge)
            top = bottom - 1;
        else
            bottom = top + 1;
    }
    return QRectF(QPointF(left, top), QPointF(right, bottom));
}

void SlideView::mousePressEvent(QMouseEvent* event) {
    if (!m_scene || event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    setFocus(Qt::MouseFocusReason);
    const QPointF at = toSlide(event->localPos());
    m_pressWidget = event->localPos();
    m_pressSlide = at;
    m_dragDelta = QPointF();
    m_dragged = false;
    m_drag = Drag::None;
    const bool adding = event->modifiers() & (Qt::ShiftModifier | Qt::ControlModifier);

    if (m_textMode && !adding) {
        if (onBorder(m_textShape, event->localPos())) {
            m_drag = Drag::Move;
            return;
        }
        if (m_scene->boxOf(m_textShape).contains(at)) {
            m_caret = m_scene->text(m_textShape)->positionAt(at);
            m_anchor = m_caret;
            m_drag = Drag::Text;
            applyTextSelection();
            return;
        }
    }
    if (m_textMode && adding && m_scene->boxOf(m_textShape).contains(at)) {
        // Shift+click in the text extends the text selection.
        m_caret = m_scene->text(m_textShape)->positionAt(at);
        m_drag = Drag::Text;
        applyTextSelection();
        return;
    }
    if ((m_handle = handleAt(event->localPos())) >= 0) {
        m_drag = Drag::Resize;
        return;
    }
    const int id = m_scene->shapeAt(at);
    const QList<int> selected = m_textMode ? QList<int>{m_textShape} : m_deck->selectedShapes();
    if (id == 0) {
        if (!adding) selectShapes({});
        return;
    }
    if (adding) {
        QList<int> ids = selected;
        if (ids.contains(id))
            ids.removeAll(id);
        else
            ids << id;
        selectShapes(ids);
        return;
    }
    if (!m_textMode && selected == QList<int>{id} && m_scene->text(id) &&
        !onBorder(id, event->localPos())) {
        m_textShape = id;
        m_caret = m_anchor = m_scene->text(id)->positionAt(at);
        setTextMode(true);
        m_drag = Drag::Text;
        applyTextSelection();
        return;
    }
    if (!selected.contains(id) || m_textMode) selectShapes({id});
    m_drag = Drag::Move;
}

void SlideView::mouseMoveEvent(QMouseEvent* event) {
    if (m_drag == Drag::None || !m_scene) return QWidget::mouseMoveEvent(event);
    const QPointF at = toSlide(event->localPos());
    if (m_drag == Drag::Text) {
        const int caret = m_scene->text(m_textShape)->positionAt(at);
        if (caret != m_caret) {
            m_caret = caret;
            applyTextSelection();
        }
        return;
    }
    if (!m_dragged &&
        (event->localPos() - m_pressWidget).manhattanLength() < QApplication::startDragDistance())
        return;
    m_dragged = true;
    m_dragDelta = at - m_pressSlide;
    update();
}

void SlideView::mouseReleaseEvent(QMouseEvent* event) {
    const Drag drag = m_drag;
    m_drag = Drag::None;
    if (!m_scene || !m_dragged) {
        update();
        return QWidget::mouseReleaseEvent(event);
    }
    m_dragDelta = toSlide(event->localPos()) - m_pressSlide;
    m_dragged = false;
    if (drag == Drag::Move) {
        moveShapes(m_textMode ? QList<int>{m_textShape} : m_deck->selectedShapes(), m_dragDelta);
    } else if (drag == Drag::Resize) {
        const int id = m_deck->selectedShapes().value(0);
        m_deck->setShapeBoxes(m_slide, {{id, resized(m_scene->boxOf(id), m_dragDelta)}},
                              tr("resize"));
    }
    update();
}

void SlideView::moveShapes(const QList<int>& ids, const QPointF& by) {
    QMap<int, QRectF> boxes;
    for (int id : ids) {
        const QRectF place = m_deck->placeOf(m_slide, id);
        if (place.isNull()) return;  // nowhere to move it from
        boxes.insert(id, place.translated(by));
    }
    m_deck->setShapeBoxes(m_slide, boxes, tr("move"));
}

void SlideView::replaceText(const QString& text, const QString& stepName) {
    const int start = std::min(m_anchor, m_caret);
    const int end = m_deck->replaceText(m_slide, m_textShape, start, std::abs(m_caret - m_anchor),
                                        text, stepName);
    if (end < 0) return;
    m_anchor = m_caret = end;
    m_deck->selectText(m_textShape, end, 0);
}

void SlideView::copySelectedText() const {
    const QString all = m_deck->text(m_slide, m_textShape);
    QString part = all.mid(std::min(m_anchor, m_caret), std::abs(m_caret - m_anchor));
    part.replace(QChar('\r'), QChar('\n')).replace(QChar('\v'), QChar('\n'));
    if (!part.isEmpty()) QApplication::clipboard()->setText(part);
}

bool SlideView::keyInText(QKeyEvent* event) {
    const minihost::TextLayout* layout = m_scene->text(m_textShape);
    if (!layout) return false;
    const QString text = m_deck->text(m_slide, m_textShape);
    const bool extend = event->modifiers() & Qt::ShiftModifier;
    auto moveTo = [&](int pos) {
        m_caret = std::clamp(pos, 0, static_cast<int>(text.size()));
        if (!extend) m_anchor = m_caret;
        applyTextSelection();
        return true;
    };
    if (event == QKeySequence::SelectAll) {
        m_anchor = 0;
        m_caret = static_cast<int>(text.size());
        applyTextSelection();
        return true;
    }
    if (event == QKeySequence::Copy) {
        copySelectedText();
        return true;
    }
    if (event == QKeySequence::Cut) {
        copySelectedText();
        if (m_anchor != m_caret) replaceText({}, tr("cut"));
        return true;
    }
    if (event == QKeySequence::Paste) {
        const QString pasted = QApplication::clipboard()->text();
        if (!pasted.isEmpty()) replaceText(pasted, tr("paste"));
        return true;
    }
    const bool collapse = !extend && m_anchor != m_caret;
    switch (event->key()) {
        case Qt::Key_Escape:
            selectShapes({m_textShape});
            return true;
        case Qt::Key_Left:
            return moveTo(collapse ? std::min(m_anchor, m_caret) : previousPosition(text, m_caret));
        case Qt::Key_Right:
            return moveTo(collapse ? std::max(m_anchor, m_caret) : nextPosition(text, m_caret));
        case Qt::Key_Up:
            return moveTo(layout->verticalMove(m_caret, -1));
        case Qt::Key_Down:
            return moveTo(layout->verticalMove(m_caret, 1));
        case Qt::Key_Home:
            return moveTo(layout->lineStart(m_caret));
        case Qt::Key_End:
            return moveTo(layout->lineEnd(m_caret));
        case Qt::Key_Backspace:
            if (m_anchor == m_caret) m_anchor = previousPosition(text, m_caret);
            if (m_anchor != m_caret) replaceText({}, tr("delete text"));
            return true;
        case Qt::Key_Delete:
            if (m_anchor == m_caret) m_anchor = nextPosition(text, m_caret);
            if (m_anchor != m_caret) replaceText({}, tr("delete text"));
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            replaceText(extend ? QStringLiteral("\v") : QStringLiteral("\r"), tr("typing"));
            return true;
        default:
            break;
    }
    const QString typed = event->text();
    if (!typed.isEmpty() && !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) &&
        std::all_of(typed.begin(), typed.end(), [](QChar c) { return c.isPrint() || c == '\t'; })) {
        replaceText(typed, tr("typing"));
        return true;
    }
    return false;
}

bool SlideView::keyOnShapes(QKeyEvent* event) {
    const QList<int> selected = m_deck->selectedShapes();
    if (selected.isEmpty()) return false;
    const double step = event->modifiers() & Qt::ControlModifier ? kFineStep : kStep;
    QPointF by;
    switch (event->key()) {
        case Qt::Key_Left:
            by = {-step, 0};
            break;
        case Qt::Key_Right:
            by = {step, 0};
            break;
        case Qt::Key_Up:
            by = {0, -step};
            break;
        case Qt::Key_Down:
            by = {0, step};
            break;
        case Qt::Key_Delete:
        case Qt::Key_Backspace:
            m_deck->deleteShapes(m_slide, selected, tr("delete"));
            return true;
        case Qt::Key_Escape:
            selectShapes({});
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
        case Qt::Key_F2:
            if (const minihost::TextLayout* layout =
                    selected.size() == 1 ? m_scene->text(selected.first()) : nullptr) {
                m_textShape = selected.first();
                m_anchor = 0;
                m_caret = layout->length();
                setTextMode(true);
                applyTextSelection();
            }
            return true;
        default:
            return false;
    }
    if (event->modifiers() & Qt::ShiftModifier) {
        // Shift+arrows grow or shrink the one selected shape from its bottom right corner.
        if (selected.size() != 1) return true;
        QRectF box = m_scene->boxOf(selected.first());
        box.setWidth(std::max(1.0, box.width() + by.x()));
        box.setHeight(std::max(1.0, box.height() + by.y()));
        m_deck->setShapeBoxes(m_slide, {{selected.first(), box}}, tr("resize"));
        return true;
    }
    moveShapes(selected, by);
    return true;
}

void SlideView::keyPressEvent(QKeyEvent* event) {
    if (!m_scene) return QWidget::keyPressEvent(event);
    const bool handled = m_textMode ? keyInText(event) : keyOnShapes(event);
    if (!handled) QWidget::keyPressEvent(event);
}

void SlideView::inputMethodEvent(QInputMethodEvent* event) {
    // Text composed in an input method arrives whole when committed.
    if (m_textMode && !event->commitString().isEmpty())
        replaceText(event->commitString(), tr("typing"));
    event->accept();
}

QVariant SlideView::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImCursorRectangle && m_textMode && m_scene)
        if (const minihost::TextLayout* layout = m_scene->text(m_textShape)) {
            const QLineF line = m_scene->toTarget(slideRect()).map(layout->cursorLine(m_caret));
            return QRectF(line.p1(), line.p2() + QPointF(1, 0)).toRect();
        }
    if (query == Qt::ImEnabled) return m_textMode;
    return QWidget::inputMethodQuery(query);
}

// Tab stays in the view (typed into text) instead of moving the focus.
bool SlideView::focusNextPrevChild(bool) {
    return false;
}
