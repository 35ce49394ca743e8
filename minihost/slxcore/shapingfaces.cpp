// SPDX-License-Identifier: MIT
#include "minihost/slxcore/shapingfaces_p.h"

#include <QFile>
#include <algorithm>
#include <map>
#include <memory>
#include <utility>

namespace minihost {

ShapingFace::ShapingFace(const QString& file, int index) {
    hb_blob_t* blob = hb_blob_create_from_file_or_fail(QFile::encodeName(file).constData());
    if (!blob) return;
    // Past the file's last face HarfBuzz gives an empty face: told apart by its glyph count.
    hb_face_t* face = hb_face_create(blob, static_cast<unsigned>(std::max(0, index)));
    hb_blob_destroy(blob);
    if (hb_face_get_glyph_count(face) == 0) {
        hb_face_destroy(face);
        return;
    }
    m_face = face;
    m_upem = std::max(1, static_cast<int>(hb_face_get_upem(m_face)));
    m_font = hb_font_create(m_face);
    hb_font_set_scale(m_font, m_upem, m_upem);
}

ShapingFace::~ShapingFace() {
    hb_font_destroy(m_font);
    hb_face_destroy(m_face);
}

QByteArray ShapingFace::table(const char* tag) const {
    if (!m_face) return {};
    hb_blob_t* blob = hb_face_reference_table(m_face, hb_tag_from_string(tag, 4));
    unsigned length = 0;
    const char* data = hb_blob_get_data(blob, &length);
    QByteArray copy(data, static_cast<int>(length));
    hb_blob_destroy(blob);
    return copy;
}

const ShapingFace* shapingFace(const Typeface& typeface) {
    if (typeface.isNull()) return nullptr;
    static std::map<std::pair<QString, int>, std::unique_ptr<ShapingFace>> faces;
    auto& face = faces[{typeface.file, typeface.index}];
    if (!face) face = std::make_unique<ShapingFace>(typeface.file, typeface.index);
    return face->font() ? face.get() : nullptr;
}

}  // namespace minihost
