// SPDX-License-Identifier: MIT
#include "textboxcommand.h"

#include "minihost/slxcore/deck.h"
#include "nvo/transaction.h"
#include "slxcore/slxoldapi.h"

namespace {

// Releases an object-model reference when it goes out of scope.
template <typename T>
struct Held {
    T* object = nullptr;
    ~Held() {
        if (object) object->Release();
    }
};

}  // namespace

int insertTextBox(minihost::Deck& deck, IZApplication* application, const QRectF& box,
                  const QString& stepName) {
    ZFormatTransGuard step(application, stepName, true);
    if (FAILED(step.start())) return 0;
    Held<slxoldapi::Shapes> shapes;
    Held<IUnknown> added;
    Held<slxoldapi::Shape> shape;
    if (FAILED(deck.view()->get_Shapes(&shapes.object)) || !shapes.object ||
        FAILED(shapes.object->AddTextbox(1, float(box.left()), float(box.top()), float(box.width()),
                                         float(box.height()), &added.object)) ||
        !added.object ||
        FAILED(added.object->QueryInterface(slxoldapi::IID_Shape,
                                            reinterpret_cast<void**>(&shape.object))) ||
        !shape.object || FAILED(shape.object->Select(-1)))
        return 0;  // the guard rolls back what was made
    if (FAILED(step.commit())) return 0;
    const QList<int> selected = deck.selectedShapes();
    if (selected.size() != 1) return 0;
    deck.selectText(selected.first(), 0, 0);
    return selected.first();
}
