// SPDX-License-Identifier: MIT
#include "minihost/slxcore/deck.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <algorithm>

#include "minihost/slxcore/objects_p.h"
#include "minihost/slxcore/textbody_p.h"
#include "minihost/slxcore/xmlnode_p.h"

// The ids the object model's clients query for. {3F2A6C10-7B4D-4C8E-9F21-5A6B7C8D9E01}
const GUID slxoldapi::IID_Selection = {
    0x3F2A6C10, 0x7B4D, 0x4C8E, {0x9F, 0x21, 0x5A, 0x6B, 0x7C, 0x8D, 0x9E, 0x01}};
// {3F2A6C11-7B4D-4C8E-9F21-5A6B7C8D9E01}
const GUID slxoldapi::IID_Shape = {
    0x3F2A6C11, 0x7B4D, 0x4C8E, {0x9F, 0x21, 0x5A, 0x6B, 0x7C, 0x8D, 0x9E, 0x01}};

namespace minihost {

Deck::Deck(std::shared_ptr<DeckCore> core)
    : d(std::move(core)),
      m_view(new ViewObject(d)),
      m_stack(std::make_unique<QUndoStack>()),
      m_pictures(std::make_shared<PictureStore>(
          [deck = std::weak_ptr<DeckCore>(d)](const QString& part, QString* problem) {
              const std::shared_ptr<DeckCore> core = deck.lock();
              if (!core) {
                  *problem = QStringLiteral("the deck is closed");
                  return QByteArray();
              }
              try {
                  return core->package->read(part.toStdString());
              } catch (const DeckError& e) {
                  *problem = QString::fromStdString(e.what());
                  return QByteArray();
              }
          })) {
    m_stack->setUndoLimit(kUndoLimit);
    // For watchers that keep what they were told (queued connections, signal spies).
    qRegisterMetaType<DeckChange>();
    d->deck = this;
    d->undoStack = m_stack.get();
}

Deck::~Deck() {
    // Objects clients still hold may edit the deck's parts; nobody is told, nothing is undoable.
    d->deck = nullptr;
    d->undoStack = nullptr;
    // Its last signals would reach watchers that are letting go of the deck.
    m_stack->blockSignals(true);
    m_stack.reset();
    m_view->releaseByHost();
}

std::unique_ptr<Deck> Deck::load(const QByteArray& bytes, const QString& name, QString* error) {
    try {
        return std::unique_ptr<Deck>(new Deck(DeckCore::load(bytes, name)));
    } catch (const DeckError& e) {
        if (error) *error = QString::fromStdString(e.what());
    } catch (const std::bad_alloc&) {
        if (error) *error = name + QStringLiteral(": out of memory");
    }
    return nullptr;
}

std::unique_ptr<Deck> Deck::loadFile(const QString& path, QString* error) {
    // A FIFO would block the open, a device never end: only a regular file is read.
    if (const QFileInfo info(path); info.exists() && !info.isFile()) {
        if (error) *error = path + QStringLiteral(": not a regular file");
        return nullptr;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (error)
            *error = path + QStringLiteral(": cannot be opened (%1)").arg(file.errorString());
        return nullptr;
    }
    if (file.isSequential()) {  // replaced by something else since it was looked at
        if (error) *error = path + QStringLiteral(": not a regular file");
        return nullptr;
    }
    if (file.size() > (1ll << 31) - 1) {
        if (error) *error = path + QStringLiteral(": too large for a deck");
        return nullptr;
    }
    return load(file.readAll(), path, error);
}

std::unique_ptr<Deck> Deck::create(int slides) {
    return std::unique_ptr<Deck>(new Deck(
        DeckCore::load(DeckCore::blankDeckBytes(std::max(slides, 0)), QStringLiteral("new deck"))));
}

std::shared_ptr<PictureStore> Deck::pictures() const {
    return m_pictures;
}

QString Deck::name() const {
    return d->name;
}
int Deck::slideCount() const {
    return static_cast<int>(d->slides.size());
}
QSizeF Deck::slideSize() const {
    return d->slideSize;
}
int Deck::currentSlide() const {
    return d->currentSlide + 1;
}

bool Deck::setCurrentSlide(int slide) {
    if (slide < 1 || slide > slideCount()) return false;
    const bool changed = d->currentSlide != slide - 1;
    d->currentSlide = slide - 1;
    clearSelection();
    if (changed) emit currentSlideChanged(slide);
    return true;
}

QList<ShapeInfo> Deck::shapes(int slide) const {
    QList<ShapeInfo> result;
    if (slide < 1 || slide > slideCount()) return result;
    for (const ShapeNode& node : listShapes(shapeTree(d->slides[slide - 1]->doc))) {
        ShapeInfo info;
        info.id = node.id;
        info.name = shapeName(node.element);
        info.kind = shapeKind(node.element);
        const Box box = geometry(node);
        if (box.known) info.box = QRectF(box.left, box.top, box.width, box.height);
        if (const pugi::xml_node body = textBodyOf(node.element)) {
            TextBody text(body);
            info.hasTextFrame = true;
            info.text = text.text();
            info.followsText = followsText(body);
            const FontValues font = resolveFont(text.propertiesAt(0), body, d->styles);
            info.fontName = font.name;
            info.fontSize = font.size;
            info.bold = font.bold;
            info.rgb = font.rgb;
        }
        result << info;
    }
    return result;
}

QString Deck::text(int slide, int shapeId) const {
    const pugi::xml_node body = textBodyOf(d->shape(slide - 1, shapeId).element);
    return body ? TextBody(body).text() : QString();
}

bool Deck::selectShapes(const QList<int>& shapeIds) {
    for (int id : shapeIds)
        if (!d->shape(d->currentSlide, id).element) return false;
    std::vector<int> ids;
    for (int id : shapeIds)
        if (std::find(ids.begin(), ids.end(), id) == ids.end()) ids.push_back(id);
    if (!d->textSelected && d->selectedShapes == ids) return true;
    d->selectedShapes = std::move(ids);
    d->textSelected = false;
    d->selectionTouched();
    return true;
}

bool Deck::selectText(int shapeId, int start, int length) {
    const pugi::xml_node body = textBodyOf(d->shape(d->currentSlide, shapeId).element);
    if (!body || start < 0 || length < 0 || start + length > TextBody(body).length()) return false;
    if (d->textSelected && d->textShape == shapeId && d->textStart == start &&
        d->textLength == length)
        return true;
    d->selectedShapes.clear();
    d->textSelected = true;
    d->textShape = shapeId;
    d->textStart = start;
    d->textLength = length;
    d->selectionTouched();
    return true;
}

void Deck::clearSelection() {
    // Shapes an undo took away are no longer selected: there is nothing to tell of them.
    const bool selected = d->textSelected || !d->selectedShapeIds().empty();
    d->selectedShapes.clear();
    d->textSelected = false;
    if (selected) d->selectionTouched();
}

QList<int> Deck::selectedShapes() const {
    const std::vector<int> ids = d->selectedShapeIds();
    return QList<int>(ids.begin(), ids.end());
}

bool Deck::hasTextSelection() const {
    return d->textSelected;
}

slxoldapi::DocumentView* Deck::view() const {
    return m_view;
}

int Deck::addTextBox(int slide, const QString& text, const QRectF& box) {
    if (slide < 1 || slide > slideCount()) return 0;
    SlidePart& part = *d->slides[slide - 1];
    if (!shapeTree(part.doc)) return 0;
    d->willChange(slide - 1);
    const pugi::xml_node element = part.shapes.addTextbox(
        part.doc, static_cast<float>(box.left()), static_cast<float>(box.top()),
        static_cast<float>(box.width()), static_cast<float>(box.height()));
    TextBody(textBodyOf(element)).insert(0, text);
    const int id = shapeIdOf(element);
    d->tellChanged({{slide - 1, {id}}});
    return id;
}

QRectF Deck::placeOf(int slide, int shapeId) const {
    if (slide < 1 || slide > slideCount()) return {};
    const Box box = d->placeOf(slide - 1, shapeId);
    return box.known ? QRectF(box.left, box.top, box.width, box.height) : QRectF();
}

QByteArray Deck::toBytes(QString* error) const {
    try {
        return d->toBytes();
    } catch (const DeckError& e) {
        if (error) *error = QString::fromStdString(e.what());
    } catch (const std::bad_alloc&) {
        if (error) *error = d->name + QStringLiteral(": out of memory");
    }
    return {};
}

bool Deck::save(const QString& path, QString* error) {
    const QByteArray bytes = toBytes(error);
    if (bytes.isEmpty()) return false;
    // QSaveFile writes beside the target and renames over it only on commit().
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        if (error)
            *error = path + QStringLiteral(": cannot be written (%1)").arg(file.errorString());
        return false;
    }
    m_stack->setClean();
    return true;
}

QStringList Deck::editedParts() const {
    return d->editedParts();
}

QUndoStack* Deck::undoStack() const {
    return m_stack.get();
}

bool Deck::undo() {
    if (d->anyStepOpen() || !m_stack->canUndo()) return false;
    m_stack->undo();
    return true;
}

bool Deck::redo() {
    if (d->anyStepOpen() || !m_stack->canRedo()) return false;
    m_stack->redo();
    return true;
}

QStringList Deck::undoSteps() const {
    QStringList names;
    for (int i = 0; i < m_stack->index(); ++i) names << m_stack->text(i);
    return names;
}

QStringList Deck::redoSteps() const {
    QStringList names;
    for (int i = m_stack->count() - 1; i >= m_stack->index(); --i) names << m_stack->text(i);
    return names;
}

QStringList Deck::journal() const {
    return d->journal;
}
void Deck::clearJournal() {
    d->journal.clear();
}

}  // namespace minihost
