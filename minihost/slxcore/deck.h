// SPDX-License-Identifier: MIT
// A deck open in the stand-in host: read from a .pptx (or made new), shown one slide at a time in
// a view whose selection the host sets, edited through the object model of slxcore/slxoldapi.h,
// undone and redone by step, and written back.
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
// Shapes are designated by their id (p:cNvPr/@id), unique within a slide; slides are numbered
// from 1. Members of groups are shapes too. The object model runs on one thread.
#pragma once

#include <QByteArray>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

#include "hostexport.h"
#include "minihost/slxcore/picturestore.h"
#include "minihost/slxcore/slidedrawing.h"
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

class ZHOST_API Deck {
public:
    // Reads a deck from `bytes`; `name` names it in errors. Null and `*error` set on failure.
    static std::unique_ptr<Deck> load(const QByteArray& bytes, const QString& name, QString* error);
    static std::unique_ptr<Deck> loadFile(const QString& path, QString* error);
    // A new deck of `slides` empty 960 x 540 point slides.
    static std::unique_ptr<Deck> create(int slides);
    ~Deck();
    Deck(const Deck&) = delete;
    Deck& operator=(const Deck&) = delete;

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
    // The deck's pictures, decoded for drawing (picturestore.h): one store for everyone who
    // draws the deck, which stays usable (giving no pictures) after the deck is gone.
    std::shared_ptr<PictureStore> pictures() const;

    // A person's edits on the current slide, each one undo step named as given below. False
    // (and nothing changed, no step) for an unknown shape or a shape the edit cannot apply to.
    // Moves shapes by (`dx`, `dy`) points: "move". Shapes without a place of their own (a
    // placeholder that inherits it) take their inherited place first.
    bool moveShapes(const QList<int>& shapeIds, double dx, double dy);
    // Replaces [start, start + length) of a shape's text with `text` (clamped to the text;
    // positions as in selectText), as typing does: the new text takes the format of the first
    // character it replaces, or of the text before it when nothing is replaced; a frame that
    // follows its text is fitted again. `stepName` names the step
    // ("typing", "delete text", "paste"). Returns the position after the new text, or -1.
    int replaceText(int shapeId, int start, int length, const QString& text,
                    const QString& stepName);
    // Removes shapes (with their members, for groups) and clears the selection: "delete".
    bool deleteShapes(const QList<int>& shapeIds);

    // The view of the current slide: a plain pointer owned by the deck (not AddRef'd).
    slxoldapi::DocumentView* view() const;

    // Builds content without the object model: a text box with `text` on `slide`, as an
    // application's user would have left it (not journalled, not undoable). Returns its id.
    int addTextBox(int slide, const QString& text, const QRectF& box);

    // Where a shape is on `slide`, in points: its own box, or for a placeholder without one the
    // box it inherits from its layout or master. A null rectangle when neither is known.
    QRectF placeOf(int slide, int shapeId) const;
    // Moves and resizes a shape as a user dragging it or its handles would: its box becomes
    // `box` (points on the slide), except that a shape that follows its text takes the height its
    // text needs at the new width; a placeholder that inherited its place gets one of its own. An
    // undo step named `stepName` of its own, or part of the host's open step. False, and no
    // change, for an unknown shape or a negative size.
    bool setShapeBox(int slide, int shapeId, const QRectF& box,
                     const QString& stepName = QStringLiteral("Move"));

    // The deck as a .pptx, or an empty array and `*error`. Only slides that differ from what was
    // read are rewritten: one whose edits were all undone or rolled back is copied as stored.
    QByteArray toBytes(QString* error) const;
    bool save(const QString& path, QString* error) const;
    QStringList editedParts() const;  // the slide parts toBytes() rewrites

    bool undo();
    bool redo();
    QStringList undoSteps() const;  // names, oldest first
    QStringList redoSteps() const;  // names, next redo last

    // The object-model calls made on this deck, in order ("TextRange.InsertAfter(\"hǎo\")"): the
    // last kJournalLimit of them, so that a long session does not grow without end.
    static constexpr int kJournalLimit = 10000;
    QStringList journal() const;
    void clearJournal();

private:
    explicit Deck(std::shared_ptr<DeckCore> core);
    std::shared_ptr<DeckCore> d;
    ViewObject* m_view;
    std::shared_ptr<PictureStore> m_pictures;
};

}  // namespace minihost
