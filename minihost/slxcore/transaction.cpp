// SPDX-License-Identifier: MIT
// Undo steps over the deck of the application's active view.
#include "nvo/transaction.h"

#include "minihost/slxcore/objects_p.h"
#include "minihost/slxcore/transaction_p.h"
#include "nvo/zapplication.h"

class ZFormatTransGuardPrivate {
public:
    IZApplication* application;
    QString name;
    bool record;
    bool opened = false;
};

namespace {

// The deck behind the application's active view, if it is one of ours.
std::shared_ptr<minihost::DeckCore> deckOf(IZApplication* application) {
    if (!application) return nullptr;
    slxoldapi::DocumentView* view = application->activeView();
    if (!view) return nullptr;
    void* raw = nullptr;
    if (FAILED(view->QueryInterface(minihost::IID_DeckView, &raw)) || !raw) return nullptr;
    auto* ours = static_cast<minihost::ViewObject*>(static_cast<slxoldapi::DocumentView*>(raw));
    std::shared_ptr<minihost::DeckCore> core = ours->core().shared_from_this();
    ours->Release();
    return core;
}

}  // namespace

ZFormatTransGuard::ZFormatTransGuard(IZApplication* application, const QString& name,
                                     bool recordUndo)
    : d(new ZFormatTransGuardPrivate{application, name, recordUndo}) {}

ZFormatTransGuard::~ZFormatTransGuard() {
    if (!d->opened) return;
    // Destroyed without commit(): everything the step changed goes back.
    ZFormatStaticTransGuardPrivate* open = ZFormatStaticTransGuard::instance()->d_func();
    std::unique_ptr<minihost::OpenStep> step = std::move(open->open);
    if (auto deck = step->deck.lock()) {
        for (const auto& [slide, xml] : step->step.before) deck->restore(slide, xml);
        deck->note(QStringLiteral("Transaction.rollback"));
    }
}

HRESULT ZFormatTransGuard::start() {
    ZFormatStaticTransGuardPrivate* open = ZFormatStaticTransGuard::instance()->d_func();
    if (d->opened || open->open) return E_FAIL;
    auto step = std::make_unique<minihost::OpenStep>();
    step->step.name = d->name;
    step->record = d->record;
    step->owner = this;
    const auto deck = deckOf(d->application);
    step->deck = deck;
    if (deck) deck->note(QStringLiteral("Transaction.start(\"%1\")").arg(d->name));
    open->open = std::move(step);
    d->opened = true;
    return S_OK;
}

HRESULT ZFormatTransGuard::commit() {
    if (!d->opened) return E_FAIL;
    ZFormatStaticTransGuardPrivate* open = ZFormatStaticTransGuard::instance()->d_func();
    std::unique_ptr<minihost::OpenStep> step = std::move(open->open);
    d->opened = false;
    if (auto deck = step->deck.lock()) {
        deck->note(QStringLiteral("Transaction.commit(\"%1\")").arg(step->step.name));
        if (step->record) deck->pushStep(std::move(step->step));
    }
    return S_OK;
}

ZFormatStaticTransGuard::ZFormatStaticTransGuard() : d(new ZFormatStaticTransGuardPrivate) {}
ZFormatStaticTransGuard::~ZFormatStaticTransGuard() = default;

ZFormatStaticTransGuard* ZFormatStaticTransGuard::instance() {
    // Never destroyed: guards may still ask for it while the process shuts down.
    static ZFormatStaticTransGuard* guard = new ZFormatStaticTransGuard;
    return guard;
}

bool ZFormatStaticTransGuard::isActive() const { return static_cast<bool>(d->open); }

QString ZFormatStaticTransGuard::name() const { return d->open ? d->open->step.name : QString(); }

void ZFormatStaticTransGuard::setName(const QString& name) {
    if (d->open) d->open->step.name = name;
}
