// SPDX-License-Identifier: MIT
// Undo steps over the deck of the application's active view: the ones guards open, and the
// host's own transaction.
#include "nvo/transaction.h"

#include "minihost/slxcore/hosttransaction.h"
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

namespace minihost {
namespace {

ZFormatStaticTransGuardPrivate& slot() {
    return *ZFormatStaticTransGuard::instance()->d_func();
}

// The deck behind the application's active view, if it is one of ours.
std::shared_ptr<DeckCore> deckOf(IZApplication* application) {
    if (!application) return nullptr;
    slxoldapi::DocumentView* view = application->activeView();
    if (!view) return nullptr;
    void* raw = nullptr;
    if (FAILED(view->QueryInterface(IID_DeckView, &raw)) || !raw) return nullptr;
    auto* ours = static_cast<ViewObject*>(static_cast<slxoldapi::DocumentView*>(raw));
    std::shared_ptr<DeckCore> core = ours->core().shared_from_this();
    ours->Release();
    return core;
}

}  // namespace

bool openStep(IZApplication* application, const QString& name, bool record, bool host) {
    if (slot().open) return false;
    auto step = std::make_unique<OpenStep>();
    step->step.name = name;
    step->record = record;
    step->host = host;
    const auto deck = deckOf(application);
    step->deck = deck;
    if (deck)
        deck->note(
            QStringLiteral("%1.start(\"%2\")")
                .arg(host ? QStringLiteral("HostTransaction") : QStringLiteral("Transaction"),
                     name));
    slot().open = std::move(step);
    return true;
}

void closeStep(bool keep) {
    OpenStep& open = *slot().open;
    const auto deck = open.deck.lock();
    if (!deck) {
        slot().open.reset();
        return;
    }
    const StepEnd end = !keep ? StepEnd::RollBack : open.record ? StepEnd::Record : StepEnd::Keep;
    // Still open while the deck's watchers hear of it: what they change joins the step.
    if (end != StepEnd::RollBack) deck->announce(open.step);
    const std::unique_ptr<OpenStep> step = std::move(slot().open);
    const QString kind =
        step->host ? QStringLiteral("HostTransaction") : QStringLiteral("Transaction");
    deck->note(keep ? QStringLiteral("%1.commit(\"%2\")").arg(kind, step->step.name)
                    : kind + QStringLiteral(".rollback"));
    deck->finish(std::move(step->step), end);
}

bool openHostTransaction(IZApplication* application, const QString& name) {
    return openStep(application, name, true, true);
}

bool commitHostTransaction() {
    if (!slot().open || !slot().open->host) return false;
    closeStep(true);
    return true;
}

bool rollbackHostTransaction() {
    if (!slot().open || !slot().open->host) return false;
    closeStep(false);
    return true;
}

}  // namespace minihost

ZFormatTransGuard::ZFormatTransGuard(IZApplication* application, const QString& name,
                                     bool recordUndo)
    : d(new ZFormatTransGuardPrivate{application, name, recordUndo}) {}

ZFormatTransGuard::~ZFormatTransGuard() {
    // Destroyed without commit(): everything the step changed goes back.
    if (d->opened) minihost::closeStep(false);
}

HRESULT ZFormatTransGuard::start() {
    if (d->opened || !minihost::openStep(d->application, d->name, d->record, false)) return E_FAIL;
    d->opened = true;
    return S_OK;
}

HRESULT ZFormatTransGuard::commit() {
    if (!d->opened) return E_FAIL;
    d->opened = false;
    minihost::closeStep(true);
    return S_OK;
}

ZFormatStaticTransGuard::ZFormatStaticTransGuard() : d(new ZFormatStaticTransGuardPrivate) {}
ZFormatStaticTransGuard::~ZFormatStaticTransGuard() = default;

ZFormatStaticTransGuard* ZFormatStaticTransGuard::instance() {
    // Never destroyed: guards may still ask for it while the process shuts down.
    static ZFormatStaticTransGuard* guard = new ZFormatStaticTransGuard;
    return guard;
}

bool ZFormatStaticTransGuard::isActive() const {
    return d->open && d->open->host;
}

QString ZFormatStaticTransGuard::name() const {
    return isActive() ? d->open->step.name : QString();
}

void ZFormatStaticTransGuard::setName(const QString& name) {
    if (isActive()) d->open->step.name = name;
}
