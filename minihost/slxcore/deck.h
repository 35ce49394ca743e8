// SPDX-License-Identifier: MIT
// A deck open in the stand-in host: read from a .pptx (or made new), shown one slide at a time in
// a view whose selection the host sets, edited through the object model of slxcore/slxoldapi.h
// and by the host's own edits, undone and redone by step on its undo stack, and written back.
//
// Reading never trusts the file. A deck that cannot be read gives no Deck and an error
// "<name>: <what is wrong>", for example
//   deck.pptx: not a zip archive
//   deck.pptx: entry "../evil.xml" points outside the archive
//   deck.pptx: missing part "ppt/presentation.xml"
//   deck.pptx: part "ppt/slides/slide1.xml" is not well-formed XML (Start-end tags mismatch at byte
//   812) deck.pptx: part "ppt/slides/slide1.xml" claims 5000000000 bytes (the limit is 67108864)
// Writing is lossless: a deck with no edits is written back byte for byte; otherwise only the
// edited slide parts are rewritten and every other entry is copied as stored. Files are
// written to a temporary file that replaces the target only when complete.
//
// Every change is one command on the deck's undo stack (undoStack()): the add-on's transactions,
// the host's own, and the edits below. Others watch the deck instead of being told: the stack
// says what can be undone and whether the deck is as saved (its clean state); changed() names the
// slides and shapes a step, an undo or a redo changed; selectionChanged() and
// currentSlideChanged() say what the view shows. While a step is still open, edited() lets a
// watcher add follow-up changes to it (see there).
//
// Shapes are designated by their id (p:cNvPr/@id), unique within a slide; slides are numbered
// from 1. Members of groups are shapes too. The object model runs on one thread.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QObject>
#include <QRectF>
#include <QSet>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <QUndoStack>
#include <cstdint>
#include <memory>
#include <optional>

#include "hostexport.h"
#include "minihost/slxcore/picturestore.h"
#include "minihost/slxcore/readingsover.h"
#include "minihost/slxcore/slidedrawing.h"
#include "minihost/slxcore/textlayout.h"
#include "slxcore/slxoldapi.h"

namespace minihost {

class DeckCore;
class ViewObject;

struct ShapeInfo {
    int id = 0;
    QString name;
    QString kind;  // "text box", "placeholder", "shape", "picture", "table or chart", ...
    QRectF box;    // points on the slide; empty when inherited from the layout
    bool hasTextFrame = false;
    QString text;  // paragraphs separated by "\r", line breaks "\v"
    bool followsText = false;
    // The format of the text's first character.
    QString fontName;
    float fontSize = 0;
    bool bold = false;
    std::uint32_t rgb = 0;  // 0x00RRGGBB
};

// What one change of the deck touched: on each slide it changed (from 1), the ids of the shapes it
// added, changed or removed. For example typing into shape 3 of slide 2 is {2: {3}}; an undo
// names what its step named.
struct DeckChange {
    QMap<int, QSet<int>> shapes;
    QList<int> slides() const { return shapes.keys(); }
    bool touches(int slide) const { return shapes.contains(slide); }
};

class ZHOST_API Deck : public QObject {
    Q_OBJECT
public:
    // Reads a deck from `bytes`; `name` names it in errors. Null and `*error` set on failure.
    static std::unique_ptr<Deck> load(const QByteArray& bytes, const QString& name, QString* error);
    static std::unique_ptr<Deck> loadFile(const QString& path, QString* error);
    // A new deck of `slides` empty 960 x 540 point slides.
    static std::unique_ptr<Deck> create(int slides);
    ~Deck() override;

    QString name() const;
    int slideCount() const;
    QSizeF slideSize() const;  // points

    // The slide the view shows (from 1); changing it clears the selection.
    int currentSlide() const;
    bool setCurrentSlide(int slide);
    QList<ShapeInfo> shapes(int slide) const;
    // The text of a shape, or a null string when it has no text frame.
    QString text(int slide, int shapeId) const;

    // The view's selection, on the current slide. False (and no change) for an unknown shape, a
    // shape without text, or a run outside its text.
    bool selectShapes(const QList<int>& shapeIds);
    bool selectText(int shapeId, int start, int length);
    void clearSelection();
    QList<int> selectedShapes() const;  // the text's shape for a text selection
    bool hasTextSelection() const;
    // The selected run of text (a cursor when `length` is 0), valid when hasTextSelection().
    struct TextSelection {
        int shapeId = 0;
        int start = 0;
        int length = 0;
    };
    TextSelection textSelection() const;

    // What slide `slide` shows, for drawing it (see slidedrawing.h); empty for a slide that
    // does not exist.
    SlideDrawing drawing(int slide) const;
    // The text of shape `shapeId` on `slide` laid out as drawing(slide) draws it (see
    // textlayout.h): where its lines break and each character sits, for placing things over it.
    // Nothing for an unknown slide or shape, a shape without a text frame, or one whose place is
    // not known.
    std::optional<TextLayout> textLayout(int slide, int shapeId) const;
    // The deck's pictures, decoded for drawing (picturestore.h): one store for everyone who
    // draws the deck, which stays usable (giving no pictures) after the deck is gone.
    std::shared_ptr<PictureStore> pictures() const;

