// SPDX-License-Identifier: MIT
// The private side of a deck: its parts, the view's slide and selection, the live text ranges,
// the open undo step and the call journal. Objects of the object model share it.
#pragma once

#include <QByteArray>
#include <QSizeF>
#include <QStringList>
#include <map>
#include <memory>
#include <pugixml.hpp>
#include <set>
#include <string>
#include <vector>

#include "minihost/slxcore/package_p.h"
#include "minihost/slxcore/runformat_p.h"
#include "minihost/slxcore/slidetree_p.h"
#include "minihost/slxcore/textlayout.h"

class QUndoStack;

namespace minihost {

struct SlidePart {
    std::string partName;
    pugi::xml_document doc;
    bool edited = false;
    // A digest of the XML as read, taken before the first edit: whether the slide differs from
    // what was read is known without reading the part again.
    QByteArray originalDigest;
    std::size_t originalSize = 0;  // of the same XML: a slide of another size differs at once
    SlideShapes shapes;
};

// One relationship of a part's relationships part.
struct Relationship {
    std::string type, target;
    bool external = false;
};

// A relationships part as read, by relationship id; or why it could not be read.
struct Relationships {
    std::map<std::string, Relationship> byId;
    std::string error;  // a DeckError's message, thrown again whenever it is asked for
};

// A slide layout or master, read once and kept: its shapes' tree, and its placeholders by index
// and by family, the first of each in z order (what a slide's placeholders inherit from).
struct TemplatePart {
    pugi::xml_document doc;
    pugi::xml_node tree;
    std::map<std::string, pugi::xml_node> placeholdersByIndex, placeholdersByFamily;
};

// Where a text range is: it moves when text is inserted or removed before it in its frame.
struct RangeState {
    int slide;
    int shapeId;
    int start;
    int length;
};

// One undo step while it is open: each slide it changed (from 0) as it was before, and the
// shapes it changed on each.
struct UndoStep {
    QString name;
    std::map<int, std::string> before;
    std::map<int, std::set<int>> shapes;
};

class Deck;

// How an open step ends.
enum class StepEnd {
    Record,    // an undo step on the stack
    Keep,      // its changes stay, not undoable (a guard that records no undo)
    RollBack,  // its changes are undone
};

class DeckCore : public std::enable_shared_from_this<DeckCore> {
public:
    // Reads a deck; throws DeckError naming `name`.
    static std::shared_ptr<DeckCore> load(const QByteArray& bytes, const QString& name);
    // The bytes of a new deck with `slides` empty slides (960 x 540 points).
    static QByteArray blankDeckBytes(int slides);

    // The deck as it is now: the original bytes when no slide differs from what was read, else
    // the original archive with the slide parts that differ rewritten (a slide whose edits were
    // all undone or rolled back is copied as stored).
    QByteArray toBytes() const;
    QStringList editedParts() const;  // the parts toBytes() rewrites

    // ---- shapes and text
    ShapeNode shape(int slide, int id) const;
    std::shared_ptr<RangeState> newRange(int slide, int id, int start, int length);
    // Moves the live ranges of frame (slide, id), except `except`, after [pos, pos + removed)
    // was replaced by `inserted` units.
    void textReplaced(int slide, int id, int pos, int removed, int inserted,
                      const RangeState* except);
    // Resizes the shape when it follows its text.
    void fit(int slide, int id) const;
    // The same, given what the shape shows now (drawnShapeOf) and its text laid out.
    void fit(int slide, int id, const DrawnShape& drawn, const TextLayout& layout) const;
    // Where the shape is on the slide: its own box, else (a placeholder) the box of the matching
    // placeholder of the slide's layout, else of the layout's master. Not known when none has one.
    Box placeOf(int slide, int id) const;

    // ---- selection of the view (on currentSlide)
    std::vector<int> selectedShapeIds() const;  // the text's shape for a text selection
    void selectShape(int id, bool replace);

