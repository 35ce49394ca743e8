// SPDX-License-Identifier: MIT
#include "deckhost.h"

#include "minihost/nvo/hostconfig.h"
#include "minihost/nvo/hostcontrol.h"
#include "minihost/slxcore/deck.h"
#include "nvo/ribbon.h"
#include "nvo/zapplication.h"
#include "reporterror.h"

DeckHost::DeckHost() = default;

// The add-on's entry object goes while the deck's view is still the active one (it releases the
// add-on's model); then the host forgets the view and the window before the deck goes.
DeckHost::~DeckHost() {
    m_addon.reset();
    if (m_viewActive) minihost::setActiveView(nullptr);
    if (m_window) minihost::setCurrentMainWindow(nullptr);
}

int DeckHost::open(const QString& path, int slide) {
    if (const int status = checkReadingFiles()) return status;

    QString error;
    m_deck = minihost::Deck::loadFile(path, &error);
    if (!m_deck) return reportFileError(path, error);
    if (!m_deck->setCurrentSlide(slide))
        return reportError(path, QStringLiteral("there is no slide %1 (the deck has %2)")
                                     .arg(slide)
                                     .arg(m_deck->slideCount()));

    m_window = std::make_unique<ZMainWindow>();
    minihost::buildRibbon(m_window.get(), {QStringLiteral("CT_Home"), QStringLiteral("CT_Insert"),
                                           QStringLiteral("CT_TextTool")});
    minihost::setCurrentTabById(m_window.get(), QStringLiteral("CT_Home"));
    minihost::setCurrentMainWindow(m_window.get());
    minihost::setActiveView(m_deck->view());
    m_viewActive = true;

    m_addon = std::make_unique<minihost::AddonSession>();
    if (!m_addon->open()) return reportError(QStringLiteral("add-on"), m_addon->errorString());
    return 0;
}

int checkReadingFiles() {
    // Without these the add-on would only say that the selection holds no character, and a
    // command would write a deck without readings.
    QString problem;
    const QString missing = minihost::missingReadingFile(&problem);
    return missing.isEmpty() ? 0 : reportError(missing, problem);
}

IZApplication* DeckHost::coreApplication() const {
    return minihost::hostApplication()->coreApplication();
}
