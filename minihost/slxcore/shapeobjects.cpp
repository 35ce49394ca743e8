// SPDX-License-Identifier: MIT
// The view, its selection, shape collections and shapes.
#include <algorithm>

#include "minihost/slxcore/boundary_p.h"
#include "minihost/slxcore/objects_p.h"
#include "minihost/slxcore/textbody_p.h"
#include "minihost/slxcore/xmlnode_p.h"

namespace minihost {

// {6E1B2C3D-4A5F-4E60-8B71-9C2D3E4F5A6B}, never published.
const GUID IID_DeckView = {
    0x6E1B2C3D, 0x4A5F, 0x4E60, {0x8B, 0x71, 0x9C, 0x2D, 0x3E, 0x4F, 0x5A, 0x6B}};

ViewObject::ViewObject(std::shared_ptr<DeckCore> core)
    : HostObject("DocumentView", nullptr, true),
      m_core(std::move(core)),
      m_selection(new SelectionObject(m_core)) {}

ViewObject::~ViewObject() {
    m_selection->releaseByHost();
}

void ViewObject::releaseByHost() {
    if (dropHostReference()) delete this;
}

IUnknown* ViewObject::selectionObject() {
    m_core->note(QStringLiteral("DocumentView.selectionObject"));
    return m_selection;
}

HRESULT ViewObject::get_Shapes(slxoldapi::Shapes** shapes) {
    return guarded([&] {
        if (!shapes) return E_POINTER;
        *shapes = nullptr;
        m_core->note(QStringLiteral("DocumentView.get_Shapes"));
        if (m_core->slides.empty()) return E_FAIL;
        *shapes = new ShapesObject(m_core, m_core->currentSlide);
        return S_OK;
    });
}

SelectionObject::SelectionObject(std::shared_ptr<DeckCore> core)
    : HostObject("Selection", &slxoldapi::IID_Selection, true), m_core(std::move(core)) {}

void SelectionObject::releaseByHost() {
    if (dropHostReference()) delete this;
}

HRESULT SelectionObject::get_ShapeRange(slxoldapi::ShapeRange** range) {
    return guarded([&] {
        if (!range) return E_POINTER;
        *range = nullptr;
        m_core->note(QStringLiteral("Selection.get_ShapeRange"));
        *range = new ShapeRangeObject(m_core, m_core->currentSlide, m_core->selectedShapeIds());
        return S_OK;
    });
}

HRESULT SelectionObject::get_TextRange(slxoldapi::TextRange** range) {
    return guarded([&] {
        if (!range) return E_POINTER;
        *range = nullptr;
        m_core->note(QStringLiteral("Selection.get_TextRange"));
        DeckCore& core = *m_core;
        if (!core.textSelected) return E_FAIL;
        const pugi::xml_node body =
            textBodyOf(core.shape(core.currentSlide, core.textShape).element);
        if (!body) return E_FAIL;
        const int length = TextBody(body).length();
        const int start = std::min(core.textStart, length);
        *range =
            new TextRangeObject(m_core, core.newRange(core.currentSlide, core.textShape, start,
                                                      std::min(core.textLength, length - start)));
        return S_OK;
    });
}

ShapeRangeObject::ShapeRangeObject(std::shared_ptr<DeckCore> core, int slide, std::vector<int> ids)
    : HostObject("ShapeRange", nullptr),
      m_core(std::move(core)),
      m_slide(slide),
      m_ids(std::move(ids)) {}

HRESULT ShapeRangeObject::get_Count(std::int32_t* count) {
    if (!count) return E_POINTER;
    m_core->note(QStringLiteral("ShapeRange.get_Count"));
    *count = static_cast<std::int32_t>(m_ids.size());
    return S_OK;
}

HRESULT ShapeRangeObject::Item(VARIANT index, slxoldapi::Shape** shape) {
    return guarded([&] {
        if (!shape) return E_POINTER;
        *shape = nullptr;
        if (index.vt != VT_I4) {
            m_core->note(QStringLiteral("ShapeRange.Item(<type %1>)").arg(index.vt));
            return E_INVALIDARG;
        }
        m_core->note(QStringLiteral("ShapeRange.Item(%1)").arg(index.lVal));
        if (index.lVal < 1 || index.lVal > static_cast<std::int32_t>(m_ids.size()))
            return E_INVALIDARG;
        const int id = m_ids[static_cast<std::size_t>(index.lVal - 1)];
        if (!m_core->shape(m_slide, id).element) return E_FAIL;
        *shape = new ShapeObject(m_core, m_slide, id);
        return S_OK;
    });
}

ShapesObject::ShapesObject(std::shared_ptr<DeckCore> core, int slide)
    : HostObject("Shapes", nullptr), m_core(std::move(core)), m_slide(slide) {}

HRESULT ShapesObject::AddTextbox(std::int32_t orientation, float left, float top, float width,
                                 float height, IUnknown** shape) {
    return guarded([&] {
        if (!shape) return E_POINTER;
        *shape = nullptr;
        m_core->note(QStringLiteral("Shapes.AddTextbox(%1, %2, %3, %4, %5)")
                         .arg(orientation)
                         .arg(journalNumber(left), journalNumber(top), journalNumber(width),
                              journalNumber(height)));
        if (orientation != 1) return E_NOTIMPL;  // only horizontal text boxes
        if (!(width >= 0 && height >= 0 && left == left && top == top)) return E_INVALIDARG;
        if (m_slide >= static_cast<int>(m_core->slides.size()) ||
            !shapeTree(m_core->slides[m_slide]->doc))
            return E_FAIL;
        EditScope edit(*m_core, m_slide, QStringLiteral("AddTextbox"));
        SlidePart& part = *m_core->slides[m_slide];
        const pugi::xml_node element = part.shapes.addTextbox(part.doc, left, top, width, height);
        const int id = shapeIdOf(element);
        edit.touches(id);
        *shape = static_cast<slxoldapi::Shape*>(new ShapeObject(m_core, m_slide, id));
        return S_OK;
    });
}

ShapeObject::ShapeObject(std::shared_ptr<DeckCore> core, int slide, int id)
    : HostObject("Shape", &slxoldapi::IID_Shape),
      m_core(std::move(core)),
      m_slide(slide),
      m_id(id) {}

HRESULT ShapeObject::Select(std::int32_t replace) {
    return guarded([&] {
        m_core->note(QStringLiteral("Shape.Select(%1)").arg(replace));
        if (m_slide != m_core->currentSlide || !m_core->shape(m_slide, m_id).element) return E_FAIL;
        if (replace != -1 && replace != 0) return E_INVALIDARG;
        m_core->selectShape(m_id, replace == -1);
        return S_OK;
    });
}

HRESULT ShapeObject::put_Width(float width) {
    return guarded([&] {
        m_core->note(QStringLiteral("Shape.put_Width(%1)").arg(journalNumber(width)));
        if (!(width >= 0)) return E_INVALIDARG;
        if (!m_core->shape(m_slide, m_id).element) return E_FAIL;
        EditScope edit(*m_core, m_slide, QStringLiteral("put_Width"), m_id);
        setWidth(m_core->shape(m_slide, m_id), width);
        m_core->fit(m_slide, m_id);
        return S_OK;
    });
}

HRESULT ShapeObject::get_TextFrame(slxoldapi::TextFrame** frame) {
    return guarded([&] {
        if (!frame) return E_POINTER;
        *frame = nullptr;
        m_core->note(QStringLiteral("Shape.get_TextFrame"));
        if (!textBodyOf(m_core->shape(m_slide, m_id).element)) return E_FAIL;
        *frame = new TextFrameObject(m_core, m_slide, m_id);
        return S_OK;
    });
}

}  // namespace minihost
