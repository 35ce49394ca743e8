// SPDX-License-Identifier: MIT
// Undo steps of a deck: the step open on it, how a step ends, and the command each recorded step
// becomes on the deck's undo stack.
#include <QUndoCommand>
#include <exception>

#include "minihost/slxcore/deck.h"
#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/transaction_p.h"
#include "nvo/transaction.h"

namespace minihost {
namespace {

// The change a step made, as the deck's watchers are told it (slides from 1).
DeckChange changeOf(const std::map<int, std::set<int>>& shapes) {
    DeckChange change;
    for (const auto& [slide, ids] : shapes)
        change.shapes.insert(slide + 1, QSet<int>(ids.begin(), ids.end()));
    return change;
}

// A recorded step on the stack. It keeps each slide it changed in the state not shown now: as it
// was before the step while the step is done, as it was after while it is undone. Undoing and
// redoing both swap that state with the slide's, so a step holds one copy of each slide.
class StepCommand final : public QUndoCommand {
public:
    StepCommand(DeckCore& core, UndoStep step)
        : QUndoCommand(step.name),
          m_core(core),
          m_other(std::move(step.before)),
          m_shapes(std::move(step.shapes)) {}

    void undo() override { swap(); }
    void redo() override {
        // The stack redoes a command when it is pushed: the step is made already.
        if (m_pushed) {
            m_pushed = false;
            return;
        }
        swap();
    }

private:
    void swap() {
        for (auto& [slide, xml] : m_other) {
            std::string now = m_core.snapshot(slide);
            m_core.restore(slide, xml);
            xml.swap(now);
        }
        m_core.tellChanged(m_shapes);
        // Selected shapes may have come or gone, a text cursor may now be past its text's end.
        if (m_shapes.count(m_core.currentSlide)) m_core.selectionTouched();
    }

    DeckCore& m_core;  // owns the stack (through its Deck), so outlives the command
    std::map<int, std::string> m_other;
    const std::map<int, std::set<int>> m_shapes;
    bool m_pushed = true;
};

}  // namespace

UndoStep* DeckCore::openStep() const {
    if (OpenStep* open = ZFormatStaticTransGuard::instance()->d_func()->stepFor(this))
        return &open->step;
    return editStep.get();
}

bool DeckCore::anyStepOpen() const {
    return ZFormatStaticTransGuard::instance()->d_func()->open || editStep;
}

void DeckCore::aboutToEdit(int slide, int shapeId) {
    if (UndoStep* step = openStep()) {
        if (!step->before.count(slide)) step->before[slide] = snapshot(slide);
        std::set<int>& shapes = step->shapes[slide];
        if (shapeId) shapes.insert(shapeId);
    }
    willChange(slide);
}

void DeckCore::announce(UndoStep& step) {
    if (deck && !step.before.empty()) emit deck->edited(changeOf(step.shapes));
}

void DeckCore::finish(UndoStep step, StepEnd end) {
    if (end == StepEnd::RollBack) {
        for (const auto& [slide, xml] : step.before) restore(slide, xml);
    } else if (!step.before.empty()) {
        const std::map<int, std::set<int>> shapes = step.shapes;
        // Without a Deck (the host let go of it while clients still hold objects) the step is
        // kept, as nobody can undo it.
        if (end == StepEnd::Record && undoStack)
            undoStack->push(new StepCommand(*this, std::move(step)));
        tellChanged(shapes);
    }
    if (selectionPending && !openStep()) {
        selectionPending = false;
        if (deck) emit deck->selectionChanged();
    }
}

void DeckCore::selectionTouched() {
    if (openStep())
        selectionPending = true;
    else if (deck)
        emit deck->selectionChanged();
}

void DeckCore::tellChanged(const std::map<int, std::set<int>>& shapes) {
    if (deck) emit deck->changed(changeOf(shapes));
}

EditScope::EditScope(DeckCore& core, int slide, const QString& operation, int shapeId)
    : m_core(core), m_slide(slide), m_exceptions(std::uncaught_exceptions()) {
    if (!core.openStep()) {
        core.editStep = std::make_unique<UndoStep>();
        core.editStep->name = operation;
        m_opened = true;
    }
    core.aboutToEdit(slide, shapeId);
}

void EditScope::touches(int shapeId) {
    if (UndoStep* step = m_core.openStep()) step->shapes[m_slide].insert(shapeId);
}

EditScope::~EditScope() {
    if (!m_opened) return;
    // Left by an exception: the edit may be half made, and is undone.
    const bool failed = std::uncaught_exceptions() > m_exceptions;
    if (!failed) m_core.announce(*m_core.editStep);
    const std::unique_ptr<UndoStep> step = std::move(m_core.editStep);
    m_core.finish(std::move(*step), failed ? StepEnd::RollBack : StepEnd::Record);
}

}  // namespace minihost
