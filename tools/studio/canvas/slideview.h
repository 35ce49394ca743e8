// SPDX-License-Identifier: MIT
// The current slide drawn at its size, zoomed to fit; the user's selection and edits go to the
// deck's object model (its view selection; its undo steps).
//
// Selection as in a presentation program: a click selects a shape (the frontmost at that place),
// Shift or Ctrl+click adds or removes one, a click into the only selected shape's text places a
// text cursor, a drag there or Shift+arrows select a run of text, Ctrl+A all of the frame's
// text, Enter or F2 on one selected text shape all of its text, Escape goes back to the shape
// (and from a shape to nothing).
//
// Editing: a drag that starts on a shape not selected selects and moves it; one that starts on
// a selected shape moves the selection, except inside the one selected text shape, where it
// selects text: that shape moves by its border. A drag on a handle of the one selected shape
// resizes it. Arrows move the selected shapes by 6 pt (Ctrl: 1 pt), Shift+arrows resize one;
// Delete removes them. In text: typing (keys and input methods), Enter (a new paragraph),
// Shift+Enter (a line break), Backspace, Delete, cut, copy and paste. Each edit is one undo step
// of the deck, named in the user's language.
//
// The view shows the deck as the deck says it is: it lays its slide out again when the deck
// names that slide as changed (by the view's own edits, a command, an undo), and follows the
// deck's current slide and selection.
//
// A text cursor is a text selection of length 0 in the deck. Rotated and flipped shapes are hit
// and selected where they are drawn.
#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>

#include "minihost/slxcore/deck.h"

namespace minihost {
class SlideScene;
}

class SlideView : public QWidget {
    Q_OBJECT
public:
    explicit SlideView(QWidget* parent = nullptr);
    ~SlideView() override;
    void setDeck(minihost::Deck* deck);  // not owned; null shows nothing

    // Where the slide is drawn in the widget, and slide points to widget coordinates: for
    // tests and tools that point at something on the slide.
    QRectF slideRect() const;
    QPointF toWidget(const QPointF& slidePoint) const;
    QPointF toSlide(const QPointF& widgetPoint) const;
    // The text cursor's place in its frame, and the other end of the text selection; both -1
    // when no text is being edited.
    int textCursor() const;
    int textAnchor() const;

signals:
    void textEditingChanged(bool active);  // a text cursor or text selection in a shape began/ended

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    bool focusNextPrevChild(bool next) override;

private:
    enum class Drag { None, Move, Resize, Text };

    // Lays out the deck's current slide again and shows it with the deck's selection.
    void showSlide();
    void rebuild();
    void syncFromDeck();
    void setTextMode(bool on);
    void applyTextSelection();
    void selectShapes(const QList<int>& ids);
    bool keyInText(QKeyEvent* event);
    bool keyOnShapes(QKeyEvent* event);
    void replaceText(const QString& text, const QString& stepName);
    void copySelectedText() const;
    int handleAt(const QPointF& widgetPoint) const;
    bool onBorder(int shapeId, const QPointF& widgetPoint) const;
    QRectF resized(const QRectF& box, const QPointF& delta) const;
    // Moves `ids` by `by` points, as one step.
    void moveShapes(const QList<int>& ids, const QPointF& by);

    QPointer<minihost::Deck> m_deck;
    std::unique_ptr<minihost::SlideScene> m_scene;
    int m_slide = 0;
    bool m_textMode = false;
    int m_textShape = 0;
    int m_anchor = 0, m_caret = 0;
    Drag m_drag = Drag::None;
    QPointF m_pressWidget, m_pressSlide, m_dragDelta;
    int m_handle = -1;
    bool m_dragged = false;
};