    // ---- undo steps (undostep.cpp)
    // The step this deck's changes go into: the host's or a guard's opened on this deck, else
    // the one an edit opened; null when none is open.
    UndoStep* openStep() const;
    // Whether a step is open on this deck or any other (a guard's or the host's): nothing may be
    // undone or redone then.
    bool anyStepOpen() const;
    // Called before slide `slide` changes, with a step open: records the slide as it is for the
    // step, and `shapeId` (0: none yet) as changed.
    void aboutToEdit(int slide, int shapeId);
    // Tells the deck's watchers that `step`, still open, is about to close (Deck::edited): what
    // they change joins it.
    void announce(UndoStep& step);
    // Ends `step`, no longer open: pushed on the undo stack, kept or rolled back; then the
    // watchers are told what changed and, once, whether the selection did.
    void finish(UndoStep step, StepEnd end);
    // The view's selection changed: told now, or when the open step closes.
    void selectionTouched();
    // Tells the watchers what changed (slides from 0 in `shapes`).
    void tellChanged(const std::map<int, std::set<int>>& shapes);
    std::string snapshot(int slide) const;
    void restore(int slide, const std::string& xml);

    void note(const QString& entry);

    // Whether `slide`, whose XML is now `xml`, differs from what was read.
    bool changed(int slide, const std::string& xml) const;
    // Called before the XML of `slide` changes: takes its original digest when it has none yet.
    void willChange(int slide);

    // ---- the parts around slides, for drawing them (layouts, masters, media)
    // The relationships of `sourcePart` (none when it has no relationships part), each part read
    // once and kept. Throws DeckError when it is damaged (every time it is asked for).
    const std::map<std::string, Relationship>& relationshipsOf(const std::string& sourcePart) const;
    // The part that `sourcePart`'s relationship `id` targets, or an empty string for a missing
    // or external one.
    std::string relatedPart(const std::string& sourcePart, const std::string& id) const;
    // The part of `sourcePart`'s first relationship whose type ends with "/<type>" ("slideLayout",
    // "slideMaster"), parsed once and kept; null when there is none. Throws DeckError when the
    // part is damaged (read once: the same error again after that), DeckLimitError past a limit.
    const TemplatePart* relatedTemplate(const std::string& sourcePart, const char* type,
                                        std::string* partName) const;
    // Part `part` (a layout, a master, a chart, the table styles, ...) parsed once and kept, with
    // the same errors as relatedTemplate().
    const TemplatePart* keptPart(const std::string& part) const;

    QString name;
    std::string presentationPart;      // its name in the package ("ppt/presentation.xml")
    std::unique_ptr<Package> package;  // what was read; new decks are read from built bytes too
    pugi::xml_document presentation;
    pugi::xml_document theme;
    DeckStyles styles;
    QSizeF slideSize{960, 540};
    std::vector<std::unique_ptr<SlidePart>> slides;

    int currentSlide = 0;  // 0-based
    std::vector<int> selectedShapes;
    bool textSelected = false;
    int textShape = 0, textStart = 0, textLength = 0;

    std::vector<std::weak_ptr<RangeState>> ranges;
    QStringList journal;
    // Relationships parts, by the part they belong to; layouts and masters read by
    // relatedTemplate (null: damaged, with its error in templateErrors), by part name.
    mutable std::map<std::string, Relationships> relationshipsRead;
    mutable std::map<std::string, std::unique_ptr<TemplatePart>> templates;
    mutable std::map<std::string, std::string> templateErrors;
    // Shapes of the slides, layouts and masters read (limits::kShapes).
    mutable int shapeCount = 0;

    // Counts the shapes of `part` (a slide, layout or master whose tree is `tree`) against the
    // limits; throws DeckLimitError.
    void countShapes(const std::string& part, pugi::xml_node tree) const;
    // The host's Deck while it lives: it is told of changes, and its stack takes the steps.
    Deck* deck = nullptr;
    QUndoStack* undoStack = nullptr;
    // The step an edit opened when none was open (EditScope).
    std::unique_ptr<UndoStep> editStep;
    bool selectionPending = false;  // the selection changed while a step was open
};

// Around one change of a slide: it joins the step open on the deck, or opens one of its own
// named `operation`, which closes (announced, then pushed) when the scope ends. A scope left by
// an exception rolls its own step back.
class EditScope {
public:
    EditScope(DeckCore& core, int slide, const QString& operation, int shapeId = 0);
    ~EditScope();
    EditScope(const EditScope&) = delete;
    EditScope& operator=(const EditScope&) = delete;
    // Names one more shape the change touches (a new one, once it has its id).
    void touches(int shapeId);

private:
    DeckCore& m_core;
    int m_slide;
    bool m_opened = false;
    int m_exceptions;
};

}  // namespace minihost
