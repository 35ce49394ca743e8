// SPDX-License-Identifier: MIT
// A PNG decoded straight to a smaller size, a row at a time: memory for one row of the picture
// and the result, never for the whole picture.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

namespace minihost {

// `png` shrunk to `size` (each side at most the picture's own, at least 1) by averaging the
// pixels that fall on each pixel of the result, as ARGB32 premultiplied. A null image and
// `*problem` for a picture that is interlaced (its rows come in seven passes: no row is whole
// before the last), larger than `maxSide` a side, or damaged.
QImage decodePngScaled(const QByteArray& png, const QSize& size, int maxSide, QString* problem);

}  // namespace minihost
