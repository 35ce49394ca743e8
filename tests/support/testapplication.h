// SPDX-License-Identifier: MIT
// A core application for tests that need one before (or without) the host's own: its active view
// is the view of a deck the test opened.
#pragma once

#include "minihost/slxcore/deck.h"
#include "nvo/zapplication.h"

class TestApplication final : public IZApplication {
public:
    explicit TestApplication(minihost::Deck* deck = nullptr) : m_deck(deck) {}
    void setDeck(minihost::Deck* deck) { m_deck = deck; }

    HRESULT QueryInterface(REFIID iid, void** out) override {
        if (!out) return E_POINTER;
        if (iid == IID_IUnknown || iid == IID_IZApplication) {
            *out = static_cast<IZApplication*>(this);
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    // Lives as long as the test that made it.
    std::uint32_t AddRef() override { return 1; }
    std::uint32_t Release() override { return 1; }
    slxoldapi::DocumentView* activeView() override { return m_deck ? m_deck->view() : nullptr; }
    HRESULT QueryService(REFIID, IUnknown** service) override {
        if (service) *service = nullptr;
        return E_NOINTERFACE;
    }

private:
    minihost::Deck* m_deck;
};
