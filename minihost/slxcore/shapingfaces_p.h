// SPDX-License-Identifier: MIT
// Typefaces as HarfBuzz reads them: each face of a font file once for the process, over the
// file mapped into memory (a CJK collection is tens of megabytes, of which shaping touches a
// few pages).
#pragma once

#include <hb.h>

#include <QByteArray>

#include "minihost/slxcore/typefaces.h"

namespace minihost {

class ShapingFace {
public:
    // Null `font()` when `file` cannot be read as a font or has no face `index`.
    ShapingFace(const QString& file, int index);
    ~ShapingFace();
    ShapingFace(const ShapingFace&) = delete;
    ShapingFace& operator=(const ShapingFace&) = delete;

    // A font of the face whose positions are in font units.
    hb_font_t* font() const { return m_font; }
    int unitsPerEm() const { return m_upem; }
    // A copy of its table `tag` (four characters, e.g. "head"); empty when it has none.
    QByteArray table(const char* tag) const;

private:
    hb_face_t* m_face = nullptr;
    hb_font_t* m_font = nullptr;
    int m_upem = 1000;
};

// The face of `typeface`, read on first use and kept for the process; null when its file cannot
// be read. Used on the thread that lays text out.
const ShapingFace* shapingFace(const Typeface& typeface);

}  // namespace minihost
