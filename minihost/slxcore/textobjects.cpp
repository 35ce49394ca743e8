// SPDX-License-Identifier: MIT
// Text frames, live text ranges, and the font and colour of a range.
#include <algorithm>
#include <functional>

#include "minihost/slxcore/boundary_p.h"
#include "minihost/slxcore/objects_p.h"
#include "minihost/slxcore/textbody_p.h"

namespace minihost {
namespace {

// The text body a range lives in (empty when its shape is gone), with the range kept inside
// the body's text: an undo may have shortened it.
pugi::xml_node bodyOf(const DeckCore& core, RangeState& state) {
    const pugi::xml_node body = textBodyOf(core.shape(state.slide, state.shapeId).element);
    if (body) {
        const int length = TextBody(body).length();
        state.start = std::clamp(state.start, 0, length);
        state.length = std::clamp(state.length, 0, length - state.start);
    }
    return body;
}

// Calls `edit` on the run properties of the range, as one edit of its slide.
HRESULT formatRange(DeckCore& core, RangeState& state, const QString& operation,
                    const std::function<void(pugi::xml_node)>& edit) {
    const pugi::xml_node body = bodyOf(core, state);
    if (!body) return E_FAIL;
    EditScope scope(core, state.slide, operation, state.shapeId);
    TextBody(body).format(state.start, state.length, edit);
    core.fit(state.slide, state.shapeId);
    return S_OK;
}

FontValues fontOf(const DeckCore& core, RangeState& state, bool* found) {
    const pugi::xml_node body = bodyOf(core, state);
    *found = static_cast<bool>(body);
    if (!body) return {};
    return resolveFont(TextBody(body).propertiesAt(state.start), body, core.styles);
}

}  // namespace

TextFrameObject::TextFrameObject(std::shared_ptr<DeckCore> core, int slide, int id)
    : HostObject("TextFrame", nullptr), m_core(std::move(core)), m_slide(slide), m_id(id) {}

HRESULT TextFrameObject::get_TextRange(slxoldapi::TextRange** range) {
    return guarded([&] {
        if (!range) return E_POINTER;
        *range = nullptr;
        m_core->note(QStringLiteral("TextFrame.get_TextRange"));
        const pugi::xml_node body = textBodyOf(m_core->shape(m_slide, m_id).element);
        if (!body) return E_FAIL;
        *range = new TextRangeObject(m_core,
                                     m_core->newRange(m_slide, m_id, 0, TextBody(body).length()));
        return S_OK;
    });
}

HRESULT TextFrameObject::put_AutoSize(std::int32_t autoSize) {
    return guarded([&] {
        m_core->note(QStringLiteral("TextFrame.put_AutoSize(%1)").arg(autoSize));
        if (autoSize != 0 && autoSize != 1) return E_INVALIDARG;
        const pugi::xml_node body = textBodyOf(m_core->shape(m_slide, m_id).element);
        if (!body) return E_FAIL;
        EditScope edit(*m_core, m_slide, QStringLiteral("put_AutoSize"), m_id);
        setFollowsText(body, autoSize == 1);
        m_core->fit(m_slide, m_id);
        return S_OK;
    });
}

TextRangeObject::TextRangeObject(std::shared_ptr<DeckCore> core, std::shared_ptr<RangeState> state)
    : HostObject("TextRange", nullptr), m_core(std::move(core)), m_state(std::move(state)) {}

HRESULT TextRangeObject::get_Length(std::int32_t* length) {
    if (!length) return E_POINTER;
    m_core->note(QStringLiteral("TextRange.get_Length"));
    if (!bodyOf(*m_core, *m_state)) return E_FAIL;
    *length = m_state->length;
    return S_OK;
}

HRESULT TextRangeObject::Characters(std::int32_t start, std::int32_t length,
                                    slxoldapi::TextRange** range) {
    return guarded([&] {
        if (!range) return E_POINTER;
        *range = nullptr;
        m_core->note(QStringLiteral("TextRange.Characters(%1, %2)").arg(start).arg(length));
        const pugi::xml_node body = bodyOf(*m_core, *m_state);
        if (!body) return E_FAIL;
        if (start < 0 || length < 0) return E_INVALIDARG;
        const int total = TextBody(body).length();
        const long long from = static_cast<long long>(m_state->start) + start;
        if (from > total) return E_FAIL;
        const int begin = static_cast<int>(from);
        *range =
            new TextRangeObject(m_core, m_core->newRange(m_state->slide, m_state->shapeId, begin,
                                                         std::min(length, total - begin)));
        return S_OK;
    });
}

HRESULT TextRangeObject::get_Text(BSTR* text) {
    return guarded([&] {
        if (!text) return E_POINTER;
        *text = nullptr;
        m_core->note(QStringLiteral("TextRange.get_Text"));
        const pugi::xml_node body = bodyOf(*m_core, *m_state);
        if (!body) return E_FAIL;
        *text = toBstr(TextBody(body).text().mid(m_state->start, m_state->length));
        return *text ? S_OK : E_OUTOFMEMORY;
    });
}

HRESULT TextRangeObject::put_Text(BSTR text) {
    return guarded([&] {
        const QString value = fromBstr(text);
        m_core->note(QStringLiteral("TextRange.put_Text(%1)").arg(journalText(value)));
        const pugi::xml_node body = bodyOf(*m_core, *m_state);
        if (!body) return E_FAIL;
        EditScope edit(*m_core, m_state->slide, QStringLiteral("put_Text"), m_state->shapeId);
        TextBody frame(body);
        const TextBody::Replacement r = frame.replace(m_state->start, m_state->length, value);
        m_core->textReplaced(m_state->slide, m_state->shapeId, r.at, r.removed, r.inserted,
                             m_state.get());
        m_state->start = r.pos;
        m_state->length = r.inserted;
        m_core->fit(m_state->slide, m_state->shapeId);
        return S_OK;
    });
}

HRESULT TextRangeObject::InsertAfter(BSTR text, slxoldapi::TextRange** inserted) {
    return guarded([&] {
        if (inserted) *inserted = nullptr;
        const QString value = fromBstr(text);
        m_core->note(QStringLiteral("TextRange.InsertAfter(%1)").arg(journalText(value)));
        const pugi::xml_node body = bodyOf(*m_core, *m_state);
        if (!body) return E_FAIL;
        EditScope edit(*m_core, m_state->slide, QStringLiteral("InsertAfter"), m_state->shapeId);
        TextBody frame(body);
        const int before = frame.length();
        const int pos = frame.insert(m_state->start + m_state->length, value);
        const int count = frame.length() - before;
        m_core->textReplaced(m_state->slide, m_state->shapeId, pos, 0, count, m_state.get());
        m_core->fit(m_state->slide, m_state->shapeId);
        if (inserted)
            *inserted = new TextRangeObject(
                m_core, m_core->newRange(m_state->slide, m_state->shapeId, pos, count));
        return S_OK;
    });
}

HRESULT TextRangeObject::get_Font(slxoldapi::Font** font) {
    return guarded([&] {
        if (!font) return E_POINTER;
        *font = nullptr;
        m_core->note(QStringLiteral("TextRange.get_Font"));
        if (!bodyOf(*m_core, *m_state)) return E_FAIL;
        *font = new FontObject(m_core, m_state);
        return S_OK;
    });
}

FontObject::FontObject(std::shared_ptr<DeckCore> core, std::shared_ptr<RangeState> state)
    : HostObject("Font", nullptr), m_core(std::move(core)), m_state(std::move(state)) {}

HRESULT FontObject::get_Color(slxoldapi::ColorFormat** color) {
    return guarded([&] {
        if (!color) return E_POINTER;
        *color = nullptr;
        m_core->note(QStringLiteral("Font.get_Color"));
        if (!bodyOf(*m_core, *m_state)) return E_FAIL;
        *color = new ColorFormatObject(m_core, m_state);
        return S_OK;
    });
}

HRESULT FontObject::put_Bold(std::int32_t bold) {
    return guarded([&] {
        m_core->note(QStringLiteral("Font.put_Bold(%1)").arg(bold));
        if (bold != -1 && bold != 0) return E_INVALIDARG;
        return formatRange(*m_core, *m_state, QStringLiteral("put_Bold"),
                           [&](pugi::xml_node rPr) { setBold(rPr, bold == -1); });
    });
}

HRESULT FontObject::get_Size(float* size) {
    return guarded([&] {
        if (!size) return E_POINTER;
        m_core->note(QStringLiteral("Font.get_Size"));
        bool found = false;
        const FontValues values = fontOf(*m_core, *m_state, &found);
        if (!found) return E_FAIL;
        *size = values.size;
        return S_OK;
    });
}

HRESULT FontObject::put_Size(float size) {
    return guarded([&] {
        m_core->note(QStringLiteral("Font.put_Size(%1)").arg(journalNumber(size)));
        if (!(size >= 1.0f && size <= 4000.0f)) return E_INVALIDARG;
        return formatRange(*m_core, *m_state, QStringLiteral("put_Size"),
                           [&](pugi::xml_node rPr) { setSize(rPr, size); });
    });
}

HRESULT FontObject::get_Name(BSTR* name) {
    return guarded([&] {
        if (!name) return E_POINTER;
        *name = nullptr;
        m_core->note(QStringLiteral("Font.get_Name"));
        bool found = false;
        const FontValues values = fontOf(*m_core, *m_state, &found);
        if (!found) return E_FAIL;
        *name = toBstr(values.name);
        return *name ? S_OK : E_OUTOFMEMORY;
    });
}

HRESULT FontObject::put_Name(BSTR name) {
    return guarded([&] {
        const QString value = fromBstr(name);
        m_core->note(QStringLiteral("Font.put_Name(%1)").arg(journalText(value)));
        if (value.isEmpty()) return E_INVALIDARG;
        return formatRange(*m_core, *m_state, QStringLiteral("put_Name"),
                           [&](pugi::xml_node rPr) { setTypeface(rPr, value); });
    });
}

ColorFormatObject::ColorFormatObject(std::shared_ptr<DeckCore> core,
                                     std::shared_ptr<RangeState> state)
    : HostObject("ColorFormat", nullptr), m_core(std::move(core)), m_state(std::move(state)) {}

HRESULT ColorFormatObject::get_RGB(std::uint32_t* rgb) {
    return guarded([&] {
        if (!rgb) return E_POINTER;
        m_core->note(QStringLiteral("ColorFormat.get_RGB"));
        bool found = false;
        const FontValues values = fontOf(*m_core, *m_state, &found);
        if (!found) return E_FAIL;
        *rgb = values.rgb;  // handed out as 0x00RRGGBB
        return S_OK;
    });
}

HRESULT ColorFormatObject::put_RGB(std::uint32_t bgr) {
    return guarded([&] {
        m_core->note(QStringLiteral("ColorFormat.put_RGB(0x%1)").arg(bgr, 6, 16, QLatin1Char('0')));
        // Taken in as 0x00BBGGRR.
        const std::uint32_t rgb = ((bgr & 0xFFu) << 16) | (bgr & 0xFF00u) | ((bgr >> 16) & 0xFFu);
        return formatRange(*m_core, *m_state, QStringLiteral("put_RGB"),
                           [&](pugi::xml_node rPr) { setColor(rPr, rgb); });
    });
}

}  // namespace minihost