    // ---- Edits: a person's in the host's window, and a host program's. Each names the slide it
    // is on (from 1) and is one undo step named `stepName` (a text for the user, in the user's
    // language: the caller's), or part of the step open on the deck (the host's transaction, an
    // add-on's, one being closed: see edited()). False, or -1 (and nothing changed, no step),
    // for an unknown slide or shape or an edit that cannot apply to it.
    //
    // Moves and resizes shapes as a user dragging them or their handles would: each shape's box
    // becomes the one given (points on the slide). A shape that follows its text and whose size
    // changed takes the height its text needs at its width; a placeholder that inherited its
    // place gets one of its own. Moving is the same call with boxes of the same size. False for
    // no boxes or a negative size.
    bool setShapeBoxes(int slide, const QMap<int, QRectF>& boxes, const QString& stepName);
    // Replaces [start, start + length) of a shape's text with `text` (clamped to the text;
    // positions as in selectText), as typing does: the new text takes the format of the first
    // character it replaces, or of the text before it when nothing is replaced; a frame that
    // follows its text is fitted again; the selection moves with its text. Returns the position
    // after the new text, or -1.
    int replaceText(int slide, int shapeId, int start, int length, const QString& text,
                    const QString& stepName);
    // Removes shapes (with their members, for groups); on the current slide the selection is
    // cleared.
    bool deleteShapes(int slide, const QList<int>& shapeIds, const QString& stepName);
    // A new empty text box at `box` with the host's default text format, on top of the others.
    // Returns its id, or 0.
    int insertTextBox(int slide, const QRectF& box, const QString& stepName);

    // ---- Readings over a text (readingsover.h says how they are written and recorded). Each is
    // an edit as above: one undo step named `stepName`, or part of the step open on the deck,
    // so that a host can place readings again inside the step of an edit of their text (see
    // edited()).
    //
    // Places `readings` over the text of shape `textId` on `slide`, in place of any it had:
    // positions increasing, each on a character the add-on reads, none with an empty syllable.
    // No readings removes them. Opens the text's line spacing and, where syllables would touch,
    // its character spacing. Returns "" or what is wrong, with nothing changed, e.g.
    //   "shape 3 on slide 2 has no text"
    //   "shape 3 on slide 2 has no character the add-on reads at 5 for the reading \"hǎo\""
    QString placeReadingsOver(int slide, int textId, const QList<Reading>& readings,
                              const QString& stepName);
    // Removes the readings over the text of shape `textId` (its spacing stays as it is). False
    // when it has none.
    bool removeReadingsOver(int slide, int textId, const QString& stepName);
    // The readings over the text of shape `textId` as the file records them (the positions those
    // of when they were placed), in order; none when it has none.
    QList<Reading> readingsOver(int slide, int textId) const;
    // The ids of the shapes that are the readings over the text of shape `textId`: their group
    // and its boxes; none when it has none.
    QSet<int> readingShapesOver(int slide, int textId) const;

    // The view of the current slide: a plain pointer owned by the deck (not AddRef'd).
    slxoldapi::DocumentView* view() const;

    // Builds content, as an application's user would have left it, before anyone edits the deck
    // (tests, benchmarks, example decks): a text box with `text` on `slide`, not journalled and
    // not an undo step (changed() still names it). Returns its id.
    int addTextBox(int slide, const QString& text, const QRectF& box);

    // Where a shape is on `slide`, in points: its own box, or for a placeholder without one the
    // box it inherits from its layout or master. A null rectangle when neither is known.
    QRectF placeOf(int slide, int shapeId) const;

    // The deck as a .pptx, or an empty array and `*error`. Only slides that differ from what was
    // read are rewritten: one whose edits were all undone or rolled back is copied as stored.
    QByteArray toBytes(QString* error) const;
    // Writes the deck to `path`, which then holds what the deck holds now: the undo stack's
    // clean state.
    bool save(const QString& path, QString* error);
    QStringList editedParts() const;  // the slide parts toBytes() rewrites

    // The deck's history: one command per step, named as the step; clean when the deck is as it
    // was read or last saved. It keeps the last kUndoLimit steps, so a long session does not
    // grow without end. Host windows take their undo and redo actions from it.
    static constexpr int kUndoLimit = 100;
    QUndoStack* undoStack() const;
    // Undo and redo, refused (false) while a step is open.
    bool undo();
    bool redo();
    QStringList undoSteps() const;  // names, oldest first
    QStringList redoSteps() const;  // names, next redo last

    // The object-model calls made on this deck, in order ("TextRange.InsertAfter(\"hǎo\")"): the
    // last kJournalLimit of them, so that a long session does not grow without end.
    static constexpr int kJournalLimit = 10000;
    QStringList journal() const;
    void clearJournal();

signals:
    // A step is about to close with these changes (never for one rolled back). What a receiver
    // changes in the deck now joins the step: one undo undoes both, and changed() names both.
    // For example, readings placed again over a text that was just typed into. The receiver's
    // own changes do not raise edited() again.
    void edited(const minihost::DeckChange& change);
    // A step was made (and closed), undone or redone: the slides and shapes it changed.
    void changed(const minihost::DeckChange& change);
    // The view's selection changed (by a call, an edit or an undo); once per step.
    void selectionChanged();
    void currentSlideChanged(int slide);

private:
    explicit Deck(std::shared_ptr<DeckCore> core);
    std::shared_ptr<DeckCore> d;
    ViewObject* m_view;
    std::unique_ptr<QUndoStack> m_stack;
    std::shared_ptr<PictureStore> m_pictures;
};

}  // namespace minihost

Q_DECLARE_METATYPE(minihost::DeckChange)
