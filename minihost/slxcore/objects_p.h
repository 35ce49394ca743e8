// SPDX-License-Identifier: MIT
// The objects of the object model over a deck. Each holds the deck's private side and designates
// what it stands for by slide and shape id (never by XML node), so undo can swap a slide's XML
// under it; an object whose shape is gone fails its calls with E_FAIL.
#pragma once

#include <memory>
#include <vector>

#include "minihost/slxcore/deckcore_p.h"
#include "minihost/slxcore/hostobject_p.h"
#include "slxcore/slxoldapi.h"

namespace minihost {

// Answered by the view inside this library only: how a transaction guard finds the deck.
extern const GUID IID_DeckView;

class SelectionObject;

class ViewObject final : public HostObject<slxoldapi::DocumentView> {
public:
    explicit ViewObject(std::shared_ptr<DeckCore> core);
    ~ViewObject() override;
    // The host (the Deck) lets go of the view; it goes when clients let go too.
    void releaseByHost();
    DeckCore& core() const { return *m_core; }

    IUnknown* selectionObject() override;
    HRESULT get_Shapes(slxoldapi::Shapes** shapes) override;

protected:
    bool answersPrivately(REFIID iid) const override { return iid == IID_DeckView; }

private:
    std::shared_ptr<DeckCore> m_core;
    SelectionObject* m_selection;
};

class SelectionObject final : public HostObject<slxoldapi::Selection> {
public:
    explicit SelectionObject(std::shared_ptr<DeckCore> core);
    void releaseByHost();

    HRESULT get_ShapeRange(slxoldapi::ShapeRange** range) override;
    HRESULT get_TextRange(slxoldapi::TextRange** range) override;

private:
    std::shared_ptr<DeckCore> m_core;
};

class ShapeRangeObject final : public HostObject<slxoldapi::ShapeRange> {
public:
    ShapeRangeObject(std::shared_ptr<DeckCore> core, int slide, std::vector<int> ids);
    HRESULT get_Count(std::int32_t* count) override;
    HRESULT Item(VARIANT index, slxoldapi::Shape** shape) override;

private:
    std::shared_ptr<DeckCore> m_core;
    int m_slide;
    std::vector<int> m_ids;
};

class ShapesObject final : public HostObject<slxoldapi::Shapes> {
public:
    ShapesObject(std::shared_ptr<DeckCore> core, int slide);
    HRESULT AddTextbox(std::int32_t orientation, float left, float top, float width, float height,
                       IUnknown** shape) override;

private:
    std::shared_ptr<DeckCore> m_core;
    int m_slide;
};

class ShapeObject final : public HostObject<slxoldapi::Shape> {
public:
    ShapeObject(std::shared_ptr<DeckCore> core, int slide, int id);
    HRESULT Select(std::int32_t replace) override;
    HRESULT put_Width(float width) override;
    HRESULT get_TextFrame(slxoldapi::TextFrame** frame) override;

private:
    std::shared_ptr<DeckCore> m_core;
    int m_slide;
    int m_id;
};

class TextFrameObject final : public HostObject<slxoldapi::TextFrame> {
public:
    TextFrameObject(std::shared_ptr<DeckCore> core, int slide, int id);
    HRESULT get_TextRange(slxoldapi::TextRange** range) override;
    HRESULT put_AutoSize(std::int32_t autoSize) override;

private:
    std::shared_ptr<DeckCore> m_core;
    int m_slide;
    int m_id;
};

class TextRangeObject final : public HostObject<slxoldapi::TextRange> {
public:
    TextRangeObject(std::shared_ptr<DeckCore> core, std::shared_ptr<RangeState> state);
    HRESULT get_Length(std::int32_t* length) override;
    HRESULT Characters(std::int32_t start, std::int32_t length,
                       slxoldapi::TextRange** range) override;
    HRESULT get_Text(BSTR* text) override;
    HRESULT put_Text(BSTR text) override;
    HRESULT InsertAfter(BSTR text, slxoldapi::TextRange** inserted) override;
    HRESULT get_Font(slxoldapi::Font** font) override;

private:
    std::shared_ptr<DeckCore> m_core;
    std::shared_ptr<RangeState> m_state;
};

// Font and ColorFormat follow the range they came from (its live state).
class FontObject final : public HostObject<slxoldapi::Font> {
public:
    FontObject(std::shared_ptr<DeckCore> core, std::shared_ptr<RangeState> state);
    HRESULT get_Color(slxoldapi::ColorFormat** color) override;
    HRESULT put_Bold(std::int32_t bold) override;
    HRESULT get_Size(float* size) override;
    HRESULT put_Size(float size) override;
    HRESULT get_Name(BSTR* name) override;
    HRESULT put_Name(BSTR name) override;

private:
    std::shared_ptr<DeckCore> m_core;
    std::shared_ptr<RangeState> m_state;
};

class ColorFormatObject final : public HostObject<slxoldapi::ColorFormat> {
public:
    ColorFormatObject(std::shared_ptr<DeckCore> core, std::shared_ptr<RangeState> state);
    HRESULT get_RGB(std::uint32_t* rgb) override;
    HRESULT put_RGB(std::uint32_t rgb) override;

private:
    std::shared_ptr<DeckCore> m_core;
    std::shared_ptr<RangeState> m_state;
};

}  // namespace minihost
